// Reading fleet objects: value conversions with their faults, and the
// Section reader that records which keys were taken.
#include "core/section.hpp"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace kvdsim
{

[[noreturn]] void fail(const std::string &place, std::string fault)
{
    throw FleetFault{place, std::move(fault)};
}

std::string hex(uint64_t v)
{
    char buf[24];
    snprintf(buf, sizeof buf, "0x%llx", static_cast<unsigned long long>(v));
    return buf;
}

// Quotes a text for a message, keeping the message on one line.
std::string quote_text(const std::string &s)
{
    std::string out = "\"";
    for (char c : s.substr(0, 40)) {
        unsigned char u = static_cast<unsigned char>(c);
        if (u < 0x20 || u == 0x7f || c == '"' || c == '\\') {
            char buf[8];
            snprintf(buf, sizeof buf, "\\x%02x", u);
            out += buf;
        } else {
            out += c;
        }
    }
    if (s.size() > 40)
        out += "...";
    return out + "\"";
}

const char *type_name(const Json &j)
{
    switch (j.type()) {
    case Json::value_t::null:
        return "null";
    case Json::value_t::object:
        return "an object";
    case Json::value_t::array:
        return "an array";
    case Json::value_t::string:
        return "a string";
    case Json::value_t::boolean:
        return "a boolean";
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
        return "an integer";
    case Json::value_t::number_float:
        return "a fractional number";
    default:
        return "something else";
    }
}

// Unsigned number: a JSON integer, or a text holding a decimal or "0x" hex
// number (so that PCI ids and addresses read as they are usually written).
uint64_t to_unsigned(const Json &v, const std::string &place, uint64_t max)
{
    uint64_t n = 0;
    if (v.is_number_unsigned()) {
        n = v.get<uint64_t>();
    } else if (v.is_number_integer()) {
        fail(place, "negative value " + std::to_string(v.get<int64_t>()));
    } else if (v.is_string()) {
        const std::string &s = v.get_ref<const std::string &>();
        bool is_hex = s.size() > 2 && s[0] == '0' && (s[1] == 'x' || s[1] == 'X');
        const char *digits = s.c_str() + (is_hex ? 2 : 0);
        bool ok = *digits != '\0';
        for (const char *p = digits; *p && ok; ++p)
            ok = is_hex ? isxdigit(static_cast<unsigned char>(*p)) != 0 : (*p >= '0' && *p <= '9');
        if (!ok)
            fail(place, "bad number " + quote_text(s));
        errno = 0;
        n = strtoull(digits, nullptr, is_hex ? 16 : 10);
        if (errno == ERANGE)
            fail(place, "number " + quote_text(s) + " too large");
    } else {
        fail(place, std::string("expected a number, found ") + type_name(v));
    }
    if (n > max)
        fail(place, "value " + hex(n) + " out of range 0.." + hex(max));
    return n;
}

int64_t to_signed(const Json &v, const std::string &place, int64_t min, int64_t max)
{
    if (!v.is_number_integer() && !v.is_number_unsigned())
        fail(place, std::string("expected an integer, found ") + type_name(v));
    if (v.is_number_unsigned() && v.get<uint64_t>() > static_cast<uint64_t>(max))
        fail(place, "value " + std::to_string(v.get<uint64_t>()) + " out of range " + std::to_string(min) +
                        ".." + std::to_string(max));
    int64_t n = v.get<int64_t>();
    if (n < min || n > max)
        fail(place, "value " + std::to_string(n) + " out of range " + std::to_string(min) + ".." +
                        std::to_string(max));
    return n;
}

bool to_bool(const Json &v, const std::string &place)
{
    if (!v.is_boolean())
        fail(place, std::string("expected true or false, found ") + type_name(v));
    return v.get<bool>();
}

std::string to_text(const Json &v, const std::string &place, size_t max)
{
    if (!v.is_string())
        fail(place, std::string("expected a string, found ") + type_name(v));
    std::string s = v.get<std::string>();
    if (s.find('\0') != std::string::npos)
        fail(place, "text holds a NUL character");
    if (s.size() > max)
        fail(place, "text of " + std::to_string(s.size()) + " bytes longer than " + std::to_string(max));
    return s;
}

Wwn to_wwn(const Json &v, const std::string &place)
{
    if (!v.is_string())
        fail(place, std::string("expected a WWN text, found ") + type_name(v));
    Wwn w{};
    if (!parse_wwn(v.get<std::string>(), w))
        fail(place, "bad WWN " + quote_text(v.get<std::string>()) +
                        " (want 8 hex pairs like 10:00:06:4b:51:a0:00:10)");
    return w;
}

Section::Section(const Json &j, std::string place) : j_(j), place_(std::move(place))
{
    if (!j.is_object())
        fail(place_.empty() ? "top level" : place_, std::string("expected an object, found ") + type_name(j));
}

std::string Section::at(const std::string &key) const
{
    return place_.empty() ? key : place_ + "." + key;
}

const Json *Section::take(const char *key)
{
    auto it = j_.find(key);
    if (it == j_.end())
        return nullptr;
    if (std::find(taken_.begin(), taken_.end(), key) == taken_.end())
        taken_.emplace_back(key);
    return &*it;
}

const Json &Section::need(const char *key)
{
    const Json *v = take(key);
    if (!v)
        fail(place_.empty() ? "top level" : place_, std::string("missing field \"") + key + "\"");
    return *v;
}

bool Section::flag(const char *key, bool &dst)
{
    const Json *v = take(key);
    if (v)
        dst = to_bool(*v, at(key));
    return v != nullptr;
}

bool Section::text(const char *key, std::string &dst, size_t max)
{
    const Json *v = take(key);
    if (v)
        dst = to_text(*v, at(key), max);
    return v != nullptr;
}

bool Section::wwn(const char *key, Wwn &dst)
{
    const Json *v = take(key);
    if (v)
        dst = to_wwn(*v, at(key));
    return v != nullptr;
}

void Section::finish() const
{
    for (const auto &item : j_.items())
        if (std::find(taken_.begin(), taken_.end(), item.key()) == taken_.end())
            fail(at(item.key()), "unknown field");
}

} // namespace kvdsim
