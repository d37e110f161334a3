/*
 * Port settings of the board-access library: FCoE parameters, the global
 * FCP priority flag, link-down persistence, the dump mailbox, the QoS link
 * speed, the management mix-and-match display and the adapter reset.
 */
#ifndef KVD_PORT_H
#define KVD_PORT_H

#include "kvd_brdinfo.h"

#ifdef __cplusplus
extern "C" {
#endif

/* FCoE parameters of a port. The FC-MAP is held in wire order: FCMap[0] is
 * its most significant byte. */
#define KVD_FCOEPARAM_VERSION 1

typedef struct KVD_FCoEParam {
    uint8_t version; /* KVD_FCOEPARAM_VERSION, set by the caller both ways */
    uint8_t reserved[3];
    uint8_t FCMap[3];
    uint8_t VLanValid; /* 0 or 1 */
    uint16_t VLanId;
} KVD_FCOEPARAM;

KVD_STATIC_ASSERT(sizeof(KVD_FCOEPARAM) == 10, "KVD_FCOEPARAM is 10 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_FCOEPARAM, reserved) == 1, "reserved offset");
KVD_STATIC_ASSERT(offsetof(KVD_FCOEPARAM, FCMap) == 4, "FCMap offset");
KVD_STATIC_ASSERT(offsetof(KVD_FCOEPARAM, VLanValid) == 7, "VLanValid offset");
KVD_STATIC_ASSERT(offsetof(KVD_FCOEPARAM, VLanId) == 8, "VLanId offset");

/* Global FCP priority flag values. */
#define KVD_FCP_PRIORITY_OFF 0
#define KVD_FCP_PRIORITY_ON 1

/* Link-down persistence values. */
#define KVD_LINK_NO_PERSIST 0
#define KVD_LINK_PERSIST_DOWN 1

/* Dump mailbox: the dump type of configuration regions, and the largest
 * piece one call returns. */
#define KVD_DUMP_TYPE_REGION 2
#define KVD_DUMP_MAX 2048

/* Adapter reset types. */
#define KVD_RESET_SELECTIVE 1
#define KVD_RESET_COORDINATED 2
#define KVD_RESET_FIRMWARE 3

uint32_t KVD_FCoEGetParams(uint32_t board, KVD_FCOEPARAM *param);
uint32_t KVD_FCoESetParams(uint32_t board, KVD_FCOEPARAM *param);

uint32_t KVD_QoSGetGlobalFlag(uint32_t board, uint32_t *flag);
uint32_t KVD_QoSSetGlobalFlag(uint32_t board, uint32_t flag);
uint32_t KVD_GetQoSLinkSpeed(uint32_t board, uint16_t *speed);

uint32_t KVD_GetPersistLinkDown(uint32_t board, uint16_t *linkDownConfig);
uint32_t KVD_SetPersistLinkDown(uint32_t board, uint16_t linkDownConfig);

/* Reads *length bytes of region `region` from `offset` into buffer; on
 * success *length is the number of bytes written. */
uint32_t KVD_IssueDumpMBox(uint32_t board, uint32_t type, uint32_t index, uint32_t region, uint32_t offset,
                           uint8_t *buffer, uint32_t *length);

uint32_t KVD_ResetAdapter(uint32_t board, uint32_t type);

/* Prints the library's management mix-and-match setting on standard
 * output; `verbose` adds where the setting comes from. */
void kvd_show_mmm(int32_t verbose, void *arg);

#ifdef __cplusplus
}
#endif

#endif
