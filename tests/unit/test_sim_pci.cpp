// The bus side of a board: configuration space masks, host registers,
// adapter memory, forced dumps and configuration regions.
#include <gtest/gtest.h>

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

TEST(PciConfig, StatusZerosLeaveItAndPowerStateIsWritable)
{
    PciConfigSpace s(board());
    s.signal_status(pcicfg::kStatusSignaledSerr);
    ASSERT_TRUE(s.write32(0x04, 0x00000146)); // zeros leave it
    EXPECT_EQ(cfg32(s, 0x04), 0x40100146u);
    // power management: state bits writable, PME status cleared by a one
    ASSERT_TRUE(s.write32(pcicfg::kPmCsr, 0x0000ffff));
    EXPECT_EQ(cfg32(s, pcicfg::kPmCsr) & 0xffff, 0x010bu);
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
    EXPECT_TRUE(s.read(256, b, 0));
    EXPECT_FALSE(s.read(0xffffffff, b, 2)); // would wrap
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

TEST(PciEngineRegs, WritesThatAskTheFirmwareToAct)
{
    PciEngine e(board(), 1);
    FirmwareView fw{true, false, 1};
    EXPECT_EQ(e.write_reg(KVD_REG_CA, CA_R0ATT, fw), RegAction::none);
    EXPECT_EQ(e.read_reg(KVD_REG_HC, fw), 0xe0000007u);
    EXPECT_EQ(e.write_reg(KVD_REG_HC, 0xffffffff, fw), RegAction::restart_firmware);
    EXPECT_EQ(e.read_reg(KVD_REG_HC, fw), 0xe000000fu); // INITFF reads as 0
    EXPECT_EQ(e.write_reg(KVD_REG_HC, 0, fw), RegAction::none);
}

TEST(PciEngineRegs, MsixTableAddressAndPendingBits)
{
    // The MSI-X table's address keeps its low bits clear; the pending bits
    // are read-only.
    PciEngine e(board(), 1);
    FirmwareView fw{};
    e.write_reg(pcicfg::kMsixTable, 0x12345677, fw);
    EXPECT_EQ(e.read_reg(pcicfg::kMsixTable, fw), 0x12345674u);
    e.write_reg(pcicfg::kMsixPba, 1, fw);
    EXPECT_EQ(e.read_reg(pcicfg::kMsixPba, fw), 0u);
}

TEST(PciEngineRegs, MemoryDecodingOffOrPoweredDown)
{
    PciEngine e(board(), 1);
    FirmwareView fw{};
    uint8_t b = 0x5a;
    ASSERT_TRUE(e.write_mem(0, &b, 1));
    e.config().write32(pcicfg::kCommand, 0);
    EXPECT_EQ(e.write_reg(KVD_REG_HC, 0, fw), RegAction::none);
    e.config().write32(pcicfg::kCommand, 0x146);
    EXPECT_EQ(e.read_reg(KVD_REG_HC, fw), 0xe0000007u); // the write was lost
    e.config().write32(pcicfg::kPmCsr, 3);              // D3hot
    EXPECT_EQ(e.read_reg(KVD_REG_HC, fw), 0xffffffffu);
    e.config().write32(pcicfg::kPmCsr, 0);
    ASSERT_TRUE(e.read_mem(0, &b, 1));
    EXPECT_EQ(b, 0x5a);
}

TEST(ConfigRegions, SizesAndPresence)
{
    const BoardConf fc3 = board(3), fc4 = board(4), cna = board(3, Protocol::fcoe, true);
    PciConfigSpace s3(fc3), s4(fc4), sc(cna);
    EXPECT_EQ(config_region(fc3, s3, 14)->size(), 512u);
    EXPECT_EQ(config_region(fc4, s4, 14)->size(), 1000u);
    EXPECT_FALSE(config_region(fc3, s3, 22));
    EXPECT_FALSE(config_region(fc3, s3, 23));
    EXPECT_EQ(config_region(cna, sc, 22)->size(), 512u);
    EXPECT_FALSE(config_region(cna, sc, 23)); // the driver's: the port engine keeps it
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
        if (r.code == 23)
            continue; // the driver's region, built by the port engine
        auto d = config_region(all, s, r.code);
        ASSERT_TRUE(d) << r.name;
        EXPECT_GE(d->size(), row->min_out) << r.name;
        EXPECT_LE(d->size(), size_t{KVD_REGION_MAX}) << r.name;
    }
}
