// The SCSI target model: CDB decoding, sense data, capacity bounds, the
// sparse store, and the fleet's "scsi" section with its limits.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "core/fleet.hpp"
#include "scsi/target.hpp"
#include "sim_test.hpp"

using namespace kvdsim;
using namespace kvdsim::test;

namespace
{

const Wwn kPortA = {0x21, 0, 0x06, 0x4b, 0x51, 0xd0, 0, 1};
const Wwn kPortB = {0x21, 0, 0x06, 0x4b, 0x51, 0xd0, 0, 2}; // same node as A
const Wwn kPortC = {0x21, 0, 0x06, 0x4b, 0x51, 0xd9, 0, 1};

// One board: ports A and B of node d0:00:01, C of its own node. A is
// described (LUN 0 of 8 blocks, LUN 300 just past 2^32 blocks); B and C get
// the default units.
std::string doc(const std::string &luns)
{
    return R"({"boards": [{"board": 0, "wwpn": "10:00:06:4b:51:a0:00:50",
      "remote_ports": [
        {"wwpn": "21:00:06:4b:51:d0:00:01", "wwnn": "20:00:06:4b:51:d0:00:01", "did": "0x010300"},
        {"wwpn": "21:00:06:4b:51:d0:00:02", "wwnn": "20:00:06:4b:51:d0:00:01", "did": "0x010400"},
        {"wwpn": "21:00:06:4b:51:d9:00:01", "did": "0x010500"},
        {"wwpn": "10:00:06:4b:51:a7:00:44", "did": "0x020300", "fcp_target": false}],
      "scsi": {"targets": [{"wwpn": "21:00:06:4b:51:d0:00:01", "luns": )" +
           luns + "}]}}]}";
}

const char *const kLuns =
    R"([{"lun": 0, "blocks": 8}, {"lun": 300, "blocks": "0x100000000", "serial": "S300"}])";

Fleet fleet_of(const std::string &luns)
{
    return fleet_ok(doc(luns));
}

std::string fault_of(const std::string &luns)
{
    return fleet_fault(doc(luns));
}

struct Targets : testing::Test {
    Fleet fleet = fleet_of(kLuns);
    ScsiTargets targets{fleet.boards.at(0)};

    ScsiTask run(const Wwn &port, uint16_t lun, std::vector<uint8_t> cdb, uint32_t expected = 4096,
                 std::vector<uint8_t> out = {})
    {
        cdb_ = std::move(cdb);
        out_ = std::move(out);
        ScsiTask t;
        t.lun = ScsiTargets::lun_bytes(lun);
        t.cdb = cdb_;
        t.data_out = out_;
        t.expected = expected;
        targets.execute(port, t);
        return t;
    }
    static std::vector<uint8_t> rw(uint8_t op, uint32_t lba, uint16_t count)
    {
        return {op,           0, uint8_t(lba >> 24),  uint8_t(lba >> 16), uint8_t(lba >> 8),
                uint8_t(lba), 0, uint8_t(count >> 8), uint8_t(count),     0};
    }
    static void expect_sense(const ScsiTask &t, uint8_t asc)
    {
        EXPECT_EQ(t.status, SCSI_STAT_CHECK_CONDITION);
        EXPECT_EQ(t.sense.senseKey, SENSE_KEY_ILLEGAL_REQUEST);
        EXPECT_EQ(t.sense.asc, asc);
        EXPECT_TRUE(t.data_in.empty());
    }

  private:
    std::vector<uint8_t> cdb_, out_;
};

} // namespace

TEST(ScsiCdb, LengthFollowsTheGroupCode)
{
    EXPECT_EQ(ScsiTargets::cdb_length(0x00), 6u);
    EXPECT_EQ(ScsiTargets::cdb_length(0x1f), 6u);
    EXPECT_EQ(ScsiTargets::cdb_length(0x28), 10u);
    EXPECT_EQ(ScsiTargets::cdb_length(0x55), 10u);
    EXPECT_EQ(ScsiTargets::cdb_length(0x9e), 16u);
    EXPECT_EQ(ScsiTargets::cdb_length(0xa0), 12u);
}

TEST(ScsiCdb, LunForms)
{
    using L = std::array<uint8_t, 8>;
    EXPECT_EQ(ScsiTargets::lun_number(L{0x00, 0x05}), 5);
    EXPECT_EQ(ScsiTargets::lun_number(L{0x41, 0x2c}), 300);
    EXPECT_EQ(ScsiTargets::lun_number(L{0x7f, 0xff}), 0x3fff);
    EXPECT_EQ(ScsiTargets::lun_number(L{0x12, 0x34}), -1); // bus 0x12
    EXPECT_EQ(ScsiTargets::lun_number(L{0x00, 0x05, 0x00, 0x01}), -1);
    EXPECT_EQ(ScsiTargets::lun_number(L{0x80, 0x01}), -1);
    EXPECT_EQ(ScsiTargets::lun_bytes(255), (L{0x00, 0xff}));
    EXPECT_EQ(ScsiTargets::lun_bytes(256), (L{0x41, 0x00}));
}

TEST(ScsiSense, FixedFormat)
{
    SCSI_SENSE s = make_sense(SENSE_KEY_ILLEGAL_REQUEST, ASC_LBA_OUT_OF_RANGE, 0);
    uint8_t b[18];
    memcpy(b, &s, sizeof b);
    const uint8_t want[18] = {0x70, 0, 0x05, 0, 0, 0, 0, 10, 0, 0, 0, 0, 0x21, 0, 0, 0, 0, 0};
    EXPECT_EQ(memcmp(b, want, sizeof b), 0);
}

TEST_F(Targets, InquiryLengthsAndSerial)
{
    // The allocation length cuts the data; FCP_DL cuts it further.
    EXPECT_EQ(run(kPortA, 0, {SCSI_INQUIRY, 0, 0, 0, 5, 0}).data_in.size(), 5u);
    EXPECT_EQ(run(kPortA, 0, {SCSI_INQUIRY, 0, 0, 0, 0xff, 0}, 4).data_in.size(), 4u);
    // A serial number from the fleet.
    ScsiTask t = run(kPortA, 300, {SCSI_INQUIRY, 1, VPD_UNIT_SERIAL, 0, 0xff, 0});
    EXPECT_EQ(std::string(t.data_in.begin() + 4, t.data_in.end()), "S300");
}

TEST_F(Targets, CapacityAtTheReadCapacity10Limit)
{
    std::vector<uint8_t> rc10(10, 0);
    rc10[0] = SCSI_READ_CAPACITY_10;
    ScsiTask t = run(kPortA, 0, rc10);
    EXPECT_EQ(t.data_in, (std::vector<uint8_t>{0, 0, 0, 7, 0, 0, 2, 0}));
    // 2^32 blocks: the last LBA no longer fits 32 bits, READ CAPACITY(16)
    // tells it.
    t = run(kPortA, 300, rc10);
    EXPECT_EQ(t.data_in, (std::vector<uint8_t>{0xff, 0xff, 0xff, 0xff, 0, 0, 2, 0}));
    std::vector<uint8_t> rc16(16, 0);
    rc16[0] = SCSI_SERVICE_ACTION_IN_16;
    rc16[1] = SCSI_SAI_READ_CAPACITY_16;
    rc16[13] = 32;
    t = run(kPortA, 300, rc16);
    ASSERT_EQ(t.data_in.size(), 32u);
    EXPECT_EQ(std::vector<uint8_t>(t.data_in.begin(), t.data_in.begin() + 12),
              (std::vector<uint8_t>{0, 0, 0, 0, 0xff, 0xff, 0xff, 0xff, 0, 0, 2, 0}));
    rc16[1] = 0x11; // another service action
    expect_sense(run(kPortA, 300, rc16), ASC_INVALID_FIELD_IN_CDB);
    expect_sense(run(kPortA, 5, rc10), ASC_LUN_NOT_SUPPORTED);

    Fleet f = fleet_of(R"([{"lun": 0, "blocks": "0xffffffff"}])");
    ScsiTargets one(f.boards.at(0));
    ScsiTask u;
    u.cdb = rc10;
    u.expected = 8;
    one.execute(kPortA, u);
    EXPECT_EQ(u.data_in, (std::vector<uint8_t>{0xff, 0xff, 0xff, 0xfe, 0, 0, 2, 0}));
}

TEST_F(Targets, BlockRangeMustLieInsideTheUnit)
{
    EXPECT_EQ(run(kPortA, 0, rw(SCSI_READ_10, 7, 1)).status, SCSI_STAT_GOOD);
    expect_sense(run(kPortA, 0, rw(SCSI_READ_10, 7, 2)), ASC_LBA_OUT_OF_RANGE);
    expect_sense(run(kPortA, 0, rw(SCSI_READ_10, 8, 0)), ASC_LBA_OUT_OF_RANGE);
    expect_sense(run(kPortA, 0, rw(SCSI_WRITE_10, 0xffffffff, 1), 512, std::vector<uint8_t>(512)),
                 ASC_LBA_OUT_OF_RANGE);
}

TEST_F(Targets, WrittenDataReadsBackThroughEitherPortOfTheNode)
{
    std::vector<uint8_t> data(700);
    for (size_t i = 0; i < data.size(); ++i)
        data[i] = uint8_t(i * 7);
    // The CDB names two blocks, FCP_DL allows 700 bytes: 700 move, and the
    // rest of block 3 keeps what it held (zeros).
    ScsiTask w = run(kPortB, 0, rw(SCSI_WRITE_10, 2, 2), 700, data);
    EXPECT_EQ(w.status, SCSI_STAT_GOOD);
    EXPECT_EQ(w.moved, 700u);
    EXPECT_EQ(w.required, 1024u);
    ScsiTask r = run(kPortA, 0, rw(SCSI_READ_10, 2, 2), 1024);
    ASSERT_EQ(r.data_in.size(), 1024u);
    EXPECT_TRUE(std::equal(data.begin(), data.end(), r.data_in.begin()));
    EXPECT_EQ(r.data_in[700], 0);
    EXPECT_EQ(r.data_in[1023], 0);
    // FCP_DL below the blocks named: only that much comes back.
    r = run(kPortA, 0, rw(SCSI_READ_10, 2, 2), 100);
    EXPECT_EQ(r.data_in.size(), 100u);
    EXPECT_EQ(r.required, 1024u);
    // Another node's unit 0 is another unit.
    EXPECT_EQ(run(kPortC, 0, rw(SCSI_READ_10, 2, 1), 512).data_in.at(1), 0);
}

TEST_F(Targets, ReportLunsKeepsTheFullLengthWhenCut)
{
    std::vector<uint8_t> cdb(12, 0);
    cdb[0] = SCSI_REPORT_LUNS;
    cdb[9] = 16;
    ScsiTask t = run(kPortA, 0, cdb);
    ASSERT_EQ(t.data_in.size(), 16u);
    EXPECT_EQ(t.data_in[3], 16); // two LUNs listed, one fits
    EXPECT_EQ(t.data_in[8], 0);
    cdb[9] = 32;
    t = run(kPortA, 0, cdb);
    ASSERT_EQ(t.data_in.size(), 24u);
    EXPECT_EQ(t.data_in[16], 0x41);
    EXPECT_EQ(t.data_in[17], 0x2c);
    cdb[9] = 15;
    expect_sense(run(kPortA, 0, cdb), ASC_INVALID_FIELD_IN_CDB);
}

TEST_F(Targets, ShortCdbsAbsentUnitsAndRequestSense)
{
    expect_sense(run(kPortA, 0, {SCSI_READ_10, 0, 0}), ASC_INVALID_OPCODE);
    expect_sense(run(kPortA, 9, std::vector<uint8_t>(6, 0)), ASC_LUN_NOT_SUPPORTED);
    EXPECT_EQ(run(kPortA, 0, std::vector<uint8_t>(6, 0)).status, SCSI_STAT_GOOD);
    ScsiTask t = run(kPortA, 0, {SCSI_REQUEST_SENSE, 0, 0, 0, 18, 0});
    ASSERT_EQ(t.data_in.size(), 18u);
    EXPECT_EQ(t.data_in[0], 0x70);
    EXPECT_EQ(t.data_in[2], SENSE_KEY_NO_SENSE);
}

TEST(ScsiFleet, DefaultsAndLimits)
{
    Fleet f = fleet_of(kLuns);
    const ScsiConf &s = f.boards.at(0).scsi;
    ASSERT_EQ(s.targets.size(), 3u); // A described, B and C by default, not the initiator
    EXPECT_EQ(s.targets[1].luns.size(), 2u);
    EXPECT_EQ(s.targets[1].luns[1].blocks, 20480u);

    fleet_of(R"([{"lun": 16383, "blocks": "0x1000000000000"}])");
    EXPECT_NE(fault_of(R"([{"lun": 16384, "blocks": 1}])").find("luns[0].lun"), std::string::npos);
    EXPECT_NE(fault_of(R"([{"lun": 0, "blocks": "0x1000000000001"}])").find("luns[0].blocks"),
              std::string::npos);
    EXPECT_NE(fault_of(R"([{"lun": 0, "blocks": 0}])").find("at least one block"), std::string::npos);
    EXPECT_NE(fault_of(R"([{"lun": 1, "blocks": 1}, {"lun": 1, "blocks": 2}])").find("duplicate LUN 1"),
              std::string::npos);
    EXPECT_NE(fault_of(R"([{"lun": 1, "blocks": 1, "vendor": "NINECHARS"}])").find("vendor"),
              std::string::npos);
    EXPECT_NE(fault_of(R"([{"lun": 1, "blocks": 1, "size": 1}])").find("unknown field"), std::string::npos);

    std::string many = "[";
    for (int i = 0; i < 513; ++i)
        many += std::string(i ? "," : "") + R"({"lun": )" + std::to_string(i) + R"(, "blocks": 1})";
    EXPECT_NE(fault_of(many + "]").find("more than 512"), std::string::npos);
    many.erase(many.rfind(",{"));
    fleet_of(many + "]");

    EXPECT_NE(fleet_fault(board_doc(R"("remote_ports": [{"wwpn": "10:00:06:4b:51:a7:00:44", "did": 5,
        "fcp_target": false}], "scsi": {"targets": [{"wwpn": "10:00:06:4b:51:a7:00:44", "luns": []}]})"))
                  .find("offers FCP"),
              std::string::npos);
}
