// The "sd" section of a board in the fleet file: the background traffic
// each FCP target carries, which latency collection sorts into buckets.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace kvdsim
{

struct SdTraffic {
    std::array<uint8_t, 8> wwpn{};
    uint32_t ios = 64;    // I/Os the target completes between two reads of the data
    uint32_t min_us = 20; // completion times drawn evenly from [min_us, max_us]
    uint32_t max_us = 150;
};

struct SdConf {
    uint32_t seed = 1;              // seeds every target's completion-time model
    std::vector<SdTraffic> traffic; // targets not listed get the defaults above
};

} // namespace kvdsim
