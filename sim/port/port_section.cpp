// The board's "port" object of a fleet file.
#include "port/port_spec.hpp"

#include "core/section.hpp"
#include "kvd_attr.h"

namespace kvdsim
{

namespace
{

uint16_t to_vlan(const Json &v, const std::string &place)
{
    const uint64_t id = to_unsigned(v, place, kMaxVlanId);
    if (id == 0)
        fail(place, "VLAN 0 is not a VLAN (1..4094)");
    return static_cast<uint16_t>(id);
}

} // namespace

void read_port_section(Section &board, BoardSpec &spec)
{
    const Json *j = board.take("port");
    if (!j)
        return;
    Section s(*j, board.at("port"));
    PortSpec &p = spec.port;
    const bool fcoe = spec.protocol == Protocol::fcoe;
    for (const char *key : {"fc_map", "vlan", "fcf_fc_map", "fcf_vlans"})
        if (!fcoe && s.take(key))
            fail(s.at(key), "FCoE parameters on a Fibre Channel board");
    s.number("fc_map", p.fc_map, 0xFFFFFF);
    if (const Json *v = s.take("vlan")) {
        p.vlan_valid = true;
        p.vlan_id = to_vlan(*v, s.at("vlan"));
    }
    s.number("fcf_fc_map", p.fcf_fc_map, 0xFFFFFF);
    if (const Json *v = s.take("fcf_vlans")) {
        const std::string place = s.at("fcf_vlans");
        if (!v->is_array())
            fail(place, std::string("expected an array, found ") + type_name(*v));
        p.fcf_vlans.clear();
        for (size_t i = 0; i < v->size(); ++i)
            p.fcf_vlans.push_back(to_vlan((*v)[i], place + "[" + std::to_string(i) + "]"));
    }
    s.number("fcp_priority", p.fcp_priority);
    if (const Json *v = s.take("persist_link_down")) {
        if (!(spec.features & KVD_FTR_PERSIST_LINK))
            fail(s.at("persist_link_down"),
                 "link-down persistence on a board without the persistLinkEnable feature");
        p.persist_link_down = static_cast<uint16_t>(to_unsigned(*v, s.at("persist_link_down"), 1));
    }
    s.finish();
}

} // namespace kvdsim
