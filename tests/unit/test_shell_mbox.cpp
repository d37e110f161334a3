// The mailbox family's record set-up where a transcript cannot see it: the
// ring-mask bound of "cfgring" and the board check of the issue wrappers.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "kvd.h"

namespace
{

// Feeds `input` to the shell's standard input for the life of the object.
struct Answers {
    FILE *saved = stdin;
    std::string text;
    explicit Answers(std::string input) : text(std::move(input))
    {
        stdin = fmemopen(text.data(), text.size(), "r");
    }
    ~Answers()
    {
        fclose(stdin);
        stdin = saved;
    }
};

cmdinfo *mbox_row(const char *word)
{
    for (int i = 1; i < g_mboxinfo_array_size; i++)
        if (strcmp(mboxinfo[i].c_string, word) == 0)
            return &mboxinfo[i];
    return nullptr;
}

// A record with guard bytes on both sides, as one object.
struct Guarded {
    uint8_t before[64];
    MAILBOX mb;
    uint8_t after[64];
};

struct MboxRecord : testing::Test {
    uint32_t saved_brds = kvd_pci_brds;
    int32_t saved_board = cur_board;
    Guarded g;
    void SetUp() override
    {
        // No board at all: every issue stops in the wrapper with result 2.
        kvd_pci_brds = 0;
        cur_board = 0;
        memset(&g, 0xA5, sizeof(g));
        memset(&g.mb, 0, sizeof(g.mb));
    }
    void TearDown() override
    {
        kvd_pci_brds = saved_brds;
        cur_board = saved_board;
    }
    uint8_t byte(size_t offset) const
    {
        return reinterpret_cast<const uint8_t *>(&g.mb)[offset];
    }
    void expect_guards_intact() const
    {
        for (uint8_t b : g.before)
            ASSERT_EQ(b, 0xA5);
        for (uint8_t b : g.after)
            ASSERT_EQ(b, 0xA5);
    }
};

TEST_F(MboxRecord, RingMasksStopAtTheEndOfTheRecord)
{
    // 255 masks asked for; answers for all of them are waiting.
    std::string input = "3\n255\n";
    for (int i = 0; i < 255; i++)
        input += std::to_string(i + 1) + "\n" + std::to_string(200 - (i % 100)) + "\n";
    Answers answers(input);

    testing::internal::CaptureStdout();
    int32_t rc = mbox_row("cfgring")->c_routine(mbox_row("cfgring"), &g.mb);
    std::string out = testing::internal::GetCapturedStdout();

    EXPECT_EQ(rc, 0);
    expect_guards_intact();
    EXPECT_EQ(g.mb.mbxCommand, MBX_CONFIG_RING);
    EXPECT_EQ(g.mb.un.varCfgRing.ring, 3u);
    EXPECT_EQ(g.mb.un.varCfgRing.numMask, 255u);
    EXPECT_EQ(g.mb.un.varCfgRing.recvNotify, 1u);
    // 61 entries fit from byte 12 to byte 255, the last one ending exactly
    // at the end of the record.
    for (int i = 0; i < 61; i++) {
        size_t at = 12 + 4 * (size_t)i;
        ASSERT_EQ(byte(at), 0xFF) << i;
        ASSERT_EQ(byte(at + 1), (uint8_t)(i + 1)) << i;
        ASSERT_EQ(byte(at + 2), 0xFF) << i;
        ASSERT_EQ(byte(at + 3), (uint8_t)(200 - (i % 100))) << i;
    }
    EXPECT_NE(out.find("Mask 60\n"), std::string::npos);
    EXPECT_EQ(out.find("Mask 61\n"), std::string::npos);
    const std::string tail = "Mask 60\nrctl: type: IssueMbox error 2\n";
    ASSERT_GE(out.size(), tail.size());
    EXPECT_EQ(out.substr(out.size() - tail.size()), tail);
    // The 62nd mask was not asked for: its answer is still unread.
    EXPECT_EQ(getint("next"), 62);
}

TEST_F(MboxRecord, MaskCountIsEightBitsAndZeroAsksForNone)
{
    Answers answers("1\n256\n7\n8\n");

    testing::internal::CaptureStdout();
    mbox_row("cfgring")->c_routine(mbox_row("cfgring"), &g.mb);
    std::string out = testing::internal::GetCapturedStdout();

    EXPECT_EQ(out, "Ring: num masks: IssueMbox error 2\n");
    EXPECT_EQ(g.mb.un.varCfgRing.numMask, 0u);
    for (size_t at = 12; at < sizeof(MAILBOX); at++)
        ASSERT_EQ(byte(at), 0) << at;
    EXPECT_EQ(getint("next"), 7);
}

TEST_F(MboxRecord, WrappersRefuseBoardsTheLibraryDidNotReport)
{
    kvd_pci_brds = 2;
    EXPECT_EQ(kvd_IssueMbox(2, &g.mb, 32, 64), 2);
    EXPECT_EQ(kvd_IssueMbox(0xFFFFFFFFu, &g.mb, 32, 64), 2);
    EXPECT_EQ(kvd_IssueMboxV2(2, &g.mb), 2);
    EXPECT_EQ(kvd_IssueMboxV2(0xFFFFFFFFu, &g.mb), 2);
    expect_guards_intact();
}

TEST(FieldText, StopsAtTheFieldEndWhenUnterminated)
{
    char field[4] = {'a', 'b', 'c', 'd'};
    char dest[5];
    char small[3];

    EXPECT_STREQ(KVD_FIELDTEXT(dest, field), "abcd");
    EXPECT_STREQ(KVD_FIELDTEXT(small, field), "ab");
    field[1] = '\0';
    EXPECT_STREQ(KVD_FIELDTEXT(dest, field), "a");
}

} // namespace
