/*
 * The driver's SLI state record as the ring view reads it: per-ring sizes,
 * addresses and indexes, and the flags saying where the rings live.
 *
 * It overlays the start of the shared data area; the adapter memory image
 * that the ring addresses point into shares the same bytes, so the rings
 * lie beyond the record (KVD_SLI_RING_BASE and up).
 */
#ifndef KVD_SLI_H
#define KVD_SLI_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define KVD_SLI_STATIC_ASSERT(c, m) static_assert(c, m)
#else
#define KVD_SLI_STATIC_ASSERT(c, m) _Static_assert(c, m)
#endif

#define KVD_SLI_MAX_RINGS 4
#define KVD_IOCB_SIZE 32          /* eight 32-bit words */
#define KVD_SLIM_IMAGE_SIZE 16384 /* the adapter memory image (slim view) */
#define KVD_SLI_RING_BASE 0x100   /* first ring byte in the image */

/* binfo_fc_flag: the rings live in host memory (SLI-2); ring addresses are
 * then host addresses counted from binfo_fc_slim2_virt. */
#define FC_SLI2 0x200

/* A driver pointer as the record keeps it: low and high 32-bit words. */
typedef struct kvdptr {
    uint32_t low;
    uint32_t high;
} kvdptr_t;

/* One ring: sizes in IOCBs, where its two halves start, next slots. */
typedef struct kvdsliring {
    uint16_t numCiocb;    /* command ring entries */
    uint16_t numRiocb;    /* response ring entries */
    kvdptr_t cmdringaddr; /* command ring: image offset, or host address (SLI-2) */
    kvdptr_t rspringaddr; /* response ring: likewise */
    uint8_t cmdidx;       /* next command slot the host fills */
    uint8_t rspidx;       /* next response slot the host reads */
    uint16_t rsvd;
} kvdsliring;

KVD_SLI_STATIC_ASSERT(sizeof(kvdsliring) == 24, "kvdsliring is 24 bytes");
KVD_SLI_STATIC_ASSERT(offsetof(kvdsliring, cmdringaddr) == 4, "cmdringaddr offset");
KVD_SLI_STATIC_ASSERT(offsetof(kvdsliring, cmdidx) == 20, "cmdidx offset");

/* The rings as the driver initialised them. */
typedef struct kvdsliinit {
    uint32_t num_rings; /* rings in use (0 on SLI-4: no IOCB rings) */
    uint32_t sli_mode;  /* SLI level the driver runs the board at */
    kvdsliring ringinit[KVD_SLI_MAX_RINGS];
} kvdsliinit;

KVD_SLI_STATIC_ASSERT(sizeof(kvdsliinit) == 104, "kvdsliinit is 104 bytes");

typedef struct kvdsli {
    kvdsliinit sliinit;
    uint32_t binfo_fc_flag;
    uint32_t rsvd;
    kvdptr_t binfo_fc_slim2_virt; /* host address of the SLI-2 area */
} kvdsli_t;

KVD_SLI_STATIC_ASSERT(sizeof(kvdsli_t) == 120, "kvdsli_t is 120 bytes");
KVD_SLI_STATIC_ASSERT(offsetof(kvdsli_t, binfo_fc_flag) == 104, "binfo_fc_flag offset");
KVD_SLI_STATIC_ASSERT(sizeof(kvdsli_t) <= KVD_SLI_RING_BASE, "the record ends before the rings");

#endif
