/*
 * Board table records and the shell's shared data area.
 *
 * The board-access library fills the board table; the shell only reads it.
 * Every record here is laid out exactly as the library writes it, so each
 * size and offset is pinned down with a static assertion.
 */
#ifndef KVD_BRDINFO_H
#define KVD_BRDINFO_H

#include <stddef.h>
#include <stdint.h>

#include "kvd_sli.h"

#ifdef __cplusplus
#define KVD_STATIC_ASSERT(c, m) static_assert(c, m)
#else
#define KVD_STATIC_ASSERT(c, m) _Static_assert(c, m)
#endif

#define KVD_MAX_BOARDS 32
#define KVD_DATA_AREA_SIZE 65536

/* Board-table entry filled by KVD_InitDiagEnv. */
typedef struct kvd_brdinfo {
    uint32_t a_mem_hi;    /* adapter memory base, high half */
    uint32_t a_mem_low;   /* adapter memory base, low half */
    uint32_t a_flash_hi;  /* flash base, high half */
    uint32_t a_flash_low; /* flash base, low half */
    uint32_t a_ctlreg_hi; /* control register base, high half */
    uint32_t a_ctlreg_low;
    uint32_t a_intrlvl; /* interrupt level */
    uint32_t a_pci;     /* (device << 16) | vendor; 0 = empty entry */
    uint32_t a_busid;   /* PCI bus number */
    uint32_t a_devid;   /* PCI device number */
    uint8_t a_pciFunc;  /* PCI function number */
    uint8_t a_siglvl;   /* signal level */
    uint16_t a_ddi;     /* driver instance ("vexa%d") */
    uint32_t a_onmask;  /* boards online (entry 0 only) */
    uint32_t a_offmask; /* boards offline (entry 0 only) */
    char a_drvrid[16];  /* driver version text (entry 0 only) */
    char a_fwname[32];  /* firmware name, empty when unknown */
    uint8_t a_wwpn[8];  /* port WWN, wire order */
} KVD_BRDINFO;

KVD_STATIC_ASSERT(sizeof(KVD_BRDINFO) == 108, "KVD_BRDINFO is 108 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_BRDINFO, a_pci) == 28, "a_pci offset");
KVD_STATIC_ASSERT(offsetof(KVD_BRDINFO, a_pciFunc) == 40, "a_pciFunc offset");
KVD_STATIC_ASSERT(offsetof(KVD_BRDINFO, a_ddi) == 42, "a_ddi offset");
KVD_STATIC_ASSERT(offsetof(KVD_BRDINFO, a_onmask) == 44, "a_onmask offset");
KVD_STATIC_ASSERT(offsetof(KVD_BRDINFO, a_drvrid) == 52, "a_drvrid offset");
KVD_STATIC_ASSERT(offsetof(KVD_BRDINFO, a_fwname) == 68, "a_fwname offset");
KVD_STATIC_ASSERT(offsetof(KVD_BRDINFO, a_wwpn) == 100, "a_wwpn offset");

/* Older board-table entry, filled only by the legacy InitDiagEnv. */
typedef struct brdinfo {
    uint32_t a_mem_hi;
    uint32_t a_mem_low;
    uint32_t a_flash_hi;
    uint32_t a_flash_low;
    uint32_t a_ctlreg_hi;
    uint32_t a_ctlreg_low;
    uint32_t a_intrlvl;
    uint32_t a_pci;
    uint32_t a_busid;
    uint32_t a_devid;
    uint8_t a_rsvd1;
    uint8_t a_rsvd2;
    uint8_t a_siglvl;
    uint8_t a_ddi;
    uint32_t a_onmask;
    uint32_t a_offmask;
    char a_drvrid[16];
    char a_fwname[32];
} BRDINFO;

KVD_STATIC_ASSERT(sizeof(BRDINFO) == 100, "BRDINFO is 100 bytes");
KVD_STATIC_ASSERT(offsetof(BRDINFO, a_ddi) == 43, "legacy a_ddi offset");
KVD_STATIC_ASSERT(offsetof(BRDINFO, a_onmask) == 44, "legacy a_onmask offset");
KVD_STATIC_ASSERT(offsetof(BRDINFO, a_fwname) == 68, "legacy a_fwname offset");

/* The shared 64 KiB data buffer and its views. */
union outdata {
    uint64_t dataout[KVD_DATA_AREA_SIZE / 8];
    char slim[KVD_SLIM_IMAGE_SIZE];
    kvdsli_t sli;
    uint8_t bytes[KVD_DATA_AREA_SIZE];
};

KVD_STATIC_ASSERT(sizeof(union outdata) == KVD_DATA_AREA_SIZE, "outdata is 64 KiB");

/* The shell's one process-wide data area: the buffer, then the board table. */
struct kvd_area {
    union outdata d;
    KVD_BRDINFO brdaddr[KVD_MAX_BOARDS];
};

KVD_STATIC_ASSERT(offsetof(struct kvd_area, brdaddr) == KVD_DATA_AREA_SIZE, "board table follows the buffer");
KVD_STATIC_ASSERT(sizeof(((struct kvd_area *)0)->brdaddr) == 3456, "32-entry board table is 3456 bytes");

#endif
