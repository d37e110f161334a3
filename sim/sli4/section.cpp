// The "sli4" object of a board in a fleet file.
#include "core/section.hpp"
#include "sli4/conf.hpp"

namespace kvdsim
{

namespace
{
constexpr size_t kStoreDirMax = 4095;
constexpr uint64_t kCapacityMax = 4ull << 30;
} // namespace

void read_sli4_section(Section &board, BoardConf &conf)
{
    const Json *j = board.take("sli4");
    if (!j)
        return;
    const std::string place = board.at("sli4");
    if (conf.sli_mode != 4)
        fail(place, "SLI-4 settings given on an SLI-" + std::to_string(conf.sli_mode) + " board");
    Section o(*j, place);
    Sli4Conf &s = conf.sli4;
    o.flag("beacon", s.beacon);
    o.number("dcbx_mode", s.dcbx_mode, 1);
    o.number("temperature", s.temperature, 120);
    o.number("ipl_file", s.ipl_file);
    o.number("ipl_version", s.ipl_version);
    o.number("busy_every", s.busy_every, 1000000);
    if (o.number("capacity", s.capacity, kCapacityMax) && s.capacity < (1u << 20))
        fail(o.at("capacity"), "capacity " + std::to_string(s.capacity) + " below 1 MiB");
    const bool store = conf.object_store && conf.if_type == 2;
    if (o.flag("dump", s.dump) && !store)
        fail(o.at("dump"), "dump object given on a board without an object store");
    if (o.text("store_dir", s.store_dir, kStoreDirMax) && !store)
        fail(o.at("store_dir"), "store directory given on a board without an object store");
    o.finish();
}

} // namespace kvdsim
