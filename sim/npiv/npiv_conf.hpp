// What the fleet says about a board's NPIV set-up beyond the board's own
// features: whether the driver enables it, what the fabric behind the port
// grants to virtual ports, and the virtual ports the driver is configured
// with.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace kvdsim
{

// A virtual port in the driver's configuration: made when the driver
// starts, flagged static.
struct StaticVportConf {
    std::array<uint8_t, 8> wwpn{};
    std::array<uint8_t, 8> wwnn{};
};

struct NpivConf {
    bool driver_enable = true;        // the driver's NPIV-enable parameter
    bool fabric_support = true;       // the fabric's login accept offers NPIV
    uint32_t fabric_max_vports = 255; // NPIV logins the fabric takes on this port
    std::vector<StaticVportConf> vports;
};

} // namespace kvdsim
