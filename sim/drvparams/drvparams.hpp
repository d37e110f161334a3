// The host driver's configuration parameters of one board: names, ranges,
// defaults, the value in effect and, for a parameter that only takes a new
// value when the adapter is reset, the value waiting for that reset.
//
// Other engines follow a parameter through its on-change hook, called with
// the new value whenever a value takes effect (at once for a dynamic
// parameter, at the next reset for the others).
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/engine.hpp"
#include "core/fleet.hpp"
#include "mailbox/firmware.hpp"

namespace kvdsim
{

// Request codes of the driver's parameter interface.
enum DrvParamsCode : uint32_t {
    kCfgGetParams = 0x01,
    kCfgSetParam = 0x02,
};

// A parameter as the driver declares it.
struct ParamDef {
    const char *name;
    uint32_t low;
    uint32_t high;
    uint32_t def;
    bool dynamic;
    uint8_t boards; // kOnFc | kOnFcoe: the kinds of board whose driver has it
    const char *help;
};
constexpr uint8_t kOnFc = 1;
constexpr uint8_t kOnFcoe = 2;

// The driver's parameters of a board of this protocol, in list order.
std::vector<const ParamDef *> param_defs(Protocol protocol);

// One request: the caller's list room (get) or the index and value (set),
// and the count of parameters the get found.
struct CfgCommand {
    std::span<uint8_t> data;
    uint32_t index = 0;
    uint32_t value = 0;
    uint32_t count = 0;
};

class DrvParams;
using CfgRow = EngineRow<int32_t (DrvParams::*)(CfgCommand &)>;

class DrvParams
{
  public:
    using Hook = std::function<void(uint32_t value)>;

    explicit DrvParams(const BoardConf &cfg);

    // Runs one request: 0 or an errno value (ENOTTY for a code without a
    // row, EINVAL for an index past the list or too little room, ERANGE for
    // a value outside the parameter's range).
    int32_t run(uint32_t code, CfgCommand &cmd, CommandNote *note = nullptr);

    static std::span<const RowInfo> commands();

    // The adapter was reset: pending values take effect.
    void apply_pending();

    size_t size() const
    {
        return params_.size();
    }
    // The index of the parameter named so, if the driver has it.
    std::optional<uint32_t> find(const std::string &name) const;
    uint32_t current(uint32_t index) const
    {
        return params_.at(index).current;
    }
    bool pending(uint32_t index) const
    {
        return params_.at(index).pending.has_value();
    }
    // Calls `hook` with each value the parameter takes from now on. False
    // when the driver has no such parameter.
    bool on_change(const std::string &name, Hook hook);

  private:
    friend struct CfgCommands;

    int32_t get_params(CfgCommand &cmd);
    int32_t set_param(CfgCommand &cmd);

    struct Param {
        const ParamDef *def;
        uint32_t current;
        std::optional<uint32_t> pending;
        Hook hook;
    };
    void take_effect(Param &p, uint32_t value);

    uint32_t board_;
    std::vector<Param> params_;
};

} // namespace kvdsim
