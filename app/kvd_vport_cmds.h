/*
 * NPIV virtual ports: what the commands share with their tests.
 */
#ifndef KVD_VPORT_CMDS_H
#define KVD_VPORT_CMDS_H

#include <stdint.h>

#include "kvd.h"

#define KVD_VPNAME "kvd application vport name"
/* Entries that fit in the 65536-byte shared buffer after the count. */
#define KVD_VPLIST_ROOM ((65536 - offsetof(KVD_VPENTRYLIST, vpentry)) / sizeof(KVD_VPENTRY))
#define KVD_VPNODE_ROOM ((65536 - offsetof(KVD_GETNODEINFO, nodeInfo)) / sizeof(KVD_NODEINFOENTRY))

static_assert(KVD_VPLIST_ROOM == 3276, "vport list room");
static_assert(KVD_VPNODE_ROOM == 210, "vport node room");

/* The nine lines of the NPIV readiness checklist. */
void print_npiv_checklist(uint32_t bits);

#endif
