// The SD event callback as the library calls it: arbitrary board, port,
// category and subcategory, and an event whose details record points at an
// event record of exactly the size the event states (heap-allocated to that
// size, so that a read past it is caught), or at nothing.
//
// Input: verbose, flags (bit 0 no event, bit 1 no details, bit 2 no record),
// category selector, subcategory selector, board (4), port (8), version (4),
// then the event record.
#include <stdlib.h>
#include <string.h>

#include "kvd_sd_cmds.h"
#include "kvdfuzz.h"

namespace
{

// A selector below 0x80 picks one bit (the categories and subcategories the
// shell knows are single bits); above, the value is the selector itself.
uint32_t pick(uint8_t selector)
{
    return selector < 0x80 ? 1u << (selector % 8) : selector;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    enum { head = 4 + 4 + 8 + 4 };
    uint32_t board, version;
    HBA_WWN port;

    if (size < head)
        return 0;
    kvdfuzz::quiet_shell();
    callback_verbose_level = data[0] & 1;
    uint8_t flags = data[1];
    uint32_t category = pick(data[2]), subcategory = pick(data[3]);
    memcpy(&board, data + 4, sizeof(board));
    memcpy(port.wwn, data + 8, sizeof(port.wwn));
    memcpy(&version, data + 16, sizeof(version));

    // The record in a buffer of its own exact size (one byte when empty,
    // stated as zero).
    size_t record_size = size - head;
    uint8_t *exact = static_cast<uint8_t *>(malloc(record_size != 0 ? record_size : 1));
    if (exact == nullptr)
        return 0;
    if (record_size != 0)
        memcpy(exact, data + head, record_size);

    SD_els_event_details_v0 details = {version, (flags & 4) ? nullptr : exact};
    SD_event event = {version, record_size, (flags & 2) ? nullptr : &details};
    EventCallBack(board, port, category, subcategory, nullptr, (flags & 1) ? nullptr : &event);
    free(exact);
    return 0;
}
