// Fault rules: syntax, how often a rule fires, and which calls it matches.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "core/fault.hpp"

using namespace kvdsim;

namespace
{

int lines(const std::string &s)
{
    int n = 0;
    for (char c : s)
        n += c == '\n';
    return n;
}

// The result a call rule answers with, if one fires.
std::optional<int64_t> fired(FaultRules &r, const char *name, int32_t board)
{
    auto hit = r.match(name, board);
    return hit ? std::optional<int64_t>(hit->result) : std::nullopt;
}

} // namespace

TEST(Fault, OnceCountAndAlways)
{
    FaultRules r;
    std::string errors;
    r.parse("GetAdapterAttributes=8:once,KVD_GetDrvInfo=-5,GetPortStatistics=0x10:2", errors);
    EXPECT_EQ(errors, "");
    EXPECT_EQ(r.count(), 3);

    EXPECT_EQ(fired(r, "GetAdapterAttributes", 0), 8);
    EXPECT_FALSE(fired(r, "GetAdapterAttributes", 0));

    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(fired(r, "KVD_GetDrvInfo", 1), -5);

    EXPECT_EQ(fired(r, "GetPortStatistics", 2), 16);
    EXPECT_EQ(fired(r, "GetPortStatistics", 3), 16);
    EXPECT_FALSE(fired(r, "GetPortStatistics", 2));

    EXPECT_FALSE(fired(r, "GetAdapterPortAttributes", 0));
}

TEST(Fault, BoardSelection)
{
    FaultRules r;
    std::string errors;
    r.parse("GetAdapterAttributes@1=3,KVD_GetLibVer=5", errors);
    EXPECT_EQ(errors, "");
    EXPECT_EQ(fired(r, "GetAdapterAttributes", 1), 3);
    EXPECT_FALSE(fired(r, "GetAdapterAttributes", 0));
    EXPECT_FALSE(fired(r, "GetAdapterAttributes", FaultRules::kNoBoard));
    // A rule without a board matches board-less calls and every board.
    EXPECT_EQ(fired(r, "KVD_GetLibVer", FaultRules::kNoBoard), 5);
    EXPECT_EQ(fired(r, "KVD_GetLibVer", 7), 5);
}

TEST(Fault, UsedUpRuleGivesWayToTheNext)
{
    FaultRules r;
    std::string errors;
    r.parse("KVD_IssueMboxWithRetry@0=1:once,KVD_IssueMboxWithRetry=16", errors);
    EXPECT_EQ(fired(r, "KVD_IssueMboxWithRetry", 0), 1);
    EXPECT_EQ(fired(r, "KVD_IssueMboxWithRetry", 0), 16);
    EXPECT_EQ(fired(r, "KVD_IssueMboxWithRetry", 0), 16);
}

TEST(Fault, MalformedRulesAreReportedAndSkipped)
{
    FaultRules r;
    std::string errors;
    r.parse("NoValue,=3,Foo@32=1,Foo@x=1,Foo=abc,Foo=1:0,Foo=1:twice,1Foo=2,Foo=99999999999,"
            "GetPortStatistics=6",
            errors);
    EXPECT_EQ(lines(errors), 9) << errors;
    EXPECT_NE(errors.find("libkvd: KVD_SIM_FAULT: bad rule \"Foo@32=1\": board not 0..31\n"),
              std::string::npos)
        << errors;
    EXPECT_NE(errors.find("\"Foo=1:twice\""), std::string::npos);
    EXPECT_EQ(r.count(), 1);
    EXPECT_EQ(fired(r, "GetPortStatistics", 0), 6);
    EXPECT_FALSE(fired(r, "Foo", 0));

    // Parsing again replaces the rules; empty items are ignored.
    r.parse(",,", errors);
    EXPECT_EQ(r.count(), 0);
}

TEST(Fault, CommandRulesByNameOrCodeAndTheirPositions)
{
    FaultRules r;
    std::string errors;
    r.parse("GetAdapterAttributes=8,mbox:READ_SPARM@0=0x3:once,mbox:0x11=16,asic:0x11=5", errors);
    EXPECT_EQ(errors, "");
    // A command rule never answers for a library call of the same name.
    EXPECT_FALSE(r.match("mbox:READ_SPARM", 0));

    auto hit = r.match_command("mbox", 0x0d, "READ_SPARM", 0);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->result, 3);
    EXPECT_EQ(hit->rule, 2); // counted from 1 in the text
    EXPECT_FALSE(r.match_command("mbox", 0x0d, "READ_SPARM", 0)) << "once";
    EXPECT_FALSE(r.match_command("mbox", 0x8d, "READ_SPARM64", 0)) << "a name matches whole";

    // By code, decimal or hex, on every board; another engine's code is not ours.
    hit = r.match_command("mbox", 17, "READ_REV", 4);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->result, 16);
    EXPECT_EQ(hit->rule, 3);
    EXPECT_EQ(r.match_command("asic", 0x11, "GET_INIT", 1)->result, 5);
    EXPECT_FALSE(r.match_command("sli4", 0x11, "ANY", 1));
    EXPECT_FALSE(r.match_command("mbo", 0x11, "READ_REV", 1)) << "the engine name matches whole";
    EXPECT_EQ(r.match("GetAdapterAttributes", 0)->rule, 1);
}
