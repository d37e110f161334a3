// The password the auth commands hand over is cut at 128 bytes: longer than
// a typed line allows, so the handlers are called directly, against the
// default fleet (board 0's port and the storage port it has a pair with).
#include <gtest/gtest.h>

#include <stdio.h>
#include <string.h>
#include <string>
#include <vector>

#include "kvd.h"
#include "kvd_cmds.h"

namespace
{

int32_t run(std::vector<std::string> words)
{
    static std::vector<std::string> kept;
    kept = std::move(words);
    margc = (int32_t)kept.size();
    for (size_t i = 0; i < kept.size(); i++)
        margv[i] = kept[i].data();
    for (int32_t i = 0; i < kvdcmdcnt; i++)
        if (strcmp(kvdCmds[i].c_string, kept[0].c_str()) == 0)
            return kvdCmds[i].c_routine(&kvdCmds[i], nullptr);
    return -100;
}

} // namespace

TEST(ShellAuth, PasswordCutAtOneHundredTwentyEightBytes)
{
    const std::string l = "1000064b51a00010", r = "2100064b51d00001";
    const std::string at(128, 'p'), past = at + "q";
    kvd_pci_brds = KVD_InitDiagEnv(kvd_un.brdaddr, KVD_MAX_BOARDS);
    ASSERT_GE(kvd_pci_brds, 1u);
    cur_board = 0;
    // 128 bytes are kept whole: the first 127 do not match them.
    ASSERT_EQ(run({"authsetcfg", l, r, at}), 0);
    EXPECT_EQ(run({"authdelcfg", l, r, at.substr(0, 127)}), 13);
    EXPECT_EQ(run({"authdelcfg", l, r, at}), 0);
    // One past: what is stored is the first 128.
    ASSERT_EQ(run({"authsetcfg", l, r, past}), 0);
    EXPECT_EQ(run({"authdelcfg", l, r, at}), 0);
    fflush(stdout);
    KVD_FreeDiagEnv();
}
