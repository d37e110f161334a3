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

#include "kvd_tarvo.h"

namespace kvdsim
{

// One named log of the ASIC: a ring of fixed-size text entries.
struct AsicLogSpec {
    std::string name;          // at most 19 characters
    uint16_t capacity = 8;     // entries kept
    uint16_t entry_size = 48;  // bytes per entry, NUL included
    std::vector<std::string> entries; // present at power-on, oldest first
};

// What a board's ASIC is at power-on (the fleet's "asic" object).
struct AsicSpec {
    uint32_t fw_version = 0x02010400;
    uint32_t fw_type = TARVO_FW_TYPE_OPERATIONAL;
    bool maintenance = false;
    bool panicked = false; // came up after a firmware exception
    bool link_up = true;   // the management path between controller and ASIC
    uint32_t bb_credit = 16;
    uint32_t frame_size = 2112;
    // Port MAC addresses, in the order they are written ("00:0a:...").
    std::array<uint8_t, 6> mac0{0x0a, 0x3c, 0x55, 0x00, 0x20, 0x00};
    std::array<uint8_t, 6> mac1{0x0a, 0x3c, 0x55, 0x00, 0x20, 0x01};
    uint32_t channels = 2;
    bool fru_valid = true;
    uint32_t fcoe_format = FC0E_FRAME_FORMAT_P0;
    // Optical module identity (SFF-8472 page A0).
    std::string sfp_vendor = "MARROWLIGHT";
    std::string sfp_part = "MLT-SR10-85";
    std::string sfp_serial = "MLT2611A0471";
    std::string sfp_date = "260311";
    uint32_t memory_size = 0x10000; // bytes of ASIC memory from address 0
    std::vector<AsicLogSpec> logs = default_logs();

    static std::vector<AsicLogSpec> default_logs();
};

// ASIC completion statuses (the response's code word).
enum AsicStatus : uint32_t {
    kAsicOk = 0,
    kAsicInvalidCommand = 1,
    kAsicInvalidParam = 2,
    kAsicBadLength = 3,
    kAsicImageRejected = 4,
    kAsicNotPermitted = 5,
};

class Asic
{
  public:
    explicit Asic(const AsicSpec &spec);

    // One command exchange. `cmd` is the command record as sent, `rsp` the
    // response buffer offered. Returns the transport status: 0 when the
    // exchange completed (the response's code word then holds the ASIC's
    // status and `delivered` the bytes written), TARVO_ERR_RSP_OVERRUN when
    // the response does not fit, TARVO_ERR_GENERAL for a record too short
    // to carry a code. `forced` (when non-null) is a status the command is
    // completed with instead of being run.
    uint32_t exchange(std::span<const uint8_t> cmd, std::span<uint8_t> rsp, uint32_t &delivered,
                      const uint32_t *forced = nullptr);

    struct Exchange;
    using Handler = uint32_t (Asic::*)(Exchange &);
    struct Row {
        uint32_t code;
        const char *name;
        uint32_t min_in;  // bytes of command record
        uint32_t min_out; // bytes of response at least
        Handler handler;
    };
    static std::span<const Row> rows();
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

    void fill_init(tarvo_init_rsp_t &r) const;
    void log(uint16_t id, const std::string &text);
    void take_panic(uint32_t type);
    void build_sfp(const AsicSpec &spec);
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
    uint64_t ticks_ = 0; // exchanges served: the clock traffic moves with
    uint64_t commands_ = 0, command_errors_ = 0, downloads_ = 0, resets_ = 0, panics_ = 0;
    uint64_t log_writes_ = 0;
};

// What an image must hold for the ASIC to take it. Returns kAsicOk or
// kAsicImageRejected; `reason` names the first test that failed.
uint32_t check_image(std::span<const uint8_t> image, uint32_t file_length, uint32_t type,
                     const char **reason);

// XOR of the whole 32-bit words of `bytes` (a trailing 1 to 3 bytes are left
// out), as the image checksum is computed.
uint32_t image_checksum(std::span<const uint8_t> bytes);

} // namespace kvdsim
