// The board's "asic" object in a fleet file.
#include <algorithm>
#include <cstdio>

#include "asic/asic.hpp"
#include "asic/asic_conf.hpp"
#include "core/section.hpp"

namespace kvdsim
{

namespace
{

constexpr uint64_t kMemoryMin = 0x100;
constexpr uint64_t kMemoryMax = 0x100000;
constexpr uint64_t kLogsMax = 16;
constexpr uint64_t kLogEntriesMax = 256;
constexpr uint64_t kLogEntrySizeMin = 8;
constexpr uint64_t kLogEntrySizeMax = 256;
constexpr uint64_t kFcfsMax = 64;

std::array<uint8_t, 6> to_mac(const Json &v, const std::string &place)
{
    std::string text = to_text(v, place, 17);
    std::array<uint8_t, 6> mac{};
    unsigned b[6];
    char tail;
    if (text.size() != 17 || sscanf(text.c_str(), "%2x:%2x:%2x:%2x:%2x:%2x%c", &b[0], &b[1], &b[2], &b[3],
                                    &b[4], &b[5], &tail) != 6)
        fail(place, "MAC address " + quote_text(text) + " not six colon-separated hex pairs");
    for (int i = 0; i < 6; ++i)
        mac[i] = static_cast<uint8_t>(b[i]);
    if (mac[0] & 1)
        fail(place, "MAC address " + quote_text(text) + " is a group address");
    return mac;
}

void read_logs(const Json &v, const std::string &place, std::vector<AsicLogConf> &logs)
{
    if (!v.is_array())
        fail(place, std::string("expected an array, found ") + type_name(v));
    if (v.size() > kLogsMax)
        fail(place, std::to_string(v.size()) + " logs, at most " + std::to_string(kLogsMax));
    logs.clear();
    for (size_t i = 0; i < v.size(); ++i) {
        Section l(v[i], place + "[" + std::to_string(i) + "]");
        AsicLogConf setup;
        setup.name = to_text(l.need("name"), l.at("name"), TARVO_LOG_NAME_SIZE - 1);
        l.number("entries", setup.capacity, kLogEntriesMax);
        if (l.number("entry_size", setup.entry_size, kLogEntrySizeMax) && setup.entry_size < kLogEntrySizeMin)
            fail(l.at("entry_size"), "entry size " + std::to_string(setup.entry_size) + " below " +
                                         std::to_string(kLogEntrySizeMin));
        if (const Json *lines = l.take("lines")) {
            if (!lines->is_array())
                fail(l.at("lines"), std::string("expected an array, found ") + type_name(*lines));
            for (size_t k = 0; k < lines->size(); ++k)
                setup.entries.push_back(to_text((*lines)[k], l.at("lines") + "[" + std::to_string(k) + "]",
                                                setup.entry_size - 1u));
        }
        l.finish();
        logs.push_back(std::move(setup));
    }
}

} // namespace

void read_asic_section(BoardReading &r)
{
    BoardConf &b = r.conf;
    AsicConf &a = b.asic;
    // Without addresses of its own the ASIC's ports take the last three
    // bytes of the board's port name behind the maker's prefix.
    a.mac0 = {0x0a, 0x3c, 0x55, b.wwpn[5], b.wwpn[6], b.wwpn[7]};
    a.mac1 = {0x0a, 0x3c, 0x55, b.wwpn[5], b.wwpn[6], static_cast<uint8_t>(b.wwpn[7] + 1)};

    // The FCFs belong to the board's fabric when it names one.
    if (std::any_of(b.fabric_name.begin(), b.fabric_name.end(), [](uint8_t v) { return v != 0; }))
        a.fabric_name = b.fabric_name;

    const Json *j = r.board.take("asic");
    if (!j)
        return;
    if (!b.tarvo)
        fail(r.board.at("asic"), "ASIC settings on a board without the Tarvo ASIC");
    Section o(*j, r.board.at("asic"));
    o.number("fw_version", a.fw_version);
    // A firmware type is named, or given as the number an unknown image
    // reports.
    if (const Json *v = o.take("fw_type")) {
        std::string t = v->is_string() ? v->get<std::string>() : "";
        if (t == "operational")
            a.fw_type = TARVO_FW_TYPE_OPERATIONAL;
        else if (t == "golden")
            a.fw_type = TARVO_FW_TYPE_GOLDEN;
        else if (t == "diagnostic")
            a.fw_type = TARVO_FW_TYPE_DIAGNOSTIC;
        else if (v->is_string() && (t.empty() || t[0] < '0' || t[0] > '9'))
            fail(o.at("fw_type"),
                 "firmware type " + quote_text(t) + " not operational, golden or diagnostic");
        else
            a.fw_type = static_cast<uint32_t>(to_unsigned(*v, o.at("fw_type"), 0xffffffffu));
    }
    o.flag("maintenance", a.maintenance);
    o.flag("panicked", a.panicked);
    o.flag("link_up", a.link_up);
    if (o.number("bb_credit", a.bb_credit, 255) && a.bb_credit == 0)
        fail(o.at("bb_credit"), "BB credit 0");
    if (o.number("frame_size", a.frame_size, 2112) && (a.frame_size < 256 || a.frame_size % 4 != 0))
        fail(o.at("frame_size"),
             "frame size " + std::to_string(a.frame_size) + " not a multiple of 4 from 256");
    if (const Json *v = o.take("mac0"))
        a.mac0 = to_mac(*v, o.at("mac0"));
    if (const Json *v = o.take("mac1"))
        a.mac1 = to_mac(*v, o.at("mac1"));
    if (o.number("channels", a.channels, 2) && a.channels == 0)
        fail(o.at("channels"), "0 channels");
    o.flag("fru_valid", a.fru_valid);
    if (o.number("fcoe_format", a.fcoe_format, TARVO_FCOE_FMT_LIMIT - 1) && a.fcoe_format == 0)
        fail(o.at("fcoe_format"), "no frame format");
    o.text("sfp_vendor", a.sfp_vendor, 16);
    o.text("sfp_part", a.sfp_part, 16);
    o.text("sfp_serial", a.sfp_serial, 16);
    o.text("sfp_date", a.sfp_date, 8);
    if (o.number("memory_size", a.memory_size, kMemoryMax) &&
        (a.memory_size < kMemoryMin || a.memory_size % 4))
        fail(o.at("memory_size"),
             "memory size " + hex(a.memory_size) + " not a multiple of 4 from " + hex(kMemoryMin));
    if (const Json *v = o.take("logs"))
        read_logs(*v, o.at("logs"), a.logs);
    o.number("fcfs", a.fcfs, kFcfsMax);
    if (o.number("fcoe_vlan", a.fcoe_vlan, 4094) && a.fcoe_vlan == 0)
        fail(o.at("fcoe_vlan"), "VLAN 0");
    o.number("dcbx_mode", a.dcbx_mode, TARVO_DCBX_MODE_CEE_VER_04);
    o.flag("host_pfc", a.host_pfc);
    o.number("diag_failing", a.diag_failing, (1u << kAsicDiagTests) - 1);
    o.finish();
}

} // namespace kvdsim
