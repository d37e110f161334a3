// The port engine's record requests, shared by the port-setting and FCF
// families: the caller's record goes to the engine as a private copy and
// comes back only on success.
#pragma once

#include <cstring>

#include "core/entry.hpp"
#include "port/port.hpp"

namespace kvdsim
{

// A request that reads a record of type R from the caller and writes it
// back on success.
template <class R> inline uint32_t record_request(Call &c, Board &b, uint32_t code, R *record, bool writes)
{
    if (writes)
        c.out(record, sizeof *record);
    R copy;
    std::memcpy(&copy, record, sizeof copy);
    const R received = copy;
    PortCommand cmd{*b.fw, {reinterpret_cast<uint8_t *>(&copy), sizeof copy}};
    const int32_t rc = engine_request(c, *b.port, code, cmd);
    c.line.bytes("in", &received, sizeof received);
    if (rc == 0 && writes) {
        std::memcpy(record, &copy, sizeof copy);
        c.line.bytes("out", record, sizeof *record);
    }
    return static_cast<uint32_t>(rc);
}

} // namespace kvdsim
