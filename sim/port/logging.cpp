// The driver's logging mask of the port: which kinds of driver messages
// are logged for the board. Like the other port settings it outlives
// firmware restarts and adapter resets.
#include "port/port.hpp"

#include <cerrno>
#include <cstring>

#include "libkvd.h"

namespace kvdsim
{

int32_t Port::get_log_mask(PortCommand &cmd)
{
    if (cmd.data.size() < sizeof log_mask_) // the row's least room, checked again here
        return EINVAL;
    std::memcpy(cmd.data.data(), &log_mask_, sizeof log_mask_);
    return 0;
}

int32_t Port::set_log_mask(PortCommand &cmd)
{
    if (cmd.args[0] & ~KVD_DRVLOG_ALL)
        return EINVAL;
    log_mask_ = cmd.args[0];
    return 0;
}

} // namespace kvdsim
