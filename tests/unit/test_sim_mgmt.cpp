// RNID management information, RNID accepts and the event count.
#include <gtest/gtest.h>

#include <cstring>

#include "mgmt/mgmt.hpp"

using namespace kvdsim;

namespace
{

BoardConf board()
{
    BoardConf b;
    b.wwnn = {0x20, 0, 6, 0x4b, 0x51, 0xa0, 0, 0x10};
    RemotePort a, c, tape;
    a.wwpn = {0x21, 0, 6, 0x4b, 0x51, 0xd0, 0, 1};
    a.wwnn = {0x20, 0, 6, 0x4b, 0x51, 0xd0, 0, 1};
    a.symbolic_name = "QSTOR 7100 port 0A and more";
    c = a;
    c.wwpn[7] = 2;
    c.symbolic_name = "QSTOR 7100 port 1A";
    tape.wwpn = {0x10, 0, 6, 0x4b, 0x51, 0xa7, 0, 0x44};
    tape.wwnn = {0x20, 0, 6, 0x4b, 0x51, 0xa7, 0, 0x44};
    tape.fcp_target = false;
    b.remote_ports = {a, c, tape};
    return b;
}

HBA_WWN wwn(const Wwn &w)
{
    HBA_WWN out;
    std::memcpy(out.wwn, w.data(), 8);
    return out;
}

} // namespace

TEST(Mgmt, InfoFollowsTheLinkAndKeepsWhatWasSet)
{
    const BoardConf b = board();
    MgmtEngine m(b, 10);
    HBA_MGMTINFO i = m.info(MgmtLinkView{true, 0x010200, false, 10});
    EXPECT_EQ(m.info(MgmtLinkView{true, 0xef, true, 10}).NumberOfAttachedNodes, 3u); // a loop

    i.UDPPort = 0x2345;
    i.IPVersion = 2;
    i.IPAddress[0] = 1;
    i.PortId = 0x999999;
    std::memset(i.wwn.wwn, 0xee, 8);
    EXPECT_EQ(m.set_info(i), HBA_STATUS_OK);
    i.IPVersion = 3;
    EXPECT_EQ(m.set_info(i), HBA_STATUS_ERROR_ARG);
    const HBA_MGMTINFO j = m.info(MgmtLinkView{true, 0x010200, false, 10});
    EXPECT_EQ(j.IPVersion, 2);
    EXPECT_EQ(j.PortId, 0x010200u); // not settable
    EXPECT_EQ(std::memcmp(j.wwn.wwn, b.wwnn.data(), 8), 0);
}

TEST(Mgmt, RnidRefusals)
{
    const BoardConf b = board();
    MgmtEngine m(b, 1);
    const MgmtLinkView up{true, 0x010200, false, 1};
    KVD_RNID_ACC acc;
    EXPECT_EQ(m.rnid(up, wwn(b.remote_ports[0].wwpn), KVD_RNID_NODE, acc), HBA_STATUS_ERROR_ILLEGAL_WWN);
    EXPECT_EQ(m.rnid(up, wwn(b.wwnn), KVD_RNID_NODE, acc), HBA_STATUS_ERROR_ILLEGAL_WWN);
    EXPECT_EQ(m.rnid(up, wwn(b.remote_ports[0].wwpn), 2, acc), HBA_STATUS_ERROR_ARG);
    EXPECT_EQ(m.rnid(MgmtLinkView{}, wwn(b.remote_ports[0].wwpn), KVD_RNID_PORT, acc),
              HBA_STATUS_ERROR_UNAVAILABLE);
}

TEST(Mgmt, EventsCountUpToTheQueueDepth)
{
    const BoardConf b = board();
    MgmtEngine m(b, 100);
    EXPECT_EQ(m.events(MgmtLinkView{true, 0, false, 100}), 0u);
    EXPECT_EQ(m.events(MgmtLinkView{true, 0, false, 102}), 2u);
    EXPECT_EQ(m.events(MgmtLinkView{true, 0, false, 100 + MgmtEngine::kMaxEvents}), MgmtEngine::kMaxEvents);
    EXPECT_EQ(m.events(MgmtLinkView{true, 0, false, 101 + MgmtEngine::kMaxEvents}), MgmtEngine::kMaxEvents);
}
