/*
 * Management information commands: what they share with their tests.
 */
#ifndef KVD_MGMT_CMDS_H
#define KVD_MGMT_CMDS_H

#include <stdint.h>

#define KVD_RNID_REPLY_MAX 1024 /* the reply buffer "rnid" hands over */
#define KVD_RNID_WORDS_SHOWN 8

/* Prints the first words of an RNID reply of `length` bytes held in a
 * buffer of KVD_RNID_REPLY_MAX bytes. */
void kvd_rnid_dump(const uint8_t *reply, uint32_t length);

#endif
