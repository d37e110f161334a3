// The board's "asic" object in a fleet file: defaults and each bound.
#include <gtest/gtest.h>

#include <string>

#include "core/fleet.hpp"
#include "sim_test.hpp"

using namespace kvdsim;
using namespace kvdsim::test;

namespace
{

std::string doc(const std::string &asic, const std::string &kind = R"("protocol": "fcoe")")
{
    return R"({"boards": [{"board": 0, "wwpn": "10:00:06:4b:51:00:00:41", )" + kind +
           (asic.empty() ? "" : ", \"asic\": " + asic) + "}]}";
}

AsicConf conf_of(const std::string &text)
{
    const Fleet f = fleet_ok(text);
    return f.boards.empty() ? AsicConf{} : f.boards[0].asic;
}

} // namespace

TEST(AsicFleet, DefaultsFollowTheBoard)
{
    AsicConf a = conf_of(doc(""));
    EXPECT_EQ(a.mac0, (std::array<uint8_t, 6>{0x0a, 0x3c, 0x55, 0x00, 0x00, 0x41}));
    EXPECT_EQ(a.mac1[5], 0x42);
    EXPECT_EQ(a.logs.size(), 4u);
    EXPECT_TRUE(a.link_up);

    a = conf_of(doc(R"({"fw_type": "golden", "mac0": "00:0a:3c:55:01:02", "link_up": false,
                        "logs": [{"name": "only", "entries": 256, "entry_size": 256, "lines": ["x"]}]})"));
    EXPECT_EQ(a.fw_type, TARVO_FW_TYPE_GOLDEN);
    EXPECT_EQ(a.mac0[5], 0x02);
    EXPECT_FALSE(a.link_up);
    ASSERT_EQ(a.logs.size(), 1u);
    EXPECT_EQ(a.logs[0].capacity, 256);
    EXPECT_EQ(conf_of(doc(R"({"fw_type": "0x12345678"})")).fw_type, 0x12345678u);
    EXPECT_EQ(conf_of(doc(R"({"fw_type": 7})")).fw_type, 7u);
}

TEST(AsicFleet, EachFaultIsOneLine)
{
    EXPECT_EQ(fleet_fault(doc("{}", R"("protocol": "fc")")),
              "t.json: boards[0].asic: ASIC settings on a board without the Tarvo ASIC");
    EXPECT_EQ(fleet_fault(doc(R"({"colour": 1})")), "t.json: boards[0].asic.colour: unknown field");
    EXPECT_EQ(fleet_fault(doc(R"({"fw_type": "beta"})")),
              "t.json: boards[0].asic.fw_type: firmware type \"beta\" not operational, golden or diagnostic");
    EXPECT_EQ(fleet_fault(doc(R"({"mac0": "01:00:5e:00:00:01"})")),
              "t.json: boards[0].asic.mac0: MAC address \"01:00:5e:00:00:01\" is a group address");
    EXPECT_NE(fleet_fault(doc(R"({"mac1": "00:11:22:33:44"})")).find("not six colon-separated"),
              std::string::npos);
    EXPECT_NE(fleet_fault(doc(R"({"fcoe_format": "0x20000"})")).find("fcoe_format"), std::string::npos);
    EXPECT_NE(fleet_fault(doc(R"({"bb_credit": 0})")).find("BB credit 0"), std::string::npos);
    EXPECT_NE(fleet_fault(doc(R"({"frame_size": 2116})")).find("frame_size"), std::string::npos);
    EXPECT_NE(fleet_fault(doc(R"({"memory_size": 252})")).find("memory size"), std::string::npos);
    EXPECT_NE(fleet_fault(doc(R"({"memory_size": 1048580})")).find("memory_size"), std::string::npos);
    conf_of(doc(R"({"memory_size": 256})"));
    conf_of(doc(R"({"memory_size": 1048576})"));
}

TEST(AsicFleet, LogBounds)
{
    auto log = [](const std::string &fields) { return doc(R"({"logs": [{"name": "l", )" + fields + "}]}"); };
    conf_of(log(R"("entries": 0, "entry_size": 8)"));
    EXPECT_NE(fleet_fault(log(R"("entry_size": 7)")).find("entry size 7 below 8"), std::string::npos);
    EXPECT_NE(fleet_fault(log(R"("entry_size": 257)")).find("entry_size"), std::string::npos);
    EXPECT_NE(fleet_fault(log(R"("entries": 257)")).find("entries"), std::string::npos);
    // A line must fit its entry with the terminator.
    conf_of(log(R"("entry_size": 8, "lines": ["1234567"])"));
    EXPECT_NE(fleet_fault(log(R"("entry_size": 8, "lines": ["12345678"])")).find("lines[0]"),
              std::string::npos);
    EXPECT_NE(fleet_fault(doc(R"({"logs": [{"entries": 2}]})")).find("name"), std::string::npos);
    std::string many = R"({"logs": [)";
    for (int i = 0; i < 17; ++i)
        many += std::string(i ? "," : "") + R"({"name": "l"})";
    EXPECT_NE(fleet_fault(doc(many + "]}")).find("17 logs, at most 16"), std::string::npos);
}
