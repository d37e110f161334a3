// The FCP senders' command block where a transcript cannot see it: a byte
// count that is not a whole block, and the board check against cur_board.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "kvd.h"

namespace
{

HBA_WWN target()
{
    HBA_WWN w;
    const uint8_t a[8] = {0x21, 0, 0x06, 0x4b, 0x51, 0xd0, 0, 1};
    memcpy(w.wwn, a, 8);
    return w;
}

uint32_t be32(const uint8_t *p)
{
    return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
}

struct FcpSend : testing::Test {
    uint32_t saved_brds = kvd_pci_brds;
    int32_t saved_board = cur_board;
    static void SetUpTestSuite()
    {
        unsetenv("KVD_SIM_FLEET");
        ASSERT_EQ(KVD_InitDiagEnv(kvd_un.brdaddr, KVD_MAX_BOARDS), 3u);
    }
    static void TearDownTestSuite()
    {
        KVD_FreeDiagEnv();
    }
    void SetUp() override
    {
        kvd_pci_brds = 3;
        cur_board = 0;
    }
    void TearDown() override
    {
        kvd_pci_brds = saved_brds;
        cur_board = saved_board;
    }
};

} // namespace

// 1000 bytes: the CDB names one block (the count shifted down by 9), the data
// length keeps 1000, so one block moves and 488 bytes stay under.
TEST_F(FcpSend, PartialBlockCountsInTheDataLengthOnly)
{
    HBA_WWN w = target();
    uint8_t data[1024], rsp[160], sense[128];
    for (int i = 0; i < 1024; i++)
        data[i] = uint8_t(i ^ 0x5a);
    uint32_t size = 1024, sense_size = sizeof sense;
    ASSERT_EQ(SendScsiWrite(0, &w, 0, 0x100, data, &size, sense, &sense_size), 0u);

    uint8_t back[1024] = {};
    size = 1000;
    uint32_t rsp_size = sizeof rsp;
    ASSERT_EQ(kvd_SendFcpRead(0, &w, 0, 0x100, back, &size, rsp, &rsp_size), 0);
    EXPECT_EQ(size, 512u);
    ASSERT_EQ(rsp_size, 24u);
    EXPECT_EQ(rsp[10], FCP_RESID_UNDER);
    EXPECT_EQ(be32(rsp + 12), 488u);
    EXPECT_EQ(memcmp(back, data, 512), 0);
    EXPECT_EQ(back[512], 0);

    // Under one block: a READ(10) of no blocks, nothing moves.
    size = 511;
    rsp_size = sizeof rsp;
    ASSERT_EQ(kvd_SendFcpRead(0, &w, 0, 0x100, back, &size, rsp, &rsp_size), 0);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(be32(rsp + 12), 511u);
}

TEST_F(FcpSend, BoardCheckIsAgainstCurBoard)
{
    HBA_WWN w = target();
    uint8_t data[512], rsp[160];
    uint32_t size = sizeof data, rsp_size = sizeof rsp;
    cur_board = 3; // not below the count: no call, whatever board is passed
    EXPECT_EQ(kvd_SendFcpWrite(0, &w, 0, 0, data, &size, rsp, &rsp_size), 1);
    cur_board = 2;
    EXPECT_EQ(kvd_SendFcpRead(0, &w, 0, 0, data, &size, rsp, &rsp_size), 0);
    EXPECT_EQ(size, 512u);
}

// An ELS reply larger than the room: result 7 and the room it needs; the
// room is never written past.
TEST_F(FcpSend, ElsReplyRoomTooSmall)
{
    KVD_ELS_DEST dest = {KVD_ELS_ADDR_DID, 0x010300};
    uint8_t req[8] = {ELS_CMD_RLS};
    uint8_t rsp[40];
    memset(rsp, 0xee, sizeof rsp);
    uint32_t room = 27;
    EXPECT_EQ(KVD_SendELSCmd(0, &dest, req, sizeof req, rsp, &room), uint32_t(KVD_RC_ELS_RSP_TOO_SMALL));
    EXPECT_EQ(room, 28u);
    EXPECT_EQ(rsp[0], 0xee);
    room = 28;
    EXPECT_EQ(KVD_SendELSCmd(0, &dest, req, sizeof req, rsp, &room), 0u);
    EXPECT_EQ(rsp[0], ELS_CMD_LS_ACC);
    EXPECT_EQ(rsp[28], 0xee);
    dest.addrType = 2;
    EXPECT_EQ(KVD_SendELSCmd(0, &dest, req, sizeof req, rsp, &room), uint32_t(EINVAL));
}
