/*
 * Nodes, VPD, bindings and target mapping: what the commands share with
 * their tests.
 */
#ifndef KVD_NODES_CMDS_H
#define KVD_NODES_CMDS_H

#include <stdint.h>

#include "kvd.h"

#define KVD_BIND_ROOM 200         /* bindings "listbind" asks for */
#define KVD_FCPMAP_SIZE 79872     /* the plain mapping buffer */
#define KVD_FCPMAP_ROOM 256       /* entries asked for in it */
#define KVD_FCPMAP_V2_SIZE 145408 /* the LUID mapping buffer */
#define KVD_FCPMAP_V2_ROOM                                                                                   \
    ((KVD_FCPMAP_V2_SIZE - offsetof(HBA_FCPTARGETMAPPINGV2, entry)) / sizeof(HBA_FCPSCSIENTRYV2))
#define KVD_EXTRA_ROOM 128 /* inquiry and capacity replies, and their sense */

/* The word "listbind" prints for a binding type. */
const char *kvd_bindtype_word(uint32_t type);
/* Capacity of `blocks` blocks of `blocksize` bytes, in 32 bits, scaled to
 * the unit it returns ("GB", "MB" or "B"). */
const char *kvd_capacity(uint32_t blocks, uint32_t blocksize, uint32_t *capacity);
/* The 8-byte FCP LUN of a LUN number. */
uint64_t kvd_fcp_lun(uint32_t lun);
/* Inquiry and capacity of one logical unit, printed. */
void fcpmap_get_extra(HBA_WWN wwpn, uint32_t lun);

#endif
