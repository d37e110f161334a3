// Loopback tests and the ring image.
//
// Internal and external loops: KVD_ConfigLoopback takes the port off the
// fabric (the link goes down), each KVD_RunLoopbackTest sends one frame
// from the caller's transmit buffer and writes what came back into its
// receive buffer, KVD_EndLoopback brings the link back. The PCI loop is a
// mailbox command (RUN_BIU_DIAG64) and needs none of these.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>

#include "core/entry.hpp"

using namespace kvdsim;

uint32_t KVD_ConfigLoopback(uint32_t board, uint32_t type, uint32_t timeout)
{
    return board_call<uint32_t>(
        "KVD_ConfigLoopback", board, kErrnoFamily,
        [&](TraceLine &t) { t.arg("board", board).arg("type", type).arg("timeout", timeout); },
        [&](Call &, Board &b) { return b.diag->config_loopback(*b.fw, type, timeout); });
}

uint32_t KVD_RunLoopbackTest(uint32_t board, LOOPBACK *loopback)
{
    return board_call<uint32_t>(
        "KVD_RunLoopbackTest", board, kErrnoFamily, loopback,
        [&](TraceLine &t) {
            t.arg("board", board).arg_ptr("loopback", loopback);
            if (loopback)
                t.arg("size", loopback->bufSize);
        },
        [&](Call &c, Board &b) {
            // The frames received land in the caller's receive buffer.
            c.out(loopback->RcvBuffer, loopback->bufSize);
            ProcessMemory mem;
            return b.diag->run_loopback(*loopback, mem);
        });
}

uint32_t KVD_EndLoopback(uint32_t board)
{
    return board_call<uint32_t>(
        "KVD_EndLoopback", board, kErrnoFamily, [&](TraceLine &t) { t.arg("board", board); },
        [&](Call &, Board &b) { return b.diag->end_loopback(*b.fw, !b.port || b.port->link_allowed()); });
}

uint32_t KVD_GetSliImage(uint32_t board, void *buffer, uint32_t *length)
{
    return board_call<uint32_t>(
        "KVD_GetSliImage", board, kErrnoFamily, length,
        [&](TraceLine &t) {
            t.arg("board", board).arg_ptr("buffer", buffer).arg("length", length ? *length : 0);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (!buffer)
                return EFAULT;
            if (*length < sizeof(kvdsli_t))
                return EINVAL;
            c.out(buffer, *length);
            c.out(length, sizeof *length);
            *length = b.diag->image({static_cast<uint8_t *>(buffer), *length});
            c.line.result(0).bytes("out", buffer, sizeof(kvdsli_t));
            return 0;
        });
}
