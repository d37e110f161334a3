// NPIV virtual ports of one board, as the driver keeps them: created and
// deleted on request, logged into the fabric behind the board's port with
// an FC id of their own (FDISC), logged out while the link is down and back
// in when it returns, each with its own view of the nodes. The fabric tells
// the other ports of every virtual port that comes or goes (RSCN).
//
// The readiness bits follow from the board's state: the firmware's NPIV
// support and vport limit, the driver's NPIV-enable parameter, the link,
// the topology and what the fabric grants.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/fleet.hpp"
#include "kvd_nodes.h"
#include "kvd_vport.h"
#include "npiv/npiv_conf.hpp"

namespace kvdsim
{

class Section;
class Fabric;
class Nodes;
class BoardEvents;

// Reads the board's "npiv" object.
void read_npiv_section(Section &board, BoardConf &conf);

struct Vport {
    Wwn wwpn{};
    Wwn wwnn{};
    std::string name;
    uint32_t options = 0;
    uint32_t host = 0; // SCSI host number
    uint32_t did = 0;  // 0 until logged in
    uint8_t state = KVD_VPSTATE_UNKNOWN;
    bool restrict_login = false;
    bool is_static = false; // from the driver's configuration, not made at run time
};

class Npiv
{
  public:
    // The board's engines the ports use; `events` may be null.
    Npiv(const BoardConf &cfg, Fabric &fabric, const Nodes &nodes, BoardEvents *events);

    // The driver's NPIV-enable parameter.
    void set_driver_npiv_enable(bool on)
    {
        driver_enable_ = on;
    }
    bool driver_npiv_enable() const
    {
        return driver_enable_;
    }

    // KVD_NPIV_* bits; `link_up`: the board is ready and its link up.
    uint32_t checklist(bool link_up) const;

    // Creates a port; a zero name is chosen by the driver. Returns 0 or an
    // errno value: EOPNOTSUPP (no NPIV on the board or in the driver),
    // ENOSPC (at the vport limit), EINVAL (not a valid name), EEXIST (a
    // name some port already has).
    uint32_t create(Wwn wwpn, Wwn wwnn, const std::string &name, uint32_t options, uint32_t host,
                    bool link_up, Vport *made);
    // A port of the driver's configuration, made as the driver starts:
    // as create() with the names given, and flagged static.
    uint32_t create_static(const StaticVportConf &conf, uint32_t host, bool link_up);
    // 0, or ENOENT for no such port.
    uint32_t remove(const Wwn &wwpn);

    const Vport *find(const Wwn &wwpn) const;
    const std::vector<Vport> &vports() const
    {
        return vports_;
    }
    uint32_t max_vports() const;

    // The link came up or went down: the ports log in again or out.
    void link_changed(bool up);

    // What the board's own port sees (GetNodeInfo): its nodes and the
    // virtual ports it logged into.
    std::vector<NODEINFO> seen_by_board(bool link_up) const;
    // What one virtual port sees: nothing until it is logged in.
    std::vector<NODEINFO> seen_by(const Vport &v) const;
    // Logins (RPIs) the port and its virtual ports hold.
    uint32_t rpis_in_use(bool link_up) const;
    // Those the virtual ports hold.
    uint32_t vport_rpis() const;

    // The names the driver chooses for virtual port number `serial` of
    // board `board`: NAA 2 under the driver's own prefix.
    static Wwn chosen_wwpn(uint32_t board, uint32_t serial);
    static Wwn chosen_wwnn(uint32_t board, uint32_t serial);

  private:
    bool hba_support() const;
    bool name_taken(const Wwn &wwn) const;
    uint32_t next_serial(bool port_name, bool node_name);
    void login(Vport &v, bool link_up);
    void logout(Vport &v, bool tell);
    void tell_others(const Vport *about, uint32_t did);

    const BoardConf &cfg_;
    Fabric &fabric_;
    const Nodes &nodes_;
    BoardEvents *events_;
    bool driver_enable_;
    uint32_t serial_ = 0;       // last name serial given out
    std::vector<Vport> vports_; // in creation order
};

} // namespace kvdsim
