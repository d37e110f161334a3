// What a board's driver keeps about its nodes beyond the fabric itself: the
// adapter's vital product data and the persistent bindings, as the fleet's
// "nodes" object describes them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kvdsim
{

struct BindingConf {
    uint32_t type = 2; // BIND_WWPN
    uint32_t scsi_id = 0;
    uint32_t did = 0;
    std::array<uint8_t, 8> wwnn{};
    std::array<uint8_t, 8> wwpn{};
    uint32_t flags = 0;
};

struct NodesConf {
    bool evpd = true;                                         // false: the adapter holds no extended VPD
    std::string model_description, model, program_type, port; // empty: from the board
    std::optional<std::vector<BindingConf>> bindings;         // unset: one per mapped target
};

} // namespace kvdsim
