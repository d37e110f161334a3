// Nodes, VPD, bindings and the target mapping of one board, against its
// fleet description and its SCSI targets.
#include <gtest/gtest.h>

#include <cstring>

#include "nodes/nodes.hpp"
#include "scsi/target.hpp"

using namespace kvdsim;

namespace
{

BoardConf board()
{
    BoardConf b;
    b.model = "QM8-F2";
    b.description = "QM8-F2 adapter";
    b.function = 1;
    b.instance = 4;
    b.fabric_name = {0x10, 0, 6, 0x4b, 0x51, 0xf0, 0, 1};
    RemotePort a, c, host;
    a.wwpn = {0x21, 0, 6, 0x4b, 0x51, 0xd0, 0, 1};
    a.wwnn = {0x20, 0, 6, 0x4b, 0x51, 0xd0, 0, 1};
    a.did = 0x010400;
    a.scsi_target = 5;
    a.os_device = "/dev/sg2";
    c = a;
    c.wwpn[7] = 2;
    c.did = 0x010300;
    c.scsi_target = -1;
    host.wwpn = {0x10, 0, 6, 0x4b, 0x51, 0xa7, 0, 0x44};
    host.did = 0x020000;
    host.fcp_target = false;
    b.remote_ports = {a, c, host};
    ScsiTargetConf t;
    t.wwpn = a.wwpn;
    LunConf l0, l7;
    l0.lun = 0;
    l0.blocks = 100;
    l0.serial = "SN0";
    l7.lun = 7;
    l7.blocks = 8;
    l7.serial = "SERIAL7";
    t.luns = {l7, l0};
    b.scsi.targets = {t};
    return b;
}

} // namespace

TEST(Nodes, FabricServicesThenPortsByAddress)
{
    const BoardConf b = board();
    Nodes n(b);
    const auto list = n.nodes(true);
    ASSERT_EQ(list.size(), 5u);
    EXPECT_EQ(list[2].a_did, 0x010300u);        // ports by address, after the fabric services
    EXPECT_EQ(list[2].a_targetid, 0xFFFFFFFFu); // unmapped
    EXPECT_TRUE(n.nodes(false).empty());

    BoardConf loop = b;
    loop.topology = Topology::loop;
    EXPECT_EQ(Nodes(loop).nodes(true).size(), 3u);
}

TEST(Nodes, VpdFromTheBoardOrTheFleet)
{
    BoardConf b = board();
    VPD v{};
    b.nodes.model = std::string(79, 'm');
    EXPECT_EQ(Nodes(b).vpd(v), 0u);
    EXPECT_EQ(strlen(v.Model), 79u);
    b.nodes.evpd = false;
    EXPECT_EQ(Nodes(b).vpd(v), uint32_t(KVD_VPD_NO_EVPD));
}

TEST(Nodes, AutomaticBindingsOnlyForMappedTargets)
{
    BoardConf b = board();
    const auto auto_list = Nodes(b).bindings();
    ASSERT_EQ(auto_list.size(), 1u);
    EXPECT_EQ(auto_list[0].scsi_id, 5u);
    b.nodes.bindings = std::vector<BindingConf>{};
    EXPECT_TRUE(Nodes(b).bindings().empty());
}

TEST(Nodes, MappingFollowsTheUnitsAndTheirIdentifiers)
{
    const BoardConf b = board();
    ScsiTargets scsi(b);
    Nodes n(b);
    const auto map = n.mapping(scsi, "vexa", true);
    ASSERT_EQ(map.size(), 2u);              // the unmapped target has no entries
    EXPECT_EQ(map[0].ScsiId.ScsiOSLun, 0u); // units in LUN order
    EXPECT_EQ(map[1].FcpId.FcpLun, 0x0007000000000000ull);

    // The LUID is the unit's NAA designator as its device identification
    // page gives it, header included.
    ScsiTask t;
    t.lun = ScsiTargets::lun_bytes(7);
    const uint8_t cdb[6] = {SCSI_INQUIRY, 1, VPD_DEVICE_ID, 0, 255, 0};
    t.cdb = cdb;
    t.expected = 255;
    scsi.execute(b.remote_ports[0].wwpn, t);
    ASSERT_GE(t.data_in.size(), 24u);
    EXPECT_EQ(map[1].LUID.buffer[3], 16);
    EXPECT_EQ(memcmp(map[1].LUID.buffer, &t.data_in[4], 20), 0);
    EXPECT_NE(memcmp(map[0].LUID.buffer, map[1].LUID.buffer, 20), 0);

    EXPECT_TRUE(n.mapping(scsi, "vexa", false).empty());
}
