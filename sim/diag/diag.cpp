// Loopback tests, ring memory and resets of one board.
#include "diag/diag.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "core/fault.hpp"
#include "core/section.hpp"
#include "mailbox/firmware.hpp"

namespace kvdsim
{

namespace
{

// Ring sizes in IOCBs, as the driver configures the four SLI-2/3 rings,
// laid out one after another in adapter memory from KVD_SLI_RING_BASE:
// each ring's command entries, then its response entries.
constexpr uint16_t kCmdEntries[KVD_SLI_MAX_RINGS] = {64, 16, 32, 16};
constexpr uint16_t kRspEntries[KVD_SLI_MAX_RINGS] = {64, 16, 32, 16};
constexpr uint32_t kMaxFrame = 65536;
constexpr uint32_t kEchoCode = 1; // the loopback echo, for command fault rules

uint32_t ring_offset(uint32_t ring)
{
    uint32_t offset = KVD_SLI_RING_BASE;
    for (uint32_t i = 0; i < ring; ++i)
        offset += (kCmdEntries[i] + kRspEntries[i]) * KVD_IOCB_SIZE;
    return offset;
}

static_assert(KVD_SLI_RING_BASE + (64 + 64 + 16 + 16 + 32 + 32 + 16 + 16) * KVD_IOCB_SIZE <=
                  KVD_SLIM_IMAGE_SIZE,
              "the rings fit the adapter memory image");

// Where the host sees the SLI-2 area (the rings in host memory).
uint32_t slim2_base(uint32_t board)
{
    return 0x7e000000u + (board << 20);
}

void put_word(uint8_t *iocb, int word, uint32_t v)
{
    std::memcpy(iocb + word * 4, &v, 4);
}

} // namespace

void read_diag_section(BoardReading &r)
{
    const Json *j = r.board.take("diag");
    if (!j)
        return;
    Section o(*j, r.board.at("diag"));
    o.flag("loopback_plug", r.conf.diag.loopback_plug);
    o.finish();
}

Diag::Diag(const BoardConf &cfg) : cfg_(cfg)
{
    if (cfg_.sli_mode >= 4)
        return; // SLI-4 has work queues, not IOCB rings
    for (uint32_t i = 0; i < KVD_SLI_MAX_RINGS; ++i) {
        Ring &r = rings_[i];
        r.cmd_entries = kCmdEntries[i];
        r.rsp_entries = kRspEntries[i];
        r.cmd.assign(static_cast<size_t>(r.cmd_entries) * KVD_IOCB_SIZE, 0);
        r.rsp.assign(static_cast<size_t>(r.rsp_entries) * KVD_IOCB_SIZE, 0);
    }
}

void Diag::clear_rings()
{
    for (Ring &r : rings_) {
        std::fill(r.cmd.begin(), r.cmd.end(), 0);
        std::fill(r.rsp.begin(), r.rsp.end(), 0);
        r.cmd_idx = r.rsp_idx = 0;
    }
}

// IOCB words: 0 buffer size, 1-2 buffer address, 3 exchange tag, 4 command
// parameter, 5 I/O tag, 6 completion status, 7 command code << 8 | owner.
void Diag::exchange(uint32_t ring, uint8_t command, uint32_t size, uint64_t address, uint32_t tag,
                    uint32_t parameter, uint32_t status)
{
    if (ring >= KVD_SLI_MAX_RINGS || rings_[ring].cmd_entries == 0)
        return;
    Ring &r = rings_[ring];
    const uint16_t iotag = iotag_++;
    if (iotag_ == 0)
        iotag_ = 1;
    uint8_t *c = r.cmd.data() + static_cast<size_t>(r.cmd_idx) * KVD_IOCB_SIZE;
    put_word(c, 0, size);
    put_word(c, 1, static_cast<uint32_t>(address));
    put_word(c, 2, static_cast<uint32_t>(address >> 32));
    put_word(c, 3, tag);
    put_word(c, 4, parameter);
    put_word(c, 5, iotag);
    put_word(c, 6, 0);
    put_word(c, 7, static_cast<uint32_t>(command) << 8 | 1);
    uint8_t *p = r.rsp.data() + static_cast<size_t>(r.rsp_idx) * KVD_IOCB_SIZE;
    std::memcpy(p, c, KVD_IOCB_SIZE);
    put_word(p, 6, status);
    put_word(p, 7, static_cast<uint32_t>(command) << 8); // back to the host
    r.cmd_idx = static_cast<uint8_t>((r.cmd_idx + 1) % r.cmd_entries);
    r.rsp_idx = static_cast<uint8_t>((r.rsp_idx + 1) % r.rsp_entries);
}

uint32_t Diag::image(std::span<uint8_t> out) const
{
    const size_t n = std::min<size_t>(out.size(), KVD_SLIM_IMAGE_SIZE);
    std::vector<uint8_t> img(KVD_SLIM_IMAGE_SIZE, 0);
    kvdsli_t sli{};
    const bool sli2 = cfg_.sli_mode == 2;
    const uint32_t base = sli2 ? slim2_base(cfg_.number) : 0;
    sli.sliinit.sli_mode = static_cast<uint32_t>(cfg_.sli_mode);
    if (sli2) {
        sli.binfo_fc_flag = FC_SLI2;
        sli.binfo_fc_slim2_virt.low = base;
    }
    for (uint32_t i = 0; i < KVD_SLI_MAX_RINGS; ++i) {
        const Ring &r = rings_[i];
        if (r.cmd_entries == 0)
            continue;
        sli.sliinit.num_rings = i + 1;
        kvdsliring &d = sli.sliinit.ringinit[i];
        const uint32_t off = ring_offset(i);
        d.numCiocb = r.cmd_entries;
        d.numRiocb = r.rsp_entries;
        d.cmdringaddr.low = base + off;
        d.rspringaddr.low = base + off + r.cmd_entries * KVD_IOCB_SIZE;
        d.cmdidx = r.cmd_idx;
        d.rspidx = r.rsp_idx;
        std::memcpy(img.data() + off, r.cmd.data(), r.cmd.size());
        std::memcpy(img.data() + off + r.cmd.size(), r.rsp.data(), r.rsp.size());
    }
    std::memcpy(img.data(), &sli, sizeof sli);
    std::memcpy(out.data(), img.data(), n);
    return static_cast<uint32_t>(n);
}

// ---------------------------------------------------------------------------
// Loopback

// The port leaves the fabric for the test: the link goes down until the
// test ends.
uint32_t Diag::config_loopback(Firmware &fw, uint32_t type, uint32_t timeout)
{
    if (type != KVD_LOOPBACK_INTERNAL && type != KVD_LOOPBACK_EXTERNAL)
        return EINVAL;
    if (timeout == 0)
        return EINVAL;
    if (fw.state() != BoardState::ready)
        return EBUSY;
    loop_type_ = type;
    fw.set_link(false);
    return 0;
}

// One frame out and back. Without a plug an external loop never returns
// the frame. A command fault rule "loop:ECHO=N" flips byte N (modulo the
// size) of the frame on its way back.
uint32_t Diag::run_loopback(const LOOPBACK &lb, HostMemory &mem)
{
    if (loop_type_ == 0)
        return EINVAL;
    if (lb.bufSize == 0 || lb.bufSize > kMaxFrame || !lb.XmitBuffer || !lb.RcvBuffer)
        return EINVAL;
    std::vector<uint8_t> frame(lb.bufSize);
    const uint64_t xmit = reinterpret_cast<uintptr_t>(lb.XmitBuffer);
    const uint64_t rcv = reinterpret_cast<uintptr_t>(lb.RcvBuffer);
    if (!mem.read(xmit, frame.data(), frame.size()))
        return EFAULT;
    if (loop_type_ == KVD_LOOPBACK_EXTERNAL && !cfg_.diag.loopback_plug) {
        exchange(kRingDiag, kIocbXmitSequence64, lb.bufSize, xmit, loop_type_, frame[0], ETIMEDOUT);
        return ETIMEDOUT;
    }
    if (auto hit =
            library_faults().match_command("loop", kEchoCode, "ECHO", static_cast<int32_t>(cfg_.number))) {
        const uint64_t at = static_cast<uint64_t>(hit->result) % frame.size();
        frame[at] ^= 0xFF;
    }
    if (!mem.write(rcv, frame.data(), frame.size()))
        return EFAULT;
    exchange(kRingDiag, kIocbXmitSequence64, lb.bufSize, xmit, loop_type_, frame[0], 0);
    return 0;
}

uint32_t Diag::end_loopback(Firmware &fw, bool bring_up)
{
    if (loop_type_ == 0)
        return EINVAL;
    loop_type_ = 0;
    if (cfg_.link_up && bring_up)
        fw.set_link(true);
    return 0;
}

// ---------------------------------------------------------------------------
// Resets. Selective: this port only; the link bounces. Coordinated: every
// function of the adapter together; the link bounces, the rings start over
// and a loopback test ends. Firmware: the firmware restarts (the link goes
// down and comes back through the restart; counters and stored
// configuration return to their defaults), the rings start over.

struct ResetRows {
    static constexpr ResetRow table[] = {
        {KVD_RESET_SELECTIVE, "SELECTIVE", kSliAll, 0, 0, &Diag::reset_selective},
        {KVD_RESET_COORDINATED, "COORDINATED", kSliAll, 0, 0, &Diag::reset_coordinated},
        {KVD_RESET_FIRMWARE, "FIRMWARE", kSliAll, 0, 0, &Diag::reset_firmware},
    };
};
static_assert(unique_codes(ResetRows::table), "two reset types share a code");
static_assert(unique_names(ResetRows::table), "two reset types share a name");

std::span<const RowInfo> Diag::resets()
{
    static constexpr auto infos = row_infos(ResetRows::table);
    return infos;
}

uint32_t Diag::reset(Firmware &fw, uint32_t type, const char **name, bool bring_up)
{
    const ResetRow *row = find_row(ResetRows::table, type);
    if (name)
        *name = row ? row->name : nullptr;
    if (!row || !(row->sli_levels & sli_bit(cfg_.sli_mode)))
        return EINVAL;
    if (fw.state() != BoardState::ready)
        return EBUSY;
    if (auto hit =
            library_faults().match_command("reset", row->code, row->name, static_cast<int32_t>(cfg_.number)))
        return static_cast<uint32_t>(hit->result);
    bring_up_ = bring_up;
    return (this->*row->handler)(fw);
}

uint32_t Diag::reset_selective(Firmware &fw)
{
    fw.set_link(false);
    if (cfg_.link_up && bring_up_ && loop_type_ == 0)
        fw.set_link(true);
    return 0;
}

uint32_t Diag::reset_coordinated(Firmware &fw)
{
    loop_type_ = 0;
    fw.set_link(false);
    clear_rings();
    if (cfg_.link_up && bring_up_)
        fw.set_link(true);
    return 0;
}

uint32_t Diag::reset_firmware(Firmware &fw)
{
    loop_type_ = 0;
    clear_rings();
    fw.set_link(false);
    fw.restart(bring_up_);
    return 0;
}

} // namespace kvdsim
