// SCSI commands to remote targets, and raw FCP.
//
// The library builds the CDB for each call, sends it in an FCP_CMND to the
// target port named by WWPN, and hands back the data and, after CHECK
// CONDITION, the sense data (the call itself succeeds: the command was
// delivered and answered). Sizes are in/out: in, the room of the buffer;
// out, what the target returned. Failures: HBA API statuses for the
// HBA API names, errno values for the KVD_ names; the port must be up and
// the board online.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>
#include <algorithm>
#include <cstring>
#include <vector>

#include "core/entry.hpp"
#include "core/bytes.hpp"

using namespace kvdsim;

namespace
{

enum class Outcome { ok, bad_arg, unknown_wwn, not_target, offline, no_link, target_busy, target_error };

HBA_STATUS hba_status(Outcome o)
{
    switch (o) {
    case Outcome::ok:
        return HBA_STATUS_OK;
    case Outcome::bad_arg:
        return HBA_STATUS_ERROR_ARG;
    case Outcome::unknown_wwn:
        return HBA_STATUS_ERROR_ILLEGAL_WWN;
    case Outcome::not_target:
        return HBA_STATUS_ERROR_NOT_A_TARGET;
    case Outcome::offline:
        return HBA_STATUS_ERROR_BUSY;
    case Outcome::no_link:
        return HBA_STATUS_ERROR_UNAVAILABLE;
    case Outcome::target_busy:
        return HBA_STATUS_ERROR_TARGET_BUSY;
    case Outcome::target_error:
        break;
    }
    return HBA_STATUS_ERROR;
}

uint32_t errno_status(Outcome o)
{
    switch (o) {
    case Outcome::ok:
        return 0;
    case Outcome::bad_arg:
        return EINVAL;
    case Outcome::unknown_wwn:
        return ENOENT;
    case Outcome::not_target:
        return EOPNOTSUPP;
    case Outcome::offline:
        return EBUSY;
    case Outcome::no_link:
        return ENOLINK;
    case Outcome::target_busy:
        return EAGAIN;
    case Outcome::target_error:
        break;
    }
    return EIO;
}

uint64_t frames(uint64_t bytes)
{
    return (bytes + 2047) / 2048;
}

std::array<uint8_t, 8> lun_of(uint64_t lun)
{
    std::array<uint8_t, 8> l;
    memcpy(l.data(), &lun, 8);
    return l;
}

void trace_wwn(TraceLine &t, const char *key, const HBA_WWN *w)
{
    if (w)
        t.arg_wwn(key, w->wwn);
    else
        t.arg_ptr(key, w);
}

void trace_size(TraceLine &t, const char *key, const uint32_t *size)
{
    if (size)
        t.arg(key, *size);
    else
        t.arg_ptr(key, size);
}

// One SCSI call: its target, the commands it sent (for the trace line) and
// the buffers the answer goes to.
struct ScsiCall {
    Call &c;
    Board &b;
    Wwn target{};
    struct Sent {
        const char *name;
        std::array<uint8_t, 8> lun;
        std::array<uint8_t, 16> cdb;
        uint32_t cdb_len;
        std::vector<uint8_t> data_out;
        uint8_t status;
        int rule;
    };
    std::vector<Sent> sent;

    // The board must be online with its link up, and the port a target.
    Outcome open(const HBA_WWN *wwpn, void *data, const uint32_t *data_size, void *sense,
                 const uint32_t *sense_size)
    {
        if (!wwpn || !data_size || !sense_size || (!data && *data_size) || (!sense && *sense_size))
            return Outcome::bad_arg;
        c.out(data, *data_size);
        c.out(const_cast<uint32_t *>(data_size), sizeof *data_size);
        c.out(sense, *sense_size);
        c.out(const_cast<uint32_t *>(sense_size), sizeof *sense_size);
        if (b.fw->state() != BoardState::ready)
            return Outcome::offline;
        if (!b.fw->link().up)
            return Outcome::no_link;
        memcpy(target.data(), wwpn->wwn, 8);
        if (!b.fabric->port_by_wwpn(target))
            return Outcome::unknown_wwn;
        if (!b.scsi->has_target(target))
            return Outcome::not_target;
        return Outcome::ok;
    }

    // The local port named must be this board's.
    Outcome local(const HBA_WWN *lwwpn) const
    {
        if (!lwwpn)
            return Outcome::bad_arg;
        return memcmp(lwwpn->wwn, b.cfg->wwpn.data(), 8) == 0 ? Outcome::ok : Outcome::unknown_wwn;
    }

    // Sends one FCP_CMND and moves its data; counts the frames.
    void run(ScsiTask &t, const std::array<uint8_t, 8> &lun, const uint8_t *cdb, uint32_t cdb_len,
             std::span<const uint8_t> data_out, uint32_t expected)
    {
        t.lun = lun;
        t.cdb = {cdb, cdb_len};
        t.data_out = data_out;
        t.expected = expected;
        b.scsi->execute(target, t);
        uint32_t depth = kSdDefaultLunDepth;
        if (auto i = b.drvparams->find("lun_queue_depth"))
            depth = b.drvparams->current(*i);
        b.sd->scsi_completed(target, t, depth);
        Sent s{t.name, lun, {}, cdb_len, {}, t.status, t.rule};
        memcpy(s.cdb.data(), cdb, cdb_len);
        const uint32_t out = t.data_in.empty() ? t.moved : 0;
        s.data_out.assign(data_out.begin(), data_out.begin() + out);
        sent.push_back(std::move(s));
        const uint64_t sense = t.status == SCSI_STAT_CHECK_CONDITION ? sizeof(SCSI_SENSE) : 0;
        b.fw->carry_traffic(1 + frames(out), sizeof(FCP_CMND) + out, frames(t.data_in.size()) + 1,
                            t.data_in.size() + sizeof(FCP_RSP) + sense);
    }

    // Hands the answer of the last command back: data in (never beyond the
    // room, which bounded what the target sent), the sense data cut to its
    // room with its full length reported.
    Outcome deliver(const ScsiTask &t, void *data, uint32_t *data_size, void *sense, uint32_t *sense_size)
    {
        if (t.status != SCSI_STAT_GOOD && t.status != SCSI_STAT_CHECK_CONDITION) {
            *data_size = *sense_size = 0;
            return t.status == SCSI_STAT_BUSY || t.status == 0x28 ? Outcome::target_busy
                                                                  : Outcome::target_error;
        }
        const size_t n = std::min<size_t>(t.data_in.size(), *data_size);
        if (n)
            memcpy(data, t.data_in.data(), n);
        *data_size = t.data_in.empty() ? t.moved : static_cast<uint32_t>(n);
        if (t.status == SCSI_STAT_CHECK_CONDITION) {
            memcpy(sense, &t.sense, std::min<size_t>(sizeof t.sense, *sense_size));
            *sense_size = sizeof t.sense;
        } else {
            *sense_size = 0;
        }
        return Outcome::ok;
    }

    template <class R> R finish(R rc)
    {
        c.line.result(static_cast<int64_t>(rc));
        for (const Sent &s : sent) {
            if (s.name)
                c.line.tag("command", s.name);
            if (s.rule)
                c.line.injected(s.rule);
            c.line.bytes("lun", s.lun.data(), 8).bytes("cdb", s.cdb.data(), s.cdb_len);
            if (!s.data_out.empty())
                c.line.bytes("data", s.data_out.data(), s.data_out.size());
            if (s.status != SCSI_STAT_GOOD)
                c.line.bytes("status", &s.status, 1);
        }
        return rc;
    }
};

// CDB builders. Allocation lengths are the room given, as far as the field
// holds it.
void inquiry_cdb(uint8_t *cdb, uint8_t evpd, uint32_t page, uint32_t room)
{
    cdb[0] = SCSI_INQUIRY;
    cdb[1] = evpd ? 1 : 0;
    cdb[2] = evpd ? static_cast<uint8_t>(page) : 0;
    put_be16(&cdb[3], std::min<uint32_t>(room, 0xFFFF));
}

Outcome inquiry(ScsiCall &s, uint64_t lun, uint8_t evpd, uint32_t page, void *rsp, uint32_t *rsp_size,
                void *sense, uint32_t *sense_size)
{
    if (evpd && page > 0xFF)
        return Outcome::bad_arg;
    uint8_t cdb[6] = {};
    inquiry_cdb(cdb, evpd, page, *rsp_size);
    ScsiTask t;
    s.run(t, lun_of(lun), cdb, sizeof cdb, {}, *rsp_size);
    return s.deliver(t, rsp, rsp_size, sense, sense_size);
}

// READ CAPACITY(10), and READ CAPACITY(16) when the unit is too large for
// it and the room takes the longer reply.
Outcome read_capacity(ScsiCall &s, const std::array<uint8_t, 8> &lun, void *rsp, uint32_t *rsp_size,
                      void *sense, uint32_t *sense_size)
{
    uint8_t cdb10[10] = {SCSI_READ_CAPACITY_10};
    ScsiTask t;
    s.run(t, lun, cdb10, sizeof cdb10, {}, *rsp_size);
    if (t.status == SCSI_STAT_GOOD && t.data_in.size() >= 4 && be32(t.data_in.data()) == 0xFFFFFFFFu &&
        *rsp_size >= 32) {
        uint8_t cdb16[16] = {SCSI_SERVICE_ACTION_IN_16, SCSI_SAI_READ_CAPACITY_16};
        put_be32(&cdb16[10], *rsp_size);
        s.run(t, lun, cdb16, sizeof cdb16, {}, *rsp_size);
    }
    return s.deliver(t, rsp, rsp_size, sense, sense_size);
}

Outcome report_luns(ScsiCall &s, void *rsp, uint32_t *rsp_size, void *sense, uint32_t *sense_size)
{
    uint8_t cdb[12] = {SCSI_REPORT_LUNS};
    put_be32(&cdb[6], *rsp_size);
    ScsiTask t;
    s.run(t, {}, cdb, sizeof cdb, {}, *rsp_size);
    return s.deliver(t, rsp, rsp_size, sense, sense_size);
}

// READ(10)/WRITE(10) of the blocks the byte count touches; the data length
// (FCP_DL) is the byte count itself.
Outcome block_io(ScsiCall &s, bool write, uint64_t lun, uint32_t lba, void *data, uint32_t *data_size,
                 void *sense, uint32_t *sense_size)
{
    const uint32_t size = *data_size;
    const uint32_t blocks = (size + SCSI_BLOCK_SIZE - 1) / SCSI_BLOCK_SIZE;
    if (blocks > 0xFFFF)
        return Outcome::bad_arg;
    uint8_t cdb[10] = {static_cast<uint8_t>(write ? SCSI_WRITE_10 : SCSI_READ_10)};
    put_be32(&cdb[2], lba);
    put_be16(&cdb[7], blocks);
    ScsiTask t;
    std::span<const uint8_t> out;
    if (write)
        out = {static_cast<const uint8_t *>(data), size};
    s.run(t, lun_of(lun), cdb, sizeof cdb, out, size);
    return s.deliver(t, data, data_size, sense, sense_size);
}

// A CDB for any operation code: the length its group gives, the allocation
// length where the command has one, every other field zero.
Outcome any_cdb(ScsiCall &s, uint64_t lun, uint32_t opcode, void *rsp, uint32_t *rsp_size, void *sense,
                uint32_t *sense_size)
{
    if (opcode > 0xFF)
        return Outcome::bad_arg;
    const uint8_t op = static_cast<uint8_t>(opcode);
    const uint32_t room = *rsp_size;
    uint8_t cdb[16] = {op};
    switch (op) {
    case SCSI_REQUEST_SENSE:
        cdb[4] = static_cast<uint8_t>(std::min<uint32_t>(room, 0xFF));
        break;
    case SCSI_INQUIRY:
        inquiry_cdb(cdb, 0, 0, room);
        break;
    case SCSI_READ_10:
        put_be16(&cdb[7], std::min<uint32_t>(room / SCSI_BLOCK_SIZE, 0xFFFF));
        break;
    case SCSI_SERVICE_ACTION_IN_16:
        cdb[1] = SCSI_SAI_READ_CAPACITY_16;
        put_be32(&cdb[10], room);
        break;
    case SCSI_REPORT_LUNS:
        put_be32(&cdb[6], room);
        break;
    default:
        break;
    }
    ScsiTask t;
    s.run(t, lun_of(lun), cdb, ScsiTargets::cdb_length(op), {}, room);
    return s.deliver(t, rsp, rsp_size, sense, sense_size);
}

template <class Args, class Body>
HBA_STATUS hba_scsi(const char *name, uint32_t board, HBA_WWN *wwpn, void *rsp, uint32_t *rsp_size,
                    void *sense, uint32_t *sense_size, Args args, Body body,
                    const char *size_key = "rsp_size")
{
    return board_call<HBA_STATUS>(
        name, board, kHbaFamily,
        [&](TraceLine &t) {
            t.arg("board", board);
            trace_wwn(t, "wwpn", wwpn);
            args(t);
            trace_size(t, size_key, rsp_size);
            trace_size(t, "sense_size", sense_size);
        },
        [&](Call &c, Board &b) {
            ScsiCall s{c, b, {}, {}};
            Outcome o = s.open(wwpn, rsp, rsp_size, sense, sense_size);
            if (o == Outcome::ok)
                o = body(s);
            return s.finish(hba_status(o));
        });
}

template <class Args, class Body>
uint32_t kvd_scsi(const char *name, uint32_t board, HBA_WWN *lwwpn, HBA_WWN *rwwpn, void *rsp,
                  uint32_t *rsp_size, void *sense, uint32_t *sense_size, Args args, Body body)
{
    return board_call<uint32_t>(
        name, board, kErrnoFamily,
        [&](TraceLine &t) {
            t.arg("board", board);
            trace_wwn(t, "lwwpn", lwwpn);
            trace_wwn(t, "rwwpn", rwwpn);
            args(t);
            trace_size(t, "rsp_size", rsp_size);
            trace_size(t, "sense_size", sense_size);
        },
        [&](Call &c, Board &b) {
            ScsiCall s{c, b, {}, {}};
            Outcome o = s.local(lwwpn);
            if (o == Outcome::ok)
                o = s.open(rwwpn, rsp, rsp_size, sense, sense_size);
            if (o == Outcome::ok)
                o = body(s);
            return s.finish(errno_status(o));
        });
}

} // namespace

HBA_STATUS SendScsiInquiry(uint32_t board, HBA_WWN *wwpn, uint64_t lun, uint8_t evpd, uint32_t page_code,
                           void *rsp, uint32_t *rsp_size, void *sense, uint32_t *sense_size)
{
    return hba_scsi(
        "SendScsiInquiry", board, wwpn, rsp, rsp_size, sense, sense_size,
        [&](TraceLine &t) { t.arg("evpd", evpd).arg_hex("page_code", page_code); },
        [&](ScsiCall &s) { return inquiry(s, lun, evpd, page_code, rsp, rsp_size, sense, sense_size); });
}

HBA_STATUS SendReadCapacity(uint32_t board, HBA_WWN *wwpn, uint64_t lun, void *rsp, uint32_t *rsp_size,
                            void *sense, uint32_t *sense_size)
{
    return hba_scsi(
        "SendReadCapacity", board, wwpn, rsp, rsp_size, sense, sense_size, [](TraceLine &) {},
        [&](ScsiCall &s) { return read_capacity(s, lun_of(lun), rsp, rsp_size, sense, sense_size); });
}

HBA_STATUS SendReportLUNs(uint32_t board, HBA_WWN *wwpn, void *rsp, uint32_t *rsp_size, void *sense,
                          uint32_t *sense_size)
{
    return hba_scsi(
        "SendReportLUNs", board, wwpn, rsp, rsp_size, sense, sense_size, [](TraceLine &) {},
        [&](ScsiCall &s) { return report_luns(s, rsp, rsp_size, sense, sense_size); });
}

HBA_STATUS SendScsiRead(uint32_t board, HBA_WWN *wwpn, uint64_t lun, uint32_t lba, void *data,
                        uint32_t *data_size, void *sense, uint32_t *sense_size)
{
    return hba_scsi(
        "SendScsiRead", board, wwpn, data, data_size, sense, sense_size,
        [&](TraceLine &t) { t.arg_hex("lba", lba); },
        [&](ScsiCall &s) { return block_io(s, false, lun, lba, data, data_size, sense, sense_size); },
        "data_size");
}

HBA_STATUS SendScsiWrite(uint32_t board, HBA_WWN *wwpn, uint64_t lun, uint32_t lba, void *data,
                         uint32_t *data_size, void *sense, uint32_t *sense_size)
{
    return hba_scsi(
        "SendScsiWrite", board, wwpn, data, data_size, sense, sense_size,
        [&](TraceLine &t) { t.arg_hex("lba", lba); },
        [&](ScsiCall &s) { return block_io(s, true, lun, lba, data, data_size, sense, sense_size); },
        "data_size");
}

HBA_STATUS SendScsiCDB(uint32_t board, HBA_WWN *wwpn, uint64_t lun, uint32_t opcode, void *rsp,
                       uint32_t *rsp_size, void *sense, uint32_t *sense_size)
{
    return hba_scsi(
        "SendScsiCDB", board, wwpn, rsp, rsp_size, sense, sense_size,
        [&](TraceLine &t) { t.arg_hex("opcode", opcode); },
        [&](ScsiCall &s) { return any_cdb(s, lun, opcode, rsp, rsp_size, sense, sense_size); });
}

uint32_t KVD_SendScsiInquiryByWWN(uint32_t board, HBA_WWN *lwwpn, HBA_WWN *rwwpn, uint64_t lun, uint8_t evpd,
                                  uint32_t page_code, void *rsp, uint32_t *rsp_size, void *sense,
                                  uint32_t *sense_size)
{
    return kvd_scsi(
        "KVD_SendScsiInquiryByWWN", board, lwwpn, rwwpn, rsp, rsp_size, sense, sense_size,
        [&](TraceLine &t) { t.arg("evpd", evpd).arg_hex("page_code", page_code); },
        [&](ScsiCall &s) { return inquiry(s, lun, evpd, page_code, rsp, rsp_size, sense, sense_size); });
}

// The LUN comes as a plain number here; the library addresses it in the
// single-level form (flat space above 255).
uint32_t KVD_SendReadCapacityByWWN(uint32_t board, HBA_WWN *lwwpn, HBA_WWN *rwwpn, uint32_t lun, void *rsp,
                                   uint32_t *rsp_size, void *sense, uint32_t *sense_size)
{
    return kvd_scsi(
        "KVD_SendReadCapacityByWWN", board, lwwpn, rwwpn, rsp, rsp_size, sense, sense_size,
        [&](TraceLine &t) { t.arg("lun", lun); },
        [&](ScsiCall &s) {
            if (lun > 0x3FFF)
                return Outcome::bad_arg;
            return read_capacity(s, ScsiTargets::lun_bytes(static_cast<uint16_t>(lun)), rsp, rsp_size, sense,
                                 sense_size);
        });
}

uint32_t KVD_SendReportLUNsByWWN(uint32_t board, HBA_WWN *lwwpn, HBA_WWN *rwwpn, void *rsp,
                                 uint32_t *rsp_size, void *sense, uint32_t *sense_size)
{
    return kvd_scsi(
        "KVD_SendReportLUNsByWWN", board, lwwpn, rwwpn, rsp, rsp_size, sense, sense_size, [](TraceLine &) {},
        [&](ScsiCall &s) { return report_luns(s, rsp, rsp_size, sense, sense_size); });
}

// The caller's FCP_CMND runs as it stands. The data length may not exceed
// the data buffer's room. The FCP_RSP carries the status, the residual and
// the sense data; a task management request is answered as complete.
HBA_STATUS SendFcpCmd(uint32_t board, HBA_WWN *wwpn, void *fcp_cmnd, uint32_t fcp_len, void *data,
                      uint32_t *data_size, void *rsp, uint32_t *rsp_size)
{
    return board_call<HBA_STATUS>(
        "SendFcpCmd", board, kHbaFamily, fcp_cmnd,
        [&](TraceLine &t) {
            t.arg("board", board);
            trace_wwn(t, "wwpn", wwpn);
            t.arg("fcp_len", fcp_len);
            trace_size(t, "data_size", data_size);
            trace_size(t, "rsp_size", rsp_size);
        },
        [&](Call &c, Board &b) {
            ScsiCall s{c, b, {}, {}};
            Outcome o = s.open(wwpn, data, data_size, rsp, rsp_size);
            FCP_CMND cmd{};
            if (o == Outcome::ok && fcp_len < sizeof cmd)
                o = Outcome::bad_arg;
            if (o == Outcome::ok)
                memcpy(&cmd, fcp_cmnd, sizeof cmd);
            const uint32_t dl = be32(cmd.fcpDl);
            if (o == Outcome::ok && dl > *data_size)
                o = Outcome::bad_arg;
            if (o != Outcome::ok)
                return s.finish(hba_status(o));
            std::vector<uint8_t> reply(sizeof(FCP_RSP), 0);
            uint32_t moved = 0;
            if (cmd.fcpCntl2 != 0) {
                reply[10] = FCP_RSP_LEN_VALID;
                put_be32(&reply[20], 8);
                reply.resize(reply.size() + 8, 0); // response code 0: function complete
            } else {
                std::array<uint8_t, 8> lun;
                memcpy(lun.data(), cmd.fcpLunMsl, 4);
                memcpy(lun.data() + 4, cmd.fcpLunLsl, 4);
                std::span<const uint8_t> out;
                if (cmd.fcpCntl3 & FCP_WRDATA)
                    out = {static_cast<const uint8_t *>(data), dl};
                ScsiTask t;
                s.run(t, lun, cmd.fcpCdb, ScsiTargets::cdb_length(cmd.fcpCdb[0]), out, dl);
                if (!t.data_in.empty())
                    memcpy(data, t.data_in.data(), t.data_in.size());
                moved = t.data_in.empty() ? t.moved : static_cast<uint32_t>(t.data_in.size());
                reply[11] = t.status;
                if (t.required > dl) {
                    reply[10] |= FCP_RESID_OVER;
                    put_be32(&reply[12],
                             static_cast<uint32_t>(std::min<uint64_t>(t.required - dl, 0xFFFFFFFF)));
                } else if (moved < dl) {
                    reply[10] |= FCP_RESID_UNDER;
                    put_be32(&reply[12], dl - moved);
                }
                if (t.status == SCSI_STAT_CHECK_CONDITION) {
                    reply[10] |= FCP_SNS_LEN_VALID;
                    put_be32(&reply[16], sizeof t.sense);
                    reply.resize(reply.size() + sizeof t.sense);
                    memcpy(&reply[sizeof(FCP_RSP)], &t.sense, sizeof t.sense);
                }
            }
            if (*rsp_size)
                memcpy(rsp, reply.data(), std::min<size_t>(reply.size(), *rsp_size));
            *rsp_size = static_cast<uint32_t>(reply.size());
            *data_size = moved;
            s.finish(HBA_STATUS_OK);
            c.line.bytes("in", &cmd, sizeof cmd).bytes("rsp", reply.data(), reply.size());
            return static_cast<HBA_STATUS>(HBA_STATUS_OK);
        });
}
