#include "core/hostile.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kvdsim
{

const char *hostile_name(Hostile p)
{
    switch (p) {
    case Hostile::Ones:
        return "ff";
    case Hostile::Maxima:
        return "max";
    case Hostile::Negatives:
        return "neg";
    case Hostile::Text:
        return "text";
    }
    return "?";
}

void hostile_fill(Hostile pat, void *p, size_t n)
{
    auto *b = static_cast<uint8_t *>(p);
    if (!b)
        return;
    for (size_t i = 0; i < n; ++i) {
        const bool top = i % 4 == 3;
        switch (pat) {
        case Hostile::Ones:
            b[i] = 0xff;
            break;
        case Hostile::Maxima:
            b[i] = top ? 0x7f : 0xff;
            break;
        case Hostile::Negatives:
            b[i] = top ? 0x80 : 0x00;
            break;
        case Hostile::Text:
            b[i] = 'A';
            break;
        }
    }
}

void HostileRules::parse(const char *text, std::string &errors)
{
    all_ = events_ = false;
    seed_ = 0;
    names_ = 0;
    calls_.store(0);
    events_seen_.store(0);
    if (!text)
        return;
    std::string all(text);
    size_t start = 0;
    while (start <= all.size()) {
        size_t comma = all.find(',', start);
        std::string item = all.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        start = comma == std::string::npos ? all.size() + 1 : comma + 1;
        if (item.empty())
            continue;
        auto bad = [&](const char *why) {
            errors += "libkvd: KVD_SIM_HOSTILE: bad item \"" + item + "\": " + why + "\n";
        };
        if (item == "all") {
            all_ = true;
        } else if (item == "events") {
            events_ = true;
        } else if (item.rfind("seed=", 0) == 0) {
            char *end = nullptr;
            errno = 0;
            unsigned long v = strtoul(item.c_str() + 5, &end, 0);
            if (item.size() == 5 || errno != 0 || *end != '\0' || v > UINT32_MAX)
                bad("seed not a 32-bit number");
            else
                seed_ = static_cast<uint32_t>(v);
        } else {
            bool ok = item.size() < static_cast<size_t>(kNameMax);
            for (size_t i = 0; ok && i < item.size(); ++i) {
                char c = item[i];
                ok = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
                     (i > 0 && c >= '0' && c <= '9');
            }
            if (!ok)
                bad("bad call name");
            else if (names_ == kMaxNames)
                bad("too many names");
            else {
                memset(name_[names_], 0, kNameMax);
                memcpy(name_[names_++], item.data(), item.size());
            }
        }
    }
    if (all_)
        events_ = true;
}

bool HostileRules::wants(const char *name) const
{
    if (all_)
        return true;
    for (int i = 0; i < names_; ++i)
        if (strcmp(name_[i], name) == 0)
            return true;
    return false;
}

Hostile HostileRules::next_call()
{
    return static_cast<Hostile>((seed_ + calls_.fetch_add(1)) % 4);
}

Hostile HostileRules::next_event()
{
    return static_cast<Hostile>((seed_ + events_seen_.fetch_add(1)) % 4);
}

namespace
{
constinit HostileRules g_hostile;
}

HostileRules &library_hostile()
{
    return g_hostile;
}

void load_hostile_from_env()
{
    std::string errors;
    g_hostile.parse(getenv("KVD_SIM_HOSTILE"), errors);
    if (!errors.empty())
        fputs(errors.c_str(), stderr);
}

} // namespace kvdsim
