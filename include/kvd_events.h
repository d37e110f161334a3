/*
 * Asynchronous events, loopback tests, the ring view and adapter reset:
 * the records and the library operations behind revent, urevent,
 * getevent, loopback, riocb and reset.
 */
#ifndef KVD_EVENTS_H
#define KVD_EVENTS_H

#include <stddef.h>
#include <stdint.h>

#include <time.h> /* hbaapi.h uses struct tm */

#include <hbaapi.h>

#include "kvd_attr.h"
#include "kvd_brdinfo.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Event mask bits of RegisterForEvent; also the codes of the event log. */
#define FC_REG_LINK_EVENT 0x01
#define FC_REG_RSCN_EVENT 0x02
#define FC_REG_CT_EVENT 0x04
#define FC_REG_TEMPERATURE_EVENT 0x20
#define FC_REG_VPORTRSCN_EVENT 0x40
#define FC_REG_ALL_OCCURRENCES 0x80 /* keep the subscription after the first event */

/* Record sizes the shell registers with. */
#define KVD_RSCN_BUFFER_SIZE 1024

/* Temperature event types. */
#define KVD_TEMP_UNKNOWN 0
#define KVD_TEMP_CRITICAL 1
#define KVD_TEMP_THRESHOLD 2
#define KVD_TEMP_NORMAL 3

/* The marker the shell registers CT subscriptions with. */
#define KVD_CT_CONTEXT 0x51515151u

/* The callbacks, by subscription kind. RegisterForEvent takes any of them
 * as a generic function pointer; the library calls the one that fits the
 * mask. */
typedef void (*kvd_event_fn)(void);
typedef void (*kvd_link_event_fn)(uint32_t board, LINKINFO *info);
typedef void (*kvd_rscn_event_fn)(uint32_t board, void *payload, uint32_t length);
typedef void (*kvd_vport_rscn_event_fn)(uint32_t board, HBA_WWN wwpn, void *payload, uint32_t length);
typedef void (*kvd_temperature_event_fn)(uint32_t board, uint32_t type, uint32_t celsius);
typedef void (*kvd_ct_event_fn)(uint32_t board, uint16_t ct_value, void *payload, uint32_t length,
                                uint32_t tag, void *context);

/* One entry of the event log GetEventBuffer drains: the event code (a mask
 * bit above) and four data words. */
typedef struct kvd_event_entry {
    uint32_t code;
    uint32_t data[4];
} KVD_EVENT_ENTRY;

KVD_STATIC_ASSERT(sizeof(KVD_EVENT_ENTRY) == 20, "event log entry is 20 bytes");

/* Events: the id is 0 when the subscription was refused. */
uint32_t RegisterForEvent(uint32_t board, uint32_t mask, uint32_t port, uint32_t size, kvd_event_fn callback,
                          uint32_t flags);
uint32_t RegisterForCTEvents(uint32_t board, uint16_t ct_value, kvd_ct_event_fn callback, uint32_t context,
                             uint32_t *pending);
uint32_t GetEventBuffer(uint32_t board, void *buffer, int32_t *count);
uint32_t GetMissedEventsCount(uint32_t board, uint32_t *count);
uint32_t SendMgmtResponse(uint32_t board, void *buffer, uint32_t length, uint32_t tag);

/* Loopback. Types: 0 PCI (through the mailbox), 1 internal, 2 external. */
#define KVD_LOOPBACK_PCI 0
#define KVD_LOOPBACK_INTERNAL 1
#define KVD_LOOPBACK_EXTERNAL 2

typedef struct loopback {
    uint32_t bufSize; /* bytes per frame */
    uint8_t *XmitBuffer;
    uint8_t *RcvBuffer;
} LOOPBACK;

uint32_t KVD_ConfigLoopback(uint32_t board, uint32_t type, uint32_t timeout);
uint32_t KVD_RunLoopbackTest(uint32_t board, LOOPBACK *loopback);
uint32_t KVD_EndLoopback(uint32_t board);

/* The driver's SLI state record followed by the adapter memory image, into
 * a buffer of *length bytes (at most KVD_SLIM_IMAGE_SIZE are written; out:
 * the bytes written). */
uint32_t KVD_GetSliImage(uint32_t board, void *buffer, uint32_t *length);

/* Reset types. */
#define KVD_RESET_SELECTIVE 1
#define KVD_RESET_COORDINATED 2
#define KVD_RESET_FIRMWARE 3

uint32_t KVD_ResetAdapter(uint32_t board, uint32_t type);

#ifdef __cplusplus
}
#endif

#endif
