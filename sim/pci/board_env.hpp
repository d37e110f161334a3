// Board environment: boards online and offline as the driver sees them, and
// the online/offline masks of the board table.
//
// The library keeps the masks of the board table it last filled current:
// entry 0 of that table follows every change of a board's state until the
// environment is released.
#pragma once

#include <cstdint>

#include "kvd_brdinfo.h"
#include "core/state.hpp"

namespace kvdsim
{

// The firmware's state as the register engine sees it.
FirmwareView firmware_view(const Board &b);

// 2 for a board that is offline (also while it holds a forced dump), else 1.
uint32_t board_env_mode(const Board &b);
// Takes the board online (clearing a held dump) or offline.
void set_board_online(Board &b, bool online);

// Masks of the boards online and offline, by board number.
void board_masks(Library &lib, uint32_t &online, uint32_t &offline);

// The table KVD_InitDiagEnv filled; forgetting it is lock-free (it runs
// inside the release call).
void remember_board_table(KVD_BRDINFO *table);
void forget_board_table();
// Writes the current masks into entry 0 of the remembered table.
void publish_board_masks(Library &lib);

} // namespace kvdsim
