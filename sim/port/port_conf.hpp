// The fleet's description of a board's port settings: what the driver's
// stored configuration holds at power-on, and the FCoE fabric the port
// finds on its wire. Read from the board's "port" object.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace kvdsim
{

class Section;
struct BoardConf;

// The FC-MAP is a 24-bit value; 0x0EFC00 is the default of FCoE fabrics.
constexpr uint32_t kDefaultFcMap = 0x0EFC00;
// The VLAN on which the default fabric's FCF answers discovery.
constexpr uint16_t kDefaultFcfVlan = 1002;
constexpr uint16_t kMaxVlanId = 4094;

// An FCF of the board's FCoE fabric, as FIP discovery finds it: one
// advertisement per VLAN it serves.
struct FcfConf {
    std::array<uint8_t, 6> mac{};
    std::array<uint8_t, 8> switch_name{};
    std::array<uint8_t, 8> fabric_name{};
    uint8_t priority = 128; // advertised priority: lower is preferred
    uint32_t fc_map = kDefaultFcMap;
    std::vector<uint16_t> vlans{kDefaultFcfVlan};
};

struct PortConf {
    // Stored FCoE parameters (FCoE boards only).
    uint32_t fc_map = kDefaultFcMap;
    bool vlan_valid = false; // false: the VLAN is found by FIP VLAN discovery
    uint16_t vlan_id = 0;
    // The fabric's FCF: the FC-MAP it grants addresses under and the VLANs
    // it answers discovery on.
    uint32_t fcf_fc_map = kDefaultFcMap;
    std::vector<uint16_t> fcf_vlans{kDefaultFcfVlan};
    // The FCFs on the wire (FCoE boards). Empty: two FCFs of the board's
    // fabric under fcf_fc_map on fcf_vlans.
    std::vector<FcfConf> fcfs;
    // Global FCP priority flag as the driver loaded it (any 32-bit value).
    uint32_t fcp_priority = 0;
    // Link-down persistence (boards with the persistLinkEnable feature).
    uint16_t persist_link_down = 0;
};

// Reads the board's "port" object into conf.port. Runs after the board's
// kind, link and features are read.
void read_port_section(Section &board, BoardConf &conf);

} // namespace kvdsim
