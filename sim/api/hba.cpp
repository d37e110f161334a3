// HBA API attribute queries and the library's link and driver queries.
//
// Failures: environment not open -> HBA_STATUS_ERROR (ENXIO for the KVD_
// calls); no such board -> HBA_STATUS_ERROR_INVALID_HANDLE (ENODEV); null
// record -> HBA_STATUS_ERROR_ARG (EFAULT). Records are written only on
// success.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>
#include <cstring>

#include "core/entry.hpp"
#include "hba/attributes.hpp"

using namespace kvdsim;

static_assert(kHbaFamily.not_open == HBA_STATUS_ERROR &&
              kHbaFamily.no_board == HBA_STATUS_ERROR_INVALID_HANDLE &&
              kHbaFamily.no_record == HBA_STATUS_ERROR_ARG && kHbaFamily.no_memory == HBA_STATUS_ERROR);

namespace
{

// Puts the returned record on the trace line (only on success) after the
// result, and the record as received before it when the call reads one.
template <class R> R traced(Call &c, R rc, void *record, size_t size, const void *received = nullptr)
{
    c.out(record, size);
    c.line.result(rc);
    if (received)
        c.line.bytes("in", received, size);
    if (rc == 0)
        c.line.bytes("out", record, size);
    return rc;
}

} // namespace

HBA_STATUS GetAdapterAttributes(uint32_t board, HBA_ADAPTERATTRIBUTES *attributes)
{
    return board_call<HBA_STATUS>(
        "GetAdapterAttributes", board, kHbaFamily, attributes,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("attributes", attributes); },
        [&](Call &c, Board &b) {
            adapter_attributes(c.lib.fleet(), *b.cfg, *attributes);
            return traced(c, HBA_STATUS_OK, attributes, sizeof *attributes);
        });
}

namespace
{

// The adapter's own port: port 0, and index 0 among the ports by index
// (the by-index call traces its index; the plain one has none).
HBA_STATUS own_port(const char *name, uint32_t board, uint32_t port, const uint32_t *index,
                    HBA_PORTATTRIBUTES *attributes)
{
    return board_call<HBA_STATUS>(
        name, board, kHbaFamily, attributes,
        [&](TraceLine &t) {
            t.arg("board", board).arg("port", port);
            if (index)
                t.arg("index", *index);
            t.arg_ptr("attributes", attributes);
        },
        [&](Call &c, Board &b) {
            if (port != 0 || (index && *index != 0)) // one port per adapter
                return traced(c, HBA_STATUS_ERROR_ILLEGAL_INDEX, attributes, sizeof *attributes);
            local_port_attributes(c.lib.fleet(), *b.cfg, b.fw->link(), b.fw->state(), *attributes);
            return traced(c, HBA_STATUS_OK, attributes, sizeof *attributes);
        });
}

} // namespace

HBA_STATUS GetAdapterPortAttributes(uint32_t board, uint32_t port, HBA_PORTATTRIBUTES *attributes)
{
    return own_port("GetAdapterPortAttributes", board, port, nullptr, attributes);
}

HBA_STATUS GetPortAttributesByIndex(uint32_t board, uint32_t port, uint32_t index,
                                    HBA_PORTATTRIBUTES *attributes)
{
    return own_port("GetPortAttributesByIndex", board, port, &index, attributes);
}

HBA_STATUS GetDiscoveredPortAttributes(uint32_t board, uint32_t port, uint32_t index,
                                       HBA_PORTATTRIBUTES *attributes)
{
    return board_call<HBA_STATUS>(
        "GetDiscoveredPortAttributes", board, kHbaFamily, attributes,
        [&](TraceLine &t) {
            t.arg("board", board).arg("port", port).arg("index", index).arg_ptr("attributes", attributes);
        },
        [&](Call &c, Board &b) {
            LinkStatus link = b.fw->link();
            if (port != 0 || index >= discovered_ports(*b.cfg, link))
                return traced(c, HBA_STATUS_ERROR_ILLEGAL_INDEX, attributes, sizeof *attributes);
            remote_port_attributes(*b.cfg, b.cfg->remote_ports[index], link, *attributes);
            return traced(c, HBA_STATUS_OK, attributes, sizeof *attributes);
        });
}

HBA_STATUS GetPortAttributesByWWN(uint32_t board, HBA_WWN wwn, HBA_PORTATTRIBUTES *attributes)
{
    return board_call<HBA_STATUS>(
        "GetPortAttributesByWWN", board, kHbaFamily, attributes,
        [&](TraceLine &t) {
            t.arg("board", board).arg_wwn("wwn", wwn.wwn).arg_ptr("attributes", attributes);
        },
        [&](Call &c, Board &b) {
            const BoardConf &cfg = *b.cfg;
            LinkStatus link = b.fw->link();
            if (memcmp(wwn.wwn, cfg.wwpn.data(), 8) == 0) {
                local_port_attributes(c.lib.fleet(), cfg, link, b.fw->state(), *attributes);
                return traced(c, HBA_STATUS_OK, attributes, sizeof *attributes);
            }
            for (uint32_t i = 0; i < discovered_ports(cfg, link); ++i) {
                if (memcmp(wwn.wwn, cfg.remote_ports[i].wwpn.data(), 8) == 0) {
                    remote_port_attributes(cfg, cfg.remote_ports[i], link, *attributes);
                    return traced(c, HBA_STATUS_OK, attributes, sizeof *attributes);
                }
            }
            return traced(c, HBA_STATUS_ERROR_ILLEGAL_WWN, attributes, sizeof *attributes);
        });
}

HBA_STATUS GetPortStatistics(uint32_t board, uint32_t port, HBA_PORTSTATISTICS *statistics)
{
    return board_call<HBA_STATUS>(
        "GetPortStatistics", board, kHbaFamily, statistics,
        [&](TraceLine &t) { t.arg("board", board).arg("port", port).arg_ptr("statistics", statistics); },
        [&](Call &c, Board &b) {
            if (port != 0)
                return traced(c, HBA_STATUS_ERROR_ILLEGAL_INDEX, statistics, sizeof *statistics);
            port_statistics(b.fw->counters(), *statistics);
            return traced(c, HBA_STATUS_OK, statistics, sizeof *statistics);
        });
}

uint32_t KVD_GetLinkInfo(uint32_t board, LINKINFO *info)
{
    return board_call<uint32_t>(
        "KVD_GetLinkInfo", board, kErrnoFamily, info,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("info", info); },
        [&](Call &c, Board &b) {
            link_info(*b.cfg, b.fw->link(), *info);
            return traced(c, 0u, info, sizeof *info);
        });
}

uint32_t KVD_GetDrvInfo(uint32_t board, KVDDRVINFO *info)
{
    return board_call<uint32_t>(
        "KVD_GetDrvInfo", board, kErrnoFamily, info,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("info", info); },
        [&](Call &c, Board &b) {
            KVDDRVINFO received;
            memcpy(&received, info, sizeof received);
            if (info->drvInfoVer != KVD_DRVINFO_VERSION) // another version has another layout
                return traced(c, static_cast<uint32_t>(EINVAL), info, sizeof *info, &received);
            driver_info(c.lib.fleet(), *b.cfg, b.fw->link(), *info);
            return traced(c, 0u, info, sizeof *info, &received);
        });
}
