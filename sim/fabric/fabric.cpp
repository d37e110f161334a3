// The fabric model: ELS responders at the remote ports and the F_Port, the
// name server, and management requests.
#include "fabric/fabric.hpp"

#include <algorithm>
#include <cstring>

#include "core/fault.hpp"
#include "kvd_passthru.h"
#include "core/bytes.hpp"

namespace kvdsim
{

namespace
{

constexpr uint32_t kFportPayload = 2048;
constexpr size_t kRplBlocksMax = (ELS_MAX_PAYLOAD - 12) / 16;

// RNID associated types.
constexpr uint32_t kAssocHba = 0x07;
constexpr uint32_t kAssocSwitch = 0x04;
constexpr uint32_t kAssocStorage = 0x09;

std::vector<uint8_t> ls_acc(size_t size)
{
    std::vector<uint8_t> r(size, 0);
    r[0] = ELS_CMD_LS_ACC;
    return r;
}

void put_lesb(uint8_t *p, const LinkErrorBlock &e)
{
    put_be32(p, e.link_failure);
    put_be32(p + 4, e.loss_of_sync);
    put_be32(p + 8, e.loss_of_signal);
    put_be32(p + 12, e.prim_seq_err);
    put_be32(p + 16, e.invalid_tx_word);
    put_be32(p + 20, e.invalid_crc);
}

} // namespace

std::vector<uint8_t> ls_rjt(uint8_t reason, uint8_t explanation)
{
    std::vector<uint8_t> r(8, 0);
    r[0] = ELS_CMD_LS_RJT;
    r[5] = reason;
    r[6] = explanation;
    return r;
}

std::vector<uint8_t> ct_reply(std::span<const uint8_t> req, uint16_t code, uint8_t reason,
                              uint8_t explanation)
{
    std::vector<uint8_t> r(sizeof(KVD_CT_HDR), 0);
    r[0] = CT_REVISION;
    r[4] = req[4]; // GS type and subtype of the request
    r[5] = req[5];
    put_be16(&r[8], code);
    r[13] = reason;
    r[14] = explanation;
    return r;
}

Fabric::Fabric(const BoardConf &cfg) : cfg_(cfg)
{
    Entry own;
    own.did = cfg.did & 0xFFFFFF;
    own.wwpn = cfg.wwpn;
    own.wwnn = cfg.wwnn;
    own.symbolic_name = cfg.symbolic_name;
    registry_.push_back(own);
    for (const RemotePort &rp : cfg.remote_ports) {
        Entry e;
        e.did = rp.did & 0xFFFFFF;
        e.wwpn = rp.wwpn;
        e.wwnn = rp.wwnn;
        e.symbolic_name = rp.symbolic_name;
        registry_.push_back(e);
    }
    std::sort(registry_.begin(), registry_.end(),
              [](const Entry &a, const Entry &b) { return a.did < b.did; });
}

bool Fabric::has_name_server() const
{
    return cfg_.topology == Topology::fabric;
}

bool Fabric::reachable(uint32_t did, const RemotePort **port) const
{
    *port = nullptr;
    for (const RemotePort &rp : cfg_.remote_ports) {
        if ((rp.did & 0xFFFFFF) == did) {
            *port = &rp;
            return true;
        }
    }
    return did == CT_FABRIC_DID && cfg_.topology == Topology::fabric;
}

const RemotePort *Fabric::port_by_wwpn(const Wwn &wwpn) const
{
    for (const RemotePort &rp : cfg_.remote_ports)
        if (rp.wwpn == wwpn)
            return &rp;
    return nullptr;
}

uint32_t Fabric::max_payload(const RemotePort *port) const
{
    return std::min(cfg_.max_frame, port ? port->max_frame : kFportPayload);
}

bool Fabric::npiv_supported() const
{
    return cfg_.topology == Topology::fabric && cfg_.npiv.fabric_support;
}

size_t Fabric::npiv_logins() const
{
    return static_cast<size_t>(
        std::count_if(registry_.begin(), registry_.end(), [](const Entry &e) { return e.npiv; }));
}

bool Fabric::npiv_room() const
{
    return npiv_logins() < cfg_.npiv.fabric_max_vports;
}

// FDISC: the next free address of the port's area, counting up from the
// port's own.
Fabric::Fdisc Fabric::fdisc(Entry &port)
{
    if (!npiv_supported())
        return Fdisc::no_npiv;
    if (!npiv_room())
        return Fdisc::no_resources;
    const uint32_t area = cfg_.did & 0xFFFF00;
    for (uint32_t p = (cfg_.did & 0xFF) + 1; p <= 0xFF; ++p) {
        const uint32_t did = area | p;
        if (entry(did))
            continue;
        port.did = did;
        port.npiv = true;
        registry_.insert(std::upper_bound(registry_.begin(), registry_.end(), port,
                                          [](const Entry &a, const Entry &b) { return a.did < b.did; }),
                         port);
        return Fdisc::accepted;
    }
    return Fdisc::no_resources;
}

void Fabric::logo(uint32_t did)
{
    std::erase_if(registry_, [&](const Entry &e) { return e.npiv && e.did == did; });
}

const Fabric::Entry *Fabric::entry(uint32_t did) const
{
    for (const Entry &e : registry_)
        if (e.did == did)
            return &e;
    return nullptr;
}

// ---------------------------------------------------------------------------
// Tables. ELS min_in: request bytes; CT min_in: request bytes after which
// the command's argument ends.

struct FabricCommands {
    static constexpr ElsRow els[] = {
        {ELS_CMD_RLS, "RLS", kSliAll, 8, 28, &Fabric::rls},
        {ELS_CMD_ECHO, "ECHO", kSliAll, 4, 4, &Fabric::echo},
        {ELS_CMD_RPS, "RPS", kSliAll, 12, 32, &Fabric::rps},
        {ELS_CMD_RPL, "RPL", kSliAll, 12, 12, &Fabric::rpl},
        {ELS_CMD_RNID, "RNID", kSliAll, 8, 16, &Fabric::rnid},
    };
    static constexpr CtRow ct[] = {
        {CT_GPN_ID, "GPN_ID", kSliAll, 20, 24, &Fabric::gpn_id},
        {CT_GNN_ID, "GNN_ID", kSliAll, 20, 24, &Fabric::gnn_id},
        {CT_GSPN_ID, "GSPN_ID", kSliAll, 20, 20, &Fabric::gspn_id},
        {CT_GID_FT, "GID_FT", kSliAll, 20, 20, &Fabric::gid_ft},
    };
};

static_assert(unique_codes(FabricCommands::els), "two ELS rows share a code");
static_assert(unique_names(FabricCommands::els), "two ELS rows share a name");
static_assert(unique_codes(FabricCommands::ct), "two name-server rows share a code");
static_assert(unique_names(FabricCommands::ct), "two name-server rows share a name");

std::span<const RowInfo> Fabric::els_commands()
{
    static constexpr auto infos = row_infos(FabricCommands::els);
    return infos;
}

std::span<const RowInfo> Fabric::ct_commands()
{
    static constexpr auto infos = row_infos(FabricCommands::ct);
    return infos;
}

const ElsRow *Fabric::els_command(uint8_t code)
{
    return find_row(FabricCommands::els, code);
}

const CtRow *Fabric::ct_command(uint16_t code)
{
    return find_row(FabricCommands::ct, code);
}

// ---------------------------------------------------------------------------
// ELS

void Fabric::els(ElsTask &t)
{
    const uint8_t code = t.req[0];
    const ElsRow *row = els_command(code);
    t.name = row ? row->name : nullptr;
    if (auto hit = library_faults().match_command("els", code, t.name, static_cast<int32_t>(cfg_.number))) {
        t.rule = hit->rule;
        t.reply = ls_rjt(static_cast<uint8_t>(hit->result));
        return;
    }
    if (!row) {
        t.reply = ls_rjt(LSRJT_CMD_UNSUPPORTED);
        return;
    }
    if (t.req.size() < row->min_in) {
        t.reply = ls_rjt(LSRJT_LOGICAL_ERR);
        return;
    }
    (this->*row->handler)(t);
}

void Fabric::echo(ElsTask &t)
{
    t.reply.assign(t.req.begin(), t.req.end());
    t.reply[0] = ELS_CMD_LS_ACC;
    t.reply[1] = t.reply[2] = t.reply[3] = 0;
}

void Fabric::rls(ElsTask &t)
{
    t.reply = ls_acc(28);
    put_lesb(&t.reply[4], t.errors);
}

// Port status, then the link error status block. The port answers for
// itself; a selection of another port is refused.
void Fabric::rps(ElsTask &t)
{
    if ((t.req[7] & 0x03) != 0) {
        t.reply = ls_rjt(LSRJT_UNABLE_TPC);
        return;
    }
    t.reply = ls_acc(32);
    put_lesb(&t.reply[8], t.errors);
}

// The port list: an N_Port lists itself, the F_Port every port of the
// fabric. The request names the first block and the most blocks wanted
// (0: as many as fit).
void Fabric::rpl(ElsTask &t)
{
    std::vector<const Entry *> ports;
    if (t.port) {
        if (const Entry *e = entry(t.port->did & 0xFFFFFF))
            ports.push_back(e);
    } else {
        for (const Entry &e : registry_)
            ports.push_back(&e);
    }
    const uint32_t max = be24(&t.req[5]);
    const uint32_t first = be24(&t.req[9]);
    size_t n = first < ports.size() ? ports.size() - first : 0;
    n = std::min(n, kRplBlocksMax);
    if (max != 0)
        n = std::min<size_t>(n, max);
    t.reply = ls_acc(12 + 16 * n);
    put_be16(&t.reply[2], static_cast<uint32_t>(t.reply.size()));
    put_be24(&t.reply[5], static_cast<uint32_t>(ports.size()));
    put_be24(&t.reply[9], first);
    for (size_t i = 0; i < n; ++i) {
        uint8_t *b = &t.reply[12 + 16 * i];
        const Entry &e = *ports[first + i];
        put_be32(b, static_cast<uint32_t>(first + i));
        put_be24(b + 5, e.did);
        memcpy(b + 8, e.wwpn.data(), 8);
    }
}

// Node identification: the common part (port and node names), and for the
// topology discovery format its specific data.
void Fabric::rnid(ElsTask &t)
{
    const bool topology = t.req[4] == RNID_FMT_TOPOLOGY;
    t.reply = ls_acc(topology ? 24 + 52 : 24);
    t.reply[4] = topology ? RNID_FMT_TOPOLOGY : 0;
    t.reply[5] = 16;
    t.reply[7] = topology ? 52 : 0;
    const Wwn &wwpn = t.port ? t.port->wwpn : cfg_.fabric_name;
    const Wwn &wwnn = t.port ? t.port->wwnn : cfg_.fabric_name;
    memcpy(&t.reply[8], wwpn.data(), 8);
    memcpy(&t.reply[16], wwnn.data(), 8);
    if (!topology)
        return;
    uint8_t *s = &t.reply[24];
    memcpy(s, "QSTOR", 5); // vendor unique
    const uint32_t assoc = !t.port ? kAssocSwitch : t.port->fcp_target ? kAssocStorage : kAssocHba;
    put_be32(s + 16, assoc);
    put_be32(s + 20, 0); // physical port number
    put_be32(s + 24, 1); // attached nodes
}

// ---------------------------------------------------------------------------
// Name server

void Fabric::ct(CtTask &t)
{
    const uint16_t code = static_cast<uint16_t>(t.req[8] << 8 | t.req[9]);
    const bool name_server = t.req[4] == CT_GS_TYPE_DIRECTORY && t.req[5] == CT_GS_SUBTYPE_NAME_SERVER;
    const CtRow *row = name_server ? ct_command(code) : nullptr;
    t.name = row ? row->name : nullptr;
    if (t.req[0] != CT_REVISION) {
        t.reply = ct_reply(t.req, CT_FS_RJT, CT_RJT_INVALID_VERSION);
        return;
    }
    if (name_server) {
        if (auto hit =
                library_faults().match_command("ct", code, t.name, static_cast<int32_t>(cfg_.number))) {
            t.rule = hit->rule;
            t.reply = ct_reply(t.req, CT_FS_RJT, static_cast<uint8_t>(hit->result));
            return;
        }
    }
    if (!row) {
        t.reply = ct_reply(t.req, CT_FS_RJT, CT_RJT_NOT_SUPPORTED);
        return;
    }
    if (t.req.size() < row->min_in) {
        t.reply = ct_reply(t.req, CT_FS_RJT, CT_RJT_INVALID_SIZE);
        return;
    }
    (this->*row->handler)(t);
}

// Port identifiers with the FC-4 type registered, the last one flagged;
// non-zero domain and area bytes narrow the scope.
void Fabric::gid_ft(CtTask &t)
{
    const uint8_t domain = t.req[17], area = t.req[18], type = t.req[19];
    std::vector<uint32_t> ids;
    for (const Entry &e : registry_) {
        if (type != FC4_TYPE_SCSI_FCP || !e.fcp)
            continue;
        if (domain && (e.did >> 16) != domain)
            continue;
        if (domain && area && ((e.did >> 8) & 0xff) != area)
            continue;
        ids.push_back(e.did);
    }
    if (ids.empty()) {
        t.reply = ct_reply(t.req, CT_FS_RJT, CT_RJT_UNABLE, CT_EXPL_FC4_TYPES_NOT_REG);
        return;
    }
    t.reply = ct_reply(t.req, CT_FS_ACC);
    for (size_t i = 0; i < ids.size(); ++i) {
        uint8_t word[4] = {static_cast<uint8_t>(i + 1 == ids.size() ? 0x80 : 0)};
        put_be24(word + 1, ids[i]);
        t.reply.insert(t.reply.end(), word, word + 4);
    }
}

void Fabric::gpn_id(CtTask &t)
{
    const Entry *e = entry(be24(&t.req[17]));
    if (!e) {
        t.reply = ct_reply(t.req, CT_FS_RJT, CT_RJT_UNABLE, CT_EXPL_PORT_ID_NOT_REG);
        return;
    }
    t.reply = ct_reply(t.req, CT_FS_ACC);
    t.reply.insert(t.reply.end(), e->wwpn.begin(), e->wwpn.end());
}

void Fabric::gnn_id(CtTask &t)
{
    const Entry *e = entry(be24(&t.req[17]));
    if (!e) {
        t.reply = ct_reply(t.req, CT_FS_RJT, CT_RJT_UNABLE, CT_EXPL_PORT_ID_NOT_REG);
        return;
    }
    t.reply = ct_reply(t.req, CT_FS_ACC);
    t.reply.insert(t.reply.end(), e->wwnn.begin(), e->wwnn.end());
}

// Length byte, then the name, padded to a whole word.
void Fabric::gspn_id(CtTask &t)
{
    const Entry *e = entry(be24(&t.req[17]));
    if (!e) {
        t.reply = ct_reply(t.req, CT_FS_RJT, CT_RJT_UNABLE, CT_EXPL_PORT_ID_NOT_REG);
        return;
    }
    if (e->symbolic_name.empty()) {
        t.reply = ct_reply(t.req, CT_FS_RJT, CT_RJT_UNABLE, CT_EXPL_SYM_PORT_NAME_NOT_REG);
        return;
    }
    const size_t len = std::min<size_t>(e->symbolic_name.size(), 255);
    t.reply = ct_reply(t.req, CT_FS_ACC);
    t.reply.push_back(static_cast<uint8_t>(len));
    t.reply.insert(t.reply.end(), e->symbolic_name.begin(),
                   e->symbolic_name.begin() + static_cast<long>(len));
    t.reply.resize((t.reply.size() + 3) & ~size_t{3}, 0);
}

// ---------------------------------------------------------------------------
// Management

void Fabric::mgmt(const RemotePort &port, std::span<const uint8_t> req, std::vector<uint8_t> &reply)
{
    if (mgmt_responder && mgmt_responder(port, req, reply))
        return;
    reply.assign(req.begin(), req.end());
}

} // namespace kvdsim
