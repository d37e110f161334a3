// Event subscriptions, the event log and the CT responder's answer.
//
// RegisterForEvent refuses (id 0) a mask with no event this library raises,
// a null callback, and a record size too small for what the callback gets:
// a link subscription needs a whole LINKINFO, an RSCN one room for one
// page. unRegisterForEvent lives with the environment calls (env.cpp): it
// runs in signal handlers.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>
#include <cstring>
#include <vector>

#include "core/entry.hpp"

using namespace kvdsim;

namespace
{

constexpr uint32_t kEventKinds =
    FC_REG_LINK_EVENT | FC_REG_RSCN_EVENT | FC_REG_TEMPERATURE_EVENT | FC_REG_VPORTRSCN_EVENT;
constexpr uint32_t kRscnMin = 8; // the header word and one page
constexpr uint32_t kMaxResponse = 65536;

// The count calls answer 0 when they cannot run.
constexpr CallFamily kIdFamily{0, 0, 0, 0};

} // namespace

uint32_t RegisterForEvent(uint32_t board, uint32_t mask, uint32_t port, uint32_t size, kvd_event_fn callback,
                          uint32_t flags)
{
    return board_call<uint32_t>(
        "RegisterForEvent", board, kIdFamily,
        [&](TraceLine &t) {
            t.arg("board", board)
                .arg_hex("mask", mask)
                .arg("port", port)
                .arg("size", size)
                .arg_ptr("callback", reinterpret_cast<const void *>(callback))
                .arg("flags", flags);
        },
        [&](Call &, Board &) -> uint32_t {
            const uint32_t kinds = mask & kEventKinds;
            if (!callback || kinds == 0 || (mask & ~(kEventKinds | FC_REG_CT_EVENT | FC_REG_ALL_OCCURRENCES)))
                return 0;
            if ((kinds & FC_REG_LINK_EVENT) && size < sizeof(LINKINFO))
                return 0;
            if ((kinds & (FC_REG_RSCN_EVENT | FC_REG_VPORTRSCN_EVENT)) && size < kRscnMin)
                return 0;
            // One callback serves one kind of record.
            if (kinds & (kinds - 1))
                return 0;
            return Dispatcher::instance().subscribe(board, mask & ~FC_REG_CT_EVENT, size, callback, false, 0,
                                                    0);
        });
}

uint32_t RegisterForCTEvents(uint32_t board, uint16_t ct_value, kvd_ct_event_fn callback, uint32_t context,
                             uint32_t *pending)
{
    return board_call<uint32_t>(
        "RegisterForCTEvents", board, kIdFamily,
        [&](TraceLine &t) {
            t.arg("board", board)
                .arg_hex("ct_value", ct_value)
                .arg_ptr("callback", reinterpret_cast<const void *>(callback))
                .arg_hex("context", context)
                .arg_ptr("pending", pending);
        },
        [&](Call &c, Board &) -> uint32_t {
            c.out(pending, sizeof *pending);
            if (!callback)
                return 0;
            const uint32_t id = Dispatcher::instance().subscribe(
                board, FC_REG_CT_EVENT, 0, reinterpret_cast<kvd_event_fn>(callback), true, ct_value, context);
            if (pending)
                *pending = 0; // requests waiting for this responder: none yet
            return id;
        });
}

uint32_t GetEventBuffer(uint32_t board, void *buffer, int32_t *count)
{
    return board_call<uint32_t>(
        "GetEventBuffer", board, kErrnoFamily, count,
        [&](TraceLine &t) {
            t.arg("board", board)
                .arg_ptr("buffer", buffer)
                .arg("count", count ? static_cast<uint32_t>(*count) : 0);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (*count < 0)
                return EINVAL;
            c.out(buffer, static_cast<size_t>(*count) * sizeof(KVD_EVENT_ENTRY));
            c.out(count, sizeof *count);
            if (*count > 0 && !buffer)
                return EFAULT;
            auto *out = static_cast<KVD_EVENT_ENTRY *>(buffer);
            const uint32_t n = b.events->drain(out, static_cast<uint32_t>(*count));
            *count = static_cast<int32_t>(n);
            c.line.result(0).tag("entries", std::to_string(n).c_str());
            if (n)
                c.line.bytes("out", out, n * sizeof *out);
            return 0;
        });
}

uint32_t GetMissedEventsCount(uint32_t board, uint32_t *count)
{
    return board_call<uint32_t>(
        "GetMissedEventsCount", board, kErrnoFamily, count, [&](TraceLine &t) { t.arg("board", board); },
        [&](Call &c, Board &b) -> uint32_t {
            c.out(count, sizeof *count);
            *count = b.events->take_missed();
            c.line.result(0).tag("missed", std::to_string(*count).c_str());
            return 0;
        });
}

// The responder's answer goes out as a sequence on the CT ring.
uint32_t SendMgmtResponse(uint32_t board, void *buffer, uint32_t length, uint32_t tag)
{
    return board_call<uint32_t>(
        "SendMgmtResponse", board, kErrnoFamily, buffer,
        [&](TraceLine &t) {
            t.arg("board", board).arg_ptr("buffer", buffer).arg("length", length).arg("tag", tag);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (length == 0 || length > kMaxResponse)
                return EINVAL;
            std::vector<uint8_t> data(length);
            ProcessMemory mem;
            const uint64_t address = reinterpret_cast<uintptr_t>(buffer);
            if (!mem.read(address, data.data(), data.size()))
                return EFAULT;
            if (!b.events->ct_response(tag, data))
                return EINVAL; // no open request with that tag
            b.diag->exchange(kRingCt, kIocbXmitSequence64, length, address, tag, 0, 0);
            c.line.result(0).bytes("in", data.data(), data.size());
            return 0;
        });
}
