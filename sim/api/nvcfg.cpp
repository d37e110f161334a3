// Configuration region writes: the region-write call and the configuration
// update mailbox. Both change the region the board keeps in flash, which
// getRegionData then reads back.
//
// Failures: environment not open ENXIO, no such board ENODEV, null pointers
// EFAULT; an unknown type or request, or a range outside the region (or,
// for the update mailbox, not in whole words) EINVAL; a region the board
// does not have ENOENT; the firmware taking no mailbox EBUSY; a fault rule
// "region:NAME" or "region:NUMBER" EIO, with the rule's result as the
// firmware's status.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>

#include "core/entry.hpp"
#include "pci/pci_engine.hpp"
#include "pci/regions.hpp"
#include "port/port.hpp"

using namespace kvdsim;

namespace
{

// The common path of a region change: checks, fault rule, then `change`,
// which answers 0 or an errno value (EINVAL when the range does not fit the
// region). The driver's region belongs to the port engine, which loads what
// is written into its settings. The line
// shows the bytes handed in (`in`, `in_len`) after the result.
template <class Change>
uint32_t change_region(Call &c, Board &b, uint32_t region, uint16_t *mbx_status, const uint8_t *in,
                       uint32_t in_len, Change change)
{
    const RegionRow *row = region_row(region);
    c.out(mbx_status, sizeof *mbx_status);
    auto done = [&](uint16_t status, uint32_t rc) {
        *mbx_status = status;
        c.line.result(rc);
        if (row)
            c.line.tag("region", row->name);
        if (in_len)
            c.line.bytes("in", in, in_len);
        return rc;
    };
    if (b.fw->state() != BoardState::ready)
        return done(MBX_NOT_FINISHED, EBUSY);
    if (auto hit = library_faults().match_command("region", region, row ? row->name : nullptr,
                                                  static_cast<int32_t>(b.cfg->number))) {
        done(static_cast<uint16_t>(hit->result), EIO);
        c.line.injected(hit->rule);
        return EIO;
    }
    if (region != kRegionDriver && !b.pci->region(*b.cfg, region))
        return done(MBXERR_ERROR, ENOENT);
    if (const uint32_t rc = change())
        return done(MBXERR_ERROR, rc);
    return done(MBXERR_OK, 0);
}

uint32_t region_write(Board &b, uint32_t region, uint32_t offset, const uint8_t *src, uint32_t count)
{
    if (region == kRegionDriver)
        return static_cast<uint32_t>(b.port->write_driver_region(*b.fw, offset, src, count));
    return b.pci->write_region(*b.cfg, region, offset, src, count) ? 0 : EINVAL;
}

} // namespace

uint32_t setRegionData(uint32_t board, uint32_t type, uint32_t region, uint32_t offset, uint8_t *buffer,
                       uint32_t size, uint16_t *mbx_status, uint32_t flags)
{
    return board_call<uint32_t>(
        "setRegionData", board, kErrnoFamily, buffer,
        [&](TraceLine &t) {
            t.arg("board", board)
                .arg("type", type)
                .arg("region", region)
                .arg("offset", offset)
                .arg("size", size)
                .arg("flags", flags);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (!mbx_status)
                return EFAULT;
            if (type != KVD_REGION_TYPE_CONFIG || size > KVD_REGION_MAX)
                return EINVAL;
            return change_region(c, b, region, mbx_status, buffer, size,
                                 [&] { return region_write(b, region, offset, buffer, size); });
        });
}

uint32_t KVD_IssueUpdateCfgMBox(uint32_t board, uint32_t request, uint32_t region, uint32_t offset,
                                uint8_t *buffer, uint32_t length, uint16_t *mbx_status)
{
    return board_call<uint32_t>(
        "KVD_IssueUpdateCfgMBox", board, kErrnoFamily, mbx_status,
        [&](TraceLine &t) {
            t.arg("board", board)
                .arg("request", request)
                .arg("region", region)
                .arg("offset", offset)
                .arg("length", length);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (request == KVD_UPDATE_CFG_RESTORE)
                return change_region(c, b, region, mbx_status, nullptr, 0, [&]() -> uint32_t {
                    if (region == kRegionDriver)
                        return static_cast<uint32_t>(b.port->restore_driver_region(*b.fw));
                    return b.pci->restore_region(*b.cfg, region) ? 0 : EINVAL;
                });
            if (request != KVD_UPDATE_CFG_WRITE || length > KVD_REGION_MAX || offset % 4 != 0 ||
                length % 4 != 0)
                return EINVAL;
            if (length > 0 && !buffer)
                return EFAULT;
            return change_region(c, b, region, mbx_status, buffer, length,
                                 [&] { return region_write(b, region, offset, buffer, length); });
        });
}
