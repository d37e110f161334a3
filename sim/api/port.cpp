// Port settings: FCoE parameters, the FCP priority flag and QoS link speed,
// link-down persistence, the dump mailbox, the adapter reset, and the
// library's management mix-and-match display.
//
// Each call hands its request to the board's port engine with a private
// copy of the caller's record, and copies the reply back only on success.
// Failures beyond the frame's own are the engine's errno values.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cstdio>
#include <cstring>
#include <vector>

#include "core/entry.hpp"
#include "port/port_request.hpp"

using namespace kvdsim;

namespace
{

// A request that only answers a value of type V.
template <class V> uint32_t value_request(Call &c, Board &b, uint32_t code, V *value)
{
    c.out(value, sizeof *value);
    V out{};
    PortCommand cmd{*b.fw, {reinterpret_cast<uint8_t *>(&out), sizeof out}};
    const int32_t rc = engine_request(c, *b.port, code, cmd);
    if (rc == 0) {
        *value = out;
        c.line.bytes("out", value, sizeof *value);
    }
    return static_cast<uint32_t>(rc);
}

// A request that takes one scalar and returns nothing.
uint32_t scalar_request(Call &c, Board &b, uint32_t code, uint32_t value)
{
    PortCommand cmd{*b.fw, {}};
    cmd.args[0] = value;
    return static_cast<uint32_t>(engine_request(c, *b.port, code, cmd));
}

} // namespace

uint32_t KVD_FCoEGetParams(uint32_t board, KVD_FCOEPARAM *param)
{
    return board_call<uint32_t>(
        "KVD_FCoEGetParams", board, kErrnoFamily, param,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("param", param); },
        [&](Call &c, Board &b) { return record_request(c, b, kPortFcoeGetParams, param, true); });
}

uint32_t KVD_FCoESetParams(uint32_t board, KVD_FCOEPARAM *param)
{
    return board_call<uint32_t>(
        "KVD_FCoESetParams", board, kErrnoFamily, param,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("param", param); },
        [&](Call &c, Board &b) { return record_request(c, b, kPortFcoeSetParams, param, false); });
}

uint32_t KVD_QoSGetGlobalFlag(uint32_t board, uint32_t *flag)
{
    return board_call<uint32_t>(
        "KVD_QoSGetGlobalFlag", board, kErrnoFamily, flag,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("flag", flag); },
        [&](Call &c, Board &b) { return value_request(c, b, kPortQosGetFlag, flag); });
}

uint32_t KVD_QoSSetGlobalFlag(uint32_t board, uint32_t flag)
{
    return board_call<uint32_t>(
        "KVD_QoSSetGlobalFlag", board, kErrnoFamily,
        [&](TraceLine &t) { t.arg("board", board).arg("flag", flag); },
        [&](Call &c, Board &b) { return scalar_request(c, b, kPortQosSetFlag, flag); });
}

uint32_t KVD_GetQoSLinkSpeed(uint32_t board, uint16_t *speed)
{
    return board_call<uint32_t>(
        "KVD_GetQoSLinkSpeed", board, kErrnoFamily, speed,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("speed", speed); },
        [&](Call &c, Board &b) { return value_request(c, b, kPortQosLinkSpeed, speed); });
}

uint32_t KVD_GetPersistLinkDown(uint32_t board, uint16_t *linkDownConfig)
{
    return board_call<uint32_t>(
        "KVD_GetPersistLinkDown", board, kErrnoFamily, linkDownConfig,
        [&](TraceLine &t) { t.arg("board", board).arg_ptr("linkDownConfig", linkDownConfig); },
        [&](Call &c, Board &b) { return value_request(c, b, kPortGetPersistLink, linkDownConfig); });
}

uint32_t KVD_SetPersistLinkDown(uint32_t board, uint16_t linkDownConfig)
{
    return board_call<uint32_t>(
        "KVD_SetPersistLinkDown", board, kErrnoFamily,
        [&](TraceLine &t) { t.arg("board", board).arg("linkDownConfig", linkDownConfig); },
        [&](Call &c, Board &b) { return scalar_request(c, b, kPortSetPersistLink, linkDownConfig); });
}

// *length is the room in buffer on the way in and the bytes written on the
// way out; the engine writes no further than the room given.
uint32_t KVD_IssueDumpMBox(uint32_t board, uint32_t type, uint32_t index, uint32_t region, uint32_t offset,
                           uint8_t *buffer, uint32_t *length)
{
    return board_call<uint32_t>(
        "KVD_IssueDumpMBox", board, kErrnoFamily, length,
        [&](TraceLine &t) {
            t.arg("board", board)
                .arg("type", type)
                .arg("index", index)
                .arg("region", region)
                .arg("offset", offset)
                .arg_ptr("buffer", buffer)
                .arg_ptr("length", length);
        },
        [&](Call &c, Board &b) -> uint32_t {
            if (!buffer)
                return EFAULT;
            const uint32_t room = *length < KVD_DUMP_MAX ? *length : KVD_DUMP_MAX;
            c.out(buffer, room);
            c.out(length, sizeof *length);
            std::vector<uint8_t> data(room);
            PortCommand cmd{*b.fw, {data.data(), data.size()}};
            cmd.args[0] = type;
            cmd.args[1] = index;
            cmd.args[2] = region;
            cmd.args[3] = offset;
            const int32_t rc = engine_request(c, *b.port, kPortDumpRegion, cmd);
            if (rc == 0) {
                std::memcpy(buffer, data.data(), cmd.written);
                *length = cmd.written;
                c.line.bytes("out", buffer, cmd.written);
            }
            return static_cast<uint32_t>(rc);
        });
}

void kvd_show_mmm(int32_t verbose, void *arg)
{
    (void)arg;
    library_call<int32_t>(
        "kvd_show_mmm", kErrnoFamily, [&](TraceLine &t) { t.arg("verbose", static_cast<uint32_t>(verbose)); },
        [&](Call &c) {
            c.lib.load();
            const Fleet &f = c.lib.fleet();
            printf("Management mix-and-match (MMM): %s\n", f.mmm ? "enabled" : "disabled");
            if (verbose)
                printf("\tlibkvd %s, driver %s %s\n", f.library_version.c_str(), f.driver_name.c_str(),
                       f.driver_version.c_str());
            return 0;
        });
}
