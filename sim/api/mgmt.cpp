// RNID management information, the RNID request, the library's refresh and
// its count of held events.
//
// Failures: environment not open HBA_STATUS_ERROR, no such board
// HBA_STATUS_ERROR_INVALID_HANDLE, null record HBA_STATUS_ERROR_ARG. What
// goes to the firmware (setting the record, an RNID on the link, a refresh)
// answers HBA_STATUS_ERROR_BUSY while the board takes no mailbox.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cstring>

#include "core/entry.hpp"

using namespace kvdsim;

namespace
{

bool firmware_busy(const Board &b)
{
    return b.fw->state() != BoardState::ready;
}

MgmtLinkView link_view(const Board &b)
{
    const LinkStatus l = b.fw->link();
    MgmtLinkView v;
    v.up = l.up;
    v.did = l.did;
    v.loop = l.topology == LNK_LOOP || l.topology == LNK_PUBLIC_LOOP;
    v.event_tag = l.event_tag;
    return v;
}

} // namespace

HBA_STATUS GetRNIDMgmtInfo(uint32_t board, HBA_MGMTINFO *info)
{
    return board_call<HBA_STATUS>(
        "GetRNIDMgmtInfo", board, kHbaFamily, info, [&](TraceLine &t) { t.arg("board", board); },
        [&](Call &c, Board &b) -> HBA_STATUS {
            c.out(info, sizeof *info);
            *info = b.mgmt->info(link_view(b));
            c.line.result(0).bytes("out", info, sizeof *info);
            return HBA_STATUS_OK;
        });
}

HBA_STATUS SetRNIDMgmtInfo(uint32_t board, HBA_MGMTINFO *info)
{
    return board_call<HBA_STATUS>(
        "SetRNIDMgmtInfo", board, kHbaFamily, info, [&](TraceLine &t) { t.arg("board", board); },
        [&](Call &c, Board &b) -> HBA_STATUS {
            HBA_STATUS rc = firmware_busy(b) ? HBA_STATUS_ERROR_BUSY : b.mgmt->set_info(*info);
            c.line.result(rc).bytes("in", info, sizeof *info);
            return rc;
        });
}

HBA_STATUS SendRNID(uint32_t board, HBA_WWN wwn, uint32_t type, void *reply, uint32_t *length)
{
    return board_call<HBA_STATUS>(
        "SendRNID", board, kHbaFamily, reply,
        [&](TraceLine &t) {
            t.arg("board", board)
                .arg_wwn("wwn", wwn.wwn)
                .arg("type", type)
                .arg("length", length ? *length : 0);
        },
        [&](Call &c, Board &b) -> HBA_STATUS {
            if (!length)
                return HBA_STATUS_ERROR_ARG;
            c.out(reply, *length);
            c.out(length, sizeof *length);
            if (firmware_busy(b))
                return HBA_STATUS_ERROR_BUSY;
            KVD_RNID_ACC acc;
            if (HBA_STATUS rc = b.mgmt->rnid(link_view(b), wwn, type, acc))
                return rc;
            // A buffer shorter than the accept gets its first bytes.
            const uint32_t n = *length < sizeof acc ? *length : static_cast<uint32_t>(sizeof acc);
            memcpy(reply, &acc, n);
            *length = n;
            c.line.result(0).bytes("out", reply, n);
            return HBA_STATUS_OK;
        });
}

HBA_STATUS RefreshInformation(uint32_t board, uint32_t flags)
{
    return board_call<HBA_STATUS>(
        "RefreshInformation", board, kHbaFamily,
        [&](TraceLine &t) { t.arg("board", board).arg("flags", flags); },
        [&](Call &, Board &b) -> HBA_STATUS {
            return firmware_busy(b) ? HBA_STATUS_ERROR_BUSY : HBA_STATUS_OK;
        });
}

HBA_STATUS GetEventsCount(uint32_t board, uint32_t *count)
{
    return board_call<HBA_STATUS>(
        "GetEventsCount", board, kHbaFamily, count, [&](TraceLine &t) { t.arg("board", board); },
        [&](Call &c, Board &b) -> HBA_STATUS {
            c.out(count, sizeof *count);
            *count = b.mgmt->events(link_view(b));
            c.line.result(0).bytes("out", count, sizeof *count);
            return HBA_STATUS_OK;
        });
}
