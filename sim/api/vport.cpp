// NPIV virtual ports: creation and deletion, attributes, the list, the nodes
// a port sees, the resources, the readiness test, and the board behind a
// virtual port's SCSI host.
//
// Failures are errno values: ENXIO environment not open, ENODEV no such
// board, EFAULT null record, EBUSY board offline, EINVAL a record version
// other than 3 or an option bit not defined, ENOENT no such port, E2BIG a
// list room too small (the entries that fit, and the count needed), and what
// the driver refuses a creation with (EOPNOTSUPP, ENOSPC, EEXIST, EINVAL).
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <set>

#include "core/entry.hpp"

using namespace kvdsim;

namespace
{

constexpr uint32_t kCreateOptions = KVD_VPOPT_RESTRICT_LOGIN | KVD_VPOPT_AUTO_WWN;

bool online(const Board &b)
{
    return b.fw->state() == BoardState::ready;
}

bool link_up(const Board &b)
{
    return online(b) && b.fw->link().up;
}

Wwn wwn_of(const HBA_WWN &w)
{
    Wwn out;
    memcpy(out.data(), w.wwn, 8);
    return out;
}

void put_wwn(HBA_WWN &dst, const Wwn &src)
{
    memcpy(dst.wwn, src.data(), 8);
}

void fill(KVD_VPATTRIB &a, const Board &b, const Vport &v)
{
    a = KVD_VPATTRIB{};
    a.ver = KVD_VPATTRIB_VERSION;
    put_wwn(a.wwpn, v.wwpn);
    put_wwn(a.wwnn, v.wwnn);
    const size_t n = std::min(v.name.size(), sizeof a.name - 1);
    memcpy(a.name, v.name.data(), n);
    a.options = v.options;
    a.portFcId = v.did;
    a.state = v.state;
    a.restrictLogin = v.restrict_login ? 1 : 0;
    a.flags = v.is_static ? KVD_VPFLAG_STATIC : 0;
    a.buf = v.host;
    if (v.state == KVD_VPSTATE_ACTIVE)
        put_wwn(a.fabricName, b.cfg->fabric_name);
    a.checklist = b.npiv->checklist(link_up(b));
}

// The SCSI host number a new virtual port gets: the lowest one above every
// adapter's own that no virtual port holds.
uint32_t next_host(Library &lib)
{
    uint32_t first = 0;
    std::set<uint32_t> used;
    for (uint32_t i = 0; i < KVD_MAX_BOARDS; ++i) {
        const Board *b = lib.board(i);
        if (!b)
            continue;
        first = std::max(first, static_cast<uint32_t>(b->cfg->host) + 1);
        for (const Vport &v : b->npiv->vports())
            used.insert(v.host);
    }
    while (used.count(first))
        ++first;
    return first;
}

void tag_port(Call &c, const Vport &v)
{
    char text[40];
    snprintf(text, sizeof text, "0x%06x", v.did);
    c.line.tag("did", text);
    c.line.tag("host", std::to_string(v.host).c_str());
}

} // namespace

uint32_t KVD_VPCreate(uint32_t board, const char *name, KVD_VPATTRIB *attributes)
{
    return board_call<uint32_t>(
        "KVD_VPCreate", board, kErrnoFamily, attributes,
        [&](TraceLine &t) {
            t.arg("board", board);
            if (attributes)
                t.arg("ver", attributes->ver)
                    .arg_wwn("wwpn", attributes->wwpn.wwn)
                    .arg_wwn("wwnn", attributes->wwnn.wwn)
                    .arg_hex("options", attributes->options);
        },
        [&](Call &c, Board &b) -> uint32_t {
            c.out(attributes, sizeof *attributes);
            if (attributes->ver != KVD_VPATTRIB_VERSION || (attributes->options & ~kCreateOptions))
                return EINVAL;
            if (!online(b))
                return EBUSY;
            const uint32_t options = attributes->options;
            Wwn wwpn{}, wwnn{};
            if (!(options & KVD_VPOPT_AUTO_WWN)) {
                wwpn = wwn_of(attributes->wwpn);
                wwnn = wwn_of(attributes->wwnn);
            }
            std::string text;
            if (name)
                text.assign(name, strnlen(name, KVD_VPNAME_SIZE));
            Vport made;
            const uint32_t rc =
                b.npiv->create(wwpn, wwnn, text, options, next_host(c.lib), link_up(b), &made);
            if (rc != 0)
                return rc;
            b.sd->vport_created(made);
            fill(*attributes, b, made);
            c.line.result(0);
            tag_port(c, made);
            return 0;
        });
}

uint32_t KVD_VPDeleteV2(uint32_t board, HBA_WWN wwpn, uint32_t options, void *reserved)
{
    (void)reserved;
    return board_call<uint32_t>(
        "KVD_VPDeleteV2", board, kErrnoFamily,
        [&](TraceLine &t) { t.arg("board", board).arg_wwn("wwpn", wwpn.wwn).arg_hex("options", options); },
        [&](Call &, Board &b) -> uint32_t {
            if (options != 0) // no deletion option is defined
                return EINVAL;
            if (!online(b))
                return EBUSY;
            const Vport *v = b.npiv->find(wwn_of(wwpn));
            if (!v)
                return ENOENT;
            const Vport gone = *v;
            const uint32_t rc = b.npiv->remove(gone.wwpn);
            if (rc == 0)
                b.sd->vport_deleted(gone);
            return rc;
        });
}

uint32_t KVD_VPGetAttrib(uint32_t board, HBA_WWN wwpn, KVD_VPATTRIB *attributes)
{
    return board_call<uint32_t>(
        "KVD_VPGetAttrib", board, kErrnoFamily, attributes,
        [&](TraceLine &t) { t.arg("board", board).arg_wwn("wwpn", wwpn.wwn); },
        [&](Call &c, Board &b) -> uint32_t {
            c.out(attributes, sizeof *attributes);
            if (attributes->ver != KVD_VPATTRIB_VERSION)
                return EINVAL;
            if (!online(b))
                return EBUSY;
            const Vport *v = b.npiv->find(wwn_of(wwpn));
            if (!v)
                return ENOENT;
            fill(*attributes, b, *v);
            return 0;
        });
}

uint32_t KVD_VPGetList(uint32_t board, KVD_VPENTRYLIST *list)
{
    return board_call<uint32_t>(
        "KVD_VPGetList", board, kErrnoFamily, list,
        [&](TraceLine &t) {
            t.arg("board", board);
            if (list)
                t.arg("room", list->numberOfEntries);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (!online(b))
                return EBUSY;
            const std::vector<Vport> &all = b.npiv->vports();
            const uint32_t room = list->numberOfEntries;
            c.out(list, offsetof(KVD_VPENTRYLIST, vpentry) + size_t{room} * sizeof(KVD_VPENTRY));
            const size_t n = std::min<size_t>(room, all.size());
            auto *base = reinterpret_cast<uint8_t *>(list) + offsetof(KVD_VPENTRYLIST, vpentry);
            for (size_t i = 0; i < n; ++i) {
                KVD_VPENTRY e{};
                put_wwn(e.wwpn, all[i].wwpn);
                put_wwn(e.wwnn, all[i].wwnn);
                e.portFcId = all[i].did;
                memcpy(base + i * sizeof e, &e, sizeof e);
            }
            list->numberOfEntries = static_cast<uint32_t>(all.size());
            const uint32_t rc = all.size() > room ? E2BIG : 0;
            c.line.result(rc).tag("entries", std::to_string(all.size()).c_str());
            return rc;
        });
}

uint32_t KVD_GetAllNodeInfoByWWN(uint32_t board, HBA_WWN wwpn, KVD_GETNODEINFO *list)
{
    return board_call<uint32_t>(
        "KVD_GetAllNodeInfoByWWN", board, kErrnoFamily, list,
        [&](TraceLine &t) {
            t.arg("board", board).arg_wwn("wwpn", wwpn.wwn);
            if (list)
                t.arg("room", list->numberOfEntries);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (!online(b))
                return EBUSY;
            const Wwn port = wwn_of(wwpn);
            std::vector<NODEINFO> nodes;
            if (port == b.cfg->wwpn) {
                nodes = b.npiv->seen_by_board(link_up(b));
            } else if (const Vport *v = b.npiv->find(port)) {
                nodes = b.npiv->seen_by(*v);
            } else {
                return ENOENT;
            }
            const uint32_t room = list->numberOfEntries;
            c.out(list, offsetof(KVD_GETNODEINFO, nodeInfo) + size_t{room} * sizeof(KVD_NODEINFOENTRY));
            const size_t n = std::min<size_t>(room, nodes.size());
            auto *base = reinterpret_cast<uint8_t *>(list) + offsetof(KVD_GETNODEINFO, nodeInfo);
            for (size_t i = 0; i < n; ++i) {
                KVD_NODEINFOENTRY e{};
                e.type = nodes[i].a_flag;
                e.nodeState = nodes[i].a_state;
                e.scsiId.ScsiTargetNumber = nodes[i].a_targetid;
                e.fcpId.FcId = nodes[i].a_did;
                memcpy(e.fcpId.NodeWWN.wwn, nodes[i].a_wwnn, 8);
                memcpy(e.fcpId.PortWWN.wwn, nodes[i].a_wwpn, 8);
                memcpy(base + i * sizeof e, &e, sizeof e);
            }
            list->numberOfEntries = static_cast<uint32_t>(nodes.size());
            const uint32_t rc = nodes.size() > room ? E2BIG : 0;
            c.line.result(rc).tag("entries", std::to_string(nodes.size()).c_str());
            return rc;
        });
}

uint32_t KVD_VPGetResource(uint32_t board, KVD_VPRESOURCE *resource)
{
    return board_call<uint32_t>(
        "KVD_VPGetResource", board, kErrnoFamily, resource, [&](TraceLine &t) { t.arg("board", board); },
        [&](Call &c, Board &b) -> uint32_t {
            c.out(resource, sizeof *resource);
            if (!online(b))
                return EBUSY;
            resource->vlinks_max = b.npiv->max_vports();
            resource->vlinks_inuse = static_cast<uint32_t>(b.npiv->vports().size());
            resource->rpi_max = Firmware::max_rpi();
            resource->rpi_inuse = b.npiv->rpis_in_use(link_up(b));
            return 0;
        });
}

uint32_t KVD_NPIVReadyTest(uint32_t board, uint32_t *checklist)
{
    return board_call<uint32_t>(
        "KVD_NPIVReadyTest", board, kErrnoFamily, checklist, [&](TraceLine &t) { t.arg("board", board); },
        [&](Call &c, Board &b) -> uint32_t {
            if (!online(b))
                return EBUSY;
            c.out(checklist, sizeof *checklist);
            *checklist = b.npiv->checklist(link_up(b));
            char text[16];
            snprintf(text, sizeof text, "0x%02x", *checklist);
            c.line.result(0).tag("checklist", text);
            return 0;
        });
}

uint32_t vpGetPhys(uint32_t host, uint32_t *instance, uint32_t *physical_host)
{
    return library_call<uint32_t>(
        "vpGetPhys", kErrnoFamily, [&](TraceLine &t) { t.arg("host", host); },
        [&](Call &c) -> uint32_t {
            if (!Library::is_open())
                return ENXIO;
            if (!instance || !physical_host)
                return EFAULT;
            c.out(instance, sizeof *instance);
            c.out(physical_host, sizeof *physical_host);
            for (uint32_t i = 0; i < KVD_MAX_BOARDS; ++i) {
                const Board *b = c.lib.board(i);
                if (!b)
                    continue;
                for (const Vport &v : b->npiv->vports()) {
                    if (v.host != host)
                        continue;
                    *instance = b->cfg->instance;
                    *physical_host = static_cast<uint32_t>(b->cfg->host);
                    return 0;
                }
            }
            return ENOENT;
        });
}
