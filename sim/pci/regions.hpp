// Non-volatile configuration regions of the adapter's flash, as the firmware
// returns them to a region read. Which regions a board has depends on what
// it is: FLEX partitioning only on converged boards, FCoE parameters only
// on FCoE ports. The VPD region is larger on SLI-4 boards.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "config_space.hpp"
#include "core/engine.hpp"
#include "core/fleet.hpp"

namespace kvdsim
{

// One region the firmware knows: its number, name and least size; the
// builder answers nothing on a board that lacks the region.
using RegionBuilder = std::optional<std::vector<uint8_t>> (*)(const BoardConf &, const PciConfigSpace &,
                                                              uint32_t region);
using RegionRow = EngineRow<RegionBuilder>;

// The table's codes and names, and one row by region number (null when the
// firmware knows no such region).
std::span<const RowInfo> region_rows();
const RegionRow *region_row(uint32_t region);

// The region's bytes, or nothing when the board does not have it.
std::optional<std::vector<uint8_t>> config_region(const BoardConf &cfg, const PciConfigSpace &space,
                                                  uint32_t region);

// The PCI vital product data the board carries (large-resource format).
std::vector<uint8_t> vpd_image(const BoardConf &cfg);

} // namespace kvdsim
