/*
 * The mbox rows that read and write adapter memory and configuration
 * regions (kvd_mbox_regions.cpp), declared for the table in vexa_kvdmbox.cpp.
 */
#ifndef KVD_MBOX_REGIONS_H
#define KVD_MBOX_REGIONS_H

#include "kvd.h"

KVD_HANDLER(dmpmem);
KVD_HANDLER(dmpmem_ext);
KVD_HANDLER(dmpmem3_ext);
KVD_HANDLER(udtcfg_ext);
KVD_HANDLER(udtcfg2_ext);
KVD_HANDLER(udtcfg3_ext);

#endif
