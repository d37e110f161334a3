// The FC-SP authentication engine: the hashes and the DH arithmetic of
// DH-CHAP, configurations and their password checks, password changes,
// the outcome of an exchange, status times and
// re-authentication, the configuration list, and the fleet's "auth" section.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "auth/auth.hpp"
#include "auth/hash.hpp"
#include "core/fleet.hpp"
#include "sim_test.hpp"

using namespace kvdsim;
using namespace kvdsim::test;

namespace
{

const Wwn kLocal{0x10, 0x00, 0x06, 0x4b, 0x51, 0x00, 0x00, 0x07};
const Wwn kRemote{0x21, 0x00, 0x06, 0x4b, 0x51, 0x0d, 0x00, 0x01};

std::string hex(std::span<const uint8_t> d)
{
    std::string s;
    for (uint8_t b : d) {
        s += "0123456789abcdef"[b >> 4];
        s += "0123456789abcdef"[b & 15];
    }
    return s;
}

std::span<const uint8_t> text(const char *s)
{
    return {reinterpret_cast<const uint8_t *>(s), strlen(s)};
}

BoardConf board()
{
    BoardConf b;
    b.wwpn = kLocal;
    RemotePort p;
    p.wwpn = kRemote;
    p.did = 0x010100;
    b.remote_ports.push_back(p);
    AuthEntityConf e;
    e.wwpn = kRemote;
    e.secret = "target-secret";
    e.peer_secret = "port-secret";
    b.auth.entities.push_back(e);
    return b;
}

AUTH_PASSWD_INFO password(const char *s, uint16_t type = KVD_PASSWD_ASCII)
{
    AUTH_PASSWD_INFO p{};
    p.type = type;
    p.length = static_cast<uint16_t>(strlen(s));
    memcpy(p.password, s, p.length);
    return p;
}

ZRT_FCSP_CONFIG config()
{
    ZRT_FCSP_CONFIG c{};
    c.authentication_timeout = 45;
    c.authentication_mode = 1;
    c.authentication_type_priority[0] = 1;
    c.hash_priority[0] = 1;
    c.hash_priority[1] = 2;
    const uint8_t groups[8] = {5, 4, 3, 2, 1, 0, 0, 0};
    memcpy(c.dh_group_priority, groups, 8);
    return c;
}

struct Fixture {
    uint64_t now = 1000000;
    AuthEngine e;
    explicit Fixture(const BoardConf &b = board()) : e(b, [this] { return now; })
    {
    }

    int32_t set(ZRT_FCSP_CONFIG c, AUTH_PASSWD_INFO pw, const Wwn &remote = kRemote)
    {
        AuthRequest r{kLocal,
                      remote,
                      {reinterpret_cast<uint8_t *>(&c), sizeof c},
                      {reinterpret_cast<uint8_t *>(&pw), sizeof pw}};
        return e.run(kAuthSetConfig, r);
    }
    int32_t del(AUTH_PASSWD_INFO pw)
    {
        AuthRequest r{kLocal, kRemote, {}, {reinterpret_cast<uint8_t *>(&pw), sizeof pw}};
        return e.run(kAuthDeleteConfig, r);
    }
    int32_t passwd(int flag, AUTH_PASSWD_INFO cur, AUTH_PASSWD_INFO next)
    {
        ZRT_AUTH_PASSWD p{};
        (flag ? p.current_remote_passwd : p.current_local_passwd) = cur;
        (flag ? p.new_remote_passwd : p.new_local_passwd) = next;
        (flag ? p.current_local_passwd : p.current_remote_passwd).type = KVD_PASSWD_IGNORE;
        (flag ? p.new_local_passwd : p.new_remote_passwd).type = KVD_PASSWD_IGNORE;
        AuthRequest r{kLocal, kRemote, {reinterpret_cast<uint8_t *>(&p), sizeof p}, {}};
        return e.run(kAuthSetPassword, r);
    }
    int32_t init()
    {
        AuthRequest r{kLocal, kRemote, {}, {}};
        return e.run(kAuthInitiate, r);
    }
    KVD_AuthStatus status()
    {
        KVD_AuthStatus s{};
        AuthRequest r{kLocal, kRemote, {reinterpret_cast<uint8_t *>(&s), sizeof s}, {}};
        EXPECT_EQ(e.run(kAuthGetStatus, r), 0);
        return s;
    }
};

} // namespace

TEST(AuthHash, KnownAnswers)
{
    EXPECT_EQ(hex(md5(text(""))), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(hex(md5(text("abc"))), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(
        hex(md5(text("12345678901234567890123456789012345678901234567890123456789012345678901234567890"))),
        "57edf4a22be3c955ac49da2e2107b67a");
    EXPECT_EQ(hex(sha1(text("abc"))), "a9993e364706816aba3e25717850c26c9cd0d89d");
    EXPECT_EQ(hex(sha1(text("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"))),
              "84983e441c3bd26ebaae4aa1f95129e5e54670f1");
    // 56 bytes: the length no longer fits the block, padding spills into a second.
    EXPECT_EQ(hex(sha1(std::vector<uint8_t>(56, 'a'))), "c2db330f6083854c99d4b5bfb6e8f29f201be699");
    EXPECT_EQ(hex(md5(std::vector<uint8_t>(56, 'a'))), "3b0c8ac703f828b04c6c197006d17218");
}

TEST(AuthDh, BothSidesAgreeOnZ)
{
    for (uint8_t g = 1; g <= KVD_AUTH_DH_GROUP_MAX; ++g) {
        const uint64_t p = dhchap::group_prime(g);
        ASSERT_NE(p, 0u);
        const uint64_t x = 0x1234567 + g, y = 0x7654321 * g;
        const uint64_t gx = dhchap::pow_mod(2, x, p), gy = dhchap::pow_mod(2, y, p);
        EXPECT_EQ(dhchap::pow_mod(gy, x, p), dhchap::pow_mod(gx, y, p)) << int(g);
        // 2 lies in the subgroup of order q = (p - 1) / 2.
        EXPECT_EQ(dhchap::pow_mod(2, (p - 1) / 2, p), 1u) << int(g);
    }
    EXPECT_EQ(dhchap::group_prime(0), 0u);
    EXPECT_EQ(dhchap::group_prime(6), 0u);
    const std::vector<uint8_t> c(16, 7);
    EXPECT_EQ(dhchap::response(1, 9, text("s"), c, 2, 42), dhchap::response(1, 9, text("s"), c, 2, 42));
    EXPECT_NE(dhchap::response(1, 9, text("s"), c, 2, 42), dhchap::response(1, 9, text("s"), c, 2, 43));
    EXPECT_NE(dhchap::response(1, 9, text("s"), c, 0, 0), dhchap::response(1, 9, text("t"), c, 0, 0));
}

TEST(AuthEngine, ConfigurationsAndTheirPasswords)
{
    Fixture f;
    ZRT_FCSP_CONFIG got{};
    AuthRequest get{kLocal, kRemote, {reinterpret_cast<uint8_t *>(&got), sizeof got}, {}};
    EXPECT_EQ(f.set(config(), password("port-secret")), 0);
    // Changing it needs the local password.
    ZRT_FCSP_CONFIG c = config();
    c.authentication_timeout = 60;
    EXPECT_EQ(f.set(c, password("other")), EACCES);
    EXPECT_EQ(f.set(c, password("port-secret")), 0);
    EXPECT_EQ(f.e.run(kAuthGetConfig, get), 0);
    EXPECT_EQ(got.authentication_timeout, 60);
    // Values the engine does not take.
    c.hash_priority[0] = 3;
    EXPECT_EQ(f.set(c, password("port-secret")), EINVAL);
    c = config();
    c.dh_group_priority[7] = 6;
    EXPECT_EQ(f.set(c, password("port-secret")), EINVAL);
    // A local entity that is not the board's port.
    AUTH_PASSWD_INFO pw = password("x");
    ZRT_FCSP_CONFIG cc = config();
    AuthRequest other{kRemote,
                      kLocal,
                      {reinterpret_cast<uint8_t *>(&cc), sizeof cc},
                      {reinterpret_cast<uint8_t *>(&pw), sizeof pw}};
    EXPECT_EQ(f.e.run(kAuthSetConfig, other), EINVAL);
}

TEST(AuthEngine, PasswordLengthAndTypeLimits)
{
    Fixture f;
    AUTH_PASSWD_INFO full{};
    full.type = KVD_PASSWD_BINARY;
    full.length = KVD_PASSWD_MAX;
    memset(full.password, 0xa5, sizeof full.password);
    EXPECT_EQ(f.set(config(), full), 0);
    AUTH_PASSWD_INFO over = full;
    over.length = KVD_PASSWD_MAX + 1;
    EXPECT_EQ(f.del(over), EACCES);
    EXPECT_EQ(f.set(config(), over, {1}), EINVAL);
    AUTH_PASSWD_INFO badtype = password("x", 4);
    EXPECT_EQ(f.set(config(), badtype, {1}), EINVAL);
    // A record shorter than its row's minimum is refused before any handler.
    AuthRequest shortreq{kLocal, kRemote, {reinterpret_cast<uint8_t *>(&full), 39}, {}};
    EXPECT_EQ(f.e.run(kAuthGetConfig, shortreq), EINVAL);
    EXPECT_EQ(f.e.run(99, shortreq), ENOTTY);
}

TEST(AuthEngine, ConfigurationLimit)
{
    Fixture f;
    for (size_t i = 0; i < kAuthMaxConfigs; ++i)
        ASSERT_EQ(f.set(config(), password("p"), Wwn{0x21, 0, 0, 0, 0, 0, 0, static_cast<uint8_t>(i)}), 0);
    EXPECT_EQ(f.set(config(), password("p"), Wwn{0x22}), ENOSPC);
    // A pair already there may still change.
    EXPECT_EQ(f.set(config(), password("p"), Wwn{0x21}), 0);
}

TEST(AuthEngine, PasswordChanges)
{
    Fixture f;
    ASSERT_EQ(f.set(config(), password("port-secret")), 0);
    // Remote side: none yet, so the current one must be given as none.
    EXPECT_EQ(f.passwd(1, password("x"), password("target-secret")), EACCES);
    // Local side: the current one must match, type included.
    EXPECT_EQ(f.passwd(0, password("port-secret", KVD_PASSWD_BINARY), password("z")), EACCES);
    EXPECT_EQ(f.passwd(0, password("port-secret"), password("new-secret")), 0);
}

TEST(AuthEngine, ExchangeOutcomes)
{
    Fixture f;
    EXPECT_EQ(f.init(), ENOENT);
    ASSERT_EQ(f.set(config(), password("wrong")), 0);
    EXPECT_EQ(f.init(), EACCES);
    KVD_AuthStatus s = f.status();
    EXPECT_EQ(s.auth_state, KVD_AUTH_STATE_FAILED);
    EXPECT_EQ(s.auth_failReason, KVD_AUTH_FAIL_SECRET);

    ASSERT_EQ(f.passwd(0, password("wrong"), password("port-secret")), 0);
    EXPECT_EQ(f.init(), 0);
    EXPECT_EQ(f.status().remoteAuth, 0);

    // Bidirectional: the remote entity must prove its secret too.
    ZRT_FCSP_CONFIG c = config();
    c.bidirectional = 1;
    ASSERT_EQ(f.set(c, password("port-secret")), 0);
    EXPECT_EQ(f.init(), EACCES);
    EXPECT_EQ(f.status().auth_failReason, KVD_AUTH_FAIL_NO_SECRET);
    AUTH_PASSWD_INFO none{};
    none.type = KVD_PASSWD_IGNORE;
    ASSERT_EQ(f.passwd(1, none, password("not-it")), 0);
    EXPECT_EQ(f.init(), EACCES);
    EXPECT_EQ(f.status().auth_failReason, KVD_AUTH_FAIL_SECRET);
    ASSERT_EQ(f.passwd(1, password("not-it"), password("target-secret")), 0);
    EXPECT_EQ(f.init(), 0);
    EXPECT_EQ(f.status().remoteAuth, 1);

    // No authentication type both sides use.
    c.authentication_type_priority[0] = 0;
    c.authentication_type_priority[3] = 0;
    c.authentication_type_priority[1] = 1;
    ASSERT_EQ(f.set(c, password("port-secret")), 0);
    EXPECT_EQ(f.init(), 0);
    c = config();
    memset(c.authentication_type_priority, 0, 4);
    EXPECT_EQ(f.set(c, password("port-secret")), EINVAL);
}

TEST(AuthEngine, StatusTimesAndReauthentication)
{
    Fixture f;
    ZRT_FCSP_CONFIG c = config();
    c.reauthenticate_time_interval = 100;
    ASSERT_EQ(f.set(c, password("port-secret")), 0);
    EXPECT_EQ(f.status().auth_state, KVD_AUTH_STATE_NONE);
    EXPECT_EQ(f.status().time_from_last_auth, 0u);
    ASSERT_EQ(f.init(), 0);
    f.now += 30999;
    KVD_AuthStatus s = f.status();
    EXPECT_EQ(s.time_from_last_auth, 30u);
    EXPECT_EQ(s.time_until_next_auth, 69u);
    // Just before the interval: no new exchange; at it: a new one.
    f.now += 69000;
    EXPECT_EQ(f.status().time_from_last_auth, 99u);
    f.now += 1;
    s = f.status();
    EXPECT_EQ(s.time_from_last_auth, 0u);
    EXPECT_EQ(s.time_until_next_auth, 100u);
    // A secret changed since: the next re-authentication fails.
    ASSERT_EQ(f.passwd(0, password("port-secret"), password("changed")), 0);
    f.now += 100000;
    s = f.status();
    EXPECT_EQ(s.auth_state, KVD_AUTH_STATE_FAILED);
    EXPECT_EQ(s.time_until_next_auth, 0u);
}

TEST(AuthEngine, ListStaysInsideTheRoom)
{
    Fixture f;
    for (uint8_t i = 0; i < 4; ++i)
        ASSERT_EQ(f.set(config(), password("p"), Wwn{0x21, 0, 0, 0, 0, 0, 0, i}), 0);
    std::vector<uint8_t> buf(4 + 8 * 3 + 8, 0xee);
    uint32_t room = 100; // more than the record holds: the record wins
    memcpy(buf.data(), &room, 4);
    AuthRequest r{kLocal, {}, {buf.data(), 4 + 8 * 3}, {}};
    ASSERT_EQ(f.e.run(kAuthConfigList, r), 0);
    uint32_t n;
    memcpy(&n, buf.data(), 4);
    EXPECT_EQ(n, 3u);
    EXPECT_EQ(buf[4 + 7], 0);
    EXPECT_EQ(buf[4 + 16 + 7], 2);
    EXPECT_EQ(buf[4 + 24], 0xee); // untouched past the record
    room = 2;
    memcpy(buf.data(), &room, 4);
    ASSERT_EQ(f.e.run(kAuthConfigList, r), 0);
    memcpy(&n, buf.data(), 4);
    EXPECT_EQ(n, 2u);
}

TEST(AuthFleet, Section)
{
    const std::string port = R"("remote_ports": [{"wwpn": "21:00:00:00:00:00:00:01", "did": "0x010100"}], )";
    auto entity = [](const std::string &fields) {
        return R"("auth": {"entities": [{"wwpn": "21:00:00:00:00:00:00:01")" + fields + "}]}";
    };
    const Fleet f =
        fleet_ok(board_doc(port + entity(R"(, "peer_secret": "s", "hashes": [2], "dh_groups": [0, 5])")));
    ASSERT_EQ(f.boards.at(0).auth.entities.size(), 1u);
    EXPECT_EQ(f.boards[0].auth.entities[0].hashes, std::vector<uint8_t>{2});
    fleet_fault(board_doc(entity(""))); // no such remote port
    fleet_fault(board_doc(port + entity(R"(, "hashes": [3])")));
    fleet_fault(board_doc(port + entity(R"(, "dh_groups": [6])")));
    fleet_fault(board_doc(R"("auth": {"colour": 1})"));
}
