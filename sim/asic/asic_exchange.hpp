// The view an ASIC command handler gets of one exchange (shared by the files
// that implement the ASIC's commands).
#pragma once

#include <algorithm>
#include <cstring>

#include "asic/asic.hpp"

namespace kvdsim
{

// The view a handler gets of one exchange: the command as sent and the
// response room offered. A handler writes its reply behind the code word and
// sets `length`; `overrun` turns the exchange into a transport failure.
struct Asic::Exchange {
    std::span<const uint8_t> in;
    std::span<uint8_t> out;
    uint32_t length = 4;
    bool overrun = false;

    // Copies the command record, or as much of it as was sent, into `rec`
    // (zero beyond).
    template <typename T> T command() const
    {
        T rec{};
        memcpy(&rec, in.data(), std::min(sizeof rec, in.size()));
        return rec;
    }
    // Claims n bytes of response; false (and overrun) when they do not fit.
    bool room(size_t n)
    {
        if (n > out.size()) {
            overrun = true;
            return false;
        }
        length = static_cast<uint32_t>(n);
        return true;
    }
    template <typename T> void reply(const T &rec)
    {
        if (room(sizeof rec))
            memcpy(out.data(), &rec, sizeof rec);
    }
};

} // namespace kvdsim
