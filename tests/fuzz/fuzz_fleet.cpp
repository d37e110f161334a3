// The fleet reader of the virtual adapters on arbitrary JSON text.
#include <string>

#include "core/fleet.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    std::string text(reinterpret_cast<const char *>(data), size);
    std::string error;
    auto fleet = kvdsim::parse_fleet(text, "fuzz", error);
    if (!fleet && error.empty())
        __builtin_trap();
    return 0;
}
