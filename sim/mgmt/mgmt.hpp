// The adapter's RNID management information, RNID answers from the ports it
// sees, and the count of adapter events the library holds for the board.
#pragma once

#include <cstdint>

#include "core/fleet.hpp"
#include "kvd_mgmt.h"

namespace kvdsim
{

// What the engine needs of the link as the firmware has it now.
struct MgmtLinkView {
    bool up = false;
    uint32_t did = 0;
    bool loop = false;
    uint32_t event_tag = 0;
};

class MgmtEngine
{
  public:
    // FC-LS associated (unit) types.
    static constexpr uint32_t kUnitHost = 0x0a;
    static constexpr uint32_t kUnitStorage = 0x09;
    static constexpr uint32_t kMaxEvents = 64; // the library's event queue

    MgmtEngine(const BoardConf &cfg, uint32_t event_tag);

    // The record the adapter reports: its own names and port identifier
    // with the management fields last set.
    HBA_MGMTINFO info(const MgmtLinkView &link) const;
    // Takes the settable fields (unit type, IP version and address, UDP
    // port, discovery flags); the names and port identifier stay the
    // adapter's. HBA_STATUS_ERROR_ARG for an IP version other than 0
    // (none), 1 (IPv4) or 2 (IPv6).
    HBA_STATUS set_info(const HBA_MGMTINFO &in);

    // The accept a remote port sends to RNID. `type` KVD_RNID_NODE matches
    // node names, KVD_RNID_PORT port names. HBA_STATUS_ERROR_ILLEGAL_WWN
    // for a name nobody answers to, HBA_STATUS_ERROR_UNAVAILABLE with the
    // link down, HBA_STATUS_ERROR_ARG for an unknown type.
    HBA_STATUS rnid(const MgmtLinkView &link, const HBA_WWN &wwn, uint32_t type, KVD_RNID_ACC &out) const;

    // Events (link attentions) the library has queued since the board was
    // found, up to its queue's depth.
    uint32_t events(const MgmtLinkView &link) const;

  private:
    const BoardConf &cfg_;
    uint32_t first_tag_;
    uint32_t unittype_ = kUnitHost;
    uint16_t ip_version_ = 0;
    uint16_t udp_port_ = 0;
    uint8_t ip_address_[16] = {};
    uint16_t discovery_flags_ = 0;
};

} // namespace kvdsim
