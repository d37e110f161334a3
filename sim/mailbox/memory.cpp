// DUMP_MEMORY: adapter memory into the data area behind the record.
//
// The dump reads words from SLIM at a 4-aligned byte offset. The data go
// behind the 256-byte record, as far as the caller handed room over: the
// reply words past the record of a plain call, or a V2 call's payload. A
// request for more than that room gets what fits; the words returned are
// in the reply.
#include "mailbox/firmware.hpp"
#include "pci/pci_engine.hpp"

#include <cstring>

namespace kvdsim
{

uint16_t Firmware::dump_memory(MailboxCommand &cmd)
{
    DUMP_VAR d{};
    std::memcpy(&d, &cmd.mb.un, sizeof d);
    const uint32_t offset = d.words[1];
    if (d.words[0] != MBX_DUMP_TYPE_MEMORY || offset % 4 != 0 || pci_ == nullptr)
        return MBXERR_ERROR;
    const uint32_t room = static_cast<uint32_t>(cmd.payload.size() / 4);
    const uint32_t words = d.words[2] < room ? d.words[2] : room;
    if (words > 0 && !pci_->read_mem(offset, cmd.payload.data(), words * 4))
        return MBXERR_DMA_ERROR; // the window leaves adapter memory
    d.words[3] = words;
    std::memcpy(&cmd.mb.un, &d, sizeof d);
    return MBXERR_OK;
}

} // namespace kvdsim
