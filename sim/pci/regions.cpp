#include "regions.hpp"

#include <cstdio>
#include <cstring>
#include <string>

namespace kvdsim
{

namespace
{

// Builds a region: little-endian words and texts appended, then padded
// with zeros to the region's size.
class Region
{
  public:
    explicit Region(uint32_t size) : size_(size)
    {
        bytes_.reserve(size);
    }
    Region &sig(const char (&s)[5])
    {
        bytes_.insert(bytes_.end(), s, s + 4);
        return *this;
    }
    Region &u8(uint8_t v)
    {
        bytes_.push_back(v);
        return *this;
    }
    Region &u16(uint16_t v)
    {
        return u8(static_cast<uint8_t>(v)).u8(static_cast<uint8_t>(v >> 8));
    }
    Region &u32(uint32_t v)
    {
        return u16(static_cast<uint16_t>(v)).u16(static_cast<uint16_t>(v >> 16));
    }
    Region &wwn(const Wwn &w)
    {
        bytes_.insert(bytes_.end(), w.begin(), w.end());
        return *this;
    }
    // A text in a fixed field of `width` bytes, cut to fit.
    Region &text(const std::string &s, size_t width)
    {
        for (size_t i = 0; i < width; ++i)
            bytes_.push_back(i < s.size() ? static_cast<uint8_t>(s[i]) : 0);
        return *this;
    }
    Region &bytes(const uint8_t *p, size_t n)
    {
        bytes_.insert(bytes_.end(), p, p + n);
        return *this;
    }
    std::vector<uint8_t> done()
    {
        bytes_.resize(size_, 0);
        return std::move(bytes_);
    }

  private:
    uint32_t size_;
    std::vector<uint8_t> bytes_;
};

uint8_t topology_code(Topology t)
{
    switch (t) {
    case Topology::loop:
        return 1;
    case Topology::pt2pt:
        return 2;
    case Topology::fabric:
        break;
    }
    return 0;
}

// The FCP targets the boot code may boot from, in fleet order.
std::vector<const RemotePort *> boot_targets(const BoardConf &cfg, size_t max)
{
    std::vector<const RemotePort *> out;
    for (const RemotePort &rp : cfg.remote_ports)
        if (rp.fcp_target && out.size() < max)
            out.push_back(&rp);
    return out;
}

std::vector<uint8_t> boot_list(const char (&sig)[5], const BoardConf &cfg, uint32_t size, uint16_t version)
{
    constexpr size_t kEntries = 8;
    auto targets = boot_targets(cfg, kEntries);
    Region r(size);
    r.sig(sig).u16(version).u16(static_cast<uint16_t>(targets.size()));
    r.u32(targets.empty() ? 0 : 1); // boot enabled once a target is known
    for (const RemotePort *rp : targets)
        r.wwn(rp->wwpn).u32(0).u32(0); // LUN 0
    return r.done();
}

void vpd_keyword(std::vector<uint8_t> &v, const char *key, const std::string &value)
{
    const size_t n = value.size() < 32 ? value.size() : 32;
    v.push_back(static_cast<uint8_t>(key[0]));
    v.push_back(static_cast<uint8_t>(key[1]));
    v.push_back(static_cast<uint8_t>(n));
    v.insert(v.end(), value.begin(), value.begin() + static_cast<std::ptrdiff_t>(n));
}

} // namespace

std::vector<uint8_t> vpd_image(const BoardConf &cfg)
{
    std::vector<uint8_t> v;
    const std::string id = cfg.description.substr(0, 64);
    v.push_back(0x82); // identifier string
    v.push_back(static_cast<uint8_t>(id.size()));
    v.push_back(0);
    v.insert(v.end(), id.begin(), id.end());

    std::vector<uint8_t> ro;
    vpd_keyword(ro, "PN", cfg.model);
    vpd_keyword(ro, "SN", cfg.serial);
    vpd_keyword(ro, "EC", cfg.hardware_version);
    char maker[8];
    snprintf(maker, sizeof maker, "%04X", cfg.vendor_id);
    vpd_keyword(ro, "MN", maker);
    // RV: one byte that makes the sum of every byte up to it zero.
    ro.insert(ro.end(), {'R', 'V', 1, 0});
    v.push_back(0x90);
    v.push_back(static_cast<uint8_t>(ro.size()));
    v.push_back(static_cast<uint8_t>(ro.size() >> 8));
    v.insert(v.end(), ro.begin(), ro.end());
    uint8_t sum = 0;
    for (uint8_t b : v)
        sum = static_cast<uint8_t>(sum + b);
    v.back() = static_cast<uint8_t>(0x100 - sum);
    v.push_back(0x78); // end tag
    return v;
}

namespace
{

using Built = std::optional<std::vector<uint8_t>>;

Built nv_params(const BoardConf &cfg, const PciConfigSpace &, uint32_t)
{
    return Region(60)
        .wwn(cfg.wwpn)
        .wwn(cfg.wwnn)
        .u32(cfg.pref_did)
        .u8(cfg.hard_alpa)
        .u8(topology_code(cfg.topology))
        .u16(static_cast<uint16_t>(cfg.max_frame))
        .done();
}

// The images the firmware starts.
Built wakeup_params(const BoardConf &cfg, const PciConfigSpace &, uint32_t)
{
    const FirmwareRevision &rev = cfg.revision;
    return Region(120)
        .u32(rev.post_kernel_rev)
        .u32(rev.op_fw_rev)
        .u32(rev.sli1_fw_rev)
        .u32(rev.sli2_fw_rev)
        .text(rev.op_fw_name, 16)
        .text(rev.sli1_fw_name, 16)
        .text(rev.sli2_fw_name, 16)
        .text(cfg.firmware, 16)
        .done();
}

// Configuration values loaded at power-on, one set per function.
Built pci_config(const BoardConf &, const PciConfigSpace &space, uint32_t region)
{
    const auto &img = space.power_on_image();
    std::vector<uint8_t> v(img.begin(), img.begin() + 200);
    v[0x3d] = static_cast<uint8_t>(region - 5 + 1);
    return v;
}

Built boot_x86(const BoardConf &cfg, const PciConfigSpace &, uint32_t)
{
    return Region(60)
        .sig("BOOT")
        .u16(1)
        .u8(topology_code(cfg.topology))
        .u8(0)
        .u32(cfg.speed)
        .u32(boot_targets(cfg, 1).empty() ? 0 : 1)
        .done();
}

Built multiboot(const BoardConf &cfg, const PciConfigSpace &, uint32_t)
{
    return boot_list("MBOT", cfg, 256, 1);
}

Built efi_params(const BoardConf &cfg, const PciConfigSpace &, uint32_t)
{
    return boot_list("EFIP", cfg, 256, 2);
}

Built vpd(const BoardConf &cfg, const PciConfigSpace &, uint32_t)
{
    Region r(cfg.sli_mode >= 4 ? 1000 : 512);
    const auto v = vpd_image(cfg);
    return r.bytes(v.data(), v.size()).done();
}

// The driver's link defaults.
Built env_params(const BoardConf &cfg, const PciConfigSpace &, uint32_t)
{
    return Region(100).sig("ENV1").u32(30).u32(32).u32(cfg.supported_speeds).u32(cfg.speed).done();
}

Built flex_params(const BoardConf &cfg, const PciConfigSpace &, uint32_t)
{
    if (!cfg.tarvo)
        return std::nullopt;
    Region r(512);
    r.sig("FLEX").u16(1).u16(4);
    for (uint8_t p = 0; p < 4; ++p)
        r.u8(p).u8(p == 0 ? 1 : 0).u8(25).u8(100); // function, FC, min %, max %
    return r.done();
}

// The driver's region: its bytes are the settings the driver stores, so
// the port engine keeps and serves it (see port/driver_region.cpp).
Built driver_params(const BoardConf &, const PciConfigSpace &, uint32_t)
{
    return std::nullopt;
}

// Region number, name, SLI levels, -, least size, builder. The VPD region
// grows to 1000 bytes on SLI-4 boards.
constexpr RegionRow kRegions[] = {
    {0, "NV_PARAMS", kSliAll, 0, 60, nv_params},
    {4, "WAKEUP_PARAMS", kSliAll, 0, 120, wakeup_params},
    {5, "PCI_CONFIG_F0", kSliAll, 0, 200, pci_config},
    {6, "PCI_CONFIG_F1", kSliAll, 0, 200, pci_config},
    {7, "PCI_CONFIG_F2", kSliAll, 0, 200, pci_config},
    {8, "BOOT_X86", kSliAll, 0, 60, boot_x86},
    {9, "MULTIBOOT", kSliAll, 0, 256, multiboot},
    {10, "EFI_PARAMS", kSliAll, 0, 256, efi_params},
    {14, "VPD", kSliAll, 0, 512, vpd},
    {17, "ENV_PARAMS", kSliAll, 0, 100, env_params},
    {22, "FLEX_PARAMS", kSliAll, 0, 512, flex_params},
    {23, "FCOE_PARAMS", kSliAll, 0, 1024, driver_params},
};
static_assert(unique_codes(kRegions));
static_assert(unique_names(kRegions));
constexpr auto kRegionInfos = row_infos(kRegions);

} // namespace

std::span<const RowInfo> region_rows()
{
    return kRegionInfos;
}

const RegionRow *region_row(uint32_t region)
{
    return find_row(kRegions, region);
}

std::optional<std::vector<uint8_t>> config_region(const BoardConf &cfg, const PciConfigSpace &space,
                                                  uint32_t region)
{
    const RegionRow *row = region_row(region);
    if (!row || !(row->sli_levels & sli_bit(cfg.sli_mode)))
        return std::nullopt;
    return row->handler(cfg, space, region);
}

} // namespace kvdsim
