#include "config_space.hpp"

#include <cstring>

namespace kvdsim
{

namespace
{

constexpr uint8_t kClassSerialBus = 0x0c;
constexpr uint8_t kSubclassFibreChannel = 0x04;
constexpr uint8_t kCapIdPm = 0x01;
constexpr uint8_t kCapIdMsix = 0x11;
constexpr uint8_t kCapIdPcie = 0x10;
constexpr uint32_t kBarMem64 = 0x4;

// PCI Express link generation and width the board trains to.
struct PcieLink {
    uint16_t speed; // 1: 2.5 GT/s, 2: 5 GT/s, 3: 8 GT/s
    uint16_t width;
};

PcieLink pcie_link(const BoardConf &cfg)
{
    if (cfg.supported_speeds >= 16 || cfg.sli_mode >= 4)
        return {3, 8};
    if (cfg.protocol == Protocol::fcoe)
        return {2, 8};
    return {2, 4};
}

} // namespace

void PciConfigSpace::put8(uint32_t off, uint8_t v, uint8_t rw, uint8_t w1c)
{
    bytes_[off] = v;
    rw_[off] = rw;
    w1c_[off] = w1c;
}

void PciConfigSpace::put16(uint32_t off, uint16_t v, uint16_t rw, uint16_t w1c)
{
    for (uint32_t i = 0; i < 2; ++i)
        put8(off + i, static_cast<uint8_t>(v >> (8 * i)), static_cast<uint8_t>(rw >> (8 * i)),
             static_cast<uint8_t>(w1c >> (8 * i)));
}

void PciConfigSpace::put32(uint32_t off, uint32_t v, uint32_t rw, uint32_t w1c)
{
    put16(off, static_cast<uint16_t>(v), static_cast<uint16_t>(rw), static_cast<uint16_t>(w1c));
    put16(off + 2, static_cast<uint16_t>(v >> 16), static_cast<uint16_t>(rw >> 16),
          static_cast<uint16_t>(w1c >> 16));
}

PciConfigSpace::PciConfigSpace(const BoardConf &cfg)
{
    using namespace pcicfg;
    put16(0x00, cfg.vendor_id);
    put16(0x02, cfg.device_id);
    // I/O space, memory space, bus master, parity and SERR# enables, INTx
    // disable; the status error bits clear when written with ones.
    put16(kCommand, kCmdMemory | kCmdMaster | 0x0040 | kCmdSerr, 0x0547);
    put16(kStatus, kStatusCapList, 0, 0xf900);
    put8(0x08, static_cast<uint8_t>(cfg.revision.biu_rev));
    put8(0x09, 0x00);
    put8(0x0a, kSubclassFibreChannel);
    put8(0x0b, kClassSerialBus);
    put8(0x0c, 0x10, 0xff); // cache line size
    put8(0x0d, 0x00, 0xff); // latency timer
    put8(0x0e, 0x00);       // type-0 header, single function

    // 64-bit memory BARs: the address bits above the size are writable, so
    // writing all ones reads back the size.
    const uint64_t slim = cfg.mem_base & ~static_cast<uint64_t>(kSlimSize - 1);
    put32(kBar0, static_cast<uint32_t>(slim) | kBarMem64, ~(kSlimSize - 1));
    put32(kBar0 + 4, static_cast<uint32_t>(slim >> 32), 0xffffffff);
    const uint64_t ctl = cfg.ctlreg_base & ~static_cast<uint64_t>(kCtlRegSize - 1);
    put32(kBar2, static_cast<uint32_t>(ctl) | kBarMem64, ~(kCtlRegSize - 1));
    put32(kBar2 + 4, static_cast<uint32_t>(ctl >> 32), 0xffffffff);
    put16(0x2c, cfg.subsys_vendor_id);
    put16(0x2e, cfg.subsys_device_id);
    const uint32_t rom = static_cast<uint32_t>(cfg.flash_base) & ~(kExpansionRomSize - 1);
    put32(kRom, rom, ~(kExpansionRomSize - 1) | 0x1);
    put8(kCapPtr, kPmCap);
    put8(0x3c, static_cast<uint8_t>(cfg.irq), 0xff);
    put8(0x3d, 0x01); // INTA#

    // Power management, version 3; PME status clears with a one.
    put8(kPmCap, kCapIdPm);
    put8(kPmCap + 1, kMsixCap);
    put16(kPmCap + 2, 0x0003);
    put16(kPmCsr, 0x0008, 0x0103, 0x8000);

    // MSI-X: table and pending bits in the control register BAR (BIR 2).
    put8(kMsixCap, kCapIdMsix);
    put8(kMsixCap + 1, kPcieCap);
    put16(kMsixCap + 2, kMsixVectors - 1, 0xc000);
    put32(kMsixCap + 4, kMsixTable | 2);
    put32(kMsixCap + 8, kMsixPba | 2);

    // PCI Express endpoint, capability version 2.
    const PcieLink link = pcie_link(cfg);
    put8(kPcieCap, kCapIdPcie);
    put8(kPcieCap + 1, 0x00);
    put16(kPcieCap + 2, 0x0002);
    put32(kPcieCap + 4, 0x00008002); // 512-byte payload, role-based errors
    put16(kDevCtl, 0x2810, 0x7fff);
    put16(kDevStatus, 0x0000, 0, 0x000f);
    put32(kPcieCap + 0x0c,
          static_cast<uint32_t>(link.speed) | static_cast<uint32_t>(link.width) << 4 | 0x0c00);
    put16(kLinkCtl, 0x0040, 0x01c3);
    put16(kLinkStatus, static_cast<uint16_t>(link.speed | link.width << 4 | 0x1000));

    power_on_ = bytes_;
}

bool PciConfigSpace::read(uint32_t offset, uint8_t *dst, uint32_t count) const
{
    if (offset > kSize || count > kSize - offset)
        return false;
    if (count)
        std::memcpy(dst, bytes_.data() + offset, count);
    return true;
}

bool PciConfigSpace::write32(uint32_t offset, uint32_t value)
{
    if (offset % 4 != 0 || offset >= kSize)
        return false;
    for (uint32_t i = 0; i < 4; ++i) {
        const uint32_t off = offset + i;
        const auto v = static_cast<uint8_t>(value >> (8 * i));
        uint8_t b = static_cast<uint8_t>((bytes_[off] & ~rw_[off]) | (v & rw_[off]));
        b = static_cast<uint8_t>(b & ~(v & w1c_[off]));
        bytes_[off] = b;
    }
    return true;
}

void PciConfigSpace::signal_status(uint16_t bits)
{
    bytes_[pcicfg::kStatus] = static_cast<uint8_t>(bytes_[pcicfg::kStatus] | (bits & 0xff));
    bytes_[pcicfg::kStatus + 1] = static_cast<uint8_t>(bytes_[pcicfg::kStatus + 1] | bits >> 8);
}

uint16_t PciConfigSpace::word16(uint32_t offset) const
{
    return static_cast<uint16_t>(byte(offset) | byte(offset + 1) << 8);
}

uint32_t PciConfigSpace::word32(uint32_t offset) const
{
    return static_cast<uint32_t>(word16(offset)) | static_cast<uint32_t>(word16(offset + 2)) << 16;
}

bool PciConfigSpace::memory_decoding() const
{
    return (word16(pcicfg::kCommand) & pcicfg::kCmdMemory) != 0 && (word16(pcicfg::kPmCsr) & 0x3) == 0;
}

} // namespace kvdsim
