// Fibre Channel pass-through: ELS, CT to the fabric's services, management
// requests to a remote port. The request is copied before the fabric
// answers, so request and reply may share one buffer.
//
// KVD_SendELSCmd: errno values, and 7 when the reply needs more room than
// given (*rsp_size: the room needed), 8 when the request is larger than the
// destination takes in one frame (*rsp_size: the most it takes). An unknown
// destination is answered with LS_RJT. SendCTPassThru: HBA API statuses; a
// reply longer than the room is cut and its full length reported.
// SendMgmtCommand: errno values; a failed request reports no reply.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "core/entry.hpp"

using namespace kvdsim;

namespace
{

constexpr uint32_t kRequestMax = 65536;

uint64_t frames(uint64_t bytes)
{
    return bytes ? (bytes + 2047) / 2048 : 1;
}

void trace_size(TraceLine &t, const char *key, const uint32_t *size)
{
    if (size)
        t.arg(key, *size);
    else
        t.arg_ptr(key, size);
}

// The port must be online with its link up; 0 when it is, else the
// family's value.
template <class R> R port_state(Board &b, R offline, R no_link)
{
    if (b.fw->state() != BoardState::ready)
        return offline;
    if (!b.fw->link().up)
        return no_link;
    return 0;
}

void end_line(Call &c, int64_t rc, const char *name, int rule, std::span<const uint8_t> in,
              std::span<const uint8_t> out)
{
    c.line.result(rc);
    if (name)
        c.line.tag("command", name);
    if (rule)
        c.line.injected(rule);
    c.line.bytes("in", in.data(), in.size());
    if (!out.empty())
        c.line.bytes("out", out.data(), out.size());
}

} // namespace

uint32_t KVD_SendELSCmd(uint32_t board, KVD_ELS_DEST *dest, void *req, uint32_t req_size, void *rsp,
                        uint32_t *rsp_size)
{
    return board_call<uint32_t>(
        "KVD_SendELSCmd", board, kErrnoFamily, dest,
        [&](TraceLine &t) {
            t.arg("board", board);
            if (dest)
                t.arg("addr_type", dest->addrType).arg_hex("did", dest->did);
            t.arg("req_size", req_size);
            trace_size(t, "rsp_size", rsp_size);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (!req || !rsp_size || req_size < 4 || req_size > kRequestMax || (!rsp && *rsp_size) ||
                dest->addrType != KVD_ELS_ADDR_DID)
                return EINVAL;
            c.out(rsp, *rsp_size);
            c.out(rsp_size, sizeof *rsp_size);
            if (uint32_t rc = port_state<uint32_t>(b, EBUSY, ENOLINK))
                return rc;
            const auto *p = static_cast<const uint8_t *>(req);
            ElsTask t;
            std::vector<uint8_t> request(p, p + req_size);
            t.did = dest->did & 0xFFFFFF;
            t.req = request;
            const PortCounters pc = b.fw->counters_now();
            t.errors = LinkErrorBlock{
                static_cast<uint32_t>(pc.link_failure),    static_cast<uint32_t>(pc.loss_of_sync),
                static_cast<uint32_t>(pc.loss_of_signal),  static_cast<uint32_t>(pc.prim_seq_err),
                static_cast<uint32_t>(pc.invalid_tx_word), static_cast<uint32_t>(pc.invalid_crc)};
            if (!b.fabric->reachable(t.did, &t.port)) {
                t.reply = ls_rjt(LSRJT_UNABLE_TPC);
            } else if (req_size > b.fabric->max_payload(t.port)) {
                *rsp_size = b.fabric->max_payload(t.port);
                end_line(c, KVD_RC_ELS_REQ_TOO_LARGE, nullptr, 0, request, {});
                return KVD_RC_ELS_REQ_TOO_LARGE;
            } else {
                b.fabric->els(t);
            }
            b.fw->carry_traffic(frames(req_size), req_size, frames(t.reply.size()), t.reply.size());
            if (t.reply.size() >= 8 && t.reply[0] == ELS_CMD_LS_RJT) {
                Wwn rport{};
                if (t.port)
                    rport = t.port->wwpn;
                b.sd->els_rejected(rport, request[0], t.reply[5], t.reply[6]);
            }
            if (t.reply.size() > *rsp_size) {
                *rsp_size = static_cast<uint32_t>(t.reply.size());
                end_line(c, KVD_RC_ELS_RSP_TOO_SMALL, t.name, t.rule, request, {});
                return KVD_RC_ELS_RSP_TOO_SMALL;
            }
            memcpy(rsp, t.reply.data(), t.reply.size());
            *rsp_size = static_cast<uint32_t>(t.reply.size());
            end_line(c, 0, t.name, t.rule, request, t.reply);
            return 0;
        });
}

HBA_STATUS SendCTPassThru(uint32_t board, void *req, uint32_t req_size, void *rsp, uint32_t *rsp_size)
{
    return board_call<HBA_STATUS>(
        "SendCTPassThru", board, kHbaFamily, req,
        [&](TraceLine &t) {
            t.arg("board", board).arg("req_size", req_size);
            trace_size(t, "rsp_size", rsp_size);
        },
        [&](Call &c, Board &b) -> HBA_STATUS {
            if (!rsp_size || req_size < sizeof(KVD_CT_HDR) || req_size > kRequestMax || (!rsp && *rsp_size))
                return HBA_STATUS_ERROR_ARG;
            c.out(rsp, *rsp_size);
            c.out(rsp_size, sizeof *rsp_size);
            if (HBA_STATUS rc =
                    port_state<HBA_STATUS>(b, HBA_STATUS_ERROR_BUSY, HBA_STATUS_ERROR_UNAVAILABLE))
                return rc;
            if (!b.fabric->has_name_server())
                return HBA_STATUS_ERROR; // no fabric services on this topology
            const auto *p = static_cast<const uint8_t *>(req);
            std::vector<uint8_t> request(p, p + req_size);
            CtTask t;
            t.req = request;
            b.fabric->ct(t);
            b.fw->carry_traffic(frames(req_size), req_size, frames(t.reply.size()), t.reply.size());
            const size_t n = std::min<size_t>(t.reply.size(), *rsp_size);
            if (n)
                memcpy(rsp, t.reply.data(), n);
            *rsp_size = static_cast<uint32_t>(t.reply.size());
            end_line(c, HBA_STATUS_OK, t.name, t.rule, request, t.reply);
            return HBA_STATUS_OK;
        });
}

uint32_t SendMgmtCommand(uint32_t board, HBA_WWN *wwpn, void *req, uint32_t req_size, void *rsp,
                         uint32_t *rsp_size, uint32_t tmo)
{
    return board_call<uint32_t>(
        "SendMgmtCommand", board, kErrnoFamily, req,
        [&](TraceLine &t) {
            t.arg("board", board);
            if (wwpn)
                t.arg_wwn("wwpn", wwpn->wwn);
            else
                t.arg_ptr("wwpn", wwpn);
            t.arg("req_size", req_size);
            trace_size(t, "rsp_size", rsp_size);
            t.arg("tmo", tmo);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (!rsp_size)
                return EINVAL;
            const uint32_t room = *rsp_size;
            c.out(rsp, room);
            c.out(rsp_size, sizeof *rsp_size);
            *rsp_size = 0;
            if (!wwpn || req_size == 0 || req_size > kRequestMax || (!rsp && room))
                return EINVAL;
            if (uint32_t rc = port_state<uint32_t>(b, EBUSY, ENOLINK))
                return rc;
            Wwn w;
            memcpy(w.data(), wwpn->wwn, 8);
            const RemotePort *port = b.fabric->port_by_wwpn(w);
            if (!port)
                return ENOENT;
            const auto *p = static_cast<const uint8_t *>(req);
            std::vector<uint8_t> request(p, p + req_size);
            std::vector<uint8_t> reply;
            b.fabric->mgmt(*port, request, reply);
            b.fw->carry_traffic(frames(req_size), req_size, frames(reply.size()), reply.size());
            const size_t n = std::min<size_t>(reply.size(), room);
            if (n)
                memcpy(rsp, reply.data(), n);
            *rsp_size = static_cast<uint32_t>(reply.size());
            end_line(c, 0, nullptr, 0, request, reply);
            return 0;
        });
}
