// Fleet files: JSON documents describing the virtual adapters.
//
// The reader is strict: every field is known, every value has its type and
// range checked, and every text must fit the record field that will carry
// it. The first fault found ends the parse with one line naming the place.
// Omitted optional fields get defaults derived from the board's kind (SLI
// mode, protocol, link speed), so that a small file still describes a
// coherent adapter.
#include "fleet.hpp"

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

namespace kvdsim
{

namespace
{

using Json = nlohmann::ordered_json;

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

// Raised inside the reader, caught in parse_fleet: never leaves this file.
struct FleetFault {
    std::string place;
    std::string fault;
};

[[noreturn]] void fail(const std::string &place, std::string fault)
{
    throw FleetFault{place, std::move(fault)};
}

std::string hex(uint64_t v)
{
    char buf[24];
    snprintf(buf, sizeof buf, "0x%llx", static_cast<unsigned long long>(v));
    return buf;
}

// Quotes a text for a message, keeping the message on one line.
std::string quote_text(const std::string &s)
{
    std::string out = "\"";
    for (char c : s.substr(0, 40)) {
        unsigned char u = static_cast<unsigned char>(c);
        if (u < 0x20 || u == 0x7f || c == '"' || c == '\\') {
            char buf[8];
            snprintf(buf, sizeof buf, "\\x%02x", u);
            out += buf;
        } else {
            out += c;
        }
    }
    if (s.size() > 40)
        out += "...";
    return out + "\"";
}

const char *type_name(const Json &j)
{
    switch (j.type()) {
    case Json::value_t::null:
        return "null";
    case Json::value_t::object:
        return "an object";
    case Json::value_t::array:
        return "an array";
    case Json::value_t::string:
        return "a string";
    case Json::value_t::boolean:
        return "a boolean";
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
        return "an integer";
    case Json::value_t::number_float:
        return "a fractional number";
    default:
        return "something else";
    }
}

// One JSON object being read: knows its place in the document and which
// keys it may hold.
class Obj
{
  public:
    Obj(const Json &j, std::string place, std::initializer_list<const char *> allowed)
        : j_(j), place_(std::move(place))
    {
        if (!j.is_object())
            fail(place_.empty() ? "top level" : place_,
                 std::string("expected an object, found ") + type_name(j));
        for (const auto &item : j.items()) {
            bool known =
                std::any_of(allowed.begin(), allowed.end(), [&](const char *k) { return item.key() == k; });
            if (!known)
                fail(at(item.key()), "unknown field");
        }
    }

    std::string at(const std::string &key) const
    {
        return place_.empty() ? key : place_ + "." + key;
    }
    const std::string &place() const
    {
        return place_;
    }

    const Json *find(const char *key) const
    {
        auto it = j_.find(key);
        return it == j_.end() ? nullptr : &*it;
    }

    const Json &need(const char *key) const
    {
        const Json *v = find(key);
        if (!v)
            fail(place_.empty() ? "top level" : place_, std::string("missing field \"") + key + "\"");
        return *v;
    }

  private:
    const Json &j_;
    std::string place_;
};

// Unsigned number: a JSON integer, or a text holding a decimal or "0x" hex
// number (so that PCI ids and addresses read as they are usually written).
uint64_t to_unsigned(const Json &v, const std::string &place, uint64_t max)
{
    uint64_t n = 0;
    if (v.is_number_unsigned()) {
        n = v.get<uint64_t>();
    } else if (v.is_number_integer()) {
        fail(place, "negative value " + std::to_string(v.get<int64_t>()));
    } else if (v.is_string()) {
        const std::string &s = v.get_ref<const std::string &>();
        bool is_hex = s.size() > 2 && s[0] == '0' && (s[1] == 'x' || s[1] == 'X');
        const char *digits = s.c_str() + (is_hex ? 2 : 0);
        bool ok = *digits != '\0';
        for (const char *p = digits; *p && ok; ++p)
            ok = is_hex ? isxdigit(static_cast<unsigned char>(*p)) != 0 : (*p >= '0' && *p <= '9');
        if (!ok)
            fail(place, "bad number " + quote_text(s));
        errno = 0;
        n = strtoull(digits, nullptr, is_hex ? 16 : 10);
        if (errno == ERANGE)
            fail(place, "number " + quote_text(s) + " too large");
    } else {
        fail(place, std::string("expected a number, found ") + type_name(v));
    }
    if (n > max)
        fail(place, "value " + hex(n) + " out of range 0.." + hex(max));
    return n;
}

int64_t to_signed(const Json &v, const std::string &place, int64_t min, int64_t max)
{
    if (!v.is_number_integer() && !v.is_number_unsigned())
        fail(place, std::string("expected an integer, found ") + type_name(v));
    if (v.is_number_unsigned() && v.get<uint64_t>() > static_cast<uint64_t>(max))
        fail(place, "value " + std::to_string(v.get<uint64_t>()) + " out of range " + std::to_string(min) +
                        ".." + std::to_string(max));
    int64_t n = v.get<int64_t>();
    if (n < min || n > max)
        fail(place, "value " + std::to_string(n) + " out of range " + std::to_string(min) + ".." +
                        std::to_string(max));
    return n;
}

bool to_bool(const Json &v, const std::string &place)
{
    if (!v.is_boolean())
        fail(place, std::string("expected true or false, found ") + type_name(v));
    return v.get<bool>();
}

std::string to_text(const Json &v, const std::string &place, size_t max)
{
    if (!v.is_string())
        fail(place, std::string("expected a string, found ") + type_name(v));
    std::string s = v.get<std::string>();
    if (s.find('\0') != std::string::npos)
        fail(place, "text holds a NUL character");
    if (s.size() > max)
        fail(place, "text of " + std::to_string(s.size()) + " bytes longer than " + std::to_string(max));
    return s;
}

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

Wwn to_wwn(const Json &v, const std::string &place)
{
    if (!v.is_string())
        fail(place, std::string("expected a WWN text, found ") + type_name(v));
    Wwn w{};
    if (!parse_wwn(v.get<std::string>(), w))
        fail(place, "bad WWN " + quote_text(v.get<std::string>()) +
                        " (want 8 hex pairs like 10:00:06:4b:51:a0:00:10)");
    return w;
}

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

void read_revision(const Json &j, const std::string &place, FirmwareRevision &r)
{
    Obj o(j, place, {"biu_rev",         "sm_rev",       "sm_fw_rev",         "endec_rev",
                     "fcph_low",        "fcph_high",    "feature_level_low", "feature_level_high",
                     "post_kernel_rev", "op_fw_rev",    "op_fw_name",        "sli1_fw_rev",
                     "sli1_fw_name",    "sli2_fw_rev",  "sli2_fw_name",      "first_hw_rev",
                     "second_hw_rev",   "third_hw_rev", "arm_fw_id_rev",     "arm_fw_name",
                     "ulp_fw_id_rev",   "ulp_fw_name"});
    auto u32 = [&](const char *key, uint32_t &dst) {
        if (const Json *v = o.find(key))
            dst = static_cast<uint32_t>(to_unsigned(*v, o.at(key), 0xffffffffu));
    };
    auto u8 = [&](const char *key, uint8_t &dst) {
        if (const Json *v = o.find(key))
            dst = static_cast<uint8_t>(to_unsigned(*v, o.at(key), 0xff));
    };
    auto name = [&](const char *key, std::string &dst) {
        if (const Json *v = o.find(key))
            dst = to_text(*v, o.at(key), kRevNameMax);
    };
    u32("biu_rev", r.biu_rev);
    u32("sm_rev", r.sm_rev);
    u32("sm_fw_rev", r.sm_fw_rev);
    u32("endec_rev", r.endec_rev);
    u8("fcph_low", r.fcph_low);
    u8("fcph_high", r.fcph_high);
    u8("feature_level_low", r.feature_level_low);
    u8("feature_level_high", r.feature_level_high);
    u32("post_kernel_rev", r.post_kernel_rev);
    u32("op_fw_rev", r.op_fw_rev);
    name("op_fw_name", r.op_fw_name);
    u32("sli1_fw_rev", r.sli1_fw_rev);
    name("sli1_fw_name", r.sli1_fw_name);
    u32("sli2_fw_rev", r.sli2_fw_rev);
    name("sli2_fw_name", r.sli2_fw_name);
    u32("first_hw_rev", r.first_hw_rev);
    u32("second_hw_rev", r.second_hw_rev);
    u32("third_hw_rev", r.third_hw_rev);
    u32("arm_fw_id_rev", r.arm_fw_id_rev);
    name("arm_fw_name", r.arm_fw_name);
    u32("ulp_fw_id_rev", r.ulp_fw_id_rev);
    name("ulp_fw_name", r.ulp_fw_name);
}

// What the firmware of a board of this kind reports unless told otherwise.
FirmwareRevision default_revision(const BoardSpec &b)
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

RemotePort read_remote(const Json &j, const std::string &place, Topology topo)
{
    Obj o(j, place,
          {"wwpn", "wwnn", "did", "port_type", "cos", "fcp_target", "symbolic_name", "os_device",
           "scsi_target", "max_frame"});
    RemotePort p;
    p.wwpn = to_wwn(o.need("wwpn"), o.at("wwpn"));
    p.wwnn = o.find("wwnn") ? to_wwn(*o.find("wwnn"), o.at("wwnn")) : node_name_of(p.wwpn);
    p.did = static_cast<uint32_t>(to_unsigned(o.need("did"), o.at("did"), 0xffffff));
    p.port_type = topo == Topology::fabric ? 5u : topo == Topology::loop ? 6u : 21u;
    if (const Json *v = o.find("port_type"))
        p.port_type = static_cast<uint32_t>(to_unsigned(*v, o.at("port_type"), 0xffffffffu));
    if (const Json *v = o.find("cos"))
        p.cos = static_cast<uint32_t>(to_unsigned(*v, o.at("cos"), 0xffffffffu));
    if (const Json *v = o.find("fcp_target"))
        p.fcp_target = to_bool(*v, o.at("fcp_target"));
    if (const Json *v = o.find("symbolic_name"))
        p.symbolic_name = to_text(*v, o.at("symbolic_name"), kAttrTextMax);
    if (const Json *v = o.find("os_device"))
        p.os_device = to_text(*v, o.at("os_device"), kOsDeviceMax);
    if (const Json *v = o.find("scsi_target"))
        p.scsi_target = static_cast<int32_t>(to_signed(*v, o.at("scsi_target"), -1, 0x7fffffff));
    if (const Json *v = o.find("max_frame"))
        p.max_frame = static_cast<uint32_t>(to_unsigned(*v, o.at("max_frame"), 2112));
    return p;
}

void read_link(const Json &j, const std::string &place, BoardSpec &b, bool &speed_given,
               bool &supported_given, bool &did_given, bool &fabric_given)
{
    Obj o(j, place,
          {"up", "topology", "speed", "supported_speeds", "did", "alpa", "fabric_name", "max_frame"});
    if (const Json *v = o.find("up"))
        b.link_up = to_bool(*v, o.at("up"));
    if (const Json *v = o.find("topology")) {
        std::string t = v->is_string() ? v->get<std::string>() : std::string();
        if (!v->is_string())
            fail(o.at("topology"), std::string("expected a string, found ") + type_name(*v));
        if (t == "fabric")
            b.topology = Topology::fabric;
        else if (t == "loop")
            b.topology = Topology::loop;
        else if (t == "pt2pt")
            b.topology = Topology::pt2pt;
        else
            fail(o.at("topology"), "topology " + quote_text(t) + " not \"fabric\", \"loop\" or \"pt2pt\"");
    }
    if (const Json *v = o.find("speed")) {
        b.speed = to_speed(*v, o.at("speed"));
        speed_given = true;
    }
    if (const Json *v = o.find("supported_speeds")) {
        b.supported_speeds = to_speed_mask(*v, o.at("supported_speeds"));
        supported_given = true;
    }
    if (const Json *v = o.find("did")) {
        b.did = static_cast<uint32_t>(to_unsigned(*v, o.at("did"), 0xffffff));
        did_given = true;
    }
    if (const Json *v = o.find("alpa"))
        b.alpa = static_cast<uint8_t>(to_unsigned(*v, o.at("alpa"), 0xff));
    if (const Json *v = o.find("fabric_name")) {
        b.fabric_name = to_wwn(*v, o.at("fabric_name"));
        fabric_given = true;
    }
    if (const Json *v = o.find("max_frame"))
        b.max_frame = static_cast<uint32_t>(to_unsigned(*v, o.at("max_frame"), 2112));
}

BoardSpec read_board(const Json &j, const std::string &place, const Fleet &fleet)
{
    Obj o(j, place,
          {"board",
           "pci",
           "irq",
           "bars",
           "instance",
           "host",
           "online",
           "firmware",
           "firmware_version",
           "model",
           "description",
           "serial",
           "hardware_version",
           "option_rom_version",
           "symbolic_name",
           "wwpn",
           "wwnn",
           "pref_did",
           "hard_alpa",
           "sli_mode",
           "protocol",
           "tarvo",
           "if_type",
           "object_store",
           "features",
           "npiv_max_vports",
           "revision",
           "link",
           "remote_ports"});
    BoardSpec b;
    b.number = static_cast<uint32_t>(to_unsigned(o.need("board"), o.at("board"), 0xffffffffu));
    if (b.number >= 32)
        fail(o.at("board"), "board number " + std::to_string(b.number) + " out of range 0..31");

    // Kind first: most defaults follow from it.
    if (const Json *v = o.find("sli_mode")) {
        uint64_t m = to_unsigned(*v, o.at("sli_mode"), 0xffffffffu);
        if (m < 2 || m > 4)
            fail(o.at("sli_mode"), "SLI mode " + std::to_string(m) + " not 2, 3 or 4");
        b.sli_mode = static_cast<int>(m);
    }
    if (const Json *v = o.find("protocol")) {
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
    if (const Json *v = o.find("tarvo"))
        b.tarvo = to_bool(*v, o.at("tarvo"));
    if (const Json *v = o.find("if_type")) {
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
    if (const Json *v = o.find("object_store")) {
        b.object_store = to_bool(*v, o.at("object_store"));
        if (b.object_store && b.sli_mode != 4)
            fail(o.at("object_store"),
                 "object store given on an SLI-" + std::to_string(b.sli_mode) + " board");
    }

    // PCI identity.
    b.vendor_id = 0x2c71;
    b.device_id = b.sli_mode == 4 ? 0xf400 : b.protocol == Protocol::fcoe ? 0xf340 : 0xf300;
    bool ssv = false, ssd = false;
    b.bus = 0x03 + b.number;
    if (const Json *pv = o.find("pci")) {
        Obj p(
            *pv, o.at("pci"),
            {"vendor_id", "device_id", "subsys_vendor_id", "subsys_device_id", "bus", "device", "function"});
        if (const Json *v = p.find("vendor_id"))
            b.vendor_id = static_cast<uint16_t>(to_unsigned(*v, p.at("vendor_id"), 0xffff));
        if (const Json *v = p.find("device_id"))
            b.device_id = static_cast<uint16_t>(to_unsigned(*v, p.at("device_id"), 0xffff));
        if (const Json *v = p.find("subsys_vendor_id")) {
            b.subsys_vendor_id = static_cast<uint16_t>(to_unsigned(*v, p.at("subsys_vendor_id"), 0xffff));
            ssv = true;
        }
        if (const Json *v = p.find("subsys_device_id")) {
            b.subsys_device_id = static_cast<uint16_t>(to_unsigned(*v, p.at("subsys_device_id"), 0xffff));
            ssd = true;
        }
        if (const Json *v = p.find("bus"))
            b.bus = static_cast<uint32_t>(to_unsigned(*v, p.at("bus"), 0xff));
        if (const Json *v = p.find("device"))
            b.device = static_cast<uint32_t>(to_unsigned(*v, p.at("device"), 31));
        if (const Json *v = p.find("function"))
            b.function = static_cast<uint8_t>(to_unsigned(*v, p.at("function"), 7));
    }
    if (b.vendor_id == 0)
        fail(o.at("pci.vendor_id"), "vendor id 0 marks an empty slot");
    if (!ssv)
        b.subsys_vendor_id = b.vendor_id;
    if (!ssd)
        b.subsys_device_id = b.device_id;

    b.irq = 32 + b.number;
    if (const Json *v = o.find("irq"))
        b.irq = static_cast<uint32_t>(to_unsigned(*v, o.at("irq"), 0xffffffffu));

    // BARs: one 1 MiB window per board below 4 GiB unless given.
    const uint64_t window = 0xfb000000ull - 0x100000ull * b.number;
    b.mem_base = window + 0x80000;
    b.ctlreg_base = window + 0x40000;
    b.flash_base = window;
    if (const Json *bv = o.find("bars")) {
        Obj bars(*bv, o.at("bars"), {"mem", "ctlreg", "flash"});
        if (const Json *v = bars.find("mem"))
            b.mem_base = to_unsigned(*v, bars.at("mem"), UINT64_MAX);
        if (const Json *v = bars.find("ctlreg"))
            b.ctlreg_base = to_unsigned(*v, bars.at("ctlreg"), UINT64_MAX);
        if (const Json *v = bars.find("flash"))
            b.flash_base = to_unsigned(*v, bars.at("flash"), UINT64_MAX);
    }

    b.instance = static_cast<uint16_t>(b.number);
    if (const Json *v = o.find("instance"))
        b.instance = static_cast<uint16_t>(to_unsigned(*v, o.at("instance"), 0xffff));
    b.host = static_cast<int32_t>(b.number);
    if (const Json *v = o.find("host"))
        b.host = static_cast<int32_t>(to_unsigned(*v, o.at("host"), 0x7fffffff));
    if (const Json *v = o.find("online"))
        b.online = to_bool(*v, o.at("online"));

    // Link (read before the names, which mention the speed).
    bool speed_given = false, supported_given = false, did_given = false, fabric_given = false;
    if (const Json *v = o.find("link"))
        read_link(*v, o.at("link"), b, speed_given, supported_given, did_given, fabric_given);
    if (b.protocol == Protocol::fcoe && b.topology != Topology::fabric)
        fail(o.at("link.topology"), "an FCoE port only logs into a fabric");
    if (!speed_given)
        b.speed = b.protocol == Protocol::fcoe ? 0x4 : b.sli_mode == 4 ? 0x20 : 0x10;
    if (!supported_given)
        b.supported_speeds = default_supported(b.speed, b.protocol);
    if ((b.supported_speeds & b.speed) == 0)
        fail(o.at("link.speed"),
             "speed " + hex(b.speed) + " not among the supported speeds " + hex(b.supported_speeds));

    if (const Json *v = o.find("pref_did"))
        b.pref_did = static_cast<uint32_t>(to_unsigned(*v, o.at("pref_did"), 0xffffff));
    if (const Json *v = o.find("hard_alpa"))
        b.hard_alpa = static_cast<uint8_t>(to_unsigned(*v, o.at("hard_alpa"), 0xff));
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

    // Names.
    b.wwpn = to_wwn(o.need("wwpn"), o.at("wwpn"));
    b.wwnn = o.find("wwnn") ? to_wwn(*o.find("wwnn"), o.at("wwnn")) : node_name_of(b.wwpn);

    b.firmware = b.sli_mode == 4 ? "4.1.28.5" : b.sli_mode == 3 ? "2.10A4" : "1.92A1";
    if (const Json *v = o.find("firmware"))
        b.firmware = to_text(*v, o.at("firmware"), kFwNameMax);
    b.firmware_version = b.firmware;
    if (const Json *v = o.find("firmware_version"))
        b.firmware_version = to_text(*v, o.at("firmware_version"), kAttrTextMax);

    uint32_t gbit = 0;
    for (const auto &s : kSpeeds)
        if (s.bit == b.speed)
            gbit = s.gbit;
    const bool fcoe = b.protocol == Protocol::fcoe;
    b.model = "QM" + std::to_string(gbit) + (fcoe ? "-C1" : "-F1");
    if (const Json *v = o.find("model"))
        b.model = to_text(*v, o.at("model"), kAttrTextMax);
    b.description = clip(b.model + " " + std::to_string(gbit) + "Gb PCIe " +
                             (fcoe ? "Converged Network Adapter" : "Fibre Channel Adapter"),
                         kAttrTextMax);
    if (const Json *v = o.find("description"))
        b.description = to_text(*v, o.at("description"), kAttrTextMax);
    b.serial = "QS" + upper_hex(b.wwpn.data() + 5, 3);
    if (const Json *v = o.find("serial"))
        b.serial = to_text(*v, o.at("serial"), kSerialMax);
    b.hardware_version = "1";
    if (const Json *v = o.find("hardware_version"))
        b.hardware_version = to_text(*v, o.at("hardware_version"), kAttrTextMax);
    b.option_rom_version = b.firmware;
    if (const Json *v = o.find("option_rom_version"))
        b.option_rom_version = to_text(*v, o.at("option_rom_version"), kAttrTextMax);
    b.symbolic_name = clip(b.model + " FV" + b.firmware + " DV" + fleet.driver_version, kAttrTextMax);
    if (const Json *v = o.find("symbolic_name"))
        b.symbolic_name = to_text(*v, o.at("symbolic_name"), kAttrTextMax);

    b.features = default_features(b.sli_mode, b.protocol);
    if (const Json *v = o.find("features"))
        b.features = to_unsigned(*v, o.at("features"), UINT64_MAX);
    b.npiv_max_vports = (b.features & KVD_FTR_NPIV) ? (b.sli_mode == 4 ? 255u : 64u) : 0u;
    if (const Json *v = o.find("npiv_max_vports"))
        b.npiv_max_vports = static_cast<uint32_t>(to_unsigned(*v, o.at("npiv_max_vports"), 0xffff));

    b.revision = default_revision(b);
    if (const Json *v = o.find("revision"))
        read_revision(*v, o.at("revision"), b.revision);

    if (const Json *rv = o.find("remote_ports")) {
        const std::string rplace = o.at("remote_ports");
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
    return b;
}

Fleet read_fleet(const Json &doc)
{
    Obj top(doc, "",
            {"driver_version", "driver_name", "library_version", "hostname", "manufacturer", "logging_enable",
             "boards"});
    Fleet f;
    f.driver_version = kDefaultDriverVersion;
    f.driver_name = "vexa";
    f.library_version = kDefaultLibraryVersion;
    f.hostname = "localhost";
    f.manufacturer = "Korvan";
    if (const Json *v = top.find("driver_version"))
        f.driver_version = to_text(*v, "driver_version", kDriverVersionMax);
    if (const Json *v = top.find("driver_name"))
        f.driver_name = to_text(*v, "driver_name", kDriverNameMax);
    if (const Json *v = top.find("library_version"))
        f.library_version = to_text(*v, "library_version", kLibraryVersionMax);
    if (const Json *v = top.find("hostname"))
        f.hostname = to_text(*v, "hostname", kHostnameMax);
    if (const Json *v = top.find("manufacturer"))
        f.manufacturer = to_text(*v, "manufacturer", kManufacturerMax);
    if (const Json *v = top.find("logging_enable"))
        f.logging_enable = static_cast<uint32_t>(to_unsigned(*v, "logging_enable", 0xffffffffu));
    if (const Json *bv = top.find("boards")) {
        if (!bv->is_array())
            fail("boards", std::string("expected an array, found ") + type_name(*bv));
        for (size_t i = 0; i < bv->size(); ++i) {
            const std::string place = "boards[" + std::to_string(i) + "]";
            BoardSpec b = read_board((*bv)[i], place, f);
            for (const auto &other : f.boards)
                if (other.number == b.number)
                    fail(place + ".board", "duplicate board " + std::to_string(b.number));
            f.boards.push_back(std::move(b));
        }
    }
    std::sort(f.boards.begin(), f.boards.end(),
              [](const BoardSpec &a, const BoardSpec &b) { return a.number < b.number; });
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
