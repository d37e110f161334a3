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
    s.finish();
}

} // namespace kvdsim
