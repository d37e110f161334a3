// FC-SP authentication: the configurations of local/remote pairs, their
// passwords, authentication and its status, and the list of pairs.
//
// Each call hands private copies of the caller's records to the board's
// authentication engine and copies the reply back only on success.
// Passwords never reach the trace in clear: every non-zero byte of a
// password field is written as '*' (0x2a). Failures beyond the frame's own
// are the engine's errno values.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>
#include <cstring>
#include <vector>

#include "core/entry.hpp"

using namespace kvdsim;

namespace
{

// The most entries one list call writes, whatever room is announced.
constexpr uint32_t kListMax = 4096;

Wwn wwn_of(uint64_t v)
{
    Wwn w;
    std::memcpy(w.data(), &v, 8);
    return w;
}

void mask(AUTH_PASSWD_INFO &p)
{
    for (uint8_t &b : p.password)
        if (b)
            b = '*';
}

AUTH_PASSWD_INFO masked(const AUTH_PASSWD_INFO &p)
{
    AUTH_PASSWD_INFO m = p;
    mask(m);
    return m;
}

ZRT_AUTH_PASSWD masked(const ZRT_AUTH_PASSWD &p)
{
    ZRT_AUTH_PASSWD m = p;
    for (AUTH_PASSWD_INFO *i :
         {&m.current_local_passwd, &m.current_remote_passwd, &m.new_local_passwd, &m.new_remote_passwd})
        mask(*i);
    return m;
}

template <class R> std::span<uint8_t> span_of(R &r)
{
    return {reinterpret_cast<uint8_t *>(&r), sizeof r};
}

} // namespace

uint32_t KVD_GetAuthConfig(uint32_t board, ZRT_FCSP_CONFIG *config)
{
    return board_call<uint32_t>(
        "KVD_GetAuthConfig", board, kErrnoFamily, config,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("config", config); },
        [&](Call &c, Board &b) -> uint32_t {
            c.out(config, sizeof *config);
            ZRT_FCSP_CONFIG copy;
            std::memcpy(&copy, config, sizeof copy);
            AuthRequest r{wwn_of(copy.local_entity), wwn_of(copy.remote_entity), span_of(copy), {}};
            const int32_t rc = engine_request(c, *b.auth, kAuthGetConfig, r);
            c.line.bytes("in", config, sizeof *config);
            if (rc == 0) {
                std::memcpy(config, &copy, sizeof copy);
                c.line.bytes("out", config, sizeof *config);
            }
            return static_cast<uint32_t>(rc);
        });
}

uint32_t KVD_SetAuthConfig(uint32_t board, ZRT_FCSP_CONFIG *config, AUTH_PASSWD_INFO *password)
{
    return board_call<uint32_t>(
        "KVD_SetAuthConfig", board, kErrnoFamily, config,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("config", config).arg_ptr("password", password); },
        [&](Call &c, Board &b) -> uint32_t {
            if (!password)
                return EFAULT;
            ZRT_FCSP_CONFIG copy;
            std::memcpy(&copy, config, sizeof copy);
            AUTH_PASSWD_INFO pw;
            std::memcpy(&pw, password, sizeof pw);
            AuthRequest r{wwn_of(copy.local_entity), wwn_of(copy.remote_entity), span_of(copy), span_of(pw)};
            const int32_t rc = engine_request(c, *b.auth, kAuthSetConfig, r);
            const AUTH_PASSWD_INFO shown = masked(pw);
            c.line.bytes("in", config, sizeof *config).bytes("password", &shown, sizeof shown);
            return static_cast<uint32_t>(rc);
        });
}

uint32_t KVD_DeleteAuthConfig(uint32_t board, uint64_t local_entity, uint64_t remote_entity,
                              AUTH_PASSWD_INFO *password)
{
    const Wwn local = wwn_of(local_entity), remote = wwn_of(remote_entity);
    return board_call<uint32_t>(
        "KVD_DeleteAuthConfig", board, kErrnoFamily, password,
        [&](TraceLine &t) {
            t.arg("board", board).arg_wwn("local", local.data()).arg_wwn("remote", remote.data());
            t.arg_ptr("password", password);
        },
        [&](Call &c, Board &b) -> uint32_t {
            AUTH_PASSWD_INFO pw;
            std::memcpy(&pw, password, sizeof pw);
            AuthRequest r{local, remote, {}, span_of(pw)};
            const int32_t rc = engine_request(c, *b.auth, kAuthDeleteConfig, r);
            const AUTH_PASSWD_INFO shown = masked(pw);
            c.line.bytes("password", &shown, sizeof shown);
            return static_cast<uint32_t>(rc);
        });
}

uint32_t KVD_GetAuthPassword(uint32_t board, ZRT_AUTH_PASSWD *password)
{
    return board_call<uint32_t>(
        "KVD_GetAuthPassword", board, kErrnoFamily, password,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("password", password); },
        [&](Call &c, Board &b) -> uint32_t {
            c.out(password, sizeof *password);
            ZRT_AUTH_PASSWD copy;
            std::memcpy(&copy, password, sizeof copy);
            const ZRT_AUTH_PASSWD shown = masked(copy);
            AuthRequest r{wwn_of(copy.local_entity), wwn_of(copy.remote_entity), span_of(copy), {}};
            const int32_t rc = engine_request(c, *b.auth, kAuthGetPassword, r);
            c.line.bytes("in", &shown, sizeof shown);
            if (rc == 0) {
                std::memcpy(password, &copy, sizeof copy);
                const ZRT_AUTH_PASSWD out = masked(copy);
                c.line.bytes("out", &out, sizeof out);
            }
            return static_cast<uint32_t>(rc);
        });
}

uint32_t KVD_SetAuthPassword(uint32_t board, ZRT_AUTH_PASSWD *password)
{
    return board_call<uint32_t>(
        "KVD_SetAuthPassword", board, kErrnoFamily, password,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("password", password); },
        [&](Call &c, Board &b) -> uint32_t {
            ZRT_AUTH_PASSWD copy;
            std::memcpy(&copy, password, sizeof copy);
            AuthRequest r{wwn_of(copy.local_entity), wwn_of(copy.remote_entity), span_of(copy), {}};
            const int32_t rc = engine_request(c, *b.auth, kAuthSetPassword, r);
            const ZRT_AUTH_PASSWD shown = masked(copy);
            c.line.bytes("in", &shown, sizeof shown);
            return static_cast<uint32_t>(rc);
        });
}

uint32_t KVD_InitiateAuthentication(uint32_t board, uint64_t local_entity, uint64_t remote_entity)
{
    const Wwn local = wwn_of(local_entity), remote = wwn_of(remote_entity);
    return board_call<uint32_t>(
        "KVD_InitiateAuthentication", board, kErrnoFamily,
        [&](TraceLine &t) {
            t.arg("board", board).arg_wwn("local", local.data()).arg_wwn("remote", remote.data());
        },
        [&](Call &c, Board &b) -> uint32_t {
            AuthRequest r{local, remote, {}, {}};
            return static_cast<uint32_t>(engine_request(c, *b.auth, kAuthInitiate, r));
        });
}

uint32_t KVD_GetAuthStatus(uint32_t board, KVD_AuthStatus *status, HBA_WWN *remote)
{
    return board_call<uint32_t>(
        "KVD_GetAuthStatus", board, kErrnoFamily, status,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("status", status).arg_ptr("remote", remote); },
        [&](Call &c, Board &b) -> uint32_t {
            if (!remote)
                return EFAULT;
            c.out(status, sizeof *status);
            KVD_AuthStatus copy;
            std::memcpy(&copy, status, sizeof copy);
            AuthRequest r{{}, {}, span_of(copy), {}};
            std::memcpy(r.local.data(), copy.local_entity.wwn, 8);
            std::memcpy(r.remote.data(), remote->wwn, 8);
            const int32_t rc = engine_request(c, *b.auth, kAuthGetStatus, r);
            c.line.bytes("in", status, sizeof *status);
            if (rc == 0) {
                std::memcpy(status, &copy, sizeof copy);
                c.line.bytes("out", status, sizeof *status);
            }
            return static_cast<uint32_t>(rc);
        });
}

// The room is what the caller announces in numberOfEntries: the entries
// written never exceed it.
uint32_t KVD_GetAuthConfigList(uint32_t board, uint64_t local_entity, KVD_AuthConfigList *list)
{
    const Wwn local = wwn_of(local_entity);
    return board_call<uint32_t>(
        "KVD_GetAuthConfigList", board, kErrnoFamily, list,
        [&](TraceLine &t) { t.arg("board", board).arg_wwn("local", local.data()).arg_ptr("list", list); },
        [&](Call &c, Board &b) -> uint32_t {
            uint32_t room;
            std::memcpy(&room, list, 4);
            c.line.arg("room", room);
            if (room > kListMax)
                room = kListMax;
            c.out(list, KVD_AUTHLIST_SIZE(room));
            std::vector<uint8_t> copy(KVD_AUTHLIST_SIZE(room));
            std::memcpy(copy.data(), &room, 4);
            AuthRequest r{local, {}, copy, {}};
            const int32_t rc = engine_request(c, *b.auth, kAuthConfigList, r);
            if (rc == 0) {
                uint32_t n;
                std::memcpy(&n, copy.data(), 4);
                std::memcpy(list, copy.data(), KVD_AUTHLIST_SIZE(n));
                c.line.bytes("out", list, KVD_AUTHLIST_SIZE(n));
            }
            return static_cast<uint32_t>(rc);
        });
}
