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
struct AsicLogSpec {
    std::string name;                 // at most 19 characters
    uint16_t capacity = 8;            // entries kept
    uint16_t entry_size = 48;         // bytes per entry, NUL included
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

// Reads the board's "asic" object into r.spec.asic; without one, the ASIC
// of a board that carries it gets the defaults above, its port addresses
// taken from the board's port name.
void read_asic_section(BoardReading &r);

} // namespace kvdsim
