// The adapter firmware model: one per board. It answers mailbox commands as
// adapter firmware does and owns the board's run-time state (link, counters,
// timers, logins), which the attribute queries read back.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/fleet.hpp"
#include "core/engine.hpp"
#include "core/hostmem.hpp"
#include "kvd_mbox.h"

namespace kvdsim
{

struct LinkStatus {
    bool up = false;
    uint32_t event_tag = 0; // bumps on every link attention
    uint32_t up_count = 0;
    uint32_t down_count = 0;
    uint32_t multi_count = 0;
    uint32_t did = 0;
    uint8_t alpa = 0;
    uint8_t topology = 0; // LINKINFO a_topology (LNK_*)
    uint8_t state = 0;    // LINKINFO a_linkState (LNK_*)
    uint32_t speed = 0;   // HBA API speed bit, 0 when down
    // Loop only, in LILP form: alpa_map[0] holds the count, the AL_PAs
    // follow from alpa_map[1]; alpa_count repeats the count.
    uint8_t alpa_count = 0;
    uint8_t alpa_map[128] = {};
};

// Port counters as HBA_PORTSTATISTICS reports them.
struct PortCounters {
    uint64_t seconds_since_reset = 0;
    uint64_t tx_frames = 0, tx_words = 0, rx_frames = 0, rx_words = 0;
    uint64_t lip = 0, nos = 0, error_frames = 0, dumped_frames = 0;
    uint64_t link_failure = 0, loss_of_sync = 0, loss_of_signal = 0, prim_seq_err = 0;
    uint64_t invalid_tx_word = 0, invalid_crc = 0;
};

enum class BoardState { ready, offline, resetting };

class Firmware;
class Sli4Engine;
class PciEngine;
class Port;
class Npiv;

// One mailbox command as a handler sees it: the record (a private copy,
// words not handed over read as zero), host memory for the buffer
// descriptors, and the payload that travelled behind the record (V2 calls;
// empty otherwise), bounded by what the caller handed over.
struct MailboxCommand {
    MAILBOX &mb;
    HostMemory &mem;
    std::span<uint8_t> payload;
};

using MailboxRow = EngineRow<uint16_t (Firmware::*)(MailboxCommand &)>;

// What the library's trace line tells of a command: its name (null for a
// code the firmware does not know) and the fault rule that answered it (0:
// none).
struct CommandNote {
    const char *name = nullptr;
    int rule = 0;
};

class Firmware
{
  public:
    explicit Firmware(const BoardConf &cfg);

    // Runs one mailbox command. `record` holds at least `words_in` and
    // `words_out` 32-bit words (at most 64 each are used). The command is
    // read from the first words_in words; only the first words_out words of
    // the completed record are written back. Returns the library result:
    // 0 completed, KVD_RC_MBX_RETRIES when the board stayed busy through
    // `retries` tries, or an errno value.
    int32_t issue(uint8_t *record, uint32_t words_in, uint32_t words_out, uint32_t retries, HostMemory &mem,
                  std::span<uint8_t> payload = {}, CommandNote *note = nullptr);

    // The command table: codes, names and SLI levels, and one row by code.
    static std::span<const RowInfo> commands();
    static const MailboxRow *command(uint8_t code);

    LinkStatus link() const;
    // Logins (RPIs) the firmware can hold.
    static uint32_t max_rpi();
    PortCounters counters();           // traffic moves a little on every read
    PortCounters counters_now() const; // as they stand, without moving
    // Frames the port sent and received for a command the host issued
    // (SCSI, ELS, CT): they count in the port and status counters.
    void carry_traffic(uint64_t tx_frames, uint64_t tx_bytes, uint64_t rx_frames, uint64_t rx_bytes);
    BoardState state() const;
    void set_state(BoardState s);

    // The board goes through a firmware reset, as RESTART does: the link
    // drops and comes back as at power-on, counters are cleared and the
    // stored configuration returns to its defaults. With `bring_up` false
    // the link stays down (a driver that holds it down).
    void restart(bool bring_up = true);

    // A link change from outside the mailbox (reset, loopback, a test's
    // trigger): the same attentions DOWN_LINK and INIT_LINK raise.
    void set_link(bool up);
    // Told of every link attention, after the link state changed.
    using LinkHook = void (*)(void *context, const LinkStatus &link);
    void set_link_hook(LinkHook hook, void *context)
    {
        link_hook_ = hook;
        link_hook_context_ = context;
    }

    const BoardConf &cfg() const
    {
        return cfg_;
    }

    // SLI4_CONFIG requests go to the board's SLI-4 engine (none: the
    // command is unknown).
    void attach_sli4(Sli4Engine *engine)
    {
        sli4_ = engine;
    }

    // DUMP_MEMORY reads the board's adapter memory (none: every dump fails).
    void attach_memory(PciEngine *pci)
    {
        pci_ = pci;
    }

    // RESTART asks the port settings whether the link may come back up
    // (link-down persistence holds it down; none: it always comes back).
    void attach_port(const Port *port)
    {
        port_gate_ = port;
    }

    // READ_CONFIG counts the VPIs and the RPIs the driver's virtual ports
    // hold (none: every VPI is free).
    void attach_npiv(const Npiv *npiv)
    {
        npiv_ = npiv;
    }

    // Link timers as CONFIG_LINK stores them (milliseconds).
    struct LinkTimers {
        uint32_t edtov = 2000, arbtov = 1000, ratov = 10000, rttov = 100;
        uint32_t altov = 15, crtov = 0, citov = 0;
        uint32_t my_id = 0;
        uint8_t max_bbc = 16, cr_count = 0, cr_delay = 0;
        bool ci = false, cr = false, ack0 = false, rrq_immed = false, rrq_enable = false;
    };
    const LinkTimers &timers() const
    {
        return timers_;
    }

  private:
    // A login the firmware holds (one RPI).
    struct Login {
        uint16_t rpi = 0;
        uint32_t did = 0;
        Wwn wwpn{};
        Wwn wwnn{};
        uint32_t cos = 0x8; // HBA API class-of-service bits
        uint32_t max_frame = 2048;
        bool fport = false; // the fabric's F_Port (FLOGI)
        bool fcp_target = false;
    };

    struct RingConfig {
        uint8_t profile = 0;
        uint8_t num_mask = 0;
        bool recv_notify = false, recv_seq = false;
        uint16_t max_orig = 0, max_resp = 0;
        std::array<RR_REG, MAX_RING_MASK> masks{};
    };

    // Link error counters, shared by READ_LNK_STAT and the port statistics.
    struct LinkErrors {
        uint32_t link_failure = 0, loss_sync = 0, loss_signal = 0, prim_seq_err = 0;
        uint32_t invalid_tx_word = 0, crc = 0, prim_seq_timeout = 0, elastic_overrun = 0;
        uint32_t arb_timeout = 0;
    };

    // Counters READ_STATUS reports since they were last cleared.
    struct StatusCounters {
        uint32_t xmit_bytes = 0, rcv_bytes = 0, xmit_frames = 0, rcv_frames = 0;
        uint32_t xmit_seqs = 0, rcv_seqs = 0, orig_exchanges = 0, resp_exchanges = 0;
        uint32_t rcv_pbsy = 0, rcv_fbsy = 0;
    };

    friend struct MailboxCommands;

    // Command handlers, the rows of the table. On an error status the
    // variant goes back as it was sent.
    uint16_t read_nv(MailboxCommand &cmd);
    uint16_t read_rev(MailboxCommand &cmd);
    uint16_t init_link(MailboxCommand &cmd);
    uint16_t down_link(MailboxCommand &cmd);
    uint16_t config_link(MailboxCommand &cmd);
    uint16_t config_ring(MailboxCommand &cmd);
    uint16_t reset_ring(MailboxCommand &cmd);
    uint16_t read_config(MailboxCommand &cmd);
    uint16_t read_rconfig(MailboxCommand &cmd);
    uint16_t read_sparm(MailboxCommand &cmd);
    uint16_t read_sparm64(MailboxCommand &cmd);
    uint16_t read_status(MailboxCommand &cmd);
    uint16_t read_rpi(MailboxCommand &cmd);
    uint16_t read_xri(MailboxCommand &cmd);
    uint16_t read_lnk_stat(MailboxCommand &cmd);
    uint16_t unreg_login(MailboxCommand &cmd);
    uint16_t read_la(MailboxCommand &cmd);
    uint16_t clear_la(MailboxCommand &cmd);
    uint16_t restart_command(MailboxCommand &cmd);
    uint16_t set_mask(MailboxCommand &cmd);
    uint16_t set_debug(MailboxCommand &cmd);
    uint16_t read_port_cap(MailboxCommand &cmd);
    // Firmware variables and the event log (eventlog.cpp).
    uint16_t set_variable(MailboxCommand &cmd);
    uint16_t dump_memory(MailboxCommand &cmd);
    uint16_t read_event_log_status(MailboxCommand &cmd);
    uint16_t read_event_log(MailboxCommand &cmd);
    uint16_t write_event_log(MailboxCommand &cmd);
    uint16_t biu_loopback(MailboxCommand &cmd);
    uint16_t sli4_config(MailboxCommand &cmd);

    uint32_t ring_count() const;
    void log_event(uint32_t code, uint32_t data);
    bool topology_allows(uint16_t link_flags) const;
    void link_up_event();
    void link_down_event();
    void bump_event_tag();
    void reset_defaults();
    void build_logins();
    void advance_traffic();
    const Login *find_login(uint16_t rpi) const;
    std::vector<const Login *> exchanges() const;
    // FC login service parameters as they follow the ELS command code.
    using ServiceParams = std::array<uint8_t, 112>;
    ServiceParams own_service_params() const;
    ServiceParams login_service_params(const Login &l) const;
    uint16_t write_service_params(const ServiceParams &sp, uint64_t address, uint32_t size,
                                  HostMemory &mem) const;

    BoardConf cfg_;
    BoardState state_ = BoardState::ready;
    LinkStatus link_;
    PortCounters port_;
    LinkErrors errors_;
    StatusCounters status_;
    LinkTimers timers_;
    std::array<RingConfig, 4> rings_{};
    std::vector<Login> logins_;
    uint32_t trace_mask_ = 0, trace_ring_ = 0;
    uint32_t debug_addr_ = 0, debug_value_ = 0;
    LinkHook link_hook_ = nullptr;
    void *link_hook_context_ = nullptr;

  public:
    // The firmware's event log: a ring of the latest entries, each with the
    // sequence number it was given. Link events and WRITE_EVENT_LOG add to
    // it; a firmware restart keeps it (it lives in adapter memory that the
    // restart does not clear).
    struct EventEntry {
        uint32_t sequence = 0, code = 0, data = 0;
    };
    static constexpr uint32_t kEventLogEntries = 32;
    static constexpr uint32_t kVariables = 16;
    // Event codes the firmware itself logs.
    static constexpr uint32_t kEventLinkUp = 1, kEventLinkDown = 2;

  private:
    std::array<EventEntry, kEventLogEntries> events_{};
    uint32_t event_count_ = 0; // entries held, at most kEventLogEntries
    uint32_t event_next_ = 1;  // sequence number of the next entry
    uint32_t event_lost_ = 0;  // entries overwritten by newer ones
    std::array<uint32_t, kVariables> variables_{};
    Sli4Engine *sli4_ = nullptr;
    PciEngine *pci_ = nullptr;
    const Port *port_gate_ = nullptr;
    const Npiv *npiv_ = nullptr;
};

} // namespace kvdsim
