// The board as the host bus sees it: configuration space, the control
// register space (host registers HA, CA, HS, HC, the MSI-X table and
// scratch registers) and adapter memory (SLIM). One per board.
//
// Host status reflects the firmware, which this engine does not own: each
// access takes a FirmwareView of the firmware's state as it is now. Writes
// that ask the firmware to act (a mailbox posted in SLIM, a firmware
// restart) come back as a RegAction for the caller to carry out.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "config_space.hpp"
#include "core/fleet.hpp"

namespace kvdsim
{

struct FirmwareView {
    bool ready = true;     // accepts mailbox commands
    bool offline = false;  // taken offline by the driver
    uint32_t link_tag = 0; // link event tag; a change raises link attention
};

enum class RegAction { none, run_mailbox, restart_firmware };

// Header of a forced diagnostic dump, as the dump region shows it.
struct DumpHeader {
    uint32_t sequence = 0;
    uint32_t hs = 0;
    uint32_t ha = 0;
    uint32_t link_tag = 0;
};

class PciEngine
{
  public:
    static constexpr uint32_t kDumpImageSize = 4096;

    explicit PciEngine(const BoardConf &cfg, uint32_t link_tag);

    PciConfigSpace &config()
    {
        return cfg_space_;
    }
    const PciConfigSpace &config() const
    {
        return cfg_space_;
    }

    // Control registers by byte offset (4-aligned, below kCtlRegSize);
    // nullopt for an offset outside the space. With memory decoding off
    // reads see all ones and writes are lost, as on the bus.
    std::optional<uint32_t> read_reg(uint32_t offset, const FirmwareView &fw);
    std::optional<RegAction> write_reg(uint32_t offset, uint32_t value, const FirmwareView &fw);

    // Adapter memory; false when the range leaves SLIM.
    bool write_mem(uint32_t offset, const uint8_t *src, uint32_t count);
    bool read_mem(uint32_t offset, uint8_t *dst, uint32_t count) const;

    // Configuration regions as the flash holds them (region_store.cpp): a
    // region never written is built from the board as it stands; a written
    // one keeps its bytes until restored. Writes stay inside the region.
    std::optional<std::vector<uint8_t>> region(const BoardConf &cfg, uint32_t region) const;
    bool write_region(const BoardConf &cfg, uint32_t region, uint32_t offset, const uint8_t *src,
                      uint32_t count);
    bool restore_region(const BoardConf &cfg, uint32_t region);

    // The firmware completed the mailbox the host posted.
    void mailbox_done();

    // The firmware stops and writes a diagnostic dump: host status shows
    // the dump, error attention is raised.
    void force_dump(const FirmwareView &fw);
    bool dumped() const
    {
        return dump_.has_value();
    }
    void clear_dump()
    {
        dump_.reset();
    }
    const std::optional<DumpHeader> &dump() const
    {
        return dump_;
    }
    // The bytes a dump object holds: header, host registers, configuration
    // space and the start of SLIM (empty when no dump was taken).
    std::vector<uint8_t> dump_image() const;

    // Host status as the firmware state gives it.
    uint32_t host_status(const FirmwareView &fw) const;
    // HA, CA, HS, HC in that order, without side effects.
    void host_registers(const FirmwareView &fw, uint32_t out[4]);

  private:
    uint32_t host_attention(const FirmwareView &fw);

    PciConfigSpace cfg_space_;
    uint32_t biu_rev_;
    uint32_t ha_ = 0; // attentions not derived from the link
    uint32_t hc_;
    uint32_t link_tag_seen_; // link attention clears by catching up
    std::vector<uint32_t> ctl_;
    std::vector<uint8_t> slim_;
    std::optional<DumpHeader> dump_;
    std::map<uint32_t, std::vector<uint8_t>> written_regions_;
    uint32_t dump_count_ = 0;
};

} // namespace kvdsim
