/*
 * Records of the board-access library's own link and driver queries.
 */
#ifndef KVD_ATTR_H
#define KVD_ATTR_H

#include "kvd_brdinfo.h"

/* Filled by KVD_GetLinkInfo. */
typedef struct LinkInfo {
    uint32_t a_linkEventTag;
    uint32_t a_linkUp;    /* link-up count */
    uint32_t a_linkDown;  /* link-down count */
    uint32_t a_linkMulti; /* multi-event count */
    uint32_t a_DID;       /* port identifier */
    uint8_t a_topology;
    uint8_t a_linkState;
    uint8_t a_alpa;
    uint8_t a_alpaCnt;
    uint8_t a_alpaMap[128];
    uint8_t a_wwpName[8];
    uint8_t a_wwnName[8];
} LINKINFO;

KVD_STATIC_ASSERT(sizeof(LINKINFO) == 168, "LINKINFO is 168 bytes");
KVD_STATIC_ASSERT(offsetof(LINKINFO, a_topology) == 20, "a_topology offset");
KVD_STATIC_ASSERT(offsetof(LINKINFO, a_alpaMap) == 24, "a_alpaMap offset");
KVD_STATIC_ASSERT(offsetof(LINKINFO, a_wwpName) == 152, "a_wwpName offset");

/* a_topology values. */
#define LNK_LOOP 0x1
#define LNK_PUBLIC_LOOP 0x2
#define LNK_FABRIC 0x3
#define LNK_PT2PT 0x4

/* a_linkState values. */
#define LNK_DOWN 0x1
#define LNK_UP 0x2
#define LNK_FLOGI 0x3
#define LNK_DISCOVERY 0x4
#define LNK_REDISCOVERY 0x5
#define LNK_READY 0x6

/* Filled by KVD_GetDrvInfo; drvInfoVer is set by the caller. */
#define KVD_DRVINFO_VERSION 4

typedef struct KVDDrvInfo {
    uint8_t drvInfoVer;
    uint8_t drvType;
    uint16_t reserved;
    uint8_t rmLevel;
    uint8_t mpLevel;
    uint8_t hbaapiLevel;
    uint8_t rsvd;
    char drvVer[16];
    char drvName[8];
    char ftrDrvVer[16];
    char ftrDrvName[8];
    char ipDrvVer[16];
    char ipDrvName[8];
    uint32_t d_id;
    uint8_t wwpn[8];
    uint8_t wwnn[8];
    char hostname[32];
    uint32_t NPIVsupport;
    uint32_t sliMode;
    uint64_t featureList;
} KVDDRVINFO;

KVD_STATIC_ASSERT(sizeof(KVDDRVINFO) == 152, "KVDDRVINFO is 152 bytes");
KVD_STATIC_ASSERT(offsetof(KVDDRVINFO, drvVer) == 8, "drvVer offset");
KVD_STATIC_ASSERT(offsetof(KVDDRVINFO, d_id) == 80, "d_id offset");
KVD_STATIC_ASSERT(offsetof(KVDDRVINFO, hostname) == 100, "hostname offset");
KVD_STATIC_ASSERT(offsetof(KVDDRVINFO, sliMode) == 136, "sliMode offset");
KVD_STATIC_ASSERT(offsetof(KVDDRVINFO, featureList) == 144, "featureList offset");

/* featureList bits. */
#define KVD_FTR_DIAGS 0x0001ull
#define KVD_FTR_LUN_MAPPING 0x0002ull
#define KVD_FTR_DHCHAP 0x0004ull
#define KVD_FTR_IKE 0x0008ull
#define KVD_FTR_NPIV 0x0010ull
#define KVD_FTR_WWN_RESET 0x0020ull
#define KVD_FTR_VOLATILE_WWN 0x0040ull
#define KVD_FTR_E2E_AUTH 0x0080ull
#define KVD_FTR_SD 0x0100ull
#define KVD_FTR_FCOE 0x0200ull
#define KVD_FTR_PERSIST_LINK 0x0400ull
#define KVD_FTR_SLI_CONFIG_EXT 0x1000ull

/* Byte positions the library uses inside HBA_PORTATTRIBUTES.OSDeviceName:
 * three numbers after the device-name text, then the SCSI host number. */
#define KVD_OSDEV_NUM0 32
#define KVD_OSDEV_NUM1 36
#define KVD_OSDEV_NUM2 40
#define KVD_OSDEV_HOST 44
#define KVD_OSDEV_TEXT_MAX 32

#endif
