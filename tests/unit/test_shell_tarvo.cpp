// The tarvo family's own helpers: the checksum, the byte-order helpers, the
// transport error line, the file-name cut of
// download, the words beyond the count and the bounds of the diagnostic log.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

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

// A status with the top bit set prints as a signed number.
TEST(TarvoTransport, StatusPrintsSigned)
{
    CaptureStdout();
    tvoParseErr(0x80000000u);
    EXPECT_EQ(GetCapturedStdout(), "Tarvo command error. error=-2147483648.\n");
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

// Words beyond margc are absent even when the vector still holds an older
// line's token there: they fall back on the current WWN or fail.
TEST(TarvoWords, TokensBeyondTheCountAreAbsent)
{
    char w0[] = "tarvo", w1[] = "createvl", w2[] = "0", stale[] = "2000000000000001";
    int32_t saved_margc = margc;
    int32_t saved_set = cur_wwn_set;
    HBA_WWN saved_wwn = cur_wwn;
    char *saved[5];
    memcpy(saved, margv, sizeof(saved));
    margc = 3;
    margv[0] = w0;
    margv[1] = w1;
    margv[2] = w2;
    margv[3] = stale;
    margv[4] = stale;

    HBA_WWN wwn;
    memset(&wwn, 0, sizeof(wwn));
    cur_wwn_set = 0;
    EXPECT_EQ(tvo_wwn_arg(&wwn, 2), 0); // "0" is no WWN
    EXPECT_EQ(tvo_wwn_arg(&wwn, 3), 0);
    EXPECT_STREQ(tvo_token(3), "(null)");
    EXPECT_STREQ(tvo_token(2), "0");
    cur_wwn_set = 1;
    memset(cur_wwn.wwn, 0x5a, sizeof(cur_wwn.wwn));
    EXPECT_EQ(tvo_wwn_arg(&wwn, 3), 1);
    EXPECT_EQ(memcmp(wwn.wwn, cur_wwn.wwn, 8), 0);
    margc = 4;
    EXPECT_EQ(tvo_wwn_arg(&wwn, 3), 1);
    EXPECT_EQ(wwn.wwn[7], 1);

    // Without a response area createvl says so and sends nothing.
    margc = 3;
    CaptureStdout();
    tvocreatevl(&tarvoinfo[35], nullptr);
    EXPECT_EQ(GetCapturedStdout(), "Unable to allocate rsp buffer memory 4.\n");

    margc = saved_margc;
    memcpy(margv, saved, sizeof(saved));
    cur_wwn_set = saved_set;
    cur_wwn = saved_wwn;
}

// The diagnostic report stops at the reply's end whatever the test count
// says, and names statuses it does not know by their number.
TEST(TarvoDiagLog, EntriesStayInsideTheReply)
{
    // Header, then entries (status_length 1 word: 4 text bytes) 64 bytes apart.
    const uint32_t head[7] = {0, 0, 9, 1, 2, 2, 0x1234};
    std::vector<uint8_t> reply(28 + 64 + 8);
    memcpy(reply.data(), head, sizeof(head));
    const uint32_t ok = 0xD0000001u, odd = 0x77;
    memcpy(reply.data() + 28, &ok, 4);
    memcpy(reply.data() + 32, "abc", 4);
    memcpy(reply.data() + 92, &odd, 4);
    memcpy(reply.data() + 96, "wxyz", 4); // unterminated, at the very end
    CaptureStdout();
    tvo_print_dlog(reply.data(), (uint32_t)reply.size());
    EXPECT_EQ(GetCapturedStdout(), "       Number of tests: 9\n"
                                   "         Status length: 4 bytes\n"
                                   "  Requested loop count: 2\n"
                                   "  Completed loop count: 2\n"
                                   "          Test summary: unknown(1234)\n"
                                   "\n"
                                   "Results:\n"
                                   "-----------------------------------------------------"
                                   "   1: Success: abc\n"
                                   "   2: Status(77): wxyz\n"
                                   "\n");
    // Too short for the header: nothing at all.
    CaptureStdout();
    tvo_print_dlog(reply.data(), 27);
    EXPECT_EQ(GetCapturedStdout(), "");
}
