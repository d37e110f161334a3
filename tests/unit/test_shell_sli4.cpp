// The SLI-4 families' pure helpers: the object-name copy, the list-entry
// texts, the size query's name limit and the IPL model table.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "kvd_sli4.h"
#include "kvd_sli4cmds.h"

namespace
{

std::string captured(void (*fn)())
{
    testing::internal::CaptureStdout();
    fn();
    fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

} // namespace

TEST(Sli4iovShell, ObjectNameCopyStaysInItsField)
{
    struct {
        char before[8];
        char name[SLI4_OBJECT_NAME_SIZE];
        char after[8];
    } g;
    memset(&g, 'x', sizeof g);
    object_name_swap(g.name, "/prg/srb.prg");
    EXPECT_STREQ(g.name, "/prg/srb.prg");
    for (int i = 13; i < 26; i++)
        EXPECT_EQ(g.name[i], 0) << i; // the cleared part
    EXPECT_EQ(g.name[26], 'x');       // the rest is the caller's (zero in a fresh request)

    // 103 characters and the NUL fit; 104 fill the field without one.
    memset(&g, 'x', sizeof g);
    object_name_swap(g.name, std::string(103, 'a').c_str());
    EXPECT_EQ(g.name[102], 'a');
    EXPECT_EQ(g.name[103], 0);
    memset(&g, 'x', sizeof g);
    object_name_swap(g.name, std::string(130, 'b').c_str());
    EXPECT_EQ(g.name[103], 'b');
    EXPECT_EQ(std::string(g.after, 8), std::string(8, 'x'));
    EXPECT_EQ(std::string(g.before, 8), std::string(8, 'x'));
}

TEST(Sli4iovShell, EntryTypesAndInfo)
{
    char type[KVD_TYPETEXT_SIZE], info[KVD_TYPETEXT_SIZE];
    translateType(0, 4096, type, info);
    EXPECT_STREQ(type, "Normal");
    EXPECT_STREQ(info, "bytes: 4096");
    translateType(1, 15, type, info);
    EXPECT_STREQ(type, "Directory");
    EXPECT_STREQ(info, "elements: 15");
    translateType(2, 20, type, info);
    EXPECT_STREQ(type, "Linked");
    EXPECT_STREQ(info, "handle: 20");
    translateType(7, 0xdeadbeef, type, info);
    EXPECT_STREQ(type, "Unknown - x00000007");
    EXPECT_STREQ(info, "info: xdeadbeef");
}

TEST(Sli4iovShell, SizeQueryTakesNamesUpTo103Characters)
{
    // The library environment is not open here: a query that is sent fails
    // with the library's ENXIO; one refused by the shell sends nothing.
    static uint32_t size;
    static int32_t rc;
    std::string out = captured([] { rc = getObjectSize(std::string(104, 'n').c_str(), &size); });
    EXPECT_EQ(rc, 1);
    EXPECT_EQ(out, "object name too big, limit 103\n");
    out = captured([] { rc = getObjectSize(std::string(103, 'n').c_str(), &size); });
    EXPECT_EQ(rc, 6);
    EXPECT_EQ(out.rfind("Error reading nnn", 0), 0u) << out;
}

TEST(Sli4Shell, IplModelTable)
{
    EXPECT_STREQ(kvd_ipl_model(1), "QF8S Standard rack");
    EXPECT_STRNE(kvd_ipl_model(22), "Not documented");
    EXPECT_STREQ(kvd_ipl_model(23), "Not documented");
    EXPECT_STRNE(kvd_ipl_model(24), "Not documented");
    EXPECT_STRNE(kvd_ipl_model(43), "Not documented");
    EXPECT_STREQ(kvd_ipl_model(44), "Not documented");
    EXPECT_STREQ(kvd_ipl_model(0), "Not documented");
    EXPECT_STREQ(kvd_ipl_model(65534), "Not documented");
    EXPECT_STREQ(kvd_ipl_model(65535), "QXXX Factory default");
    EXPECT_STREQ(kvd_ipl_model(65536 + 1), "Not documented");
    // Four-character adapter code, then the platform.
    for (uint32_t n = 1; n <= 43; n++) {
        if (n != 23) {
            EXPECT_EQ(kvd_ipl_model(n)[4], ' ') << n;
        }
    }
}
