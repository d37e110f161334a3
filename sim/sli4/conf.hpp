// What the fleet file says about a board's SLI-4 configuration engine and
// its object store: the "sli4" object of a board.
#pragma once

#include <cstdint>
#include <string>

namespace kvdsim
{

struct Sli4Conf {
    bool beacon = false;      // beacon LED on
    uint8_t dcbx_mode = 0;    // FCoE ports: 0 CEE, 1 CIN
    uint8_t temperature = 52; // die temperature, centigrade, around which it drifts
    uint16_t ipl_file = 1;    // IPL file number the boot code was built from
    uint8_t ipl_version = 3;
    bool dump = true;        // a diagnostic dump object is waiting
    std::string store_dir;   // host directory that keeps the object store
    uint32_t busy_every = 8; // the Nth write of each object write sequence is taken in part (0: never)
    uint64_t capacity = 256ull << 20;
};

class Section;
struct BoardConf;

// Reads the board's "sli4" object, if any, into conf.sli4. Only SLI-4
// boards may have one; "dump" and "store_dir" only boards with an object
// store.
void read_sli4_section(Section &board, BoardConf &conf);

} // namespace kvdsim
