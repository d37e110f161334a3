// Records the library builds from a board and its link, and the trace line.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include <unistd.h>

#include "hba/attributes.hpp"
#include "core/trace.hpp"

using namespace kvdsim;

namespace
{

const Fleet &default_fleet()
{
    static const Fleet f = [] {
        std::string error;
        auto parsed = parse_fleet(default_fleet_json(), "default", error);
        EXPECT_TRUE(parsed) << error;
        return parsed ? *parsed : Fleet{};
    }();
    return f;
}

LinkStatus link_up(const BoardConf &b)
{
    LinkStatus l;
    l.up = true;
    l.did = b.did;
    l.speed = b.speed;
    l.topology = LNK_FABRIC;
    l.state = LNK_READY;
    return l;
}

int32_t int_at(const char *field, size_t offset)
{
    int32_t v;
    memcpy(&v, field + offset, sizeof v);
    return v;
}

} // namespace

TEST(Attributes, Fc4TypeBits)
{
    HBA_FC4TYPES t{};
    set_fc4_type(t, 0x08); // FCP
    set_fc4_type(t, 0x20); // CT
    for (int i = 0; i < 32; ++i)
        EXPECT_EQ(t.bits[i], (i == 2 || i == 7) ? 1 : 0) << i;
}

TEST(Attributes, LocalPortUpAndDown)
{
    const BoardConf &b = default_fleet().boards.at(0);
    HBA_PORTATTRIBUTES p;
    local_port_attributes(default_fleet(), b, link_up(b), BoardState::ready, p);
    EXPECT_EQ(int_at(p.OSDeviceName, KVD_OSDEV_NUM2), -1);
    EXPECT_EQ(int_at(p.OSDeviceName, KVD_OSDEV_HOST), 4);

    LinkStatus down;
    local_port_attributes(default_fleet(), b, down, BoardState::ready, p);
    EXPECT_EQ(p.PortState, HBA_PORTSTATE_LINKDOWN);
    EXPECT_EQ(p.PortFcId, 0u);
    EXPECT_EQ(p.PortSpeed, 0u);
    EXPECT_EQ(p.NumberofDiscoveredPorts, 0u);
    EXPECT_EQ(p.PortActiveFc4Types.bits[2], 0);
    EXPECT_EQ(int_at(p.OSDeviceName, KVD_OSDEV_HOST), 4)
        << "the listing reads the host even with the link down";

    local_port_attributes(default_fleet(), b, down, BoardState::offline, p);
    EXPECT_EQ(p.PortState, HBA_PORTSTATE_OFFLINE);
}

TEST(Attributes, BoardEntryAndDriverInfo)
{
    const BoardConf &cna = default_fleet().boards.at(1);
    KVD_BRDINFO e;
    memset(&e, 0xa5, sizeof e);
    board_entry(cna, e);
    EXPECT_EQ(e.a_onmask, 0u) << "driver-wide fields are entry 0's caller's business";

    KVDDRVINFO d;
    memset(&d, 0xa5, sizeof d);
    d.drvInfoVer = KVD_DRVINFO_VERSION;
    driver_info(default_fleet(), cna, link_up(cna), d);
    EXPECT_EQ(d.drvInfoVer, KVD_DRVINFO_VERSION);
    EXPECT_EQ(d.rsvd, 0);
}

TEST(Trace, LineFormatAndTruncation)
{
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    set_trace_fd_for_test(fds[1]);

    char buf[256];
    const uint8_t rec[3] = {0x01, 0xab, 0xff};
    const uint8_t wwn[8] = {0x10, 0, 6, 0x4b, 0x51, 0xa0, 0, 0x10};
    TraceLine(buf, sizeof buf, "GetPortAttributesByWWN")
        .arg("board", 1)
        .arg_wwn("wwn", wwn)
        .arg_hex("addr", 0x7b)
        .arg_ptr("attributes", nullptr)
        .result(-22)
        .bytes("in", rec, 2)
        .bytes("out", rec, 3)
        .emit();
    char small[40];
    TraceLine(small, sizeof small, "KVD_GetLibVer").result(0).bytes("out", rec, 3).more(rec, 3).emit();
    TraceLine(buf, sizeof buf, "KVD_GetLibVer").result(1).injected(1).emit();
    set_trace_fd_for_test(-1);
    close(fds[1]);

    char got[512] = {};
    ssize_t n = read(fds[0], got, sizeof got - 1);
    close(fds[0]);
    ASSERT_GT(n, 0);
    EXPECT_EQ(
        std::string(got),
        "GetPortAttributesByWWN(board=1, wwn=10:00:06:4b:51:a0:00:10, addr=0x7b, attributes=null) = -22 "
        "in=01ab out=01abff\n"
        "KVD_GetLibVer() = 0 out=01 (truncated)\n"
        "KVD_GetLibVer() = 1 injected rule=1\n");
}
