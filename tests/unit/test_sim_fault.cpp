// Fault rules: syntax, how often a rule fires, and which calls it matches.
#include <gtest/gtest.h>

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

} // namespace

TEST(Fault, OnceCountAndAlways)
{
    FaultRules r;
    std::string errors;
    r.parse("GetAdapterAttributes=8:once,KVD_GetDrvInfo=-5,GetPortStatistics=0x10:2", errors);
    EXPECT_EQ(errors, "");
    EXPECT_EQ(r.count(), 3);

    EXPECT_EQ(r.match("GetAdapterAttributes", 0), 8);
    EXPECT_FALSE(r.match("GetAdapterAttributes", 0));

    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(r.match("KVD_GetDrvInfo", 1), -5);

    EXPECT_EQ(r.match("GetPortStatistics", 2), 16);
    EXPECT_EQ(r.match("GetPortStatistics", 3), 16);
    EXPECT_FALSE(r.match("GetPortStatistics", 2));

    EXPECT_FALSE(r.match("GetAdapterPortAttributes", 0));
}

TEST(Fault, BoardSelection)
{
    FaultRules r;
    std::string errors;
    r.parse("GetAdapterAttributes@1=3,KVD_GetLibVer=5", errors);
    EXPECT_EQ(errors, "");
    EXPECT_EQ(r.match("GetAdapterAttributes", 1), 3);
    EXPECT_FALSE(r.match("GetAdapterAttributes", 0));
    EXPECT_FALSE(r.match("GetAdapterAttributes", FaultRules::kNoBoard));
    // A rule without a board matches board-less calls and every board.
    EXPECT_EQ(r.match("KVD_GetLibVer", FaultRules::kNoBoard), 5);
    EXPECT_EQ(r.match("KVD_GetLibVer", 7), 5);
}

TEST(Fault, UsedUpRuleGivesWayToTheNext)
{
    FaultRules r;
    std::string errors;
    r.parse("KVD_IssueMboxWithRetry@0=1:once,KVD_IssueMboxWithRetry=16", errors);
    EXPECT_EQ(r.match("KVD_IssueMboxWithRetry", 0), 1);
    EXPECT_EQ(r.match("KVD_IssueMboxWithRetry", 0), 16);
    EXPECT_EQ(r.match("KVD_IssueMboxWithRetry", 0), 16);
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
    EXPECT_EQ(r.match("GetPortStatistics", 0), 6);
    EXPECT_FALSE(r.match("Foo", 0));

    // Parsing again replaces the rules; empty items are ignored.
    r.parse(",,", errors);
    EXPECT_EQ(r.count(), 0);
}
