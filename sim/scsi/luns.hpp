// What a board's SCSI targets offer, as the fleet describes it: per target
// port, its logical units.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kvdsim
{

struct LunConf {
    uint16_t lun = 0;     // 0..16383
    uint64_t blocks = 0;  // capacity in 512-byte blocks
    std::string vendor;   // INQUIRY vendor, at most 8
    std::string product;  // at most 16
    std::string revision; // at most 4
    std::string serial;   // unit serial number, at most 32 (empty: derived)
};

struct ScsiTargetConf {
    std::array<uint8_t, 8> wwpn{}; // a remote port of the board that offers FCP
    std::vector<LunConf> luns;
};

struct ScsiConf {
    std::vector<ScsiTargetConf> targets; // every FCP target port of the board
};

} // namespace kvdsim
