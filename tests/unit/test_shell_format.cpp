// hexdump layout and the WWN, MAC and VLAN parsers and formatter.
#include <gtest/gtest.h>

#include <string>

#include "kvd.h"

using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

namespace
{

std::string dump(const void *bytes, uint32_t length)
{
    CaptureStdout();
    hexdump(bytes, length);
    fflush(stdout);
    return GetCapturedStdout();
}

std::string wwn_text(const HBA_WWN &wwn)
{
    char text[24];
    kvd_mac_sprintf(wwn.wwn, text);
    return text;
}

TEST(Hexdump, ShortLastLineIsPaddedUnderTheAsciiColumn)
{
    EXPECT_EQ(dump("", 0), "");
    const char *text = "ABCDEFGHIJKLMNOP\x01\x7f~ ";
    EXPECT_EQ(dump(text, 20), "\n   0: 41424344  45464748  494a4b4c  4d4e4f50  ABCDEFGHIJKLMNOP"
                              "\n  10: 017f7e20                                ..~ \n");
}

TEST(Hexdump, OffsetsGrowPastFourDigits)
{
    static uint8_t big[0x10004];
    std::string out = dump(big, sizeof(big));
    EXPECT_NE(out.find("\nfff0: 00000000"), std::string::npos);
    EXPECT_NE(out.find("\n10000: 00000000                                ....\n"), std::string::npos);
}

TEST(Wwn, BareAndColonFormsGiveTheSameName)
{
    HBA_WWN a{}, b{};
    ASSERT_EQ(kvd_atowwn(&a, "10000006064B51f1"), 1); // printed in lower case
    ASSERT_EQ(kvd_atowwn(&b, "10:00:00:06:06:4b:51:f1"), 1);
    EXPECT_EQ(wwn_text(a), "10:00:00:06:06:4b:51:f1");
    EXPECT_EQ(wwn_text(b), wwn_text(a));
}

TEST(Wwn, NonHexDigitsReadAsZero)
{
    HBA_WWN w{};
    ASSERT_EQ(kvd_atowwn(&w, "zz00000006zb51g1"), 1);
    EXPECT_EQ(wwn_text(w), "00:00:00:00:06:0b:51:01");
}

TEST(Wwn, WrongLengthOrMissingColonIsRefusedWithTheLengthMessage)
{
    HBA_WWN w{};
    CaptureStdout();
    EXPECT_EQ(kvd_atowwn(&w, "10-00-00-06-4b-51-a0-f1"), 0);
    EXPECT_EQ(kvd_atowwn(&w, "1234"), 0);
    EXPECT_EQ(kvd_atowwn(&w, ""), 0);
    fflush(stdout);
    EXPECT_EQ(GetCapturedStdout(), "arg 10-00-00-06-4b-51-a0-f1 - arg length 23 or missing ':'\n"
                                   "arg 1234 - arg length 4 or missing ':'\n"
                                   "arg  - arg length 0 or missing ':'\n");
}

TEST(Mac, SitsRightAlignedInEightBytes)
{
    uint8_t mac[8];
    memset(mac, 0xff, sizeof(mac));
    ASSERT_EQ(kvd_atomac(mac, "0e:fc:00:4B:51:a0"), 1);
    const uint8_t want[8] = {0, 0, 0x0e, 0xfc, 0x00, 0x4b, 0x51, 0xa0};
    EXPECT_EQ(memcmp(mac, want, 8), 0);
}

TEST(Mac, BadTextIsReportedAndClearsTheField)
{
    uint8_t mac[8];
    memset(mac, 0xff, sizeof(mac));
    CaptureStdout();
    EXPECT_EQ(kvd_atomac(mac, "0e:fc:00-4b:51:a0"), 0);
    EXPECT_EQ(kvd_atomac(mac, "0efc004b51a0"), 0);
    fflush(stdout);
    EXPECT_EQ(GetCapturedStdout(), "Invalid MAC address: (00-4b:51:a0)\n"
                                   "Must be of the form: (XX:XX:XX:XX:XX:XX)\n\n"
                                   "Invalid MAC address: (0efc004b51a0)\n"
                                   "Must be of the form: (XX:XX:XX:XX:XX:XX)\n\n");
    const uint8_t zero[8] = {};
    EXPECT_EQ(memcmp(mac, zero, 8), 0);
}

TEST(Vlan, FourDigitsOnly)
{
    uint8_t vlan[2] = {};
    EXPECT_EQ(kvd_atovlanid(vlan, "0a1F"), 1);
    EXPECT_EQ(vlan[0], 0x0a);
    EXPECT_EQ(vlan[1], 0x1f);
    EXPECT_EQ(kvd_atovlanid(vlan, "a1F"), 0);
    EXPECT_EQ(kvd_atovlanid(vlan, "00a1F"), 0);
}

} // namespace
