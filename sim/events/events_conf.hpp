// The "events" section of a board in the fleet file: its temperature sensor
// and the events scheduled after start-up.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kvdsim
{

struct ScheduledRequest {
    uint32_t after_ms = 0;
    std::string request; // a trigger request without the board number
};

struct EventsConf {
    int32_t temperature = 40; // degrees Celsius at power-on
    int32_t warning = 75;     // threshold events at and above
    int32_t critical = 90;    // critical events at and above
    std::vector<ScheduledRequest> schedule;
};

} // namespace kvdsim
