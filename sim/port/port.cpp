// The driver's port settings: FCoE parameters, FCP priority, link-down
// persistence, the dump mailbox, the QoS link speed and adapter resets.
#include "port/port.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "core/fault.hpp"
#include "libkvd.h"
#include "core/bytes.hpp"

namespace kvdsim
{

namespace
{

constexpr uint32_t kMailboxRetries = 5;

// HBA API speed bits and the link speed in Gb/s that QoS reports.
struct SpeedGbit {
    uint32_t bit;
    uint16_t gbit;
};
constexpr SpeedGbit kSpeedGbit[] = {
    {0x1, 1},   {0x2, 2},   {0x8, 4},    {0x10, 8},    {0x4, 10},     {0x20, 16},
    {0x80, 20}, {0x40, 32}, {0x100, 40}, {0x1000, 64}, {0x2000, 128},
};

// Region sizes, and the byte flash reads as where nothing is written.
constexpr size_t kWakeupSize = 64;
constexpr size_t kNvParamsSize = 128;
constexpr uint8_t kErased = 0xFF;

// Mailbox commands need no host memory here.
class NoMemory final : public HostMemory
{
  public:
    bool write(uint64_t, const void *, size_t) override
    {
        return false;
    }
    bool read(uint64_t, void *, size_t) override
    {
        return false;
    }
};

void put_text(std::vector<uint8_t> &v, const char *tag)
{
    v.insert(v.end(), tag, tag + std::strlen(tag));
}

void put_name(std::vector<uint8_t> &v, const std::string &name, size_t width)
{
    for (size_t i = 0; i < width; ++i)
        v.push_back(i < name.size() ? static_cast<uint8_t>(name[i]) : 0);
}

template <class R> R read_record(std::span<const uint8_t> data)
{
    R r{};
    std::memcpy(&r, data.data(), sizeof r);
    return r;
}

template <class R> void write_record(std::span<uint8_t> data, const R &r)
{
    std::memcpy(data.data(), &r, sizeof r);
}

} // namespace

Port::Port(const BoardConf &cfg)
    : cfg_(cfg), fc_map_(cfg.port.fc_map & 0xFFFFFF), vlan_valid_(cfg.port.vlan_valid),
      vlan_id_(cfg.port.vlan_id), fcp_priority_(cfg.port.fcp_priority), persist_(cfg.port.persist_link_down),
      fcfs_(cfg.port.fcfs)
{
    // Without FCFs of its own the wire has two of the board's fabric,
    // switches 1 and 2, the first preferred.
    if (fcfs_.empty())
        for (uint8_t n = 1; n <= 2; ++n) {
            FcfConf f;
            const auto board = static_cast<uint8_t>(cfg.number);
            f.mac = {0x06, 0x4b, 0x51, 0xfc, board, n};
            f.switch_name = {0x20, n, 0x06, 0x4b, 0x51, 0xfc, board, 0x00};
            f.fabric_name = cfg.fabric_name;
            f.priority = static_cast<uint8_t>(126 + 2 * n);
            f.fc_map = cfg.port.fcf_fc_map;
            f.vlans = cfg.port.fcf_vlans;
            fcfs_.push_back(f);
        }
}

void Port::power_on(Firmware &fw)
{
    if (fw.state() == BoardState::ready)
        (void)settle(fw, false);
}

bool Port::fcoe() const
{
    return cfg_.protocol == Protocol::fcoe;
}

// FIP discovery finds an FCF when the port solicits under the FCF's
// FC-MAP, on a VLAN the FCF serves (any such VLAN when the port leaves the
// VLAN to discovery); the port logs in through one its connection list
// admits.
bool Port::fcf_answers() const
{
    return selected_fcf().has_value();
}

bool Port::link_allowed() const
{
    return persist_ == 0 && (!fcoe() || fcf_answers());
}

// Sends DOWN_LINK or INIT_LINK to the firmware. A board that stays busy
// gives EBUSY, a command the firmware fails EIO.
int32_t Port::link_command(Firmware &fw, uint8_t code)
{
    MAILBOX mb{};
    mb.mbxCommand = code;
    uint8_t record[sizeof mb];
    std::memcpy(record, &mb, sizeof record);
    NoMemory none;
    if (fw.issue(record, MAILBOX_WORDS, MAILBOX_WORDS, kMailboxRetries, none) != KVD_RC_OK)
        return EBUSY;
    std::memcpy(&mb, record, sizeof mb);
    return mb.mbxStatus == MBXERR_OK ? 0 : EIO;
}

// Brings the link where the settings want it. `relogin` takes an up link
// down first, so that the port logs in to the fabric again.
int32_t Port::settle(Firmware &fw, bool relogin)
{
    const bool allowed = link_allowed();
    if (fw.link().up && (relogin || !allowed))
        if (int32_t rc = link_command(fw, MBX_DOWN_LINK))
            return rc;
    if (allowed && !fw.link().up && cfg_.link_up)
        return link_command(fw, MBX_INIT_LINK);
    return 0;
}

// ---------------------------------------------------------------------------
// Requests

int32_t Port::fcoe_get_params(PortCommand &cmd)
{
    auto p = read_record<KVD_FCOEPARAM>(cmd.data);
    if (p.version != KVD_FCOEPARAM_VERSION)
        return EINVAL;
    if (!fcoe())
        return EOPNOTSUPP;
    std::memset(p.reserved, 0, sizeof p.reserved);
    p.FCMap[0] = static_cast<uint8_t>(fc_map_ >> 16);
    p.FCMap[1] = static_cast<uint8_t>(fc_map_ >> 8);
    p.FCMap[2] = static_cast<uint8_t>(fc_map_);
    p.VLanValid = vlan_valid_ ? 1 : 0;
    p.VLanId = vlan_id_;
    write_record(cmd.data, p);
    return 0;
}

// New parameters make the port log out and discover its FCF again: on the
// new VLAN, under the new FC-MAP. Without an FCF that answers, the link
// stays down until parameters that find one are set.
int32_t Port::fcoe_set_params(PortCommand &cmd)
{
    const auto p = read_record<KVD_FCOEPARAM>(cmd.data);
    if (p.version != KVD_FCOEPARAM_VERSION)
        return EINVAL;
    if (!fcoe())
        return EOPNOTSUPP;
    if (p.VLanValid > 1 || (p.VLanValid && (p.VLanId == 0 || p.VLanId > kMaxVlanId)))
        return EINVAL;
    if (cmd.fw.state() != BoardState::ready)
        return EBUSY;
    const uint32_t map =
        static_cast<uint32_t>(p.FCMap[0]) << 16 | static_cast<uint32_t>(p.FCMap[1]) << 8 | p.FCMap[2];
    const bool changed = map != fc_map_ || (p.VLanValid != 0) != vlan_valid_ || p.VLanId != vlan_id_;
    fc_map_ = map;
    vlan_valid_ = p.VLanValid != 0;
    vlan_id_ = p.VLanId;
    driver_image_.reset();
    return changed ? settle(cmd.fw, true) : 0;
}

int32_t Port::qos_get_flag(PortCommand &cmd)
{
    write_record(cmd.data, fcp_priority_);
    return 0;
}

int32_t Port::qos_set_flag(PortCommand &cmd)
{
    if (cmd.args[0] > KVD_FCP_PRIORITY_ON)
        return EINVAL;
    fcp_priority_ = cmd.args[0];
    driver_image_.reset();
    return 0;
}

int32_t Port::get_persist_link(PortCommand &cmd)
{
    if (!(cfg_.features & KVD_FTR_PERSIST_LINK))
        return EOPNOTSUPP;
    write_record(cmd.data, persist_);
    return 0;
}

// Persistent link down takes the link down at once and keeps it down
// through resets; clearing it brings the link back.
int32_t Port::set_persist_link(PortCommand &cmd)
{
    if (!(cfg_.features & KVD_FTR_PERSIST_LINK))
        return EOPNOTSUPP;
    if (cmd.args[0] > KVD_LINK_PERSIST_DOWN)
        return EINVAL;
    if (cmd.fw.state() != BoardState::ready)
        return EBUSY;
    persist_ = static_cast<uint16_t>(cmd.args[0]);
    driver_image_.reset();
    return settle(cmd.fw, false);
}

// args: dump type, entry index, region, offset. The region is read from
// the offset to its end or for as many bytes as the caller's buffer holds.
int32_t Port::dump_region(PortCommand &cmd)
{
    const uint32_t type = cmd.args[0], index = cmd.args[1], id = cmd.args[2], offset = cmd.args[3];
    if (type != KVD_DUMP_TYPE_REGION || index != 0)
        return EINVAL;
    if (cmd.fw.state() != BoardState::ready)
        return EBUSY;
    const std::vector<uint8_t> image = region(id);
    if (image.empty())
        return ENOENT;
    if (offset >= image.size())
        return EINVAL;
    const size_t n = std::min(cmd.data.size(), image.size() - offset);
    std::memcpy(cmd.data.data(), image.data() + offset, n);
    cmd.written = static_cast<uint32_t>(n);
    return 0;
}

// An offline port carries no traffic at any speed.
int32_t Port::qos_link_speed(PortCommand &cmd)
{
    const LinkStatus link = cmd.fw.link();
    uint16_t gbit = 0;
    if (link.up && cmd.fw.state() == BoardState::ready)
        for (const SpeedGbit &s : kSpeedGbit)
            if (s.bit == link.speed)
                gbit = s.gbit;
    write_record(cmd.data, gbit);
    return 0;
}

// Selective, coordinated and firmware resets all restart the firmware;
// the driver then keeps the link where its settings want it.
int32_t Port::reset_adapter(PortCommand &cmd)
{
    const uint32_t type = cmd.args[0];
    if (type < KVD_RESET_SELECTIVE || type > KVD_RESET_FIRMWARE)
        return EINVAL;
    if (cmd.fw.state() != BoardState::ready)
        return EBUSY;
    cmd.fw.restart(link_allowed());
    return settle(cmd.fw, false);
}

// ---------------------------------------------------------------------------
// Regions

std::vector<uint8_t> Port::region(uint32_t id) const
{
    std::vector<uint8_t> v;
    const FirmwareRevision &rev = cfg_.revision;
    const bool sli4 = cfg_.sli_mode >= 4;
    switch (id) {
    case kRegionWakeup:
        put_text(v, "WKUP");
        put_be32(v, sli4 ? rev.arm_fw_id_rev : rev.sm_fw_rev);
        put_be32(v, sli4 ? rev.ulp_fw_id_rev : rev.op_fw_rev);
        put_be32(v, rev.sli1_fw_rev);
        put_be32(v, rev.sli2_fw_rev);
        put_name(v, sli4 ? rev.arm_fw_name : rev.op_fw_name, 16);
        v.resize(kWakeupSize, 0);
        break;
    case kRegionNvParams:
        put_text(v, "NVPM");
        v.insert(v.end(), cfg_.wwpn.begin(), cfg_.wwpn.end());
        v.insert(v.end(), cfg_.wwnn.begin(), cfg_.wwnn.end());
        put_be32(v, cfg_.pref_did & 0xFFFFFF);
        v.push_back(cfg_.hard_alpa);
        v.resize(v.size() + 3, 0);
        v.resize(kNvParamsSize, kErased);
        break;
    case kRegionDriver:
        return driver_region();
    default:
        break;
    }
    return v;
}

// ---------------------------------------------------------------------------
// The request table and its dispatcher

// min_in and min_out: bytes of data the request reads and writes.
struct PortCommands {
    static constexpr PortRow table[] = {
        {kPortFcoeGetParams, "FCOE_GET_PARAMS", kSliAll, sizeof(KVD_FCOEPARAM), sizeof(KVD_FCOEPARAM),
         &Port::fcoe_get_params},
        {kPortFcoeSetParams, "FCOE_SET_PARAMS", kSliAll, sizeof(KVD_FCOEPARAM), 0, &Port::fcoe_set_params},
        {kPortQosGetFlag, "QOS_GET_FLAG", kSliAll, 0, sizeof(uint32_t), &Port::qos_get_flag},
        {kPortQosSetFlag, "QOS_SET_FLAG", kSliAll, 0, 0, &Port::qos_set_flag},
        {kPortGetPersistLink, "GET_PERSIST_LINK", kSliAll, 0, sizeof(uint16_t), &Port::get_persist_link},
        {kPortSetPersistLink, "SET_PERSIST_LINK", kSliAll, 0, 0, &Port::set_persist_link},
        {kPortDumpRegion, "DUMP_REGION", kSliAll, 0, 0, &Port::dump_region},
        {kPortQosLinkSpeed, "QOS_LINK_SPEED", kSliAll, 0, sizeof(uint16_t), &Port::qos_link_speed},
        {kPortResetAdapter, "RESET_ADAPTER", kSliAll, 0, 0, &Port::reset_adapter},
        {kPortGetLogMask, "GET_LOG_MASK", kSliAll, 0, sizeof(uint32_t), &Port::get_log_mask},
        {kPortSetLogMask, "SET_LOG_MASK", kSliAll, 0, 0, &Port::set_log_mask},
        {kPortFcoeGetConnList, "FCOE_GET_CONN_LIST", kSliAll, sizeof(KVD_FCFCONNLIST),
         sizeof(KVD_FCFCONNLIST), &Port::fcoe_get_conn_list},
        {kPortFcoeSetConnList, "FCOE_SET_CONN_LIST", kSliAll, sizeof(KVD_FCFCONNLIST), 0,
         &Port::fcoe_set_conn_list},
        {kPortFcoeGetFcfTable, "FCOE_GET_FCF_TABLE", kSliAll, 0, 0, &Port::fcoe_get_fcf_table},
        {kPortQosGetConfig, "QOS_GET_CONFIG", kSliAll, sizeof(KVD_QOSCONFIG), sizeof(KVD_QOSCONFIG),
         &Port::qos_get_config},
        {kPortQosSetConfig, "QOS_SET_CONFIG", kSliAll, sizeof(KVD_QOSCONFIG), 0, &Port::qos_set_config},
    };
};
static_assert(unique_codes(PortCommands::table), "two port requests share a code");
static_assert(unique_names(PortCommands::table), "two port requests share a name");

std::span<const RowInfo> Port::commands()
{
    static constexpr auto infos = row_infos(PortCommands::table);
    return infos;
}

const PortRow *Port::command(uint32_t code)
{
    return find_row(PortCommands::table, code);
}

int32_t Port::run(uint32_t code, PortCommand &cmd, CommandNote *note)
{
    const PortRow *row = command(code);
    if (note)
        *note = CommandNote{row ? row->name : nullptr, 0};
    if (!row || !(row->sli_levels & sli_bit(cfg_.sli_mode)))
        return ENOTTY;
    if (cmd.data.size() < std::max(row->min_in, row->min_out))
        return EINVAL;
    if (auto hit =
            library_faults().match_command("port", code, row->name, static_cast<int32_t>(cfg_.number))) {
        if (note)
            note->rule = hit->rule;
        return static_cast<int32_t>(hit->result);
    }
    return (this->*row->handler)(cmd);
}

} // namespace kvdsim
