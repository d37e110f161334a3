// The board's "sd" object of a fleet file:
//
//   "sd": { "seed": 1,
//           "traffic": [ { "wwpn": "...", "ios": 64, "min_us": 20, "max_us": 150 } ] }
#include "core/fleet.hpp"
#include "core/section.hpp"
#include "sd/sd.hpp"

namespace kvdsim
{

void read_sd_section(Section &board, BoardConf &conf)
{
    const Json *j = board.take("sd");
    if (!j)
        return;
    Section s(*j, board.at("sd"));
    if (const Json *v = s.take("seed"))
        conf.sd.seed = static_cast<uint32_t>(to_unsigned(*v, s.at("seed"), 0xFFFFFFFF));
    if (const Json *list = s.take("traffic")) {
        const std::string place = s.at("traffic");
        if (!list->is_array())
            fail(place, std::string("expected an array, found ") + type_name(*list));
        for (size_t i = 0; i < list->size(); ++i) {
            Section e((*list)[i], place + "[" + std::to_string(i) + "]");
            SdTraffic t;
            t.wwpn = to_wwn(e.need("wwpn"), e.at("wwpn"));
            bool target = false;
            for (const RemotePort &p : conf.remote_ports)
                target = target || (p.wwpn == t.wwpn && p.fcp_target);
            if (!target)
                fail(e.at("wwpn"), "not an FCP target of this board");
            for (const SdTraffic &o : conf.sd.traffic)
                if (o.wwpn == t.wwpn)
                    fail(e.at("wwpn"), "duplicate target");
            if (const Json *v = e.take("ios"))
                t.ios = static_cast<uint32_t>(to_unsigned(*v, e.at("ios"), 100000));
            if (const Json *v = e.take("min_us"))
                t.min_us = static_cast<uint32_t>(to_unsigned(*v, e.at("min_us"), 10000000));
            if (const Json *v = e.take("max_us"))
                t.max_us = static_cast<uint32_t>(to_unsigned(*v, e.at("max_us"), 10000000));
            if (t.max_us < t.min_us)
                fail(e.at("max_us"), "below min_us");
            e.finish();
            conf.sd.traffic.push_back(t);
        }
    }
    s.finish();
}

} // namespace kvdsim
