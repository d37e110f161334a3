// Hostile replies: with KVD_SIM_HOSTILE set, chosen library calls do their
// real work and then overwrite the records they hand back to the caller
// with a hostile pattern, so that the shell meets replies a faulty or
// foreign library could give: counts and lengths at their maxima, negative
// numbers where counts are expected, text fields full to the last byte with
// no terminator, all-ones bytes. Nothing is written outside the records the
// caller handed over.
//
//   KVD_SIM_HOSTILE=all | Name[,Name...] [,events] [,seed=N]
//
// `all` spoils every call, a Name one library call (e.g.
// GetAdapterAttributes), `events` the records of the event callbacks.
// The pattern cycles per spoiled call, starting at seed modulo 4, so a run
// repeats exactly:
//
//   ff    every byte 0xff
//   max   every 32-bit word 0x7fffffff (little-endian)
//   neg   every 32-bit word 0x80000000
//   text  every byte 'A', no NUL anywhere
//
// Entry points declare what they hand back with Call::out(pointer, size)
// (sim/core/state.hpp); the frame in sim/core/entry.hpp spoils those spans
// after the work and marks the trace line " hostile=PATTERN".
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

namespace kvdsim
{

enum class Hostile : uint8_t { Ones, Maxima, Negatives, Text };

const char *hostile_name(Hostile p);

// Fills [p, p+n) with pattern `pat` (word patterns by byte offset mod 4).
void hostile_fill(Hostile pat, void *p, size_t n);

class HostileRules
{
  public:
    static constexpr int kMaxNames = 32;
    static constexpr int kNameMax = 48;

    constexpr HostileRules() = default;
    HostileRules(const HostileRules &) = delete;
    HostileRules &operator=(const HostileRules &) = delete;

    // Replaces the rules with those in `text`; each malformed item is left
    // out and reported by one line appended to `errors`.
    void parse(const char *text, std::string &errors);

    bool on() const
    {
        return all_ || names_ > 0 || events_;
    }
    // Whether the call `name` is to be spoiled.
    bool wants(const char *name) const;
    bool wants_events() const
    {
        return events_;
    }
    // The next pattern for a call, and (on its own cycle, as events come
    // from another thread) for an event.
    Hostile next_call();
    Hostile next_event();

  private:
    bool all_ = false;
    bool events_ = false;
    uint32_t seed_ = 0;
    int names_ = 0;
    char name_[kMaxNames][kNameMax] = {};
    std::atomic<uint32_t> calls_{0};
    std::atomic<uint32_t> events_seen_{0};
};

// The library's own rules, read from the environment when it is loaded.
HostileRules &library_hostile();
void load_hostile_from_env();

} // namespace kvdsim
