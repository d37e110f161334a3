// The process-wide state of the library: the fleet, one firmware model per
// board, and whether the environment is open.
//
// Normal calls hold Library::mu for their whole run. The release calls
// (KVD_FreeDiagEnv, unRegisterForEvent) may run in a signal handler that
// interrupted a normal call on the same thread, so they never take the lock:
// they use only the lock-free flags below.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "core/fault.hpp"
#include "core/hostile.hpp"
#include "diag/diag.hpp"
#include "events/events.hpp"
#include "asic/asic.hpp"
#include "auth/auth.hpp"
#include "mailbox/firmware.hpp"
#include "port/port.hpp"
#include "fabric/fabric.hpp"
#include "mailbox/firmware.hpp"
#include "nodes/nodes.hpp"
#include "npiv/npiv.hpp"
#include "scsi/target.hpp"
#include "sd/sd.hpp"
#include "sli4/sli4_engine.hpp"
#include "core/fleet.hpp"
#include "core/trace.hpp"
#include "mgmt/mgmt.hpp"
#include "pci/pci_engine.hpp"
#include "drvparams/drvparams.hpp"

namespace kvdsim
{

// One board: its fleet description and one instance of each engine that
// the board carries, each keeping its own state. An engine joins by adding
// its member here and constructing it in Library::load().
struct Board {
    const BoardConf *cfg = nullptr;
    std::unique_ptr<Firmware> fw;         // mailbox firmware: every board
    std::unique_ptr<Asic> asic;           // Tarvo ASIC: converged boards only
    std::unique_ptr<Port> port;           // driver port settings: every board
    std::unique_ptr<Fabric> fabric;       // what the port reaches: every board
    std::unique_ptr<ScsiTargets> scsi;    // the FCP targets among them
    std::unique_ptr<Sli4Engine> sli4;     // SLI-4 configuration and object store: SLI-4 boards
    std::unique_ptr<PciEngine> pci;       // configuration space, registers, SLIM: every board
    std::unique_ptr<MgmtEngine> mgmt;     // RNID management information: every board
    std::unique_ptr<BoardEvents> events;  // event log, sensor: every board
    std::unique_ptr<Diag> diag;           // loopback, rings, resets: every board
    std::unique_ptr<AuthEngine> auth;     // FC-SP authentication: every board
    std::unique_ptr<Nodes> nodes;         // nodes, VPD, bindings, target mapping: every board
    std::unique_ptr<Npiv> npiv;           // NPIV virtual ports: every board
    std::unique_ptr<SdEngine> sd;         // SD events and latency collection: every board
    std::unique_ptr<DrvParams> drvparams; // driver configuration parameters: every board
};

class Library
{
  public:
    // Made on first use and never destroyed: a signal handler may still be
    // running library code while the process exits.
    static Library &instance();

    std::mutex mu;

    // The calls below need mu held.

    // Loads the fleet on the first call: the file named by KVD_SIM_FLEET, or
    // the embedded default. A fleet that does not load is reported on
    // standard error in one line and leaves the library with no boards.
    void load();
    const Fleet &fleet() const
    {
        return fleet_;
    }
    // The board with this number, or null (also before load()).
    Board *board(uint32_t number);

    // Lock-free.
    static bool is_open();
    static void set_open(bool open);
    static bool present(uint32_t number);

  private:
    Library() = default;
    static void link_changed(void *context, const LinkStatus &link);
    void start_static_vports();
    bool loaded_ = false;
    Fleet fleet_;
    Board boards_[32];
};

// Reads and parses a fleet file; `path` null or empty means the embedded
// default. On failure `error` holds "<origin>: <place>: <fault>".
std::optional<Fleet> read_fleet_file(const char *path, std::string &error);

// Everything a normal call does around its work: holds the lock, traces
// into the shared big buffer, and consults the fault rules.
class Call
{
  public:
    explicit Call(const char *name)
        : lib(Library::instance()), lock(lib.mu), line(big_trace_buffer(), kBigTraceSize, name), name_(name)
    {
    }

    // When a fault rule fires: traces the call as injected and returns the
    // result to give back.
    std::optional<int64_t> fault(uint32_t board)
    {
        return fault_for(board <= 31 ? static_cast<int32_t>(board) : -2);
    }
    std::optional<int64_t> fault_boardless()
    {
        return fault_for(FaultRules::kNoBoard);
    }

    // Declares a record the call hands back to its caller: `size` bytes of
    // the caller's memory at `p` (null or empty: nothing). Hostile mode
    // overwrites exactly these spans once the work is done. Call it before
    // the work changes a size the caller passed in.
    void out(void *p, size_t size)
    {
        if (p && size && outs_ < kMaxOuts)
            out_[outs_++] = {p, size};
    }
    // Overwrites the declared records if hostile mode names this call; the
    // trace line gets the result `rc` first unless the work put it there.
    void spoil(int64_t rc)
    {
        HostileRules &h = library_hostile();
        if (outs_ == 0 || !h.wants(name_))
            return;
        Hostile pat = h.next_call();
        if (!line.has_result())
            line.result(rc);
        for (int i = 0; i < outs_; ++i)
            hostile_fill(pat, out_[i].p, out_[i].size);
        line.tag("hostile", hostile_name(pat));
    }

    Library &lib;
    std::lock_guard<std::mutex> lock;
    TraceLine line;

  private:
    static constexpr int kMaxOuts = 4;
    struct Span {
        void *p;
        size_t size;
    };
    Span out_[kMaxOuts] = {};
    int outs_ = 0;

    std::optional<int64_t> fault_for(int32_t board)
    {
        auto hit = library_faults().match(name_, board);
        if (!hit)
            return std::nullopt;
        line.result(hit->result).injected(hit->rule).emit();
        return hit->result;
    }
    const char *name_;
};

} // namespace kvdsim
