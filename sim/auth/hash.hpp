// The hash functions of DH-CHAP: MD5 (RFC 1321) and SHA-1 (FIPS 180-1),
// over whole messages.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace kvdsim
{

using Md5Digest = std::array<uint8_t, 16>;
using Sha1Digest = std::array<uint8_t, 20>;

Md5Digest md5(std::span<const uint8_t> data);
Sha1Digest sha1(std::span<const uint8_t> data);

} // namespace kvdsim
