#include "mgmt.hpp"
#include "core/bytes.hpp"

#include <cstring>

namespace kvdsim
{

MgmtEngine::MgmtEngine(const BoardConf &cfg, uint32_t event_tag) : cfg_(cfg), first_tag_(event_tag)
{
}

HBA_MGMTINFO MgmtEngine::info(const MgmtLinkView &link) const
{
    HBA_MGMTINFO m;
    std::memset(&m, 0, sizeof m);
    std::memcpy(m.wwn.wwn, cfg_.wwnn.data(), sizeof m.wwn.wwn);
    m.unittype = unittype_;
    m.PortId = link.up ? link.did : 0;
    // On a fabric the one attached node is the switch; on a loop every
    // other port of the loop is.
    if (link.up)
        m.NumberOfAttachedNodes = link.loop ? static_cast<HBA_UINT32>(cfg_.remote_ports.size()) : 1;
    m.IPVersion = ip_version_;
    m.UDPPort = udp_port_;
    std::memcpy(m.IPAddress, ip_address_, sizeof m.IPAddress);
    m.TopologyDiscoveryFlags = discovery_flags_;
    return m;
}

HBA_STATUS MgmtEngine::set_info(const HBA_MGMTINFO &in)
{
    if (in.IPVersion > 2)
        return HBA_STATUS_ERROR_ARG;
    unittype_ = in.unittype;
    ip_version_ = in.IPVersion;
    udp_port_ = in.UDPPort;
    std::memcpy(ip_address_, in.IPAddress, sizeof ip_address_);
    discovery_flags_ = in.TopologyDiscoveryFlags;
    return HBA_STATUS_OK;
}

HBA_STATUS MgmtEngine::rnid(const MgmtLinkView &link, const HBA_WWN &wwn, uint32_t type,
                            KVD_RNID_ACC &out) const
{
    if (type != KVD_RNID_NODE && type != KVD_RNID_PORT)
        return HBA_STATUS_ERROR_ARG;
    if (!link.up)
        return HBA_STATUS_ERROR_UNAVAILABLE;
    const RemotePort *port = nullptr;
    uint32_t physical = 0;
    for (const RemotePort &rp : cfg_.remote_ports) {
        const Wwn &name = type == KVD_RNID_PORT ? rp.wwpn : rp.wwnn;
        if (std::memcmp(name.data(), wwn.wwn, sizeof wwn.wwn) == 0) {
            port = &rp;
            break;
        }
    }
    if (!port)
        return HBA_STATUS_ERROR_ILLEGAL_WWN;
    // The physical port number is the port's place among its node's ports.
    for (const RemotePort &rp : cfg_.remote_ports) {
        if (&rp == port)
            break;
        if (rp.wwnn == port->wwnn)
            ++physical;
    }

    std::memset(&out, 0, sizeof out);
    out.ls_code = KVD_ELS_LS_ACC;
    out.format = KVD_RNID_FORMAT_TOPOLOGY;
    out.common_len = 16;
    out.specific_len = 52;
    std::memcpy(out.port_name, port->wwpn.data(), 8);
    std::memcpy(out.node_name, port->wwnn.data(), 8);
    const size_t n =
        port->symbolic_name.size() < sizeof out.vendor ? port->symbolic_name.size() : sizeof out.vendor;
    std::memcpy(out.vendor, port->symbolic_name.data(), n);
    put_be32(out.associated_type, port->fcp_target ? kUnitStorage : kUnitHost);
    put_be32(out.physical_port, physical);
    put_be32(out.attached_nodes, 1);
    return HBA_STATUS_OK;
}

uint32_t MgmtEngine::events(const MgmtLinkView &link) const
{
    const uint32_t n = link.event_tag - first_tag_;
    return n < kMaxEvents ? n : kMaxEvents;
}

} // namespace kvdsim
