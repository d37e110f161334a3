// The ASIC's network side: the forwarding table, per-logical-port FCoE/FIP
// parameters and fabric access lists, the FCFs FIP discovery found and the
// virtual links to them, and the DCB settings (ETS priority groups, host
// PFC flag, DCBX mode).
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "asic/asic.hpp"
#include "asic/asic_exchange.hpp"

namespace kvdsim
{

namespace
{

constexpr uint16_t kFteTypeFcoe = 0x01;
constexpr uint16_t kVlanMax = 4094;
constexpr uint32_t kFcfHandleBase = 0x100;
constexpr uint32_t kFcfLkaPeriod = 8000; // ms between FCF keep-alives
constexpr uint8_t kBandwidthTotal = 100; // percent the groups must share
constexpr uint32_t kMaxPg = 8;

bool all_zero(const uint8_t *p, size_t n)
{
    return std::all_of(p, p + n, [](uint8_t b) { return b == 0; });
}

bool same_name(const uint8_t *a, const uint8_t *b)
{
    return memcmp(a, b, TARVO_ADDR_SIZE) == 0;
}

// The FPMA address of an FC port: FC-MAP then the port's 24-bit id, held
// last byte first with the two pad bytes at the end.
void fpma(uint8_t *out, uint32_t fc_map, uint32_t fcid)
{
    const uint8_t mac[6] = {static_cast<uint8_t>(fc_map >> 16), static_cast<uint8_t>(fc_map >> 8),
                            static_cast<uint8_t>(fc_map),       static_cast<uint8_t>(fcid >> 16),
                            static_cast<uint8_t>(fcid >> 8),    static_cast<uint8_t>(fcid)};
    memset(out, 0, TARVO_ADDR_SIZE);
    for (int i = 0; i < 6; ++i)
        out[i] = mac[5 - i];
}

// Groups must not share a priority, a group without priorities gets no
// bandwidth, and the shares add up to at most the whole link (what is left
// stays unreserved); the number of groups is those with priorities.
bool pg_valid(tarvo_pg_info_t &pg, const uint32_t *max_bw)
{
    unsigned seen = 0, total = 0, groups = 0;
    for (uint32_t i = 0; i < kMaxPg; ++i) {
        if (pg.pg_ids[i] & seen)
            return false;
        if (pg.pg_bw[i] > max_bw[i])
            return false;
        if (pg.pg_ids[i] == 0 && pg.pg_bw[i] != 0)
            return false;
        seen |= pg.pg_ids[i];
        total += pg.pg_bw[i];
        groups += pg.pg_ids[i] != 0;
    }
    if (total > kBandwidthTotal)
        return false;
    pg.num_pg = groups;
    return true;
}

constexpr uint32_t kMaxBgBw[kMaxPg] = {100, 100, 100, 100, 100, 100, 100, 100};

} // namespace

void Asic::init_net(const AsicConf &setup)
{
    // Priority 3 carries FCoE in a group of its own.
    pg_current_.num_pg = 3;
    const uint8_t ids[3] = {0x08, 0x37, 0xc0};
    const uint8_t bw[3] = {40, 40, 20};
    memcpy(pg_current_.pg_ids, ids, sizeof ids);
    memcpy(pg_current_.pg_bw, bw, sizeof bw);
    pg_default_ = pg_current_;
    host_pfc_ = setup.host_pfc;
    diag_failing_ = setup.diag_failing;
    dcbx_mode_ = setup.dcbx_mode;
    for (int p = 0; p < 2; ++p) {
        pause_type_[p] = TARVO_PAUSE_PFC;
        priority_[p] = 0x08;
        cos_[p] = 3;
        port_type_[p] = TARVO_PORT_ACCESS;
    }

    for (uint32_t i = 0; i < setup.fcfs; ++i) {
        Fcf f;
        tarvo_fcf_info_t &r = f.info;
        r.handle = kFcfHandleBase + i;
        const uint8_t mac[6] = {0x02, 0x5e, 0x11, 0xfc, 0x00, static_cast<uint8_t>(i + 1)};
        memcpy(r.mac, mac, sizeof mac);
        r.vlan_id = static_cast<uint16_t>(setup.fcoe_vlan);
        // The first FCF is the principal switch, whose name is the fabric's.
        const uint8_t sw[8] = {0x20, static_cast<uint8_t>(i + 1), 0x02, 0x5e, 0x11, 0xfc, 0x00, 0x00};
        memcpy(r.sw_name, i == 0 ? setup.fabric_name.data() : sw, TARVO_ADDR_SIZE);
        memcpy(r.fabric_name, setup.fabric_name.data(), TARVO_ADDR_SIZE);
        r.fc_map = kAsicDefaultFcMap;
        r.lka_period = kFcfLkaPeriod;
        r.state = FCF_AVAILABLE_STATE;
        r.ctrl_flags = 0x0001; // available for login
        r.sup_addr_mode = i % 2 ? TARVO_ADDR_MODE_SPMA : TARVO_ADDR_MODE_FPMA;
        r.priority = static_cast<uint16_t>(128 + i);
        fcfs_.push_back(f);
    }

    // Logical port 0 runs FIP toward the first FCF; the others wait without.
    LogicalPort &p0 = lports_[0];
    p0.fcoe_mode = TARVO_FCOE_FIP;
    if (!fcfs_.empty())
        memcpy(p0.fip.sw_name, fcfs_[0].info.sw_name, TARVO_ADDR_SIZE);
    memcpy(p0.fip.fabric_name, setup.fabric_name.data(), TARVO_ADDR_SIZE);
    p0.fip.sup_addr_mode = TARVO_ADDR_MODE_FPMA;
    p0.fip.pref_addr_mode = TARVO_ADDR_MODE_FPMA;
    p0.fip.fcf_disc_tov = 10;
    p0.fip.vlan_id[0] = static_cast<uint16_t>(setup.fcoe_vlan);
}

// An entry keyed by device id and port name: the same key again changes the
// action of the entry already there.
uint32_t Asic::fte_insert(Exchange &x)
{
    auto c = x.command<tarvo_fte_insert_cmd_t>();
    if (c.mask > TARVO_FTE_DROP || c.fcid == 0 || c.fcid > 0xffffff || all_zero(c.wwpn, TARVO_ADDR_SIZE))
        return kAsicInvalidParam;
    auto match = [&](const Fte &e) {
        return (e.rec.flags & TARVO_FTE_IN_USE) && e.fcid == c.fcid && same_name(e.rec.fc_wwpn, c.wwpn);
    };
    auto it = std::find_if(ftable_.begin(), ftable_.end(), match);
    if (it == ftable_.end())
        it = std::find_if(ftable_.begin(), ftable_.end(),
                          [](const Fte &e) { return !(e.rec.flags & TARVO_FTE_IN_USE); });
    Fte *slot = it == ftable_.end() ? nullptr : &*it;
    if (!slot)
        return kAsicTableFull;
    tarvo_fte_t &r = slot->rec;
    r = tarvo_fte_t{};
    r.flags = static_cast<uint16_t>(TARVO_FTE_IN_USE | c.mask);
    r.type = kFteTypeFcoe;
    r.type_mask = 0xff;
    r.tag = static_cast<uint16_t>(fcfs_.empty() ? 0 : fcfs_[0].info.vlan_id);
    r.tag_mask = 0x0fff;
    fpma(r.mac_addr, lports_[0].fc_map == 0 ? kAsicDefaultFcMap : lports_[0].fc_map, c.fcid);
    memset(r.mac_addr_mask, 0, TARVO_ADDR_SIZE);
    memset(r.mac_addr_mask, 0xff, 6);
    memcpy(r.fc_wwpn, c.wwpn, TARVO_ADDR_SIZE);
    r.lif_bitmap = c.mask == TARVO_FTE_DROP ? 0 : 0x1;
    slot->fcid = c.fcid;
    char text[48];
    snprintf(text, sizeof text, "fte: %06x %s", c.fcid, c.mask ? "drop" : "forward");
    log(3, text);
    return kAsicOk;
}

uint32_t Asic::fte_delete(Exchange &x)
{
    auto c = x.command<tarvo_fte_delete_cmd_t>();
    for (Fte &e : ftable_) {
        if ((e.rec.flags & TARVO_FTE_IN_USE) && e.fcid == c.fcid && same_name(e.rec.fc_wwpn, c.wwpn)) {
            e = Fte{};
            char text[48];
            snprintf(text, sizeof text, "fte: %06x removed", c.fcid);
            log(3, text);
            return kAsicOk;
        }
    }
    return kAsicNotFound;
}

uint32_t Asic::get_ftable(Exchange &x)
{
    uint8_t *p = x.out.data() + offsetof(tarvo_ftable_rsp_t, entry);
    for (const Fte &e : ftable_) {
        memcpy(p, &e.rec, sizeof e.rec);
        p += sizeof e.rec;
    }
    x.length = sizeof(tarvo_ftable_rsp_t);
    return kAsicOk;
}

// A get record reads the current and default groups; the longer set record
// replaces the current ones.
uint32_t Asic::ets_pg(Exchange &x)
{
    if (x.in.size() >= sizeof(tarvo_set_pg_info_cmd_t)) {
        auto c = x.command<tarvo_set_pg_info_cmd_t>();
        tarvo_pg_info_t pg = c.pg_info;
        if (!pg_valid(pg, kMaxBgBw))
            return kAsicInvalidParam;
        pg_current_ = pg;
        log(2, "dcbx: priority groups changed");
        return kAsicOk;
    }
    tarvo_get_ets_pg_info_rsp_t r{};
    r.max_supported_pg = kMaxPg;
    r.dcbx_feature_syncd = host_pfc_ ? 1 : 0;
    r.curr_pg_info = pg_current_;
    r.def_pg_info = pg_default_;
    memcpy(r.max_bg_bw, kMaxBgBw, sizeof r.max_bg_bw);
    x.reply(r);
    return kAsicOk;
}

uint32_t Asic::set_host_pfc(Exchange &x)
{
    auto c = x.command<tarvo_set_host_eth_pfc_flag_cmd_t>();
    if (c.host_pfc_enable > 1)
        return kAsicInvalidParam;
    host_pfc_ = c.host_pfc_enable != 0;
    log(2, host_pfc_ ? "dcbx: host pfc enabled" : "dcbx: host pfc disabled");
    return kAsicOk;
}

// One word answers both questions: with host PFC on it is the DCBX mode the
// host function negotiated (base bit set, so never 0); with PFC off the host
// function runs no DCBX and the word is 0.
uint32_t Asic::get_host_pfc(Exchange &x)
{
    tarvo_get_host_eth_pfc_flag_rsp_t r{};
    r.host_pfc_enable = host_pfc_ ? TARVO_DCBX_MODE_BASE + dcbx_mode_ : 0;
    x.reply(r);
    return kAsicOk;
}

uint32_t Asic::set_fcoe_params(Exchange &x)
{
    auto c = x.command<tarvo_set_fcoe_params_cmd_t>();
    if (c.fcoe_mode > TARVO_FCOE_FIP)
        return kAsicInvalidParam;
    if (c.lport_id >= kAsicLogicalPorts)
        return kAsicBadPort;
    LogicalPort &p = lports_[c.lport_id];
    if (c.fcoe_mode == TARVO_FCOE_NON_FIP) {
        p.fcoe_mode = TARVO_FCOE_NON_FIP;
        p.fip = tarvo_fip_params_t{};
        p.fc_map = c.params.non_fip.fc_map ? c.params.non_fip.fc_map & 0xffffff : kAsicDefaultFcMap;
    } else {
        const tarvo_fip_params_t &f = c.params.fip;
        auto mode_ok = [](uint8_t m) { return m == TARVO_ADDR_MODE_SPMA || m == TARVO_ADDR_MODE_FPMA; };
        if (!mode_ok(f.sup_addr_mode) || !mode_ok(f.pref_addr_mode) || f.fcf_disc_tov == 0)
            return kAsicInvalidParam;
        for (uint16_t v : f.vlan_id)
            if (v > kVlanMax)
                return kAsicInvalidParam;
        p.fcoe_mode = TARVO_FCOE_FIP;
        p.fip = f;
        p.fc_map = kAsicDefaultFcMap;
    }
    char text[48];
    snprintf(text, sizeof text, "fip: lport %u %s", c.lport_id, p.fcoe_mode ? "FIP" : "non-FIP");
    log(1, text);
    return kAsicOk;
}

uint32_t Asic::get_fcoe_params(Exchange &x)
{
    auto c = x.command<tarvo_get_cmd_t>();
    if (c.context >= kAsicLogicalPorts)
        return kAsicBadPort;
    const LogicalPort &p = lports_[c.context];
    tarvo_get_fcoe_params_rsp_t r{};
    r.fcoe_mode = p.fcoe_mode;
    if (p.fcoe_mode == TARVO_FCOE_FIP)
        r.params.fip = p.fip;
    else
        r.params.non_fip.fc_map = p.fc_map;
    x.reply(r);
    return kAsicOk;
}

// As many FCFs as the room offered holds; the counts tell of all of them.
uint32_t Asic::get_fcf_list(Exchange &x)
{
    const size_t head = offsetof(tarvo_get_fcf_list_rsp_t, fcf_list);
    const size_t fit = (x.out.size() - head) / sizeof(tarvo_fcf_info_t);
    const uint32_t returned = static_cast<uint32_t>(std::min(fit, fcfs_.size()));
    uint32_t active = 0;
    for (const Fcf &f : fcfs_)
        active += f.info.state != FCF_OFFLINE;
    const uint32_t counts[3] = {returned, static_cast<uint32_t>(fcfs_.size()), active};
    memcpy(x.out.data() + 4, counts, sizeof counts);
    for (uint32_t i = 0; i < returned; ++i)
        memcpy(x.out.data() + head + i * sizeof(tarvo_fcf_info_t), &fcfs_[i].info, sizeof(tarvo_fcf_info_t));
    x.length = static_cast<uint32_t>(head + returned * sizeof(tarvo_fcf_info_t));
    return kAsicOk;
}

// The list sent replaces the port's list; entries are read only as far as
// the record reaches.
uint32_t Asic::set_facl(Exchange &x)
{
    auto c = x.command<tarvo_set_facl_cmd_t>();
    if (c.lport_id >= kAsicLogicalPorts)
        return kAsicBadPort;
    if (c.num_acls > kAsicFaclMax)
        return kAsicTableFull;
    const size_t head = offsetof(tarvo_set_facl_cmd_t, facl_list);
    if (x.in.size() < head + static_cast<size_t>(c.num_acls) * sizeof(tarvo_facl_t))
        return kAsicBadLength;
    std::vector<tarvo_facl_t> list(c.num_acls);
    for (uint32_t i = 0; i < c.num_acls; ++i) {
        memcpy(&list[i], x.in.data() + head + i * sizeof(tarvo_facl_t), sizeof(tarvo_facl_t));
        if (list[i].acc_ctrl > 1)
            return kAsicInvalidParam;
    }
    lports_[c.lport_id].facl = std::move(list);
    char text[48];
    snprintf(text, sizeof text, "fip: lport %u access list of %u", c.lport_id, c.num_acls);
    log(1, text);
    return kAsicOk;
}

uint32_t Asic::get_facl(Exchange &x)
{
    auto c = x.command<tarvo_get_cmd_t>();
    if (c.context >= kAsicLogicalPorts)
        return kAsicBadPort;
    const std::vector<tarvo_facl_t> &list = lports_[c.context].facl;
    const size_t head = offsetof(tarvo_get_facl_rsp_t, facl_list);
    const size_t fit = (x.out.size() - head) / sizeof(tarvo_facl_t);
    const uint32_t returned = static_cast<uint32_t>(std::min(fit, list.size()));
    const uint32_t counts[2] = {returned, static_cast<uint32_t>(list.size())};
    memcpy(x.out.data() + 4, counts, sizeof counts);
    for (uint32_t i = 0; i < returned; ++i)
        memcpy(x.out.data() + head + i * sizeof(tarvo_facl_t), &list[i], sizeof(tarvo_facl_t));
    x.length = static_cast<uint32_t>(head + returned * sizeof(tarvo_facl_t));
    return kAsicOk;
}

// A virtual link goes to a discovered FCF that the port's access list lets
// it use (an empty list permits every FCF); its handle is the FCF's.
uint32_t Asic::create_vl(Exchange &x)
{
    auto c = x.command<tarvo_cmd_create_vl_t>();
    if (c.lport_id >= kAsicLogicalPorts)
        return kAsicBadPort;
    Fcf *fcf = nullptr;
    for (Fcf &f : fcfs_)
        if (same_name(f.info.sw_name, c.fcf.sw_name) && same_name(f.info.fabric_name, c.fcf.fabric_name))
            fcf = &f;
    if (!fcf || fcf->info.state == FCF_OFFLINE)
        return kAsicNotFound;
    const std::vector<tarvo_facl_t> &list = lports_[c.lport_id].facl;
    if (!list.empty()) {
        bool permit = false;
        for (const tarvo_facl_t &a : list) {
            if (same_name(a.sw_name, c.fcf.sw_name) && same_name(a.fabric_name, c.fcf.fabric_name)) {
                if (a.acc_ctrl == 0)
                    return kAsicNotPermitted;
                permit = true;
            }
        }
        if (!permit)
            return kAsicNotPermitted;
    }
    if (fcf->linked)
        return kAsicExists;
    fcf->linked = true;
    fcf->lport = c.lport_id;
    fcf->info.state = FCF_READY_STATE;
    char text[48];
    snprintf(text, sizeof text, "fip: lport %u link %x up", c.lport_id, fcf->info.handle);
    log(1, text);
    return kAsicOk;
}

uint32_t Asic::delete_vl(Exchange &x)
{
    auto c = x.command<tarvo_cmd_delete_vl_t>();
    for (Fcf &f : fcfs_) {
        if (f.info.handle == c.vl_handle && f.linked) {
            f.linked = false;
            f.info.state = FCF_AVAILABLE_STATE;
            char text[48];
            snprintf(text, sizeof text, "fip: link %x down", c.vl_handle);
            log(1, text);
            return kAsicOk;
        }
    }
    return kAsicNotFound;
}

} // namespace kvdsim
