// Helpers the simulator's unit tests share: fleet texts that must parse or
// must fail, records as bytes, and host memory over a buffer of the test's.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/fleet.hpp"
#include "core/hostmem.hpp"

namespace kvdsim::test
{

// A fleet of one board 0 with this WWPN and the given fields.
inline std::string board_doc(const std::string &fields, const char *wwpn = "10:00:06:4b:51:a0:00:10")
{
    return std::string(R"({"boards": [{"board": 0, "wwpn": ")") + wwpn + "\"" + (fields.empty() ? "" : ", ") +
           fields + "}]}";
}

// The fleet a text describes; the test fails if it does not parse.
inline Fleet fleet_ok(const std::string &text)
{
    std::string error;
    auto f = parse_fleet(text, "t.json", error);
    EXPECT_TRUE(f.has_value()) << error;
    return f ? *f : Fleet{};
}

// The one-line message of a text that must not parse.
inline std::string fleet_fault(const std::string &text)
{
    std::string error;
    EXPECT_FALSE(parse_fleet(text, "t.json", error).has_value()) << text;
    EXPECT_EQ(error.find('\n'), std::string::npos) << error;
    return error;
}

template <class T> std::vector<uint8_t> bytes_of(const T &rec)
{
    std::vector<uint8_t> v(sizeof rec);
    std::memcpy(v.data(), &rec, sizeof rec);
    return v;
}

inline uint32_t be32(const uint8_t *p)
{
    return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
}

// Host memory over a local buffer at a made-up bus address.
class FakeMemory final : public HostMemory
{
  public:
    static constexpr uint64_t kBase = 0x40000000;
    std::vector<uint8_t> buf;
    explicit FakeMemory(size_t size = 512) : buf(size)
    {
    }
    bool write(uint64_t a, const void *src, size_t len) override
    {
        if (!inside(a, len))
            return false;
        std::memcpy(buf.data() + (a - kBase), src, len);
        return true;
    }
    bool read(uint64_t a, void *dst, size_t len) override
    {
        if (!inside(a, len))
            return false;
        std::memcpy(dst, buf.data() + (a - kBase), len);
        return true;
    }

  private:
    bool inside(uint64_t a, size_t len) const
    {
        return a >= kBase && a - kBase <= buf.size() && len <= buf.size() - (a - kBase);
    }
};

} // namespace kvdsim::test
