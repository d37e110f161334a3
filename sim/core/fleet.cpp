// Fleet files: JSON documents describing the virtual adapters.
//
// The reader is strict: every field is known, every value has its type and
// range checked, and every text must fit the record field that will carry
// it. The first fault found ends the parse with one line naming the place.
// Omitted optional fields get defaults derived from the board's kind (SLI
// mode, protocol, link speed), so that a small file still describes a
// coherent adapter.
#include "core/fleet.hpp"
#include "core/section.hpp"
#include "diag/diag.hpp"
#include "events/events.hpp"
#include "sd/sd.hpp"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <new>
#include <stdexcept>
#include <utility>

#include <nlohmann/json.hpp>

#include "kvd_attr.h"
#include "nodes/nodes.hpp"
#include "npiv/npiv.hpp"
#include "scsi/target.hpp"

namespace kvdsim
{

namespace
{

// Field widths of the records the texts end up in (NUL excluded).
constexpr size_t kDriverVersionMax = 15;  // a_drvrid[16], drvVer[16]
constexpr size_t kDriverNameMax = 7;      // drvName[8]
constexpr size_t kLibraryVersionMax = 31; // KVD_GetLibVer's 32-byte buffer
constexpr size_t kHostnameMax = 31;       // KVDDRVINFO hostname[32]
constexpr size_t kManufacturerMax = 63;   // HBA_ADAPTERATTRIBUTES Manufacturer[64]
constexpr size_t kSerialMax = 63;         // SerialNumber[64]
constexpr size_t kAttrTextMax = 255;      // the 256-byte HBA API texts
constexpr size_t kFwNameMax = 31;         // a_fwname[32]
constexpr size_t kRevNameMax = 16;        // READ_REV names, 16 bytes, no NUL needed
constexpr size_t kOsDeviceMax = KVD_OSDEV_TEXT_MAX - 1;

int hexval(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

// "10:00:06:4b:51:a0:00:10" or "1000064b51a00010".
bool parse_wwn(const std::string &text, Wwn &out)
{
    Wwn w{};
    size_t pos = 0;
    bool colons = text.size() == 23;
    if (!colons && text.size() != 16)
        return false;
    for (size_t i = 0; i < 8; ++i) {
        if (colons && i > 0 && text[pos++] != ':')
            return false;
        int hi = hexval(text[pos]);
        int lo = hexval(text[pos + 1]);
        if (hi < 0 || lo < 0)
            return false;
        w[i] = static_cast<uint8_t>(hi << 4 | lo);
        pos += 2;
    }
    out = w;
    return true;
}

namespace
{

// The usual node name of a port: NAA 2 form of the port name's OUI and serial
// part ("10:00:..." becomes "20:00:...").
Wwn node_name_of(const Wwn &wwpn)
{
    Wwn n = wwpn;
    n[0] = static_cast<uint8_t>((n[0] & 0x0f) | 0x20);
    return n;
}

struct SpeedName {
    uint32_t gbit;
    uint32_t bit;
};

// HBA API port speed bits.
constexpr SpeedName kSpeeds[] = {
    {1, 0x1},   {2, 0x2},   {4, 0x8},    {8, 0x10},    {10, 0x4},     {16, 0x20},
    {20, 0x80}, {32, 0x40}, {40, 0x100}, {64, 0x1000}, {128, 0x2000},
};

uint32_t speed_bit(uint64_t gbit, const std::string &place)
{
    for (const auto &s : kSpeeds)
        if (s.gbit == gbit)
            return s.bit;
    fail(place, "no link speed of " + std::to_string(gbit) + " Gb (known: 1 2 4 8 10 16 20 32 40 64 128)");
}

// A speed: a number of Gb/s, or a "0x" text giving the HBA API bit itself.
uint32_t to_speed(const Json &v, const std::string &place)
{
    if (v.is_string()) {
        uint64_t bits = to_unsigned(v, place, 0xffffffffu);
        const std::string &s = v.get_ref<const std::string &>();
        if (s.size() < 2 || (s[1] != 'x' && s[1] != 'X') || bits == 0 || (bits & (bits - 1)) != 0)
            fail(place, "speed text must be one HBA API speed bit in hex, like \"0x10\"");
        return static_cast<uint32_t>(bits);
    }
    return speed_bit(to_unsigned(v, place, 1024), place);
}

// Supported speeds: an array of Gb/s numbers, or a "0x" text of HBA API bits.
uint32_t to_speed_mask(const Json &v, const std::string &place)
{
    if (v.is_string()) {
        const std::string &s = v.get_ref<const std::string &>();
        if (s.size() < 2 || (s[1] != 'x' && s[1] != 'X'))
            fail(place, "speed mask text must be hex, like \"0x38\"");
        return static_cast<uint32_t>(to_unsigned(v, place, 0xffffffffu));
    }
    if (!v.is_array())
        fail(place, std::string("expected an array of speeds in Gb, found ") + type_name(v));
    uint32_t mask = 0;
    for (size_t i = 0; i < v.size(); ++i)
        mask |= speed_bit(to_unsigned(v[i], place + "[" + std::to_string(i) + "]", 1024),
                          place + "[" + std::to_string(i) + "]");
    return mask;
}

// FC speeds a port of the given top speed usually also runs: two steps down.
uint32_t default_supported(uint32_t speed_bit_now, Protocol protocol)
{
    if (protocol == Protocol::fcoe)
        return speed_bit_now;
    static constexpr uint32_t ladder[] = {0x1, 0x2, 0x8, 0x10, 0x20, 0x40, 0x1000, 0x2000};
    for (size_t i = 0; i < std::size(ladder); ++i) {
        if (ladder[i] == speed_bit_now) {
            uint32_t mask = ladder[i];
            if (i >= 1)
                mask |= ladder[i - 1];
            if (i >= 2)
                mask |= ladder[i - 2];
            return mask;
        }
    }
    return speed_bit_now;
}

uint64_t default_features(int sli_mode, Protocol protocol)
{
    uint64_t f = KVD_FTR_DIAGS | KVD_FTR_LUN_MAPPING | KVD_FTR_DHCHAP | KVD_FTR_SD;
    if (sli_mode >= 3)
        f |= KVD_FTR_NPIV;
    if (protocol == Protocol::fcoe)
        f |= KVD_FTR_FCOE;
    if (sli_mode == 4)
        f |= KVD_FTR_PERSIST_LINK | KVD_FTR_SLI_CONFIG_EXT;
    return f;
}

std::string clip(const std::string &s, size_t n)
{
    return s.size() > n ? s.substr(0, n) : s;
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

// What the firmware of a board of this kind reports unless told otherwise.
FirmwareRevision default_revision(const BoardConf &b)
{
    FirmwareRevision r;
    const std::string name = clip(b.firmware, kRevNameMax);
    r.fcph_low = 0x09;
    r.fcph_high = 0x20;
    r.feature_level_low = 0x01;
    r.feature_level_high = static_cast<uint8_t>(b.sli_mode == 4 ? 0x04 : 0x03);
    if (b.sli_mode == 4) {
        r.first_hw_rev = static_cast<uint32_t>(b.device_id) << 16 | 0x0010;
        r.second_hw_rev = 0x00000003;
        r.third_hw_rev = 0;
        r.arm_fw_id_rev = 0x04012805;
        r.arm_fw_name = name;
        r.ulp_fw_id_rev = 0x04012805;
        r.ulp_fw_name = name;
    } else {
        r.biu_rev = 0x00000002;
        r.sm_rev = static_cast<uint32_t>(b.device_id) << 16 | 0x0101;
        r.sm_fw_rev = 0x0210a004;
        r.endec_rev = 0x00000001;
        r.post_kernel_rev = 0x0a100004;
        r.op_fw_rev = 0x0210a004;
        r.op_fw_name = name;
        r.sli1_fw_rev = 0x0100a001;
        r.sli1_fw_name = b.sli_mode == 2 ? name : std::string();
        r.sli2_fw_rev = 0x0210a004;
        r.sli2_fw_name = name;
    }
    return r;
}

// The READ_REV numbers and names the mailbox firmware reports.
void read_revision(BoardReading &r)
{
    r.conf.revision = default_revision(r.conf);
    const Json *j = r.board.take("revision");
    if (!j)
        return;
    Section o(*j, r.board.at("revision"));
    FirmwareRevision &rev = r.conf.revision;
    o.number("biu_rev", rev.biu_rev);
    o.number("sm_rev", rev.sm_rev);
    o.number("sm_fw_rev", rev.sm_fw_rev);
    o.number("endec_rev", rev.endec_rev);
    o.number("fcph_low", rev.fcph_low);
    o.number("fcph_high", rev.fcph_high);
    o.number("feature_level_low", rev.feature_level_low);
    o.number("feature_level_high", rev.feature_level_high);
    o.number("post_kernel_rev", rev.post_kernel_rev);
    o.number("op_fw_rev", rev.op_fw_rev);
    o.text("op_fw_name", rev.op_fw_name, kRevNameMax);
    o.number("sli1_fw_rev", rev.sli1_fw_rev);
    o.text("sli1_fw_name", rev.sli1_fw_name, kRevNameMax);
    o.number("sli2_fw_rev", rev.sli2_fw_rev);
    o.text("sli2_fw_name", rev.sli2_fw_name, kRevNameMax);
    o.number("first_hw_rev", rev.first_hw_rev);
    o.number("second_hw_rev", rev.second_hw_rev);
    o.number("third_hw_rev", rev.third_hw_rev);
    o.number("arm_fw_id_rev", rev.arm_fw_id_rev);
    o.text("arm_fw_name", rev.arm_fw_name, kRevNameMax);
    o.number("ulp_fw_id_rev", rev.ulp_fw_id_rev);
    o.text("ulp_fw_name", rev.ulp_fw_name, kRevNameMax);
    o.finish();
}

RemotePort read_remote(const Json &j, const std::string &place, Topology topo)
{
    Section o(j, place);
    RemotePort p;
    p.wwpn = to_wwn(o.need("wwpn"), o.at("wwpn"));
    if (!o.wwn("wwnn", p.wwnn))
        p.wwnn = node_name_of(p.wwpn);
    p.did = static_cast<uint32_t>(to_unsigned(o.need("did"), o.at("did"), 0xffffff));
    p.port_type = topo == Topology::fabric ? 5u : topo == Topology::loop ? 6u : 21u;
    o.number("port_type", p.port_type);
    o.number("cos", p.cos);
    o.flag("fcp_target", p.fcp_target);
    o.text("symbolic_name", p.symbolic_name, kAttrTextMax);
    o.text("os_device", p.os_device, kOsDeviceMax);
    if (const Json *v = o.take("scsi_target"))
        p.scsi_target = static_cast<int32_t>(to_signed(*v, o.at("scsi_target"), -1, 0x7fffffff));
    o.number("max_frame", p.max_frame, 2112);
    o.finish();
    return p;
}

// The board's kind: most other defaults follow from it, so it is read first.
void read_kind(BoardReading &r)
{
    BoardConf &b = r.conf;
    Section &o = r.board;
    if (const Json *v = o.take("sli_mode")) {
        uint64_t m = to_unsigned(*v, o.at("sli_mode"), 0xffffffffu);
        if (m < 2 || m > 4)
            fail(o.at("sli_mode"), "SLI mode " + std::to_string(m) + " not 2, 3 or 4");
        b.sli_mode = static_cast<int>(m);
    }
    if (const Json *v = o.take("protocol")) {
        if (!v->is_string())
            fail(o.at("protocol"), std::string("expected a string, found ") + type_name(*v));
        const std::string &p = v->get_ref<const std::string &>();
        if (p == "fc")
            b.protocol = Protocol::fc;
        else if (p == "fcoe")
            b.protocol = Protocol::fcoe;
        else
            fail(o.at("protocol"), "protocol " + quote_text(p) + " not \"fc\" or \"fcoe\"");
    }
    b.tarvo = b.protocol == Protocol::fcoe && b.sli_mode < 4;
    o.flag("tarvo", b.tarvo);
    if (const Json *v = o.take("if_type")) {
        uint64_t t = to_unsigned(*v, o.at("if_type"), 0xffffffffu);
        if (b.sli_mode != 4)
            fail(o.at("if_type"), "interface type given on an SLI-" + std::to_string(b.sli_mode) + " board");
        if (t > 7)
            fail(o.at("if_type"), "interface type " + std::to_string(t) + " out of range 0..7");
        b.if_type = static_cast<int>(t);
    } else if (b.sli_mode == 4) {
        b.if_type = 2;
    }
    b.object_store = b.sli_mode == 4 && b.if_type == 2;
    if (o.flag("object_store", b.object_store) && b.object_store && b.sli_mode != 4)
        fail(o.at("object_store"), "object store given on an SLI-" + std::to_string(b.sli_mode) + " board");
}

// PCI identity, interrupt, BARs and the driver's view of the board.
void read_pci(BoardReading &r)
{
    BoardConf &b = r.conf;
    Section &o = r.board;
    b.vendor_id = 0x2c71;
    b.device_id = b.sli_mode == 4 ? 0xf400 : b.protocol == Protocol::fcoe ? 0xf340 : 0xf300;
    bool ssv = false, ssd = false;
    b.bus = 0x03 + b.number;
    if (const Json *pv = o.take("pci")) {
        Section p(*pv, o.at("pci"));
        p.number("vendor_id", b.vendor_id);
        p.number("device_id", b.device_id);
        ssv = p.number("subsys_vendor_id", b.subsys_vendor_id);
        ssd = p.number("subsys_device_id", b.subsys_device_id);
        p.number("bus", b.bus, 0xff);
        p.number("device", b.device, 31);
        p.number("function", b.function, 7);
        p.finish();
    }
    if (b.vendor_id == 0)
        fail(o.at("pci.vendor_id"), "vendor id 0 marks an empty slot");
    if (!ssv)
        b.subsys_vendor_id = b.vendor_id;
    if (!ssd)
        b.subsys_device_id = b.device_id;

    b.irq = 32 + b.number;
    o.number("irq", b.irq);

    // BARs: one 1 MiB window per board below 4 GiB unless given.
    const uint64_t window = 0xfb000000ull - 0x100000ull * b.number;
    b.mem_base = window + 0x80000;
    b.ctlreg_base = window + 0x40000;
    b.flash_base = window;
    if (const Json *bv = o.take("bars")) {
        Section bars(*bv, o.at("bars"));
        bars.number("mem", b.mem_base);
        bars.number("ctlreg", b.ctlreg_base);
        bars.number("flash", b.flash_base);
        bars.finish();
    }

    b.instance = static_cast<uint16_t>(b.number);
    o.number("instance", b.instance);
    b.host = static_cast<int32_t>(b.number);
    o.number("host", b.host, 0x7fffffff);
    o.flag("online", b.online);
}

// The link as the port finds it at power-on.
void read_link(BoardReading &r)
{
    BoardConf &b = r.conf;
    bool speed_given = false, supported_given = false, did_given = false, fabric_given = false;
    if (const Json *j = r.board.take("link")) {
        Section o(*j, r.board.at("link"));
        o.flag("up", b.link_up);
        if (const Json *v = o.take("topology")) {
            if (!v->is_string())
                fail(o.at("topology"), std::string("expected a string, found ") + type_name(*v));
            const std::string &t = v->get_ref<const std::string &>();
            if (t == "fabric")
                b.topology = Topology::fabric;
            else if (t == "loop")
                b.topology = Topology::loop;
            else if (t == "pt2pt")
                b.topology = Topology::pt2pt;
            else
                fail(o.at("topology"),
                     "topology " + quote_text(t) + " not \"fabric\", \"loop\" or \"pt2pt\"");
        }
        if (const Json *v = o.take("speed")) {
            b.speed = to_speed(*v, o.at("speed"));
            speed_given = true;
        }
        if (const Json *v = o.take("supported_speeds")) {
            b.supported_speeds = to_speed_mask(*v, o.at("supported_speeds"));
            supported_given = true;
        }
        did_given = o.number("did", b.did, 0xffffff);
        o.number("alpa", b.alpa);
        fabric_given = o.wwn("fabric_name", b.fabric_name);
        o.number("max_frame", b.max_frame, 2112);
        o.finish();
    }
    Section &o = r.board;
    if (b.protocol == Protocol::fcoe && b.topology != Topology::fabric)
        fail(o.at("link.topology"), "an FCoE port only logs into a fabric");
    if (!speed_given)
        b.speed = b.protocol == Protocol::fcoe ? 0x4 : b.sli_mode == 4 ? 0x20 : 0x10;
    if (!supported_given)
        b.supported_speeds = default_supported(b.speed, b.protocol);
    if ((b.supported_speeds & b.speed) == 0)
        fail(o.at("link.speed"),
             "speed " + hex(b.speed) + " not among the supported speeds " + hex(b.supported_speeds));

    o.number("pref_did", b.pref_did, 0xffffff);
    o.number("hard_alpa", b.hard_alpa);
    if (b.topology == Topology::loop && b.alpa == 0)
        b.alpa = b.hard_alpa ? b.hard_alpa : 0x01;
    if (!did_given) {
        switch (b.topology) {
        case Topology::fabric:
            b.did = 0x010000 | (b.number + 1) << 8;
            break;
        case Topology::loop:
            b.did = b.alpa;
            break;
        case Topology::pt2pt:
            b.did = 0x000001;
            break;
        }
    }
    if (!fabric_given && b.topology == Topology::fabric)
        parse_wwn("10:00:06:4b:51:f0:00:01", b.fabric_name);
}

// Names, identity texts and the driver's feature words.
void read_identity(BoardReading &r)
{
    BoardConf &b = r.conf;
    Section &o = r.board;
    b.wwpn = to_wwn(o.need("wwpn"), o.at("wwpn"));
    if (!o.wwn("wwnn", b.wwnn))
        b.wwnn = node_name_of(b.wwpn);

    b.firmware = b.sli_mode == 4 ? "4.1.28.5" : b.sli_mode == 3 ? "2.10A4" : "1.92A1";
    o.text("firmware", b.firmware, kFwNameMax);
    b.firmware_version = b.firmware;
    o.text("firmware_version", b.firmware_version, kAttrTextMax);

    uint32_t gbit = 0;
    for (const auto &s : kSpeeds)
        if (s.bit == b.speed)
            gbit = s.gbit;
    const bool fcoe = b.protocol == Protocol::fcoe;
    b.model = "QM" + std::to_string(gbit) + (fcoe ? "-C1" : "-F1");
    o.text("model", b.model, kAttrTextMax);
    b.description = clip(b.model + " " + std::to_string(gbit) + "Gb PCIe " +
                             (fcoe ? "Converged Network Adapter" : "Fibre Channel Adapter"),
                         kAttrTextMax);
    o.text("description", b.description, kAttrTextMax);
    b.serial = "QS" + upper_hex(b.wwpn.data() + 5, 3);
    o.text("serial", b.serial, kSerialMax);
    b.hardware_version = "1";
    o.text("hardware_version", b.hardware_version, kAttrTextMax);
    b.option_rom_version = b.firmware;
    o.text("option_rom_version", b.option_rom_version, kAttrTextMax);
    b.symbolic_name = clip(b.model + " FV" + b.firmware + " DV" + r.fleet.driver_version, kAttrTextMax);
    o.text("symbolic_name", b.symbolic_name, kAttrTextMax);

    b.features = default_features(b.sli_mode, b.protocol);
    o.number("features", b.features);
    b.npiv_max_vports = (b.features & KVD_FTR_NPIV) ? (b.sli_mode == 4 ? 255u : 64u) : 0u;
    o.number("npiv_max_vports", b.npiv_max_vports, 0xffff);
}

// The ports the board discovered on its fabric or loop.
void read_remote_ports(BoardReading &r)
{
    BoardConf &b = r.conf;
    const Json *rv = r.board.take("remote_ports");
    if (!rv)
        return;
    const std::string rplace = r.board.at("remote_ports");
    if (!rv->is_array())
        fail(rplace, std::string("expected an array, found ") + type_name(*rv));
    for (size_t i = 0; i < rv->size(); ++i) {
        const std::string pp = rplace + "[" + std::to_string(i) + "]";
        RemotePort p = read_remote((*rv)[i], pp, b.topology);
        if (p.wwpn == b.wwpn)
            fail(pp + ".wwpn", "remote port has the board's own WWPN");
        for (const auto &q : b.remote_ports) {
            if (q.wwpn == p.wwpn)
                fail(pp + ".wwpn", "duplicate remote port WWPN");
            if (q.did == p.did)
                fail(pp + ".did", "duplicate remote port D_ID " + hex(p.did));
        }
        b.remote_ports.push_back(std::move(p));
    }
}

// The readers of a board object, in order: later readers use what earlier
// ones settled (the kind first, the link before the names that mention its
// speed). An engine with a section of its own adds its reader here.
constexpr BoardReader kBoardReaders[] = {
    read_kind,
    read_pci,
    read_link,
    read_identity,
    read_revision,
    read_remote_ports,
    read_asic_section,
    [](BoardReading &r) { read_port_section(r.board, r.conf); },
    [](BoardReading &r) { read_scsi_section(r.board, r.conf); },
    [](BoardReading &r) { read_sli4_section(r.board, r.conf); },
    read_events_section,
    read_diag_section,
    [](BoardReading &r) { read_auth_section(r.board, r.conf); },
    [](BoardReading &r) { read_nodes_section(r.board, r.conf); },
    [](BoardReading &r) { read_npiv_section(r.board, r.conf); },
    [](BoardReading &r) { read_sd_section(r.board, r.conf); },
    [](BoardReading &r) { read_drvparams_section(r.board, r.conf); },
};

BoardConf read_board(const Json &j, const std::string &place, const Fleet &fleet)
{
    BoardReading r{Section(j, place), BoardConf{}, fleet};
    r.conf.number =
        static_cast<uint32_t>(to_unsigned(r.board.need("board"), r.board.at("board"), 0xffffffffu));
    if (r.conf.number >= 32)
        fail(r.board.at("board"), "board number " + std::to_string(r.conf.number) + " out of range 0..31");
    for (BoardReader reader : kBoardReaders)
        reader(r);
    r.board.finish();
    return std::move(r.conf);
}

Fleet read_fleet(const Json &doc)
{
    Section top(doc, "");
    Fleet f;
    f.driver_version = kDefaultDriverVersion;
    f.driver_name = "vexa";
    f.library_version = kDefaultLibraryVersion;
    f.hostname = "localhost";
    f.manufacturer = "Korvan";
    top.text("driver_version", f.driver_version, kDriverVersionMax);
    top.text("driver_name", f.driver_name, kDriverNameMax);
    top.text("library_version", f.library_version, kLibraryVersionMax);
    top.text("hostname", f.hostname, kHostnameMax);
    top.text("manufacturer", f.manufacturer, kManufacturerMax);
    top.number("logging_enable", f.logging_enable);
    top.flag("mmm", f.mmm);
    if (const Json *bv = top.take("boards")) {
        if (!bv->is_array())
            fail("boards", std::string("expected an array, found ") + type_name(*bv));
        for (size_t i = 0; i < bv->size(); ++i) {
            const std::string place = "boards[" + std::to_string(i) + "]";
            BoardConf b = read_board((*bv)[i], place, f);
            for (const auto &other : f.boards)
                if (other.number == b.number)
                    fail(place + ".board", "duplicate board " + std::to_string(b.number));
            f.boards.push_back(std::move(b));
        }
    }
    top.finish();
    std::sort(f.boards.begin(), f.boards.end(),
              [](const BoardConf &a, const BoardConf &b) { return a.number < b.number; });
    return f;
}

// nlohmann's messages start with "[json.exception.parse_error.101] parse
// error at line 3, column 5: ..."; keep the position and the reason.
std::string syntax_message(const std::string &what)
{
    std::string m = what;
    if (size_t p = m.find("] "); p != std::string::npos && m[0] == '[')
        m.erase(0, p + 2);
    if (m.rfind("parse error at ", 0) == 0)
        m.erase(0, 15);
    for (char &c : m)
        if (c == '\n' || c == '\r')
            c = ' ';
    return m;
}

} // namespace

std::optional<Fleet> parse_fleet(const std::string &text, const std::string &origin, std::string &error)
{
    try {
        Json doc;
        try {
            doc = Json::parse(text);
        } catch (const Json::parse_error &e) {
            error = origin + ": " + syntax_message(e.what());
            return std::nullopt;
        }
        return read_fleet(doc);
    } catch (const FleetFault &f) {
        error = origin + ": " + f.place + ": " + f.fault;
    } catch (const std::bad_alloc &) {
        error = origin + ": out of memory";
    } catch (const std::exception &e) {
        error = origin + ": " + e.what();
    }
    return std::nullopt;
}

} // namespace kvdsim
