// Event records: the drained event log and the subscriptions through the
// shell's commands, and the records the library hands the callbacks, each
// in an exactly sized allocation.
#include <string.h>

#include "kvd.h"
#include "kvdfuzz.h"

static const char *const words[] = {"getevent", "revent", "urevent"};

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2 || data[0] < 0xf0)
        return kvdfuzz::run_shell(words, sizeof(words) / sizeof(words[0]), data, size);

    kvdfuzz::quiet_shell();
    kvdfuzz::stream_begin(data + 1, size - 1);
    uint32_t board = kvdfuzz::stream_u32() % 4;
    uint32_t length = (uint32_t)kvdfuzz::stream_left();
    uint8_t *payload = new uint8_t[length ? length : 1];
    kvdfuzz::stream_fill(payload, length);
    switch (data[0] & 3) {
    case 0: {
        LINKINFO *info = new LINKINFO;
        memcpy(info, payload, length < sizeof(*info) ? length : sizeof(*info));
        link_event(board, info);
        delete info;
        break;
    }
    case 1:
        rscn_event(board, payload, length);
        break;
    case 2: {
        HBA_WWN wwpn = {};
        vport_rscn_event(board, wwpn, payload, length);
        temperature_event(board, length, payload[0]);
        break;
    }
    default:
        ct_event(board, (uint16_t)length, payload, length, length, nullptr);
        break;
    }
    delete[] payload;
    return 0;
}
