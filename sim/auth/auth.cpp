#include "auth/auth.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>

#include "auth/hash.hpp"
#include "core/fault.hpp"

namespace kvdsim
{

struct AuthCommands {
    static constexpr AuthRow table[] = {
        {kAuthGetConfig, "GET_CONFIG", kSliAll, sizeof(ZRT_FCSP_CONFIG), sizeof(ZRT_FCSP_CONFIG),
         &AuthEngine::get_config},
        {kAuthSetConfig, "SET_CONFIG", kSliAll, sizeof(ZRT_FCSP_CONFIG), 0, &AuthEngine::set_config},
        {kAuthDeleteConfig, "DELETE_CONFIG", kSliAll, 0, 0, &AuthEngine::delete_config},
        {kAuthGetPassword, "GET_PASSWORD", kSliAll, sizeof(ZRT_AUTH_PASSWD), sizeof(ZRT_AUTH_PASSWD),
         &AuthEngine::get_password},
        {kAuthSetPassword, "SET_PASSWORD", kSliAll, sizeof(ZRT_AUTH_PASSWD), 0, &AuthEngine::set_password},
        {kAuthInitiate, "INITIATE", kSliAll, 0, 0, &AuthEngine::initiate},
        {kAuthGetStatus, "GET_STATUS", kSliAll, sizeof(KVD_AuthStatus), sizeof(KVD_AuthStatus),
         &AuthEngine::get_status},
        {kAuthConfigList, "CONFIG_LIST", kSliAll, 4, 4, &AuthEngine::config_list},
    };
    static_assert(unique_codes(table));
    static_assert(unique_names(table));
    static constexpr auto infos = row_infos(table);
};

std::span<const RowInfo> AuthEngine::commands()
{
    return AuthCommands::infos;
}

const AuthRow *AuthEngine::command(uint32_t code)
{
    return find_row(AuthCommands::table, code);
}

namespace
{

uint64_t steady_ms()
{
    using namespace std::chrono;
    return static_cast<uint64_t>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

AUTH_PASSWD_INFO read_password(std::span<const uint8_t> s)
{
    AUTH_PASSWD_INFO p;
    std::memcpy(&p, s.data(), sizeof p);
    return p;
}

bool valid_password(const AUTH_PASSWD_INFO &p)
{
    if (p.type == KVD_PASSWD_IGNORE)
        return true;
    return (p.type == KVD_PASSWD_ASCII || p.type == KVD_PASSWD_BINARY) && p.length > 0 &&
           p.length <= KVD_PASSWD_MAX;
}

Secret to_secret(const AUTH_PASSWD_INFO &p)
{
    Secret s;
    s.type = p.type;
    if (p.type != KVD_PASSWD_IGNORE)
        s.bytes.assign(p.password, p.password + std::min<size_t>(p.length, KVD_PASSWD_MAX));
    return s;
}

// A stored password that is none accepts whatever is given: there is no
// secret to protect.
bool matches(const Secret &stored, const AUTH_PASSWD_INFO &given)
{
    if (stored.none())
        return true;
    return given.type == stored.type && given.length == stored.bytes.size() &&
           std::memcmp(given.password, stored.bytes.data(), stored.bytes.size()) == 0;
}

bool valid_config(const ZRT_FCSP_CONFIG &c)
{
    if (c.authentication_timeout == 0 || c.authentication_mode < 1 || c.authentication_mode > 3)
        return false;
    bool any_type = false, any_hash = false;
    for (uint8_t t : c.authentication_type_priority) {
        if (t > KVD_AUTH_TYPE_DHCHAP)
            return false;
        any_type = any_type || t != 0;
    }
    for (uint8_t h : c.hash_priority) {
        if (h > KVD_AUTH_HASH_SHA1)
            return false;
        any_hash = any_hash || h != 0;
    }
    for (uint8_t g : c.dh_group_priority)
        if (g > KVD_AUTH_DH_GROUP_MAX)
            return false;
    return any_type && any_hash;
}

} // namespace

namespace dhchap
{

uint64_t group_prime(uint8_t group)
{
    // Safe primes p = 2q + 1 with p = 7 mod 8, so that 2 generates the
    // subgroup of prime order q; one size per group.
    static constexpr uint64_t primes[] = {
        0, 0xffffffcf47, 0x3ffffffffca7, 0xffffffffffe27, 0x3ffffffffffff77, 0x3fffffffffffd2bf};
    return group <= KVD_AUTH_DH_GROUP_MAX ? primes[group] : 0;
}

uint64_t pow_mod(uint64_t base, uint64_t exp, uint64_t mod)
{
    unsigned __int128 r = 1, b = base % mod;
    while (exp) {
        if (exp & 1)
            r = r * b % mod;
        b = b * b % mod;
        exp >>= 1;
    }
    return static_cast<uint64_t>(r);
}

std::vector<uint8_t> hash(uint8_t id, std::span<const uint8_t> data)
{
    if (id == KVD_AUTH_HASH_MD5) {
        const Md5Digest d = md5(data);
        return {d.begin(), d.end()};
    }
    const Sha1Digest d = sha1(data);
    return {d.begin(), d.end()};
}

std::vector<uint8_t> response(uint8_t hash_id, uint8_t id, std::span<const uint8_t> secret,
                              std::span<const uint8_t> challenge, uint8_t group, uint64_t z)
{
    std::vector<uint8_t> c(challenge.begin(), challenge.end());
    if (group != 0) {
        for (int i = 7; i >= 0; --i)
            c.push_back(static_cast<uint8_t>(z >> (8 * i)));
        c = hash(hash_id, c);
    }
    std::vector<uint8_t> m{id};
    m.insert(m.end(), secret.begin(), secret.end());
    m.insert(m.end(), c.begin(), c.end());
    return hash(hash_id, m);
}

} // namespace dhchap

AuthEngine::AuthEngine(const BoardConf &cfg, std::function<uint64_t()> now_ms)
    : cfg_(cfg), now_ms_(now_ms ? std::move(now_ms) : steady_ms), rng_(std::random_device{}())
{
}

int32_t AuthEngine::run(uint32_t code, AuthRequest &req, CommandNote *note)
{
    const AuthRow *row = command(code);
    if (note)
        *note = CommandNote{row ? row->name : nullptr, 0};
    if (!row || !(row->sli_levels & sli_bit(cfg_.sli_mode)))
        return ENOTTY;
    if (req.record.size() < std::max(row->min_in, row->min_out))
        return EINVAL;
    if (auto hit =
            library_faults().match_command("auth", code, row->name, static_cast<int32_t>(cfg_.number))) {
        if (note)
            note->rule = hit->rule;
        return static_cast<int32_t>(hit->result);
    }
    return (this->*row->handler)(req);
}

AuthEngine::Pair *AuthEngine::find(const Wwn &local, const Wwn &remote)
{
    auto it = pairs_.find({local, remote});
    return it == pairs_.end() ? nullptr : &it->second;
}

bool AuthEngine::local_port(const Wwn &local) const
{
    return local == cfg_.wwpn;
}

int32_t AuthEngine::get_config(AuthRequest &r)
{
    const Pair *p = find(r.local, r.remote);
    if (!p)
        return ENOENT;
    std::memcpy(r.record.data(), &p->config, sizeof p->config);
    return 0;
}

int32_t AuthEngine::set_config(AuthRequest &r)
{
    ZRT_FCSP_CONFIG c;
    std::memcpy(&c, r.record.data(), sizeof c);
    if (r.password.size() < sizeof(AUTH_PASSWD_INFO) || !local_port(r.local) || !valid_config(c))
        return EINVAL;
    const AUTH_PASSWD_INFO pw = read_password(r.password);
    if (!valid_password(pw))
        return EINVAL;
    Pair *p = find(r.local, r.remote);
    if (p) {
        if (!matches(p->local, pw))
            return EACCES;
    } else {
        if (pairs_.size() >= kAuthMaxConfigs)
            return ENOSPC;
        p = &pairs_[{r.local, r.remote}];
        p->local = to_secret(pw);
    }
    c.pad = 0;
    p->config = c;
    return 0;
}

int32_t AuthEngine::delete_config(AuthRequest &r)
{
    if (r.password.size() < sizeof(AUTH_PASSWD_INFO))
        return EINVAL;
    const Pair *p = find(r.local, r.remote);
    if (!p)
        return ENOENT;
    if (!matches(p->local, read_password(r.password)))
        return EACCES;
    pairs_.erase({r.local, r.remote});
    return 0;
}

int32_t AuthEngine::get_password(AuthRequest &r)
{
    const Pair *p = find(r.local, r.remote);
    if (!p)
        return ENOENT;
    ZRT_AUTH_PASSWD out;
    std::memcpy(&out, r.record.data(), sizeof out);
    for (AUTH_PASSWD_INFO *i : {&out.current_local_passwd, &out.current_remote_passwd, &out.new_local_passwd,
                                &out.new_remote_passwd})
        *i = AUTH_PASSWD_INFO{};
    out.current_local_passwd.type = p->local.type;
    out.current_remote_passwd.type = p->remote.type;
    out.new_local_passwd.type = KVD_PASSWD_IGNORE;
    out.new_remote_passwd.type = KVD_PASSWD_IGNORE;
    std::memcpy(r.record.data(), &out, sizeof out);
    return 0;
}

// Each side changes only when asked: a current and a new password both of
// type "ignore" leave it alone. Otherwise the current password must match
// before the new one (type "ignore": none) replaces it. Both sides are
// checked before either changes.
int32_t AuthEngine::set_password(AuthRequest &r)
{
    ZRT_AUTH_PASSWD in;
    std::memcpy(&in, r.record.data(), sizeof in);
    Pair *p = find(r.local, r.remote);
    if (!p)
        return ENOENT;
    struct Side {
        Secret &stored;
        const AUTH_PASSWD_INFO &current, &next;
    } sides[] = {{p->local, in.current_local_passwd, in.new_local_passwd},
                 {p->remote, in.current_remote_passwd, in.new_remote_passwd}};
    for (const Side &s : sides) {
        if (!valid_password(s.current) || !valid_password(s.next))
            return EINVAL;
        if (s.current.type == KVD_PASSWD_IGNORE && s.next.type == KVD_PASSWD_IGNORE)
            continue;
        if (s.stored.none() ? s.current.type != KVD_PASSWD_IGNORE : !matches(s.stored, s.current))
            return EACCES;
    }
    for (Side &s : sides)
        if (!(s.current.type == KVD_PASSWD_IGNORE && s.next.type == KVD_PASSWD_IGNORE))
            s.stored = to_secret(s.next);
    return 0;
}

void AuthEngine::authenticate(const Wwn &remote, Pair &p)
{
    p.state = KVD_AUTH_STATE_FAILED;
    p.local_auth = p.remote_auth = false;
    p.type = p.group = p.hash = 0;
    p.last_ms = now_ms_();
    auto fail = [&](uint8_t reason) { p.reason = reason; };

    const bool reachable =
        cfg_.link_up && std::any_of(cfg_.remote_ports.begin(), cfg_.remote_ports.end(),
                                    [&](const RemotePort &rp) { return rp.wwpn == remote; });
    if (!reachable)
        return fail(KVD_AUTH_FAIL_NO_RESPONSE);
    const AuthEntityConf *e = nullptr;
    for (const AuthEntityConf &a : cfg_.auth.entities)
        if (a.wwpn == remote)
            e = &a;
    if (!e)
        return fail(KVD_AUTH_FAIL_NOT_ENABLED);

    // Negotiation: the first of the port's choices the remote entity takes.
    const ZRT_FCSP_CONFIG &c = p.config;
    const uint8_t *type = std::find(std::begin(c.authentication_type_priority),
                                    std::end(c.authentication_type_priority), KVD_AUTH_TYPE_DHCHAP);
    if (type == std::end(c.authentication_type_priority))
        return fail(KVD_AUTH_FAIL_MECHANISM);
    auto takes = [](const std::vector<uint8_t> &v, uint8_t x) {
        return std::find(v.begin(), v.end(), x) != v.end();
    };
    const uint8_t *hash = std::find_if(std::begin(c.hash_priority), std::end(c.hash_priority),
                                       [&](uint8_t h) { return h != 0 && takes(e->hashes, h); });
    if (hash == std::end(c.hash_priority))
        return fail(KVD_AUTH_FAIL_HASH);
    const uint8_t *group = std::find_if(std::begin(c.dh_group_priority), std::end(c.dh_group_priority),
                                        [&](uint8_t g) { return takes(e->dh_groups, g); });
    if (group == std::end(c.dh_group_priority))
        return fail(KVD_AUTH_FAIL_DH_GROUP);
    if (p.local.none() || e->peer_secret.empty())
        return fail(KVD_AUTH_FAIL_NO_SECRET);

    // The remote entity challenges the port; with a DH group both sides
    // also agree on Z = g^xy, which enters the challenge's hash.
    const size_t hlen = *hash == KVD_AUTH_HASH_MD5 ? 16 : 20;
    const uint8_t id = static_cast<uint8_t>(rng_());
    uint64_t z_port = 0, z_remote = 0;
    if (*group != 0) {
        const uint64_t prime = dhchap::group_prime(*group);
        const uint64_t q = (prime - 1) / 2;
        const uint64_t x = 2 + rng_() % (q - 2), y = 2 + rng_() % (q - 2);
        const uint64_t gx = dhchap::pow_mod(2, x, prime), gy = dhchap::pow_mod(2, y, prime);
        z_port = dhchap::pow_mod(gy, x, prime);
        z_remote = dhchap::pow_mod(gx, y, prime);
    }
    auto challenge = [&] {
        std::vector<uint8_t> v(hlen);
        for (uint8_t &b : v)
            b = static_cast<uint8_t>(rng_());
        return v;
    };
    auto text = [](const std::string &s) {
        return std::span<const uint8_t>(reinterpret_cast<const uint8_t *>(s.data()), s.size());
    };

    const std::vector<uint8_t> c1 = challenge();
    if (dhchap::response(*hash, id, p.local.bytes, c1, *group, z_port) !=
        dhchap::response(*hash, id, text(e->peer_secret), c1, *group, z_remote))
        return fail(KVD_AUTH_FAIL_SECRET);
    if (c.bidirectional) {
        // The port challenges back and checks the answer with the secret
        // it holds for the remote entity.
        if (p.remote.none() || e->secret.empty())
            return fail(KVD_AUTH_FAIL_NO_SECRET);
        const std::vector<uint8_t> c2 = challenge();
        if (dhchap::response(*hash, id, text(e->secret), c2, *group, z_remote) !=
            dhchap::response(*hash, id, p.remote.bytes, c2, *group, z_port))
            return fail(KVD_AUTH_FAIL_SECRET);
    }
    p.state = KVD_AUTH_STATE_SUCCESS;
    p.reason = KVD_AUTH_FAIL_NONE;
    p.type = KVD_AUTH_TYPE_DHCHAP;
    p.hash = *hash;
    p.group = *group;
    p.local_auth = true;
    p.remote_auth = c.bidirectional;
}

int32_t AuthEngine::initiate(AuthRequest &r)
{
    Pair *p = find(r.local, r.remote);
    if (!p)
        return ENOENT;
    authenticate(r.remote, *p);
    return p->state == KVD_AUTH_STATE_SUCCESS ? 0 : EACCES;
}

// A pair whose re-authentication interval (seconds) has run out is
// authenticated again before its status is read, as the driver's timer
// would have done.
int32_t AuthEngine::get_status(AuthRequest &r)
{
    Pair *p = find(r.local, r.remote);
    if (!p)
        return ENOENT;
    const uint64_t interval_ms = static_cast<uint64_t>(p->config.reauthenticate_time_interval) * 1000;
    if (p->state == KVD_AUTH_STATE_SUCCESS && interval_ms && now_ms_() - p->last_ms >= interval_ms)
        authenticate(r.remote, *p);
    const uint64_t elapsed = p->state == KVD_AUTH_STATE_NONE ? 0 : now_ms_() - p->last_ms;
    KVD_AuthStatus s{};
    std::memcpy(s.local_entity.wwn, r.local.data(), 8);
    std::memcpy(s.remote_entity.wwn, r.remote.data(), 8);
    s.auth_state = p->state;
    s.auth_failReason = p->reason;
    s.auth_type = p->type;
    s.dhGroup = p->group;
    s.hash = p->hash;
    s.localAuth = p->local_auth;
    s.remoteAuth = p->remote_auth;
    s.time_from_last_auth = static_cast<uint32_t>(std::min<uint64_t>(elapsed / 1000, UINT32_MAX));
    if (p->state == KVD_AUTH_STATE_SUCCESS && interval_ms)
        s.time_until_next_auth = static_cast<uint32_t>((interval_ms - elapsed) / 1000);
    std::memcpy(r.record.data(), &s, sizeof s);
    return 0;
}

// The room is the count the caller announces, and never more than the
// record handed over holds.
int32_t AuthEngine::config_list(AuthRequest &r)
{
    if (!local_port(r.local))
        return EINVAL;
    uint32_t room;
    std::memcpy(&room, r.record.data(), 4);
    room = static_cast<uint32_t>(std::min<size_t>(room, (r.record.size() - 4) / 8));
    uint32_t n = 0;
    for (const auto &[key, pair] : pairs_) {
        if (key.first != r.local || n == room)
            continue;
        std::memcpy(r.record.data() + 4 + 8 * n, key.second.data(), 8);
        ++n;
    }
    std::memcpy(r.record.data(), &n, 4);
    return 0;
}

} // namespace kvdsim
