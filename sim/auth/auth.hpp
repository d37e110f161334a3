// FC-SP authentication of a board's port: the configurations of local/
// remote pairs with their passwords, and DH-CHAP exchanges with the remote
// entities the fleet describes.
//
// Secrets live only here, in memory: nothing writes them anywhere, and the
// replies carry password types, never passwords.
//
// Requests go through one table of rows (the eight library operations).
// Failures are errno values: ENOENT no configuration for the pair, EACCES a
// password that does not match (or an authentication that failed: its
// reason is in the status), EINVAL a record the engine does not take,
// ENOSPC no room for another configuration.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <span>
#include <utility>
#include <vector>

#include "core/engine.hpp"
#include "core/fleet.hpp"
#include "kvd_auth.h"
#include "mailbox/firmware.hpp"

namespace kvdsim
{

// Requests, by row code.
enum AuthCode : uint32_t {
    kAuthGetConfig = 1,
    kAuthSetConfig = 2,
    kAuthDeleteConfig = 3,
    kAuthGetPassword = 4,
    kAuthSetPassword = 5,
    kAuthInitiate = 6,
    kAuthGetStatus = 7,
    kAuthConfigList = 8,
};

// One request: the entities it names and the records it carries (the
// engine reads and writes them in place; their sizes are checked against
// the row's minimum before the handler runs).
struct AuthRequest {
    Wwn local{};
    Wwn remote{};
    std::span<uint8_t> record;   // the request's main record
    std::span<uint8_t> password; // an AUTH_PASSWD_INFO, when the request carries one
};

// A stored password: its type and bytes (type 3: none).
struct Secret {
    uint16_t type = KVD_PASSWD_IGNORE;
    std::vector<uint8_t> bytes;
    bool none() const
    {
        return type == KVD_PASSWD_IGNORE;
    }
};

// The most configurations one port keeps.
constexpr size_t kAuthMaxConfigs = 64;

class AuthEngine;
using AuthRow = EngineRow<int32_t (AuthEngine::*)(AuthRequest &)>;

class AuthEngine
{
  public:
    // `now_ms` is the engine's clock in milliseconds (tests step it).
    AuthEngine(const BoardConf &cfg, std::function<uint64_t()> now_ms = {});

    // Runs request `code`. A fault rule "auth:CODE" or "auth:NAME" answers
    // instead, with its result.
    int32_t run(uint32_t code, AuthRequest &req, CommandNote *note = nullptr);

    static std::span<const RowInfo> commands();
    static const AuthRow *command(uint32_t code);

    // The configuration and outcome of one pair.
    struct Pair {
        ZRT_FCSP_CONFIG config{};
        Secret local;  // the port's secret toward the remote entity
        Secret remote; // the secret the remote entity answers with
        uint8_t state = KVD_AUTH_STATE_NONE;
        uint8_t reason = KVD_AUTH_FAIL_NONE;
        uint8_t type = 0, group = 0, hash = 0;
        bool local_auth = false, remote_auth = false;
        uint64_t last_ms = 0;
    };

  private:
    friend struct AuthCommands;
    int32_t get_config(AuthRequest &r);
    int32_t set_config(AuthRequest &r);
    int32_t delete_config(AuthRequest &r);
    int32_t get_password(AuthRequest &r);
    int32_t set_password(AuthRequest &r);
    int32_t initiate(AuthRequest &r);
    int32_t get_status(AuthRequest &r);
    int32_t config_list(AuthRequest &r);

    Pair *find(const Wwn &local, const Wwn &remote);
    bool local_port(const Wwn &local) const;
    // Runs one DH-CHAP exchange for the pair and records its outcome.
    void authenticate(const Wwn &remote, Pair &p);

    BoardConf cfg_;
    std::function<uint64_t()> now_ms_;
    std::mt19937_64 rng_;
    std::map<std::pair<Wwn, Wwn>, Pair> pairs_;
};

// The DH-CHAP arithmetic, exposed for tests.
namespace dhchap
{
// The prime of a DH group (1..5; 0 for the null group) with generator 2.
uint64_t group_prime(uint8_t group);
uint64_t pow_mod(uint64_t base, uint64_t exp, uint64_t mod);
// The hash of the configuration's numbering (MD5 1, SHA-1 2) over `data`.
std::vector<uint8_t> hash(uint8_t id, std::span<const uint8_t> data);
// The response to a challenge: H(id || secret || challenge'), where
// challenge' is H(challenge || Z) with a DH group and the challenge as is
// with the null group.
std::vector<uint8_t> response(uint8_t hash_id, uint8_t id, std::span<const uint8_t> secret,
                              std::span<const uint8_t> challenge, uint8_t group, uint64_t z);
} // namespace dhchap

} // namespace kvdsim
