/*
 * Discovered nodes, vital product data, persistent bindings and the FCP
 * target mapping, and the library operations that fill them.
 */
#ifndef KVD_NODES_H
#define KVD_NODES_H

#include <time.h> /* hbaapi.h uses struct tm without including it */

#include <hbaapi.h>

#include "kvd_brdinfo.h"

/* One discovered node; GetNodeInfo packs them back to back. */
typedef struct NodeInfo {
    uint16_t a_flag;
    uint16_t a_state;
    uint32_t a_did;
    uint8_t a_wwpn[8];
    uint8_t a_wwnn[8];
    uint32_t a_targetid; /* SCSI target id, all ones when the node has none */
} NODEINFO;

KVD_STATIC_ASSERT(sizeof(NODEINFO) == 28, "NODEINFO is 28 bytes");
KVD_STATIC_ASSERT(offsetof(NODEINFO, a_did) == 4, "a_did offset");
KVD_STATIC_ASSERT(offsetof(NODEINFO, a_wwpn) == 8, "a_wwpn offset");
KVD_STATIC_ASSERT(offsetof(NODEINFO, a_targetid) == 24, "a_targetid offset");

/* GetNodeInfo writes at most this many records: a 65536-byte buffer. */
#define KVD_NODEINFO_BUFSIZE 65536
#define KVD_NODEINFO_MAX (KVD_NODEINFO_BUFSIZE / sizeof(NODEINFO))

/* a_flag bits. */
#define KVD_NODE_FABRIC 0x0001 /* a fabric service at a well-known address */
#define KVD_NODE_FCP 0x0002    /* offers FCP (SCSI target) */
#define KVD_NODE_MAPPED 0x0004 /* has a SCSI target id */
#define KVD_NODE_VPORT 0x0008  /* a virtual port of this adapter */

/* a_state values. */
#define KVD_NODE_STE_PLOGI 0x3    /* logged in */
#define KVD_NODE_STE_UNMAPPED 0x6 /* process login done, no target id */
#define KVD_NODE_STE_MAPPED 0x7   /* process login done, target id given */

/* Vital product data; the caller sets version to KVD_VPD_VERSION. */
#define KVD_VPD_VERSION 1
#define KVD_VPD_NO_EVPD 2 /* GetVPDInfo: the adapter holds no extended VPD */

typedef struct Vpd {
    uint32_t version;
    char ModelDescription[256];
    char Model[80];
    char ProgramType[256];
    char PortNum[20];
} VPD;

KVD_STATIC_ASSERT(sizeof(VPD) == 616, "VPD is 616 bytes");
KVD_STATIC_ASSERT(offsetof(VPD, Model) == 260, "Model offset");
KVD_STATIC_ASSERT(offsetof(VPD, ProgramType) == 340, "ProgramType offset");
KVD_STATIC_ASSERT(offsetof(VPD, PortNum) == 596, "PortNum offset");

/* Persistent FCP bindings. */
typedef enum HBA_bindtype {
    BIND_NONE = 0,
    BIND_WWNN = 1,
    BIND_WWPN = 2,
    BIND_DID = 3,
    BIND_ALPA = 4
} HBA_BINDTYPE;

typedef struct HBA_BindEntry {
    HBA_BINDTYPE bind_type;
    uint32_t scsi_id;
    uint32_t did;
    HBA_WWN wwnn;
    HBA_WWN wwpn;
    uint32_t flags;
} HBA_BIND_ENTRY;

typedef struct HBA_BindList {
    uint32_t NumberOfEntries; /* in: room; out: count */
    HBA_BIND_ENTRY entry[1];
} HBA_BIND_LIST;

KVD_STATIC_ASSERT(sizeof(HBA_BINDTYPE) == 4, "bind type is 32 bits");
KVD_STATIC_ASSERT(sizeof(HBA_BIND_ENTRY) == 32, "HBA_BIND_ENTRY is 32 bytes");
KVD_STATIC_ASSERT(offsetof(HBA_BIND_ENTRY, wwnn) == 12, "wwnn offset");
KVD_STATIC_ASSERT(offsetof(HBA_BIND_ENTRY, flags) == 28, "flags offset");
KVD_STATIC_ASSERT(offsetof(HBA_BIND_LIST, entry) == 4, "bind entries offset");

/* Binding flags. */
#define KVD_BIND_AUTOMAP 0x01    /* made by automatic mapping */
#define KVD_BIND_BNDLST 0x02     /* on the bind list */
#define KVD_BIND_MAPLST 0x04     /* on the map list */
#define KVD_BIND_UNMAPLST 0x08   /* on the unmapped list */
#define KVD_BIND_NODEVTMO 0x10   /* device-loss timer running */
#define KVD_BIND_NOSCSIID 0x20   /* no SCSI id could be given */
#define KVD_BIND_RPTLUNCMPL 0x40 /* REPORT LUNS done */

/* The device record the library lays over the first bytes of a target
 * mapping entry's OSDeviceName. */
typedef struct HBA_osdn {
    char drvname[32];
    uint32_t instance;
    uint32_t target;
    uint32_t lun;
    uint32_t bus;
    char flags;
    char sizeSN;
    char InquirySN[64];
} HBA_OSDN;

KVD_STATIC_ASSERT(sizeof(HBA_OSDN) == 116, "HBA_OSDN is 116 bytes");
KVD_STATIC_ASSERT(offsetof(HBA_OSDN, instance) == 32, "instance offset");
KVD_STATIC_ASSERT(offsetof(HBA_OSDN, flags) == 48, "flags offset");
KVD_STATIC_ASSERT(offsetof(HBA_OSDN, InquirySN) == 50, "InquirySN offset");
KVD_STATIC_ASSERT(sizeof(HBA_OSDN) <= sizeof(((HBA_SCSIID *)0)->OSDeviceName), "HBA_OSDN fits");

/* HBA_OSDN flags. */
#define KVD_OSDN_SN_VALID 0x01 /* InquirySN holds the unit serial number */

KVD_STATIC_ASSERT(sizeof(HBA_FCPSCSIENTRY) == 304, "HBA_FCPSCSIENTRY is 304 bytes");
KVD_STATIC_ASSERT(sizeof(HBA_FCPSCSIENTRYV2) == 560, "HBA_FCPSCSIENTRYV2 is 560 bytes");
KVD_STATIC_ASSERT(offsetof(HBA_FCPTARGETMAPPING, entry) == 8, "mapping entries offset");
KVD_STATIC_ASSERT(offsetof(HBA_FCPTARGETMAPPINGV2, entry) == 8, "V2 mapping entries offset");

#ifdef __cplusplus
extern "C" {
#endif

/* Fills buf (KVD_NODEINFO_BUFSIZE bytes) with NODEINFO records; returns
 * their count, 0 or less when there are none. */
int32_t GetNodeInfo(uint32_t board, void *buf);
/* 0, KVD_VPD_NO_EVPD, or an errno value. */
uint32_t GetVPDInfo(uint32_t board, VPD *vpd);
/* 0, or HBA_STATUS_ERROR_MORE_DATA with NumberOfEntries the count needed. */
uint32_t GetFcpBindList(uint32_t board, HBA_BIND_LIST *list);
/* NumberOfEntries is the room on entry and the count on return; a room too
 * small gets HBA_STATUS_ERROR_MORE_DATA with the entries that fit. */
HBA_STATUS GetFcpTargetMapping(uint32_t board, HBA_FCPTARGETMAPPING *mapping);
HBA_STATUS KVD_GetFcpTargetMappingV2(uint32_t board, HBA_WWN wwpn, HBA_FCPTARGETMAPPINGV2 *mapping);

#ifdef __cplusplus
}
#endif

#endif
