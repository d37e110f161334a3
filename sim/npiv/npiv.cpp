// NPIV virtual ports of one board.
#include "npiv/npiv.hpp"

#include <algorithm>
#include <cstring>

#include "events/events.hpp"
#include "fabric/fabric.hpp"
#include "mailbox/firmware.hpp"
#include "nodes/nodes.hpp"

namespace kvdsim
{

namespace
{

constexpr Wwn kZero{};
// The driver's own names: NAA 2, 12 bits of port (0x4..) or node (0x8..)
// and board number, then a prefix no maker holds and a 16-bit serial.
constexpr uint8_t kPrefix[4] = {0x06, 0x4b, 0x51, 0xe8};

Wwn chosen(uint8_t kind, uint32_t board, uint32_t serial)
{
    return {static_cast<uint8_t>(0x20 | kind),
            static_cast<uint8_t>(board),
            kPrefix[0],
            kPrefix[1],
            kPrefix[2],
            kPrefix[3],
            static_cast<uint8_t>(serial >> 8),
            static_cast<uint8_t>(serial)};
}

// Formats of FC names: IEEE, IEEE extended, locally assigned, registered,
// registered extended.
bool valid_name(const Wwn &w)
{
    const uint8_t naa = w[0] >> 4;
    return naa == 1 || naa == 2 || naa == 3 || naa == 5 || naa == 6;
}

NODEINFO initiator(const Wwn &wwpn, const Wwn &wwnn, uint32_t did, uint16_t flag)
{
    NODEINFO n{};
    n.a_flag = flag;
    n.a_state = KVD_NODE_STE_PLOGI;
    n.a_did = did;
    memcpy(n.a_wwpn, wwpn.data(), 8);
    memcpy(n.a_wwnn, wwnn.data(), 8);
    n.a_targetid = 0xFFFFFFFFu;
    return n;
}

// Fabric services first, then the ports by ascending address.
void order(std::vector<NODEINFO> &nodes)
{
    auto rest = std::stable_partition(nodes.begin(), nodes.end(),
                                      [](const NODEINFO &n) { return (n.a_flag & KVD_NODE_FABRIC) != 0; });
    std::sort(rest, nodes.end(), [](const NODEINFO &a, const NODEINFO &b) { return a.a_did < b.a_did; });
}

} // namespace

Npiv::Npiv(const BoardConf &cfg, Fabric &fabric, const Nodes &nodes, BoardEvents *events)
    : cfg_(cfg), fabric_(fabric), nodes_(nodes), events_(events), driver_enable_(cfg.npiv.driver_enable)
{
}

Wwn Npiv::chosen_wwpn(uint32_t board, uint32_t serial)
{
    return chosen(0x4, board, serial);
}

Wwn Npiv::chosen_wwnn(uint32_t board, uint32_t serial)
{
    return chosen(0x8, board, serial);
}

bool Npiv::hba_support() const
{
    return cfg_.sli_mode >= 3 && (cfg_.features & KVD_FTR_NPIV) && cfg_.npiv_max_vports > 0;
}

uint32_t Npiv::max_vports() const
{
    return hba_support() ? cfg_.npiv_max_vports : 0;
}

uint32_t Npiv::checklist(bool link_up) const
{
    uint32_t bits = 0;
    if (driver_enable_)
        bits |= KVD_NPIV_DRIVER_ENABLED;
    if (hba_support()) {
        bits |= KVD_NPIV_HBA_SUPPORT;
        // The driver sets the SLI port up for NPIV only when it enables it.
        if (driver_enable_)
            bits |= KVD_NPIV_SLI_READY;
        if (vports_.size() < cfg_.npiv_max_vports)
            bits |= KVD_NPIV_HBA_RESOURCES;
    }
    if (link_up) {
        bits |= KVD_NPIV_LINK_UP;
        if (cfg_.topology != Topology::loop)
            bits |= KVD_NPIV_POINT_TO_POINT;
        if (fabric_.npiv_supported()) {
            bits |= KVD_NPIV_FABRIC_SUPPORT;
            if (fabric_.npiv_room())
                bits |= KVD_NPIV_FABRIC_RESOURCES;
        }
    }
    return bits;
}

bool Npiv::name_taken(const Wwn &wwn) const
{
    if (wwn == cfg_.wwpn || wwn == cfg_.wwnn)
        return true;
    for (const Vport &v : vports_)
        if (v.wwpn == wwn || v.wwnn == wwn)
            return true;
    for (const Fabric::Entry &e : fabric_.registry())
        if (e.wwpn == wwn)
            return true;
    return false;
}

// The next serial under which the names wanted are free; 0 when none is
// (a serial is not given out twice while others remain).
uint32_t Npiv::next_serial(bool port_name, bool node_name)
{
    for (uint32_t tries = 0; tries < 0xFFFF; ++tries) {
        serial_ = serial_ % 0xFFFF + 1;
        if ((!port_name || !name_taken(chosen_wwpn(cfg_.number, serial_))) &&
            (!node_name || !name_taken(chosen_wwnn(cfg_.number, serial_))))
            return serial_;
    }
    return 0;
}

uint32_t Npiv::create(Wwn wwpn, Wwn wwnn, const std::string &name, uint32_t options, uint32_t host,
                      bool link_up, Vport *made)
{
    if (!hba_support() || !driver_enable_)
        return EOPNOTSUPP;
    if (vports_.size() >= cfg_.npiv_max_vports)
        return ENOSPC;
    for (const Wwn *w : {&wwpn, &wwnn})
        if (*w != kZero && !valid_name(*w))
            return EINVAL;
    if (wwpn != kZero && wwpn == wwnn)
        return EINVAL;
    for (const Wwn *w : {&wwpn, &wwnn})
        if (*w != kZero && name_taken(*w))
            return EEXIST;
    if (wwpn == kZero || wwnn == kZero) {
        const uint32_t serial = next_serial(wwpn == kZero, wwnn == kZero);
        if (!serial)
            return ENOSPC;
        if (wwpn == kZero)
            wwpn = chosen_wwpn(cfg_.number, serial);
        if (wwnn == kZero)
            wwnn = chosen_wwnn(cfg_.number, serial);
    }
    Vport v;
    v.wwpn = wwpn;
    v.wwnn = wwnn;
    v.name = name;
    v.options = options;
    v.host = host;
    v.restrict_login = (options & KVD_VPOPT_RESTRICT_LOGIN) != 0;
    vports_.push_back(v);
    login(vports_.back(), link_up);
    if (made)
        *made = vports_.back();
    return 0;
}

uint32_t Npiv::create_static(const StaticVportConf &conf, uint32_t host, bool link_up)
{
    const uint32_t rc = create(conf.wwpn, conf.wwnn, std::string(), 0, host, link_up, nullptr);
    if (rc == 0)
        vports_.back().is_static = true;
    return rc;
}

uint32_t Npiv::remove(const Wwn &wwpn)
{
    auto it = std::find_if(vports_.begin(), vports_.end(), [&](const Vport &v) { return v.wwpn == wwpn; });
    if (it == vports_.end())
        return ENOENT;
    logout(*it, true);
    vports_.erase(it);
    return 0;
}

const Vport *Npiv::find(const Wwn &wwpn) const
{
    for (const Vport &v : vports_)
        if (v.wwpn == wwpn)
            return &v;
    return nullptr;
}

// FDISC through the board's port.
void Npiv::login(Vport &v, bool link_up)
{
    if (!link_up) {
        v.state = KVD_VPSTATE_LINKDOWN;
        return;
    }
    Fabric::Entry e;
    e.wwpn = v.wwpn;
    e.wwnn = v.wwnn;
    e.symbolic_name = v.name;
    switch (fabric_.fdisc(e)) {
    case Fabric::Fdisc::accepted:
        v.did = e.did;
        v.state = KVD_VPSTATE_ACTIVE;
        tell_others(&v, v.did);
        break;
    case Fabric::Fdisc::no_npiv:
        v.state = KVD_VPSTATE_NO_FABRIC_SUPP;
        break;
    case Fabric::Fdisc::no_resources:
        v.state = KVD_VPSTATE_NO_FABRIC_RSCS;
        break;
    }
}

// LOGO. `tell`: the fabric tells the ports still there (a link that went
// down takes them all).
void Npiv::logout(Vport &v, bool tell)
{
    if (v.state == KVD_VPSTATE_ACTIVE) {
        fabric_.logo(v.did);
        if (tell)
            tell_others(&v, v.did);
    }
    v.did = 0;
}

// RSCN for `did` to the board's port and to every other logged-in vport.
void Npiv::tell_others(const Vport *about, uint32_t did)
{
    if (!events_)
        return;
    events_->rscn(did);
    for (const Vport &o : vports_)
        if (&o != about && o.state == KVD_VPSTATE_ACTIVE)
            events_->vport_rscn(o.wwpn, did);
}

void Npiv::link_changed(bool up)
{
    for (Vport &v : vports_) {
        if (up) {
            if (v.state != KVD_VPSTATE_ACTIVE)
                login(v, true);
        } else {
            logout(v, false);
            v.state = KVD_VPSTATE_LINKDOWN;
        }
    }
}

std::vector<NODEINFO> Npiv::seen_by_board(bool link_up) const
{
    std::vector<NODEINFO> out = nodes_.nodes(link_up);
    if (!link_up)
        return out;
    for (const Vport &v : vports_)
        if (v.state == KVD_VPSTATE_ACTIVE && !v.restrict_login)
            out.push_back(initiator(v.wwpn, v.wwnn, v.did, KVD_NODE_VPORT));
    order(out);
    return out;
}

// The fabric's services and targets as the board's port sees them, the
// board's port itself and the other vports; a port that restricts its
// logins logs in with targets only, and is logged in with by nobody else.
std::vector<NODEINFO> Npiv::seen_by(const Vport &v) const
{
    std::vector<NODEINFO> out;
    if (v.state != KVD_VPSTATE_ACTIVE)
        return out;
    for (const NODEINFO &n : nodes_.nodes(true))
        if (!v.restrict_login || (n.a_flag & (KVD_NODE_FABRIC | KVD_NODE_FCP)))
            out.push_back(n);
    if (!v.restrict_login) {
        out.push_back(initiator(cfg_.wwpn, cfg_.wwnn, cfg_.did & 0xFFFFFF, 0));
        for (const Vport &o : vports_)
            if (&o != &v && o.state == KVD_VPSTATE_ACTIVE && !o.restrict_login)
                out.push_back(initiator(o.wwpn, o.wwnn, o.did, KVD_NODE_VPORT));
    }
    order(out);
    return out;
}

uint32_t Npiv::vport_rpis() const
{
    size_t n = 0;
    for (const Vport &v : vports_)
        n += seen_by(v).size();
    return static_cast<uint32_t>(n);
}

uint32_t Npiv::rpis_in_use(bool link_up) const
{
    return static_cast<uint32_t>(seen_by_board(link_up).size()) + vport_rpis();
}

} // namespace kvdsim
