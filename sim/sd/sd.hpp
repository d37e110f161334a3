// Statistics and diagnostic (SD) events and latency collection.
//
// Events: subscriptions per board and port to a category and subcategory,
// with handles. The port is the physical one (named by a zero WWN or its
// own WWPN) or one of the board's NPIV virtual ports; each gets the events
// of its own logins and traffic. A virtual port's subscriptions end with the
// port: deleting it drops them, and the callbacks named are not called
// again. The board's engines raise events where they happen (logins,
// rejects, SCSI statuses, resets, ...); the dispatcher's thread delivers
// them. Subscriptions live in a fixed table of atomic slots, like the
// dispatcher's own: the release calls may drop them from a signal handler.
//
// Latency: one bucket definition for the library; per board, a collection
// on the physical port that sorts the completion times of the I/Os to each
// target into the buckets. Completion times come from a seeded model per
// target (background traffic, one round each time the data is read) and
// from the shell's own SCSI commands.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "core/fleet.hpp"
#include "kvd_sd.h"
#include "sd/sd_conf.hpp"

namespace kvdsim
{

class Section;
struct Event;
struct ScsiTask;
class Library;
class Npiv;
struct Vport;

void read_sd_section(Section &board, BoardConf &conf);

constexpr uint32_t kSdEventKind = 0x10000;  // Event::kind of SD events
constexpr uint32_t kSdGranularityNs = 10;   // nanoseconds per tick
constexpr uint32_t kSdMaxBurst = 1000000;   // events one trigger request raises at most
constexpr uint32_t kSdDefaultLunDepth = 30; // the driver's LUN queue depth unless set

// The categories and subcategories this library raises: the shell's
// vocabulary and a few more. Name null: not a kind.
struct SdKind {
    uint32_t category;
    uint32_t subcategory;
    const char *category_name;
    const char *name;
};
std::span<const SdKind> sd_kinds();
const SdKind *sd_kind(uint32_t category, uint32_t subcategory);

// The bucket definition; normal calls, library lock held.
struct SdBuckets {
    bool set = false;
    uint16_t type = 0;
    uint32_t base = 0, step = 0;
    std::array<int64_t, KVD_SD_BUCKETS> bounds{}; // lower edge of each bucket, in ticks
    // The bucket of a completion time: the last whose edge it reaches (the
    // first bucket also takes what lies below the base).
    int bucket(uint64_t ticks) const;
};
SdBuckets &sd_buckets();
// Validates and sets the definition: SD_OK or an SD status.
int32_t sd_define_buckets(uint16_t type, uint32_t base, uint32_t step);

// Process-wide subscriptions.
class SdSubscriptions
{
  public:
    static constexpr int kHandles = 64;
    static SdSubscriptions &instance();

    // Normal calls (library lock held). Statuses are SD statuses. `port`
    // is the WWPN of the port subscribed (the board's own or a virtual
    // port's); `virtual_port` marks the latter in the list.
    int32_t subscribe(uint32_t board, const Wwn &port, bool virtual_port, uint32_t category,
                      uint32_t subcategory, kvd_sd_callback_fn fn, void *context, uint32_t &handle);
    // A handle is released through the port it was taken on.
    int32_t unsubscribe(uint32_t board, const Wwn &port, uint32_t handle);
    bool wants(uint32_t board, const Wwn &port, uint32_t category, uint32_t subcategory) const;
    // Drops a port's subscriptions (the port is gone); returns how many.
    int drop_port(uint32_t board, const Wwn &port);
    // Prints the list on standard output.
    void show() const;

    // Lock-free: may run in a signal handler.
    int drop_board(uint32_t board);
    void drop_all();

    // On the dispatcher's thread.
    void deliver(const Event &e);

  private:
    struct Slot {
        std::atomic<uint32_t> handle{0}; // 0: free
        std::atomic<uint32_t> board{0};
        std::atomic<uint64_t> port{0}; // the port's WWPN, as its 8 bytes lie
        std::atomic<bool> virtual_port{false};
        std::atomic<uint32_t> category{0};
        std::atomic<uint32_t> subcategory{0};
        std::atomic<kvd_sd_callback_fn> fn{nullptr};
        std::atomic<void *> context{nullptr};
    };
    Slot slots_[kHandles];
    std::atomic<uint32_t> next_handle_{1};
};

// The library's SD trace level (0 off, 1 calls, 2 events too); lock-free.
int32_t sd_verbosity();
void set_sd_verbosity(int32_t level);

// One board's SD state; the caller holds the library lock.
class SdEngine
{
  public:
    // `npiv`: the board's virtual ports (may be null: none).
    explicit SdEngine(const BoardConf &cfg, const Npiv *npiv = nullptr);

    // True when `vport` names the board's physical port (zero or its WWPN).
    bool physical(const HBA_WWN &vport) const;
    // The port a subscription names: the physical port, or a virtual port
    // the board has. False for any other name.
    bool port_of(const HBA_WWN &vport, Wwn &port, bool &virtual_port) const;

    // Events on the physical port, or on `port` (a virtual port's WWPN).
    // `record` is the event record (at most 32 bytes).
    void raise(uint32_t category, uint32_t subcategory, std::span<const uint8_t> record, uint32_t count = 1,
               const Wwn *port = nullptr);
    // A standard record for a kind about a remote port (and LUN).
    std::vector<uint8_t> record_for(uint32_t category, uint32_t subcategory, const Wwn &rport,
                                    const Wwn &rnode, uint32_t lun) const;
    // An ELS the board's port sent was answered with LS_RJT by `rport`
    // (zero: no port answers at that address).
    void els_rejected(const Wwn &rport, uint8_t command, uint8_t reason, uint8_t explanation);
    // A SCSI command the shell sent through the board has completed.
    // `lun_depth` is the driver's queue depth for a LUN it has not lowered:
    // TASK SET FULL halves a LUN's depth (down to 1), which the driver
    // reports as a queue depth change.
    void scsi_completed(const Wwn &target, const ScsiTask &t, uint32_t lun_depth = kSdDefaultLunDepth);
    // The link came up: every FCP target logs in again with the port and
    // with each virtual port logged in (PLOGI received).
    void link_up();
    // A virtual port logged in to the fabric: the board's port and the
    // other virtual ports it logs in with receive its PLOGI.
    void vport_created(const Vport &v);
    // A virtual port was deleted: its subscriptions end, and the ports it
    // was logged in with receive its LOGO.
    void vport_deleted(const Vport &v);
    // The adapter was reset: the driver's SCSI bus reset and the board's
    // arrival; the LUNs' queue depths are the driver's again.
    void adapter_reset();
    // Trigger request "sd <category> <subcategory> <count> [vport wwpn]"
    // (words after the board number): "ok ..." or "error: ...".
    std::string request(const std::vector<std::string> &words);

    // Collection. Statuses are SD statuses.
    int32_t start();
    int32_t stop();
    int32_t reset();
    // Fills up to out.size() / 88 responses; `count` is the number of targets.
    int32_t get_data(uint16_t &count, std::span<uint8_t> out);
    bool collecting() const
    {
        return active_;
    }
    size_t targets() const
    {
        return targets_.size();
    }

  private:
    struct Target {
        Wwn wwpn{};
        Wwn wwnn{};
        SdTraffic traffic;
        uint64_t rng = 0;
        std::array<uint32_t, KVD_SD_BUCKETS> counts{};
        std::map<uint32_t, uint32_t> depth; // LUNs whose queue depth the driver lowered
    };
    void count(Target &t, uint64_t latency_ns);
    void background_round();
    uint64_t next(Target &t);

    // The ports `v` is logged in with that see `from` log in or out.
    void tell_peers(const Vport &from, uint32_t subcategory);

    uint32_t board_;
    Wwn wwpn_{};
    const Npiv *npiv_;
    std::vector<Target> targets_;
    bool active_ = false;
    bool has_data_ = false;
};

} // namespace kvdsim
