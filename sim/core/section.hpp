// Reading one JSON object of a fleet file.
//
// A board object is read by several readers in turn (the board's kind, its
// PCI identity, its link, the mailbox firmware's revision, later engines'
// own sections). Each takes the keys it understands from the same Section,
// which records them; finish() then reports the first key nobody took as an
// unknown field. So every key is named once, by the reader that uses it.
//
// Faults are thrown as FleetFault and turned into one message by
// parse_fleet: "<origin>: <place>: <fault>".
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "core/fleet.hpp"

namespace kvdsim
{

using Json = nlohmann::ordered_json;

struct FleetFault {
    std::string place;
    std::string fault;
};

[[noreturn]] void fail(const std::string &place, std::string fault);

std::string hex(uint64_t v);
std::string quote_text(const std::string &s); // for messages: one line, at most 40 characters
const char *type_name(const Json &j);

// Value conversions; `place` names the value in a fault. Numbers may be JSON
// integers or texts, decimal or "0x" hex.
uint64_t to_unsigned(const Json &v, const std::string &place, uint64_t max);
int64_t to_signed(const Json &v, const std::string &place, int64_t min, int64_t max);
bool to_bool(const Json &v, const std::string &place);
std::string to_text(const Json &v, const std::string &place, size_t max);
Wwn to_wwn(const Json &v, const std::string &place);

class Section
{
  public:
    // `place` is where the object sits ("boards[1]", "boards[1].link"; empty
    // for the top level). Faults unless `j` is an object.
    Section(const Json &j, std::string place);

    // The value of `key`, marking it read; null when absent.
    const Json *take(const char *key);
    const Json &need(const char *key);
    std::string at(const std::string &key) const;
    const std::string &place() const
    {
        return place_;
    }

    // Typed reads: when the key is present, convert it into `dst` and
    // return true; otherwise leave `dst` and return false.
    template <class T> bool number(const char *key, T &dst, uint64_t max = std::numeric_limits<T>::max())
    {
        const Json *v = take(key);
        if (v)
            dst = static_cast<T>(to_unsigned(*v, at(key), max));
        return v != nullptr;
    }
    bool flag(const char *key, bool &dst);
    bool text(const char *key, std::string &dst, size_t max);
    bool wwn(const char *key, Wwn &dst);

    // Faults on the first key no reader took.
    void finish() const;

  private:
    const Json &j_;
    std::string place_;
    std::vector<std::string> taken_;
};

// One board object being read: its Section, the conf the readers fill in
// turn, and the fleet's top-level fields (read before the boards).
struct BoardReading {
    Section board;
    BoardConf conf;
    const Fleet &fleet;
};

// A reader of a board object: takes its own keys from r.board and fills its
// part of r.conf.
using BoardReader = void (*)(BoardReading &r);

} // namespace kvdsim
