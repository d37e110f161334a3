// Library environment: opening and closing it, the board table, the version
// text and the release of event registrations. Opening starts the event
// thread; closing stops delivery.
//
// libkvd.h comes first and alone under default visibility: its declarations
// are the only symbols the shared object exports.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>
#include <cstring>

#include "hba/attributes.hpp"
#include "core/entry.hpp"
#include "pci/board_env.hpp"

using namespace kvdsim;

uint32_t libkvd_logging_enable = 0;

namespace
{

// Reads the fault rules and opens the trace file while the library loads, so
// that no call, not even one made from a signal handler, has to.
__attribute__((constructor)) void library_loaded()
{
    load_faults_from_env();
    load_hostile_from_env();
    open_trace_from_env();
}

// Board-table filling shared by the current and the legacy call. Returns the
// number of boards written.
template <class Entry, class Fill>
uint32_t fill_table(Library &lib, Entry *table, uint32_t entries, Fill fill)
{
    memset(table, 0, sizeof(Entry) * entries);
    uint32_t filled = 0;
    for (const BoardConf &cfg : lib.fleet().boards) {
        if (cfg.number >= entries)
            continue;
        fill(cfg, table[cfg.number]);
        ++filled;
    }
    return filled;
}

// The driver-wide fields that entry 0 carries, present board or not. The
// masks show each board as it is now, online or taken offline.
template <class Entry> void driver_fields(Library &lib, Entry &e)
{
    const Fleet &fleet = lib.fleet();
    board_masks(lib, e.a_onmask, e.a_offmask);
    size_t n = fleet.driver_version.size() < sizeof e.a_drvrid - 1 ? fleet.driver_version.size()
                                                                   : sizeof e.a_drvrid - 1;
    memset(e.a_drvrid, 0, sizeof e.a_drvrid);
    memcpy(e.a_drvrid, fleet.driver_version.data(), n);
}

} // namespace

// The count calls answer 0 boards when they cannot run.
constexpr CallFamily kCountFamily{0, 0, 0, 0};

namespace
{

// Opens the environment and fills `entries` entries of the caller's table,
// current layout or legacy; returns the number of boards written.
template <class Entry, class Fill> uint32_t open_env(Call &c, Entry *table, uint32_t entries, Fill fill)
{
    c.lib.load();
    Library::set_open(true);
    Dispatcher::instance().start(c.lib);
    libkvd_logging_enable = c.lib.fleet().logging_enable;
    uint32_t filled = 0;
    if (table && entries) {
        filled = fill_table(c.lib, table, entries, fill);
        driver_fields(c.lib, table[0]);
    }
    c.line.result(filled);
    c.out(table, sizeof(Entry) * entries);
    if (table)
        c.line.bytes("out", table, sizeof(Entry) * entries);
    return filled;
}

} // namespace

uint32_t KVD_InitDiagEnv(KVD_BRDINFO *brdinfo, uint32_t max_boards)
{
    return library_call<uint32_t>(
        "KVD_InitDiagEnv", kCountFamily,
        [&](TraceLine &t) { t.arg_ptr("brdinfo", brdinfo).arg("max_boards", max_boards); },
        [&](Call &c) {
            const uint32_t entries = max_boards < KVD_MAX_BOARDS ? max_boards : KVD_MAX_BOARDS;
            const uint32_t filled = open_env(
                c, brdinfo, entries, [](const BoardConf &cfg, KVD_BRDINFO &e) { board_entry(cfg, e); });
            // Its masks now follow every change of a board's state.
            remember_board_table(entries ? brdinfo : nullptr);
            return filled;
        });
}

uint32_t InitDiagEnv(BRDINFO *brdinfo)
{
    return library_call<uint32_t>(
        "InitDiagEnv", kCountFamily, [&](TraceLine &t) { t.arg_ptr("brdinfo", brdinfo); },
        [&](Call &c) {
            return open_env(c, brdinfo, KVD_MAX_BOARDS,
                            [](const BoardConf &cfg, BRDINFO &e) { legacy_board_entry(cfg, e); });
        });
}

// May run in a signal handler that interrupted another call of this thread:
// no lock, no allocation, no stdio.
void KVD_FreeDiagEnv(void)
{
    char buf[160];
    TraceLine line(buf, sizeof buf, "KVD_FreeDiagEnv");
    if (auto f = library_faults().match("KVD_FreeDiagEnv", FaultRules::kNoBoard)) {
        line.result(f->result).injected(f->rule).emit();
        return;
    }
    // The boards and their firmware stay: the hardware does not go away
    // with the environment, and a later KVD_InitDiagEnv finds it as it was.
    forget_board_table();
    // Subscriptions end and delivery stops.
    Library::set_open(false);
    Dispatcher::instance().stop();
    line.result(0).emit();
}

uint32_t KVD_GetLibVer(char *version)
{
    return library_call<uint32_t>(
        "KVD_GetLibVer", kErrnoFamily, [&](TraceLine &t) { t.arg_ptr("version", version); },
        [&](Call &c) -> uint32_t {
            if (!version)
                return EFAULT;
            c.out(version, 32);
            c.lib.load();
            const std::string &text = c.lib.fleet().library_version.empty()
                                          ? std::string(kDefaultLibraryVersion)
                                          : c.lib.fleet().library_version;
            size_t n = text.size() < 31 ? text.size() : 31;
            memcpy(version, text.data(), n);
            version[n] = '\0';
            c.line.result(0).bytes("out", version, n + 1);
            return 0;
        });
}

// May run in a signal handler (the shell's quit): lock-free, as above.
uint32_t unRegisterForEvent(uint32_t board, uint32_t event_id)
{
    char buf[160];
    TraceLine line(buf, sizeof buf, "unRegisterForEvent");
    line.arg("board", board).arg("event_id", event_id);
    int32_t key = board <= 31 ? static_cast<int32_t>(board) : -2;
    if (auto f = library_faults().match("unRegisterForEvent", key)) {
        line.result(f->result).injected(f->rule).emit();
        return static_cast<uint32_t>(f->result);
    }
    uint32_t rc = 0;
    if (!Library::is_open())
        rc = ENXIO;
    else if (!Library::present(board))
        rc = ENODEV;
    else if (Dispatcher::instance().unsubscribe(board, event_id) == 0 && event_id != 0)
        rc = EINVAL; // no such subscription on this board
    line.result(rc).emit();
    return rc;
}
