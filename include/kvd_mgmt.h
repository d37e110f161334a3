/*
 * Management information (RNID), the RNID request and the library's cached
 * information.
 */
#ifndef KVD_MGMT_H
#define KVD_MGMT_H

#include <stddef.h>
#include <stdint.h>

#include <time.h> /* hbaapi.h uses struct tm without including it */

#include <hbaapi.h>

#include "kvd_brdinfo.h"

#ifdef __cplusplus
extern "C" {
#endif

KVD_STATIC_ASSERT(sizeof(HBA_MGMTINFO) == 44, "HBA_MGMTINFO is 44 bytes");
KVD_STATIC_ASSERT(offsetof(HBA_MGMTINFO, unittype) == 8, "unittype offset");
KVD_STATIC_ASSERT(offsetof(HBA_MGMTINFO, IPVersion) == 20, "IPVersion offset");
KVD_STATIC_ASSERT(offsetof(HBA_MGMTINFO, UDPPort) == 22, "UDPPort offset");
KVD_STATIC_ASSERT(offsetof(HBA_MGMTINFO, IPAddress) == 24, "IPAddress offset");
KVD_STATIC_ASSERT(offsetof(HBA_MGMTINFO, TopologyDiscoveryFlags) == 42, "TopologyDiscoveryFlags offset");

/* SendRNID request types. */
#define KVD_RNID_NODE 0
#define KVD_RNID_PORT 1

/* The RNID accept: ELS code, data format, the two lengths, then the common
 * identification data and the topology-discovery specific data. Multi-byte
 * fields are big-endian, as on the wire. */
#define KVD_ELS_LS_ACC 0x02
#define KVD_RNID_FORMAT_TOPOLOGY 0xdf

typedef struct kvd_rnid_acc {
    uint8_t ls_code; /* KVD_ELS_LS_ACC */
    uint8_t rsvd0[3];
    uint8_t format;     /* node identification data format */
    uint8_t common_len; /* 16 */
    uint8_t rsvd1;
    uint8_t specific_len; /* 52 */
    uint8_t port_name[8];
    uint8_t node_name[8];
    /* topology-discovery specific identification data */
    uint8_t vendor[16];
    uint8_t associated_type[4];
    uint8_t physical_port[4];
    uint8_t attached_nodes[4];
    uint8_t node_management;
    uint8_t ip_version;
    uint8_t udp_port[2];
    uint8_t ip_address[16];
    uint8_t rsvd2[2];
    uint8_t discovery_flags[2];
} KVD_RNID_ACC;

KVD_STATIC_ASSERT(sizeof(KVD_RNID_ACC) == 76, "RNID accept is 76 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_RNID_ACC, port_name) == 8, "port_name offset");
KVD_STATIC_ASSERT(offsetof(KVD_RNID_ACC, vendor) == 24, "specific data offset");
KVD_STATIC_ASSERT(offsetof(KVD_RNID_ACC, ip_address) == 56, "ip_address offset");

HBA_STATUS GetRNIDMgmtInfo(uint32_t board, HBA_MGMTINFO *info);
HBA_STATUS SetRNIDMgmtInfo(uint32_t board, HBA_MGMTINFO *info);
/* *length holds the buffer's size on entry and the reply's bytes on exit. */
HBA_STATUS SendRNID(uint32_t board, HBA_WWN wwn, uint32_t type, void *reply, uint32_t *length);
HBA_STATUS RefreshInformation(uint32_t board, uint32_t flags);
/* Events the library holds for the board, not yet read. */
HBA_STATUS GetEventsCount(uint32_t board, uint32_t *count);

#ifdef __cplusplus
}
#endif

#endif
