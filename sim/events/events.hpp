// Asynchronous events of a board: what happened (link changes, fabric
// changes, temperature, CT requests), the board's event log, and the
// process-wide dispatcher that hands events to the subscribers' callbacks
// from a library thread of its own.
//
// Events are raised by the boards' engines while the library lock is held;
// they go into the board's log (GetEventBuffer) and, when someone has
// subscribed, into the dispatcher's queue. The dispatcher's thread delivers
// them with no lock held, so a callback may call back into the library.
//
// Subscriptions live in a fixed table of slots whose fields are atomics:
// unRegisterForEvent and KVD_FreeDiagEnv run in the shell's signal handler
// and only store into them, never lock and never allocate.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "core/fleet.hpp"
#include "events/events_conf.hpp"
#include "kvd_events.h"

namespace kvdsim
{

class Section;
struct BoardReading;
struct LinkStatus;
class Library;

void read_events_section(BoardReading &r);

// One event as the dispatcher delivers it.
struct Event {
    uint32_t board = 0;
    uint32_t kind = 0; // FC_REG_* bit
    LINKINFO link{};
    std::vector<uint8_t> payload; // RSCN or CT payload
    HBA_WWN vport{};
    uint32_t temp_type = 0;
    int32_t celsius = 0;
    uint16_t ct_value = 0;
    uint32_t tag = 0;
    // SD events (kind kSdEventKind): the kind, how many in a row, the
    // event record; `vport` is the port's name.
    uint32_t sd_category = 0;
    uint32_t sd_subcategory = 0;
    uint32_t sd_count = 0;
    std::array<uint8_t, 32> sd_record{};
    uint32_t sd_record_len = 0;
};

// The event-side state of one board; the caller holds the library lock.
class BoardEvents
{
  public:
    static constexpr size_t kLogEntries = 64;
    static constexpr size_t kMaxPayload = 1024;

    BoardEvents(uint32_t board, const EventsConf &conf);

    // Raising events: each is logged and offered to the dispatcher.
    void link_changed(const LinkStatus &link, const Wwn &wwpn, const Wwn &wwnn);
    void rscn(uint32_t affected_did);
    void vport_rscn(const Wwn &vport, uint32_t affected_did);
    // Sets the sensor's reading; crossing a threshold raises its event.
    void set_temperature(int32_t celsius);
    void temperature_event(uint32_t type, int32_t celsius);
    // A CT request for the registered responders; returns its tag.
    uint32_t ct_request(uint16_t ct_value, std::span<const uint8_t> payload);
    // A responder's answer: false when no request with that tag is open.
    bool ct_response(uint32_t tag, std::span<const uint8_t> payload);

    // Moves up to `wanted` entries, oldest first, into `out`.
    uint32_t drain(KVD_EVENT_ENTRY *out, uint32_t wanted);
    uint32_t take_missed();
    void note_missed(uint32_t n)
    {
        missed_ += n;
    }

    int32_t temperature() const
    {
        return temperature_;
    }
    // The last CT response: tag, payload.
    bool last_response(uint32_t &tag, std::vector<uint8_t> &payload) const;

  private:
    void log(uint32_t code, uint32_t d0, uint32_t d1, uint32_t d2, uint32_t d3);
    void post(Event &&e);
    int level(int32_t celsius) const;

    uint32_t board_;
    EventsConf conf_;
    std::deque<KVD_EVENT_ENTRY> log_;
    uint32_t missed_ = 0;
    int32_t temperature_;
    uint32_t next_tag_ = 1;
    std::vector<uint32_t> open_tags_;
    bool have_response_ = false;
    uint32_t response_tag_ = 0;
    std::vector<uint8_t> response_;
};

// Runs one trigger request ("<board> link down", "sync" is the
// dispatcher's own). Returns "ok..." or "error: ...". Needs the lock.
std::string apply_request(Library &lib, const std::string &line);

// The process-wide dispatcher.
class Dispatcher
{
  public:
    static constexpr int kSlots = 256;
    static constexpr size_t kQueueMax = 16384;

    static Dispatcher &instance();

    // Normal calls, library lock held.
    uint32_t subscribe(uint32_t board, uint32_t mask, uint32_t size, kvd_event_fn fn, bool ct,
                       uint16_t ct_value, uintptr_t context);
    bool wants(uint32_t board, uint32_t kind, uint16_t ct_value) const;
    // Queues an event; false when the queue is full (the event is lost).
    bool post(Event &&e);
    // Starts the thread (and the trigger channel, when asked for) as the
    // environment opens.
    void start(Library &lib);

    // Lock-free, allocation-free: may run in a signal handler. id 0 drops
    // every subscription of the board. Returns how many were dropped.
    int unsubscribe(uint32_t board, uint32_t id);
    // Stops delivery: no callback starts after this returns, and one that
    // was running has finished (or the wait gave up: see the .cpp).
    void stop();
    // Unlinks the trigger channel's path, if this process made it.
    void remove_channel();

    // For tests: delivers what is queued now, on the caller's thread.
    void deliver_pending();

    // Other families' subscriptions share the handshake between delivery
    // and release, with tokens from kSlots up. enter() publishes the token
    // about to be called and says whether delivery may go on; leave() ends
    // the call; wait_idle() waits until the token is not running (-1: any).
    bool enter(int token)
    {
        running_slot_.store(token);
        return want_running_.load();
    }
    void leave()
    {
        running_slot_.store(-1);
    }
    void wait_idle(int token);

  private:
    Dispatcher();
    struct Slot {
        std::atomic<uint32_t> id{0}; // 0: free
        std::atomic<uint32_t> board{0};
        std::atomic<uint32_t> mask{0};
        std::atomic<uint32_t> size{0};
        std::atomic<kvd_event_fn> fn{nullptr};
        std::atomic<bool> ct{false};
        std::atomic<uint16_t> ct_value{0};
        std::atomic<uintptr_t> context{0};
    };

    void run();
    void deliver(const Event &e);
    bool call(int slot, const Event &e);
    void open_channel();
    void close_channel();
    void serve_clients();
    void run_due(std::chrono::steady_clock::time_point now);
    void wake();

    Slot slots_[kSlots];
    std::atomic<uint32_t> next_id_{1};
    std::atomic<int> running_slot_{-1};
    std::atomic<bool> want_running_{false};
    std::atomic<bool> alive_{false};
    std::atomic<std::thread::native_handle_type> thread_id_{};
    int wake_fds_[2] = {-1, -1};

    std::mutex queue_mu_;
    std::deque<Event> queue_;

    // Owned by the thread once started.
    Library *lib_ = nullptr;
    struct Due {
        std::chrono::steady_clock::time_point at;
        std::string request;
    };
    std::vector<Due> schedule_;
    size_t next_due_ = 0;
    bool schedule_built_ = false;
    std::atomic<bool> channel_reopen_{false};
    int listen_fd_ = -1;
    struct Client {
        int fd = -1;
        std::string in;
    };
    std::vector<Client> clients_;
    // The channel's path, for the lock-free unlink on release.
    char channel_path_[108] = {};
    std::atomic<bool> channel_made_{false};
};

} // namespace kvdsim
