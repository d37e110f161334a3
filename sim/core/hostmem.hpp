// Host memory that buffer descriptors point at. A descriptor address comes
// from the caller's record and may be anything; engines copy through this
// interface, which the library backs with a check of the process's own
// mappings and tests back with a buffer of their own.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kvdsim
{

class HostMemory
{
  public:
    virtual ~HostMemory() = default;
    // Copies len bytes to the host address; false if the range is unusable.
    virtual bool write(uint64_t address, const void *src, size_t len) = 0;
    virtual bool read(uint64_t address, void *dst, size_t len) = 0;
};

// Checks the process's own mappings (/proc/self/maps) before copying.
class ProcessMemory final : public HostMemory
{
  public:
    bool write(uint64_t address, const void *src, size_t len) override;
    bool read(uint64_t address, void *dst, size_t len) override;
};

} // namespace kvdsim
