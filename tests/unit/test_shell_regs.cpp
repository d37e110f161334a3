// Board environment through the library as the shell sees it (the board
// table's masks follow each change), and the RNID reply dump.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "kvd.h"
#include "kvd_mgmt_cmds.h"

namespace
{

struct BoardEnv : testing::Test {
    void SetUp() override
    {
        unsetenv("KVD_SIM_FLEET");
        ASSERT_EQ(KVD_InitDiagEnv(kvd_un.brdaddr, KVD_MAX_BOARDS), 3u);
    }
    void TearDown() override
    {
        SetDiagEnv(KVD_DIAGENV_ONLINE);
        KVD_FreeDiagEnv();
    }
};

} // namespace

TEST_F(BoardEnv, TableMasksFollowTheBoards)
{
    const KVD_BRDINFO &e0 = kvd_un.brdaddr[0];
    EXPECT_EQ(e0.a_onmask, 7u);
    EXPECT_EQ(SetBrdEnv(1, KVD_DIAGENV_OFFLINE), 2u);
    EXPECT_EQ(e0.a_onmask, 5u);
    EXPECT_EQ(e0.a_offmask, 2u);
    EXPECT_EQ(SetDiagEnv(KVD_DIAGENV_SHOW), 2u);
    EXPECT_EQ(KVD_SetDumpEnv(2, KVD_DUMPENV_FORCE_DUMP), 4u);
    EXPECT_EQ(e0.a_offmask, 6u);
    EXPECT_EQ(SetBrdEnv(2, KVD_DIAGENV_SHOW), 2u);
    EXPECT_EQ(KVD_SetDumpEnv(2, KVD_DUMPENV_SHOW), 4u);
    EXPECT_EQ(SetDiagEnv(KVD_DIAGENV_ONLINE), 1u);
    EXPECT_EQ(e0.a_onmask, 7u);
    EXPECT_EQ(e0.a_offmask, 0u);
    EXPECT_EQ(KVD_SetDumpEnv(2, KVD_DUMPENV_SHOW), 1u);
    EXPECT_EQ(SetDiagEnv(3), 0u);
    EXPECT_EQ(SetBrdEnv(0, 3), 0u);
    EXPECT_EQ(KVD_SetDumpEnv(0, 5), 0u);
    EXPECT_EQ(SetBrdEnv(31, KVD_DIAGENV_SHOW), 0u);
}

TEST_F(BoardEnv, AReleasedTableIsLeftAlone)
{
    KVD_FreeDiagEnv();
    KVD_BRDINFO other[KVD_MAX_BOARDS];
    ASSERT_EQ(KVD_InitDiagEnv(other, KVD_MAX_BOARDS), 3u);
    EXPECT_EQ(SetBrdEnv(0, KVD_DIAGENV_OFFLINE), 2u);
    EXPECT_EQ(other[0].a_offmask, 1u);
    EXPECT_EQ(kvd_un.brdaddr[0].a_offmask, 0u);
    SetDiagEnv(KVD_DIAGENV_ONLINE);
    KVD_FreeDiagEnv();
    EXPECT_EQ(SetDiagEnv(KVD_DIAGENV_SHOW), 0u); // environment closed
    ASSERT_EQ(KVD_InitDiagEnv(kvd_un.brdaddr, KVD_MAX_BOARDS), 3u);
}

namespace
{

std::string rnid_dump(uint32_t length)
{
    uint8_t reply[KVD_RNID_REPLY_MAX];
    for (size_t i = 0; i < sizeof(reply); i++)
        reply[i] = (uint8_t)i;
    testing::internal::CaptureStdout();
    kvd_rnid_dump(reply, length);
    return testing::internal::GetCapturedStdout();
}

} // namespace

TEST(RnidDump, StopsAtTheReplysEndOrEightWords)
{
    EXPECT_EQ(rnid_dump(0), "\n");
    EXPECT_EQ(rnid_dump(12), "\n   0: 03020100  07060504  0b0a0908  \n");
    EXPECT_EQ(rnid_dump(10), "\n   0: 03020100  07060504  0b0a0908  \n");
    EXPECT_EQ(rnid_dump(32), "\n   0: 03020100  07060504  0b0a0908  0f0e0d0c  "
                             "\n  10: 13121110  17161514  1b1a1918  1f1e1d1c  \n");
    EXPECT_EQ(rnid_dump(64), rnid_dump(32));
    EXPECT_EQ(rnid_dump(0xffffffff), rnid_dump(32));
}

TEST_F(BoardEnv, RegionReadsStayInsideTheirBounds)
{
    uint8_t buf[KVD_REGION_MAX + 1] = {};
    uint16_t status = 0xffff;
    uint32_t size = KVD_REGION_MAX;
    ASSERT_EQ(getRegionData(0, KVD_REGION_TYPE_CONFIG, 0, 0, buf, &size, &status, 0), 0u);
    EXPECT_EQ(size, 60u); // the region is shorter than the buffer
    EXPECT_EQ(status, 0);
    size = KVD_REGION_MAX + 1;
    EXPECT_EQ(getRegionData(0, KVD_REGION_TYPE_CONFIG, 0, 0, buf, &size, &status, 0), (uint32_t)EINVAL);
    size = 16;
    ASSERT_EQ(getRegionData(0, KVD_REGION_TYPE_CONFIG, 0, 59, buf, &size, &status, 0), 0u);
    EXPECT_EQ(size, 1u);
    size = 16;
    EXPECT_EQ(getRegionData(0, KVD_REGION_TYPE_CONFIG, 0, 60, buf, &size, &status, 0), 0u);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(getRegionData(0, KVD_REGION_TYPE_CONFIG, 0, 61, buf, &size, &status, 0), (uint32_t)EINVAL);
    EXPECT_EQ(getRegionData(0, 3, 0, 0, buf, &size, &status, 0), (uint32_t)EINVAL);
    EXPECT_EQ(getRegionData(0, KVD_REGION_TYPE_CONFIG, 0, 0, buf, NULL, &status, 0), (uint32_t)EFAULT);

    uint32_t length = 3;
    ASSERT_EQ(KVD_GetDriverDumpRegion(0, KVD_DUMP_REGION_REGS, buf, &length), 0u);
    EXPECT_EQ(length, 3u); // cut to the buffer the caller named
    EXPECT_EQ(KVD_ReadPciCfg(0, NULL, 0, 4), (uint32_t)EFAULT);
    EXPECT_EQ(WritePciCfg(0, (uint32_t *)(void *)buf, 0, 2), (uint32_t)EINVAL);
    // 256 KiB of adapter memory
    EXPECT_EQ(ReadMem(0, buf, 0x3ffff, 1), 0u);
    EXPECT_EQ(ReadMem(0, buf, 0x3ffff, 2), (uint32_t)EINVAL);
}
