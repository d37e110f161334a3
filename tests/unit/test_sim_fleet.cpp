// Fleet reader: the embedded default fleet, derived defaults, and the one-line
// message of each kind of fault.
#include <gtest/gtest.h>

#include <string>

#include "core/fleet.hpp"
#include "core/state.hpp"
#include "kvd_attr.h"
#include "sim_test.hpp"

using namespace kvdsim;
using namespace kvdsim::test;

namespace
{

const char *const kWwpn = "10:00:06:4b:51:00:00:01";

std::string doc(const std::string &fields)
{
    return board_doc(fields, kWwpn);
}

std::string wwn_text(const Wwn &w)
{
    char buf[32];
    snprintf(buf, sizeof buf, "%02x:%02x:%02x:%02x:%02x:%02x:%02x:%02x", w[0], w[1], w[2], w[3], w[4], w[5],
             w[6], w[7]);
    return buf;
}

} // namespace

TEST(Fleet, DefaultFleetHasTheThreeBoards)
{
    Fleet f = fleet_ok(default_fleet_json());
    EXPECT_EQ(f.driver_name, "vexa");
    ASSERT_EQ(f.boards.size(), 3u);
    const BoardConf &fc = f.boards[0];
    int targets = 0;
    for (const RemotePort &p : fc.remote_ports) {
        EXPECT_NE(p.did & 0xfffff0, 0xfffff0u) << "well-known addresses are not ports";
        if (p.fcp_target) {
            ++targets;
            EXPECT_EQ(p.os_device.rfind("/dev/sg", 0), 0u);
            EXPECT_GE(p.scsi_target, 0);
        }
    }
    EXPECT_GE(targets, 2);
    EXPECT_TRUE(f.boards[1].tarvo);
    EXPECT_EQ(f.boards[2].sli_mode, 4);
}

TEST(Fleet, DefaultsFollowTheBoardKind)
{
    Fleet f = fleet_ok(doc(""));
    ASSERT_EQ(f.boards.size(), 1u);
    const BoardConf &b = f.boards[0];
    EXPECT_EQ(wwn_text(b.wwnn), "20:00:06:4b:51:00:00:01");
    EXPECT_FALSE(b.object_store);
    EXPECT_EQ(b.features, KVD_FTR_DIAGS | KVD_FTR_LUN_MAPPING | KVD_FTR_DHCHAP | KVD_FTR_NPIV | KVD_FTR_SD);
    EXPECT_EQ(b.revision.op_fw_name, b.firmware);

    const Fleet fcoe = fleet_ok(doc(R"("protocol": "fcoe")"));
    const BoardConf &cna = fcoe.boards.at(0);
    EXPECT_TRUE(cna.tarvo);
    EXPECT_EQ(cna.speed, 0x4u);
    EXPECT_NE(cna.features & KVD_FTR_FCOE, 0u);

    const Fleet sli4 = fleet_ok(doc(R"("sli_mode": 4)"));
    const BoardConf &s4 = sli4.boards.at(0);
    EXPECT_EQ(s4.if_type, 2);
    EXPECT_TRUE(s4.object_store);
    EXPECT_NE(s4.features & KVD_FTR_SLI_CONFIG_EXT, 0u);
    EXPECT_EQ(s4.revision.arm_fw_name, s4.firmware);

    EXPECT_EQ(fleet_ok(doc(R"("sli_mode": 2)")).boards.at(0).features & KVD_FTR_NPIV, 0u);

    const Fleet loops = fleet_ok(doc(R"("hard_alpa": "0xe8", "link": {"topology": "loop"})"));
    const BoardConf &loop = loops.boards.at(0);
    EXPECT_EQ(loop.alpa, 0xe8);
    EXPECT_EQ(loop.did, 0xe8u);
}

TEST(Fleet, ValuesInTheirSeveralForms)
{
    const Fleet f = fleet_ok(doc(R"("pci": {"device_id": "0xF123", "bus": 130}, "features": "0x211",
                              "link": {"speed": "0x20", "supported_speeds": "0x38"},
                              "remote_ports": [{"wwpn": "2100064b51d00001", "did": "0x010300", "scsi_target": -1}])"));
    const BoardConf &b = f.boards.at(0);
    EXPECT_EQ(b.device_id, 0xf123);
    EXPECT_EQ(b.bus, 130u);
    EXPECT_EQ(b.supported_speeds, 0x38u);
    ASSERT_EQ(b.remote_ports.size(), 1u);
    EXPECT_EQ(wwn_text(b.remote_ports[0].wwpn), "21:00:06:4b:51:d0:00:01");
    EXPECT_EQ(b.remote_ports[0].did, 0x010300u);

    Fleet gaps = fleet_ok(R"({"boards": [{"board": 7, "wwpn": "10:00:06:4b:51:00:00:07"},
                                         {"board": 2, "wwpn": "10:00:06:4b:51:00:00:02"}]})");
    ASSERT_EQ(gaps.boards.size(), 2u);
    EXPECT_EQ(gaps.boards[0].number, 2u);
    EXPECT_EQ(gaps.boards[1].number, 7u);
    EXPECT_TRUE(fleet_ok("{}").boards.empty());
}

TEST(Fleet, EachFaultIsOneLineWithItsPlace)
{
    struct Case {
        std::string doc;
        std::string message;
    };
    const std::string w = std::string("\"") + kWwpn + "\"";
    const Case cases[] = {
        {doc(R"("colour": "blue")"), "t.json: boards[0].colour: unknown field"},
        {R"({"boards": [], "drivers": 1})", "t.json: drivers: unknown field"},
        {doc(R"("irq": "many")"), "t.json: boards[0].irq: bad number \"many\""},
        {doc(R"("online": 1)"), "t.json: boards[0].online: expected true or false, found an integer"},
        {doc(R"("pci": {"vendor_id": "0x12345"})"),
         "t.json: boards[0].pci.vendor_id: value 0x12345 out of range 0..0xffff"},
        {doc(R"("wwnn": "10:00:06:4b:51:a0:00")"),
         "t.json: boards[0].wwnn: bad WWN \"10:00:06:4b:51:a0:00\" (want 8 hex pairs like "
         "10:00:06:4b:51:a0:00:10)"},
        {R"({"boards": [{"board": 32, "wwpn": )" + w + "}]}",
         "t.json: boards[0].board: board number 32 out of range 0..31"},
        {R"({"boards": [{"board": 1, "wwpn": )" + w + R"(}, {"board": 1, "wwpn": )" + w + "}]}",
         "t.json: boards[1].board: duplicate board 1"},
        {doc(R"("sli_mode": 5)"), "t.json: boards[0].sli_mode: SLI mode 5 not 2, 3 or 4"},
        {doc(R"("if_type": 2)"), "t.json: boards[0].if_type: interface type given on an SLI-3 board"},
        {doc(R"("firmware": "0123456789abcdef0123456789abcdef")"),
         "t.json: boards[0].firmware: text of 32 bytes longer than 31"},
        {R"({"driver_version": "0123456789abcdef"})",
         "t.json: driver_version: text of 16 bytes longer than 15"},
        {doc(R"("revision": {"op_fw_name": "0123456789abcdefg"})"),
         "t.json: boards[0].revision.op_fw_name: text of 17 bytes longer than 16"},
        {doc(R"("remote_ports": [{"wwpn": "21:00:06:4b:51:d0:00:01", "did": 1,
                                       "os_device": "/dev/disk/by-path/abcdefghijklmn"}])"),
         "t.json: boards[0].remote_ports[0].os_device: text of 32 bytes longer than 31"},
        {doc(R"("link": {"speed": 7})"),
         "t.json: boards[0].link.speed: no link speed of 7 Gb (known: 1 2 4 8 10 16 20 32 40 64 128)"},
        {doc(R"("link": {"speed": 16, "supported_speeds": [4, 8]})"),
         "t.json: boards[0].link.speed: speed 0x20 not among the supported speeds 0x18"},
        {doc(R"("protocol": "ib")"), "t.json: boards[0].protocol: protocol \"ib\" not \"fc\" or \"fcoe\""},
        {R"({"boards": [{"board": 0}]})", "t.json: boards[0]: missing field \"wwpn\""},
        {R"({"boards": {}})", "t.json: boards: expected an array, found an object"},
        {"[1]", "t.json: top level: expected an object, found an array"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(fleet_fault(c.doc), c.message) << c.doc;
}

TEST(Fleet, SyntaxErrorsGiveThePosition)
{
    std::string e = fleet_fault("{\"boards\": [\n  {\"board\": 0,,}\n]}");
    EXPECT_EQ(e.rfind("t.json: line 2, column ", 0), 0u) << e;
    EXPECT_EQ(e.find("json.exception"), std::string::npos) << e;
}

TEST(Fleet, WwnText)
{
    Wwn w{};
    EXPECT_TRUE(parse_wwn("10:00:06:4B:51:a0:00:10", w));
    EXPECT_EQ(w, (Wwn{0x10, 0x00, 0x06, 0x4b, 0x51, 0xa0, 0x00, 0x10}));
    EXPECT_TRUE(parse_wwn("2000064b51a00010", w));
    EXPECT_EQ(w[0], 0x20);
    for (const char *bad : {"", "10:00:06:4b:51:a0:00:1g", "10-00-06-4b-51-a0-00-10", "1000064b51a0001",
                            "10:00:06:4b:51:a0:0010"})
        EXPECT_FALSE(parse_wwn(bad, w)) << bad;
}

TEST(Fleet, FileLoading)
{
    std::string error;
    auto f = read_fleet_file(nullptr, error);
    ASSERT_TRUE(f) << error;
    EXPECT_EQ(f->boards.size(), 3u);
    EXPECT_FALSE(read_fleet_file("/nonexistent/fleet.json", error));
    EXPECT_EQ(error, "/nonexistent/fleet.json: cannot open: No such file or directory");
}
