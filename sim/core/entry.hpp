// The frame of a C entry point, in one place.
//
// Every normal call of the library does the same around its own work: it
// takes the library lock, starts its trace line with its arguments, lets a
// fault rule answer instead, checks that the environment is open and that
// the board exists, runs its work, and ends the trace line with the result
// (and whatever records the work added). The failures of the frame are the
// family's own: errno values for the maker's calls, HBA API statuses for
// the HBA calls. An exception (out of memory) becomes the family's
// no-memory result.
//
//   return board_call<uint32_t>("KVD_GetLinkInfo", board, kErrnoFamily,
//       [&](TraceLine &t) { t.arg("board", board).arg_ptr("info", info); },
//       [&](Call &c, Board &b) -> uint32_t { ...; return 0; });
//
// The work returns its result; to put records on the line it calls
// c.line.result(rc) itself and adds them (the frame then only ends the
// line). The work declares each record it hands back with c.out(p, size);
// hostile mode (sim/core/hostile.hpp) spoils them after the work. The release calls (KVD_FreeDiagEnv,
// unRegisterForEvent) run in signal handlers and take no lock: they keep their own lock-free frame.
#pragma once

#include <cerrno>
#include <cstdint>

#include "core/state.hpp"

namespace kvdsim
{

struct CallFamily {
    int64_t not_open;  // the environment was never opened, or was freed
    int64_t no_board;  // no board with that number
    int64_t no_record; // a record pointer the call needs is null
    int64_t no_memory; // the library ran out of memory
};

inline constexpr CallFamily kErrnoFamily{ENXIO, ENODEV, EFAULT, ENOMEM};
// HBA_STATUS_ERROR, HBA_STATUS_ERROR_INVALID_HANDLE, HBA_STATUS_ERROR_ARG.
inline constexpr CallFamily kHbaFamily{1, 3, 4, 1};

// Ends the line with rc unless the work already put a result on it.
template <class R> R end_call(Call &c, R rc)
{
    if (!c.line.has_result())
        c.line.result(static_cast<int64_t>(rc));
    c.line.emit();
    return rc;
}

namespace detail
{
template <class R, class Args, class Work>
R board_frame(const char *name, uint32_t board, const CallFamily &family, bool need_record,
              const void *record, Args &&args, Work &&work)
{
    try {
        Call c(name);
        args(c.line);
        if (auto f = c.fault(board))
            return static_cast<R>(*f);
        if (!Library::is_open())
            return end_call(c, static_cast<R>(family.not_open));
        Board *b = c.lib.board(board);
        if (!b)
            return end_call(c, static_cast<R>(family.no_board));
        if (need_record && !record)
            return end_call(c, static_cast<R>(family.no_record));
        const R rc = static_cast<R>(work(c, *b));
        c.spoil(static_cast<int64_t>(rc));
        return end_call(c, rc);
    } catch (...) {
        return static_cast<R>(family.no_memory);
    }
}
} // namespace detail

// A call on one board that fills or reads `record`, which must not be null.
template <class R, class Args, class Work>
R board_call(const char *name, uint32_t board, const CallFamily &family, const void *record, Args &&args,
             Work &&work)
{
    return detail::board_frame<R>(name, board, family, true, record, args, work);
}

// A call on one board without a record to check.
template <class R, class Args, class Work>
R board_call(const char *name, uint32_t board, const CallFamily &family, Args &&args, Work &&work)
{
    return detail::board_frame<R>(name, board, family, false, nullptr, args, work);
}

// A call that takes no board (the environment and version calls): the
// frame is the lock, the trace line and the fault rules.
template <class R, class Args, class Work>
R library_call(const char *name, const CallFamily &family, Args &&args, Work &&work)
{
    try {
        Call c(name);
        args(c.line);
        if (auto f = c.fault_boardless())
            return static_cast<R>(*f);
        const R rc = static_cast<R>(work(c));
        c.spoil(static_cast<int64_t>(rc));
        return end_call(c, rc);
    } catch (...) {
        return static_cast<R>(family.no_memory);
    }
}

// What an engine's dispatcher noted about a request goes on the trace line:
// the row's name and the fault rule that answered for it.
inline void note_command(Call &c, const CommandNote &note)
{
    if (note.name)
        c.line.tag("command", note.name);
    if (note.rule)
        c.line.injected(note.rule);
}

// Runs one request through an engine's table of rows (port, driver
// parameters, authentication, ...) with the result on the trace line.
template <class Engine, class Request>
int32_t engine_request(Call &c, Engine &engine, uint32_t code, Request &request)
{
    CommandNote note;
    const int32_t rc = engine.run(code, request, &note);
    c.line.result(rc);
    note_command(c, note);
    return rc;
}

} // namespace kvdsim
