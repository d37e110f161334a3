/*
 * FCoE fabric selection of a native FCoE port and per-target FCP priority:
 * the FCF connection list (which FCFs the port may log in through, and in
 * what preference), the table of FCFs the port discovered, and the
 * per-target FCP priority configuration.
 */
#ifndef KVD_FCF_H
#define KVD_FCF_H

#include "kvd_brdinfo.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- FCF connection list ---- */

#define KVD_FCFCONN_VERSION 1
#define KVD_FCFCONN_MAX 16

/* flags of a connection entry: which fields an FCF must match, and the
 * entry's role. */
#define KVD_FCFCONN_VALID 0x0001         /* the entry is in use */
#define KVD_FCFCONN_PRIMARY 0x0002       /* preferred over non-primary entries */
#define KVD_FCFCONN_MAC_VALID 0x0004     /* fcfMac must match */
#define KVD_FCFCONN_SWNAME_VALID 0x0008  /* switchName must match */
#define KVD_FCFCONN_FABNAME_VALID 0x0010 /* fabricName must match */
#define KVD_FCFCONN_VLAN_VALID 0x0020    /* vlanId must match */
#define KVD_FCFCONN_ALL 0x003f

typedef struct KVD_FCFConnEntry {
    uint16_t flags;   /* KVD_FCFCONN_* */
    uint16_t vlanId;  /* 1..4094 with KVD_FCFCONN_VLAN_VALID */
    uint8_t priority; /* order among admitted FCFs: lower first */
    uint8_t reserved;
    uint8_t fcfMac[6];     /* the FCF, named by its MAC address */
    uint8_t switchName[8]; /* wire order */
    uint8_t fabricName[8];
    uint8_t reserved2[4];
} KVD_FCFCONNENTRY;

typedef struct KVD_FCFConnList {
    uint8_t version; /* KVD_FCFCONN_VERSION, set by the caller both ways */
    uint8_t reserved[3];
    uint32_t numEntries; /* at most KVD_FCFCONN_MAX */
    KVD_FCFCONNENTRY entries[KVD_FCFCONN_MAX];
} KVD_FCFCONNLIST;

KVD_STATIC_ASSERT(sizeof(KVD_FCFCONNENTRY) == 32, "KVD_FCFCONNENTRY is 32 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_FCFCONNENTRY, vlanId) == 2, "vlanId offset");
KVD_STATIC_ASSERT(offsetof(KVD_FCFCONNENTRY, priority) == 4, "priority offset");
KVD_STATIC_ASSERT(offsetof(KVD_FCFCONNENTRY, fcfMac) == 6, "fcfMac offset");
KVD_STATIC_ASSERT(offsetof(KVD_FCFCONNENTRY, switchName) == 12, "switchName offset");
KVD_STATIC_ASSERT(offsetof(KVD_FCFCONNENTRY, fabricName) == 20, "fabricName offset");
KVD_STATIC_ASSERT(sizeof(KVD_FCFCONNLIST) == 520, "KVD_FCFCONNLIST is 520 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_FCFCONNLIST, numEntries) == 4, "numEntries offset");
KVD_STATIC_ASSERT(offsetof(KVD_FCFCONNLIST, entries) == 8, "entries offset");

/* ---- Discovered FCFs ---- */

/* Most entries one KVD_FCoEGetFCFTable call writes. */
#define KVD_FCF_TABLE_MAX 64

/* state of a discovered FCF. */
#define KVD_FCF_STATE_AVAILABLE 1 /* answers the port's parameters; may be chosen */
#define KVD_FCF_STATE_LOGGED_IN 2 /* the port is logged in to the fabric through it */
#define KVD_FCF_STATE_EXCLUDED 3  /* no connection-list entry admits it */
#define KVD_FCF_STATE_MISMATCH 4  /* other FC-MAP, or not on the port's VLAN */

typedef struct KVD_FCFEntry {
    uint8_t mac[6];
    uint16_t vlanId; /* the VLAN it answered discovery on */
    uint8_t switchName[8];
    uint8_t fabricName[8];
    uint32_t fcMap;   /* 24 bits */
    uint8_t priority; /* advertised priority: lower is preferred */
    uint8_t reserved;
    uint16_t state; /* KVD_FCF_STATE_* */
} KVD_FCFENTRY;

KVD_STATIC_ASSERT(sizeof(KVD_FCFENTRY) == 32, "KVD_FCFENTRY is 32 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_FCFENTRY, vlanId) == 6, "vlanId offset");
KVD_STATIC_ASSERT(offsetof(KVD_FCFENTRY, switchName) == 8, "switchName offset");
KVD_STATIC_ASSERT(offsetof(KVD_FCFENTRY, fabricName) == 16, "fabricName offset");
KVD_STATIC_ASSERT(offsetof(KVD_FCFENTRY, fcMap) == 24, "fcMap offset");
KVD_STATIC_ASSERT(offsetof(KVD_FCFENTRY, priority) == 28, "priority offset");
KVD_STATIC_ASSERT(offsetof(KVD_FCFENTRY, state) == 30, "state offset");

/* ---- Per-target FCP priority ---- */

#define KVD_QOS_VERSION 1
#define KVD_QOS_MAX_ENTRIES 32
#define KVD_QOS_MAX_PRIORITY 7

/* flags of a target's entry. */
#define KVD_QOS_ENABLED 0x0001 /* the entry's priority is to be used */
#define KVD_QOS_ACTIVE 0x0002  /* in use now: enabled, the global flag on, target logged in */

typedef struct KVD_QoSEntry {
    uint8_t targetWWPN[8]; /* wire order */
    uint16_t flags;        /* KVD_QOS_*; ACTIVE is read-only */
    uint8_t priority;      /* 0..KVD_QOS_MAX_PRIORITY */
    uint8_t reserved;
} KVD_QOSENTRY;

typedef struct KVD_QoSConfig {
    uint8_t version; /* KVD_QOS_VERSION, set by the caller both ways */
    uint8_t reserved[3];
    uint32_t numEntries; /* at most KVD_QOS_MAX_ENTRIES */
    KVD_QOSENTRY entries[KVD_QOS_MAX_ENTRIES];
} KVD_QOSCONFIG;

KVD_STATIC_ASSERT(sizeof(KVD_QOSENTRY) == 12, "KVD_QOSENTRY is 12 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_QOSENTRY, flags) == 8, "flags offset");
KVD_STATIC_ASSERT(offsetof(KVD_QOSENTRY, priority) == 10, "priority offset");
KVD_STATIC_ASSERT(sizeof(KVD_QOSCONFIG) == 392, "KVD_QOSCONFIG is 392 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_QOSCONFIG, numEntries) == 4, "numEntries offset");
KVD_STATIC_ASSERT(offsetof(KVD_QOSCONFIG, entries) == 8, "entries offset");

/* FCoE boards only (EOPNOTSUPP elsewhere). The list's version must be
 * KVD_FCFCONN_VERSION (EINVAL). A list the port cannot use (too many
 * entries, unknown flags, a bad VLAN) is refused with EINVAL. */
uint32_t KVD_FCoEGetConnList(uint32_t board, KVD_FCFCONNLIST *list);
uint32_t KVD_FCoESetConnList(uint32_t board, KVD_FCFCONNLIST *list);

/* *count is the room in `table` (entries) on the way in and the number of
 * FCFs discovered on the way out, which may exceed the room: only the room
 * (at most KVD_FCF_TABLE_MAX entries) is written. */
uint32_t KVD_FCoEGetFCFTable(uint32_t board, uint32_t *count, KVD_FCFENTRY *table);

/* One entry per FCP target the port sees. Set: each entry names a known
 * target (ENOENT otherwise) with a priority up to KVD_QOS_MAX_PRIORITY
 * (EINVAL otherwise); targets the list leaves out keep their settings. */
uint32_t KVD_QoSGetConfig(uint32_t board, KVD_QOSCONFIG *config);
uint32_t KVD_QoSSetConfig(uint32_t board, KVD_QOSCONFIG *config);

#ifdef __cplusplus
}
#endif

#endif
