// The fleet's description of the remote entities that take part in FC-SP
// authentication with a board: each one's own DH-CHAP secret, the secret it
// expects from the board's port, and the hash functions and DH groups it
// accepts. Read from the board's "auth" object.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "kvd_auth.h"

namespace kvdsim
{

class Section;
struct BoardConf;

struct AuthEntityConf {
    std::array<uint8_t, 8> wwpn{};
    std::string secret;      // answers the port's challenge (bidirectional)
    std::string peer_secret; // what the port must prove it knows
    std::vector<uint8_t> hashes{KVD_AUTH_HASH_MD5, KVD_AUTH_HASH_SHA1};
    std::vector<uint8_t> dh_groups{0, 1, 2, 3, 4, 5};
};

struct AuthConf {
    std::vector<AuthEntityConf> entities;
};

// Reads the board's "auth" object into conf.auth. Runs after the remote
// ports are read: every entity must be one of them.
void read_auth_section(Section &board, BoardConf &conf);

} // namespace kvdsim
