// Limits the library states for what the caller hands over, checked through
// the C entry points of our libkvd on the embedded default fleet: at each
// limit and one past it.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "kvd.h"

namespace
{

struct Library : testing::Test {
    KVD_BRDINFO table[KVD_MAX_BOARDS];
    void SetUp() override
    {
        ASSERT_GE(KVD_InitDiagEnv(table, KVD_MAX_BOARDS), 1u);
    }
};

} // namespace

TEST_F(Library, PlainMailboxTakesSixtyFourWordsAndGivesBackUpToOneHundredTwentyEight)
{
    static uint32_t words[2 * MAILBOX_WORDS];
    auto *rec = reinterpret_cast<MAILBOX *>(words);
    MAILBOX mb;
    auto issue = [&](uint32_t in, uint32_t out) {
        memset(&mb, 0, sizeof mb);
        mb.mbxCommand = MBX_READ_NV;
        memcpy(words, &mb, sizeof mb);
        return KVD_IssueMboxWithRetry(0, rec, in, out, 1, 0);
    };
    EXPECT_EQ(issue(0, 64), EINVAL);
    EXPECT_EQ(issue(1, 64), KVD_RC_OK);
    EXPECT_EQ(issue(64, 64), KVD_RC_OK);
    EXPECT_EQ(issue(65, 64), EINVAL);
    EXPECT_EQ(issue(32, 2 * MAILBOX_WORDS), KVD_RC_OK); // reply data behind the record
    EXPECT_EQ(issue(32, 2 * MAILBOX_WORDS + 1), EINVAL);
    EXPECT_EQ(issue(32, 0), EINVAL) << "READ_NV's reply needs its status word";
}

TEST_F(Library, V2MailboxTakesTheRecordAndAPayloadUpToSixteenThousandWords)
{
    static uint32_t words[MAILBOX_WORDS + 16384 + 1];
    MAILBOX mb;
    memset(&mb, 0, sizeof mb);
    mb.mbxCommand = MBX_READ_REV;
    memcpy(words, &mb, sizeof mb);
    auto *rec = reinterpret_cast<MAILBOX *>(words);
    EXPECT_EQ(KVD_IssueMboxWithRetryV2(0, rec, 0, 1, 0), EINVAL);
    EXPECT_EQ(KVD_IssueMboxWithRetryV2(0, rec, MAILBOX_WORDS + 16384, 1, 0), KVD_RC_OK);
    EXPECT_EQ(KVD_IssueMboxWithRetryV2(0, rec, MAILBOX_WORDS + 16385, 1, 0), EINVAL);
}

TEST_F(Library, DriverInformationOnlyInItsOwnVersion)
{
    KVDDRVINFO info;
    for (uint32_t ver : {KVD_DRVINFO_VERSION - 1, KVD_DRVINFO_VERSION + 1}) {
        memset(&info, 0, sizeof info);
        info.drvInfoVer = ver;
        EXPECT_EQ(KVD_GetDrvInfo(0, &info), static_cast<uint32_t>(EINVAL)) << "version " << ver;
    }
    memset(&info, 0, sizeof info);
    info.drvInfoVer = KVD_DRVINFO_VERSION;
    EXPECT_EQ(KVD_GetDrvInfo(0, &info), 0u);
}
