// What a board's Tarvo ASIC is at power-on: the fleet's "asic" object.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "kvd_tarvo.h"

namespace kvdsim
{

struct BoardReading;

// One named log of the ASIC: a ring of fixed-size text entries.
struct AsicLogConf {
    std::string name;                 // at most 19 characters
    uint16_t capacity = 8;            // entries kept
    uint16_t entry_size = 48;         // bytes per entry, NUL included
    std::vector<std::string> entries; // present at power-on, oldest first
};

// What a board's ASIC is at power-on (the fleet's "asic" object).
struct AsicConf {
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
    std::vector<AsicLogConf> logs = default_logs();
    // FCoE side: the fabric the FCFs belong to (the board's fabric name),
    // how many FCFs FIP discovery finds, the VLAN they answer on, the DCBX
    // version negotiated with the peer (0 pre-CEE .. 4) and the host PFC flag.
    std::array<uint8_t, 8> fabric_name{0x10, 0x00, 0x02, 0x5e, 0x11, 0x00, 0x00, 0x00};
    uint32_t fcfs = 2;
    uint32_t fcoe_vlan = 1002;
    uint32_t dcbx_mode = 1;
    bool host_pfc = true;
    // Diagnostic tests that fail (bit i for test i of the eight).
    uint32_t diag_failing = 0;

    static std::vector<AsicLogConf> default_logs();
};

// Reads the board's "asic" object into r.conf.asic; without one, the ASIC
// of a board that carries it gets the defaults above, its port addresses
// taken from the board's port name.
void read_asic_section(BoardReading &r);

} // namespace kvdsim
