// The Tarvo ASIC's command transport. One command record goes to the
// board's ASIC and its response comes back into the caller's buffer.
//
// Transport statuses, in the order they are checked: environment not open
// or a null record, length or size pointer (general error), no such board
// (invalid board id), a board without the ASIC (invalid adapter), a board
// that does not answer (timeout), the management path to the ASIC down
// (link down); then the ASIC's own: a record too short to carry its code
// (general error) or a response larger than the buffer offered (buffer
// overrun). Only whole exchanges write the caller's buffer and size.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cstring>
#include <vector>

#include "core/entry.hpp"

using namespace kvdsim;

namespace
{

constexpr CallFamily kTarvoFamily{TARVO_ERR_GENERAL, TARVO_ERR_INVALID_BOARD, TARVO_ERR_GENERAL,
                                  TARVO_ERR_GENERAL};
// The largest record the transport carries: a firmware image and its header.
constexpr uint32_t kCommandMax = 0x1000000 + sizeof(tarvo_fw_download_cmd_t);
constexpr uint32_t kResponseMax = 0x100000;

} // namespace

uint32_t KVD_SendTarvoCommand(uint32_t board, void *cmd, uint32_t cmd_len, void *rsp, uint32_t *rsp_len)
{
    const uint32_t offered = rsp_len ? *rsp_len : 0;
    return board_call<uint32_t>(
        "KVD_SendTarvoCommand", board, kTarvoFamily,
        [&](TraceLine &t) {
            t.arg("board", board)
                .arg_ptr("cmd", cmd)
                .arg("cmd_len", cmd_len)
                .arg_ptr("rsp", rsp)
                .arg("rsp_len", offered);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (!cmd || !rsp || !rsp_len || cmd_len > kCommandMax)
                return TARVO_ERR_GENERAL;
            c.out(rsp, offered > kResponseMax ? kResponseMax : offered);
            c.out(rsp_len, sizeof *rsp_len);
            if (!b.asic)
                return TARVO_ERR_INVALID_ADAPTER;
            if (b.fw->state() != BoardState::ready)
                return TARVO_ERR_TIMEOUT;
            if (!b.asic->link_up())
                return TARVO_ERR_LINK_DOWN;

            // The ASIC works on private copies, bounded by the lengths given.
            const auto *in = static_cast<const uint8_t *>(cmd);
            std::vector<uint8_t> record(in, in + cmd_len);
            std::vector<uint8_t> reply(offered > kResponseMax ? kResponseMax : offered);
            uint32_t delivered = 0;
            AsicNote note;
            uint32_t rc = b.asic->exchange(record, reply, delivered, static_cast<int32_t>(board), &note);
            c.line.result(rc);
            if (note.name)
                c.line.tag("command", note.name);
            if (note.rule)
                c.line.injected(note.rule);
            c.line.bytes("in", record.data(), record.size());
            if (rc == 0) {
                memcpy(rsp, reply.data(), delivered);
                *rsp_len = delivered;
                c.line.bytes("out", reply.data(), delivered);
            }
            return rc;
        });
}
