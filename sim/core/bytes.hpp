// Big-endian fields of frames, payloads and flash records.
//
// Fibre Channel frames, SCSI data and the adapter's flash images carry their
// multi-byte fields most significant byte first, whatever the host's order.
// The pointer forms write into room the caller has already bounded; the
// vector forms append.
#pragma once

#include <cstdint>
#include <vector>

namespace kvdsim
{

inline void put_be16(uint8_t *p, uint32_t v)
{
    p[0] = static_cast<uint8_t>(v >> 8);
    p[1] = static_cast<uint8_t>(v);
}

inline void put_be24(uint8_t *p, uint32_t v)
{
    p[0] = static_cast<uint8_t>(v >> 16);
    put_be16(p + 1, v);
}

inline void put_be32(uint8_t *p, uint32_t v)
{
    put_be16(p, v >> 16);
    put_be16(p + 2, v);
}

inline void put_be64(uint8_t *p, uint64_t v)
{
    put_be32(p, static_cast<uint32_t>(v >> 32));
    put_be32(p + 4, static_cast<uint32_t>(v));
}

inline void put_be16(std::vector<uint8_t> &out, uint32_t v)
{
    out.push_back(static_cast<uint8_t>(v >> 8));
    out.push_back(static_cast<uint8_t>(v));
}

inline void put_be32(std::vector<uint8_t> &out, uint32_t v)
{
    put_be16(out, v >> 16);
    put_be16(out, v);
}

inline uint16_t be16(const uint8_t *p)
{
    return static_cast<uint16_t>(p[0] << 8 | p[1]);
}

inline uint32_t be24(const uint8_t *p)
{
    return static_cast<uint32_t>(p[0]) << 16 | static_cast<uint32_t>(p[1]) << 8 | p[2];
}

inline uint32_t be32(const uint8_t *p)
{
    return static_cast<uint32_t>(p[0]) << 24 | be24(p + 1);
}

} // namespace kvdsim
