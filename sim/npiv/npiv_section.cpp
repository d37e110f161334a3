// The board's "npiv" object of a fleet file.
#include "npiv/npiv.hpp"

#include "core/section.hpp"

namespace kvdsim
{

void read_npiv_section(Section &board, BoardConf &conf)
{
    const Json *j = board.take("npiv");
    if (!j)
        return;
    Section s(*j, board.at("npiv"));
    NpivConf &n = conf.npiv;
    s.flag("driver_enable", n.driver_enable);
    s.flag("fabric_support", n.fabric_support);
    s.number("fabric_max_vports", n.fabric_max_vports, 0xFFFF);
    if (const Json *v = s.take("vports")) {
        const std::string place = s.at("vports");
        if (!v->is_array())
            fail(place, std::string("expected an array, found ") + type_name(*v));
        for (size_t i = 0; i < v->size(); ++i) {
            const std::string vp = place + "[" + std::to_string(i) + "]";
            if (!(*v)[i].is_object())
                fail(vp, std::string("expected an object, found ") + type_name((*v)[i]));
            Section e((*v)[i], vp);
            StaticVportConf c;
            c.wwpn = to_wwn(e.need("wwpn"), e.at("wwpn"));
            c.wwnn = to_wwn(e.need("wwnn"), e.at("wwnn"));
            e.finish();
            n.vports.push_back(c);
        }
    }
    s.finish();
}

} // namespace kvdsim
