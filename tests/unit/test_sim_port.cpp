// The port settings engine: FCoE parameters and the fabric login that
// follows them, link-down persistence through resets, the dump regions, the
// QoS link speed, the request table, and the fleet's "port" section.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "core/fault.hpp"
#include "core/fleet.hpp"
#include "sim_test.hpp"
#include "mailbox/firmware.hpp"
#include "port/port.hpp"
#include "libkvd.h"

using namespace kvdsim;
using namespace kvdsim::test;

namespace
{

BoardConf make_board(Protocol protocol = Protocol::fc)
{
    BoardConf b;
    b.number = 3;
    b.sli_mode = 4;
    b.protocol = protocol;
    b.features = KVD_FTR_PERSIST_LINK;
    b.wwpn = {0x10, 0x00, 0x06, 0x4b, 0x51, 0x00, 0x00, 0x03};
    b.wwnn = {0x20, 0x00, 0x06, 0x4b, 0x51, 0x00, 0x00, 0x03};
    b.speed = 0x20; // 16 Gb/s
    b.revision.arm_fw_name = "4.1.28.5";
    return b;
}

struct Box {
    Firmware fw;
    Port port;
    explicit Box(const BoardConf &b) : fw(b), port(b)
    {
        port.power_on(fw);
    }

    int32_t run(uint32_t code, std::span<uint8_t> data = {}, uint32_t a0 = 0)
    {
        PortCommand cmd{fw, data};
        cmd.args[0] = a0;
        return port.run(code, cmd);
    }
    int32_t set_fcoe(uint32_t map, uint8_t valid, uint16_t vlan, uint8_t version = 1)
    {
        KVD_FCOEPARAM p{};
        p.version = version;
        p.FCMap[0] = uint8_t(map >> 16);
        p.FCMap[1] = uint8_t(map >> 8);
        p.FCMap[2] = uint8_t(map);
        p.VLanValid = valid;
        p.VLanId = vlan;
        return run(kPortFcoeSetParams, {reinterpret_cast<uint8_t *>(&p), sizeof p});
    }
    int32_t dump(uint32_t region, uint32_t offset, std::vector<uint8_t> &buf, uint32_t &written,
                 uint32_t type = KVD_DUMP_TYPE_REGION, uint32_t index = 0)
    {
        PortCommand cmd{fw, {buf.data(), buf.size()}};
        cmd.args[0] = type;
        cmd.args[1] = index;
        cmd.args[2] = region;
        cmd.args[3] = offset;
        const int32_t rc = port.run(kPortDumpRegion, cmd);
        written = cmd.written;
        return rc;
    }
    uint16_t qos_speed()
    {
        uint16_t s = 0xFFFF;
        EXPECT_EQ(run(kPortQosLinkSpeed, {reinterpret_cast<uint8_t *>(&s), sizeof s}), 0);
        return s;
    }
};

} // namespace

TEST(SimPort, FcoeParametersOnlyOnFcoeBoards)
{
    Box fc(make_board());
    KVD_FCOEPARAM p{};
    p.version = 1;
    EXPECT_EQ(fc.run(kPortFcoeGetParams, {reinterpret_cast<uint8_t *>(&p), sizeof p}), EOPNOTSUPP);
    EXPECT_EQ(fc.set_fcoe(kDefaultFcMap, 0, 0), EOPNOTSUPP);

    Box fcoe(make_board(Protocol::fcoe));
    p.version = 2;
    EXPECT_EQ(fcoe.run(kPortFcoeGetParams, {reinterpret_cast<uint8_t *>(&p), sizeof p}), EINVAL);
    p.version = 1;
    std::memset(p.reserved, 0xAA, sizeof p.reserved);
    ASSERT_EQ(fcoe.run(kPortFcoeGetParams, {reinterpret_cast<uint8_t *>(&p), sizeof p}), 0);
    EXPECT_EQ(p.reserved[0], 0);
    EXPECT_EQ(fcoe.set_fcoe(kDefaultFcMap, 0, 0, 0), EINVAL);
}

// The port logs in again after a change, and only where an FCF answers.
TEST(SimPort, FabricLoginFollowsVlanAndFcMap)
{
    Box b(make_board(Protocol::fcoe));
    ASSERT_TRUE(b.fw.link().up);
    const uint32_t tag = b.fw.link().event_tag;
    EXPECT_EQ(b.set_fcoe(kDefaultFcMap, 0, 0), 0); // nothing changed: no new login
    EXPECT_EQ(b.fw.link().event_tag, tag);

    EXPECT_EQ(b.set_fcoe(kDefaultFcMap, 1, kDefaultFcfVlan), 0); // same FCF, logs in again
    EXPECT_TRUE(b.fw.link().up);
    EXPECT_EQ(b.fw.link().event_tag, tag + 2);

    EXPECT_EQ(b.set_fcoe(kDefaultFcMap, 1, 4000), 0); // no FCF on VLAN 4000
    EXPECT_FALSE(b.port.link_allowed());
}

TEST(SimPort, PersistentLinkDownSurvivesEveryReset)
{
    Box b(make_board());
    ASSERT_EQ(b.run(kPortSetPersistLink, {}, 1), 0);
    EXPECT_FALSE(b.fw.link().up);
    const uint32_t ups = b.fw.link().up_count;
    for (uint32_t type : {KVD_RESET_SELECTIVE, KVD_RESET_COORDINATED, KVD_RESET_FIRMWARE}) {
        EXPECT_EQ(b.run(kPortResetAdapter, {}, type), 0) << type;
        EXPECT_FALSE(b.fw.link().up) << type;
    }
    EXPECT_EQ(b.fw.link().up_count, ups); // the link never came up in between
}

TEST(SimPort, StoredPersistenceHoldsTheLinkAtPowerOn)
{
    BoardConf s = make_board();
    s.port.persist_link_down = 1;
    Box b(s);
    EXPECT_FALSE(b.fw.link().up);
    EXPECT_EQ(b.qos_speed(), 0);
}

TEST(SimPort, BusyBoardRefusesWhatNeedsTheFirmware)
{
    Box b(make_board(Protocol::fcoe));
    b.fw.set_state(BoardState::offline);
    std::vector<uint8_t> buf(16);
    uint32_t n = 0;
    EXPECT_EQ(b.set_fcoe(kDefaultFcMap, 1, 5), EBUSY);
    EXPECT_EQ(b.run(kPortSetPersistLink, {}, 1), EBUSY);
    EXPECT_EQ(b.run(kPortResetAdapter, {}, 1), EBUSY);
    EXPECT_EQ(b.dump(kRegionDriver, 0, buf, n), EBUSY);
    EXPECT_EQ(b.run(kPortQosSetFlag, {}, 1), 0); // a driver setting only
}

// The driver region carries the settings as they stand: persistence, the
// FCP priority flag and, on FCoE, FC-MAP and VLAN.
TEST(SimPort, DriverRegionFollowsTheSettings)
{
    Box b(make_board(Protocol::fcoe));
    ASSERT_EQ(b.run(kPortQosSetFlag, {}, 1), 0);
    ASSERT_EQ(b.set_fcoe(0x0EFC01, 1, 0x123), 0);
    ASSERT_EQ(b.run(kPortSetPersistLink, {}, 1), 0);
    std::vector<uint8_t> buf(32);
    uint32_t n = 0;
    ASSERT_EQ(b.dump(kRegionDriver, 0, buf, n), 0);
    const std::vector<uint8_t> want = {'Q',  'D', 'R',  'V',  0,    1, 0,    0x13, // header
                                       0x01, 2,   0,    1,                         // persistence
                                       0x02, 4,   0,    0,    0,    1,             // FCP priority
                                       0x03, 6,   0x0E, 0xFC, 0x01, 1, 0x01, 0x23, // FCoE
                                       0xFF, 0xFF};
    EXPECT_EQ(std::vector<uint8_t>(buf.begin(), buf.begin() + want.size()), want);
}

// A driver region written whole is loaded into the settings: 16 list
// entries at most, records inside the records length and ending with the end
// record; records of other types are skipped and read back as written.
TEST(SimPort, DriverRegionWritesLoadIntoTheSettings)
{
    Box b(make_board(Protocol::fcoe));
    auto image = [](size_t entries, uint8_t extra_type) {
        const uint8_t head[] = {0x01, 2, 0, 0, 0x02, 4, 0, 0, 0, 1, extra_type, 1, 0x5a};
        const uint8_t rec[30] = {0x04, 28, 0x00, 0x21, 0x00, 0x07}; // valid, VLAN 7
        const size_t len = sizeof head + entries * sizeof rec + 1;
        std::vector<uint8_t> v(8 + len);
        std::memcpy(v.data(), "QDRV\0\1", 6);
        v[6] = uint8_t(len >> 8);
        v[7] = uint8_t(len);
        std::memcpy(&v[8], head, sizeof head);
        for (size_t i = 0; i < entries; ++i) {
            std::memcpy(&v[8 + sizeof head + i * sizeof rec], rec, sizeof rec);
            v[8 + sizeof head + i * sizeof rec + 6] = uint8_t(i); // priority
        }
        v.back() = 0xFF;
        return v;
    };
    auto conn_count = [&] {
        KVD_FCFCONNLIST l{};
        l.version = KVD_FCFCONN_VERSION;
        EXPECT_EQ(b.run(kPortFcoeGetConnList, {reinterpret_cast<uint8_t *>(&l), sizeof l}), 0);
        return l.numEntries;
    };
    std::vector<uint8_t> v = image(16, 0x7e);
    ASSERT_EQ(b.port.write_driver_region(b.fw, 0, v.data(), uint32_t(v.size())), 0);
    EXPECT_EQ(conn_count(), 16u);
    EXPECT_EQ(b.port.fcp_priority(), 1u);
    const std::vector<uint8_t> back = b.port.region(kRegionDriver);
    EXPECT_EQ(std::vector<uint8_t>(back.begin(), back.begin() + long(v.size())), v);
    v = image(17, 0x7e);
    EXPECT_EQ(b.port.write_driver_region(b.fw, 0, v.data(), uint32_t(v.size())), EINVAL);
    v = image(1, 0x7e);
    v[7] -= 1; // the end record falls outside the records length
    EXPECT_EQ(b.port.write_driver_region(b.fw, 0, v.data(), uint32_t(v.size())), EINVAL);
    v = image(1, 0x02); // an FCP priority record one byte long
    EXPECT_EQ(b.port.write_driver_region(b.fw, 0, v.data(), uint32_t(v.size())), EINVAL);
    // Records filling the whole region, the last a list entry with no value:
    // refused by its length, nothing read past the region.
    std::vector<uint8_t> full(2048, 0);
    std::memcpy(full.data(), "QDRV\0\1\x07\xf8", 8); // records length 2040
    for (size_t at = 8, i = 0; i < 8; ++i) {
        full[at] = 0x7e;
        full[at + 1] = i < 7 ? 255 : 237;
        at += 2 + full[at + 1];
    }
    full[2046] = 0x04;
    EXPECT_EQ(b.port.write_driver_region(b.fw, 0, full.data(), uint32_t(full.size())), EINVAL);
    EXPECT_EQ(b.port.write_driver_region(b.fw, 2047, v.data(), 1), 0);      // the last byte
    EXPECT_EQ(b.port.write_driver_region(b.fw, 2047, v.data(), 2), EINVAL); // past the region
    EXPECT_EQ(conn_count(), 16u);
    ASSERT_EQ(b.port.restore_driver_region(b.fw), 0);
    EXPECT_EQ(conn_count(), 0u);
    EXPECT_EQ(b.port.fcp_priority(), 0u);
}

TEST(SimPort, QosFlagAndSpeed)
{
    Box b(make_board());
    EXPECT_EQ(b.qos_speed(), 16);
    EXPECT_EQ(b.run(kPortQosSetFlag, {}, 2), EINVAL);
    ASSERT_EQ(b.run(kPortQosSetFlag, {}, 1), 0);
    EXPECT_EQ(b.run(kPortResetAdapter, {}, 3), 0);
    uint32_t flag = 0;
    ASSERT_EQ(b.run(kPortQosGetFlag, {reinterpret_cast<uint8_t *>(&flag), sizeof flag}), 0);
    EXPECT_EQ(flag, 1u); // survives the reset
}

TEST(SimPort, TableDispatch)
{
    Box b(make_board());
    EXPECT_EQ(b.run(0x99), ENOTTY);
    uint8_t one = 0;
    EXPECT_EQ(b.run(kPortQosGetFlag, {&one, 1}), EINVAL); // shorter than the flag
    // Dump requests other than a region read, or for another index.
    std::vector<uint8_t> buf(16);
    uint32_t n = 0;
    EXPECT_EQ(b.dump(kRegionDriver, 0, buf, n, 1), EINVAL);
    EXPECT_EQ(b.dump(kRegionDriver, 0, buf, n, KVD_DUMP_TYPE_REGION, 1), EINVAL);

    std::string errors;
    library_faults().parse("port:QOS_SET_FLAG@3=5:once,port:0x48=16", errors);
    ASSERT_TRUE(errors.empty()) << errors;
    EXPECT_EQ(b.run(kPortQosSetFlag, {}, 1), 5);
    EXPECT_EQ(b.run(kPortQosSetFlag, {}, 1), 0);
    EXPECT_EQ(b.run(kPortResetAdapter, {}, 1), 16);
    library_faults().parse("", errors);
}

TEST(SimPort, FleetSection)
{
    const Fleet f = fleet_ok(board_doc(R"("protocol": "fcoe", "sli_mode": 4, "port": {"fc_map": "0x0efc01",
        "vlan": 4094, "fcf_fc_map": "0x0efc01", "fcf_vlans": [1, 4094], "fcp_priority": 7, "persist_link_down": 1})"));
    const PortConf &p = f.boards.at(0).port;
    EXPECT_EQ(p.vlan_id, 4094);
    EXPECT_EQ(p.fcf_vlans, (std::vector<uint16_t>{1, 4094}));

    const std::string fcoe = R"("protocol": "fcoe", )";
    EXPECT_EQ(fleet_fault(board_doc(R"("port": {"vlan": 5})")),
              "t.json: boards[0].port.vlan: FCoE parameters on a Fibre Channel board");
    EXPECT_EQ(fleet_fault(board_doc(fcoe + R"("port": {"vlan": 0})")),
              "t.json: boards[0].port.vlan: VLAN 0 is not a VLAN (1..4094)");
    EXPECT_EQ(fleet_fault(board_doc(fcoe + R"("port": {"fcf_vlans": [1, 4095]})")),
              "t.json: boards[0].port.fcf_vlans[1]: value 0xfff out of range 0..0xffe");
    EXPECT_EQ(fleet_fault(board_doc(fcoe + R"("port": {"fc_map": "0x1000000"})")),
              "t.json: boards[0].port.fc_map: value 0x1000000 out of range 0..0xffffff");
    EXPECT_EQ(fleet_fault(board_doc(R"("port": {"persist_link_down": 1})")),
              "t.json: boards[0].port.persist_link_down: link-down persistence on a board without the "
              "persistLinkEnable feature");
    EXPECT_EQ(fleet_fault(board_doc(R"("sli_mode": 4, "port": {"persist_link_down": 2})")),
              "t.json: boards[0].port.persist_link_down: value 0x2 out of range 0..0x1");
    EXPECT_EQ(fleet_fault(board_doc(R"("port": {"speed": 2})")),
              "t.json: boards[0].port.speed: unknown field");
}

TEST(SimPort, DriverLogMaskTakesOnlyKnownBitsAndOutlivesResets)
{
    Box b(make_board());
    uint32_t mask = 0xffffffff;
    auto get = [&] { return b.run(kPortGetLogMask, {reinterpret_cast<uint8_t *>(&mask), sizeof mask}); };
    ASSERT_EQ(get(), 0);
    EXPECT_EQ(mask, 0u);
    EXPECT_EQ(b.run(kPortSetLogMask, {}, KVD_DRVLOG_ALL), 0);
    EXPECT_EQ(b.run(kPortSetLogMask, {}, KVD_DRVLOG_ALL + 1), EINVAL); // the first unknown bit
    b.fw.restart();
    ASSERT_EQ(get(), 0);
    EXPECT_EQ(mask, KVD_DRVLOG_ALL);
    uint8_t three[3];
    EXPECT_EQ(b.run(kPortGetLogMask, {three, sizeof three}), EINVAL); // no room for the mask
}
