// SCSI target model: the commands a disk's device server answers, through
// one table of rows keyed by operation code.
#include "scsi/target.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "core/fault.hpp"
#include "core/section.hpp"
#include "core/bytes.hpp"

namespace kvdsim
{

namespace
{

constexpr uint32_t kMaxLun = 0x3FFF;        // flat space addressing
constexpr uint64_t kMaxBlocks = 1ull << 48; // 128 PiB of 512-byte blocks
constexpr size_t kMaxLunsPerTarget = 512;
constexpr uint64_t kDefaultBlocks[] = {2097152, 20480}; // LUN 0: 1 GiB, LUN 1: 10 MiB

// Space-padded text field.
void put_text(uint8_t *p, size_t n, const std::string &s)
{
    memset(p, ' ', n);
    memcpy(p, s.data(), std::min(n, s.size()));
}

std::string upper_hex(const uint8_t *p, size_t n)
{
    std::string out;
    char buf[4];
    for (size_t i = 0; i < n; ++i) {
        snprintf(buf, sizeof buf, "%02X", p[i]);
        out += buf;
    }
    return out;
}

// The first block must exist, even for a transfer of none, and the last
// one too.
bool in_range(const LogicalUnit &lu, uint64_t lba, uint64_t count)
{
    return lba < lu.conf.blocks && lba + count <= lu.conf.blocks;
}

LunConf default_lun(uint16_t number, uint64_t blocks)
{
    LunConf l;
    l.lun = number;
    l.blocks = blocks;
    return l;
}

// Names the node's units carry unless the fleet gives them.
void complete_lun(LunConf &l, const Wwn &wwnn)
{
    if (l.vendor.empty())
        l.vendor = "QSTOR";
    if (l.product.empty())
        l.product = "VIRTUAL DISK";
    if (l.revision.empty())
        l.revision = "0100";
    if (l.serial.empty()) {
        char lun[8];
        snprintf(lun, sizeof lun, "%04X", l.lun);
        l.serial = "QS" + upper_hex(wwnn.data() + 5, 3) + lun;
    }
}

// NAA 6 (IEEE registered extended): the node name's company id, its serial
// part, and the LUN as the extension.
std::array<uint8_t, 16> naa_designator(const Wwn &wwnn, uint16_t lun)
{
    std::array<uint8_t, 16> d{};
    const uint32_t oui = static_cast<uint32_t>(wwnn[2]) << 16 | static_cast<uint32_t>(wwnn[3]) << 8 | wwnn[4];
    const uint64_t vs = (static_cast<uint64_t>(wwnn[5]) << 16 | static_cast<uint64_t>(wwnn[6]) << 8 | wwnn[7])
                        << 12;
    d[0] = static_cast<uint8_t>(0x60 | (oui >> 20));
    d[1] = static_cast<uint8_t>(oui >> 12);
    d[2] = static_cast<uint8_t>(oui >> 4);
    d[3] = static_cast<uint8_t>((oui & 0xf) << 4 | ((vs >> 32) & 0xf));
    put_be32(&d[4], static_cast<uint32_t>(vs));
    put_be64(&d[8], lun);
    return d;
}

const RemotePort *remote(const BoardConf &conf, const Wwn &wwpn)
{
    for (const RemotePort &rp : conf.remote_ports)
        if (rp.wwpn == wwpn)
            return &rp;
    return nullptr;
}

LunConf read_lun(const Json &j, const std::string &place)
{
    Section o(j, place);
    LunConf l;
    l.lun = static_cast<uint16_t>(to_unsigned(o.need("lun"), o.at("lun"), kMaxLun));
    l.blocks = to_unsigned(o.need("blocks"), o.at("blocks"), kMaxBlocks);
    if (l.blocks == 0)
        fail(o.at("blocks"), "a logical unit has at least one block");
    o.text("vendor", l.vendor, 8);
    o.text("product", l.product, 16);
    o.text("revision", l.revision, 4);
    o.text("serial", l.serial, 32);
    o.finish();
    return l;
}

} // namespace

void read_scsi_section(Section &board, BoardConf &conf)
{
    ScsiConf &s = conf.scsi;
    if (const Json *j = board.take("scsi")) {
        Section o(*j, board.at("scsi"));
        if (const Json *tv = o.take("targets")) {
            const std::string tplace = o.at("targets");
            if (!tv->is_array())
                fail(tplace, std::string("expected an array, found ") + type_name(*tv));
            for (size_t i = 0; i < tv->size(); ++i) {
                const std::string pp = tplace + "[" + std::to_string(i) + "]";
                Section t((*tv)[i], pp);
                ScsiTargetConf ts;
                ts.wwpn = to_wwn(t.need("wwpn"), t.at("wwpn"));
                const RemotePort *rp = remote(conf, ts.wwpn);
                if (!rp || !rp->fcp_target)
                    fail(t.at("wwpn"), "not a remote port of the board that offers FCP");
                for (const auto &other : s.targets)
                    if (other.wwpn == ts.wwpn)
                        fail(t.at("wwpn"), "target described twice");
                const Json &lv = t.need("luns");
                if (!lv.is_array())
                    fail(t.at("luns"), std::string("expected an array, found ") + type_name(lv));
                if (lv.size() > kMaxLunsPerTarget)
                    fail(t.at("luns"), "more than " + std::to_string(kMaxLunsPerTarget) + " logical units");
                for (size_t k = 0; k < lv.size(); ++k) {
                    const std::string lp = t.at("luns") + "[" + std::to_string(k) + "]";
                    LunConf l = read_lun(lv[k], lp);
                    for (const auto &q : ts.luns)
                        if (q.lun == l.lun)
                            fail(lp + ".lun", "duplicate LUN " + std::to_string(l.lun));
                    ts.luns.push_back(std::move(l));
                }
                t.finish();
                s.targets.push_back(std::move(ts));
            }
        }
        o.finish();
    }
    // Every FCP target the fleet leaves out gets the default units.
    for (const RemotePort &rp : conf.remote_ports) {
        if (!rp.fcp_target)
            continue;
        auto it = std::find_if(s.targets.begin(), s.targets.end(),
                               [&](const ScsiTargetConf &t) { return t.wwpn == rp.wwpn; });
        if (it == s.targets.end()) {
            ScsiTargetConf ts;
            ts.wwpn = rp.wwpn;
            for (uint16_t n = 0; n < std::size(kDefaultBlocks); ++n)
                ts.luns.push_back(default_lun(n, kDefaultBlocks[n]));
            s.targets.push_back(std::move(ts));
        }
    }
}

SCSI_SENSE make_sense(uint8_t key, uint8_t asc, uint8_t ascq)
{
    SCSI_SENSE s{};
    s.responseCode = SENSE_FIXED_CURRENT;
    s.senseKey = static_cast<uint8_t>(key & 0x0f);
    s.addSenseLen = sizeof(SCSI_SENSE) - 8;
    s.asc = asc;
    s.ascq = ascq;
    return s;
}

uint8_t check_condition(ScsiTask &t, uint8_t key, uint8_t asc, uint8_t ascq)
{
    t.sense = make_sense(key, asc, ascq);
    t.data_in.clear();
    return SCSI_STAT_CHECK_CONDITION;
}

// ---------------------------------------------------------------------------
// Construction and lookup

ScsiTargets::ScsiTargets(const BoardConf &cfg) : board_(cfg.number)
{
    // Units are shared by the ports of one node.
    std::map<std::pair<Wwn, uint16_t>, std::shared_ptr<LogicalUnit>> units;
    for (const ScsiTargetConf &ts : cfg.scsi.targets) {
        const RemotePort *rp = remote(cfg, ts.wwpn);
        if (!rp)
            continue;
        Port p;
        p.wwpn = ts.wwpn;
        for (const LunConf &l : ts.luns) {
            auto &u = units[{rp->wwnn, l.lun}];
            if (!u) {
                u = std::make_shared<LogicalUnit>();
                u->conf = l;
                complete_lun(u->conf, rp->wwnn);
                u->naa = naa_designator(rp->wwnn, l.lun);
            }
            p.luns.emplace_back(l.lun, u);
        }
        std::sort(p.luns.begin(), p.luns.end(),
                  [](const auto &a, const auto &b) { return a.first < b.first; });
        ports_.push_back(std::move(p));
    }
}

const ScsiTargets::Port *ScsiTargets::port(const std::array<uint8_t, 8> &wwpn) const
{
    for (const Port &p : ports_)
        if (p.wwpn == wwpn)
            return &p;
    return nullptr;
}

bool ScsiTargets::has_target(const std::array<uint8_t, 8> &wwpn) const
{
    return port(wwpn) != nullptr;
}

LogicalUnit *ScsiTargets::unit(const Port &p, int32_t number) const
{
    for (const auto &[n, u] : p.luns)
        if (static_cast<int32_t>(n) == number)
            return u.get();
    return nullptr;
}

int32_t ScsiTargets::lun_number(const std::array<uint8_t, 8> &lun)
{
    for (size_t i = 2; i < 8; ++i)
        if (lun[i] != 0)
            return -1;
    switch (lun[0] >> 6) {
    case 0: // peripheral device addressing: bus 0 only
        return (lun[0] & 0x3f) == 0 ? lun[1] : -1;
    case 1: // flat space
        return static_cast<int32_t>((lun[0] & 0x3f) << 8 | lun[1]);
    default:
        return -1;
    }
}

std::array<uint8_t, 8> ScsiTargets::lun_bytes(uint16_t number)
{
    std::array<uint8_t, 8> l{};
    if (number > 0xff)
        l[0] = static_cast<uint8_t>(0x40 | ((number >> 8) & 0x3f));
    l[1] = static_cast<uint8_t>(number);
    return l;
}

uint32_t ScsiTargets::cdb_length(uint8_t opcode)
{
    switch (opcode >> 5) {
    case 0:
        return 6;
    case 4:
        return 16;
    case 5:
        return 12;
    default:
        return 10;
    }
}

// ---------------------------------------------------------------------------
// The table. min_in: CDB bytes the command needs.

struct ScsiCommands {
    static constexpr ScsiRow table[] = {
        {SCSI_TEST_UNIT_READY, "TEST_UNIT_READY", kSliAll, 6, 0, &ScsiTargets::test_unit_ready},
        {SCSI_REQUEST_SENSE, "REQUEST_SENSE", kSliAll, 6, 0, &ScsiTargets::request_sense},
        {SCSI_INQUIRY, "INQUIRY", kSliAll, 6, 0, &ScsiTargets::inquiry},
        {SCSI_READ_CAPACITY_10, "READ_CAPACITY_10", kSliAll, 10, 0, &ScsiTargets::read_capacity10},
        {SCSI_READ_10, "READ_10", kSliAll, 10, 0, &ScsiTargets::read10},
        {SCSI_WRITE_10, "WRITE_10", kSliAll, 10, 0, &ScsiTargets::write10},
        {SCSI_SERVICE_ACTION_IN_16, "SERVICE_ACTION_IN_16", kSliAll, 16, 0, &ScsiTargets::service_action_in},
        {SCSI_REPORT_LUNS, "REPORT_LUNS", kSliAll, 12, 0, &ScsiTargets::report_luns},
    };
};

static_assert(unique_codes(ScsiCommands::table), "two SCSI commands share an operation code");
static_assert(unique_names(ScsiCommands::table), "two SCSI commands share a name");

std::span<const RowInfo> ScsiTargets::commands()
{
    static constexpr auto infos = row_infos(ScsiCommands::table);
    return infos;
}

const ScsiRow *ScsiTargets::command(uint8_t opcode)
{
    return find_row(ScsiCommands::table, opcode);
}

// Runs the task: the row for its operation code, a fault rule naming it,
// or CHECK CONDITION for a code no row serves. Data in is cut to what the
// initiator allows.
void ScsiTargets::execute(const std::array<uint8_t, 8> &wwpn, ScsiTask &t)
{
    const Port *p = port(wwpn);
    t.status = SCSI_STAT_GOOD;
    t.data_in.clear();
    t.required = t.moved = 0;
    t.sense = SCSI_SENSE{};
    if (!p || t.cdb.empty()) {
        t.status = check_condition(t, SENSE_KEY_ILLEGAL_REQUEST, ASC_INVALID_OPCODE);
        return;
    }
    const uint8_t opcode = t.cdb[0];
    const ScsiRow *row = command(opcode);
    t.name = row ? row->name : nullptr;
    if (auto hit = library_faults().match_command("scsi", opcode, t.name, static_cast<int32_t>(board_))) {
        t.rule = hit->rule;
        t.status = static_cast<uint8_t>(hit->result);
        if (t.status == SCSI_STAT_CHECK_CONDITION)
            t.sense = make_sense(0x0B, 0, 0); // ABORTED COMMAND
        return;
    }
    if (!row || t.cdb.size() < row->min_in) {
        t.status = check_condition(t, SENSE_KEY_ILLEGAL_REQUEST, ASC_INVALID_OPCODE);
        return;
    }
    current_ = p;
    t.status = (this->*row->handler)(t, unit(*p, lun_number(t.lun)));
    current_ = nullptr;
    if (t.data_in.size() > t.expected)
        t.data_in.resize(t.expected);
    if (!t.data_in.empty())
        t.moved = static_cast<uint32_t>(t.data_in.size());
}

// ---------------------------------------------------------------------------
// Commands

uint8_t ScsiTargets::test_unit_ready(ScsiTask &t, LogicalUnit *lu)
{
    if (!lu)
        return check_condition(t, SENSE_KEY_ILLEGAL_REQUEST, ASC_LUN_NOT_SUPPORTED);
    return SCSI_STAT_GOOD;
}

// Sense is delivered with the status (autosense), so nothing is pending.
uint8_t ScsiTargets::request_sense(ScsiTask &t, LogicalUnit *lu)
{
    SCSI_SENSE s = make_sense(SENSE_KEY_NO_SENSE, 0, 0);
    if (!lu)
        s = make_sense(SENSE_KEY_ILLEGAL_REQUEST, ASC_LUN_NOT_SUPPORTED, 0);
    const uint32_t alloc = t.cdb[4];
    t.data_in.resize(sizeof s);
    memcpy(t.data_in.data(), &s, sizeof s);
    t.required = std::min<uint32_t>(alloc, sizeof s);
    t.data_in.resize(t.required);
    return SCSI_STAT_GOOD;
}

// Standard data, or a VPD page. A LUN without a unit answers with
// peripheral qualifier 3 (no unit can be there).
uint8_t ScsiTargets::inquiry(ScsiTask &t, LogicalUnit *lu)
{
    const bool evpd = t.cdb[1] & 1;
    const uint8_t page = t.cdb[2];
    const uint32_t alloc = be16(&t.cdb[3]);
    std::vector<uint8_t> &d = t.data_in;
    if (!evpd && page != 0)
        return check_condition(t, SENSE_KEY_ILLEGAL_REQUEST, ASC_INVALID_FIELD_IN_CDB);
    const uint8_t peripheral = lu ? 0x00 : 0x7F;
    if (!evpd) {
        d.assign(36, 0);
        d[0] = peripheral;
        d[2] = 0x06; // SPC-4
        d[3] = 0x12; // HiSup, response data format 2
        d[4] = 36 - 5;
        d[7] = 0x02; // CmdQue
        if (lu) {
            put_text(&d[8], 8, lu->conf.vendor);
            put_text(&d[16], 16, lu->conf.product);
            put_text(&d[32], 4, lu->conf.revision);
        }
    } else if (!lu) {
        d.assign(4, 0);
        d[0] = peripheral;
        d[1] = page;
    } else if (page == VPD_SUPPORTED_PAGES) {
        d = {0, VPD_SUPPORTED_PAGES, 0, 3, VPD_SUPPORTED_PAGES, VPD_UNIT_SERIAL, VPD_DEVICE_ID};
    } else if (page == VPD_UNIT_SERIAL) {
        const std::string &sn = lu->conf.serial;
        d.assign(4 + sn.size(), 0);
        d[1] = VPD_UNIT_SERIAL;
        d[3] = static_cast<uint8_t>(sn.size());
        memcpy(&d[4], sn.data(), sn.size());
    } else if (page == VPD_DEVICE_ID) {
        // The unit's NAA name, then the name of the port it was reached
        // through (Fibre Channel, associated with the target port).
        d.assign(4 + 4 + 16 + 4 + 8, 0);
        d[1] = VPD_DEVICE_ID;
        put_be16(&d[2], static_cast<uint32_t>(d.size() - 4));
        uint8_t *p = &d[4];
        p[0] = 0x01; // binary
        p[1] = 0x03; // logical unit, NAA
        p[3] = 16;
        memcpy(p + 4, lu->naa.data(), 16);
        p += 20;
        p[0] = 0x01; // Fibre Channel, binary
        p[1] = 0x93; // PIV, target port, NAA
        p[3] = 8;
        memcpy(p + 4, current_->wwpn.data(), 8);
    } else {
        return check_condition(t, SENSE_KEY_ILLEGAL_REQUEST, ASC_INVALID_FIELD_IN_CDB);
    }
    t.required = std::min<size_t>(alloc, d.size());
    d.resize(t.required);
    return SCSI_STAT_GOOD;
}

// The last LBA, or all ones when it does not fit 32 bits (the initiator
// then asks READ CAPACITY(16)).
uint8_t ScsiTargets::read_capacity10(ScsiTask &t, LogicalUnit *lu)
{
    if (!lu)
        return check_condition(t, SENSE_KEY_ILLEGAL_REQUEST, ASC_LUN_NOT_SUPPORTED);
    const uint64_t last = lu->conf.blocks - 1;
    t.data_in.assign(8, 0);
    put_be32(&t.data_in[0], last > 0xFFFFFFFFull ? 0xFFFFFFFFu : static_cast<uint32_t>(last));
    put_be32(&t.data_in[4], SCSI_BLOCK_SIZE);
    t.required = 8;
    return SCSI_STAT_GOOD;
}

uint8_t ScsiTargets::service_action_in(ScsiTask &t, LogicalUnit *lu)
{
    if ((t.cdb[1] & 0x1f) != SCSI_SAI_READ_CAPACITY_16)
        return check_condition(t, SENSE_KEY_ILLEGAL_REQUEST, ASC_INVALID_FIELD_IN_CDB);
    if (!lu)
        return check_condition(t, SENSE_KEY_ILLEGAL_REQUEST, ASC_LUN_NOT_SUPPORTED);
    const uint32_t alloc = be32(&t.cdb[10]);
    t.data_in.assign(32, 0);
    put_be64(&t.data_in[0], lu->conf.blocks - 1);
    put_be32(&t.data_in[8], SCSI_BLOCK_SIZE);
    t.required = std::min<uint32_t>(alloc, 32);
    t.data_in.resize(t.required);
    return SCSI_STAT_GOOD;
}

// The list's length in the header is the full length, even when the
// allocation length cuts the list.
uint8_t ScsiTargets::report_luns(ScsiTask &t, LogicalUnit *)
{
    const uint32_t alloc = be32(&t.cdb[6]);
    if (alloc < 16 || t.cdb[2] > 2)
        return check_condition(t, SENSE_KEY_ILLEGAL_REQUEST, ASC_INVALID_FIELD_IN_CDB);
    const auto &luns = current_->luns;
    std::vector<uint8_t> &d = t.data_in;
    d.assign(8 + 8 * luns.size(), 0);
    put_be32(&d[0], static_cast<uint32_t>(8 * luns.size()));
    for (size_t i = 0; i < luns.size(); ++i) {
        const auto l = lun_bytes(luns[i].first);
        memcpy(&d[8 + 8 * i], l.data(), 8);
    }
    t.required = std::min<size_t>(alloc, d.size());
    d.resize(t.required);
    return SCSI_STAT_GOOD;
}

// READ(10) and WRITE(10): the whole range must lie inside the unit. Only
// what FCP_DL allows moves; blocks never written read as zeros.
uint8_t ScsiTargets::read10(ScsiTask &t, LogicalUnit *lu)
{
    if (!lu)
        return check_condition(t, SENSE_KEY_ILLEGAL_REQUEST, ASC_LUN_NOT_SUPPORTED);
    const uint64_t lba = be32(&t.cdb[2]);
    const uint64_t count = be16(&t.cdb[7]);
    if (!in_range(*lu, lba, count))
        return check_condition(t, SENSE_KEY_ILLEGAL_REQUEST, ASC_LBA_OUT_OF_RANGE);
    t.required = count * SCSI_BLOCK_SIZE;
    const uint64_t n = std::min<uint64_t>(t.required, t.expected);
    t.data_in.assign(n, 0);
    for (uint64_t off = 0; off < n; off += SCSI_BLOCK_SIZE) {
        auto it = lu->store.find(lba + off / SCSI_BLOCK_SIZE);
        if (it != lu->store.end())
            memcpy(&t.data_in[off], it->second.data(), std::min<uint64_t>(SCSI_BLOCK_SIZE, n - off));
    }
    return SCSI_STAT_GOOD;
}

// A short data-out (FCP_DL below the blocks named) writes what arrived and
// leaves the rest of the last block as it was.
uint8_t ScsiTargets::write10(ScsiTask &t, LogicalUnit *lu)
{
    if (!lu)
        return check_condition(t, SENSE_KEY_ILLEGAL_REQUEST, ASC_LUN_NOT_SUPPORTED);
    const uint64_t lba = be32(&t.cdb[2]);
    const uint64_t count = be16(&t.cdb[7]);
    if (!in_range(*lu, lba, count))
        return check_condition(t, SENSE_KEY_ILLEGAL_REQUEST, ASC_LBA_OUT_OF_RANGE);
    t.required = count * SCSI_BLOCK_SIZE;
    const uint64_t n = std::min<uint64_t>({t.required, t.expected, t.data_out.size()});
    for (uint64_t off = 0; off < n; off += SCSI_BLOCK_SIZE) {
        auto &block = lu->store[lba + off / SCSI_BLOCK_SIZE];
        memcpy(block.data(), &t.data_out[off], std::min<uint64_t>(SCSI_BLOCK_SIZE, n - off));
    }
    t.moved = static_cast<uint32_t>(n);
    return SCSI_STAT_GOOD;
}

} // namespace kvdsim
