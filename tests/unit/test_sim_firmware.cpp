// The adapter firmware model: mailbox replies and the state they change.
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

#include "core/fault.hpp"
#include "sim_test.hpp"
#include "mailbox/firmware.hpp"
#include "pci/pci_engine.hpp"
#include "kvd_attr.h"
#include "libkvd.h"

using namespace kvdsim;
using namespace kvdsim::test;

namespace
{

BoardConf make_board(Topology topo = Topology::fabric, int sli = 3)
{
    BoardConf b;
    b.number = 1;
    b.sli_mode = sli;
    b.wwpn = {0x10, 0x00, 0x06, 0x4b, 0x51, 0x00, 0x00, 0x01};
    b.wwnn = {0x20, 0x00, 0x06, 0x4b, 0x51, 0x00, 0x00, 0x01};
    b.pref_did = 0x010200;
    b.hard_alpa = 0x01;
    b.topology = topo;
    b.did = topo == Topology::loop ? 0x0000E8 : 0x010200;
    b.alpa = topo == Topology::loop ? 0xE8 : 0;
    b.speed = 2;
    b.revision.biu_rev = 3;
    b.revision.op_fw_name = "QM2.10A4";
    b.revision.arm_fw_name = "ARMFW01";
    RemotePort t;
    t.did = topo == Topology::loop ? 0x0000E4 : 0x010300;
    t.wwpn = {0x50, 0x06, 0x4b, 0x51, 0, 0, 0, 0x10};
    b.remote_ports.push_back(t);
    t.did = topo == Topology::loop ? 0x0000E2 : 0x010400;
    t.wwpn[7] = 0x11;
    b.remote_ports.push_back(t);
    return b;
}

struct Box {
    Firmware fw;
    FakeMemory mem;
    explicit Box(const BoardConf &b) : fw(b)
    {
    }

    MAILBOX run(MAILBOX mb, uint32_t words_in = 32, uint32_t words_out = 64)
    {
        EXPECT_EQ(fw.issue(reinterpret_cast<uint8_t *>(&mb), words_in, words_out, 5, mem), KVD_RC_OK);
        return mb;
    }
    MAILBOX cmd(uint8_t code)
    {
        MAILBOX mb{};
        mb.mbxCommand = code;
        return mb;
    }
};

} // namespace

TEST(SimFirmware, LinkDownAndUp)
{
    Box b(make_board());
    const LinkStatus start = b.fw.link();
    ASSERT_TRUE(start.up);
    EXPECT_NE(start.event_tag, 0u);
    EXPECT_EQ(start.up_count, 1u);
    EXPECT_EQ(start.topology, LNK_FABRIC);
    EXPECT_EQ(start.did, 0x010200u);

    b.run(b.cmd(MBX_DOWN_LINK));
    LinkStatus l = b.fw.link();
    EXPECT_FALSE(l.up);
    EXPECT_EQ(l.state, LNK_DOWN);
    EXPECT_EQ(l.did, 0u);
    EXPECT_EQ(l.event_tag, start.event_tag + 1);
    EXPECT_EQ(l.down_count, 1u);
    MAILBOX la = b.run(b.cmd(MBX_READ_LA));
    EXPECT_EQ(la.un.varReadLA.attType, AT_LINK_DOWN);
    EXPECT_EQ(la.un.varReadLA.eventTag, l.event_tag);
    MAILBOX lnk = b.run(b.cmd(MBX_READ_LNK_STAT));
    EXPECT_EQ(lnk.un.varRdLnk.linkFailureCnt, 1u);
    const PortCounters c = b.fw.counters();
    EXPECT_EQ(b.fw.counters().tx_frames, c.tx_frames); // no traffic without link

    // CLEAR_LA wants the current tag.
    MAILBOX clr = b.cmd(MBX_CLEAR_LA);
    EXPECT_NE(b.run(clr).mbxStatus, MBXERR_OK);
    clr.un.varClearLA.eventTag = l.event_tag;
    EXPECT_EQ(b.run(clr).mbxStatus, MBXERR_OK);

    // Forced loop on a fabric port: no link.
    MAILBOX init = b.cmd(MBX_INIT_LINK);
    init.un.varInitLnk.link_flags = FLAGS_TOPOLOGY_MODE_LOOP;
    b.run(init);
    EXPECT_FALSE(b.fw.link().up);
    init.un.varInitLnk.link_flags = FLAGS_TOPOLOGY_MODE_PT_LOOP;
    b.run(init);
    l = b.fw.link();
    EXPECT_TRUE(l.up);
    EXPECT_EQ(l.state, LNK_READY);
    EXPECT_EQ(l.up_count, 2u);
    EXPECT_EQ(l.event_tag, start.event_tag + 2);
    la = b.run(b.cmd(MBX_READ_LA));
    EXPECT_EQ(la.un.varReadLA.attType, AT_LINK_UP);
    EXPECT_EQ(la.un.varReadLA.topology, TOPOLOGY_PT_PT);
}

TEST(SimFirmware, ConfigLinkTimersInConfigAndSparm)
{
    Box b(make_board());
    MAILBOX mb = b.cmd(MBX_CONFIG_LINK);
    mb.un.varCfgLnk.edtov = 1500;
    mb.un.varCfgLnk.ratov = 7000;
    mb.un.varCfgLnk.altov = 33;
    EXPECT_EQ(b.run(mb).mbxStatus, MBXERR_OK);
    mb = b.run(b.cmd(MBX_READ_CONFIG));
    EXPECT_EQ(mb.un.varRdConfig.edtov, 1500u);
    EXPECT_EQ(mb.un.varRdConfig.ratov, 7000u);
    EXPECT_EQ(mb.un.varRdConfig.altov, 33u);
    EXPECT_EQ(mb.un.varRdConfig.myDid, 0x010200u);

    mb = b.cmd(MBX_READ_SPARM64);
    mb.un.varRdSparm64.sp64.tus.f.bdeSize = 112;
    mb.un.varRdSparm64.sp64.addrLow = FakeMemory::kBase + 8;
    EXPECT_EQ(b.run(mb).mbxStatus, MBXERR_OK);
    const uint8_t *sp = b.mem.buf.data() + 8;
    // An N_Port's word 2: Total Concurrent Sequences, then Relative Offset
    // by Information Category; a port that could receive no sequence at all
    // would carry 0 there.
    EXPECT_EQ(be32(sp + 8), 0x00FF0002u);
    EXPECT_EQ(be32(sp + 12), 1500u); // E_D_TOV
    EXPECT_EQ(0, std::memcmp(sp + 16, make_board().wwpn.data(), 8));
    EXPECT_EQ(sp[64] & 0x80, 0x80);   // class 3 valid
    EXPECT_EQ(b.mem.buf[8 + 112], 0); // nothing past the payload

    // RESTART brings the defaults back, stored variables included.
    MAILBOX sv = b.cmd(MBX_SET_VARIABLE);
    sv.un.varWords[0] = Firmware::kVariables - 1;
    sv.un.varWords[1] = 0xabcd;
    EXPECT_EQ(b.run(sv).mbxStatus, MBXERR_OK);
    b.run(b.cmd(MBX_RESTART));
    EXPECT_NE(b.run(b.cmd(MBX_READ_CONFIG)).un.varRdConfig.edtov, 1500u);
    EXPECT_EQ(b.run(sv).un.varWords[2], 0u);
}

TEST(SimFirmware, BadDescriptors)
{
    Box b(make_board());
    MAILBOX mb = b.cmd(MBX_READ_SPARM);
    mb.un.varRdSparm.sp.bdeAddress = FakeMemory::kBase;
    mb.un.varRdSparm.sp.bdeSize = 111;
    EXPECT_EQ(b.run(mb).mbxStatus, MBXERR_BAD_RCV_LENGTH);
    mb.un.varRdSparm.sp.bdeSize = 112;
    mb.un.varRdSparm.sp.bdeAddress = FakeMemory::kBase + 500; // runs off the end
    EXPECT_EQ(b.run(mb).mbxStatus, MBXERR_DMA_ERROR);
    mb.un.varRdSparm.sp.bdeAddress = 0;
    EXPECT_EQ(b.run(mb).mbxStatus, MBXERR_DMA_ERROR);
    mb.un.varRdSparm.sp.bdeAddress = FakeMemory::kBase;
    mb.un.varRdSparm.sp.bdeAddrHigh = 1; // above 4 GiB: not our buffer
    EXPECT_EQ(b.run(mb).mbxStatus, MBXERR_DMA_ERROR);
    EXPECT_EQ(b.run(b.cmd(0x42)).mbxStatus, MBXERR_UNKNOWN_CMD);
    EXPECT_EQ(b.run(b.cmd(MBX_LOAD_SM)).mbxStatus, MBXERR_UNKNOWN_CMD);
    Box s4(make_board(Topology::fabric, 4)); // an SLI-3 command on an SLI-4 board
    EXPECT_EQ(s4.run(s4.cmd(MBX_CONFIG_RING)).mbxStatus, MBXERR_UNKNOWN_CMD);
}

TEST(SimFirmware, UnregLoginRemovesRpi)
{
    Box b(make_board());
    MAILBOX rd = b.cmd(MBX_READ_RPI);
    rd.un.varRdRPI.sp.bdeAddress = FakeMemory::kBase;
    rd.un.varRdRPI.sp.bdeSize = 112;
    rd.un.varRdRPI.reqRpi = 2; // fabric, name server, then the first target
    MAILBOX got = b.run(rd);
    ASSERT_EQ(got.mbxStatus, MBXERR_OK);
    EXPECT_EQ(got.un.varRdRPI.DID, 0x010300u);
    EXPECT_EQ(got.un.varRdRPI.nextRpi, 3);
    EXPECT_EQ(b.mem.buf[16], 0x50); // the target's port name

    MAILBOX un = b.cmd(MBX_UNREG_LOGIN);
    un.un.varUnregLogin.rpi = 2;
    EXPECT_EQ(b.run(un).mbxStatus, MBXERR_OK);
    EXPECT_NE(b.run(un).mbxStatus, MBXERR_OK); // already gone
    EXPECT_NE(b.run(rd).mbxStatus, MBXERR_OK);
    rd.un.varRdRPI.reqRpi = 1;
    EXPECT_EQ(b.run(rd).un.varRdRPI.nextRpi, 3);
    un.un.varUnregLogin.rpi = 0xFFFF;
    EXPECT_EQ(b.run(un).mbxStatus, MBXERR_OK);
    rd.un.varRdRPI.reqRpi = 0;
    EXPECT_NE(b.run(rd).mbxStatus, MBXERR_OK);
}

TEST(SimFirmware, WordCountsAndBusyBoard)
{
    Box b(make_board());
    MAILBOX mb;
    std::memset(&mb, 0xAB, sizeof mb);
    mb.mbxOwner = 1;
    mb.mbxCommand = MBX_READ_REV;
    mb.mbxStatus = 0;
    // Only one word goes in: the rest, `version` bit included, reads as
    // zero, so the reply is the short one. Sixteen words come back.
    ASSERT_EQ(b.fw.issue(reinterpret_cast<uint8_t *>(&mb), 1, 16, 5, b.mem), KVD_RC_OK);
    EXPECT_EQ(mb.mbxOwner, 0);
    EXPECT_EQ(mb.un.varRdRev.biu_rev, 3u);
    EXPECT_EQ(mb.un.varRdRev.opFwName[0], 0);
    const uint8_t *raw = reinterpret_cast<const uint8_t *>(&mb);
    for (size_t i = 64; i < sizeof mb; ++i)
        ASSERT_EQ(raw[i], 0xAB) << "byte " << i;

    b.fw.set_state(BoardState::resetting);
    MAILBOX busy = b.cmd(MBX_READ_NV);
    EXPECT_EQ(b.fw.issue(reinterpret_cast<uint8_t *>(&busy), 32, 64, 5, b.mem), KVD_RC_MBX_RETRIES);
    EXPECT_EQ(busy.mbxStatus, MBX_NOT_FINISHED);
    EXPECT_EQ(busy.mbxCommand, MBX_READ_NV);
    EXPECT_EQ(busy.un.varRDnvp.portname[0], 0);
}

TEST(SimFirmware, PciLoopbackCopies)
{
    Box b(make_board());
    for (size_t i = 0; i < 64; ++i)
        b.mem.buf[i] = static_cast<uint8_t>(i + 1);
    MAILBOX mb = b.cmd(0x84);
    mb.un.varBIUdiag64.xmit_bde64.tus.f.bdeSize = 64;
    mb.un.varBIUdiag64.xmit_bde64.addrLow = FakeMemory::kBase;
    mb.un.varBIUdiag64.rcv_bde64.tus.f.bdeSize = 64;
    mb.un.varBIUdiag64.rcv_bde64.addrLow = FakeMemory::kBase + 256;
    EXPECT_EQ(b.run(mb).mbxStatus, MBXERR_OK);
    EXPECT_EQ(0, std::memcmp(b.mem.buf.data(), b.mem.buf.data() + 256, 64));
}

TEST(SimHostMemory, ChecksMappings)
{
    ProcessMemory pm;
    uint8_t local[16] = {};
    const uint8_t src[4] = {1, 2, 3, 4};
    EXPECT_TRUE(pm.write(reinterpret_cast<uintptr_t>(local) + 4, src, sizeof src));
    EXPECT_EQ(local[7], 4);
    EXPECT_FALSE(pm.write(0, src, sizeof src));
    EXPECT_FALSE(pm.read(UINT64_MAX - 1, local, 4)); // would wrap

    const long page = sysconf(_SC_PAGESIZE);
    void *p = mmap(nullptr, page * 2, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(p, MAP_FAILED);
    const uint64_t a = reinterpret_cast<uintptr_t>(p);
    EXPECT_FALSE(pm.write(a, src, sizeof src)); // read-only
    EXPECT_TRUE(pm.read(a, local, sizeof local));
    munmap(static_cast<uint8_t *>(p) + page, page);
    EXPECT_TRUE(pm.read(a + page - 4, local, 4));  // ends with the page's last byte
    EXPECT_FALSE(pm.read(a + page - 3, local, 4)); // one byte into the hole
    munmap(p, page);
    EXPECT_FALSE(pm.read(a, local, 4));
}

// Each limit the firmware states, at the limit and one past it.
TEST(SimFirmwareLimits, SixRingMasksFitASeventhDoesNot)
{
    Box b(make_board());
    MAILBOX mb = b.cmd(MBX_CONFIG_RING);
    mb.un.varCfgRing.ring = 1;
    mb.un.varCfgRing.numMask = MAX_RING_MASK;
    for (int i = 0; i < MAX_RING_MASK; ++i)
        mb.un.varCfgRing.rrRegs[i] = RR_REG{0xFF, static_cast<uint8_t>(i), 0xFF, 0x01};
    EXPECT_EQ(b.run(mb).mbxStatus, MBXERR_OK);
    MAILBOX rc = b.cmd(MBX_READ_RCONFIG);
    rc.un.varRdRConfig.ring = 1;
    rc = b.run(rc);
    EXPECT_EQ(rc.un.varRdRConfig.numMask, 6u);
    EXPECT_EQ(rc.un.varRdRConfig.rrRegs[5].rval, 5);
    mb.un.varCfgRing.numMask = MAX_RING_MASK + 1;
    EXPECT_EQ(b.run(mb).mbxStatus, MBXERR_MASKS_EXCEEDED);

    MAILBOX rr = b.cmd(MBX_RESET_RING);
    rr.un.varRstRing.ring_no = 0x10000003;
    EXPECT_EQ(b.run(rr).mbxStatus, MBXERR_BAD_RING_NUMBER);
    MAILBOX sm = b.cmd(MBX_SET_MASK);
    sm.un.varWords[1] = 0xFF;
    EXPECT_EQ(b.run(sm).mbxStatus, MBXERR_BAD_KEY);
    sm.un.varWords[0] = MBX_SETMASK_KEY;
    sm.un.varWords[2] = 9;
    EXPECT_EQ(b.run(sm).mbxStatus, MBXERR_BAD_RING_NUMBER);
}

TEST(SimFirmwareLimits, LoopMapNeedsRoomForTheCountAndEveryAlpa)
{
    Box b(make_board(Topology::loop));
    ASSERT_EQ(b.fw.link().alpa_count, 3);
    MAILBOX mb = b.cmd(MBX_READ_LA);
    mb.un.varReadLA.lilpBde.bdeAddress = FakeMemory::kBase;
    mb.un.varReadLA.lilpBde.bdeSize = 4; // count + 3 AL_PAs
    MAILBOX r = b.run(mb);
    EXPECT_EQ(r.mbxStatus, MBXERR_OK);
    EXPECT_EQ(r.un.varReadLA.granted_AL_PA, 0xE8);
    const uint8_t want[] = {3, 0xE8, 0xE4, 0xE2};
    EXPECT_EQ(0, std::memcmp(b.mem.buf.data(), want, sizeof want));
    EXPECT_EQ(b.mem.buf[4], 0) << "nothing past the room given";
    mb.un.varReadLA.lilpBde.bdeSize = 3;
    EXPECT_EQ(b.run(mb).mbxStatus, MBXERR_BAD_RCV_LENGTH);
}

TEST(SimFirmwareLimits, CommandFaultRuleAnswersWithItsStatus)
{
    Box b(make_board());
    std::string errors;
    library_faults().parse("mbox:READ_NV=0x10", errors);
    CommandNote note;
    MAILBOX mb = b.cmd(MBX_READ_NV);
    ASSERT_EQ(b.fw.issue(reinterpret_cast<uint8_t *>(&mb), 32, 64, 5, b.mem, {}, &note), KVD_RC_OK);
    EXPECT_EQ(mb.mbxStatus, MBXERR_ERROR);
    EXPECT_STREQ(note.name, "READ_NV");
    EXPECT_EQ(note.rule, 1);
    library_faults().parse("", errors);

    // Unknown codes and levels without the command: MBXERR_UNKNOWN_CMD.
    mb = b.cmd(MBX_WRITE_NV);
    ASSERT_EQ(b.fw.issue(reinterpret_cast<uint8_t *>(&mb), 32, 64, 5, b.mem, {}, &note), KVD_RC_OK);
    EXPECT_EQ(mb.mbxStatus, MBXERR_UNKNOWN_CMD);
    EXPECT_EQ(note.name, nullptr);
}

TEST(SimFirmwareLimits, RecordShorterThanTheCommandIsRefused)
{
    Box b(make_board());
    const MailboxRow *row = Firmware::command(MBX_SET_MASK);
    ASSERT_NE(row, nullptr);
    MAILBOX mb = b.cmd(MBX_SET_MASK);
    EXPECT_EQ(b.fw.issue(reinterpret_cast<uint8_t *>(&mb), row->min_in - 1, 64, 5, b.mem), EINVAL);
    EXPECT_EQ(b.fw.issue(reinterpret_cast<uint8_t *>(&mb), row->min_in, 64, 5, b.mem), KVD_RC_OK);
}

TEST(SimFirmwareLimits, EventLogKeepsTheLatestEntries)
{
    Box b(make_board());
    auto status = [&] { return b.run(b.cmd(MBX_READ_EVENT_LOG_STATUS)); };
    auto entry = [&](uint32_t i) {
        MAILBOX mb = b.cmd(MBX_READ_EVENT_LOG);
        mb.un.varWords[0] = i;
        return b.run(mb);
    };
    // Power-on link up is the first entry.
    MAILBOX st = status();
    ASSERT_EQ(st.un.varWords[0], 1u);
    EXPECT_EQ(entry(0).un.varWords[2], Firmware::kEventLinkUp);
    EXPECT_EQ(entry(1).mbxStatus, MBXERR_ERROR); // past the entries held

    MAILBOX wr = b.cmd(MBX_WRITE_EVENT_LOG);
    for (uint32_t i = 1; i < Firmware::kEventLogEntries; ++i) {
        wr.un.varWords[0] = 0x100 + i;
        wr.un.varWords[1] = i;
        EXPECT_EQ(b.run(wr).un.varWords[2], i + 1); // its sequence number
    }
    st = status();
    EXPECT_EQ(st.un.varWords[0], Firmware::kEventLogEntries); // full, none lost
    EXPECT_EQ(st.un.varWords[3], 0u);
    EXPECT_EQ(entry(Firmware::kEventLogEntries - 1).un.varWords[2], 0x100u + Firmware::kEventLogEntries - 1);
    EXPECT_EQ(entry(Firmware::kEventLogEntries).mbxStatus, MBXERR_ERROR);
}

TEST(SimFirmwareLimits, DumpMemoryFillsOnlyTheRoomBehindTheRecord)
{
    const BoardConf cfg = make_board();
    Box b(cfg);
    PciEngine pci(cfg, 0);
    b.fw.attach_memory(&pci);
    MAILBOX mb = b.cmd(MBX_DUMP_MEMORY);
    mb.un.varDmp.words[0] = MBX_DUMP_TYPE_MEMORY;
    mb.un.varDmp.words[2] = 10;
    std::array<uint8_t, 32> room{}; // eight words
    ASSERT_EQ(b.fw.issue(reinterpret_cast<uint8_t *>(&mb), 32, 64, 5, b.mem, room), KVD_RC_OK);
    EXPECT_EQ(mb.mbxStatus, MBXERR_OK);
    EXPECT_EQ(mb.un.varDmp.words[3], 8u); // what the room holds, not the ten asked
}
