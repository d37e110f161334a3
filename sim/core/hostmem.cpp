// Host memory behind buffer descriptors, checked against this process's own
// mappings. A descriptor address comes from the caller's mailbox record and
// may be anything: it is used only when every byte of the range lies in
// mappings with the access needed.
#include <charconv>
#include <cstring>
#include <fstream>
#include <string>
#include <string_view>

#include "core/hostmem.hpp"

namespace kvdsim
{

namespace
{

enum class Access { read, write };

// One line of /proc/self/maps: "start-end perms offset dev inode path".
struct Mapping {
    uint64_t start = 0;
    uint64_t end = 0; // exclusive
    bool readable = false;
    bool writable = false;
};

bool parse_hex(std::string_view text, uint64_t &value)
{
    if (text.empty())
        return false;
    const char *first = text.data();
    const char *last = first + text.size();
    auto [ptr, ec] = std::from_chars(first, last, value, 16);
    return ec == std::errc() && ptr == last;
}

bool parse_mapping(std::string_view line, Mapping &m)
{
    const size_t dash = line.find('-');
    const size_t blank = line.find(' ');
    if (dash == std::string_view::npos || blank == std::string_view::npos || dash > blank)
        return false;
    if (!parse_hex(line.substr(0, dash), m.start) ||
        !parse_hex(line.substr(dash + 1, blank - dash - 1), m.end) || m.end <= m.start)
        return false;
    const std::string_view perms = line.substr(blank + 1);
    if (perms.size() < 2)
        return false;
    m.readable = perms[0] == 'r';
    m.writable = perms[1] == 'w';
    return true;
}

// True when [address, address + len) is covered by one mapping, or by
// adjacent mappings, that all allow the access.
bool range_usable(uint64_t address, size_t len, Access need)
{
    if (address == 0)
        return false;
    if constexpr (sizeof(uintptr_t) < sizeof(uint64_t)) {
        if (address > UINTPTR_MAX)
            return false;
    }
    if (len == 0)
        return true;
    // The last byte must not wrap past the top of the address space.
    const uint64_t span = static_cast<uint64_t>(len) - 1;
    if (span > UINT64_MAX - address)
        return false;
    const uint64_t last = address + span;

    std::ifstream maps("/proc/self/maps");
    if (!maps)
        return false;
    uint64_t cursor = address; // first byte not yet found in a mapping
    std::string line;
    // The kernel lists mappings in ascending address order.
    while (std::getline(maps, line)) {
        Mapping m;
        if (!parse_mapping(line, m))
            continue;
        if (m.end <= cursor)
            continue;
        if (m.start > cursor)
            return false; // a hole before the rest of the range
        if (!(need == Access::read ? m.readable : m.writable))
            return false;
        if (m.end - 1 >= last)
            return true;
        cursor = m.end;
    }
    return false;
}

void *host_pointer(uint64_t address)
{
    return reinterpret_cast<void *>(static_cast<uintptr_t>(address));
}

} // namespace

bool ProcessMemory::write(uint64_t address, const void *src, size_t len)
{
    if (!range_usable(address, len, Access::write))
        return false;
    if (len != 0)
        std::memcpy(host_pointer(address), src, len);
    return true;
}

bool ProcessMemory::read(uint64_t address, void *dst, size_t len)
{
    if (!range_usable(address, len, Access::read))
        return false;
    if (len != 0)
        std::memcpy(dst, host_pointer(address), len);
    return true;
}

} // namespace kvdsim
