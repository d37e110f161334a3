#include "core/fault.hpp"

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kvdsim
{

namespace
{

bool is_name_char(char c, bool first)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           (!first && ((c >= '0' && c <= '9') || c == ':'));
}

// "engine:" prefix of a command rule: the length of `engine` when `name`
// starts with it and a colon, else 0.
size_t engine_prefix(const char *name, const char *engine)
{
    size_t n = strlen(engine);
    return strncmp(name, engine, n) == 0 && name[n] == ':' ? n + 1 : 0;
}

// A command code written in a rule: decimal or 0x hex, whole text.
bool rule_code(const char *text, uint32_t &code)
{
    if (!*text || !(text[0] >= '0' && text[0] <= '9'))
        return false;
    char *end = nullptr;
    errno = 0;
    unsigned long v = strtoul(text, &end, 0);
    if (errno != 0 || *end != '\0' || v > UINT32_MAX)
        return false;
    code = static_cast<uint32_t>(v);
    return true;
}

// Whole-text number conversion: strtol's rules with base 0, nothing left over.
bool to_long(const std::string &s, long &out)
{
    if (s.empty())
        return false;
    char *end = nullptr;
    errno = 0;
    long v = strtol(s.c_str(), &end, 0);
    if (errno != 0 || *end != '\0')
        return false;
    out = v;
    return true;
}

} // namespace

void FaultRules::parse(const char *text, std::string &errors)
{
    count_.store(0, std::memory_order_release);
    if (!text)
        return;
    int n = 0;
    int position = 0;
    std::string all(text);
    size_t start = 0;
    while (start <= all.size()) {
        size_t comma = all.find(',', start);
        std::string rule = all.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        start = comma == std::string::npos ? all.size() + 1 : comma + 1;
        if (rule.empty())
            continue;
        ++position;

        auto bad = [&](const char *why) {
            errors += "libkvd: KVD_SIM_FAULT: bad rule \"" + rule + "\": " + why + "\n";
        };

        size_t eq = rule.find('=');
        if (eq == std::string::npos) {
            bad("no '='");
            continue;
        }
        std::string lhs = rule.substr(0, eq);
        std::string rhs = rule.substr(eq + 1);

        std::string name = lhs;
        long board = kNoBoard;
        if (size_t at = lhs.find('@'); at != std::string::npos) {
            name = lhs.substr(0, at);
            if (!to_long(lhs.substr(at + 1), board) || board < 0 || board > 31) {
                bad("board not 0..31");
                continue;
            }
        }
        bool name_ok = !name.empty() && name.size() < static_cast<size_t>(kNameMax);
        for (size_t i = 0; name_ok && i < name.size(); ++i)
            name_ok = is_name_char(name[i], i == 0);
        if (!name_ok) {
            bad("bad call name");
            continue;
        }

        std::string value = rhs;
        int64_t remaining = kAlways;
        if (size_t colon = rhs.find(':'); colon != std::string::npos) {
            value = rhs.substr(0, colon);
            std::string times = rhs.substr(colon + 1);
            long t = 0;
            if (times == "once")
                remaining = 1;
            else if (to_long(times, t) && t > 0)
                remaining = t;
            else {
                bad("count not \"once\" or a positive number");
                continue;
            }
        }
        long result = 0;
        if (!to_long(value, result) || result < INT32_MIN || result > static_cast<long>(UINT32_MAX)) {
            bad("result not a 32-bit number");
            continue;
        }
        if (n == kMaxRules) {
            bad("too many rules");
            continue;
        }
        Rule &r = rules_[n++];
        memset(r.name, 0, sizeof r.name);
        memcpy(r.name, name.data(), name.size());
        r.board = static_cast<int32_t>(board);
        r.result = result;
        r.position = position;
        r.remaining.store(remaining, std::memory_order_relaxed);
    }
    count_.store(n, std::memory_order_release);
}

std::optional<FaultRules::Hit> FaultRules::fire(Rule &r, int32_t board)
{
    if (r.board != kNoBoard && r.board != board)
        return std::nullopt;
    int64_t left = r.remaining.load(std::memory_order_relaxed);
    for (;;) {
        if (left == kAlways)
            return Hit{r.result, r.position};
        if (left == 0)
            return std::nullopt; // used up: a later rule may still match
        if (r.remaining.compare_exchange_weak(left, left - 1, std::memory_order_relaxed))
            return Hit{r.result, r.position};
    }
}

std::optional<FaultRules::Hit> FaultRules::match(const char *name, int32_t board)
{
    int n = count_.load(std::memory_order_acquire);
    for (int i = 0; i < n; ++i) {
        if (strcmp(rules_[i].name, name) != 0 || strchr(rules_[i].name, ':'))
            continue; // command rules are for engines, never for a call
        if (auto hit = fire(rules_[i], board))
            return hit;
    }
    return std::nullopt;
}

std::optional<FaultRules::Hit> FaultRules::match_command(const char *engine, uint32_t code, const char *name,
                                                         int32_t board)
{
    int n = count_.load(std::memory_order_acquire);
    for (int i = 0; i < n; ++i) {
        size_t p = engine_prefix(rules_[i].name, engine);
        if (p == 0)
            continue;
        const char *what = rules_[i].name + p;
        uint32_t rule_cmd = 0;
        bool same = (name && strcmp(what, name) == 0) || (rule_code(what, rule_cmd) && rule_cmd == code);
        if (!same)
            continue;
        if (auto hit = fire(rules_[i], board))
            return hit;
    }
    return std::nullopt;
}

namespace
{
constinit FaultRules g_faults;
}

FaultRules &library_faults()
{
    return g_faults;
}

void load_faults_from_env()
{
    std::string errors;
    g_faults.parse(getenv("KVD_SIM_FAULT"), errors);
    if (!errors.empty())
        fputs(errors.c_str(), stderr);
}

} // namespace kvdsim
