// Event registration: revent, urevent, getevent, and the five callbacks the
// library calls from its own thread.
//
// Each callback takes standard output's lock for the whole of one event, so
// its lines stay together whatever else prints, and flushes before letting
// go, so an event that arrives while the shell waits at the prompt shows at
// once. Counts and lengths in the records are bounded by the records before
// they are used.
#include <arpa/inet.h>
#include <stdlib.h>
#include <string.h>

#include "kvd.h"

#define KVD_EVENT_ENTRY_SIZE 20
#define KVD_EVENT_MAX_ENTRIES (KVD_DATA_AREA_SIZE / KVD_EVENT_ENTRY_SIZE)
#define KVD_CT_PAYLOAD_MAX KVD_DATA_AREA_SIZE

static const char *temp_texts[] = {
    "Unknown Event.",
    "Critical temperature event.",
    "Temerature exceeded threshold.",
    "Temperature returned to normal.",
};

// Word i of a big-endian payload of `length` bytes; a last partial word
// reads only the bytes that are there.
static uint32_t kvd_be_word(const uint8_t *payload, uint32_t length, uint32_t i)
{
    uint8_t bytes[4] = {0, 0, 0, 0};
    uint32_t off = i * 4;
    uint32_t n = length - off < 4 ? length - off : 4;
    uint32_t word;

    memcpy(bytes, payload + off, n);
    memcpy(&word, bytes, sizeof(word));
    return ntohl(word);
}

// The payload as words, four to a line, each line led by its byte offset.
// The remaining length drops by 4 a word, to 0 when 4 or fewer remain.
static void kvd_dump_payload(const uint8_t *payload, uint32_t length, int long_words)
{
    uint32_t remaining = length;

    for (uint32_t i = 0; remaining > 0; i++) {
        if (i % 4 == 0)
            printf("\n%4x: ", i * 4);
        if (long_words)
            printf("%08lx  ", (unsigned long)kvd_be_word(payload, length, i));
        else
            printf("%08x  ", kvd_be_word(payload, length, i));
        remaining = remaining <= 4 ? 0 : remaining - 4;
    }
    printf("\n");
}

void link_event(uint32_t board, LINKINFO *info)
{
    LINKINFO li;
    char wwpn[24];
    char wwnn[24];
    uint32_t count;

    memcpy(&li, info, sizeof(li));
    // Entries 1..a_alpaCnt of the 128-entry map.
    count = li.a_alpaCnt < sizeof(li.a_alpaMap) ? li.a_alpaCnt : sizeof(li.a_alpaMap) - 1;
    kvd_mac_sprintf(li.a_wwpName, wwpn);
    kvd_mac_sprintf(li.a_wwnName, wwnn);
    flockfile(stdout);
    printf("Brd %d Event 0x%x  Up 0x%x  Down 0x%x  Multi 0x%x\n", (int)board, li.a_linkEventTag, li.a_linkUp,
           li.a_linkDown, li.a_linkMulti);
    printf("PortID 0x%x  alpa 0x%x  topology 0x%x state 0x%x\n", li.a_DID, li.a_alpa, li.a_topology,
           li.a_linkState);
    printf("ALPAmap %d:", (int)li.a_alpaCnt);
    for (uint32_t i = 1; i <= count; i++)
        printf(" %x", li.a_alpaMap[i]);
    printf("\n");
    printf("Portname %s  Nodename %s\n", wwpn, wwnn);
    fflush(stdout);
    funlockfile(stdout);
}

static uint32_t kvd_rscn_length(uint32_t length)
{
    return length < KVD_RSCN_BUFFER_SIZE ? length : KVD_RSCN_BUFFER_SIZE;
}

void rscn_event(uint32_t board, void *payload, uint32_t length)
{
    (void)board;
    flockfile(stdout);
    printf("RSCN Buffer: %d\n", (int)length);
    kvd_dump_payload((const uint8_t *)payload, kvd_rscn_length(length), 0);
    fflush(stdout);
    funlockfile(stdout);
}

void vport_rscn_event(uint32_t board, HBA_WWN wwpn, void *payload, uint32_t length)
{
    char text[24];

    kvd_mac_sprintf(wwpn.wwn, text);
    flockfile(stdout);
    printf("VPORTRSCN board: %d wwpn: %s RSCN Buffer: %d\n", (int)board, text, (int)length);
    kvd_dump_payload((const uint8_t *)payload, kvd_rscn_length(length), 0);
    fflush(stdout);
    funlockfile(stdout);
}

void temperature_event(uint32_t board, uint32_t type, uint32_t celsius)
{
    flockfile(stdout);
    if (type < 4)
        printf("temperature_event board %d %s tempType 0x%x temperature %d D Celsius. \n", (int)board,
               temp_texts[type], type, (int)celsius);
    else
        printf("temperature_event board %d tempType 0x%x temperature %d D Celsius. \n", (int)board, type,
               (int)celsius);
    fflush(stdout);
    funlockfile(stdout);
}

// The CT test responder: prints the request and echoes it back as its own
// response.
void ct_event(uint32_t board, uint16_t ct_value, void *payload, uint32_t length, uint32_t tag, void *context)
{
    uint32_t shown = length < KVD_CT_PAYLOAD_MAX ? length : KVD_CT_PAYLOAD_MAX;

    (void)ct_value;
    flockfile(stdout);
    printf("CT Buffer: %d cnt:%d tag:0x%lx ctx:0x%lx\n", (int)board, (int)length, (unsigned long)tag,
           (unsigned long)(uintptr_t)context);
    kvd_dump_payload((const uint8_t *)payload, shown, 1);
    fflush(stdout);
    funlockfile(stdout);
    (void)SendMgmtResponse(board, payload, length, tag);
}

static void kvd_revent_usage_short(void)
{
    printf("Usage: revent [link | mlink | rscn | temp ] [ALL]\n");
    printf("Usage: revent ct {value} [ALL]\n");
}

KVD_HANDLER(regevent)
{
    uint32_t mask;
    long id;

    (void)row;
    (void)arg;
    if (margc < 2 || margc > 4) {
        printf("Usage: revent [link | mlink | rscn | |vprscn | temp] [ALL]\n");
        printf("Usage: revent [route | path] route_idx [path_idx]\n");
        printf("Usage: revent ct {value} [ALL]\n");
        return KVD_USAGE;
    }
    mask = strcmp(margv[margc - 1], "ALL") == 0 ? FC_REG_ALL_OCCURRENCES : 0;
    if (strcmp(margv[1], "link") == 0) {
        mask |= FC_REG_LINK_EVENT;
        id = RegisterForEvent(cur_board, mask, 0, sizeof(LINKINFO), (kvd_event_fn)link_event, 0);
    } else if (strcmp(margv[1], "rscn") == 0) {
        mask |= FC_REG_RSCN_EVENT;
        id = RegisterForEvent(cur_board, mask, 0, KVD_RSCN_BUFFER_SIZE, (kvd_event_fn)rscn_event, 0);
    } else if (strcmp(margv[1], "vprscn") == 0) {
        mask |= FC_REG_VPORTRSCN_EVENT;
        id = RegisterForEvent(cur_board, mask, 0, KVD_RSCN_BUFFER_SIZE, (kvd_event_fn)vport_rscn_event, 0);
    } else if (strcmp(margv[1], "temp") == 0) {
        mask |= FC_REG_TEMPERATURE_EVENT;
        id = RegisterForEvent(cur_board, mask, 0, 0, (kvd_event_fn)temperature_event, 0);
    } else if (strcmp(margv[1], "ct") == 0 && margc >= 3) {
        // The value is the word after "ct"; the mask's bits stay here.
        uint16_t value = (uint16_t)strtoul(margv[2], NULL, 0);
        uint32_t pending = 0;
        mask |= FC_REG_CT_EVENT;
        id = RegisterForCTEvents(cur_board, value, ct_event, KVD_CT_CONTEXT, &pending);
    } else {
        kvd_revent_usage_short();
        return KVD_USAGE;
    }
    printf("eventid: %ld\n", id);
    return KVD_OK;
}

KVD_HANDLER(uregevent)
{
    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: urevent event_id\n");
        return KVD_USAGE;
    }
    (void)unRegisterForEvent(cur_board, (uint32_t)strtoul(margv[1], NULL, 0));
    return KVD_OK;
}

KVD_HANDLER(getevent)
{
    int32_t wanted;
    int32_t count;
    uint32_t missed = 0;
    uint32_t entry[5];

    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: getevent count\n");
        return KVD_USAGE;
    }
    // The entries land in the shared data area: no more than it holds.
    wanted = atoi(margv[1]);
    if (wanted < 0)
        wanted = 0;
    if (wanted > KVD_EVENT_MAX_ENTRIES)
        wanted = KVD_EVENT_MAX_ENTRIES;
    count = wanted;
    if (GetEventBuffer(cur_board, kvd_bigbuffer, &count) != 0)
        return kvd_cannot_issue();
    if (count < 0 || count > wanted)
        count = count < 0 ? 0 : wanted;
    (void)GetMissedEventsCount(cur_board, &missed);
    printf("Event Data1    Data2    Data3    Data4    %d Entries %d Missed\n", count, (int)missed);
    for (int32_t i = 0; i < count; i++) {
        memcpy(entry, kvd_bigbuffer + (size_t)i * KVD_EVENT_ENTRY_SIZE, sizeof(entry));
        printf("%04x  %08x %08x %08x %08x\n", entry[0], entry[1], entry[2], entry[3], entry[4]);
        if (kvd_page_break(i))
            break;
    }
    return KVD_OK;
}
