// The ASIC's uplink port controls (loopback, pause, class of service, port
// type) and its built-in diagnostics with their log.
#include <cstdio>
#include <cstring>

#include "asic/asic.hpp"
#include "asic/asic_exchange.hpp"

namespace kvdsim
{

namespace
{

constexpr uint32_t kUplinks = 2;
constexpr uint32_t kCosMax = 7;
constexpr uint32_t kPriorityMaskMax = 0xff;

// The diagnostic log: five header words, then one entry per test, a status
// word and a text of kDiagTextWords words. Entries lie kDiagStride bytes
// apart, counted in 8-byte entry units of (text bytes + 4) as the ASIC lays
// them out.
constexpr uint32_t kDiagTextWords = 8;
constexpr uint32_t kDiagTextBytes = kDiagTextWords * 4;
constexpr uint32_t kDiagStride = (kDiagTextBytes + 4) * sizeof(tarvo_diag_log_entry_t);
constexpr uint32_t kDiagFirst = offsetof(tarvo_diag_log_data_rsp_t, data) + offsetof(tarvo_diag_log_t, data);

constexpr const char *kDiagTests[kAsicDiagTests] = {
    "internal memory",     "register access",     "forwarding table",   "pcie dma",
    "port 0 mac loopback", "port 1 mac loopback", "fc port 2 loopback", "fc port 3 loopback",
};

uint32_t diag_reply_size()
{
    return kDiagFirst + (kAsicDiagTests - 1) * kDiagStride + 4 + kDiagTextBytes;
}

} // namespace

uint32_t Asic::get_lb_mode(Exchange &x)
{
    auto c = x.command<tarvo_get_cmd_t>();
    if (c.context >= kUplinks)
        return kAsicBadPort;
    tarvo_lb_mode_rsp_t r{};
    r.mode = lb_mode_[c.context];
    x.reply(r);
    return kAsicOk;
}

// Both uplinks take the same pause type: standard pause, or priority flow
// control on the priorities of the mask.
uint32_t Asic::set_pause(Exchange &x)
{
    auto c = x.command<tarvo_set_cmd_t>();
    if (c.value1 == TARVO_PAUSE_SP) {
        if (c.value2 != 0)
            return kAsicInvalidParam;
    } else if (c.value1 != TARVO_PAUSE_PFC || c.value2 > kPriorityMaskMax) {
        return kAsicInvalidParam;
    }
    pause_type_ = {c.value1, c.value1};
    priority_ = {c.value2, c.value2};
    char text[48];
    snprintf(text, sizeof text, "pause: %s %02x", c.value1 == TARVO_PAUSE_SP ? "sp" : "pfc", c.value2);
    log(3, text);
    return kAsicOk;
}

uint32_t Asic::set_cos(Exchange &x)
{
    auto c = x.command<tarvo_set_cmd_t>();
    if (c.value1 > kCosMax || c.value2 != 0)
        return kAsicInvalidParam;
    cos_ = {c.value1, c.value1};
    char text[48];
    snprintf(text, sizeof text, "fcoe: class of service %u", c.value1);
    log(1, text);
    return kAsicOk;
}

uint32_t Asic::set_port_type(Exchange &x)
{
    auto c = x.command<tarvo_set_cmd_t>();
    if ((c.value1 != TARVO_PORT_ACCESS && c.value1 != TARVO_PORT_TRUNK) || c.value2 != 0)
        return kAsicInvalidParam;
    port_type_ = {c.value1, c.value1};
    log(3, c.value1 == TARVO_PORT_ACCESS ? "port: uplinks access" : "port: uplinks trunk");
    return kAsicOk;
}

uint32_t Asic::loopback(Exchange &x)
{
    auto c = x.command<tarvo_loopback_cmd_t>();
    if (c.context >= kUplinks)
        return kAsicBadPort;
    if (c.type > 1)
        return kAsicInvalidParam;
    lb_mode_[c.context] = c.type;
    char text[48];
    snprintf(text, sizeof text, "port %u: loopback %s", c.context, c.type ? "on" : "off");
    log(3, text);
    return kAsicOk;
}

// A request arms the tests; the reset into operational firmware that follows
// starts them (see reset). The golden image carries no diagnostics.
uint32_t Asic::diag(Exchange &x)
{
    auto c = x.command<tarvo_diag_cmd_t>();
    if (diag_.state == DiagState::armed || diag_.state == DiagState::running)
        return kAsicBusy;
    if (fw_type_ == TARVO_FW_TYPE_GOLDEN)
        return kAsicInvalidParam;
    diag_ = Diag{};
    diag_.state = DiagState::armed;
    diag_.requested = c.loop_count;
    char text[48];
    snprintf(text, sizeof text, "diag: %u loops requested", c.loop_count);
    log(0, text);
    return kAsicOk;
}

// Loops complete as the clock moves; a finite run ends by itself, a run of
// 0 loops only by a reset or a panic.
void Asic::diag_advance()
{
    if (diag_.state != DiagState::running)
        return;
    const uint64_t loops = (ticks_ - diag_.started) / kAsicDiagTicksPerLoop;
    if (diag_.requested != 0 && loops >= diag_.requested) {
        diag_.completed = diag_.requested;
        diag_stop(diag_failing_ ? TARVO_DIAG_FAILED : TARVO_DIAG_SUCCESS);
        return;
    }
    diag_.completed = static_cast<uint32_t>(std::min<uint64_t>(loops, 0xffffffffu));
}

void Asic::diag_stop(uint32_t summary)
{
    diag_.state = DiagState::done;
    diag_.summary = summary;
    log(0, summary == TARVO_DIAG_SUCCESS  ? "diag: tests passed"
           : summary == TARVO_DIAG_FAILED ? "diag: tests failed"
                                          : "diag: tests aborted");
}

uint32_t Asic::get_diag_log(Exchange &x)
{
    if (diag_.state == DiagState::none)
        return kAsicNotFound;
    if (diag_.state != DiagState::done)
        return kAsicBusy;
    const uint32_t size = diag_reply_size();
    const uint32_t data_length = size - offsetof(tarvo_diag_log_data_rsp_t, data);
    memcpy(x.out.data() + offsetof(tarvo_diag_log_data_rsp_t, data_length), &data_length, 4);
    if (x.out.size() < size)
        return kAsicMoreData;
    x.length = size;
    const uint32_t head[5] = {kAsicDiagTests, kDiagTextWords, diag_.requested, diag_.completed,
                              diag_.summary};
    memcpy(x.out.data() + offsetof(tarvo_diag_log_data_rsp_t, data), head, sizeof head);
    for (uint32_t i = 0; i < kAsicDiagTests; ++i) {
        uint8_t *e = x.out.data() + kDiagFirst + i * kDiagStride;
        // A finished run reports each test; an aborted one none.
        uint32_t status = diag_.summary;
        if (status != TARVO_DIAG_ABORTED)
            status = diag_failing_ & (1u << i) ? TARVO_DIAG_FAILED : TARVO_DIAG_SUCCESS;
        memcpy(e, &status, 4);
        char text[kDiagTextBytes] = {};
        snprintf(text, sizeof text, "%s", kDiagTests[i]);
        memcpy(e + 4, text, sizeof text);
    }
    return kAsicOk;
}

} // namespace kvdsim
