// Adapter reset: selective, coordinated or firmware (KVD_RESET_*). The
// board's diagnostic engine answers through its table of reset rows; the
// link goes down and comes back, raising link events, and the driver
// parameters changed since the last reset take effect.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include "core/entry.hpp"

using namespace kvdsim;

uint32_t KVD_ResetAdapter(uint32_t board, uint32_t type)
{
    return board_call<uint32_t>(
        "KVD_ResetAdapter", board, kErrnoFamily,
        [&](TraceLine &t) { t.arg("board", board).arg("type", type); },
        [&](Call &c, Board &b) {
            const char *name = nullptr;
            // Link-down persistence (the port settings) keeps the link down.
            const bool bring_up = !b.port || b.port->link_allowed();
            const uint32_t rc = b.diag->reset(*b.fw, type, &name, bring_up);
            if (rc == 0)
                b.sd->adapter_reset();
            // The driver takes up the parameters that waited for a reset.
            if (rc == 0 && b.drvparams)
                b.drvparams->apply_pending();
            c.line.result(rc);
            if (name)
                c.line.tag("command", name);
            return rc;
        });
}
