// The Tarvo converged-network ASIC of a converged board: its firmware,
// settings, FRU data, optical module, memory, logs, panic record and
// counters, answering the command records the library carries to it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "asic/asic_conf.hpp"
#include "core/engine.hpp"
#include "kvd_tarvo.h"

namespace kvdsim
{

// What the library's trace line tells of a command: its row name (null for
// a code the ASIC does not know) and the fault rule that answered it (0:
// none).
struct AsicNote {
    const char *name = nullptr;
    int rule = 0;
};

// ASIC completion statuses (the response's code word).
enum AsicStatus : uint32_t {
    kAsicOk = 0,
    kAsicInvalidCommand = 1,
    kAsicInvalidParam = 2,
    kAsicBadLength = 3,
    kAsicImageRejected = 4,
    kAsicNotPermitted = 5,
    kAsicMoreData = 7,  // reply larger than offered: its second word says how much
    kAsicTableFull = 8, // no free forwarding-table, access-list or link slot
    kAsicNotFound = 9,  // no such entry, FCF, link or diagnostic log
    kAsicBadPort = 10,  // port or logical port out of range
    kAsicExists = 11,   // the FCF already carries a virtual link
    kAsicBusy = 16,     // diagnostics running
};

// How far a diagnostic run has come.
enum class DiagState { none, armed, running, done };

// Logical ports (FCoE/FIP parameters, access lists, virtual links), the
// most entries one access list holds, and the tests one diagnostic loop runs.
constexpr uint32_t kAsicLogicalPorts = 4;
constexpr uint32_t kAsicFaclMax = 16;
constexpr uint32_t kAsicDiagTests = 8;
// Exchanges one diagnostic loop lasts.
constexpr uint32_t kAsicDiagTicksPerLoop = 2;
// The FC-MAP a logical port without FIP uses unless told otherwise.
constexpr uint32_t kAsicDefaultFcMap = 0x0efc00;

class Asic
{
  public:
    explicit Asic(const AsicConf &setup);

    // One command exchange on board `board`. `cmd` is the command record
    // as sent, `rsp` the response buffer offered. Returns the transport
    // status: 0 when the exchange completed (the response's code word then
    // holds the ASIC's status and `delivered` the bytes written),
    // TARVO_ERR_RSP_OVERRUN when the response does not fit,
    // TARVO_ERR_GENERAL for a record too short to carry a code. A fault
    // rule "asic:CODE" or "asic:NAME" completes the command with its result
    // as the ASIC's status instead of running it.
    uint32_t exchange(std::span<const uint8_t> cmd, std::span<uint8_t> rsp, uint32_t &delivered,
                      int32_t board = -1, AsicNote *note = nullptr);

    struct Exchange;
    // Rows count bytes: min_in of command record, min_out of response.
    using Row = EngineRow<uint32_t (Asic::*)(Exchange &)>;
    static std::span<const RowInfo> commands();
    static const Row *find(uint32_t code);

    // Read-only views for tests and the library.
    uint32_t fw_version() const
    {
        return fw_version_;
    }
    uint32_t fw_type() const
    {
        return fw_type_;
    }
    bool link_up() const
    {
        return link_up_;
    }
    bool panicked() const
    {
        return panic_.present;
    }
    uint64_t ticks() const
    {
        return ticks_;
    }
    DiagState diag_state() const
    {
        return diag_.state;
    }
    // The text entries of log `id` oldest first (empty for an unknown id).
    std::vector<std::string> log_entries(uint16_t id) const;

  private:
    struct Log {
        uint16_t id = 0;
        std::string name;
        uint16_t capacity = 0;
        uint16_t entry_size = 0;
        uint16_t count = 0; // entries written, up to capacity
        uint16_t head = 0;  // slot of the newest entry
        std::vector<uint8_t> slots;
    };
    struct Panic {
        bool present = false;
        uint32_t type = 0;
        uint32_t epc = 0, cause = 0, status = 0;
        std::array<uint32_t, 32> gp{};
        std::vector<std::string> entries;
    };

    struct Fte {
        tarvo_fte_t rec{}; // as the table reports it
        uint32_t fcid = 0;
    };
    struct LogicalPort {
        uint32_t fcoe_mode = 0; // 1 FIP
        tarvo_fip_params_t fip{};
        uint32_t fc_map = kAsicDefaultFcMap;
        std::vector<tarvo_facl_t> facl;
    };
    struct Fcf {
        tarvo_fcf_info_t info{};
        bool linked = false;
        uint32_t lport = 0;
    };
    struct Diag {
        DiagState state = DiagState::none;
        uint32_t requested = 0, completed = 0, summary = 0;
        uint64_t started = 0; // tick the run began
    };

    friend struct AsicCommands;
    uint32_t init(Exchange &x);
    uint32_t download(Exchange &x);
    uint32_t read_mem(Exchange &x);
    uint32_t write_mem(Exchange &x);
    uint32_t get_init(Exchange &x);
    uint32_t get_config(Exchange &x);
    uint32_t port_stats(Exchange &x);
    uint32_t lif_stats(Exchange &x);
    uint32_t asic_stats(Exchange &x);
    uint32_t log_config(Exchange &x);
    uint32_t log_data(Exchange &x);
    uint32_t panic_log(Exchange &x);
    uint32_t get_sfp(Exchange &x);
    uint32_t set_fru(Exchange &x);
    uint32_t get_fru(Exchange &x);
    uint32_t set_fcoe_fmt(Exchange &x);
    uint32_t panic(Exchange &x);
    uint32_t reset(Exchange &x);
    uint32_t maint_mode(Exchange &x);
    uint32_t fte_insert(Exchange &x);
    uint32_t fte_delete(Exchange &x);
    uint32_t get_ftable(Exchange &x);
    uint32_t ets_pg(Exchange &x);
    uint32_t set_host_pfc(Exchange &x);
    uint32_t get_host_pfc(Exchange &x);
    uint32_t set_fcoe_params(Exchange &x);
    uint32_t get_fcoe_params(Exchange &x);
    uint32_t get_fcf_list(Exchange &x);
    uint32_t set_facl(Exchange &x);
    uint32_t get_facl(Exchange &x);
    uint32_t create_vl(Exchange &x);
    uint32_t delete_vl(Exchange &x);
    uint32_t get_lb_mode(Exchange &x);
    uint32_t set_pause(Exchange &x);
    uint32_t set_cos(Exchange &x);
    uint32_t set_port_type(Exchange &x);
    uint32_t loopback(Exchange &x);
    uint32_t diag(Exchange &x);
    uint32_t get_diag_log(Exchange &x);

    void init_net(const AsicConf &setup);
    void diag_advance();
    void diag_stop(uint32_t summary);

    void fill_init(tarvo_init_rsp_t &r) const;
    void log(uint16_t id, const std::string &text);
    void take_panic(uint32_t type);
    void build_sfp(const AsicConf &setup);
    void store_word(uint32_t address, uint32_t value);
    uint32_t log_cfg_size() const;
    uint32_t panic_log_size() const;

    uint32_t fw_version_;
    uint32_t fw_type_;
    bool maintenance_;
    bool link_up_;
    uint32_t bb_credit_;
    uint32_t frame_size_;
    std::array<uint8_t, TARVO_ADDR_SIZE> mac0_{}; // as the ASIC holds them (reversed)
    std::array<uint8_t, TARVO_ADDR_SIZE> mac1_{};
    uint32_t fru_flags_;
    bool fru_valid_;
    uint32_t fcoe_format_;
    std::array<uint8_t, TARVO_SFP_PAGE_SIZE> sfp_a0_{};
    std::array<uint8_t, TARVO_SFP_PAGE_SIZE> sfp_a2_{};
    std::vector<uint8_t> memory_;
    std::vector<Log> logs_;
    Panic panic_;
    bool reset_by_panic_ = false; // the last reset was a firmware panic
    uint64_t ticks_ = 0;          // exchanges served: the clock traffic moves with
    uint64_t commands_ = 0, command_errors_ = 0, downloads_ = 0, resets_ = 0, panics_ = 0;
    uint64_t log_writes_ = 0;

    // Network side: forwarding table, logical ports, FCFs, DCB and port
    // settings, diagnostics.
    std::array<Fte, TARVO_FTABLE_ENTRIES> ftable_{};
    std::array<LogicalPort, kAsicLogicalPorts> lports_{};
    std::vector<Fcf> fcfs_;
    tarvo_pg_info_t pg_current_{}, pg_default_{};
    bool host_pfc_ = true;
    uint32_t dcbx_mode_ = 0;
    std::array<uint32_t, 2> pause_type_{}, priority_{}, cos_{}, port_type_{}, lb_mode_{};
    Diag diag_;
    uint32_t diag_failing_ = 0; // bit i: test i fails every loop
};

// What an image must hold for the ASIC to take it. Returns kAsicOk or
// kAsicImageRejected; `reason` names the first test that failed.
uint32_t check_image(std::span<const uint8_t> image, uint32_t file_length, uint32_t type,
                     const char **reason);

// XOR of the whole 32-bit words of `bytes` (a trailing 1 to 3 bytes are left
// out), as the image checksum is computed.
uint32_t image_checksum(std::span<const uint8_t> bytes);

} // namespace kvdsim
