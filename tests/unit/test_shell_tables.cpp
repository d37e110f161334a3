// Every command table, shell and engine, walked for duplicate words and
// codes, and the shell's mailbox rows checked against the commands the
// firmware model serves. A family or engine that arrives adds its table
// here.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "kvd.h"
#include "diag/diag.hpp"
#include "mailbox/firmware.hpp"

using kvdsim::Firmware;
using kvdsim::RowInfo;

namespace
{

void expect_unique_words(const cmdinfo *rows, int count, const char *table)
{
    std::set<std::string> seen;
    for (int i = 0; i < count; ++i) {
        ASSERT_NE(rows[i].c_string, nullptr) << table << " row " << i;
        EXPECT_NE(rows[i].c_routine, nullptr) << table << " row " << rows[i].c_string;
        EXPECT_TRUE(seen.insert(rows[i].c_string).second) << table << ": \"" << rows[i].c_string << "\" twice";
    }
}

template <class Rows> void expect_unique_codes(const Rows &rows, const char *engine)
{
    std::set<uint32_t> codes;
    std::set<std::string> names;
    for (const RowInfo &r : rows) {
        EXPECT_TRUE(codes.insert(r.code).second) << engine << ": code 0x" << std::hex << r.code << " twice";
        EXPECT_TRUE(names.insert(r.name).second) << engine << ": " << r.name << " twice";
        EXPECT_NE(r.sli_levels, 0) << engine << ": " << r.name << " serves no SLI level";
    }
}

} // namespace

TEST(Tables, ShellWordsAreUnique)
{
    EXPECT_EQ(kvdcmdcnt, 108);
    expect_unique_words(kvdCmds, kvdcmdcnt, "kvdCmds");
    expect_unique_words(mboxinfo, g_mboxinfo_array_size, "mboxinfo");
    EXPECT_STREQ(kvdCmds[0].c_string, "inval");
    EXPECT_STREQ(mboxinfo[0].c_string, "mbinval");
}

TEST(Tables, EngineCodesAndNamesAreUnique)
{
    expect_unique_codes(Firmware::commands(), "mailbox");
    expect_unique_codes(kvdsim::Diag::resets(), "reset");
}

// The reset command's three types are the reset engine's rows.
TEST(Tables, EveryResetTypeHasARow)
{
    std::set<uint32_t> codes;
    for (const RowInfo &r : kvdsim::Diag::resets())
        codes.insert(r.code);
    EXPECT_EQ(codes, (std::set<uint32_t>{KVD_RESET_SELECTIVE, KVD_RESET_COORDINATED, KVD_RESET_FIRMWARE}));
}

TEST(Tables, EveryMailboxRowIssuesACommandTheFirmwareServes)
{
    int issuing = 0;
    for (int i = 0; i < g_mboxinfo_array_size; ++i) {
        if (mboxcodes[i] == 0)
            continue;
        ++issuing;
        const auto *row = Firmware::command(mboxcodes[i]);
        ASSERT_NE(row, nullptr) << "mbox " << mboxinfo[i].c_string << " issues 0x" << std::hex
                                << int(mboxcodes[i]) << ", which no firmware row serves";
    }
    EXPECT_EQ(issuing, 23);
    // The firmware refuses codes it has no row for (tested with a board in
    // test_sim_firmware); here: the lookup finds nothing for them.
    EXPECT_EQ(Firmware::command(MBX_LOAD_SM), nullptr);
    EXPECT_EQ(Firmware::command(MBX_WRITE_NV), nullptr);
}
