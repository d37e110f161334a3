// What the fleet says about a board's NPIV set-up beyond the board's own
// features: whether the driver enables it, and what the fabric behind the
// port grants to virtual ports.
#pragma once

#include <cstdint>

namespace kvdsim
{

struct NpivConf {
    bool driver_enable = true;        // the driver's NPIV-enable parameter
    bool fabric_support = true;       // the fabric's login accept offers NPIV
    uint32_t fabric_max_vports = 255; // NPIV logins the fabric takes on this port
};

} // namespace kvdsim
