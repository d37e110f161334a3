// The driver's port settings engine: one per board. It keeps what the
// driver stores for the port (FCoE parameters, the global FCP priority
// flag, link-down persistence), answers the dump mailbox from the adapter's
// configuration regions, reports the QoS link speed and runs adapter
// resets. Link changes go to the board's firmware as mailbox commands, the
// way the driver sends them; the settings outlive firmware restarts.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "core/engine.hpp"
#include "core/fleet.hpp"
#include "kvd_fcf.h"
#include "mailbox/firmware.hpp"

namespace kvdsim
{

// Request codes of the driver's port-settings interface.
enum PortCode : uint32_t {
    kPortFcoeGetParams = 0x40,
    kPortFcoeSetParams = 0x41,
    kPortQosGetFlag = 0x42,
    kPortQosSetFlag = 0x43,
    kPortGetPersistLink = 0x44,
    kPortSetPersistLink = 0x45,
    kPortDumpRegion = 0x46,
    kPortQosLinkSpeed = 0x47,
    kPortResetAdapter = 0x48,
    kPortGetLogMask = 0x49,
    kPortSetLogMask = 0x4A,
    kPortFcoeGetConnList = 0x4B,
    kPortFcoeSetConnList = 0x4C,
    kPortFcoeGetFcfTable = 0x4D,
    kPortQosGetConfig = 0x4E,
    kPortQosSetConfig = 0x4F,
};

// Configuration regions the dump mailbox reads.
constexpr uint32_t kRegionWakeup = 1;    // boot firmware revisions
constexpr uint32_t kRegionNvParams = 14; // port names and addresses
constexpr uint32_t kRegionDriver = 23;   // the driver's stored port settings

// One request as a handler sees it: the caller's record or buffer, bounded
// by what the caller handed over, the scalar arguments, and the count of
// bytes the handler wrote back (for the dump).
struct PortCommand {
    Firmware &fw;
    std::span<uint8_t> data;
    uint32_t args[4] = {};
    uint32_t written = 0;
};

class Port;
using PortRow = EngineRow<int32_t (Port::*)(PortCommand &)>;

class Port
{
  public:
    explicit Port(const BoardConf &cfg);

    // The link as the stored settings want it at power-on.
    void power_on(Firmware &fw);

    // Runs one request. Returns 0 or an errno value: ENOTTY for a code
    // without a row, EINVAL when data is shorter than the row needs.
    int32_t run(uint32_t code, PortCommand &cmd, CommandNote *note = nullptr);

    static std::span<const RowInfo> commands();
    static const PortRow *command(uint32_t code);

    // The region's whole image; empty for a region the adapter lacks.
    std::vector<uint8_t> region(uint32_t id) const;

    // The driver's region (kRegionDriver) and the settings are one state:
    // a write is loaded into the settings (EINVAL, and nothing changes, for
    // a range outside the region or an image the driver cannot load); a
    // restore returns the settings to the board's power-on ones. EBUSY
    // while the firmware takes no mailbox.
    int32_t write_driver_region(Firmware &fw, uint32_t offset, const uint8_t *src, uint32_t count);
    int32_t restore_driver_region(Firmware &fw);

    // Whether the port may bring its link up: not held down by
    // persistence, and on FCoE an FCF answers with the stored FC-MAP and
    // VLAN.
    bool link_allowed() const;

    uint32_t fcp_priority() const
    {
        return fcp_priority_;
    }
    uint16_t persist_link_down() const
    {
        return persist_;
    }

    // The FCFs discovery finds (one entry per FCF and VLAN), each with its
    // state; `link_up` tells whether the port is logged in through the one
    // it selected.
    std::vector<KVD_FCFENTRY> fcf_table(bool link_up) const;

  private:
    friend struct PortCommands;

    int32_t fcoe_get_params(PortCommand &cmd);
    int32_t fcoe_set_params(PortCommand &cmd);
    int32_t qos_get_flag(PortCommand &cmd);
    int32_t qos_set_flag(PortCommand &cmd);
    int32_t get_persist_link(PortCommand &cmd);
    int32_t set_persist_link(PortCommand &cmd);
    int32_t dump_region(PortCommand &cmd);
    int32_t qos_link_speed(PortCommand &cmd);
    int32_t reset_adapter(PortCommand &cmd);
    int32_t get_log_mask(PortCommand &cmd);
    int32_t set_log_mask(PortCommand &cmd);
    int32_t fcoe_get_conn_list(PortCommand &cmd);
    int32_t fcoe_set_conn_list(PortCommand &cmd);
    int32_t fcoe_get_fcf_table(PortCommand &cmd);
    int32_t qos_get_config(PortCommand &cmd);
    int32_t qos_set_config(PortCommand &cmd);

    // The advertisement (index into fcf_table) the port logs in through:
    // the best one that matches its parameters and its connection list.
    std::optional<size_t> selected_fcf() const;
    bool admitted(const KVD_FCFENTRY &fcf, const KVD_FCFCONNENTRY **by) const;

    // The settings the driver's region holds.
    struct DriverSettings {
        uint32_t fc_map;
        bool vlan_valid;
        uint16_t vlan_id;
        uint32_t fcp_priority;
        uint16_t persist;
        std::vector<KVD_FCFCONNENTRY> conn;
    };
    std::vector<uint8_t> driver_region() const;
    bool load_driver_region(const std::vector<uint8_t> &image, DriverSettings &s) const;
    DriverSettings power_on_settings() const;
    int32_t apply(Firmware &fw, const DriverSettings &s);

    bool fcoe() const;
    bool fcf_answers() const;
    int32_t link_command(Firmware &fw, uint8_t code);
    int32_t settle(Firmware &fw, bool relogin);

    BoardConf cfg_;
    uint32_t fc_map_;
    bool vlan_valid_;
    uint16_t vlan_id_;
    uint32_t fcp_priority_;
    uint16_t persist_;
    uint32_t log_mask_ = 0;              // the driver's logging mask (KVD_DRVLOG_*)
    std::vector<FcfConf> fcfs_;          // the FCFs on the wire
    std::vector<KVD_FCFCONNENTRY> conn_; // FCF connection list; empty: any FCF
    struct QosSetting {
        uint8_t priority = 0;
        bool enabled = false;
    };
    std::map<std::array<uint8_t, 8>, QosSetting> qos_; // per FCP target WWPN
    // The driver's region as last written through a region write; empty
    // once the driver stores a setting (it then rewrites the region).
    std::optional<std::vector<uint8_t>> driver_image_;
};

} // namespace kvdsim
