#include "asic/asic.hpp"
#include "asic/asic_exchange.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "core/fault.hpp"
#include "core/bytes.hpp"

namespace kvdsim
{

namespace
{

constexpr uint32_t kRomEnd = 0x10;       // identity words, read-only
constexpr uint32_t kChipId = 0x56524154; // "TARV"
constexpr uint32_t kImageMin = sizeof(tarvo_image_hdr_t) + sizeof(tarvo_version_hdr_t);
constexpr uint32_t kPanicFixed = offsetof(tarvo_panic_log_data_rsp_t, data) - 4;
constexpr uint16_t kPanicEntries = 8;
constexpr uint16_t kPanicEntrySize = 48;
constexpr uint32_t kNumLifs = 4;

uint32_t get_word(std::span<const uint8_t> b, size_t off)
{
    uint32_t w = 0;
    if (off + 4 <= b.size())
        memcpy(&w, b.data() + off, 4);
    return w;
}

// The reversed order in which the ASIC holds an 8-byte address field.
std::array<uint8_t, TARVO_ADDR_SIZE> wire_mac(const std::array<uint8_t, 6> &mac)
{
    std::array<uint8_t, TARVO_ADDR_SIZE> w{};
    for (int i = 0; i < 6; ++i)
        w[i] = mac[5 - i];
    return w;
}

void put_text(uint8_t *dst, size_t width, const std::string &s)
{
    memset(dst, ' ', width);
    memcpy(dst, s.data(), std::min(width, s.size()));
}

uint8_t sum8(const uint8_t *p, size_t n)
{
    unsigned s = 0;
    for (size_t i = 0; i < n; ++i)
        s += p[i];
    return static_cast<uint8_t>(s);
}

// Commands that carry a tarvo_get_cmd_t, whose length is the room offered.
bool is_get(uint32_t code)
{
    static constexpr uint32_t gets[] = {
        TARVO_CMD_GET_INIT,      TARVO_CMD_GET_CONFIG,      TARVO_CMD_GET_PORT_STATS,
        TARVO_CMD_GET_LIF_STATS, TARVO_CMD_GET_ASIC_STATS,  TARVO_CMD_GET_LOG_CONFIG,
        TARVO_CMD_GET_LOG_DATA,  TARVO_CMD_GET_PANIC_LOG,   TARVO_CMD_GET_SFP,
        TARVO_CMD_GET_FRU,       TARVO_CMD_GET_LB_MODE,     TARVO_CMD_GET_FTABLE,
        TARVO_CMD_GET_DIAG_LOG,  TARVO_CMD_GET_FCOE_PARAMS, TARVO_CMD_GET_FCF_LIST,
        TARVO_CMD_GET_FACL,      TARVO_CMD_GET_HOST_PFC};
    return std::find(std::begin(gets), std::end(gets), code) != std::end(gets);
}

// Code 42 reads the priority groups with a get record and writes them with
// the longer set record.
bool is_get_record(uint32_t code, size_t len)
{
    if (code == TARVO_CMD_ETS_PG)
        return len < sizeof(tarvo_set_pg_info_cmd_t);
    return is_get(code);
}

} // namespace

// The ASIC's commands; an unknown code completes with kAsicInvalidCommand.
// The forwarding table, FCoE/FIP, access lists, virtual links and DCB live in
// asic_net.cpp; port controls and diagnostics in asic_ports.cpp.
//
// min_in: bytes of command record the command reads; min_out: bytes of
// room its reply needs at least (replies whose size depends on the ASIC's
// state check the rest themselves). All levels: the ASIC does not depend on
// the controller's SLI level.
struct AsicCommands {
    static constexpr Asic::Row table[] = {
        {TARVO_CMD_INIT, "INIT", kSliAll, sizeof(tarvo_init_cmd_t), sizeof(tarvo_init_rsp_t), &Asic::init},
        {TARVO_CMD_FW_DOWNLOAD, "FW_DOWNLOAD", kSliAll, sizeof(tarvo_fw_download_cmd_t), 4, &Asic::download},
        {TARVO_CMD_READ_MEM, "READ_MEM", kSliAll, sizeof(tarvo_memory_cmd_t), 4, &Asic::read_mem},
        {TARVO_CMD_WRITE_MEM, "WRITE_MEM", kSliAll, sizeof(tarvo_memory_cmd_t) + 4, 4, &Asic::write_mem},
        {TARVO_CMD_GET_INIT, "GET_INIT", kSliAll, sizeof(tarvo_get_cmd_t), sizeof(tarvo_init_rsp_t),
         &Asic::get_init},
        {TARVO_CMD_GET_CONFIG, "GET_CONFIG", kSliAll, sizeof(tarvo_get_cmd_t), sizeof(tarvo_get_config_rsp_t),
         &Asic::get_config},
        {TARVO_CMD_GET_PORT_STATS, "GET_PORT_STATS", kSliAll, sizeof(tarvo_get_cmd_t),
         sizeof(tarvo_fc_stats_rsp_t), &Asic::port_stats},
        {TARVO_CMD_GET_LIF_STATS, "GET_LIF_STATS", kSliAll, sizeof(tarvo_get_cmd_t),
         sizeof(tarvo_lif_stats_rsp_t), &Asic::lif_stats},
        {TARVO_CMD_GET_ASIC_STATS, "GET_ASIC_STATS", kSliAll, sizeof(tarvo_get_cmd_t),
         sizeof(tarvo_asic_stats_rsp_t), &Asic::asic_stats},
        {TARVO_CMD_GET_LOG_CONFIG, "GET_LOG_CONFIG", kSliAll, sizeof(tarvo_get_cmd_t), 8, &Asic::log_config},
        {TARVO_CMD_GET_LOG_DATA, "GET_LOG_DATA", kSliAll, sizeof(tarvo_get_cmd_t), 8, &Asic::log_data},
        {TARVO_CMD_GET_PANIC_LOG, "GET_PANIC_LOG", kSliAll, sizeof(tarvo_get_cmd_t), kPanicFixed + 4,
         &Asic::panic_log},
        {TARVO_CMD_GET_SFP, "GET_SFP", kSliAll, sizeof(tarvo_get_cmd_t), sizeof(tarvo_sfp_rsp_t),
         &Asic::get_sfp},
        {TARVO_CMD_SET_FRU, "SET_FRU", kSliAll, sizeof(tarvo_set_fru_data_cmd_t), 4, &Asic::set_fru},
        {TARVO_CMD_GET_FRU, "GET_FRU", kSliAll, sizeof(tarvo_get_cmd_t), sizeof(tarvo_fru_data_rsp_t),
         &Asic::get_fru},
        {TARVO_CMD_SET_FCOE_FMT, "SET_FCOE_FMT", kSliAll, sizeof(tarvo_set_cmd_t), 4, &Asic::set_fcoe_fmt},
        {TARVO_CMD_PANIC, "PANIC", kSliAll, 4, 4, &Asic::panic},
        {TARVO_CMD_RESET, "RESET", kSliAll, sizeof(tarvo_reset_cmd_t), 4, &Asic::reset},
        {TARVO_CMD_MAINT_MODE, "MAINT_MODE", kSliAll, sizeof(tarvo_set_cmd_t), 4, &Asic::maint_mode},
        {TARVO_CMD_FTE_INSERT, "FTE_INSERT", kSliAll, sizeof(tarvo_fte_insert_cmd_t), 4, &Asic::fte_insert},
        {TARVO_CMD_FTE_DELETE, "FTE_DELETE", kSliAll, sizeof(tarvo_fte_delete_cmd_t), 4, &Asic::fte_delete},
        {TARVO_CMD_GET_FTABLE, "GET_FTABLE", kSliAll, sizeof(tarvo_get_cmd_t), sizeof(tarvo_ftable_rsp_t),
         &Asic::get_ftable},
        {TARVO_CMD_ETS_PG, "ETS_PG", kSliAll, sizeof(tarvo_get_cmd_t), 4, &Asic::ets_pg},
        {TARVO_CMD_SET_HOST_PFC, "SET_HOST_PFC", kSliAll, sizeof(tarvo_set_host_eth_pfc_flag_cmd_t), 4,
         &Asic::set_host_pfc},
        {TARVO_CMD_GET_HOST_PFC, "GET_HOST_PFC", kSliAll, sizeof(tarvo_get_cmd_t),
         sizeof(tarvo_get_host_eth_pfc_flag_rsp_t), &Asic::get_host_pfc},
        {TARVO_CMD_SET_FCOE_PARAMS, "SET_FCOE_PARAMS", kSliAll, sizeof(tarvo_set_fcoe_params_cmd_t), 4,
         &Asic::set_fcoe_params},
        {TARVO_CMD_GET_FCOE_PARAMS, "GET_FCOE_PARAMS", kSliAll, sizeof(tarvo_get_cmd_t),
         sizeof(tarvo_get_fcoe_params_rsp_t), &Asic::get_fcoe_params},
        {TARVO_CMD_GET_FCF_LIST, "GET_FCF_LIST", kSliAll, sizeof(tarvo_get_cmd_t),
         offsetof(tarvo_get_fcf_list_rsp_t, fcf_list), &Asic::get_fcf_list},
        {TARVO_CMD_SET_FACL, "SET_FACL", kSliAll, offsetof(tarvo_set_facl_cmd_t, facl_list), 4,
         &Asic::set_facl},
        {TARVO_CMD_GET_FACL, "GET_FACL", kSliAll, sizeof(tarvo_get_cmd_t),
         offsetof(tarvo_get_facl_rsp_t, facl_list), &Asic::get_facl},
        {TARVO_CMD_CREATE_VL, "CREATE_VL", kSliAll, sizeof(tarvo_cmd_create_vl_t), 4, &Asic::create_vl},
        {TARVO_CMD_DELETE_VL, "DELETE_VL", kSliAll, sizeof(tarvo_cmd_delete_vl_t), 4, &Asic::delete_vl},
        {TARVO_CMD_GET_LB_MODE, "GET_LB_MODE", kSliAll, sizeof(tarvo_get_cmd_t), sizeof(tarvo_lb_mode_rsp_t),
         &Asic::get_lb_mode},
        {TARVO_CMD_SET_PAUSE, "SET_PAUSE", kSliAll, sizeof(tarvo_set_cmd_t), 4, &Asic::set_pause},
        {TARVO_CMD_SET_COS, "SET_COS", kSliAll, sizeof(tarvo_set_cmd_t), 4, &Asic::set_cos},
        {TARVO_CMD_SET_PORT_TYPE, "SET_PORT_TYPE", kSliAll, sizeof(tarvo_set_cmd_t), 4, &Asic::set_port_type},
        {TARVO_CMD_LOOPBACK, "LOOPBACK", kSliAll, sizeof(tarvo_loopback_cmd_t), 4, &Asic::loopback},
        {TARVO_CMD_DIAG, "DIAG", kSliAll, sizeof(tarvo_diag_cmd_t), 4, &Asic::diag},
        {TARVO_CMD_GET_DIAG_LOG, "GET_DIAG_LOG", kSliAll, sizeof(tarvo_get_cmd_t), 8, &Asic::get_diag_log},
    };
};
static_assert(unique_codes(AsicCommands::table), "two ASIC commands share a code");
static_assert(unique_names(AsicCommands::table), "two ASIC commands share a name");

std::span<const RowInfo> Asic::commands()
{
    static constexpr auto infos = row_infos(AsicCommands::table);
    return infos;
}

const Asic::Row *Asic::find(uint32_t code)
{
    return find_row(AsicCommands::table, code);
}

std::vector<AsicLogConf> AsicConf::default_logs()
{
    return {
        {"system", 8, 48, {"boot: operational image started", "port 0: link up 10G", "port 1: link up 10G"}},
        {"fcoe", 6, 48, {"fip: vlan 1002 discovered", "fip: fcf login accepted"}},
        {"dcbx", 4, 48, {"dcbx: peer synced, pfc on priority 3"}},
        {"port", 4, 48, {}},
    };
}

Asic::Asic(const AsicConf &setup)
    : fw_version_(setup.fw_version), fw_type_(setup.fw_type), maintenance_(setup.maintenance),
      link_up_(setup.link_up), bb_credit_(setup.bb_credit), frame_size_(setup.frame_size),
      mac0_(wire_mac(setup.mac0)), mac1_(wire_mac(setup.mac1)), fru_flags_(setup.channels & 3),
      fru_valid_(setup.fru_valid), fcoe_format_(setup.fcoe_format), memory_(setup.memory_size & ~3u, 0)
{
    store_word(0x0, kChipId);
    store_word(0x4, fw_version_);
    store_word(0x8, fw_type_);
    build_sfp(setup);
    uint16_t id = 0;
    for (const AsicLogConf &ls : setup.logs) {
        Log l;
        l.id = id++;
        l.name = ls.name.substr(0, TARVO_LOG_NAME_SIZE - 1);
        l.capacity = ls.capacity;
        l.entry_size = ls.entry_size;
        l.slots.assign(static_cast<size_t>(l.capacity) * l.entry_size, 0);
        logs_.push_back(std::move(l));
        for (const std::string &e : ls.entries)
            log(logs_.back().id, e);
    }
    if (setup.panicked)
        take_panic(2);
    init_net(setup);
}

void Asic::store_word(uint32_t address, uint32_t value)
{
    if (address + 4 <= memory_.size())
        memcpy(memory_.data() + address, &value, 4);
}

void Asic::log(uint16_t id, const std::string &text)
{
    if (id >= logs_.size())
        return;
    Log &l = logs_[id];
    if (l.capacity == 0 || l.entry_size == 0)
        return;
    uint16_t slot = l.count == 0 ? 0 : static_cast<uint16_t>((l.head + 1) % l.capacity);
    uint8_t *p = l.slots.data() + static_cast<size_t>(slot) * l.entry_size;
    memset(p, 0, l.entry_size);
    memcpy(p, text.data(), std::min<size_t>(text.size(), l.entry_size - 1u));
    l.head = slot;
    if (l.count < l.capacity)
        ++l.count;
    ++log_writes_;
}

std::vector<std::string> Asic::log_entries(uint16_t id) const
{
    std::vector<std::string> out;
    if (id >= logs_.size())
        return out;
    const Log &l = logs_[id];
    uint16_t oldest = l.count < l.capacity ? 0 : static_cast<uint16_t>((l.head + 1) % l.capacity);
    for (uint16_t i = 0; i < l.count; ++i) {
        const uint8_t *p = l.slots.data() + static_cast<size_t>((oldest + i) % l.capacity) * l.entry_size;
        out.emplace_back(reinterpret_cast<const char *>(p),
                         strnlen(reinterpret_cast<const char *>(p), l.entry_size));
    }
    return out;
}

void Asic::take_panic(uint32_t type)
{
    panic_ = Panic{};
    panic_.present = true;
    panic_.type = type;
    panic_.epc = type == 1 ? 0x9fc0a2d4 : 0x9fc13c80;
    panic_.cause = type == 1 ? 0x00000024 : 0x0000000c;
    panic_.status = 0x10008003;
    for (uint32_t i = 0; i < 32; ++i)
        panic_.gp[i] = i == 0 ? 0 : 0x80010000u + i * 0x40u + static_cast<uint32_t>(ticks_ & 0xff);
    panic_.entries = log_entries(0);
    if (panic_.entries.size() > kPanicEntries - 1)
        panic_.entries.erase(panic_.entries.begin(), panic_.entries.end() - (kPanicEntries - 1));
    panic_.entries.push_back(type == 1 ? "panic: solicited by host" : "panic: exception in fcoe task");
    ++panics_;
    reset_by_panic_ = true;
    log(0, type == 1 ? "panic: solicited" : "panic: exception");
}

void Asic::build_sfp(const AsicConf &setup)
{
    uint8_t *a0 = sfp_a0_.data();
    a0[0] = 0x03;  // SFP or SFP+
    a0[1] = 0x04;  // two-wire ID
    a0[2] = 0x07;  // LC connector
    a0[3] = 0x10;  // 10G Base-SR
    a0[11] = 0x06; // 64B/66B
    a0[12] = 0x67; // 10.3 GBd nominal
    a0[16] = 8;    // OM2, 10 m units
    a0[17] = 3;    // OM1
    a0[19] = 30;   // OM3
    put_text(a0 + 20, 16, setup.sfp_vendor);
    a0[37] = 0x0a; // vendor OUI
    a0[38] = 0x3c;
    a0[39] = 0x55;
    put_text(a0 + 40, 16, setup.sfp_part);
    put_text(a0 + 56, 4, "A");
    put_be16(a0 + 60, 850); // wavelength, nm
    a0[63] = sum8(a0, 63);
    a0[65] = 0x1a; // TX_DISABLE, TX_FAULT, LOS
    put_text(a0 + 68, 16, setup.sfp_serial);
    put_text(a0 + 84, 8, setup.sfp_date);
    a0[92] = 0x68; // diagnostics implemented, internally calibrated
    a0[93] = 0xf0; // alarm/warning flags, soft controls
    a0[94] = 0x03; // SFF-8472 rev 10.2
    a0[95] = sum8(a0 + 64, 31);

    uint8_t *a2 = sfp_a2_.data();
    put_be16(a2 + 0, 0x5500);  // temperature high alarm, 85 C
    put_be16(a2 + 2, 0xfb00);  // low alarm, -5 C
    put_be16(a2 + 8, 0x8ca0);  // Vcc high alarm, 3.6 V
    put_be16(a2 + 10, 0x7530); // low alarm, 3.0 V
    a2[95] = sum8(a2, 95);
    put_be16(a2 + 96, 0x2380);  // 35.5 C
    put_be16(a2 + 98, 0x8124);  // 3.30 V
    put_be16(a2 + 100, 0x1770); // 12 mA bias
    put_be16(a2 + 102, 0x1f40); // 0.80 mW out
    put_be16(a2 + 104, 0x1b58); // 0.70 mW in
}

uint32_t Asic::exchange(std::span<const uint8_t> cmd, std::span<uint8_t> rsp, uint32_t &delivered,
                        int32_t board, AsicNote *note)
{
    delivered = 0;
    if (cmd.size() < 4)
        return TARVO_ERR_GENERAL;
    if (rsp.size() < 4)
        return TARVO_ERR_RSP_OVERRUN;
    ++ticks_;
    ++commands_;
    diag_advance();
    const uint32_t code = get_word(cmd, 0);
    const Row *row = find(code);
    if (note)
        note->name = row ? row->name : nullptr;

    // Get commands say how much room they offer; the ASIC answers within
    // both that and the buffer itself.
    std::span<uint8_t> out = rsp;
    if (is_get_record(code, cmd.size()) && cmd.size() >= sizeof(tarvo_get_cmd_t)) {
        uint32_t offered = get_word(cmd, offsetof(tarvo_get_cmd_t, length));
        if (offered < out.size())
            out = out.first(std::max<uint32_t>(offered, 4));
    }

    Exchange x{cmd, out};
    uint32_t status;
    if (auto hit = library_faults().match_command("asic", code, row ? row->name : nullptr, board)) {
        status = static_cast<uint32_t>(hit->result);
        if (note)
            note->rule = hit->rule;
    } else if (!row) {
        status = kAsicInvalidCommand;
    } else if (cmd.size() < row->min_in) {
        status = kAsicBadLength;
    } else if (out.size() < row->min_out) {
        return TARVO_ERR_RSP_OVERRUN;
    } else {
        memset(out.data(), 0, row->min_out);
        status = (this->*(row->handler))(x);
        if (x.overrun)
            return TARVO_ERR_RSP_OVERRUN;
    }
    if (status != kAsicOk) {
        ++command_errors_;
        // A reply too large for the room offered still tells its size.
        x.length = status == kAsicMoreData && out.size() >= 8 ? 8 : 4;
    }
    memcpy(out.data(), &status, 4);
    delivered = x.length;
    return 0;
}

void Asic::fill_init(tarvo_init_rsp_t &r) const
{
    r.bb_credit = bb_credit_;
    r.frame_size = frame_size_;
    r.fw_version = fw_version_;
    r.reset_status = reset_by_panic_ ? 1 : 0;
    r.maint_status = maintenance_ ? 1 : 0;
    r.fw_type = fw_type_;
    r.fru_data_valid = fru_valid_ ? 1 : 0;
}

uint32_t Asic::init(Exchange &x)
{
    auto c = x.command<tarvo_init_cmd_t>();
    if (c.bb_credit == 0 || c.bb_credit > 255 || c.frame_size < 256 || c.frame_size > 2112 ||
        c.frame_size % 4 != 0)
        return kAsicInvalidParam;
    bb_credit_ = c.bb_credit;
    frame_size_ = c.frame_size;
    char text[64];
    snprintf(text, sizeof text, "init: bb_credit %u frame_size %u", c.bb_credit, c.frame_size);
    log(0, text);
    tarvo_init_rsp_t r{};
    fill_init(r);
    x.reply(r);
    return kAsicOk;
}

uint32_t Asic::get_init(Exchange &x)
{
    tarvo_init_rsp_t r{};
    fill_init(r);
    x.reply(r);
    return kAsicOk;
}

uint32_t image_checksum(std::span<const uint8_t> bytes)
{
    uint32_t sum = 0;
    for (size_t off = 0; off + 4 <= bytes.size(); off += 4)
        sum ^= get_word(bytes, off);
    return sum;
}

uint32_t check_image(std::span<const uint8_t> image, uint32_t file_length, uint32_t type, const char **reason)
{
    auto fail = [&](const char *why) {
        if (reason)
            *reason = why;
        return static_cast<uint32_t>(kAsicImageRejected);
    };
    if (type != TARVO_IMAGE_OPERATIONAL && type != TARVO_IMAGE_DIAGNOSTIC)
        return fail("unknown image type");
    if (file_length < kImageMin)
        return fail("image too short");
    if (file_length > image.size())
        return fail("image truncated");
    if (file_length % 4 != 0)
        return fail("length not a multiple of 4");
    tarvo_image_hdr_t h;
    memcpy(&h, image.data(), sizeof h);
    if (h.file_length != file_length)
        return fail("header length disagrees");
    if (h.checksum_offset % 4 != 0 || h.checksum_offset < kImageMin - 4 ||
        h.checksum_offset > file_length - 4)
        return fail("version record outside the image");
    tarvo_version_hdr_t v;
    memcpy(&v, image.data() + h.checksum_offset - 12, sizeof v);
    if (image_checksum(image.first(file_length - 16)) != v.checksum)
        return fail("checksum mismatch");
    if (h.version != v.version)
        return fail("version mismatch");
    if (v.type != type)
        return fail("image type mismatch");
    if (reason)
        *reason = nullptr;
    return kAsicOk;
}

uint32_t Asic::download(Exchange &x)
{
    auto c = x.command<tarvo_fw_download_cmd_t>();
    auto image = x.in.subspan(sizeof c);
    const char *reason = nullptr;
    if (uint32_t st = check_image(image, c.length, c.type, &reason); st != kAsicOk) {
        log(0, std::string("fw: image refused, ") + reason);
        return st;
    }
    tarvo_image_hdr_t h;
    memcpy(&h, image.data(), sizeof h);
    fw_version_ = h.version;
    fw_type_ = c.type == TARVO_IMAGE_DIAGNOSTIC ? TARVO_FW_TYPE_DIAGNOSTIC : TARVO_FW_TYPE_OPERATIONAL;
    store_word(0x4, fw_version_);
    store_word(0x8, fw_type_);
    ++downloads_;
    ++resets_;
    reset_by_panic_ = false;
    char text[64];
    snprintf(text, sizeof text, "fw: installed version %x type %u", h.version, c.type);
    log(0, text);
    return kAsicOk;
}

uint32_t Asic::read_mem(Exchange &x)
{
    auto c = x.command<tarvo_memory_cmd_t>();
    const uint64_t bytes = static_cast<uint64_t>(c.length) * 4;
    if (c.address % 4 != 0 || bytes > TARVO_MEM_READ_MAX || c.address + bytes > memory_.size())
        return kAsicInvalidParam;
    if (!x.room(4 + bytes))
        return kAsicOk;
    memcpy(x.out.data() + 4, memory_.data() + c.address, bytes);
    return kAsicOk;
}

uint32_t Asic::write_mem(Exchange &x)
{
    auto c = x.command<tarvo_memory_cmd_t>();
    if (c.address % 4 != 0 || c.length != 1 || c.address + 4ull > memory_.size())
        return kAsicInvalidParam;
    if (c.address < kRomEnd)
        return kAsicNotPermitted;
    const uint32_t value = get_word(x.in, sizeof c);
    store_word(c.address, value);
    char text[48];
    snprintf(text, sizeof text, "mem: %08x written at %08x", value, c.address);
    log(0, text);
    return kAsicOk;
}

uint32_t Asic::get_config(Exchange &x)
{
    tarvo_get_config_rsp_t r{};
    for (int p = 0; p < 2; ++p) {
        r.pause_type[p] = r.current_pause_type[p] = pause_type_[p];
        r.priority[p] = r.current_priority[p] = priority_[p];
        r.fcoe_cos[p] = r.current_fcoe_cos[p] = cos_[p];
        r.uif_port_type[p] = r.current_uif_port_type[p] = port_type_[p];
        r.dcx_present[p] = 1;
    }
    r.log_cfg_size = log_cfg_size();
    r.panic_log_size = panic_log_size();
    r.fcoe_format = r.current_fcoe_format = fcoe_format_;
    r.supported_fcoe_format = TARVO_FCOE_FMT_LIMIT - 1;
    x.reply(r);
    return kAsicOk;
}

uint32_t Asic::log_cfg_size() const
{
    return static_cast<uint32_t>(4 + logs_.size() * sizeof(tarvo_log_t));
}

uint32_t Asic::panic_log_size() const
{
    if (!panic_.present)
        return kPanicFixed;
    return kPanicFixed + static_cast<uint32_t>(panic_.entries.size()) * kPanicEntrySize;
}

uint32_t Asic::port_stats(Exchange &x)
{
    auto c = x.command<tarvo_get_cmd_t>();
    if (c.context >= TARVO_NUM_PORTS)
        return kAsicInvalidParam;
    const uint64_t t = ticks_, p = c.context;
    if (p >= TARVO_FC_PORT_FIRST && p <= TARVO_FC_PORT_LAST) {
        tarvo_fc_stats_rsp_t r{};
        r.port = c.context;
        r.tx_frames = t * (900 + 10 * p);
        r.rx_frames = t * (1100 + 10 * p);
        r.tx_words = r.tx_frames * 512;
        r.rx_words = r.rx_frames * 512;
        r.rx_r_rdy = r.tx_frames;
        r.tx_r_rdy = r.rx_frames;
        r.fcoe_encap_frames = r.tx_frames;
        r.fcoe_decap_frames = r.rx_frames;
        r.bb_credit_zero_tx = t / 4;
        r.invalid_tx_words = 2;
        x.reply(r);
        return kAsicOk;
    }
    tarvo_network_stats_rsp_t r{};
    r.port = c.context;
    r.tx_frames = t * (2000 + 25 * p);
    r.rx_frames = t * (2400 + 25 * p);
    r.tx_bytes = r.tx_frames * 1100;
    r.rx_bytes = r.rx_frames * 1200;
    r.tx_multicast = t * 4;
    r.rx_multicast = t * 6;
    r.tx_broadcast = t;
    r.rx_broadcast = t * 3;
    r.tx_unicast = r.tx_frames - r.tx_multicast - r.tx_broadcast;
    r.rx_unicast = r.rx_frames - r.rx_multicast - r.rx_broadcast;
    r.tx_pfc[3] = t / 2;
    r.rx_pfc[3] = t;
    r.tx_fcoe_frames = r.tx_frames / 2;
    r.rx_fcoe_frames = r.rx_frames / 2;
    r.tx_fip_frames = t / 8 + 1;
    r.rx_fip_frames = t / 8 + 2;
    r.rx_frames_64 = r.rx_frames / 10;
    r.rx_frames_1519_max = r.rx_frames - r.rx_frames_64;
    r.rx_vlan_frames = r.rx_fcoe_frames;
    r.tx_vlan_frames = r.tx_fcoe_frames;
    x.reply(r);
    return kAsicOk;
}

uint32_t Asic::lif_stats(Exchange &x)
{
    auto c = x.command<tarvo_get_cmd_t>();
    if (c.context >= kNumLifs)
        return kAsicInvalidParam;
    tarvo_lif_stats_rsp_t r{};
    r.lif = c.context;
    r.tx_frames = ticks_ * (500 + 50 * c.context);
    r.rx_frames = ticks_ * (650 + 50 * c.context);
    r.tx_bytes = r.tx_frames * 1024;
    r.rx_bytes = r.rx_frames * 1024;
    r.tx_fcoe_frames = c.context % 2 == 0 ? r.tx_frames : 0;
    r.rx_fcoe_frames = c.context % 2 == 0 ? r.rx_frames : 0;
    x.reply(r);
    return kAsicOk;
}

uint32_t Asic::asic_stats(Exchange &x)
{
    tarvo_asic_stats_rsp_t r{};
    r.uptime = static_cast<uint32_t>(ticks_);
    r.commands = commands_;
    r.command_errors = command_errors_;
    r.fw_downloads = downloads_;
    r.resets = resets_;
    r.panics = panics_;
    r.ecc_corrected = ticks_ / 16;
    r.pcie_tx_tlps = ticks_ * 3000;
    r.pcie_rx_tlps = ticks_ * 2800;
    r.dma_reads = ticks_ * 700;
    r.dma_writes = ticks_ * 650;
    r.ftable_hits = ticks_ * 2200;
    r.ftable_misses = ticks_ / 5;
    r.fip_solicitations = 2;
    r.fip_advertisements = ticks_ / 8 + 1;
    r.fip_keepalives = ticks_ / 8;
    r.log_entries = log_writes_;
    for (int p = 0; p < TARVO_NUM_PORTS; ++p) {
        r.pause_time[p][3] = ticks_ * (p + 1) * 12;
        r.buffer_high_water[p][3] = 4096 + 512 * static_cast<uint64_t>(p);
    }
    x.reply(r);
    return kAsicOk;
}

uint32_t Asic::log_config(Exchange &x)
{
    if (!x.room(4 + log_cfg_size()))
        return kAsicOk;
    const uint16_t n = static_cast<uint16_t>(logs_.size());
    memcpy(x.out.data() + offsetof(tarvo_log_config_rsp_t, num_logs), &n, 2);
    uint8_t *p = x.out.data() + offsetof(tarvo_log_config_rsp_t, data);
    for (const Log &l : logs_) {
        tarvo_log_t e{};
        e.id = l.id;
        e.num_entries = l.count;
        e.entry_size = l.entry_size;
        memcpy(e.name, l.name.data(), std::min(l.name.size(), sizeof e.name - 1));
        memcpy(p, &e, sizeof e);
        p += sizeof e;
    }
    return kAsicOk;
}

uint32_t Asic::log_data(Exchange &x)
{
    auto c = x.command<tarvo_get_cmd_t>();
    if (c.context >= logs_.size())
        return kAsicInvalidParam;
    const Log &l = logs_[c.context];
    const size_t bytes = static_cast<size_t>(l.count) * l.entry_size;
    if (!x.room(8 + bytes))
        return kAsicOk;
    memcpy(x.out.data() + offsetof(tarvo_log_data_rsp_t, head), &l.head, 2);
    if (bytes) // a log without slots has no storage at all
        memcpy(x.out.data() + offsetof(tarvo_log_data_rsp_t, data), l.slots.data(), bytes);
    return kAsicOk;
}

uint32_t Asic::panic_log(Exchange &x)
{
    if (!x.room(4 + panic_log_size()))
        return kAsicOk;
    tarvo_panic_log_data_rsp_t r{};
    if (panic_.present) {
        r.type = panic_.type;
        r.regs_epc = panic_.epc;
        r.regs_cp0_cause = panic_.cause;
        r.regs_cp0_status = panic_.status;
        memcpy(r.regs_gp, panic_.gp.data(), sizeof r.regs_gp);
        r.log_present = 1;
        r.num_entries = static_cast<uint16_t>(panic_.entries.size());
        r.entry_size = kPanicEntrySize;
        r.head = r.num_entries ? static_cast<uint16_t>(r.num_entries - 1) : 0;
    }
    memcpy(x.out.data(), &r, offsetof(tarvo_panic_log_data_rsp_t, data));
    uint8_t *p = x.out.data() + offsetof(tarvo_panic_log_data_rsp_t, data);
    memset(p, 0, panic_.entries.size() * kPanicEntrySize);
    for (const std::string &e : panic_.entries) {
        memcpy(p, e.data(), std::min<size_t>(e.size(), kPanicEntrySize - 1));
        p += kPanicEntrySize;
    }
    return kAsicOk;
}

uint32_t Asic::get_sfp(Exchange &x)
{
    tarvo_sfp_rsp_t r{};
    memcpy(r.page_a0, sfp_a0_.data(), sizeof r.page_a0);
    memcpy(r.page_a2, sfp_a2_.data(), sizeof r.page_a2);
    // Live diagnostics drift a little with every read.
    put_be16(r.page_a2 + 96, static_cast<uint16_t>(0x2380 + (ticks_ % 8) * 0x10));
    x.reply(r);
    return kAsicOk;
}

uint32_t Asic::set_fru(Exchange &x)
{
    auto c = x.command<tarvo_set_fru_data_cmd_t>();
    if (c.flags < 1 || c.flags > 2)
        return kAsicInvalidParam;
    // An address travels last byte first: its two pad bytes come last, and
    // the group bit of the first octet is in byte 5.
    auto valid = [](const uint8_t *w, bool optional) {
        bool zero = std::all_of(w, w + TARVO_ADDR_SIZE, [](uint8_t b) { return b == 0; });
        if (zero)
            return optional;
        return w[6] == 0 && w[7] == 0 && (w[5] & 1) == 0;
    };
    if (!valid(c.mac0, false) || !valid(c.mac1, c.flags == 1))
        return kAsicInvalidParam;
    memcpy(mac0_.data(), c.mac0, TARVO_ADDR_SIZE);
    memcpy(mac1_.data(), c.mac1, TARVO_ADDR_SIZE);
    fru_flags_ = c.flags;
    fru_valid_ = true;
    log(0, "fru: port addresses updated");
    return kAsicOk;
}

uint32_t Asic::get_fru(Exchange &x)
{
    tarvo_fru_data_rsp_t r{};
    memcpy(r.mac0, mac0_.data(), TARVO_ADDR_SIZE);
    memcpy(r.mac1, mac1_.data(), TARVO_ADDR_SIZE);
    r.flags = fru_flags_;
    x.reply(r);
    return kAsicOk;
}

uint32_t Asic::set_fcoe_fmt(Exchange &x)
{
    auto c = x.command<tarvo_set_cmd_t>();
    if (c.value1 == 0 || c.value1 >= TARVO_FCOE_FMT_LIMIT || c.value2 != 0)
        return kAsicInvalidParam;
    fcoe_format_ = c.value1;
    char text[48];
    snprintf(text, sizeof text, "fcoe: frame formats %05x", c.value1);
    log(1, text);
    return kAsicOk;
}

// A forced panic stops a diagnostic run like any other firmware exception.
uint32_t Asic::panic(Exchange &)
{
    if (diag_.state == DiagState::running || diag_.state == DiagState::armed)
        diag_stop(TARVO_DIAG_ABORTED);
    take_panic(1);
    return kAsicOk;
}

// Firmware 0 restarts the operational image, 1 the golden one. A reset
// right after a diagnostic request starts the tests in the operational
// image; a reset while they run aborts them. Loopback ends with the reset.
uint32_t Asic::reset(Exchange &x)
{
    auto c = x.command<tarvo_reset_cmd_t>();
    if (c.firmware > 1)
        return kAsicInvalidParam;
    const bool golden = c.firmware == 1;
    fw_type_ = golden ? TARVO_FW_TYPE_GOLDEN : TARVO_FW_TYPE_OPERATIONAL;
    store_word(0x8, fw_type_);
    ++resets_;
    reset_by_panic_ = false;
    lb_mode_ = {};
    log(0, golden ? "reset: golden image started" : "reset: operational image started");
    if (diag_.state == DiagState::running) {
        diag_stop(TARVO_DIAG_ABORTED);
    } else if (diag_.state == DiagState::armed) {
        if (golden) {
            diag_stop(TARVO_DIAG_ABORTED);
        } else {
            diag_.state = DiagState::running;
            diag_.started = ticks_;
            log(0, "diag: tests started");
        }
    }
    return kAsicOk;
}

uint32_t Asic::maint_mode(Exchange &x)
{
    auto c = x.command<tarvo_set_cmd_t>();
    if (c.value1 > 1)
        return kAsicInvalidParam;
    maintenance_ = c.value1 != 0;
    log(0, maintenance_ ? "maintenance mode entered" : "maintenance mode left");
    return kAsicOk;
}

} // namespace kvdsim
