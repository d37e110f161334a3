// A PCI function's 256-byte configuration space: the standard type-0 header,
// a capabilities list (power management, MSI-X, PCI Express), and per byte
// which bits software may write and which clear when written with ones.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/fleet.hpp"

namespace kvdsim
{

// Sizes of the regions the BARs decode.
constexpr uint32_t kSlimSize = 256 * 1024; // BAR0/1: adapter memory
constexpr uint32_t kCtlRegSize = 4096;     // BAR2/3: control registers
constexpr uint32_t kExpansionRomSize = 1u << 20;

// Configuration-space offsets of the fields the simulator looks at.
namespace pcicfg
{
constexpr uint32_t kCommand = 0x04;
constexpr uint32_t kStatus = 0x06;
constexpr uint32_t kBar0 = 0x10;
constexpr uint32_t kBar2 = 0x18;
constexpr uint32_t kRom = 0x30;
constexpr uint32_t kCapPtr = 0x34;
constexpr uint32_t kPmCap = 0x40;
constexpr uint32_t kPmCsr = 0x44;
constexpr uint32_t kMsixCap = 0x50;
constexpr uint32_t kPcieCap = 0x60;
constexpr uint32_t kDevCtl = 0x68;
constexpr uint32_t kDevStatus = 0x6a;
constexpr uint32_t kLinkCtl = 0x70;
constexpr uint32_t kLinkStatus = 0x72;

constexpr uint16_t kCmdMemory = 0x0002;
constexpr uint16_t kCmdMaster = 0x0004;
constexpr uint16_t kCmdSerr = 0x0100;
constexpr uint16_t kStatusCapList = 0x0010;
constexpr uint16_t kStatusSignaledSerr = 0x4000;
constexpr uint32_t kMsixVectors = 8;
constexpr uint32_t kMsixTable = 0x800; // in the control register BAR
constexpr uint32_t kMsixPba = 0xc00;
} // namespace pcicfg

class PciConfigSpace
{
  public:
    static constexpr uint32_t kSize = 256;

    explicit PciConfigSpace(const BoardConf &cfg);

    // Copies `count` bytes from `offset`; false when the range leaves the
    // space.
    bool read(uint32_t offset, uint8_t *dst, uint32_t count) const;
    // Writes one 32-bit word at a 4-aligned offset: read-only bits keep
    // their value, write-one-to-clear bits clear where the value has ones.
    bool write32(uint32_t offset, uint32_t value);

    uint8_t byte(uint32_t offset) const
    {
        return offset < kSize ? bytes_[offset] : 0;
    }
    uint16_t word16(uint32_t offset) const;
    // The device itself reports an error condition in the status register.
    void signal_status(uint16_t bits);
    uint32_t word32(uint32_t offset) const;

    // Memory decoding is on and the function is in D0: BAR accesses reach
    // the adapter.
    bool memory_decoding() const;

    // The image loaded at power-on (before any write).
    const std::array<uint8_t, kSize> &power_on_image() const
    {
        return power_on_;
    }

  private:
    void put8(uint32_t off, uint8_t v, uint8_t rw = 0, uint8_t w1c = 0);
    void put16(uint32_t off, uint16_t v, uint16_t rw = 0, uint16_t w1c = 0);
    void put32(uint32_t off, uint32_t v, uint32_t rw = 0, uint32_t w1c = 0);

    std::array<uint8_t, kSize> bytes_{};
    std::array<uint8_t, kSize> rw_{};  // bits software may write
    std::array<uint8_t, kSize> w1c_{}; // bits cleared by writing ones
    std::array<uint8_t, kSize> power_on_{};
};

} // namespace kvdsim
