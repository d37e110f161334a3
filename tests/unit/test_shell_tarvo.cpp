// The tarvo family's own helpers: the checksum, the byte-order helpers, the
// sub-command table and the transport error lines, and the file-name cut of
// download.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tarvo/tarvo.h"

using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

TEST(TarvoChecksum, WholeWordsOnlyAndNothingForBadArguments)
{
    const uint32_t words[3] = {0x11111111, 0x22222222, 0x44444444};
    EXPECT_EQ(tvochksum(words, 12), 0x77777777u);
    EXPECT_EQ(tvochksum(words, 11), 0x33333333u); // a trailing part-word is left out
    EXPECT_EQ(tvochksum(words, 4), 0x11111111u);
    EXPECT_EQ(tvochksum(words, 3), 0u);
    EXPECT_EQ(tvochksum(words, 0), 0u);
    EXPECT_EQ(tvochksum(words, -1), 0u);
    EXPECT_EQ(tvochksum(nullptr, 12), 0u);
    // An unaligned buffer gives the same words.
    uint8_t bytes[13] = {0, 1, 0, 0, 0, 2, 0, 0, 0};
    EXPECT_EQ(tvochksum(bytes + 1, 8), 0x00000003u);
}

TEST(TarvoByteOrder, Swap32LeavesTheTailAndSwap64ReversesAll)
{
    uint8_t b[7] = {1, 2, 3, 4, 5, 6, 7};
    swap32_buffer(b, 7);
    EXPECT_EQ(memcmp(b, "\x04\x03\x02\x01\x05\x06\x07", 7), 0);
    swap32_buffer(b, 3);
    EXPECT_EQ(b[0], 4);
    swap32_buffer(nullptr, 8);

    uint8_t mac[8] = {0, 0, 0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
    swap64_addr(mac);
    EXPECT_EQ(memcmp(mac, "\x55\x44\x33\x22\x11\x00\x00\x00", 8), 0);
    swap64_addr(mac);
    EXPECT_EQ(mac[7], 0x55);
}

TEST(TarvoTable, FortyTwoWordsInvalFirst)
{
    ASSERT_EQ(tarvoinfo_array_size, 42);
    EXPECT_STREQ(tarvoinfo[0].c_string, "inval");
    EXPECT_STREQ(tarvoinfo[1].c_string, "init");
    EXPECT_STREQ(tarvoinfo[17].c_string, "paniclog");
    EXPECT_STREQ(tarvoinfo[41].c_string, "getDcbxMode");
}

TEST(TarvoTransport, OneLinePerStatus)
{
    CaptureStdout();
    for (uint32_t st : {1u, 2u, 3u, 4u, 77u, 88u, 99u, 0x80000000u})
        tvoParseErr(st);
    EXPECT_EQ(GetCapturedStdout(), "Tarvo command error. General Error.\n"
                                   "Tarvo command error. error=2.\n"
                                   "Tarvo command error. Response buffer overrun.\n"
                                   "Tarvo command error. Invalid adapter.\n"
                                   "Tarvo command error. Invalid board id.\n"
                                   "Tarvo command error. Link down.\n"
                                   "Tarvo command error. Timeout.\n"
                                   "Tarvo command error. error=-2147483648.\n");
}

// The name typed is cut to 512 characters before the file is opened.
static std::string open_failure(size_t name_length)
{
    std::string name(name_length, 'n');
    char w0[] = "tarvo", w1[] = "download", w2[] = "-o";
    int32_t saved_margc = margc;
    char *saved[4];
    memcpy(saved, margv, sizeof(saved));
    margc = 4;
    margv[0] = w0;
    margv[1] = w1;
    margv[2] = w2;
    margv[3] = name.data();
    tarvo_rsp_t rsp;
    CaptureStdout();
    int32_t rc = tvodownload(&tarvoinfo[2], &rsp);
    std::string out = GetCapturedStdout();
    margc = saved_margc;
    memcpy(margv, saved, sizeof(saved));
    EXPECT_EQ(rc, 1);
    return out;
}

TEST(TarvoDownload, FileNameIsCutTo512)
{
    EXPECT_EQ(open_failure(511), "Error: Unable to open <" + std::string(511, 'n') + ">.\n");
    EXPECT_EQ(open_failure(512), "Error: Unable to open <" + std::string(512, 'n') + ">.\n");
    EXPECT_EQ(open_failure(513), "Error: Unable to open <" + std::string(512, 'n') + ">.\n");
}
