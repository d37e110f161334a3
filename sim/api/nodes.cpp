// Discovered nodes, VPD, persistent bindings and the FCP target mapping.
//
// Failures: the maker's calls answer errno values (ENXIO environment not
// open, ENODEV no such board, EFAULT null record, EBUSY board offline,
// EINVAL unknown VPD version); the HBA API names answer HBA statuses.
// GetNodeInfo returns a count, and -1 for any failure.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <algorithm>
#include <cstring>

#include "core/entry.hpp"

using namespace kvdsim;

namespace
{

constexpr CallFamily kCountFamily{-1, -1, -1, -1};

bool online(const Board &b)
{
    return b.fw->state() == BoardState::ready;
}

bool link_up(const Board &b)
{
    return online(b) && b.fw->link().up;
}

// Copies the entries that fit the room the caller gave (its count on
// entry); a room too small gets the count needed and MORE_DATA.
template <class Entry, class Mapping>
HBA_STATUS hand_over(Call &c, const std::vector<HBA_FCPSCSIENTRYV2> &all, Mapping *mapping)
{
    const uint32_t room = mapping->NumberOfEntries;
    c.out(mapping, offsetof(Mapping, entry) + size_t{room} * sizeof(Entry));
    const size_t n = std::min<size_t>(room, all.size());
    for (size_t i = 0; i < n; ++i) {
        Entry e;
        memcpy(&e, &all[i], sizeof e); // the V1 entry is the head of the V2 one
        memcpy(reinterpret_cast<uint8_t *>(mapping) + offsetof(Mapping, entry) + i * sizeof e, &e, sizeof e);
    }
    mapping->NumberOfEntries = static_cast<uint32_t>(all.size());
    const HBA_STATUS rc = all.size() > room ? HBA_STATUS_ERROR_MORE_DATA : HBA_STATUS_OK;
    c.line.result(rc).tag("entries", std::to_string(all.size()).c_str());
    return rc;
}

} // namespace

int32_t GetNodeInfo(uint32_t board, void *buf)
{
    return board_call<int32_t>(
        "GetNodeInfo", board, kCountFamily, buf, [&](TraceLine &t) { t.arg("board", board); },
        [&](Call &c, Board &b) -> int32_t {
            c.out(buf, KVD_NODEINFO_MAX * sizeof(NODEINFO));
            if (!online(b))
                return -1;
            const std::vector<NODEINFO> nodes = b.npiv->seen_by_board(link_up(b));
            const size_t n = std::min<size_t>(nodes.size(), KVD_NODEINFO_MAX);
            if (n)
                memcpy(buf, nodes.data(), n * sizeof(NODEINFO));
            return static_cast<int32_t>(n);
        });
}

uint32_t GetVPDInfo(uint32_t board, VPD *vpd)
{
    return board_call<uint32_t>(
        "GetVPDInfo", board, kErrnoFamily, vpd,
        [&](TraceLine &t) {
            t.arg("board", board);
            if (vpd)
                t.arg("version", vpd->version);
        },
        [&](Call &c, Board &b) -> uint32_t {
            c.out(vpd, sizeof *vpd);
            if (vpd->version != KVD_VPD_VERSION)
                return EINVAL;
            if (!online(b))
                return EBUSY;
            VPD out{};
            out.version = KVD_VPD_VERSION;
            const uint32_t rc = b.nodes->vpd(out);
            if (rc == 0)
                *vpd = out;
            return rc;
        });
}

uint32_t GetFcpBindList(uint32_t board, HBA_BIND_LIST *list)
{
    return board_call<uint32_t>(
        "GetFcpBindList", board, kHbaFamily, list,
        [&](TraceLine &t) {
            t.arg("board", board);
            if (list)
                t.arg("room", list->NumberOfEntries);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (!online(b))
                return HBA_STATUS_ERROR_BUSY;
            const std::vector<HBA_BIND_ENTRY> &all = b.nodes->bindings();
            const uint32_t room = list->NumberOfEntries;
            c.out(list, offsetof(HBA_BIND_LIST, entry) + size_t{room} * sizeof(HBA_BIND_ENTRY));
            const size_t n = std::min<size_t>(room, all.size());
            if (n)
                memcpy(list->entry, all.data(), n * sizeof(HBA_BIND_ENTRY));
            list->NumberOfEntries = static_cast<uint32_t>(all.size());
            const uint32_t rc = all.size() > room ? HBA_STATUS_ERROR_MORE_DATA : HBA_STATUS_OK;
            c.line.result(rc).tag("entries", std::to_string(all.size()).c_str());
            return rc;
        });
}

HBA_STATUS GetFcpTargetMapping(uint32_t board, HBA_FCPTARGETMAPPING *mapping)
{
    return board_call<HBA_STATUS>(
        "GetFcpTargetMapping", board, kHbaFamily, mapping,
        [&](TraceLine &t) {
            t.arg("board", board);
            if (mapping)
                t.arg("room", mapping->NumberOfEntries);
        },
        [&](Call &c, Board &b) -> HBA_STATUS {
            if (!online(b))
                return HBA_STATUS_ERROR_BUSY;
            const auto all = b.nodes->mapping(*b.scsi, c.lib.fleet().driver_name, link_up(b));
            return hand_over<HBA_FCPSCSIENTRY>(c, all, mapping);
        });
}

HBA_STATUS KVD_GetFcpTargetMappingV2(uint32_t board, HBA_WWN wwpn, HBA_FCPTARGETMAPPINGV2 *mapping)
{
    return board_call<HBA_STATUS>(
        "KVD_GetFcpTargetMappingV2", board, kHbaFamily, mapping,
        [&](TraceLine &t) {
            t.arg("board", board).arg_wwn("wwpn", wwpn.wwn);
            if (mapping)
                t.arg("room", mapping->NumberOfEntries);
        },
        [&](Call &c, Board &b) -> HBA_STATUS {
            if (memcmp(wwpn.wwn, b.cfg->wwpn.data(), 8) != 0)
                return HBA_STATUS_ERROR_ILLEGAL_WWN;
            if (!online(b))
                return HBA_STATUS_ERROR_BUSY;
            const auto all = b.nodes->mapping(*b.scsi, c.lib.fleet().driver_name, link_up(b));
            return hand_over<HBA_FCPSCSIENTRYV2>(c, all, mapping);
        });
}
