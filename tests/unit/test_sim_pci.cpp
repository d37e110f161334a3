// The bus side of a board: configuration space masks, host registers,
// adapter memory, forced dumps and configuration regions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "kvd_regs.h"
#include "pci/config_space.hpp"
#include "pci/pci_engine.hpp"
#include "pci/regions.hpp"

using namespace kvdsim;

namespace
{

BoardConf board(int sli = 3, Protocol protocol = Protocol::fc, bool tarvo = false)
{
    BoardConf b;
    b.vendor_id = 0x2c71;
    b.device_id = 0xf300;
    b.subsys_vendor_id = 0x2c71;
    b.subsys_device_id = 0xf302;
    b.irq = 34;
    b.mem_base = 0x1fbf80000ull;
    b.ctlreg_base = 0xfbf7f000;
    b.flash_base = 0xfbe00000;
    b.sli_mode = sli;
    b.protocol = protocol;
    b.tarvo = tarvo;
    b.model = "QM8-F2";
    b.serial = "QSA00010";
    b.description = "QM8-F2 test adapter";
    b.hardware_version = "0x2057706d";
    b.revision.biu_rev = 2;
    return b;
}

uint32_t cfg32(const PciConfigSpace &s, uint32_t off)
{
    uint32_t v = 0;
    EXPECT_TRUE(s.read(off, reinterpret_cast<uint8_t *>(&v), 4));
    return v;
}

} // namespace

TEST(PciConfig, ReadOnlyFieldsIgnoreWrites)
{
    PciConfigSpace s(board());
    const auto before = s.power_on_image();
    // identity, revision and class, header type, subsystem, capability
    // pointer, interrupt pin, capability headers and link status
    for (uint32_t off : {0x00u, 0x08u, 0x2cu, 0x34u, 0x40u, 0x54u, 0x58u, 0x60u, 0x64u, 0x6cu}) {
        ASSERT_TRUE(s.write32(off, 0xffffffff)) << off;
        uint32_t expect;
        std::memcpy(&expect, before.data() + off, 4);
        EXPECT_EQ(cfg32(s, off), expect) << std::hex << off;
    }
    // MSI-X: enable and function mask writable, table size fixed
    EXPECT_TRUE(s.write32(0x50, 0xffffffff));
    EXPECT_EQ(cfg32(s, 0x50), 0xc0076011u);
    EXPECT_TRUE(s.write32(0x3c, 0xffffffff));
    EXPECT_EQ(cfg32(s, 0x3c), 0x000001ffu); // line writable, pin fixed
    EXPECT_EQ(cfg32(s, 0x00), 0xf3002c71u);
    EXPECT_EQ(cfg32(s, 0x08) >> 8, 0x0c0400u); // Fibre Channel controller
}

TEST(PciConfig, CommandBitsAndStatusWriteOneToClear)
{
    PciConfigSpace s(board());
    EXPECT_EQ(cfg32(s, 0x04), 0x00100146u);
    ASSERT_TRUE(s.write32(0x04, 0x0000ffff));
    EXPECT_EQ(cfg32(s, 0x04), 0x00100547u);
    s.signal_status(pcicfg::kStatusSignaledSerr);
    ASSERT_TRUE(s.write32(0x04, 0x00000146)); // zeros leave it
    EXPECT_EQ(cfg32(s, 0x04), 0x40100146u);
    ASSERT_TRUE(s.write32(0x04, 0x40100146)); // a one clears it, capability bit stays
    EXPECT_EQ(cfg32(s, 0x04), 0x00100146u);
    // power management: state bits writable, PME status cleared by a one
    ASSERT_TRUE(s.write32(pcicfg::kPmCsr, 0x0000ffff));
    EXPECT_EQ(cfg32(s, pcicfg::kPmCsr) & 0xffff, 0x010bu);
}

TEST(PciConfig, BarsAnswerSizingWithTheirSize)
{
    PciConfigSpace s(board());
    EXPECT_EQ(cfg32(s, 0x10), 0xfbf80004u);
    EXPECT_EQ(cfg32(s, 0x14), 0x1u);
    EXPECT_EQ(cfg32(s, 0x18), 0xfbf7f004u);
    EXPECT_EQ(cfg32(s, 0x30), 0xfbe00000u);
    for (uint32_t off = 0x10; off <= 0x30; off += 4)
        ASSERT_TRUE(s.write32(off, 0xffffffff));
    EXPECT_EQ(cfg32(s, 0x10), ~(kSlimSize - 1) | 0x4);
    EXPECT_EQ(cfg32(s, 0x14), 0xffffffffu);
    EXPECT_EQ(cfg32(s, 0x18), ~(kCtlRegSize - 1) | 0x4);
    EXPECT_EQ(cfg32(s, 0x20), 0u); // not implemented
    EXPECT_EQ(cfg32(s, 0x24), 0u);
    EXPECT_EQ(cfg32(s, 0x30), ~(kExpansionRomSize - 1) | 0x1);
    ASSERT_TRUE(s.write32(0x10, 0xfbf80000));
    EXPECT_EQ(cfg32(s, 0x10), 0xfbf80004u);
}

TEST(PciConfig, CapabilitiesFormOneChain)
{
    PciConfigSpace s(board());
    uint32_t ids[4] = {}, n = 0;
    for (uint32_t p = s.byte(pcicfg::kCapPtr); p != 0 && n < 4; p = s.byte(p + 1))
        ids[n++] = s.byte(p);
    ASSERT_EQ(n, 3u);
    EXPECT_EQ(ids[0], 0x01u); // power management
    EXPECT_EQ(ids[1], 0x11u); // MSI-X
    EXPECT_EQ(ids[2], 0x10u); // PCI Express
}

TEST(PciConfig, AccessesStayInsideTheSpace)
{
    PciConfigSpace s(board());
    uint8_t b[8] = {};
    EXPECT_TRUE(s.read(255, b, 1));
    EXPECT_TRUE(s.read(256, b, 0));
    EXPECT_FALSE(s.read(256, b, 1));
    EXPECT_FALSE(s.read(250, b, 7));
    EXPECT_FALSE(s.read(0xffffffff, b, 2));
    EXPECT_TRUE(s.write32(252, 0));
    EXPECT_FALSE(s.write32(256, 0));
    EXPECT_FALSE(s.write32(2, 0));
}

TEST(PciEngineRegs, HostStatusFollowsTheFirmware)
{
    PciEngine e(board(), 5);
    FirmwareView fw{true, false, 5};
    EXPECT_EQ(e.read_reg(KVD_REG_HS, fw), HS_FFRDY | HS_MBRDY);
    EXPECT_EQ(e.read_reg(KVD_REG_HS, FirmwareView{false, true, 5}), HS_FFRDY);
    EXPECT_EQ(e.read_reg(KVD_REG_HS, FirmwareView{false, false, 5}), 0u);
    ASSERT_EQ(e.write_reg(KVD_REG_HS, 0, fw), RegAction::none);
    EXPECT_EQ(e.read_reg(KVD_REG_HS, fw), HS_FFRDY | HS_MBRDY);
}

TEST(PciEngineRegs, LinkAttentionClearsWithAOne)
{
    PciEngine e(board(), 5);
    EXPECT_EQ(e.read_reg(KVD_REG_HA, FirmwareView{true, false, 5}), 0u);
    FirmwareView fw{true, false, 7};
    EXPECT_EQ(e.read_reg(KVD_REG_HA, fw), HA_LATT);
    e.write_reg(KVD_REG_HA, 0, fw);
    EXPECT_EQ(e.read_reg(KVD_REG_HA, fw), HA_LATT);
    e.write_reg(KVD_REG_HA, HA_LATT, fw);
    EXPECT_EQ(e.read_reg(KVD_REG_HA, fw), 0u);
    EXPECT_EQ(e.read_reg(KVD_REG_HA, FirmwareView{true, false, 8}), HA_LATT);
}

TEST(PciEngineRegs, WritesThatAskTheFirmwareToAct)
{
    PciEngine e(board(), 1);
    FirmwareView fw{true, false, 1};
    EXPECT_EQ(e.write_reg(KVD_REG_CA, CA_R0ATT, fw), RegAction::none);
    EXPECT_EQ(e.write_reg(KVD_REG_CA, CA_MBATT, fw), RegAction::run_mailbox);
    EXPECT_EQ(e.read_reg(KVD_REG_CA, fw), 0u);
    e.mailbox_done();
    EXPECT_EQ(e.read_reg(KVD_REG_HA, fw), HA_MBATT);
    e.write_reg(KVD_REG_HA, HA_MBATT, fw);
    EXPECT_EQ(e.read_reg(KVD_REG_HA, fw), 0u);

    EXPECT_EQ(e.read_reg(KVD_REG_HC, fw), 0xe0000007u);
    EXPECT_EQ(e.write_reg(KVD_REG_HC, 0xffffffff, fw), RegAction::restart_firmware);
    EXPECT_EQ(e.read_reg(KVD_REG_HC, fw), 0xe000000fu); // INITFF reads as 0
    EXPECT_EQ(e.write_reg(KVD_REG_HC, 0, fw), RegAction::none);
}

TEST(PciEngineRegs, ControlRegisterSpace)
{
    PciEngine e(board(), 1);
    FirmwareView fw{};
    EXPECT_EQ(e.read_reg(0x10, fw), 2u); // revision, read-only
    e.write_reg(0x10, 9, fw);
    EXPECT_EQ(e.read_reg(0x10, fw), 2u);
    EXPECT_EQ(e.read_reg(pcicfg::kMsixTable + 12, fw), 1u); // masked
    e.write_reg(pcicfg::kMsixTable + 12, 0xfffffffe, fw);
    EXPECT_EQ(e.read_reg(pcicfg::kMsixTable + 12, fw), 0u);
    e.write_reg(pcicfg::kMsixTable, 0x12345677, fw);
    EXPECT_EQ(e.read_reg(pcicfg::kMsixTable, fw), 0x12345674u);
    e.write_reg(pcicfg::kMsixPba, 1, fw);
    EXPECT_EQ(e.read_reg(pcicfg::kMsixPba, fw), 0u);
    e.write_reg(kCtlRegSize - 4, 0xabcd, fw);
    EXPECT_EQ(e.read_reg(kCtlRegSize - 4, fw), 0xabcdu);
    EXPECT_FALSE(e.read_reg(kCtlRegSize, fw));
    EXPECT_FALSE(e.write_reg(kCtlRegSize, 0, fw));
    EXPECT_FALSE(e.read_reg(2, fw));
}

TEST(PciEngineRegs, MemoryDecodingOffOrPoweredDown)
{
    PciEngine e(board(), 1);
    FirmwareView fw{};
    uint8_t b = 0x5a;
    ASSERT_TRUE(e.write_mem(0, &b, 1));
    e.config().write32(pcicfg::kCommand, 0);
    EXPECT_EQ(e.read_reg(KVD_REG_HC, fw), 0xffffffffu);
    EXPECT_EQ(e.write_reg(KVD_REG_HC, 0, fw), RegAction::none);
    ASSERT_TRUE(e.read_mem(0, &b, 1));
    EXPECT_EQ(b, 0xff);
    e.config().write32(pcicfg::kCommand, 0x146);
    EXPECT_EQ(e.read_reg(KVD_REG_HC, fw), 0xe0000007u); // the write was lost
    e.config().write32(pcicfg::kPmCsr, 3);              // D3hot
    EXPECT_EQ(e.read_reg(KVD_REG_HC, fw), 0xffffffffu);
    e.config().write32(pcicfg::kPmCsr, 0);
    ASSERT_TRUE(e.read_mem(0, &b, 1));
    EXPECT_EQ(b, 0x5a);
}

TEST(PciEngineMem, SlimBounds)
{
    PciEngine e(board(), 1);
    uint8_t b[2] = {7, 8};
    EXPECT_TRUE(e.write_mem(kSlimSize - 1, b, 1));
    EXPECT_FALSE(e.write_mem(kSlimSize - 1, b, 2));
    EXPECT_TRUE(e.write_mem(kSlimSize, b, 0));
    EXPECT_FALSE(e.write_mem(0xffffffff, b, 2));
    b[0] = 0;
    EXPECT_TRUE(e.read_mem(kSlimSize - 1, b, 1));
    EXPECT_EQ(b[0], 7);
    EXPECT_FALSE(e.read_mem(kSlimSize - 1, b, 2));
}

TEST(PciEngineDump, ForcedDumpStopsTheFirmwareUntilCleared)
{
    PciEngine e(board(), 3);
    FirmwareView fw{true, false, 3};
    EXPECT_TRUE(e.dump_image().empty());
    e.force_dump(fw);
    EXPECT_TRUE(e.dumped());
    EXPECT_EQ(e.read_reg(KVD_REG_HS, fw), HS_FFER3);
    EXPECT_EQ(e.read_reg(KVD_REG_HA, fw), HA_ERATT);
    EXPECT_EQ(e.config().word16(pcicfg::kStatus) & pcicfg::kStatusSignaledSerr, pcicfg::kStatusSignaledSerr);
    const auto img = e.dump_image();
    ASSERT_EQ(img.size(), PciEngine::kDumpImageSize);
    EXPECT_EQ(std::memcmp(img.data(), "FDMP", 4), 0);
    EXPECT_EQ(img[4], 1); // first dump
    e.clear_dump();
    EXPECT_EQ(e.read_reg(KVD_REG_HS, fw), HS_FFRDY | HS_MBRDY);
    e.force_dump(fw);
    EXPECT_EQ(e.dump_image()[4], 2);
}

TEST(ConfigRegions, SizesAndPresence)
{
    const BoardConf fc3 = board(3), fc4 = board(4), cna = board(3, Protocol::fcoe, true);
    PciConfigSpace s3(fc3), s4(fc4), sc(cna);
    const struct {
        uint32_t region;
        size_t size;
    } sizes[] = {{0, 60}, {4, 120}, {5, 200},  {6, 200},  {7, 200},
                 {8, 60}, {9, 256}, {10, 256}, {14, 512}, {17, 100}};
    for (const auto &r : sizes) {
        auto d = config_region(fc3, s3, r.region);
        ASSERT_TRUE(d) << r.region;
        EXPECT_EQ(d->size(), r.size) << r.region;
    }
    EXPECT_EQ(config_region(fc4, s4, 14)->size(), 1000u);
    EXPECT_FALSE(config_region(fc3, s3, 22));
    EXPECT_FALSE(config_region(fc3, s3, 23));
    EXPECT_EQ(config_region(cna, sc, 22)->size(), 512u);
    EXPECT_EQ(config_region(cna, sc, 23)->size(), 1024u);
    for (uint32_t r : {1u, 3u, 11u, 32u, 0xffffffffu})
        EXPECT_FALSE(config_region(fc3, s3, r)) << r;
}

TEST(ConfigRegions, VpdChecksumsToZero)
{
    const auto v = vpd_image(board());
    ASSERT_GT(v.size(), 8u);
    EXPECT_EQ(v[0], 0x82);
    EXPECT_EQ(v.back(), 0x78);
    // the read-only section ends with RV, whose byte zeroes the sum
    uint8_t sum = 0;
    for (size_t i = 0; i + 1 < v.size(); ++i)
        sum = static_cast<uint8_t>(sum + v[i]);
    EXPECT_EQ(sum, 0);
    EXPECT_EQ(v[v.size() - 5], 'R');
    EXPECT_EQ(v[v.size() - 4], 'V');
}

TEST(ConfigRegions, EveryRowBuildsWithinTheLimit)
{
    const BoardConf all = board(4, Protocol::fcoe, true);
    PciConfigSpace s(all);
    EXPECT_EQ(region_rows().size(), 12u);
    for (const RowInfo &r : region_rows()) {
        const RegionRow *row = region_row(r.code);
        ASSERT_TRUE(row) << r.name;
        auto d = config_region(all, s, r.code);
        ASSERT_TRUE(d) << r.name;
        EXPECT_GE(d->size(), row->min_out) << r.name;
        EXPECT_LE(d->size(), size_t{KVD_REGION_MAX}) << r.name;
    }
}

TEST(ConfigRegions, WritesStayInsideTheRegionAndReadBackUntilRestored)
{
    const BoardConf fc3 = board(3);
    PciEngine e(fc3, 0);
    const auto before = *e.region(fc3, 0); // 60 bytes
    const uint8_t four[4] = {1, 2, 3, 4};
    EXPECT_TRUE(e.write_region(fc3, 0, 56, four, 4));  // ends at the last byte
    EXPECT_FALSE(e.write_region(fc3, 0, 57, four, 4)); // one past
    EXPECT_FALSE(e.write_region(fc3, 0, 61, four, 0));
    EXPECT_FALSE(e.write_region(fc3, 22, 0, four, 4)); // not on this board
    auto after = *e.region(fc3, 0);
    ASSERT_EQ(after.size(), before.size());
    EXPECT_EQ(after[56], 1);
    EXPECT_EQ(after[59], 4);
    EXPECT_TRUE(std::equal(before.begin(), before.begin() + 56, after.begin()));
    EXPECT_TRUE(e.restore_region(fc3, 0));
    EXPECT_EQ(*e.region(fc3, 0), before);
    EXPECT_FALSE(e.restore_region(fc3, 22));
}
