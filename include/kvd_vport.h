/*
 * NPIV virtual ports: the records the board-access library exchanges for
 * them, the readiness bits and the library operations.
 */
#ifndef KVD_VPORT_H
#define KVD_VPORT_H

#include <time.h> /* hbaapi.h uses struct tm without including it */

#include <hbaapi.h>

#include "kvd_brdinfo.h"

/* Attributes of one virtual port; the caller sets ver. */
#define KVD_VPATTRIB_VERSION 3
#define KVD_VPNAME_SIZE 100  /* the name buffer handed to KVD_VPCreate */
#define KVD_VPNAME_FIELD 256 /* the name as the attributes carry it */
#define KVD_VP_ACCESSKEY_SIZE 32

typedef struct KVD_VPAttrib {
    uint8_t ver;
    uint8_t reserved1[3];
    HBA_WWN wwpn;
    HBA_WWN wwnn;
    char name[KVD_VPNAME_FIELD];
    uint32_t options;
    uint32_t portFcId;
    uint8_t state;
    uint8_t restrictLogin;
    uint8_t flags; /* KVD_VPFLAG_STATIC */
    uint8_t reserved2;
    uint64_t buf; /* platform handle: the port's SCSI host number */
    HBA_WWN fabricName;
    uint32_t checklist; /* KVD_NPIV_* readiness bits of the board */
    uint8_t accessKey[KVD_VP_ACCESSKEY_SIZE];
} KVD_VPATTRIB;

KVD_STATIC_ASSERT(offsetof(KVD_VPATTRIB, reserved1) == 1, "reserved1 offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPATTRIB, wwpn) == 4, "wwpn offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPATTRIB, wwnn) == 12, "wwnn offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPATTRIB, name) == 20, "name offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPATTRIB, options) == 276, "options offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPATTRIB, portFcId) == 280, "portFcId offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPATTRIB, state) == 284, "state offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPATTRIB, restrictLogin) == 285, "restrictLogin offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPATTRIB, flags) == 286, "flags offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPATTRIB, buf) == 288, "buf offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPATTRIB, fabricName) == 296, "fabricName offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPATTRIB, checklist) == 304, "checklist offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPATTRIB, accessKey) == 308, "accessKey offset");
KVD_STATIC_ASSERT(sizeof(KVD_VPATTRIB) == 344, "KVD_VPATTRIB is 344 bytes");

/* options of KVD_VPCreate. */
#define KVD_VPOPT_RESTRICT_LOGIN 0x1 /* log in to FCP targets only */
#define KVD_VPOPT_AUTO_WWN 0x2       /* the driver chooses both names */

/* flags. */
#define KVD_VPFLAG_STATIC 0x1 /* configured with the driver, not created at run time */

/* state: where the port's fabric login stands. */
#define KVD_VPSTATE_UNKNOWN 0
#define KVD_VPSTATE_LINKDOWN 1       /* the link is down */
#define KVD_VPSTATE_NO_FABRIC_SUPP 2 /* no fabric, or the fabric refuses NPIV */
#define KVD_VPSTATE_NO_FABRIC_RSCS 3 /* the fabric has no room for another login */
#define KVD_VPSTATE_ACTIVE 4         /* logged in, with an FC id */

/* One virtual port of a list. */
typedef struct KVD_VPEntry {
    HBA_WWN wwpn;
    HBA_WWN wwnn;
    uint32_t portFcId;
} KVD_VPENTRY;

typedef struct KVD_VPEntryList {
    uint32_t numberOfEntries; /* in: room; out: count */
    KVD_VPENTRY vpentry[1];
} KVD_VPENTRYLIST;

KVD_STATIC_ASSERT(sizeof(KVD_VPENTRY) == 20, "KVD_VPENTRY is 20 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_VPENTRY, wwnn) == 8, "wwnn offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPENTRY, portFcId) == 16, "portFcId offset");
KVD_STATIC_ASSERT(offsetof(KVD_VPENTRYLIST, vpentry) == 4, "vpentry offset");

/* Virtual-port resources of an adapter. */
typedef struct KVD_VPResource {
    uint32_t vlinks_max;
    uint32_t vlinks_inuse;
    uint32_t rpi_max;
    uint32_t rpi_inuse;
} KVD_VPRESOURCE;

KVD_STATIC_ASSERT(sizeof(KVD_VPRESOURCE) == 16, "KVD_VPRESOURCE is 16 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_VPRESOURCE, rpi_inuse) == 12, "rpi_inuse offset");

/* One node a port sees. type takes the NODEINFO a_flag bits, nodeState its
 * a_state values (kvd_nodes.h). */
typedef struct KVD_NodeInfoEntry {
    uint32_t type;
    HBA_SCSIID scsiId;
    HBA_FCPID fcpId;
    uint32_t nodeState;
    uint32_t reserved;
} KVD_NODEINFOENTRY;

typedef struct KVD_GetNodeInfo {
    uint32_t numberOfEntries; /* in: room; out: count */
    KVD_NODEINFOENTRY nodeInfo[1];
} KVD_GETNODEINFO;

KVD_STATIC_ASSERT(sizeof(HBA_SCSIID) == 268, "HBA_SCSIID is 268 bytes");
KVD_STATIC_ASSERT(sizeof(HBA_FCPID) == 32, "HBA_FCPID is 32 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_NODEINFOENTRY, scsiId) == 4, "scsiId offset");
KVD_STATIC_ASSERT(offsetof(KVD_NODEINFOENTRY, fcpId) == 272, "fcpId offset");
KVD_STATIC_ASSERT(offsetof(KVD_NODEINFOENTRY, nodeState) == 304, "nodeState offset");
KVD_STATIC_ASSERT(sizeof(KVD_NODEINFOENTRY) == 312, "KVD_NODEINFOENTRY is 312 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_GETNODEINFO, nodeInfo) == 8, "node entries are 8-byte aligned");

/* NPIV readiness bits (KVD_NPIVReadyTest, and checklist above). */
#define KVD_NPIV_DRIVER_ENABLED 0x01
#define KVD_NPIV_SLI_READY 0x02
#define KVD_NPIV_HBA_SUPPORT 0x04
#define KVD_NPIV_HBA_RESOURCES 0x08
#define KVD_NPIV_LINK_UP 0x10
#define KVD_NPIV_POINT_TO_POINT 0x20
#define KVD_NPIV_FABRIC_SUPPORT 0x40
#define KVD_NPIV_FABRIC_RESOURCES 0x80
#define KVD_NPIV_READY 0xff

#ifdef __cplusplus
extern "C" {
#endif

/* All return 0 on success, else an errno value. KVD_VPCreate reads the name
 * up to its first NUL within KVD_VPNAME_SIZE bytes. The lists answer E2BIG
 * when the room given is too small, with the entries that fit and the count
 * needed in numberOfEntries. */
uint32_t KVD_VPCreate(uint32_t board, const char *name, KVD_VPATTRIB *attributes);
uint32_t KVD_VPDeleteV2(uint32_t board, HBA_WWN wwpn, uint32_t options, void *reserved);
uint32_t KVD_VPGetAttrib(uint32_t board, HBA_WWN wwpn, KVD_VPATTRIB *attributes);
uint32_t KVD_VPGetList(uint32_t board, KVD_VPENTRYLIST *list);
uint32_t KVD_GetAllNodeInfoByWWN(uint32_t board, HBA_WWN wwpn, KVD_GETNODEINFO *list);
uint32_t KVD_VPGetResource(uint32_t board, KVD_VPRESOURCE *resource);
uint32_t KVD_NPIVReadyTest(uint32_t board, uint32_t *checklist);
/* The board of the virtual port that is SCSI host `host`: the driver
 * instance and the physical port's SCSI host number. */
uint32_t vpGetPhys(uint32_t host, uint32_t *instance, uint32_t *physical_host);

#ifdef __cplusplus
}
#endif

#endif
