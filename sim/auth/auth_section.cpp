// The board's "auth" object of a fleet file:
//
//   "auth": { "entities": [ { "wwpn": "...", "secret": "...", "peer_secret": "...",
//                             "hashes": [1, 2], "dh_groups": [0, 1, 2, 3, 4, 5] } ] }
#include "auth/auth_conf.hpp"

#include "core/fleet.hpp"
#include "core/section.hpp"

namespace kvdsim
{

namespace
{

std::vector<uint8_t> small_list(const Json &v, const std::string &place, uint8_t lo, uint8_t hi)
{
    if (!v.is_array())
        fail(place, std::string("expected an array, found ") + type_name(v));
    std::vector<uint8_t> out;
    for (size_t i = 0; i < v.size(); ++i) {
        const std::string at = place + "[" + std::to_string(i) + "]";
        const uint64_t n = to_unsigned(v[i], at, hi);
        if (n < lo)
            fail(at, "value " + std::to_string(n) + " out of range " + std::to_string(lo) + ".." +
                         std::to_string(hi));
        out.push_back(static_cast<uint8_t>(n));
    }
    return out;
}

} // namespace

void read_auth_section(Section &board, BoardConf &conf)
{
    const Json *j = board.take("auth");
    if (!j)
        return;
    Section s(*j, board.at("auth"));
    if (const Json *list = s.take("entities")) {
        const std::string place = s.at("entities");
        if (!list->is_array())
            fail(place, std::string("expected an array, found ") + type_name(*list));
        for (size_t i = 0; i < list->size(); ++i) {
            Section e((*list)[i], place + "[" + std::to_string(i) + "]");
            AuthEntityConf a;
            a.wwpn = to_wwn(e.need("wwpn"), e.at("wwpn"));
            bool known = false;
            for (const RemotePort &p : conf.remote_ports)
                known = known || p.wwpn == a.wwpn;
            if (!known)
                fail(e.at("wwpn"), "not a remote port of this board");
            for (const AuthEntityConf &o : conf.auth.entities)
                if (o.wwpn == a.wwpn)
                    fail(e.at("wwpn"), "duplicate entity");
            e.text("secret", a.secret, KVD_PASSWD_MAX);
            e.text("peer_secret", a.peer_secret, KVD_PASSWD_MAX);
            if (const Json *v = e.take("hashes"))
                a.hashes = small_list(*v, e.at("hashes"), KVD_AUTH_HASH_MD5, KVD_AUTH_HASH_SHA1);
            if (const Json *v = e.take("dh_groups"))
                a.dh_groups = small_list(*v, e.at("dh_groups"), 0, KVD_AUTH_DH_GROUP_MAX);
            e.finish();
            conf.auth.entities.push_back(std::move(a));
        }
    }
    s.finish();
}

} // namespace kvdsim
