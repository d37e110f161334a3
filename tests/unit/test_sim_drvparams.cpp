// The driver-parameter engine: range and index limits, pending values and
// the reset that applies them, hooks, and the caller's room.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <vector>

#include "drvparams/drvparams.hpp"
#include "libkvd.h"

using namespace kvdsim;

namespace
{

struct Params {
    DrvParams p;
    explicit Params(Protocol protocol = Protocol::fc) : p(board(protocol))
    {
    }
    static BoardConf board(Protocol protocol)
    {
        BoardConf b;
        b.protocol = protocol;
        return b;
    }
    uint32_t at(const char *name)
    {
        return *p.find(name);
    }
    int32_t set(uint32_t index, uint32_t value)
    {
        CfgCommand cmd;
        cmd.index = index;
        cmd.value = value;
        return p.run(kCfgSetParam, cmd);
    }
    std::vector<CFGPARAM> get(size_t room, int32_t *rc = nullptr, uint32_t *count = nullptr)
    {
        std::vector<CFGPARAM> list(room);
        CfgCommand cmd{{reinterpret_cast<uint8_t *>(list.data()), room * sizeof(CFGPARAM)}};
        const int32_t r = p.run(kCfgGetParams, cmd);
        if (rc)
            *rc = r;
        if (count)
            *count = cmd.count;
        return list;
    }
};

} // namespace

TEST(DrvParams, RangeAndIndexLimits)
{
    Params x;
    const uint32_t lun = x.at("lun_queue_depth"); // 1..128, dynamic
    EXPECT_EQ(x.set(lun, 1), 0);
    EXPECT_EQ(x.set(lun, 0), ERANGE);
    EXPECT_EQ(x.set(lun, 128), 0);
    EXPECT_EQ(x.set(lun, 129), ERANGE);
    EXPECT_EQ(x.p.current(lun), 128u);
    const auto n = static_cast<uint32_t>(x.p.size());
    EXPECT_EQ(x.set(n - 1, 60), 0); // task_mgmt_tmo, 5..180
    EXPECT_EQ(x.set(n, 60), EINVAL);
    CfgCommand none;
    EXPECT_EQ(x.p.run(0x7f, none), ENOTTY);
}

TEST(DrvParams, NonDynamicWaitsForReset)
{
    Params x;
    const uint32_t hba = x.at("hba_queue_depth");
    std::vector<uint32_t> seen;
    ASSERT_TRUE(x.p.on_change("hba_queue_depth", [&](uint32_t v) { seen.push_back(v); }));
    EXPECT_FALSE(x.p.on_change("no_such_param", [](uint32_t) {}));
    ASSERT_EQ(x.set(hba, 64), 0);
    EXPECT_EQ(x.p.current(hba), 8192u);
    EXPECT_TRUE(x.p.pending(hba));
    EXPECT_EQ(x.get(64)[hba].a_changestate, KVD_CFG_CHG_PENDING);
    EXPECT_TRUE(seen.empty());
    x.p.apply_pending();
    EXPECT_EQ(x.p.current(hba), 64u);
    EXPECT_EQ(x.get(64)[hba].a_changestate, KVD_CFG_CHG_RESET);
    EXPECT_EQ(seen, std::vector<uint32_t>{64});
    // Setting the value in effect cancels a pending one.
    ASSERT_EQ(x.set(hba, 128), 0);
    ASSERT_EQ(x.set(hba, 64), 0);
    x.p.apply_pending();
    EXPECT_EQ(x.p.current(hba), 64u);
    EXPECT_EQ(seen.size(), 1u);
}

TEST(DrvParams, ListFollowsProtocolAndRoom)
{
    Params fc, fcoe(Protocol::fcoe);
    EXPECT_TRUE(fc.p.find("link_speed"));
    EXPECT_FALSE(fcoe.p.find("link_speed"));
    EXPECT_TRUE(fcoe.p.find("enable_fip"));
    // Too little room for one entry is refused; a smaller room than the list
    // gets only what fits, with the whole count.
    int32_t rc = 0;
    uint32_t count = 0;
    (void)fc.get(0, &rc);
    EXPECT_EQ(rc, EINVAL);
    std::vector<CFGPARAM> two = fc.get(2, &rc, &count);
    EXPECT_EQ(rc, 0);
    EXPECT_EQ(count, fc.p.size());
    EXPECT_STREQ(two[1].a_string, "lun_queue_depth");
}
