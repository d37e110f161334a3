// The command-line splitter, table lookup and the prompt readers.
#include <gtest/gtest.h>

#include <string>

#include "kvd.h"

namespace
{

// Feeds `input` to the shell's standard input for the life of the object.
struct Input {
    FILE *saved = stdin;
    explicit Input(const std::string &input)
    {
        stdin = fmemopen(const_cast<char *>(text(input)), input.size(), "r");
    }
    ~Input()
    {
        fclose(stdin);
        stdin = saved;
    }
    static const char *text(const std::string &s)
    {
        static std::string keep;
        keep = s;
        return keep.c_str();
    }
};

struct Reader : testing::Test {
    char buffer[KVD_CMDBUF_SIZE] = {};
    void SetUp() override
    {
        margc = 0;
        memset(margv, 0, sizeof(margv));
    }
    cmdinfo *oneshot(const char *line)
    {
        snprintf(buffer, sizeof(buffer), "%s", line);
        return getcmd(buffer, sizeof(buffer), 1);
    }
};

TEST(Prompts, NumbersAreTakenAsTyped)
{
    Input in("42 7\n,5\n0x1F\nzz\n");
    testing::internal::CaptureStdout();
    EXPECT_EQ(getint("Ring"), 42);
    EXPECT_EQ(getint("Ring"), 5); // the comma is a separator
    EXPECT_EQ(getxint("mask"), 0x1fu);
    EXPECT_EQ(getxint("mask"), 0u);
    fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Ring: Ring: mask (hex): mask (hex): ");
}

TEST(Prompts, YesOrNoTakesOnlyOneCharacterAnswers)
{
    Input in("yes\nx\nN\n");
    testing::internal::CaptureStdout();
    EXPECT_EQ(promptYesorNo(), 0);
    fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Yes or No:: Response invalid, please enter y or n\n"
                                                      "Yes or No:: Response invalid, please enter y or n\n"
                                                      "Yes or No:: ");
}

TEST(Prompts, GetAStringCopiesAtMostMaxBytesWithoutTerminating)
{
    Input in("abcdefgh\n");
    char dest[8];
    memset(dest, '#', sizeof(dest));
    testing::internal::CaptureStdout();
    get_a_string(dest, 5, "name");
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(std::string(dest, 8), "abcde###");
}

TEST(Pager, PageLengthOfZeroOrLessNeverPauses)
{
    int saved_lines = num_lines, saved_prompt = prompt_to_continue;
    prompt_to_continue = 1;
    for (int lines : {0, -3}) {
        num_lines = lines;
        for (int i = 0; i < 5; i++)
            EXPECT_EQ(kvd_page_break(i), 0);
    }
    num_lines = 2;
    Input in("x rest\n\n");
    testing::internal::CaptureStdout();
    EXPECT_EQ(kvd_page_break(0), 0); // not the end of a page: no question
    EXPECT_EQ(kvd_page_break(1), 1); // "x" aborts and eats the line
    EXPECT_EQ(kvd_page_break(3), 0);
    fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "\n Hit <CR> to continue (x to abort): \n\n Hit <CR> to continue (x to abort): \n");
    num_lines = saved_lines;
    prompt_to_continue = saved_prompt;
}

} // namespace

TEST_F(Reader, SizeBoundsTheLine)
{
    // A buffer of 8 bytes holds 7 characters: "mbox rd" is cut before "rev".
    char small[8];
    memcpy(small, "mbox rdrev\n", 8);
    EXPECT_STREQ(getcmd(small, sizeof(small), 1)->c_string, "mbox");
    ASSERT_EQ(margc, 2);
    EXPECT_STREQ(margv[1], "rd");
    // Larger than the command buffer: still cut at 131 characters.
    char big[300];
    memset(big, 'x', sizeof(big) - 1);
    big[sizeof(big) - 1] = '\0';
    getcmd(big, sizeof(big), 1);
    EXPECT_EQ(strlen(margv[0]), 131u);
    // No room for a character: nothing is read or written.
    char one[1] = {'q'};
    EXPECT_EQ(getcmd(one, 1, 1), &kvdCmds[0]);
    EXPECT_EQ(one[0], 'q');
    EXPECT_EQ(oneshot("hel"), &kvdCmds[0]); // a prefix is no match
}
