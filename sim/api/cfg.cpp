// Driver configuration parameters: the whole list, and one parameter set
// by its index. The list goes through a private copy of the caller's room
// (KVD_CFG_MAX_PARAMS entries), and only the entries written come back.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cerrno>
#include <cstring>
#include <string>

#include "core/entry.hpp"

using namespace kvdsim;

// The count is the result; 0 is a failure (the errno value goes on the
// trace line only).
uint32_t GetCfgParam(uint32_t board, CFGPARAM *cfgparam)
{
    return board_call<uint32_t>(
        "GetCfgParam", board, CallFamily{0, 0, 0, 0}, cfgparam,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("cfgparam", cfgparam); },
        [&](Call &c, Board &b) -> uint32_t {
            CFGPARAM list[KVD_CFG_MAX_PARAMS] = {};
            CfgCommand cmd{{reinterpret_cast<uint8_t *>(list), sizeof list}};
            CommandNote note;
            const int32_t rc = b.drvparams->run(kCfgGetParams, cmd, &note);
            const uint32_t n = rc != 0 ? 0 : cmd.count < KVD_CFG_MAX_PARAMS ? cmd.count : KVD_CFG_MAX_PARAMS;
            c.out(cfgparam, n * sizeof list[0]);
            std::memcpy(cfgparam, list, n * sizeof list[0]);
            c.line.result(n);
            if (rc != 0)
                c.line.tag("errno", std::to_string(rc).c_str());
            note_command(c, note);
            return n;
        });
}

uint32_t SetCfgParam(uint32_t board, uint32_t index, uint32_t value)
{
    return board_call<uint32_t>(
        "SetCfgParam", board, kErrnoFamily,
        [&](TraceLine &t) { t.arg("board", board).arg("index", index).arg("value", value); },
        [&](Call &c, Board &b) {
            CfgCommand cmd;
            cmd.index = index;
            cmd.value = value;
            return static_cast<uint32_t>(engine_request(c, *b.drvparams, kCfgSetParam, cmd));
        });
}
