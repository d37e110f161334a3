// NPIV virtual ports of one board: readiness, the vport and fabric limits,
// fabric logins with their RSCNs, the link going and coming back, and what
// each port sees.
#include <gtest/gtest.h>

#include <cerrno>
#include <memory>

#include "events/events.hpp"
#include "fabric/fabric.hpp"
#include "nodes/nodes.hpp"
#include "npiv/npiv.hpp"
#include "sim_test.hpp"

using namespace kvdsim;
using namespace kvdsim::test;

namespace
{

const Wwn kZero{};

struct Rig {
    explicit Rig(BoardConf conf) : cfg(std::move(conf)), fabric(cfg), nodes(cfg), events(0, cfg.events)
    {
        npiv = std::make_unique<Npiv>(cfg, fabric, nodes, &events);
    }
    // The RSCN log entries since the last call: {code, affected address}.
    std::vector<std::pair<uint32_t, uint32_t>> rscns()
    {
        KVD_EVENT_ENTRY e[BoardEvents::kLogEntries];
        const uint32_t n = events.drain(e, BoardEvents::kLogEntries);
        std::vector<std::pair<uint32_t, uint32_t>> out;
        for (uint32_t i = 0; i < n; ++i)
            out.emplace_back(e[i].code, e[i].data[0]);
        return out;
    }
    BoardConf cfg;
    Fabric fabric;
    Nodes nodes;
    BoardEvents events;
    std::unique_ptr<Npiv> npiv;
};

BoardConf board(uint32_t max_vports = 4)
{
    BoardConf b;
    b.number = 1;
    b.features = KVD_FTR_NPIV;
    b.npiv_max_vports = max_vports;
    b.wwpn = {0x10, 0, 6, 0x4b, 0x51, 0xa0, 0, 1};
    b.wwnn = {0x20, 0, 6, 0x4b, 0x51, 0xa0, 0, 1};
    b.did = 0x010200;
    b.fabric_name = {0x10, 0, 6, 0x4b, 0x51, 0xf0, 0, 1};
    RemotePort target, host;
    target.wwpn = {0x21, 0, 6, 0x4b, 0x51, 0xd0, 0, 1};
    target.did = 0x010300;
    target.scsi_target = 0;
    host.wwpn = {0x10, 0, 6, 0x4b, 0x51, 0xa7, 0, 1};
    host.did = 0x010201; // in the board's own area: the fabric skips it
    host.fcp_target = false;
    b.remote_ports = {target, host};
    return b;
}

bool sees(const std::vector<NODEINFO> &nodes, uint32_t did)
{
    for (const NODEINFO &n : nodes)
        if (n.a_did == did)
            return true;
    return false;
}

} // namespace

TEST(SimNpiv, CreateLogsInTellsTheOthersAndDeleteUndoes)
{
    Rig r(board());
    Vport a, b;
    ASSERT_EQ(r.npiv->create(kZero, kZero, "a", 0, 9, true, &a), 0u);
    ASSERT_EQ(r.npiv->create(kZero, kZero, "b", 0, 10, true, &b), 0u);
    // The board's port heard of both; a heard of b.
    EXPECT_EQ(r.rscns(), (std::vector<std::pair<uint32_t, uint32_t>>{{FC_REG_RSCN_EVENT, 0x010202},
                                                                     {FC_REG_RSCN_EVENT, 0x010203},
                                                                     {FC_REG_VPORTRSCN_EVENT, 0x010203}}));
    const std::vector<NODEINFO> board_view = r.npiv->seen_by_board(true);
    const std::vector<NODEINFO> a_view = r.npiv->seen_by(*r.npiv->find(a.wwpn));
    EXPECT_FALSE(sees(a_view, a.did));
    EXPECT_EQ(r.npiv->rpis_in_use(true), board_view.size() + a_view.size() + a_view.size());

    EXPECT_EQ(r.npiv->remove(a.wwpn), 0u);
    EXPECT_EQ(r.fabric.npiv_logins(), 1u);
    // The freed address goes to the next login.
    Vport c;
    ASSERT_EQ(r.npiv->create(kZero, kZero, "c", 0, 9, true, &c), 0u);
    EXPECT_EQ(c.did, 0x010202u);
}

TEST(SimNpiv, VportLimitAtAndOnePast)
{
    Rig r(board(2));
    ASSERT_EQ(r.npiv->create(kZero, kZero, "", 0, 9, true, nullptr), 0u);
    EXPECT_TRUE(r.npiv->checklist(true) & KVD_NPIV_HBA_RESOURCES);
    ASSERT_EQ(r.npiv->create(kZero, kZero, "", 0, 10, true, nullptr), 0u);
    EXPECT_FALSE(r.npiv->checklist(true) & KVD_NPIV_HBA_RESOURCES);
    EXPECT_EQ(r.npiv->create(kZero, kZero, "", 0, 11, true, nullptr), uint32_t{ENOSPC});
    EXPECT_EQ(r.npiv->vports().size(), 2u);
    ASSERT_EQ(r.npiv->remove(r.npiv->vports().front().wwpn), 0u);
    EXPECT_TRUE(r.npiv->checklist(true) & KVD_NPIV_HBA_RESOURCES);
}

TEST(SimNpiv, FabricLimitAtAndOnePast)
{
    BoardConf conf = board();
    conf.npiv.fabric_max_vports = 1;
    Rig r(conf);
    Vport a, b;
    ASSERT_EQ(r.npiv->create(kZero, kZero, "", 0, 9, true, &a), 0u);
    EXPECT_EQ(a.state, KVD_VPSTATE_ACTIVE);
    EXPECT_FALSE(r.npiv->checklist(true) & KVD_NPIV_FABRIC_RESOURCES);
    ASSERT_EQ(r.npiv->create(kZero, kZero, "", 0, 10, true, &b), 0u);
    EXPECT_EQ(b.state, KVD_VPSTATE_NO_FABRIC_RSCS);
    EXPECT_EQ(b.did, 0u);
    EXPECT_TRUE(r.npiv->seen_by(b).empty());
}

TEST(SimNpiv, RefusedNames)
{
    Rig r(board());
    const Wwn p{0x24, 0, 6, 0x4b, 0x51, 0xe9, 0, 1}, n{0x28, 0, 6, 0x4b, 0x51, 0xe9, 0, 1};
    EXPECT_EQ(r.npiv->create({0x04, 0, 0, 0, 0, 0, 0, 1}, n, "", 0, 9, true, nullptr), uint32_t{EINVAL});
    EXPECT_EQ(r.npiv->create(p, p, "", 0, 9, true, nullptr), uint32_t{EINVAL});
    EXPECT_EQ(r.npiv->create(r.cfg.wwpn, n, "", 0, 9, true, nullptr), uint32_t{EEXIST});
    EXPECT_EQ(r.npiv->create(r.cfg.remote_ports[0].wwpn, n, "", 0, 9, true, nullptr), uint32_t{EEXIST});
    Vport v;
    ASSERT_EQ(r.npiv->create(p, kZero, "", 0, 9, true, &v), 0u);
    EXPECT_EQ(v.wwpn, p);
    EXPECT_EQ(v.wwnn, Npiv::chosen_wwnn(1, 1));
    EXPECT_EQ(r.npiv->create(p, n, "", 0, 10, true, nullptr), uint32_t{EEXIST});
}

TEST(SimNpiv, LinkDownLogsOutAndUpLogsBackIn)
{
    Rig r(board());
    Vport v;
    ASSERT_EQ(r.npiv->create(kZero, kZero, "", 0, 9, false, &v), 0u);
    EXPECT_EQ(v.state, KVD_VPSTATE_LINKDOWN);
    EXPECT_EQ(r.npiv->checklist(false) & 0xF0, 0u);
    r.npiv->link_changed(true);
    const Vport *now = r.npiv->find(v.wwpn);
    EXPECT_EQ(now->state, KVD_VPSTATE_ACTIVE);
    EXPECT_EQ(now->did, 0x010202u);
    r.rscns();
    r.npiv->link_changed(false);
    EXPECT_EQ(now->state, KVD_VPSTATE_LINKDOWN);
    EXPECT_EQ(now->did, 0u);
    EXPECT_EQ(r.fabric.npiv_logins(), 0u);
    EXPECT_TRUE(r.rscns().empty()); // nobody left to tell
}

TEST(SimNpiv, LoopHasNoFabricToLogInto)
{
    BoardConf conf = board();
    conf.topology = Topology::loop;
    Rig r(conf);
    EXPECT_EQ(r.npiv->checklist(true), 0x1Fu);
    Vport v;
    ASSERT_EQ(r.npiv->create(kZero, kZero, "", 0, 9, true, &v), 0u);
    EXPECT_EQ(v.state, KVD_VPSTATE_NO_FABRIC_SUPP);
}

TEST(SimNpiv, RestrictedLoginSeesTargetsOnly)
{
    Rig r(board());
    Vport open, closed;
    ASSERT_EQ(r.npiv->create(kZero, kZero, "", 0, 9, true, &open), 0u);
    ASSERT_EQ(r.npiv->create(kZero, kZero, "", KVD_VPOPT_RESTRICT_LOGIN, 10, true, &closed), 0u);
    const std::vector<NODEINFO> seen = r.npiv->seen_by(*r.npiv->find(closed.wwpn));
    EXPECT_EQ(seen.size(), 3u); // F_Port, name server, the target
    EXPECT_TRUE(sees(seen, 0x010300));
    EXPECT_FALSE(sees(r.npiv->seen_by_board(true), closed.did));
    EXPECT_FALSE(sees(r.npiv->seen_by(*r.npiv->find(open.wwpn)), closed.did));
}

TEST(SimNpiv, FleetSection)
{
    const Fleet f = fleet_ok(
        board_doc(R"("npiv": {"driver_enable": false, "fabric_support": false, "fabric_max_vports": 3})"));
    const NpivConf &n = f.boards.at(0).npiv;
    EXPECT_FALSE(n.driver_enable);
    EXPECT_FALSE(n.fabric_support);
    EXPECT_EQ(n.fabric_max_vports, 3u);
    EXPECT_NE(fleet_fault(board_doc(R"("npiv": {"vport": 1})")).find("unknown field"), std::string::npos);
    EXPECT_NE(fleet_fault(board_doc(R"("npiv": {"vports": 1})")).find("expected an array"),
              std::string::npos);
    EXPECT_NE(fleet_fault(board_doc(R"("npiv": {"vports": [{"wwpn": "24:00:06:4b:51:e9:00:10"}]})"))
                  .find("vports[0]: missing field \"wwnn\""),
              std::string::npos);
    const Fleet s = fleet_ok(board_doc(
        R"("npiv": {"vports": [{"wwpn": "24:00:06:4b:51:e9:00:10", "wwnn": "28:00:06:4b:51:e9:00:10"}]})"));
    ASSERT_EQ(s.boards.at(0).npiv.vports.size(), 1u);
    EXPECT_EQ(s.boards.at(0).npiv.vports[0].wwnn[0], 0x28);
    fleet_fault(board_doc(R"("npiv": {"fabric_max_vports": 65536})"));
}
