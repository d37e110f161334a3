// The "diag" section of a board in the fleet file: what the loopback tests
// find at the port.
#pragma once

namespace kvdsim
{

struct DiagConf {
    bool loopback_plug = false; // a loopback plug sits in the port: external loops echo
};

} // namespace kvdsim
