// The driver's configuration parameters and the requests that read and set
// them.
#include "drvparams/drvparams.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "core/fault.hpp"
#include "libkvd.h"

namespace kvdsim
{

namespace
{

constexpr uint8_t kOnAll = kOnFc | kOnFcoe;

// The driver's list: what a host FC driver of this kind lets the
// administrator tune. Link speed and topology are Fibre Channel matters;
// FCF fail-over and FIP belong to FCoE ports.
constexpr ParamDef kParams[] = {
    {"log_verbose", 0, 0xffff, 0, true, kOnAll, "Verbose logging bit-mask"},
    {"lun_queue_depth", 1, 128, 30, true, kOnAll, "Max number of FCP commands queued to a LUN"},
    {"tgt_queue_depth", 10, 0xffff, 0xffff, true, kOnAll, "Max number of FCP commands queued to a target"},
    {"hba_queue_depth", 32, 8192, 8192, false, kOnAll, "Max number of FCP commands queued to the adapter"},
    {"link_speed", 0, 16, 0, false, kOnFc, "Link speed in Gb/s (0 = auto-negotiate)"},
    {"topology", 0, 6, 0, false, kOnFc, "Topology: 0 loop then pt2pt, 2 pt2pt, 4 loop, 6 pt2pt then loop"},
    {"devloss_tmo", 1, 255, 30, true, kOnAll, "Seconds to wait for a lost remote port to return"},
    {"nodev_tmo", 0, 255, 30, true, kOnAll, "Seconds to hold I/O for a missing device"},
    {"enable_npiv", 0, 1, 1, false, kOnAll, "Enable NPIV (virtual ports)"},
    {"scan_down", 0, 1, 1, false, kOnFc, "Scan the loop's AL_PA map from high to low"},
    {"fcp_class", 2, 3, 3, false, kOnAll, "Class of service for FCP sequences"},
    {"use_msi", 0, 2, 2, false, kOnAll, "Interrupts: 0 INTx, 1 MSI, 2 MSI-X"},
    {"cr_delay", 0, 63, 0, false, kOnAll, "Milliseconds to coalesce responses before an interrupt"},
    {"cr_count", 1, 255, 1, false, kOnAll, "Responses to coalesce before an interrupt"},
    {"ack0", 0, 1, 0, false, kOnFc, "Use ACK0 for class 2 sequences"},
    {"fdmi_on", 0, 2, 0, false, kOnAll, "FDMI registration: 0 off, 1 on, 2 all attributes"},
    {"max_luns", 1, 65535, 255, true, kOnAll, "Highest LUN number scanned on a target"},
    {"discovery_threads", 1, 64, 32, false, kOnAll, "ELS commands outstanding at once during discovery"},
    {"sg_seg_cnt", 64, 4096, 64, false, kOnAll, "Scatter-gather segments per I/O"},
    {"max_scsicmpl_time", 0, 60000, 0, true, kOnAll, "Command time (ms) that lowers the queue depth (0 off)"},
    {"task_mgmt_tmo", 5, 180, 60, true, kOnAll, "Seconds to wait for a task management command"},
    {"fcf_failover_policy", 1, 2, 1, false, kOnFcoe, "FCF fail-over: 1 by priority, 2 round robin"},
    {"enable_fip", 0, 1, 1, false, kOnFcoe, "Discover FCFs with FIP"},
};
static_assert(sizeof kParams / sizeof kParams[0] <= KVD_CFG_MAX_PARAMS,
              "the list outgrows the caller's room");

constexpr bool texts_fit()
{
    for (const ParamDef &d : kParams)
        if (std::string_view(d.name).size() >= KVD_CFG_NAME_LEN ||
            std::string_view(d.help).size() >= KVD_CFG_HELP_LEN)
            return false;
    return true;
}
static_assert(texts_fit(), "a parameter's name or help text does not fit its field");

} // namespace

std::vector<const ParamDef *> param_defs(Protocol protocol)
{
    const uint8_t kind = protocol == Protocol::fcoe ? kOnFcoe : kOnFc;
    std::vector<const ParamDef *> out;
    for (const ParamDef &d : kParams)
        if (d.boards & kind)
            out.push_back(&d);
    return out;
}

DrvParams::DrvParams(const BoardConf &cfg) : board_(cfg.number)
{
    for (const ParamDef *d : param_defs(cfg.protocol)) {
        auto it = cfg.drvparams.values.find(d->name);
        params_.push_back(Param{d, it != cfg.drvparams.values.end() ? it->second : d->def, std::nullopt, {}});
    }
}

std::optional<uint32_t> DrvParams::find(const std::string &name) const
{
    for (size_t i = 0; i < params_.size(); ++i)
        if (name == params_[i].def->name)
            return static_cast<uint32_t>(i);
    return std::nullopt;
}

bool DrvParams::on_change(const std::string &name, Hook hook)
{
    auto i = find(name);
    if (!i)
        return false;
    params_[*i].hook = std::move(hook);
    return true;
}

void DrvParams::take_effect(Param &p, uint32_t value)
{
    p.pending.reset();
    const bool changed = p.current != value;
    p.current = value;
    if (changed && p.hook)
        p.hook(value);
}

void DrvParams::apply_pending()
{
    for (Param &p : params_)
        if (p.pending)
            take_effect(p, *p.pending);
}

// ---------------------------------------------------------------------------
// Requests

int32_t DrvParams::get_params(CfgCommand &cmd)
{
    const size_t room = cmd.data.size() / sizeof(CFGPARAM);
    for (size_t i = 0; i < params_.size() && i < room; ++i) {
        const Param &p = params_[i];
        CFGPARAM e{};
        std::strncpy(e.a_string, p.def->name, sizeof e.a_string - 1);
        e.a_low = p.def->low;
        e.a_hi = p.def->high;
        e.a_default = p.def->def;
        e.a_current = p.current;
        e.a_flag = p.def->dynamic ? KVD_CFG_DYNAMIC : 0;
        e.a_changestate = p.def->dynamic ? KVD_CFG_CHG_NOW
                          : p.pending    ? KVD_CFG_CHG_PENDING
                                         : KVD_CFG_CHG_RESET;
        std::strncpy(e.a_help, p.def->help, sizeof e.a_help - 1);
        std::memcpy(cmd.data.data() + i * sizeof e, &e, sizeof e);
    }
    cmd.count = static_cast<uint32_t>(params_.size());
    return 0;
}

// A value equal to the one in effect cancels a pending change.
int32_t DrvParams::set_param(CfgCommand &cmd)
{
    if (cmd.index >= params_.size())
        return EINVAL;
    Param &p = params_[cmd.index];
    if (cmd.value < p.def->low || cmd.value > p.def->high)
        return ERANGE;
    if (p.def->dynamic)
        take_effect(p, cmd.value);
    else if (cmd.value == p.current)
        p.pending.reset();
    else
        p.pending = cmd.value;
    return 0;
}

// ---------------------------------------------------------------------------
// The request table and its dispatcher

// min_in and min_out: bytes of list room the request needs.
struct CfgCommands {
    static constexpr CfgRow table[] = {
        {kCfgGetParams, "GET_PARAMS", kSliAll, 0, sizeof(CFGPARAM), &DrvParams::get_params},
        {kCfgSetParam, "SET_PARAM", kSliAll, 0, 0, &DrvParams::set_param},
    };
};
static_assert(unique_codes(CfgCommands::table), "two parameter requests share a code");
static_assert(unique_names(CfgCommands::table), "two parameter requests share a name");

std::span<const RowInfo> DrvParams::commands()
{
    static constexpr auto infos = row_infos(CfgCommands::table);
    return infos;
}

int32_t DrvParams::run(uint32_t code, CfgCommand &cmd, CommandNote *note)
{
    const CfgRow *row = find_row(CfgCommands::table, code);
    if (note)
        *note = CommandNote{row ? row->name : nullptr, 0};
    if (!row)
        return ENOTTY;
    if (cmd.data.size() < std::max(row->min_in, row->min_out))
        return EINVAL;
    if (auto hit =
            library_faults().match_command("drvparams", code, row->name, static_cast<int32_t>(board_))) {
        if (note)
            note->rule = hit->rule;
        return static_cast<int32_t>(hit->result);
    }
    return (this->*row->handler)(cmd);
}

} // namespace kvdsim
