// Command tables of the simulated engines.
//
// Each engine (the mailbox firmware, the ASIC, the SLI-4 configuration
// engine, ...) answers through one table of rows, the way a device model
// decodes opcodes: the code, the command's name (it goes into the trace
// line), the SLI levels at which the command exists, the least the host must
// hand over and the room the reply needs, and the handler. The engine's
// dispatcher looks the code up here and answers an unknown code, or a level
// that does not serve it, with its own "invalid command" status from one
// place.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kvdsim
{

// SLI levels, bit n for SLI-n.
constexpr uint8_t kSli2 = 1u << 2;
constexpr uint8_t kSli3 = 1u << 3;
constexpr uint8_t kSli4 = 1u << 4;
constexpr uint8_t kSliAll = kSli2 | kSli3 | kSli4;

constexpr uint8_t sli_bit(int mode)
{
    return mode >= 2 && mode <= 4 ? static_cast<uint8_t>(1u << mode) : 0;
}

template <class Handler> struct EngineRow {
    uint32_t code;
    const char *name;
    uint8_t sli_levels;
    uint32_t min_in;  // in the engine's unit (mailbox: 32-bit words)
    uint32_t min_out; // room the complete reply needs, same unit
    Handler handler;
};

// What the world outside an engine sees of a row: the table-walking tests
// and the fault rules that name a command.
struct RowInfo {
    uint32_t code;
    const char *name;
    uint8_t sli_levels;
};

template <class Row, size_t N> constexpr bool unique_codes(const Row (&table)[N])
{
    for (size_t i = 0; i < N; ++i)
        for (size_t j = i + 1; j < N; ++j)
            if (table[i].code == table[j].code)
                return false;
    return true;
}

template <class Row, size_t N> constexpr bool unique_names(const Row (&table)[N])
{
    for (size_t i = 0; i < N; ++i)
        for (size_t j = i + 1; j < N; ++j)
            if (std::string_view(table[i].name) == std::string_view(table[j].name))
                return false;
    return true;
}

template <class Row, size_t N> constexpr const Row *find_row(const Row (&table)[N], uint32_t code)
{
    for (const Row &r : table)
        if (r.code == code)
            return &r;
    return nullptr;
}

template <class Row, size_t N> constexpr std::array<RowInfo, N> row_infos(const Row (&table)[N])
{
    std::array<RowInfo, N> out{};
    for (size_t i = 0; i < N; ++i)
        out[i] = RowInfo{table[i].code, table[i].name, table[i].sli_levels};
    return out;
}

} // namespace kvdsim
