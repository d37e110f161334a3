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
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || (!first && c >= '0' && c <= '9');
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
    std::string all(text);
    size_t start = 0;
    while (start <= all.size()) {
        size_t comma = all.find(',', start);
        std::string rule = all.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        start = comma == std::string::npos ? all.size() + 1 : comma + 1;
        if (rule.empty())
            continue;

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
        r.remaining.store(remaining, std::memory_order_relaxed);
    }
    count_.store(n, std::memory_order_release);
}

std::optional<int64_t> FaultRules::match(const char *name, int32_t board)
{
    int n = count_.load(std::memory_order_acquire);
    for (int i = 0; i < n; ++i) {
        Rule &r = rules_[i];
        if (strcmp(r.name, name) != 0)
            continue;
        if (r.board != kNoBoard && r.board != board)
            continue;
        int64_t left = r.remaining.load(std::memory_order_relaxed);
        for (;;) {
            if (left == kAlways)
                return r.result;
            if (left == 0)
                break; // used up: a later rule may still match
            if (r.remaining.compare_exchange_weak(left, left - 1, std::memory_order_relaxed))
                return r.result;
        }
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
