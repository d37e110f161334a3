// The board's "nodes" object of a fleet file.
#include "nodes/nodes.hpp"

#include "core/section.hpp"

namespace kvdsim
{

namespace
{

uint32_t bind_type(const Json &v, const std::string &place)
{
    static const char *const kNames[] = {"none", "wwnn", "wwpn", "did", "alpa"};
    if (v.is_string()) {
        const std::string s = v.get<std::string>();
        for (uint32_t i = 0; i < std::size(kNames); ++i)
            if (s == kNames[i])
                return i;
    }
    // A number is taken as the driver would hand it over, known or not.
    return static_cast<uint32_t>(to_unsigned(v, place, 0xffffffffu));
}

} // namespace

void read_nodes_section(Section &board, BoardConf &conf)
{
    const Json *j = board.take("nodes");
    if (!j)
        return;
    Section s(*j, board.at("nodes"));
    NodesConf &n = conf.nodes;
    s.flag("evpd", n.evpd);
    s.text("model_description", n.model_description, 255);
    s.text("model", n.model, 79);
    s.text("program_type", n.program_type, 255);
    s.text("port", n.port, 19);
    if (const Json *v = s.take("bindings")) {
        const std::string place = s.at("bindings");
        if (!v->is_array())
            fail(place, std::string("expected an array, found ") + type_name(*v));
        std::vector<BindingConf> list;
        for (size_t i = 0; i < v->size(); ++i) {
            const std::string bp = place + "[" + std::to_string(i) + "]";
            if (!(*v)[i].is_object())
                fail(bp, std::string("expected an object, found ") + type_name((*v)[i]));
            Section e((*v)[i], bp);
            BindingConf b;
            if (const Json *t = e.take("type"))
                b.type = bind_type(*t, e.at("type"));
            e.number("scsi_id", b.scsi_id);
            e.number("did", b.did, 0xFFFFFF);
            e.wwn("wwnn", b.wwnn);
            e.wwn("wwpn", b.wwpn);
            e.number("flags", b.flags);
            e.finish();
            list.push_back(b);
        }
        if (list.size() > 512)
            fail(place, "more than 512 bindings");
        n.bindings = std::move(list);
    }
    s.finish();
}

} // namespace kvdsim
