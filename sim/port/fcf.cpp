// FCF selection of an FCoE port and per-target FCP priority.
//
// Discovery finds every FCF of the wire on every VLAN it serves. An FCF
// that answers under another FC-MAP, or on another VLAN than the one the
// port's parameters name, does not match; of those that match, the
// connection list (when it has entries) admits the ones some entry
// describes. The port logs in through the best admitted FCF: one of a
// primary entry first, then by the entry's priority, then by the FCF's own
// advertised priority, then by MAC address and VLAN.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <tuple>

#include "libkvd.h"
#include "port/port.hpp"

namespace kvdsim
{

namespace
{

template <class R> R read_record(std::span<const uint8_t> data)
{
    R r{};
    std::memcpy(&r, data.data(), sizeof r);
    return r;
}

template <class R> void write_record(std::span<uint8_t> data, const R &r)
{
    std::memcpy(data.data(), &r, sizeof r);
}

bool entry_matches(const KVD_FCFCONNENTRY &e, const KVD_FCFENTRY &f)
{
    if (!(e.flags & KVD_FCFCONN_VALID))
        return false;
    if ((e.flags & KVD_FCFCONN_MAC_VALID) && std::memcmp(e.fcfMac, f.mac, sizeof f.mac) != 0)
        return false;
    if ((e.flags & KVD_FCFCONN_SWNAME_VALID) &&
        std::memcmp(e.switchName, f.switchName, sizeof f.switchName) != 0)
        return false;
    if ((e.flags & KVD_FCFCONN_FABNAME_VALID) &&
        std::memcmp(e.fabricName, f.fabricName, sizeof f.fabricName) != 0)
        return false;
    return !(e.flags & KVD_FCFCONN_VLAN_VALID) || e.vlanId == f.vlanId;
}

} // namespace

// The first valid entry that describes the FCF admits it; with no valid
// entry every FCF is admitted.
bool Port::admitted(const KVD_FCFENTRY &fcf, const KVD_FCFCONNENTRY **by) const
{
    *by = nullptr;
    bool any_valid = false;
    for (const KVD_FCFCONNENTRY &e : conn_) {
        any_valid = any_valid || (e.flags & KVD_FCFCONN_VALID);
        if (entry_matches(e, fcf)) {
            *by = &e;
            return true;
        }
    }
    return !any_valid;
}

std::optional<size_t> Port::selected_fcf() const
{
    const std::vector<KVD_FCFENTRY> table = fcf_table(false);
    std::optional<size_t> best;
    auto key = [&](size_t i) {
        const KVD_FCFCONNENTRY *by = nullptr;
        (void)admitted(table[i], &by);
        const int primary = by && (by->flags & KVD_FCFCONN_PRIMARY) ? 0 : 1;
        const int order = by ? by->priority : 0;
        const auto &f = table[i];
        return std::make_tuple(primary, order, f.priority,
                               std::vector<uint8_t>(std::begin(f.mac), std::end(f.mac)), f.vlanId);
    };
    for (size_t i = 0; i < table.size(); ++i)
        if (table[i].state == KVD_FCF_STATE_AVAILABLE && (!best || key(i) < key(*best)))
            best = i;
    return best;
}

std::vector<KVD_FCFENTRY> Port::fcf_table(bool link_up) const
{
    std::vector<KVD_FCFENTRY> out;
    if (!fcoe())
        return out;
    for (const FcfConf &f : fcfs_)
        for (uint16_t vlan : f.vlans) {
            KVD_FCFENTRY e{};
            std::memcpy(e.mac, f.mac.data(), sizeof e.mac);
            e.vlanId = vlan;
            std::memcpy(e.switchName, f.switch_name.data(), sizeof e.switchName);
            std::memcpy(e.fabricName, f.fabric_name.data(), sizeof e.fabricName);
            e.fcMap = f.fc_map & 0xFFFFFF;
            e.priority = f.priority;
            const KVD_FCFCONNENTRY *by = nullptr;
            if (e.fcMap != fc_map_ || (vlan_valid_ && vlan != vlan_id_))
                e.state = KVD_FCF_STATE_MISMATCH;
            else if (!admitted(e, &by))
                e.state = KVD_FCF_STATE_EXCLUDED;
            else
                e.state = KVD_FCF_STATE_AVAILABLE;
            out.push_back(e);
        }
    if (link_up)
        if (auto sel = selected_fcf())
            out[*sel].state = KVD_FCF_STATE_LOGGED_IN;
    return out;
}

// ---------------------------------------------------------------------------
// Requests

int32_t Port::fcoe_get_conn_list(PortCommand &cmd)
{
    auto l = read_record<KVD_FCFCONNLIST>(cmd.data);
    if (l.version != KVD_FCFCONN_VERSION)
        return EINVAL;
    if (!fcoe())
        return EOPNOTSUPP;
    KVD_FCFCONNLIST out{};
    out.version = KVD_FCFCONN_VERSION;
    out.numEntries = static_cast<uint32_t>(conn_.size());
    std::copy(conn_.begin(), conn_.end(), out.entries);
    write_record(cmd.data, out);
    return 0;
}

// A new list makes the port log in again, through the FCF the list now
// selects; with none admitted the link stays down until a list admits one.
int32_t Port::fcoe_set_conn_list(PortCommand &cmd)
{
    const auto l = read_record<KVD_FCFCONNLIST>(cmd.data);
    if (l.version != KVD_FCFCONN_VERSION)
        return EINVAL;
    if (!fcoe())
        return EOPNOTSUPP;
    if (l.numEntries > KVD_FCFCONN_MAX)
        return EINVAL;
    for (uint32_t i = 0; i < l.numEntries; ++i) {
        const KVD_FCFCONNENTRY &e = l.entries[i];
        if ((e.flags & ~KVD_FCFCONN_ALL) ||
            ((e.flags & KVD_FCFCONN_VLAN_VALID) && (e.vlanId == 0 || e.vlanId > kMaxVlanId)))
            return EINVAL;
    }
    if (cmd.fw.state() != BoardState::ready)
        return EBUSY;
    std::vector<KVD_FCFCONNENTRY> list(l.entries, l.entries + l.numEntries);
    for (KVD_FCFCONNENTRY &e : list) {
        e.reserved = 0;
        std::memset(e.reserved2, 0, sizeof e.reserved2);
    }
    const bool changed = list.size() != conn_.size() ||
                         std::memcmp(list.data(), conn_.data(), list.size() * sizeof(KVD_FCFCONNENTRY)) != 0;
    conn_ = std::move(list);
    driver_image_.reset();
    return changed ? settle(cmd.fw, true) : 0;
}

// args[0]: the room in entries; the data holds that many. args[1] gets the
// number discovered.
int32_t Port::fcoe_get_fcf_table(PortCommand &cmd)
{
    if (!fcoe())
        return EOPNOTSUPP;
    const std::vector<KVD_FCFENTRY> table =
        fcf_table(cmd.fw.link().up && cmd.fw.state() == BoardState::ready);
    const size_t room = std::min<size_t>(cmd.args[0], cmd.data.size() / sizeof(KVD_FCFENTRY));
    const size_t n = std::min(room, table.size());
    std::memcpy(cmd.data.data(), table.data(), n * sizeof(KVD_FCFENTRY));
    cmd.written = static_cast<uint32_t>(n * sizeof(KVD_FCFENTRY));
    cmd.args[1] = static_cast<uint32_t>(table.size());
    return 0;
}

// One entry per FCP target the port sees, in the order the fabric lists
// them. A priority is in use while the global FCP priority flag is on and
// the target is reachable (the link is up).
int32_t Port::qos_get_config(PortCommand &cmd)
{
    auto c = read_record<KVD_QOSCONFIG>(cmd.data);
    if (c.version != KVD_QOS_VERSION)
        return EINVAL;
    KVD_QOSCONFIG out{};
    out.version = KVD_QOS_VERSION;
    const bool reachable = cmd.fw.link().up && cmd.fw.state() == BoardState::ready;
    for (const RemotePort &rp : cfg_.remote_ports) {
        if (!rp.fcp_target || out.numEntries == KVD_QOS_MAX_ENTRIES)
            continue;
        KVD_QOSENTRY &e = out.entries[out.numEntries++];
        std::memcpy(e.targetWWPN, rp.wwpn.data(), sizeof e.targetWWPN);
        auto it = qos_.find(rp.wwpn);
        if (it == qos_.end())
            continue;
        e.priority = it->second.priority;
        if (it->second.enabled) {
            e.flags = KVD_QOS_ENABLED;
            if (fcp_priority_ == KVD_FCP_PRIORITY_ON && reachable)
                e.flags |= KVD_QOS_ACTIVE;
        }
    }
    write_record(cmd.data, out);
    return 0;
}

// All entries are checked before any is taken. KVD_QOS_ACTIVE is the
// port's to report and is ignored on the way in.
int32_t Port::qos_set_config(PortCommand &cmd)
{
    const auto c = read_record<KVD_QOSCONFIG>(cmd.data);
    if (c.version != KVD_QOS_VERSION || c.numEntries > KVD_QOS_MAX_ENTRIES)
        return EINVAL;
    for (uint32_t i = 0; i < c.numEntries; ++i) {
        const KVD_QOSENTRY &e = c.entries[i];
        if (e.priority > KVD_QOS_MAX_PRIORITY || (e.flags & ~(KVD_QOS_ENABLED | KVD_QOS_ACTIVE)))
            return EINVAL;
        const bool known =
            std::any_of(cfg_.remote_ports.begin(), cfg_.remote_ports.end(), [&](const RemotePort &rp) {
                return rp.fcp_target && std::memcmp(rp.wwpn.data(), e.targetWWPN, sizeof e.targetWWPN) == 0;
            });
        if (!known)
            return ENOENT;
    }
    for (uint32_t i = 0; i < c.numEntries; ++i) {
        const KVD_QOSENTRY &e = c.entries[i];
        std::array<uint8_t, 8> wwpn;
        std::memcpy(wwpn.data(), e.targetWWPN, sizeof e.targetWWPN);
        qos_[wwpn] = QosSetting{e.priority, (e.flags & KVD_QOS_ENABLED) != 0};
    }
    return 0;
}

} // namespace kvdsim
