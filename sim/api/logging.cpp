// Logging controls: the library's own syslog mask and the driver's logging
// mask of each board.
//
// Failures: environment not open ENXIO, no such board ENODEV, null pointer
// EFAULT, bits outside the known kinds EINVAL.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>

#include "core/entry.hpp"
#include "port/port.hpp"

using namespace kvdsim;

uint32_t KVD_SetLibLogging(uint32_t mask)
{
    return library_call<uint32_t>(
        "KVD_SetLibLogging", kErrnoFamily, [&](TraceLine &t) { t.arg("mask", mask); },
        [&](Call &) -> uint32_t {
            if (!Library::is_open())
                return ENXIO;
            if (mask & ~KVD_SYSLOG_ALL)
                return EINVAL;
            libkvd_logging_enable = mask;
            return 0;
        });
}

uint32_t KVD_GetDriverLogMask(uint32_t board, uint32_t *mask)
{
    return board_call<uint32_t>(
        "KVD_GetDriverLogMask", board, kErrnoFamily, mask,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("mask", mask); },
        [&](Call &c, Board &b) -> uint32_t {
            c.out(mask, sizeof *mask);
            uint32_t out = 0;
            PortCommand cmd{*b.fw, {reinterpret_cast<uint8_t *>(&out), sizeof out}};
            const int32_t rc = engine_request(c, *b.port, kPortGetLogMask, cmd);
            if (rc == 0) {
                *mask = out;
                c.line.bytes("out", mask, sizeof *mask);
            }
            return static_cast<uint32_t>(rc);
        });
}

uint32_t KVD_SetDriverLogMask(uint32_t board, uint32_t mask)
{
    return board_call<uint32_t>(
        "KVD_SetDriverLogMask", board, kErrnoFamily,
        [&](TraceLine &t) { t.arg("board", board).arg("mask", mask); },
        [&](Call &c, Board &b) -> uint32_t {
            PortCommand cmd{*b.fw, {}};
            cmd.args[0] = mask;
            return static_cast<uint32_t>(engine_request(c, *b.port, kPortSetLogMask, cmd));
        });
}
