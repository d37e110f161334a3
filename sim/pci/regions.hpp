// Non-volatile configuration regions of the adapter's flash, as the firmware
// returns them to a region read. Which regions a board has depends on what
// it is: FLEX partitioning only on converged boards, FCoE parameters only
// on FCoE ports. The VPD region is larger on SLI-4 boards.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "config_space.hpp"
#include "core/fleet.hpp"

namespace kvdsim
{

// The region's bytes, or nothing when the board does not have it.
std::optional<std::vector<uint8_t>> config_region(const BoardSpec &cfg, const PciConfigSpace &space,
                                                  uint32_t region);

// The PCI vital product data the board carries (large-resource format).
std::vector<uint8_t> vpd_image(const BoardSpec &cfg);

} // namespace kvdsim
