// The adapter firmware model: mailbox commands and the board state behind
// them (link, logins, timers, rings, counters).
//
// Everything here is deterministic: counters move by fixed steps derived
// from the board number, never from a clock, so that transcripts of the
// shell against a virtual fleet stay the same from run to run.
#include "mailbox/firmware.hpp"
#include "npiv/npiv.hpp"
#include "port/port.hpp"
#include "sli4/sli4_engine.hpp"

#include "core/fault.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include "kvd_attr.h"
#include "libkvd.h"
#include "core/bytes.hpp"

namespace kvdsim
{

namespace
{

constexpr uint32_t kFirstEventTag = 1;
constexpr uint32_t kMaxWords = MAILBOX_WORDS;
constexpr uint32_t kSli3Rings = 4;
constexpr uint16_t kAllRpis = 0xFFFF;
constexpr uint32_t kFabricDid = 0xFFFFFE;
constexpr uint32_t kNameServerDid = 0xFFFFFC;
constexpr uint16_t kMaxXri = 512;
constexpr uint16_t kMaxRpi = 512;
constexpr uint16_t kMaxIocb = 256;
constexpr uint16_t kOwnBbCredit = 16;
constexpr uint16_t kRemoteBbCredit = 8;
constexpr uint32_t kSli4VpdLength = 256;
constexpr uint32_t kMaxLoopbackBytes = 65536;
constexpr size_t kSparmSize = 112;

// Common service parameter feature bits (word 1, bits 31-16).
constexpr uint16_t kFeatCiro = 0x8000;        // continuously increasing relative offset
constexpr uint16_t kFeatVendorValid = 0x2000; // vendor version level valid
constexpr uint16_t kFeatFPort = 0x1000;       // sender is an F_Port

// Class service parameter bits (word 0, byte 0).
constexpr uint8_t kClassValid = 0x80;
constexpr uint8_t kClassSeqDelivery = 0x08;

// Command and response ring sizes of the SLI-2/3 rings, in 32-byte IOCBs,
// laid out one after another in adapter memory from kRingBase.
constexpr uint32_t kIocbSize = 32;
constexpr uint32_t kRingBase = 0x100;
constexpr uint32_t kRingCmdEntries[kSli3Rings] = {64, 16, 32, 16};
constexpr uint32_t kRingRspEntries[kSli3Rings] = {64, 16, 32, 16};

// Reads the variant area through another record view.
template <class V> V view(const MAILBOX &mb)
{
    static_assert(sizeof(V) <= sizeof(MAILVARIANTS));
    V v{};
    std::memcpy(&v, &mb.un, sizeof v);
    return v;
}

template <class V> void store(MAILBOX &mb, const V &v)
{
    static_assert(sizeof(V) <= sizeof(MAILVARIANTS));
    std::memcpy(&mb.un, &v, sizeof v);
}

// Whole-record views (header included) such as the SLI-4 revision reply.
template <class V> V whole_view(const MAILBOX &mb)
{
    static_assert(sizeof(V) == sizeof(MAILBOX));
    V v{};
    std::memcpy(&v, &mb, sizeof v);
    return v;
}

template <class V> void whole_store(MAILBOX &mb, const V &v)
{
    static_assert(sizeof(V) == sizeof(MAILBOX));
    std::memcpy(&mb, &v, sizeof v);
}

// Firmware names fill their 16-byte fields; a full-length name carries no NUL.
void put_name(uint8_t (&field)[16], const std::string &name)
{
    std::memset(field, 0, sizeof field);
    std::memcpy(field, name.data(), std::min(name.size(), sizeof field));
}

uint64_t bde_address(const ULP_BDE &bde)
{
    return static_cast<uint64_t>(bde.bdeAddress) | (static_cast<uint64_t>(bde.bdeAddrHigh) << 32);
}

uint64_t bde64_address(const ULP_BDE64 &bde)
{
    return static_cast<uint64_t>(bde.addrLow) | (static_cast<uint64_t>(bde.addrHigh) << 32);
}

// One class service parameter block (16 bytes).
void put_class(uint8_t *c, uint32_t max_frame, uint16_t ee_credit)
{
    c[0] = kClassValid | kClassSeqDelivery;
    put_be16(c + 6, static_cast<uint16_t>(max_frame & 0x0FFF)); // receive data field size
    put_be16(c + 8, 0x00FF);                                    // concurrent sequences
    put_be16(c + 10, ee_credit);
    put_be16(c + 12, 1); // open sequences per exchange
}

} // namespace

// ---------------------------------------------------------------------------
// Construction, reset and state

Firmware::Firmware(const BoardConf &cfg) : cfg_(cfg)
{
    state_ = cfg_.online ? BoardState::ready : BoardState::offline;
    link_.event_tag = kFirstEventTag;
    link_.state = LNK_DOWN;
    reset_defaults();
    if (cfg_.link_up)
        link_up_event();
}

void Firmware::reset_defaults()
{
    timers_ = LinkTimers{};
    rings_ = {};
    variables_ = {};
    trace_mask_ = trace_ring_ = 0;
    debug_addr_ = debug_value_ = 0;
    port_ = PortCounters{};
    errors_ = LinkErrors{};
    status_ = StatusCounters{};
    build_logins();
}

void Firmware::restart(bool bring_up)
{
    if (link_.up)
        link_down_event();
    reset_defaults();
    if (cfg_.link_up && bring_up)
        link_up_event();
}

BoardState Firmware::state() const
{
    return state_;
}

void Firmware::set_state(BoardState s)
{
    state_ = s;
}

uint32_t Firmware::ring_count() const
{
    return cfg_.sli_mode >= 4 ? 0 : kSli3Rings;
}

// Logins as the driver leaves them after discovery: on a fabric (or a public
// loop) the F_Port and the name server first, then every remote port.
void Firmware::build_logins()
{
    logins_.clear();
    uint16_t rpi = 0;
    const bool public_loop = cfg_.topology == Topology::loop && (cfg_.did & 0xFFFF00) != 0;
    if (cfg_.topology == Topology::fabric || public_loop) {
        Login f;
        f.rpi = rpi++;
        f.did = kFabricDid;
        f.wwpn = f.wwnn = cfg_.fabric_name;
        f.cos = 0xC; // classes 2 and 3
        f.fport = true;
        logins_.push_back(f);
        Login ns = f;
        ns.rpi = rpi++;
        ns.did = kNameServerDid;
        ns.fport = false;
        logins_.push_back(ns);
    }
    for (const RemotePort &rp : cfg_.remote_ports) {
        if (logins_.size() >= kMaxRpi)
            break;
        Login l;
        l.rpi = rpi++;
        l.did = rp.did & 0xFFFFFF;
        l.wwpn = rp.wwpn;
        l.wwnn = rp.wwnn;
        l.cos = rp.cos;
        l.max_frame = rp.max_frame;
        l.fcp_target = rp.fcp_target;
        logins_.push_back(l);
    }
}

const Firmware::Login *Firmware::find_login(uint16_t rpi) const
{
    for (const Login &l : logins_)
        if (l.rpi == rpi)
            return &l;
    return nullptr;
}

// Open exchanges: while the link is up the driver keeps one originator
// exchange open to every FCP target it is logged in with. XRI n is the n-th.
std::vector<const Firmware::Login *> Firmware::exchanges() const
{
    std::vector<const Login *> out;
    if (!link_.up)
        return out;
    for (const Login &l : logins_)
        if (l.fcp_target && out.size() < kMaxXri)
            out.push_back(&l);
    return out;
}

// ---------------------------------------------------------------------------
// Link events

void Firmware::bump_event_tag()
{
    if (++link_.event_tag == 0)
        link_.event_tag = kFirstEventTag;
}

namespace
{

uint32_t own_did(const BoardConf &s)
{
    if (s.did != 0)
        return s.did & 0xFFFFFF;
    return s.topology == Topology::loop ? s.alpa : 0;
}

uint8_t lnk_topology(const BoardConf &s)
{
    switch (s.topology) {
    case Topology::fabric:
        return LNK_FABRIC;
    case Topology::pt2pt:
        return LNK_PT2PT;
    case Topology::loop:
        break;
    }
    return (own_did(s) & 0xFFFF00) != 0 ? LNK_PUBLIC_LOOP : LNK_LOOP;
}

// READ_LA and READ_CONFIG name the topology as the port logs in: a fabric
// link is point-to-point to the F_Port.
uint8_t la_topology(const BoardConf &s)
{
    return s.topology == Topology::loop ? TOPOLOGY_LOOP : TOPOLOGY_PT_PT;
}

} // namespace

// Link comes up in the fleet's topology. Loop initialisation counts a LIP;
// speed negotiation leaves a few invalid transmission words behind.
void Firmware::link_up_event()
{
    bump_event_tag();
    log_event(kEventLinkUp, link_.event_tag);
    link_.up = true;
    link_.up_count++;
    link_.state = LNK_READY;
    link_.topology = lnk_topology(cfg_);
    link_.did = own_did(cfg_);
    link_.speed = cfg_.speed;
    link_.alpa = 0;
    link_.alpa_count = 0;
    std::memset(link_.alpa_map, 0, sizeof link_.alpa_map);
    if (cfg_.topology == Topology::loop) {
        const uint8_t own = cfg_.alpa != 0 ? cfg_.alpa : static_cast<uint8_t>(link_.did);
        link_.alpa = own;
        // LILP form: count first, then the loop's AL_PAs, ours leading.
        uint8_t n = 0;
        auto add = [&](uint8_t a) {
            if (a == 0 || n >= sizeof link_.alpa_map - 1)
                return;
            for (uint8_t i = 1; i <= n; ++i)
                if (link_.alpa_map[i] == a)
                    return;
            link_.alpa_map[++n] = a;
        };
        add(own);
        for (const RemotePort &rp : cfg_.remote_ports)
            if ((rp.did & 0xFFFF00) == (link_.did & 0xFFFF00))
                add(static_cast<uint8_t>(rp.did));
        link_.alpa_map[0] = n;
        link_.alpa_count = n;
        port_.lip++;
    }
    errors_.invalid_tx_word += 2;
    errors_.loss_sync += 1;
    if (link_hook_)
        link_hook_(link_hook_context_, link_);
}

// Link goes down: the port sends NOS/OLS and loses synchronisation.
void Firmware::link_down_event()
{
    bump_event_tag();
    log_event(kEventLinkDown, link_.event_tag);
    link_.up = false;
    link_.down_count++;
    link_.state = LNK_DOWN;
    link_.did = 0;
    link_.speed = 0;
    link_.alpa = 0;
    link_.alpa_count = 0;
    std::memset(link_.alpa_map, 0, sizeof link_.alpa_map);
    port_.nos++;
    errors_.link_failure++;
    errors_.loss_sync++;
    if (link_hook_)
        link_hook_(link_hook_context_, link_);
}

void Firmware::set_link(bool up)
{
    if (up && !link_.up)
        link_up_event();
    else if (!up && link_.up)
        link_down_event();
}

// INIT_LINK topology bits against what is at the other end of the cable:
// a port forced to loop does not come up on a switch's N_Port-only port,
// nor one forced to point-to-point on a loop.
bool Firmware::topology_allows(uint16_t link_flags) const
{
    switch (link_flags & 0x3) {
    case FLAGS_TOPOLOGY_MODE_LOOP:
        return cfg_.topology == Topology::loop;
    case FLAGS_TOPOLOGY_MODE_PT_PT:
        return cfg_.topology != Topology::loop;
    default:
        return true; // loop then point-to-point, or the reverse
    }
}

uint32_t Firmware::max_rpi()
{
    return kMaxRpi;
}

LinkStatus Firmware::link() const
{
    return link_;
}

// Traffic moves while the link is up: a fixed step per read, larger on
// higher board numbers so that boards tell apart.
void Firmware::advance_traffic()
{
    port_.seconds_since_reset += 5;
    if (!link_.up)
        return;
    const uint64_t n = cfg_.number;
    const uint64_t tx_frames = 40 + 3 * n;
    const uint64_t rx_frames = 56 + 5 * n;
    const uint64_t tx_words = tx_frames * 264;
    const uint64_t rx_words = rx_frames * 520;
    port_.tx_frames += tx_frames;
    port_.rx_frames += rx_frames;
    port_.tx_words += tx_words;
    port_.rx_words += rx_words;

    // The status counters are 32 bits wide and wrap.
    auto add32 = [](uint32_t &c, uint64_t d) { c = static_cast<uint32_t>(c + d); };
    add32(status_.xmit_bytes, tx_words * 4);
    add32(status_.rcv_bytes, rx_words * 4);
    add32(status_.xmit_frames, tx_frames);
    add32(status_.rcv_frames, rx_frames);
    add32(status_.xmit_seqs, tx_frames / 4);
    add32(status_.rcv_seqs, rx_frames / 4);
    add32(status_.orig_exchanges, tx_frames / 8);
    add32(status_.resp_exchanges, n);
}

PortCounters Firmware::counters()
{
    advance_traffic();
    return counters_now();
}

PortCounters Firmware::counters_now() const
{
    PortCounters c = port_;
    c.link_failure = errors_.link_failure;
    c.loss_of_sync = errors_.loss_sync;
    c.loss_of_signal = errors_.loss_signal;
    c.prim_seq_err = errors_.prim_seq_err;
    c.invalid_tx_word = errors_.invalid_tx_word;
    c.invalid_crc = errors_.crc;
    return c;
}

// Each frame adds its header, CRC and delimiters (9 words) to its payload.
void Firmware::carry_traffic(uint64_t tx_frames, uint64_t tx_bytes, uint64_t rx_frames, uint64_t rx_bytes)
{
    const uint64_t tx_words = tx_frames * 9 + (tx_bytes + 3) / 4;
    const uint64_t rx_words = rx_frames * 9 + (rx_bytes + 3) / 4;
    port_.tx_frames += tx_frames;
    port_.rx_frames += rx_frames;
    port_.tx_words += tx_words;
    port_.rx_words += rx_words;
    auto add32 = [](uint32_t &c, uint64_t d) { c = static_cast<uint32_t>(c + d); };
    add32(status_.xmit_bytes, tx_bytes);
    add32(status_.rcv_bytes, rx_bytes);
    add32(status_.xmit_frames, tx_frames);
    add32(status_.rcv_frames, rx_frames);
    add32(status_.xmit_seqs, tx_frames ? 1 : 0);
    add32(status_.rcv_seqs, rx_frames ? 1 : 0);
    add32(status_.orig_exchanges, 1);
}

// ---------------------------------------------------------------------------
// Issuing

int32_t Firmware::issue(uint8_t *record, uint32_t words_in, uint32_t words_out, uint32_t retries,
                        HostMemory &mem, std::span<uint8_t> payload, CommandNote *note)
{
    if (record == nullptr)
        return EINVAL;
    words_in = std::min(words_in, kMaxWords);
    words_out = std::min(words_out, kMaxWords);

    // Words the caller did not hand over read as zero.
    MAILBOX mb{};
    std::memcpy(&mb, record, static_cast<size_t>(words_in) * 4);

    const MailboxRow *row = command(mb.mbxCommand);
    if (note)
        *note = CommandNote{row ? row->name : nullptr, 0};
    if (row && (words_in < row->min_in || words_out < row->min_out))
        return EINVAL; // the command does not fit what was handed over

    int32_t rc = KVD_RC_OK;
    if (state_ != BoardState::ready) {
        // Every one of the `retries` tries finds the mailbox still owned by
        // the adapter; nothing in this call can change the board's state,
        // so the tries are not repeated one by one.
        (void)retries;
        mb.mbxStatus = MBX_NOT_FINISHED;
        rc = KVD_RC_MBX_RETRIES;
    } else if (auto hit = library_faults().match_command("mbox", mb.mbxCommand, row ? row->name : nullptr,
                                                         static_cast<int32_t>(cfg_.number))) {
        mb.mbxStatus = static_cast<uint16_t>(hit->result);
        if (note)
            note->rule = hit->rule;
    } else if (!row || !(row->sli_levels & sli_bit(cfg_.sli_mode))) {
        mb.mbxStatus = MBXERR_UNKNOWN_CMD;
    } else {
        MailboxCommand cmd{mb, mem, payload};
        mb.mbxStatus = (this->*row->handler)(cmd);
    }
    mb.mbxOwner = 0; // back to the host
    std::memcpy(record, &mb, static_cast<size_t>(words_out) * 4);
    return rc;
}

// The firmware's commands. Download, NVRAM write and diagnostics commands
// are not offered by this firmware: their codes, like
// any other unknown code, complete with MBXERR_UNKNOWN_CMD, and so does a
// command at an SLI level that does not have it.
//
// min_in: words of the record the command reads (header and input
// fields); min_out: words of room its reply needs (the status word, or the
// whole reply where a cut one would mislead). A record handed over with
// fewer is refused by the library before the firmware sees it.
struct MailboxCommands {
    static constexpr MailboxRow table[] = {
        {MBX_READ_NV, "READ_NV", kSliAll, 1, 1, &Firmware::read_nv},
        {MBX_INIT_LINK, "INIT_LINK", kSliAll, 3, 1, &Firmware::init_link},
        {MBX_DOWN_LINK, "DOWN_LINK", kSliAll, 1, 1, &Firmware::down_link},
        {MBX_CONFIG_LINK, "CONFIG_LINK", kSliAll, 8, 1, &Firmware::config_link},
        {MBX_CONFIG_RING, "CONFIG_RING", kSli2 | kSli3, 3, 1, &Firmware::config_ring},
        {MBX_RESET_RING, "RESET_RING", kSli2 | kSli3, 2, 1, &Firmware::reset_ring},
        {MBX_READ_CONFIG, "READ_CONFIG", kSliAll, 1, 1, &Firmware::read_config},
        {MBX_READ_RCONFIG, "READ_RCONFIG", kSli2 | kSli3, 2, 1, &Firmware::read_rconfig},
        {MBX_READ_SPARM, "READ_SPARM", kSliAll, 4, 1, &Firmware::read_sparm},
        {MBX_READ_STATUS, "READ_STATUS", kSliAll, 2, 1, &Firmware::read_status},
        {MBX_READ_RPI, "READ_RPI", kSliAll, 5, 1, &Firmware::read_rpi},
        {MBX_READ_XRI, "READ_XRI", kSliAll, 2, 1, &Firmware::read_xri},
        {MBX_READ_REV, "READ_REV", kSliAll, 1, 1, &Firmware::read_rev},
        {MBX_READ_LNK_STAT, "READ_LNK_STAT", kSliAll, 1, 1, &Firmware::read_lnk_stat},
        {MBX_UNREG_LOGIN, "UNREG_LOGIN", kSliAll, 2, 1, &Firmware::unreg_login},
        {MBX_READ_LA, "READ_LA", kSliAll, 5, 1, &Firmware::read_la},
        {MBX_CLEAR_LA, "CLEAR_LA", kSliAll, 2, 1, &Firmware::clear_la},
        {MBX_RESTART, "RESTART", kSliAll, 1, 1, &Firmware::restart_command},
        {MBX_SET_MASK, "SET_MASK", kSliAll, 5, 1, &Firmware::set_mask},
        {MBX_DUMP_MEMORY, "DUMP_MEMORY", kSliAll, 4, 5, &Firmware::dump_memory},
        {MBX_SET_VARIABLE, "SET_VARIABLE", kSliAll, 3, 4, &Firmware::set_variable},
        {MBX_READ_EVENT_LOG_STATUS, "READ_EVENT_LOG_STATUS", kSliAll, 1, 5, &Firmware::read_event_log_status},
        {MBX_READ_EVENT_LOG, "READ_EVENT_LOG", kSliAll, 2, 5, &Firmware::read_event_log},
        {MBX_WRITE_EVENT_LOG, "WRITE_EVENT_LOG", kSliAll, 3, 4, &Firmware::write_event_log},
        {MBX_READ_PORT_CAP, "READ_PORT_CAP", kSliAll, 1, 1, &Firmware::read_port_cap},
        {MBX_RUN_BIU_DIAG64, "RUN_BIU_DIAG64", kSliAll, 7, 1, &Firmware::biu_loopback},
        {MBX_READ_SPARM64, "READ_SPARM64", kSliAll, 4, 1, &Firmware::read_sparm64},
        {MBX_SET_DEBUG, "SET_DEBUG", kSliAll, 3, 1, &Firmware::set_debug},
        {MBX_SLI4_CONFIG, "SLI4_CONFIG", kSli4, MAILBOX_WORDS, MAILBOX_WORDS, &Firmware::sli4_config},
    };
};
static_assert(unique_codes(MailboxCommands::table), "two firmware commands share a code");
static_assert(unique_names(MailboxCommands::table), "two firmware commands share a name");

std::span<const RowInfo> Firmware::commands()
{
    static constexpr auto infos = row_infos(MailboxCommands::table);
    return infos;
}

const MailboxRow *Firmware::command(uint8_t code)
{
    return find_row(MailboxCommands::table, code);
}

// ---------------------------------------------------------------------------
// Commands. On an error status the variant goes back as it was sent.

// The request (embedded, or named by a scatter-gather entry) and the data
// behind the record are the SLI-4 engine's to read and answer.
uint16_t Firmware::sli4_config(MailboxCommand &cmd)
{
    if (!sli4_)
        return MBXERR_UNKNOWN_CMD;
    return sli4_->run(cmd.mb, cmd.mem, cmd.payload);
}

uint16_t Firmware::read_nv(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    READ_NV_VAR r{};
    std::memcpy(r.portname, cfg_.wwpn.data(), sizeof r.portname);
    std::memcpy(r.nodename, cfg_.wwnn.data(), sizeof r.nodename);
    r.pref_DID = cfg_.pref_did & 0xFFFFFF;
    r.hardAL_PA = cfg_.hard_alpa;
    store(mb, r);
    return MBXERR_OK;
}

// SLI-2/3 firmware answers with the revision words; only when the host sets
// `version` does it add the kernel, operational and SLI firmware revisions
// and names (the short reply ends after the feature levels). SLI-4 firmware
// always answers with its own layout over the whole record.
uint16_t Firmware::read_rev(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    const FirmwareRevision &rev = cfg_.revision;
    if (cfg_.sli_mode >= 4) {
        const auto in = whole_view<READ_REV_VAR_SLI4>(mb);
        READ_REV_VAR_SLI4 r{};
        std::memcpy(&r, &mb, 4); // header
        r.sli_level = 4;
        r.fcoe = cfg_.protocol == Protocol::fcoe ? 1 : 0;
        r.vpd = 1;
        r.first_hw_rev = rev.first_hw_rev;
        r.second_hw_rev = rev.second_hw_rev;
        r.third_hw_rev = rev.third_hw_rev;
        r.fcph_low = rev.fcph_low;
        r.fcph_high = rev.fcph_high;
        r.feature_level_low = rev.feature_level_low;
        r.feature_level_high = rev.feature_level_high;
        r.arm_fw_id_rev = rev.arm_fw_id_rev;
        put_name(r.arm_fw_name, rev.arm_fw_name);
        r.ulp_fw_id_rev = rev.ulp_fw_id_rev;
        put_name(r.ulp_fw_name, rev.ulp_fw_name);
        r.available_length = kSli4VpdLength;
        r.phys_addr_low = in.phys_addr_low;
        r.phys_addr_high = in.phys_addr_high;
        r.returned_vpd_length = 0; // VPD is read through its own request
        whole_store(mb, r);
        return MBXERR_OK;
    }
    const auto in = view<READ_REV_VAR>(mb);
    READ_REV_VAR r{};
    r.version = in.version;
    r.recognition = 1;
    r.data_present = 1;
    r.biu_rev = rev.biu_rev;
    r.sm_rev = rev.sm_rev;
    r.fw_rev = rev.sm_fw_rev;
    r.endec_rev = rev.endec_rev;
    r.fcph_low = rev.fcph_low;
    r.fcph_high = rev.fcph_high;
    r.feature_level_low = rev.feature_level_low;
    r.feature_level_high = rev.feature_level_high;
    if (in.version) {
        r.postKernRev = rev.post_kernel_rev;
        r.opFwRev = rev.op_fw_rev;
        put_name(r.opFwName, rev.op_fw_name);
        r.sli1FwRev = rev.sli1_fw_rev;
        put_name(r.sli1FwName, rev.sli1_fw_name);
        r.sli2FwRev = rev.sli2_fw_rev;
        put_name(r.sli2FwName, rev.sli2_fw_name);
    }
    store(mb, r);
    return MBXERR_OK;
}

// Re-initialises the link: an up link goes down first (both attentions then
// count as one multi-event). FLAGS_UNREG_LOGIN_ALL drops every login.
uint16_t Firmware::init_link(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    const auto in = view<INIT_LINK_VAR>(mb);
    if (in.link_flags & FLAGS_UNREG_LOGIN_ALL)
        logins_.clear();
    const bool was_up = link_.up;
    if (was_up)
        link_down_event();
    if (topology_allows(in.link_flags)) {
        link_up_event();
        if (was_up)
            link_.multi_count++;
    }
    return MBXERR_OK;
}

uint16_t Firmware::down_link(MailboxCommand &)
{
    if (link_.up)
        link_down_event();
    return MBXERR_OK;
}

uint16_t Firmware::config_link(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    const auto in = view<CONFIG_LINK>(mb);
    timers_.max_bbc = static_cast<uint8_t>(in.MaxBBC);
    timers_.cr_count = static_cast<uint8_t>(in.cr_count);
    timers_.cr_delay = static_cast<uint8_t>(in.cr_delay);
    timers_.ci = in.ci;
    timers_.cr = in.cr;
    timers_.my_id = in.myId;
    timers_.edtov = in.edtov;
    timers_.arbtov = in.arbtov;
    timers_.ratov = in.ratov;
    timers_.rttov = in.rttov;
    timers_.altov = in.altov;
    timers_.crtov = in.crtov;
    timers_.citov = in.citov;
    timers_.ack0 = in.ack0_enable;
    timers_.rrq_immed = in.rrq_immed;
    timers_.rrq_enable = in.rrq_enable;
    return MBXERR_OK;
}

uint16_t Firmware::config_ring(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    const auto in = view<CONFIG_RING_VAR>(mb);
    if (in.ring >= ring_count())
        return MBXERR_BAD_RING_NUMBER;
    if (in.numMask > MAX_RING_MASK)
        return MBXERR_MASKS_EXCEEDED;
    RingConfig &r = rings_[in.ring];
    r.profile = static_cast<uint8_t>(in.profile);
    r.num_mask = static_cast<uint8_t>(in.numMask);
    r.recv_notify = in.recvNotify;
    r.recv_seq = in.recvSeq;
    r.max_orig = in.maxOrigXchg;
    r.max_resp = in.maxRespXchg;
    r.masks = {};
    std::copy_n(in.rrRegs, r.num_mask, r.masks.begin());
    return MBXERR_OK;
}

uint16_t Firmware::reset_ring(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    const auto in = view<RESET_RING_VAR>(mb);
    if (in.ring_no >= ring_count())
        return MBXERR_BAD_RING_NUMBER;
    return MBXERR_OK; // the ring's indexes go back to 0; they are not modelled
}

uint16_t Firmware::read_config(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    READ_CONFIG_VAR r{};
    r.cr = timers_.cr;
    r.ci = timers_.ci;
    r.MaxBBC = timers_.max_bbc;
    r.cr_count = timers_.cr_count;
    r.topology = link_.up ? la_topology(cfg_) : 0;
    r.myDid = link_.did & 0xFFFFFF;
    r.ack0 = timers_.ack0;
    r.edtov = timers_.edtov;
    r.arbtov = timers_.arbtov;
    r.ratov = timers_.ratov;
    r.rttov = timers_.rttov;
    r.altov = timers_.altov;
    r.lmt = cfg_.supported_speeds;
    r.max_xri = kMaxXri;
    r.max_iocb = kMaxIocb;
    r.max_rpi = kMaxRpi;
    // Virtual ports take a VPI each and an RPI for every login they hold.
    const uint32_t vports = npiv_ ? static_cast<uint32_t>(npiv_->vports().size()) : 0;
    const uint32_t vport_rpis = npiv_ ? npiv_->vport_rpis() : 0;
    const uint32_t rpis = static_cast<uint32_t>(logins_.size()) + vport_rpis;
    r.avail_rpi = static_cast<uint16_t>(rpis < kMaxRpi ? kMaxRpi - rpis : 0);
    r.avail_xri = static_cast<uint16_t>(kMaxXri - exchanges().size());
    const uint16_t vpis = static_cast<uint16_t>(std::min<uint32_t>(cfg_.npiv_max_vports, 0xFFFF));
    r.max_vpi = vpis;
    r.avail_vpi = static_cast<uint16_t>(vports < vpis ? vpis - vports : 0);
    store(mb, r);
    return MBXERR_OK;
}

uint16_t Firmware::read_rconfig(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    const auto in = view<READ_RCONF_VAR>(mb);
    if (in.ring >= ring_count())
        return MBXERR_BAD_RING_NUMBER;
    const RingConfig &c = rings_[in.ring];
    READ_RCONF_VAR r{};
    r.ring = in.ring;
    r.numMask = c.num_mask;
    r.profile = c.profile;
    r.maxOrigXchg = c.max_orig;
    r.maxRespXchg = c.max_resp;
    r.recvNotify = c.recv_notify;
    r.recvSeq = c.recv_seq;
    std::copy(c.masks.begin(), c.masks.end(), r.rrRegs);
    uint32_t offset = kRingBase;
    for (uint32_t i = 0; i < in.ring; ++i)
        offset += (kRingCmdEntries[i] + kRingRspEntries[i]) * kIocbSize;
    r.cmdRingOffset = offset;
    r.cmdEntryCnt = kRingCmdEntries[in.ring];
    r.rspRingOffset = offset + kRingCmdEntries[in.ring] * kIocbSize;
    r.rspEntryCnt = kRingRspEntries[in.ring];
    r.nextCmdOffset = r.cmdRingOffset;
    r.nextRspOffset = r.rspRingOffset;
    store(mb, r);
    return MBXERR_OK;
}

// Service parameters, in the byte order of the FLOGI/PLOGI payload after its
// command code: common service parameters (16), port name, node name, class
// 1, 2, 3 and 4 parameters (16 each), vendor version level (16).
Firmware::ServiceParams Firmware::own_service_params() const
{
    ServiceParams sp{};
    const FirmwareRevision &rev = cfg_.revision;
    sp[0] = rev.fcph_high != 0 ? rev.fcph_high : 0x20;
    sp[1] = rev.fcph_low != 0 ? rev.fcph_low : 0x09;
    put_be16(&sp[2], kOwnBbCredit);
    put_be16(&sp[4], kFeatCiro | kFeatVendorValid);
    put_be16(&sp[6], static_cast<uint16_t>(cfg_.max_frame & 0x0FFF));
    // An N_Port's login parameters carry Total Concurrent Sequences and
    // Relative Offset by Information Category in word 2 (R_A_TOV is the
    // F_Port's there).
    put_be16(&sp[8], 0x00FF);
    put_be16(&sp[10], 0x0002);
    put_be32(&sp[12], timers_.edtov);
    std::memcpy(&sp[16], cfg_.wwpn.data(), 8);
    std::memcpy(&sp[24], cfg_.wwnn.data(), 8);
    put_class(&sp[64], cfg_.max_frame, 0); // class 3 only
    // Vendor version level: the maker's OUI, then the running firmware.
    sp[97] = 0x06;
    sp[98] = 0x4b;
    sp[99] = 0x51;
    put_be32(&sp[100], cfg_.sli_mode >= 4 ? rev.arm_fw_id_rev : rev.op_fw_rev);
    return sp;
}

Firmware::ServiceParams Firmware::login_service_params(const Login &l) const
{
    ServiceParams sp{};
    sp[0] = 0x20;
    sp[1] = 0x20;
    put_be16(&sp[2], l.fport ? kOwnBbCredit : kRemoteBbCredit);
    put_be16(&sp[4], static_cast<uint16_t>(kFeatCiro | (l.fport ? kFeatFPort : 0)));
    put_be16(&sp[6], static_cast<uint16_t>(l.max_frame & 0x0FFF));
    if (l.fport) {
        put_be32(&sp[8], timers_.ratov);
    } else {
        put_be16(&sp[8], 0x00FF);  // total concurrent sequences
        put_be16(&sp[10], 0x0002); // relative offset by information category
    }
    put_be32(&sp[12], timers_.edtov);
    std::memcpy(&sp[16], l.wwpn.data(), 8);
    std::memcpy(&sp[24], l.wwnn.data(), 8);
    for (uint32_t cls = 1; cls <= 3; ++cls)
        if (l.cos & (1u << cls))
            put_class(&sp[32 + 16 * (cls - 1)], l.max_frame, cls == 3 ? 0 : 16);
    return sp;
}

uint16_t Firmware::write_service_params(const ServiceParams &sp, uint64_t address, uint32_t size,
                                        HostMemory &mem) const
{
    if (size < kSparmSize)
        return MBXERR_BAD_RCV_LENGTH;
    if (!mem.write(address, sp.data(), sp.size()))
        return MBXERR_DMA_ERROR;
    return MBXERR_OK;
}

uint16_t Firmware::read_sparm(MailboxCommand &cmd)
{
    const auto in = view<READ_SPARM_VAR>(cmd.mb);
    return write_service_params(own_service_params(), bde_address(in.sp), in.sp.bdeSize, cmd.mem);
}

uint16_t Firmware::read_sparm64(MailboxCommand &cmd)
{
    const auto in = view<READ_SPARM64_VAR>(cmd.mb);
    return write_service_params(own_service_params(), bde64_address(in.sp64), in.sp64.tus.f.bdeSize, cmd.mem);
}

// A firmware reset, as the board's own RESTART command asks for.
uint16_t Firmware::restart_command(MailboxCommand &)
{
    restart(!port_gate_ || port_gate_->link_allowed());
    return MBXERR_OK;
}

// The counters are returned as they stand and, when asked, cleared after.
uint16_t Firmware::read_status(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    advance_traffic();
    auto r = view<READ_STATUS_VAR>(mb);
    r.activeRpiCnt = static_cast<uint16_t>(logins_.size());
    r.activeXriCnt = static_cast<uint16_t>(exchanges().size());
    r.xmitByteCnt = status_.xmit_bytes;
    r.rcvByteCnt = status_.rcv_bytes;
    r.xmitFrameCnt = status_.xmit_frames;
    r.rcvFrameCnt = status_.rcv_frames;
    r.xmitSeqCnt = status_.xmit_seqs;
    r.rcvSeqCnt = status_.rcv_seqs;
    r.totalOrigExchanges = status_.orig_exchanges;
    r.totalRespExchanges = status_.resp_exchanges;
    r.rcvPbsyCnt = status_.rcv_pbsy;
    r.rcvFbsyCnt = status_.rcv_fbsy;
    store(mb, r);
    if (r.clrCounters)
        status_ = StatusCounters{};
    return MBXERR_OK;
}

uint16_t Firmware::read_rpi(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    HostMemory &mem = cmd.mem;
    auto r = view<READ_RPI_VAR>(mb);
    const Login *l = find_login(r.reqRpi);
    if (l == nullptr)
        return MBXERR_ERROR;
    const uint16_t st = write_service_params(login_service_params(*l), bde_address(r.sp), r.sp.bdeSize, mem);
    if (st != MBXERR_OK)
        return st;
    const auto next =
        std::find_if(logins_.begin(), logins_.end(), [&](const Login &x) { return x.rpi > l->rpi; });
    r.nextRpi = next == logins_.end() ? 0 : next->rpi; // 0: no further login
    r.DID = l->did;
    store(mb, r);
    return MBXERR_OK;
}

uint16_t Firmware::read_xri(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    const auto in = view<READ_XRI_VAR>(mb);
    const auto open = exchanges();
    if (in.reqXri >= open.size())
        return MBXERR_ERROR;
    const Login &l = *open[in.reqXri];
    READ_XRI_VAR r{};
    r.reqXri = in.reqXri;
    r.nextXri = static_cast<uint16_t>(in.reqXri + 1u < open.size() ? in.reqXri + 1u : 0u);
    r.rpi = l.rpi;
    r.oxid = 0x0010u + in.reqXri;
    r.rxid = 0x0400u + in.reqXri;
    r.exchOrig = 1;
    r.DID = l.did;
    store(mb, r);
    return MBXERR_OK;
}

uint16_t Firmware::read_lnk_stat(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    READ_LNK_VAR r{};
    r.linkFailureCnt = errors_.link_failure;
    r.lossSyncCnt = errors_.loss_sync;
    r.lossSignalCnt = errors_.loss_signal;
    r.primSeqErrCnt = errors_.prim_seq_err;
    r.invalidXmitWord = errors_.invalid_tx_word;
    r.crcCnt = errors_.crc;
    r.primSeqTimeout = errors_.prim_seq_timeout;
    r.elasticOverrun = errors_.elastic_overrun;
    r.arbTimeout = errors_.arb_timeout;
    store(mb, r);
    return MBXERR_OK;
}

uint16_t Firmware::unreg_login(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    const auto in = view<UNREG_LOGIN_VAR>(mb);
    if (in.rpi == kAllRpis) {
        logins_.clear();
        return MBXERR_OK;
    }
    const auto it =
        std::find_if(logins_.begin(), logins_.end(), [&](const Login &l) { return l.rpi == in.rpi; });
    if (it == logins_.end())
        return MBXERR_ERROR;
    logins_.erase(it);
    return MBXERR_OK;
}

// The last link attention. On a loop that is up the LILP map (count byte,
// then the AL_PAs) goes into the lilpBde buffer, up to 128 bytes; a zero
// size asks for no map.
uint16_t Firmware::read_la(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    HostMemory &mem = cmd.mem;
    auto r = view<READ_LA_VAR>(mb);
    const bool loop = cfg_.topology == Topology::loop;
    if (link_.up && loop && r.lilpBde.bdeSize != 0) {
        const uint32_t need = link_.alpa_count + 1u;
        if (r.lilpBde.bdeSize < need)
            return MBXERR_BAD_RCV_LENGTH;
        const size_t len = std::min<size_t>(r.lilpBde.bdeSize, sizeof link_.alpa_map);
        if (!mem.write(bde_address(r.lilpBde), link_.alpa_map, len))
            return MBXERR_DMA_ERROR;
    }
    r.eventTag = link_.event_tag;
    r.attType = link_.up ? AT_LINK_UP : AT_LINK_DOWN;
    r.il = 0;
    r.pb = 0;
    r.topology = la_topology(cfg_);
    r.lipType = link_.up && loop ? 0xF7 : 0; // LIP(F7,F7): loop initialisation
    r.lipAlPs = link_.up && loop ? 0xF7 : 0;
    r.granted_AL_PA = link_.up ? link_.alpa : 0;
    store(mb, r);
    return MBXERR_OK;
}

uint16_t Firmware::clear_la(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    const auto in = view<CLEAR_LA_VAR>(mb);
    return in.eventTag == link_.event_tag ? MBXERR_OK : MBXERR_ERROR;
}

// Word at 4: key; word at 8: trace mask; word at 12: ring to trace. SLI-4
// firmware has no rings and traces on channel 0 only.
uint16_t Firmware::set_mask(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    const auto w = view<std::array<uint32_t, 31>>(mb);
    if (w[0] != MBX_SETMASK_KEY)
        return MBXERR_BAD_KEY;
    if (w[2] >= std::max<uint32_t>(ring_count(), 1))
        return MBXERR_BAD_RING_NUMBER;
    trace_mask_ = w[1];
    trace_ring_ = w[2];
    return MBXERR_OK;
}

uint16_t Firmware::set_debug(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    const auto w = view<std::array<uint32_t, 31>>(mb);
    debug_addr_ = w[1];
    debug_value_ = w[2];
    return MBXERR_OK;
}

uint16_t Firmware::read_port_cap(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    PORT_CAP_VAR r{};
    std::memcpy(&r, &mb, 4); // header
    r.port_type = cfg_.protocol == Protocol::fcoe ? 1 : 0;
    r.media = cfg_.protocol == Protocol::fcoe ? 2 : 1;
    r.speeds_supported = cfg_.supported_speeds;
    r.speeds_configured = cfg_.supported_speeds;
    r.max_frame_size = cfg_.max_frame;
    r.bb_credit = kOwnBbCredit;
    whole_store(mb, r);
    return MBXERR_OK;
}

// PCI loopback: the transmit data go out through the bus interface and come
// back into the receive buffer.
uint16_t Firmware::biu_loopback(MailboxCommand &cmd)
{
    MAILBOX &mb = cmd.mb;
    HostMemory &mem = cmd.mem;
    const auto in = view<BIU_DIAG_VAR64>(mb);
    const uint32_t xmit_size = in.xmit_bde64.tus.f.bdeSize;
    const uint32_t rcv_size = in.rcv_bde64.tus.f.bdeSize;
    if (xmit_size > rcv_size || xmit_size > kMaxLoopbackBytes)
        return MBXERR_BAD_RCV_LENGTH;
    std::vector<uint8_t> data(xmit_size);
    if (!mem.read(bde64_address(in.xmit_bde64), data.data(), data.size()))
        return MBXERR_DMA_ERROR;
    // The loopback echo rule ("loop:ECHO=N") flips byte N on the way back.
    if (auto hit = library_faults().match_command("loop", 1, "ECHO", static_cast<int32_t>(cfg_.number));
        hit && !data.empty())
        data[static_cast<uint64_t>(hit->result) % data.size()] ^= 0xFF;
    if (!mem.write(bde64_address(in.rcv_bde64), data.data(), data.size()))
        return MBXERR_DMA_ERROR;
    return MBXERR_OK;
}

} // namespace kvdsim
