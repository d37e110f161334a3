// The ASIC model's network side and diagnostics: forwarding table, priority
// groups, access lists and virtual links, FCF list, port settings and the
// diagnostic run with its log.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "asic/asic.hpp"
#include "sim_test.hpp"

using namespace kvdsim;
using namespace kvdsim::test;

namespace
{

struct Net {
    Asic asic;
    std::vector<uint8_t> rsp;
    uint32_t delivered = 0;

    explicit Net(const AsicConf &conf = {}) : asic(conf)
    {
    }
    // The ASIC's status of one exchange (a transport failure fails the test).
    uint32_t send(const std::vector<uint8_t> &cmd, size_t room = 4)
    {
        rsp.assign(room, 0xee);
        EXPECT_EQ(asic.exchange(cmd, rsp, delivered), 0u);
        return word(0);
    }
    template <class T> uint32_t send(const T &rec, size_t room = 4)
    {
        return send(bytes_of(rec), room);
    }
    uint32_t get(uint32_t code, uint32_t context, size_t room)
    {
        return send(tarvo_get_cmd_t{code, context, static_cast<uint32_t>(room)}, room);
    }
    uint32_t word(size_t off) const
    {
        uint32_t w;
        memcpy(&w, rsp.data() + off, 4);
        return w;
    }
    uint32_t insert(uint32_t mask, uint32_t fcid, uint8_t last)
    {
        tarvo_fte_insert_cmd_t c{TARVO_CMD_FTE_INSERT, mask, fcid, {0x20, 0, 0, 0, 0, 0, 0, last}};
        return send(c);
    }
    tarvo_fte_t entry(int i)
    {
        EXPECT_EQ(get(TARVO_CMD_GET_FTABLE, 0, sizeof(tarvo_ftable_rsp_t)), 0u);
        tarvo_fte_t e;
        memcpy(&e, rsp.data() + 4 + i * sizeof e, sizeof e);
        return e;
    }
};

tarvo_facl_t facl(uint8_t sw, const std::array<uint8_t, 8> &fabric, uint32_t permit)
{
    tarvo_facl_t a{};
    memcpy(a.fabric_name, fabric.data(), 8);
    const uint8_t name[8] = {0x20, sw, 0x02, 0x5e, 0x11, 0xfc, 0, 0};
    memcpy(a.sw_name, name, 8);
    a.acc_ctrl = permit;
    return a;
}

std::vector<uint8_t> set_facl(uint32_t lport, const std::vector<tarvo_facl_t> &list, size_t drop = 0)
{
    const uint32_t head[3] = {TARVO_CMD_SET_FACL, lport, static_cast<uint32_t>(list.size())};
    std::vector<uint8_t> cmd(12 + list.size() * sizeof(tarvo_facl_t));
    memcpy(cmd.data(), head, sizeof head);
    if (!list.empty())
        memcpy(cmd.data() + 12, list.data(), list.size() * sizeof(tarvo_facl_t));
    cmd.resize(cmd.size() - drop);
    return cmd;
}

} // namespace

TEST(AsicForwarding, FullTableKeysAndDelete)
{
    Net n;
    for (int i = 1; i <= TARVO_FTABLE_ENTRIES; ++i)
        ASSERT_EQ(n.insert(TARVO_FTE_FORWARD, i, 1), 0u) << i;
    EXPECT_EQ(n.insert(TARVO_FTE_FORWARD, 0x1000, 1), uint32_t(kAsicTableFull));
    // The same key changes its entry even in a full table.
    EXPECT_EQ(n.insert(TARVO_FTE_DROP, 256, 1), 0u);
    EXPECT_EQ(n.entry(255).flags, TARVO_FTE_IN_USE | TARVO_FTE_DROP);

    tarvo_fte_delete_cmd_t del{TARVO_CMD_FTE_DELETE, 7, {0x20, 0, 0, 0, 0, 0, 0, 1}};
    EXPECT_EQ(n.send(del), 0u);
    // The freed slot is the one taken next.
    EXPECT_EQ(n.insert(TARVO_FTE_FORWARD, 0x1000, 1), 0u);
    EXPECT_EQ(n.entry(6).flags, TARVO_FTE_IN_USE);

    EXPECT_EQ(n.insert(2, 5, 1), uint32_t(kAsicInvalidParam));
    EXPECT_EQ(n.insert(TARVO_FTE_FORWARD, 0, 1), uint32_t(kAsicInvalidParam));
}

TEST(AsicAccess, ListBounds)
{
    AsicConf conf;
    Net n(conf);
    const auto &fab = conf.fabric_name;
    std::vector<tarvo_facl_t> list(kAsicFaclMax, facl(2, fab, 1));
    EXPECT_EQ(n.send(set_facl(1, list)), 0u);
    list.push_back(facl(2, fab, 1));
    EXPECT_EQ(n.send(set_facl(1, list)), uint32_t(kAsicTableFull));
    list.pop_back();
    EXPECT_EQ(n.send(set_facl(1, list, 1)), uint32_t(kAsicBadLength)); // last entry cut short
    EXPECT_EQ(n.send(set_facl(4, {})), uint32_t(kAsicBadPort));
    EXPECT_EQ(n.send(set_facl(1, {facl(2, fab, 2)})), uint32_t(kAsicInvalidParam));

    // The reply holds as many entries as the room offered; the count tells all.
    EXPECT_EQ(n.get(TARVO_CMD_GET_FACL, 1, 36), 0u);
    EXPECT_EQ(n.word(4), 1u);
    EXPECT_EQ(n.word(8), kAsicFaclMax);
    EXPECT_EQ(n.delivered, 32u);
    EXPECT_EQ(n.get(TARVO_CMD_GET_FACL, 1, 12 + 16 * 20), 0u);
    EXPECT_EQ(n.word(4), kAsicFaclMax);
}

TEST(AsicFcoe, FcfListFitsTheRoomOffered)
{
    AsicConf conf;
    conf.fcfs = 3;
    Net n(conf);
    const size_t head = offsetof(tarvo_get_fcf_list_rsp_t, fcf_list);
    EXPECT_EQ(n.get(TARVO_CMD_GET_FCF_LIST, 0, head + 2 * sizeof(tarvo_fcf_info_t) + 43), 0u);
    EXPECT_EQ(n.word(4), 2u);
    EXPECT_EQ(n.word(8), 3u);
    EXPECT_EQ(n.delivered, head + 2 * sizeof(tarvo_fcf_info_t));
    EXPECT_EQ(n.get(TARVO_CMD_GET_FCF_LIST, 0, head), 0u);
    EXPECT_EQ(n.word(4), 0u);

    tarvo_set_fcoe_params_cmd_t c{TARVO_CMD_SET_FCOE_PARAMS, TARVO_FCOE_NON_FIP, 3, {}};
    c.params.non_fip.fc_map = 0x0efc07;
    EXPECT_EQ(n.send(c), 0u);
    EXPECT_EQ(n.get(TARVO_CMD_GET_FCOE_PARAMS, 3, 36), 0u);
    EXPECT_EQ(n.word(4), 0u);
    EXPECT_EQ(n.word(8), 0x0efc07u);
    c.lport_id = kAsicLogicalPorts;
    EXPECT_EQ(n.send(c), uint32_t(kAsicBadPort));
}

TEST(AsicPorts, RefusedSettings)
{
    // Values the shell refuses before sending: the ASIC refuses them too.
    Net n;
    EXPECT_EQ(n.send(tarvo_set_cmd_t{TARVO_CMD_SET_PAUSE, TARVO_PAUSE_PFC, 256}),
              uint32_t(kAsicInvalidParam));
    EXPECT_EQ(n.send(tarvo_set_cmd_t{TARVO_CMD_SET_PORT_TYPE, 3, 0}), uint32_t(kAsicInvalidParam));
    EXPECT_EQ(n.send(tarvo_loopback_cmd_t{TARVO_CMD_LOOPBACK, 2, 1}), uint32_t(kAsicBadPort));
    EXPECT_EQ(n.get(TARVO_CMD_GET_LB_MODE, 2, 8), uint32_t(kAsicBadPort));
    EXPECT_EQ(n.send(tarvo_reset_cmd_t{TARVO_CMD_RESET, 2}), uint32_t(kAsicInvalidParam));
}

TEST(AsicDiag, RunsItsLoopsAcrossTheResetAndLeavesALog)
{
    Net n;
    EXPECT_EQ(n.get(TARVO_CMD_GET_DIAG_LOG, 0, 4096), uint32_t(kAsicNotFound));
    EXPECT_EQ(n.send(tarvo_diag_cmd_t{TARVO_CMD_DIAG, 3}), 0u);
    EXPECT_EQ(n.asic.diag_state(), DiagState::armed);
    EXPECT_EQ(n.get(TARVO_CMD_GET_DIAG_LOG, 0, 4096), uint32_t(kAsicBusy));
    EXPECT_EQ(n.send(tarvo_reset_cmd_t{TARVO_CMD_RESET, TARVO_RESET_OPERATIONAL}), 0u);
    EXPECT_EQ(n.asic.diag_state(), DiagState::running);
    // Three loops of two exchanges each: busy until the sixth.
    for (uint32_t i = 1; i < 3 * kAsicDiagTicksPerLoop; ++i)
        EXPECT_EQ(n.send(tarvo_diag_cmd_t{TARVO_CMD_DIAG, 1}), uint32_t(kAsicBusy)) << i;
    EXPECT_EQ(n.get(TARVO_CMD_GET_DIAG_LOG, 0, 2048), uint32_t(kAsicMoreData));
    EXPECT_EQ(n.asic.diag_state(), DiagState::done);
    const uint32_t size = n.word(4) + 8;
    EXPECT_EQ(n.delivered, 8u);
    EXPECT_EQ(n.get(TARVO_CMD_GET_DIAG_LOG, 0, size - 1), uint32_t(kAsicMoreData));
    ASSERT_EQ(n.get(TARVO_CMD_GET_DIAG_LOG, 0, size), 0u);
    EXPECT_EQ(n.delivered, size);
    EXPECT_EQ(n.word(8), kAsicDiagTests);
    EXPECT_EQ(n.word(16), 3u); // requested
    EXPECT_EQ(n.word(20), 3u); // completed
    EXPECT_EQ(n.word(24), TARVO_DIAG_SUCCESS);
    // The last entry ends the reply: status then text.
    const uint32_t stride = (n.word(12) * 4 + 4) * 8;
    const size_t last = 28 + (kAsicDiagTests - 1) * stride;
    EXPECT_EQ(n.word(last), TARVO_DIAG_SUCCESS);
    EXPECT_STREQ(reinterpret_cast<const char *>(n.rsp.data() + last + 4), "fc port 3 loopback");
    EXPECT_EQ(size, last + 4 + n.word(12) * 4);
}
