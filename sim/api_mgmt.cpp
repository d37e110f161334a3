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

#include "state.hpp"

using namespace kvdsim;

namespace
{

HBA_STATUS check_board(Call &c, uint32_t board, const void *p, Board **out)
{
    if (!Library::is_open())
        return HBA_STATUS_ERROR;
    Board *b = c.lib.board(board);
    if (!b)
        return HBA_STATUS_ERROR_INVALID_HANDLE;
    if (!p)
        return HBA_STATUS_ERROR_ARG;
    *out = b;
    return HBA_STATUS_OK;
}

HBA_STATUS fail(Call &c, HBA_STATUS rc)
{
    c.line.result(rc).emit();
    return rc;
}

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
    try {
        Call c("GetRNIDMgmtInfo");
        c.line.arg("board", board);
        if (auto f = c.fault(board))
            return static_cast<HBA_STATUS>(*f);
        Board *b = nullptr;
        if (HBA_STATUS rc = check_board(c, board, info, &b))
            return fail(c, rc);
        *info = b->mgmt->info(link_view(*b));
        c.line.result(0).bytes("out", info, sizeof *info).emit();
        return HBA_STATUS_OK;
    } catch (...) {
        return HBA_STATUS_ERROR;
    }
}

HBA_STATUS SetRNIDMgmtInfo(uint32_t board, HBA_MGMTINFO *info)
{
    try {
        Call c("SetRNIDMgmtInfo");
        c.line.arg("board", board);
        if (auto f = c.fault(board))
            return static_cast<HBA_STATUS>(*f);
        Board *b = nullptr;
        if (HBA_STATUS rc = check_board(c, board, info, &b))
            return fail(c, rc);
        HBA_STATUS rc = firmware_busy(*b) ? HBA_STATUS_ERROR_BUSY : b->mgmt->set_info(*info);
        c.line.result(rc).bytes("in", info, sizeof *info).emit();
        return rc;
    } catch (...) {
        return HBA_STATUS_ERROR;
    }
}

HBA_STATUS SendRNID(uint32_t board, HBA_WWN wwn, uint32_t type, void *reply, uint32_t *length)
{
    try {
        Call c("SendRNID");
        c.line.arg("board", board)
            .arg_wwn("wwn", wwn.wwn)
            .arg("type", type)
            .arg("length", length ? *length : 0);
        if (auto f = c.fault(board))
            return static_cast<HBA_STATUS>(*f);
        Board *b = nullptr;
        if (HBA_STATUS rc = check_board(c, board, reply, &b))
            return fail(c, rc);
        if (!length)
            return fail(c, HBA_STATUS_ERROR_ARG);
        if (firmware_busy(*b))
            return fail(c, HBA_STATUS_ERROR_BUSY);
        KVD_RNID_ACC acc;
        if (HBA_STATUS rc = b->mgmt->rnid(link_view(*b), wwn, type, acc))
            return fail(c, rc);
        // A buffer shorter than the accept gets its first bytes.
        const uint32_t n = *length < sizeof acc ? *length : static_cast<uint32_t>(sizeof acc);
        memcpy(reply, &acc, n);
        *length = n;
        c.line.result(0).bytes("out", reply, n).emit();
        return HBA_STATUS_OK;
    } catch (...) {
        return HBA_STATUS_ERROR;
    }
}

HBA_STATUS RefreshInformation(uint32_t board, uint32_t flags)
{
    try {
        Call c("RefreshInformation");
        c.line.arg("board", board).arg("flags", flags);
        if (auto f = c.fault(board))
            return static_cast<HBA_STATUS>(*f);
        Board *b = nullptr;
        if (HBA_STATUS rc = check_board(c, board, &flags, &b))
            return fail(c, rc);
        return fail(c, firmware_busy(*b) ? HBA_STATUS_ERROR_BUSY : HBA_STATUS_OK);
    } catch (...) {
        return HBA_STATUS_ERROR;
    }
}

HBA_STATUS GetEventsCount(uint32_t board, uint32_t *count)
{
    try {
        Call c("GetEventsCount");
        c.line.arg("board", board);
        if (auto f = c.fault(board))
            return static_cast<HBA_STATUS>(*f);
        Board *b = nullptr;
        if (HBA_STATUS rc = check_board(c, board, count, &b))
            return fail(c, rc);
        *count = b->mgmt->events(link_view(*b));
        c.line.result(0).bytes("out", count, sizeof *count).emit();
        return HBA_STATUS_OK;
    } catch (...) {
        return HBA_STATUS_ERROR;
    }
}
