// A board's events: raising them, its event log and temperature sensor, the
// fleet's "events" section and the trigger requests.
#include "events/events.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "core/section.hpp"
#include "core/state.hpp"
#include "core/bytes.hpp"

namespace kvdsim
{

namespace
{

constexpr uint8_t kRscnCommand = 0x61; // ELS RSCN
constexpr uint8_t kRscnPageLength = 4;

// An RSCN payload with one port-address page.
std::vector<uint8_t> rscn_payload(uint32_t did)
{
    std::vector<uint8_t> p(8);
    put_be32(p.data(), static_cast<uint32_t>(kRscnCommand) << 24 | kRscnPageLength << 16 | 8);
    put_be32(p.data() + 4, did & 0xFFFFFF);
    return p;
}

uint32_t wwn_word(const Wwn &w, int half)
{
    uint32_t v = 0;
    for (int i = 0; i < 4; ++i)
        v = v << 8 | w[static_cast<size_t>(half * 4 + i)];
    return v;
}

} // namespace

BoardEvents::BoardEvents(uint32_t board, const EventsConf &conf)
    : board_(board), conf_(conf), temperature_(conf.temperature)
{
}

void BoardEvents::log(uint32_t code, uint32_t d0, uint32_t d1, uint32_t d2, uint32_t d3)
{
    if (log_.size() >= kLogEntries) {
        log_.pop_front(); // the oldest entry is lost to the reader
        missed_++;
    }
    log_.push_back(KVD_EVENT_ENTRY{code, {d0, d1, d2, d3}});
}

void BoardEvents::post(Event &&e)
{
    Dispatcher &d = Dispatcher::instance();
    if (d.wants(board_, e.kind, e.ct_value) && !d.post(std::move(e)))
        missed_++;
}

void BoardEvents::link_changed(const LinkStatus &link, const Wwn &wwpn, const Wwn &wwnn)
{
    log(FC_REG_LINK_EVENT, link.event_tag, link.state, link.did, link.topology);
    Event e;
    e.board = board_;
    e.kind = FC_REG_LINK_EVENT;
    e.link.a_linkEventTag = link.event_tag;
    e.link.a_linkUp = link.up_count;
    e.link.a_linkDown = link.down_count;
    e.link.a_linkMulti = link.multi_count;
    e.link.a_DID = link.did;
    e.link.a_topology = link.topology;
    e.link.a_linkState = link.state;
    e.link.a_alpa = link.alpa;
    e.link.a_alpaCnt = link.alpa_count;
    static_assert(sizeof e.link.a_alpaMap == sizeof link.alpa_map);
    std::memcpy(e.link.a_alpaMap, link.alpa_map, sizeof e.link.a_alpaMap);
    std::memcpy(e.link.a_wwpName, wwpn.data(), 8);
    std::memcpy(e.link.a_wwnName, wwnn.data(), 8);
    post(std::move(e));
}

void BoardEvents::rscn(uint32_t affected_did)
{
    Event e;
    e.board = board_;
    e.kind = FC_REG_RSCN_EVENT;
    e.payload = rscn_payload(affected_did);
    log(FC_REG_RSCN_EVENT, affected_did & 0xFFFFFF, static_cast<uint32_t>(e.payload.size()), 0, 0);
    post(std::move(e));
}

void BoardEvents::vport_rscn(const Wwn &vport, uint32_t affected_did)
{
    Event e;
    e.board = board_;
    e.kind = FC_REG_VPORTRSCN_EVENT;
    e.payload = rscn_payload(affected_did);
    std::memcpy(e.vport.wwn, vport.data(), 8);
    log(FC_REG_VPORTRSCN_EVENT, affected_did & 0xFFFFFF, static_cast<uint32_t>(e.payload.size()),
        wwn_word(vport, 0), wwn_word(vport, 1));
    post(std::move(e));
}

int BoardEvents::level(int32_t celsius) const
{
    return celsius >= conf_.critical ? 2 : celsius >= conf_.warning ? 1 : 0;
}

// Rising into a band raises its event; falling below the warning level
// raises "returned to normal"; falling from critical to warning raises a
// threshold event again.
void BoardEvents::set_temperature(int32_t celsius)
{
    const int before = level(temperature_), after = level(celsius);
    temperature_ = celsius;
    if (after == before)
        return;
    if (after == 2)
        temperature_event(KVD_TEMP_CRITICAL, celsius);
    else if (after == 1)
        temperature_event(KVD_TEMP_THRESHOLD, celsius);
    else
        temperature_event(KVD_TEMP_NORMAL, celsius);
}

void BoardEvents::temperature_event(uint32_t type, int32_t celsius)
{
    log(FC_REG_TEMPERATURE_EVENT, type, static_cast<uint32_t>(celsius), 0, 0);
    Event e;
    e.board = board_;
    e.kind = FC_REG_TEMPERATURE_EVENT;
    e.temp_type = type;
    e.celsius = celsius;
    post(std::move(e));
}

uint32_t BoardEvents::ct_request(uint16_t ct_value, std::span<const uint8_t> payload)
{
    const uint32_t tag = next_tag_++;
    if (next_tag_ == 0)
        next_tag_ = 1;
    if (open_tags_.size() >= kLogEntries)
        open_tags_.erase(open_tags_.begin()); // a responder that never answers
    open_tags_.push_back(tag);
    log(FC_REG_CT_EVENT, ct_value, tag, static_cast<uint32_t>(payload.size()), 0);
    Event e;
    e.board = board_;
    e.kind = FC_REG_CT_EVENT;
    e.ct_value = ct_value;
    e.tag = tag;
    e.payload.assign(payload.begin(), payload.end());
    post(std::move(e));
    return tag;
}

bool BoardEvents::ct_response(uint32_t tag, std::span<const uint8_t> payload)
{
    auto it = std::find(open_tags_.begin(), open_tags_.end(), tag);
    if (it == open_tags_.end())
        return false;
    open_tags_.erase(it);
    have_response_ = true;
    response_tag_ = tag;
    response_.assign(payload.begin(), payload.end());
    return true;
}

bool BoardEvents::last_response(uint32_t &tag, std::vector<uint8_t> &payload) const
{
    if (!have_response_)
        return false;
    tag = response_tag_;
    payload = response_;
    return true;
}

uint32_t BoardEvents::drain(KVD_EVENT_ENTRY *out, uint32_t wanted)
{
    uint32_t n = 0;
    while (n < wanted && !log_.empty()) {
        std::memcpy(out + n, &log_.front(), sizeof *out);
        log_.pop_front();
        ++n;
    }
    return n;
}

uint32_t BoardEvents::take_missed()
{
    const uint32_t n = missed_;
    missed_ = 0;
    return n;
}

// ---------------------------------------------------------------------------
// Fleet section

void read_events_section(BoardReading &r)
{
    EventsConf &s = r.conf.events;
    const Json *j = r.board.take("events");
    if (!j)
        return;
    Section o(*j, r.board.at("events"));
    if (const Json *v = o.take("temperature"))
        s.temperature = static_cast<int32_t>(to_signed(*v, o.at("temperature"), -40, 150));
    if (const Json *v = o.take("warning"))
        s.warning = static_cast<int32_t>(to_signed(*v, o.at("warning"), -40, 150));
    if (const Json *v = o.take("critical"))
        s.critical = static_cast<int32_t>(to_signed(*v, o.at("critical"), -40, 150));
    if (s.critical <= s.warning)
        fail(o.at("critical"),
             "critical " + std::to_string(s.critical) + " not above warning " + std::to_string(s.warning));
    if (const Json *v = o.take("schedule")) {
        const std::string place = o.at("schedule");
        if (!v->is_array())
            fail(place, std::string("expected an array, found ") + type_name(*v));
        if (v->size() > 256)
            fail(place, "more than 256 scheduled events");
        for (size_t i = 0; i < v->size(); ++i) {
            Section e((*v)[i], place + "[" + std::to_string(i) + "]");
            ScheduledRequest q;
            q.after_ms = static_cast<uint32_t>(to_unsigned(e.need("after_ms"), e.at("after_ms"), 86400000));
            q.request = to_text(e.need("event"), e.at("event"), 256);
            e.finish();
            s.schedule.push_back(std::move(q));
        }
    }
    o.finish();
}

// ---------------------------------------------------------------------------
// Trigger requests

namespace
{

bool parse_number(const std::string &w, int64_t min, int64_t max, int64_t &out)
{
    if (w.empty() || w.size() > 20)
        return false;
    errno = 0;
    char *end = nullptr;
    const long long v = strtoll(w.c_str(), &end, 0);
    if (errno || *end || v < min || v > max)
        return false;
    out = v;
    return true;
}

bool parse_hex(const std::string &w, std::vector<uint8_t> &out)
{
    if (w.size() % 2 || w.size() / 2 > BoardEvents::kMaxPayload)
        return false;
    out.clear();
    for (size_t i = 0; i < w.size(); i += 2) {
        auto nib = [](char c) -> int {
            if (c >= '0' && c <= '9')
                return c - '0';
            if (c >= 'a' && c <= 'f')
                return c - 'a' + 10;
            if (c >= 'A' && c <= 'F')
                return c - 'A' + 10;
            return -1;
        };
        const int hi = nib(w[i]), lo = nib(w[i + 1]);
        if (hi < 0 || lo < 0)
            return false;
        out.push_back(static_cast<uint8_t>(hi << 4 | lo));
    }
    return true;
}

std::string to_hex(const std::vector<uint8_t> &bytes)
{
    static const char digits[] = "0123456789abcdef";
    std::string s;
    for (uint8_t b : bytes) {
        s += digits[b >> 4];
        s += digits[b & 15];
    }
    return s;
}

} // namespace

std::string apply_request(Library &lib, const std::string &line)
{
    std::istringstream in(line);
    std::vector<std::string> w;
    for (std::string s; in >> s;)
        w.push_back(s);
    if (w.empty())
        return "error: empty request";
    int64_t number = 0;
    if (!parse_number(w[0], 0, 31, number))
        return "error: board \"" + w[0].substr(0, 16) + "\" not 0..31";
    Board *b = lib.board(static_cast<uint32_t>(number));
    if (!b || !b->events)
        return "error: no board " + std::to_string(number);
    if (w.size() < 2)
        return "error: no event named";
    const std::string &what = w[1];
    BoardEvents &ev = *b->events;
    if (what == "sd") {
        if (!b->sd)
            return "error: no SD engine on board " + std::to_string(number);
        return b->sd->request(std::vector<std::string>(w.begin() + 2, w.end()));
    }
    if (what == "link" && w.size() == 3 && (w[2] == "up" || w[2] == "down")) {
        if (b->fw->state() != BoardState::ready)
            return "error: board offline";
        b->fw->set_link(w[2] == "up");
        return "ok";
    }
    if (what == "rscn" && w.size() == 3) {
        if (!parse_number(w[2], 0, 0xFFFFFF, number))
            return "error: bad port id";
        ev.rscn(static_cast<uint32_t>(number));
        return "ok";
    }
    if (what == "vprscn" && w.size() == 4) {
        Wwn vport{};
        if (!parse_wwn(w[2], vport))
            return "error: bad WWPN";
        if (!parse_number(w[3], 0, 0xFFFFFF, number))
            return "error: bad port id";
        ev.vport_rscn(vport, static_cast<uint32_t>(number));
        return "ok";
    }
    if (what == "temp" && w.size() == 3) {
        if (!parse_number(w[2], -40, 150, number))
            return "error: temperature not -40..150";
        ev.set_temperature(static_cast<int32_t>(number));
        return "ok";
    }
    if (what == "tempevent" && w.size() == 4) {
        int64_t type = 0;
        if (!parse_number(w[2], 0, 0xFFFFFFFF, type))
            return "error: bad type";
        if (!parse_number(w[3], -40, 150, number))
            return "error: temperature not -40..150";
        ev.temperature_event(static_cast<uint32_t>(type), static_cast<int32_t>(number));
        return "ok";
    }
    if (what == "ct" && w.size() == 4) {
        std::vector<uint8_t> payload;
        if (!parse_number(w[2], 0, 0xFFFF, number))
            return "error: CT value not 0..0xffff";
        if (!parse_hex(w[3], payload) || payload.empty())
            return "error: payload not 1..1024 bytes of hex";
        const uint32_t tag = ev.ct_request(static_cast<uint16_t>(number), payload);
        return "ok tag=" + std::to_string(tag);
    }
    if (what == "ctresp" && w.size() == 2) {
        uint32_t tag = 0;
        std::vector<uint8_t> payload;
        if (!ev.last_response(tag, payload))
            return "error: no CT response";
        return "ok tag=" + std::to_string(tag) + " data=" + to_hex(payload);
    }
    return "error: unknown request \"" + what.substr(0, 16) + "\" or wrong word count";
}

} // namespace kvdsim
