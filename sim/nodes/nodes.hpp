// The driver's view of what the board's port reaches: the nodes it logged
// into, the adapter's VPD, its persistent bindings and the FCP target
// mapping (one entry per logical unit of every mapped target, found the way
// a driver finds them: REPORT LUNS, then the unit's serial number and
// device identification pages).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/fleet.hpp"
#include "kvd_nodes.h"
#include "nodes/nodes_conf.hpp"

namespace kvdsim
{

class Section;
class ScsiTargets;

// Reads the board's "nodes" object.
void read_nodes_section(Section &board, BoardConf &conf);

class Nodes
{
  public:
    explicit Nodes(const BoardConf &cfg);

    // The nodes logged into while the link is up: on a fabric its F_Port
    // and name server first, then the remote ports by ascending address.
    std::vector<NODEINFO> nodes(bool link_up) const;
    // 0, or KVD_VPD_NO_EVPD.
    uint32_t vpd(VPD &out) const;
    const std::vector<HBA_BIND_ENTRY> &bindings() const
    {
        return bindings_;
    }
    // The mapping entries of every mapped FCP target, in target-id order
    // and then LUN order; none while the link is down.
    std::vector<HBA_FCPSCSIENTRYV2> mapping(ScsiTargets &scsi, const std::string &driver, bool link_up) const;

  private:
    const BoardConf &cfg_;
    std::vector<HBA_BIND_ENTRY> bindings_;
};

} // namespace kvdsim
