#include "pci_engine.hpp"

#include <cstring>

#include "kvd_regs.h"

namespace kvdsim
{

namespace
{

constexpr uint32_t kRegRevision = 0x10; // read-only: bus interface revision
constexpr uint32_t kHaWritable = HA_R0ATT | HA_R1ATT | HA_R2ATT | HA_R3ATT | HA_ERATT | HA_LATT | HA_MBATT;
constexpr uint32_t kHcWritable =
    HC_R0INT_ENA | HC_R1INT_ENA | HC_R2INT_ENA | HC_R3INT_ENA | HC_ERINT_ENA | HC_LAINT_ENA | HC_MBINT_ENA;
// What the driver leaves enabled once it has brought the board up.
constexpr uint32_t kHcDriverDefault =
    HC_MBINT_ENA | HC_LAINT_ENA | HC_ERINT_ENA | HC_R0INT_ENA | HC_R1INT_ENA | HC_R2INT_ENA;
constexpr uint32_t kMsixEntry = 16;
constexpr uint32_t kMsixTableEnd = pcicfg::kMsixTable + pcicfg::kMsixVectors * kMsixEntry;
constexpr uint32_t kMsixPbaEnd = pcicfg::kMsixPba + 8;
constexpr uint32_t kDumpSignature = 0x504d4446; // "FDMP"

bool in_msix_table(uint32_t off)
{
    return off >= pcicfg::kMsixTable && off < kMsixTableEnd;
}

bool in_msix_pba(uint32_t off)
{
    return off >= pcicfg::kMsixPba && off < kMsixPbaEnd;
}

void put_le32(std::vector<uint8_t> &v, uint32_t x)
{
    for (int i = 0; i < 4; ++i)
        v.push_back(static_cast<uint8_t>(x >> (8 * i)));
}

} // namespace

PciEngine::PciEngine(const BoardConf &cfg, uint32_t link_tag)
    : cfg_space_(cfg), biu_rev_(cfg.revision.biu_rev), hc_(kHcDriverDefault), link_tag_seen_(link_tag),
      ctl_(kCtlRegSize / 4, 0), slim_(kSlimSize, 0)
{
    // Every MSI-X vector starts masked.
    for (uint32_t v = 0; v < pcicfg::kMsixVectors; ++v)
        ctl_[(pcicfg::kMsixTable + v * kMsixEntry + 12) / 4] = 1;
}

uint32_t PciEngine::host_status(const FirmwareView &fw) const
{
    if (dump_)
        return HS_FFER3;
    if (fw.offline)
        return HS_FFRDY;
    return fw.ready ? (HS_FFRDY | HS_MBRDY) : 0;
}

uint32_t PciEngine::host_attention(const FirmwareView &fw)
{
    return ha_ | (fw.link_tag != link_tag_seen_ ? HA_LATT : 0);
}

void PciEngine::host_registers(const FirmwareView &fw, uint32_t out[4])
{
    out[0] = host_attention(fw);
    out[1] = 0; // the adapter takes chip attentions as they are written
    out[2] = host_status(fw);
    out[3] = hc_;
}

std::optional<uint32_t> PciEngine::read_reg(uint32_t offset, const FirmwareView &fw)
{
    if (offset % 4 != 0 || offset >= kCtlRegSize)
        return std::nullopt;
    if (!cfg_space_.memory_decoding())
        return 0xffffffffu;
    switch (offset) {
    case KVD_REG_HA:
        return host_attention(fw);
    case KVD_REG_CA:
        return 0u;
    case KVD_REG_HS:
        return host_status(fw);
    case KVD_REG_HC:
        return hc_;
    case kRegRevision:
        return biu_rev_;
    default:
        return ctl_[offset / 4];
    }
}

std::optional<RegAction> PciEngine::write_reg(uint32_t offset, uint32_t value, const FirmwareView &fw)
{
    if (offset % 4 != 0 || offset >= kCtlRegSize)
        return std::nullopt;
    if (!cfg_space_.memory_decoding())
        return RegAction::none;
    switch (offset) {
    case KVD_REG_HA:
        // Attentions clear where the value has ones.
        ha_ &= ~(value & kHaWritable);
        if (value & HA_LATT)
            link_tag_seen_ = fw.link_tag;
        return RegAction::none;
    case KVD_REG_CA:
        return (value & CA_MBATT) ? RegAction::run_mailbox : RegAction::none;
    case KVD_REG_HS:
    case kRegRevision:
        return RegAction::none; // read-only
    case KVD_REG_HC:
        hc_ = value & kHcWritable;
        return (value & HC_INITFF) ? RegAction::restart_firmware : RegAction::none;
    default:
        break;
    }
    if (in_msix_pba(offset))
        return RegAction::none;
    if (in_msix_table(offset)) {
        switch ((offset - pcicfg::kMsixTable) % kMsixEntry) {
        case 0:
            value &= ~3u; // message address is dword aligned
            break;
        case 12:
            value &= 1u; // only the mask bit
            break;
        default:
            break;
        }
    }
    ctl_[offset / 4] = value;
    return RegAction::none;
}

bool PciEngine::write_mem(uint32_t offset, const uint8_t *src, uint32_t count)
{
    if (offset > slim_.size() || count > slim_.size() - offset)
        return false;
    if (count && cfg_space_.memory_decoding())
        std::memcpy(slim_.data() + offset, src, count);
    return true;
}

bool PciEngine::read_mem(uint32_t offset, uint8_t *dst, uint32_t count) const
{
    if (offset > slim_.size() || count > slim_.size() - offset)
        return false;
    if (!count)
        return true;
    if (cfg_space_.memory_decoding())
        std::memcpy(dst, slim_.data() + offset, count);
    else
        std::memset(dst, 0xff, count);
    return true;
}

void PciEngine::mailbox_done()
{
    ha_ |= HA_MBATT;
}

void PciEngine::force_dump(const FirmwareView &fw)
{
    DumpHeader h;
    h.sequence = ++dump_count_;
    h.ha = host_attention(fw) | HA_ERATT;
    h.hs = HS_FFER3;
    h.link_tag = fw.link_tag;
    dump_ = h;
    ha_ |= HA_ERATT;
    // A firmware that stops signals a system error on the bus, if allowed.
    if (cfg_space_.word16(pcicfg::kCommand) & pcicfg::kCmdSerr)
        cfg_space_.signal_status(pcicfg::kStatusSignaledSerr);
}

std::vector<uint8_t> PciEngine::dump_image() const
{
    std::vector<uint8_t> img;
    if (!dump_)
        return img;
    img.reserve(kDumpImageSize);
    put_le32(img, kDumpSignature);
    put_le32(img, dump_->sequence);
    put_le32(img, dump_->ha);
    put_le32(img, dump_->hs);
    put_le32(img, dump_->link_tag);
    put_le32(img, kDumpImageSize);
    put_le32(img, hc_);
    put_le32(img, 0);
    for (uint32_t i = 0; i < PciConfigSpace::kSize; ++i)
        img.push_back(cfg_space_.byte(i));
    img.insert(img.end(), slim_.begin(), slim_.begin() + (kDumpImageSize - img.size()));
    return img;
}

} // namespace kvdsim
