// The fleet's description of a board's driver parameters: the values the
// driver loaded with, by parameter name. Read from the board's "drvparams"
// object; parameters it does not name start at their defaults.
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace kvdsim
{

class Section;
struct BoardConf;

struct DrvParamsConf {
    std::map<std::string, uint32_t> values;
};

// Reads the board's "drvparams" object into conf.drvparams. Runs after the
// board's protocol is read: the parameters a board has follow it.
void read_drvparams_section(Section &board, BoardConf &conf);

} // namespace kvdsim
