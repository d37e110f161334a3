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

#include "hba/attributes.hpp"
#include "core/state.hpp"

using namespace kvdsim;

namespace
{

// Common checks of the HBA API calls; on success *out is the board.
HBA_STATUS hba_board(Call &c, uint32_t board, const void *record, Board **out)
{
    if (!Library::is_open())
        return HBA_STATUS_ERROR;
    Board *b = c.lib.board(board);
    if (!b)
        return HBA_STATUS_ERROR_INVALID_HANDLE;
    if (!record)
        return HBA_STATUS_ERROR_ARG;
    *out = b;
    return HBA_STATUS_OK;
}

uint32_t kvd_board(Call &c, uint32_t board, const void *record, Board **out)
{
    if (!Library::is_open())
        return ENXIO;
    Board *b = c.lib.board(board);
    if (!b)
        return ENODEV;
    if (!record)
        return EFAULT;
    *out = b;
    return 0;
}

// Ends the trace line: the record received (if the call reads one) and the
// record returned (only on success).
template <class R> R finish(Call &c, R rc, const void *record, size_t size, const void *received = nullptr)
{
    c.line.result(rc);
    if (received)
        c.line.bytes("in", received, size);
    if (rc == 0)
        c.line.bytes("out", record, size);
    c.line.emit();
    return rc;
}

} // namespace

HBA_STATUS GetAdapterAttributes(uint32_t board, HBA_ADAPTERATTRIBUTES *attributes)
{
    try {
        Call c("GetAdapterAttributes");
        c.line.arg("board", board).arg_ptr("attributes", attributes);
        if (auto f = c.fault(board))
            return static_cast<HBA_STATUS>(*f);
        Board *b = nullptr;
        HBA_STATUS rc = hba_board(c, board, attributes, &b);
        if (rc == HBA_STATUS_OK)
            adapter_attributes(c.lib.fleet(), *b->cfg, *attributes);
        return finish(c, rc, attributes, sizeof *attributes);
    } catch (...) {
        return HBA_STATUS_ERROR;
    }
}

HBA_STATUS GetAdapterPortAttributes(uint32_t board, uint32_t port, HBA_PORTATTRIBUTES *attributes)
{
    try {
        Call c("GetAdapterPortAttributes");
        c.line.arg("board", board).arg("port", port).arg_ptr("attributes", attributes);
        if (auto f = c.fault(board))
            return static_cast<HBA_STATUS>(*f);
        Board *b = nullptr;
        HBA_STATUS rc = hba_board(c, board, attributes, &b);
        if (rc == HBA_STATUS_OK && port != 0)
            rc = HBA_STATUS_ERROR_ILLEGAL_INDEX; // one port per adapter
        if (rc == HBA_STATUS_OK)
            local_port_attributes(c.lib.fleet(), *b->cfg, b->fw->link(), b->fw->state(), *attributes);
        return finish(c, rc, attributes, sizeof *attributes);
    } catch (...) {
        return HBA_STATUS_ERROR;
    }
}

HBA_STATUS GetPortAttributesByIndex(uint32_t board, uint32_t port, uint32_t index,
                                    HBA_PORTATTRIBUTES *attributes)
{
    try {
        Call c("GetPortAttributesByIndex");
        c.line.arg("board", board).arg("port", port).arg("index", index).arg_ptr("attributes", attributes);
        if (auto f = c.fault(board))
            return static_cast<HBA_STATUS>(*f);
        Board *b = nullptr;
        HBA_STATUS rc = hba_board(c, board, attributes, &b);
        if (rc == HBA_STATUS_OK && (port != 0 || index != 0))
            rc = HBA_STATUS_ERROR_ILLEGAL_INDEX; // index 0 is the adapter's own port
        if (rc == HBA_STATUS_OK)
            local_port_attributes(c.lib.fleet(), *b->cfg, b->fw->link(), b->fw->state(), *attributes);
        return finish(c, rc, attributes, sizeof *attributes);
    } catch (...) {
        return HBA_STATUS_ERROR;
    }
}

HBA_STATUS GetDiscoveredPortAttributes(uint32_t board, uint32_t port, uint32_t index,
                                       HBA_PORTATTRIBUTES *attributes)
{
    try {
        Call c("GetDiscoveredPortAttributes");
        c.line.arg("board", board).arg("port", port).arg("index", index).arg_ptr("attributes", attributes);
        if (auto f = c.fault(board))
            return static_cast<HBA_STATUS>(*f);
        Board *b = nullptr;
        HBA_STATUS rc = hba_board(c, board, attributes, &b);
        if (rc == HBA_STATUS_OK) {
            LinkStatus link = b->fw->link();
            if (port != 0 || index >= discovered_ports(*b->cfg, link))
                rc = HBA_STATUS_ERROR_ILLEGAL_INDEX;
            else
                remote_port_attributes(*b->cfg, b->cfg->remote_ports[index], link, *attributes);
        }
        return finish(c, rc, attributes, sizeof *attributes);
    } catch (...) {
        return HBA_STATUS_ERROR;
    }
}

HBA_STATUS GetPortAttributesByWWN(uint32_t board, HBA_WWN wwn, HBA_PORTATTRIBUTES *attributes)
{
    try {
        Call c("GetPortAttributesByWWN");
        c.line.arg("board", board).arg_wwn("wwn", wwn.wwn).arg_ptr("attributes", attributes);
        if (auto f = c.fault(board))
            return static_cast<HBA_STATUS>(*f);
        Board *b = nullptr;
        HBA_STATUS rc = hba_board(c, board, attributes, &b);
        if (rc == HBA_STATUS_OK) {
            const BoardSpec &cfg = *b->cfg;
            LinkStatus link = b->fw->link();
            rc = HBA_STATUS_ERROR_ILLEGAL_WWN;
            if (memcmp(wwn.wwn, cfg.wwpn.data(), 8) == 0) {
                local_port_attributes(c.lib.fleet(), cfg, link, b->fw->state(), *attributes);
                rc = HBA_STATUS_OK;
            } else {
                for (uint32_t i = 0; i < discovered_ports(cfg, link); ++i) {
                    if (memcmp(wwn.wwn, cfg.remote_ports[i].wwpn.data(), 8) == 0) {
                        remote_port_attributes(cfg, cfg.remote_ports[i], link, *attributes);
                        rc = HBA_STATUS_OK;
                        break;
                    }
                }
            }
        }
        return finish(c, rc, attributes, sizeof *attributes);
    } catch (...) {
        return HBA_STATUS_ERROR;
    }
}

HBA_STATUS GetPortStatistics(uint32_t board, uint32_t port, HBA_PORTSTATISTICS *statistics)
{
    try {
        Call c("GetPortStatistics");
        c.line.arg("board", board).arg("port", port).arg_ptr("statistics", statistics);
        if (auto f = c.fault(board))
            return static_cast<HBA_STATUS>(*f);
        Board *b = nullptr;
        HBA_STATUS rc = hba_board(c, board, statistics, &b);
        if (rc == HBA_STATUS_OK && port != 0)
            rc = HBA_STATUS_ERROR_ILLEGAL_INDEX;
        if (rc == HBA_STATUS_OK)
            port_statistics(b->fw->counters(), *statistics);
        return finish(c, rc, statistics, sizeof *statistics);
    } catch (...) {
        return HBA_STATUS_ERROR;
    }
}

uint32_t KVD_GetLinkInfo(uint32_t board, LINKINFO *info)
{
    try {
        Call c("KVD_GetLinkInfo");
        c.line.arg("board", board).arg_ptr("info", info);
        if (auto f = c.fault(board))
            return static_cast<uint32_t>(*f);
        Board *b = nullptr;
        uint32_t rc = kvd_board(c, board, info, &b);
        if (rc == 0)
            link_info(*b->cfg, b->fw->link(), *info);
        return finish(c, rc, info, sizeof *info);
    } catch (...) {
        return ENOMEM;
    }
}

uint32_t KVD_GetDrvInfo(uint32_t board, KVDDRVINFO *info)
{
    try {
        Call c("KVD_GetDrvInfo");
        c.line.arg("board", board).arg_ptr("info", info);
        if (auto f = c.fault(board))
            return static_cast<uint32_t>(*f);
        KVDDRVINFO received{};
        if (info)
            memcpy(&received, info, sizeof received);
        Board *b = nullptr;
        uint32_t rc = kvd_board(c, board, info, &b);
        if (rc == 0 && info->drvInfoVer != KVD_DRVINFO_VERSION)
            rc = EINVAL; // a record of another version has another layout
        if (rc == 0)
            driver_info(c.lib.fleet(), *b->cfg, b->fw->link(), *info);
        return finish(c, rc, info, sizeof *info, info ? &received : nullptr);
    } catch (...) {
        return ENOMEM;
    }
}
