// The board's "port" object of a fleet file.
#include "port/port_conf.hpp"

#include <algorithm>

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

std::vector<uint16_t> to_vlans(const Json &v, const std::string &place)
{
    if (!v.is_array())
        fail(place, std::string("expected an array, found ") + type_name(v));
    std::vector<uint16_t> out;
    for (size_t i = 0; i < v.size(); ++i)
        out.push_back(to_vlan(v[i], place + "[" + std::to_string(i) + "]"));
    return out;
}

void read_fcfs(const Json &v, const std::string &place, const BoardConf &conf, PortConf &p)
{
    if (!v.is_array())
        fail(place, std::string("expected an array, found ") + type_name(v));
    if (v.empty())
        fail(place, "no FCF (an empty fcf_vlans leaves the wire without FCFs)");
    for (size_t i = 0; i < v.size(); ++i) {
        Section s(v[i], place + "[" + std::to_string(i) + "]");
        FcfConf f;
        f.fabric_name = conf.fabric_name;
        f.fc_map = p.fcf_fc_map;
        f.vlans = p.fcf_vlans;
        const Json &mac = s.need("mac");
        std::array<uint8_t, 8> wwn{};
        // A MAC is written as six colon-separated hex pairs.
        const std::string text = to_text(mac, s.at("mac"), 17);
        if (!parse_wwn("00:00:" + text, wwn) || text.size() != 17)
            fail(s.at("mac"),
                 "expected a MAC address (six colon-separated hex pairs), found " + quote_text(text));
        std::copy(wwn.begin() + 2, wwn.end(), f.mac.begin());
        s.wwn("switch_name", f.switch_name);
        s.wwn("fabric_name", f.fabric_name);
        s.number("priority", f.priority);
        s.number("fc_map", f.fc_map, 0xFFFFFF);
        if (const Json *vl = s.take("vlans"))
            f.vlans = to_vlans(*vl, s.at("vlans"));
        s.finish();
        p.fcfs.push_back(f);
    }
}

} // namespace

void read_port_section(Section &board, BoardConf &conf)
{
    const bool fcoe = conf.protocol == Protocol::fcoe;
    const Json *j = board.take("port");
    if (!j)
        return;
    Section s(*j, board.at("port"));
    PortConf &p = conf.port;
    for (const char *key : {"fc_map", "vlan", "fcf_fc_map", "fcf_vlans", "fcfs"})
        if (!fcoe && s.take(key))
            fail(s.at(key), "FCoE parameters on a Fibre Channel board");
    s.number("fc_map", p.fc_map, 0xFFFFFF);
    if (const Json *v = s.take("vlan")) {
        p.vlan_valid = true;
        p.vlan_id = to_vlan(*v, s.at("vlan"));
    }
    s.number("fcf_fc_map", p.fcf_fc_map, 0xFFFFFF);
    if (const Json *v = s.take("fcf_vlans"))
        p.fcf_vlans = to_vlans(*v, s.at("fcf_vlans"));
    if (const Json *v = s.take("fcfs"))
        read_fcfs(*v, s.at("fcfs"), conf, p);
    s.number("fcp_priority", p.fcp_priority);
    if (const Json *v = s.take("persist_link_down")) {
        if (!(conf.features & KVD_FTR_PERSIST_LINK))
            fail(s.at("persist_link_down"),
                 "link-down persistence on a board without the persistLinkEnable feature");
        p.persist_link_down = static_cast<uint16_t>(to_unsigned(*v, s.at("persist_link_down"), 1));
    }
    s.finish();
}

} // namespace kvdsim
