// The fleet: what the virtual adapters are, as read from a fleet file (JSON)
// or from the embedded default fleet.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "diag/diag_conf.hpp"
#include "events/events_conf.hpp"
#include "asic/asic_conf.hpp"
#include "auth/auth_conf.hpp"
#include "sd/sd_conf.hpp"
#include "port/port_conf.hpp"
#include "nodes/nodes_conf.hpp"
#include "npiv/npiv_conf.hpp"
#include "scsi/luns.hpp"
#include "sli4/conf.hpp"
#include "drvparams/drvparams_conf.hpp"

namespace kvdsim
{

using Wwn = std::array<uint8_t, 8>;

enum class Protocol { fc, fcoe };
enum class Topology { fabric, loop, pt2pt };

// A port the board sees on its fabric or loop.
struct RemotePort {
    Wwn wwpn{};
    Wwn wwnn{};
    uint32_t did = 0;          // 24-bit port identifier
    uint32_t port_type = 0;    // HBA API port type (N_Port 5, NL_Port 6, ...)
    uint32_t cos = 0x8;        // supported classes of service (class 3)
    bool fcp_target = true;    // offers FCP (type 8)
    std::string symbolic_name; // PortSymbolicName
    std::string os_device;     // OSDeviceName text, e.g. "/dev/sg3" (below 32 bytes)
    int32_t scsi_target = -1;  // SCSI target id the driver gave it (-1: none)
    uint32_t max_frame = 2048;
};

// Revision numbers the firmware reports through READ_REV.
struct FirmwareRevision {
    uint32_t biu_rev = 0;
    uint32_t sm_rev = 0;
    uint32_t sm_fw_rev = 0; // fw_rev word
    uint32_t endec_rev = 0;
    uint8_t fcph_low = 0;
    uint8_t fcph_high = 0;
    uint8_t feature_level_low = 0;
    uint8_t feature_level_high = 0;
    uint32_t post_kernel_rev = 0;
    uint32_t op_fw_rev = 0;
    std::string op_fw_name; // at most 16 bytes
    uint32_t sli1_fw_rev = 0;
    std::string sli1_fw_name;
    uint32_t sli2_fw_rev = 0;
    std::string sli2_fw_name;
    // SLI-4 view
    uint32_t first_hw_rev = 0;
    uint32_t second_hw_rev = 0;
    uint32_t third_hw_rev = 0;
    uint32_t arm_fw_id_rev = 0;
    std::string arm_fw_name; // at most 16 bytes
    uint32_t ulp_fw_id_rev = 0;
    std::string ulp_fw_name;
};

struct BoardConf {
    uint32_t number = 0; // board number, 0..31
    // PCI identity
    uint16_t vendor_id = 0;
    uint16_t device_id = 0;
    uint16_t subsys_vendor_id = 0;
    uint16_t subsys_device_id = 0;
    uint32_t bus = 0;
    uint32_t device = 0;
    uint8_t function = 0;
    uint32_t irq = 0;
    uint64_t mem_base = 0;    // adapter memory (SLIM) BAR
    uint64_t ctlreg_base = 0; // control register BAR
    uint64_t flash_base = 0;  // expansion ROM / flash
    // driver view
    uint16_t instance = 0; // vexa%d
    int32_t host = 0;      // SCSI host number
    bool online = true;
    // identity
    std::string firmware;         // a_fwname text (empty: unknown)
    std::string firmware_version; // HBA API FirmwareVersion
    std::string model;
    std::string description;
    std::string serial;
    std::string hardware_version;
    std::string option_rom_version;
    std::string symbolic_name; // node symbolic name
    Wwn wwpn{};
    Wwn wwnn{};
    uint32_t pref_did = 0; // preferred D_ID in NVRAM
    uint8_t hard_alpa = 0; // hard AL_PA in NVRAM
    // interface
    int sli_mode = 3; // 2, 3 or 4
    Protocol protocol = Protocol::fc;
    bool tarvo = false;        // carries the Tarvo converged-network ASIC
    int if_type = 0;           // SLI-4 interface type (0 when not SLI-4)
    bool object_store = false; // SLI-4 object store present
    Sli4Conf sli4;             // SLI-4 configuration engine and object store
    uint64_t features = 0;     // KVDDRVINFO featureList bits
    uint32_t npiv_max_vports = 0;
    FirmwareRevision revision;
    // link
    bool link_up = true;
    Topology topology = Topology::fabric;
    uint32_t speed = 0;            // HBA API speed bit of the current speed
    uint32_t supported_speeds = 0; // HBA API speed bits
    uint32_t did = 0;              // port identifier once logged in
    uint8_t alpa = 0;              // AL_PA on a loop
    uint32_t max_frame = 2048;
    Wwn fabric_name{};
    std::vector<RemotePort> remote_ports;
    EventsConf events;       // "events": sensor and scheduled events
    DiagConf diag;           // "diag": loopback plug
    AsicConf asic;           // the Tarvo ASIC, when `tarvo`
    PortConf port;           // the "port" section
    ScsiConf scsi;           // logical units of the FCP targets among the remote ports
    AuthConf auth;           // FC-SP secrets of remote entities
    NodesConf nodes;         // VPD and persistent bindings
    NpivConf npiv;           // "npiv": driver enable, the fabric's NPIV logins
    SdConf sd;               // "sd": background traffic of the FCP targets
    DrvParamsConf drvparams; // driver parameters as loaded
};

struct Fleet {
    std::string driver_version;  // a_drvrid text, at most 15 characters
    std::string driver_name;     // "vexa"
    std::string library_version; // KVD_GetLibVer text, at most 31 characters
    std::string hostname;
    std::string manufacturer;
    uint32_t logging_enable = 0;   // libkvd_logging_enable
    bool mmm = false;              // management mix-and-match allowed
    std::vector<BoardConf> boards; // in board-number order
};

// Texts a fleet gets when it names none.
inline constexpr const char *kDefaultDriverVersion = "3.4.12.0";
inline constexpr const char *kDefaultLibraryVersion = "3.4.0";

// Reads a WWN written as eight colon-separated hex pairs or as 16 hex digits.
bool parse_wwn(const std::string &text, Wwn &out);

// Parses a fleet. On failure returns nothing and sets `error` to one line
// naming `origin`, the place in the document and the fault.
std::optional<Fleet> parse_fleet(const std::string &text, const std::string &origin, std::string &error);

// The JSON text of the embedded default fleet.
const char *default_fleet_json();

} // namespace kvdsim
