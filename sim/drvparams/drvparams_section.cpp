// The board's "drvparams" object of a fleet file: loaded values by name.
#include "drvparams/drvparams.hpp"

#include "core/section.hpp"

namespace kvdsim
{

void read_drvparams_section(Section &board, BoardConf &conf)
{
    const Json *j = board.take("drvparams");
    if (!j)
        return;
    Section s(*j, board.at("drvparams"));
    for (const ParamDef *d : param_defs(conf.protocol)) {
        uint32_t v = 0;
        if (!s.number(d->name, v, d->high))
            continue;
        if (v < d->low)
            fail(s.at(d->name), "below the parameter's lowest value " + std::to_string(d->low));
        conf.drvparams.values[d->name] = v;
    }
    s.finish();
}

} // namespace kvdsim
