// FCF connection lists and the discovered FCFs of native FCoE ports, and
// the per-target FCP priority configuration. Each call hands a private copy
// of the caller's record to the board's port engine and copies the reply
// back only on success.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cstring>
#include <vector>

#include "core/entry.hpp"
#include "port/port_request.hpp"

using namespace kvdsim;

uint32_t KVD_FCoEGetConnList(uint32_t board, KVD_FCFCONNLIST *list)
{
    return board_call<uint32_t>(
        "KVD_FCoEGetConnList", board, kErrnoFamily, list,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("list", list); },
        [&](Call &c, Board &b) { return record_request(c, b, kPortFcoeGetConnList, list, true); });
}

uint32_t KVD_FCoESetConnList(uint32_t board, KVD_FCFCONNLIST *list)
{
    return board_call<uint32_t>(
        "KVD_FCoESetConnList", board, kErrnoFamily, list,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("list", list); },
        [&](Call &c, Board &b) { return record_request(c, b, kPortFcoeSetConnList, list, false); });
}

uint32_t KVD_FCoEGetFCFTable(uint32_t board, uint32_t *count, KVD_FCFENTRY *table)
{
    return board_call<uint32_t>(
        "KVD_FCoEGetFCFTable", board, kErrnoFamily, count,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("count", count).arg_ptr("table", table); },
        [&](Call &c, Board &b) -> uint32_t {
            const uint32_t room = *count;
            if (room && !table)
                return EFAULT;
            std::vector<KVD_FCFENTRY> data(room < KVD_FCF_TABLE_MAX ? room : KVD_FCF_TABLE_MAX);
            c.out(count, sizeof *count);
            c.out(table, data.size() * sizeof(KVD_FCFENTRY));
            PortCommand cmd{*b.fw,
                            {reinterpret_cast<uint8_t *>(data.data()), data.size() * sizeof(KVD_FCFENTRY)}};
            cmd.args[0] = static_cast<uint32_t>(data.size());
            const int32_t rc = engine_request(c, *b.port, kPortFcoeGetFcfTable, cmd);
            if (rc == 0) {
                if (cmd.written)
                    std::memcpy(table, data.data(), cmd.written);
                *count = cmd.args[1];
                c.line.bytes("out", count, sizeof *count);
            }
            return static_cast<uint32_t>(rc);
        });
}

uint32_t KVD_QoSGetConfig(uint32_t board, KVD_QOSCONFIG *config)
{
    return board_call<uint32_t>(
        "KVD_QoSGetConfig", board, kErrnoFamily, config,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("config", config); },
        [&](Call &c, Board &b) { return record_request(c, b, kPortQosGetConfig, config, true); });
}

uint32_t KVD_QoSSetConfig(uint32_t board, KVD_QOSCONFIG *config)
{
    return board_call<uint32_t>(
        "KVD_QoSSetConfig", board, kErrnoFamily, config,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("config", config); },
        [&](Call &c, Board &b) { return record_request(c, b, kPortQosSetConfig, config, false); });
}
