// Configuration regions that the host rewrote. The firmware keeps a written
// region's bytes in flash: they survive resets and read back until the
// region is restored to what the board was built with.
#include "pci/pci_engine.hpp"
#include "pci/regions.hpp"

#include <cstring>

namespace kvdsim
{

std::optional<std::vector<uint8_t>> PciEngine::region(const BoardConf &cfg, uint32_t region) const
{
    auto it = written_regions_.find(region);
    if (it != written_regions_.end())
        return it->second;
    return config_region(cfg, cfg_space_, region);
}

bool PciEngine::write_region(const BoardConf &cfg, uint32_t region, uint32_t offset, const uint8_t *src,
                             uint32_t count)
{
    auto data = this->region(cfg, region);
    if (!data || offset > data->size() || count > data->size() - offset)
        return false;
    if (count > 0)
        std::memcpy(data->data() + offset, src, count);
    written_regions_[region] = std::move(*data);
    return true;
}

bool PciEngine::restore_region(const BoardConf &cfg, uint32_t region)
{
    if (!config_region(cfg, cfg_space_, region))
        return false;
    written_regions_.erase(region);
    return true;
}

} // namespace kvdsim
