/*
 * PCI configuration space, host and control registers, adapter memory
 * (SLIM), board environment and dump regions.
 */
#ifndef KVD_REGS_H
#define KVD_REGS_H

#include <stdint.h>

#include "kvd_brdinfo.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Configuration space: a 256-byte header with its capabilities. */
#define KVD_PCI_CFG_SIZE 256

/* Host interface registers, by byte offset in the control register space. */
#define KVD_REG_HA 0  /* host attention */
#define KVD_REG_CA 4  /* chip attention */
#define KVD_REG_HS 8  /* host status */
#define KVD_REG_HC 12 /* host control */

/* Host attention (HA): one nibble per ring, then the adapter's attentions.
 * Bits are cleared by writing ones. */
#define HA_R0ATT 0x00000008u
#define HA_R1ATT 0x00000080u
#define HA_R2ATT 0x00000800u
#define HA_R3ATT 0x00008000u
#define HA_ERATT 0x20000000u /* error attention */
#define HA_LATT 0x40000000u  /* link attention */
#define HA_MBATT 0x80000000u /* mailbox attention */

/* Chip attention (CA): the host's notices to the adapter. */
#define CA_R0ATT 0x00000008u
#define CA_R1ATT 0x00000080u
#define CA_R2ATT 0x00000800u
#define CA_R3ATT 0x00008000u
#define CA_MBATT 0x80000000u /* a mailbox command waits in SLIM */

/* Host status (HS): read-only view of the adapter's state. */
#define HS_MBRDY 0x00400000u /* mailbox accepts commands */
#define HS_FFRDY 0x00800000u /* firmware ready */
#define HS_FFER3 0x20000000u /* firmware stopped for a diagnostic dump */
#define HS_FFER1 0x80000000u /* fatal firmware error */

/* Host control (HC): interrupt enables and the firmware restart bit. */
#define HC_R0INT_ENA 0x00000001u
#define HC_R1INT_ENA 0x00000002u
#define HC_R2INT_ENA 0x00000004u
#define HC_R3INT_ENA 0x00000008u
#define HC_INITFF 0x08000000u /* restart the firmware; reads as 0 */
#define HC_ERINT_ENA 0x20000000u
#define HC_LAINT_ENA 0x40000000u
#define HC_MBINT_ENA 0x80000000u

/* KVD_SetDumpEnv flags and results. */
#define KVD_DUMPENV_SHOW 0
#define KVD_DUMPENV_ONLINE 1
#define KVD_DUMPENV_OFFLINE 2
#define KVD_DUMPENV_WARM_START 3
#define KVD_DUMPENV_FORCE_DUMP 4

/* SetDiagEnv and SetBrdEnv flags and results (0 is failure). */
#define KVD_DIAGENV_SHOW 0
#define KVD_DIAGENV_ONLINE 1
#define KVD_DIAGENV_OFFLINE 2

/* Driver dump regions (KVD_GetDriverDumpRegion). */
#define KVD_DUMP_REGION_REGS 0   /* HA, CA, HS, HC */
#define KVD_DUMP_REGION_PCI 1    /* the first 64 bytes of configuration space */
#define KVD_DUMP_REGION_MBOX 2   /* the mailbox area of SLIM (SLI-2 and SLI-3) */
#define KVD_DUMP_REGION_STATE 3  /* the driver's view of the board */
#define KVD_DUMP_REGION_FWDUMP 4 /* header of the last forced dump */
#define KVD_DUMP_REGION_MAX 256  /* bytes a region returns at most */

/* getRegionData: the dump type of non-volatile configuration regions. */
#define KVD_REGION_TYPE_CONFIG 2
#define KVD_REGION_MAX 2048 /* bytes a configuration region holds at most */

/* Configuration space: `count` bytes from `offset` into `buffer`. */
uint32_t KVD_ReadPciCfg(uint32_t board, uint8_t *buffer, uint32_t offset, uint32_t count);
/* Writes one 32-bit word (`count` is 4) at a 4-aligned offset. */
uint32_t WritePciCfg(uint32_t board, uint32_t *value, uint32_t offset, uint32_t count);

/* Control registers: one 32-bit register at a 4-aligned byte offset. */
uint32_t ReadCtlReg(uint32_t board, uint32_t *value, uint32_t offset);
uint32_t WriteCtlReg(uint32_t board, uint32_t *value, uint32_t offset);

/* Adapter memory (SLIM): `count` bytes at byte `offset`. */
uint32_t WriteMem(uint32_t board, uint8_t *buffer, uint32_t offset, uint32_t count);
uint32_t ReadMem(uint32_t board, uint8_t *buffer, uint32_t offset, uint32_t count);

/* Board environment. KVD_SetDumpEnv returns the resulting mode (1 to 4) or
 * 0 on failure; SetDiagEnv (all boards) and SetBrdEnv return 1 online,
 * 2 offline, 0 on failure. */
uint32_t KVD_SetDumpEnv(uint32_t board, uint32_t flag);
uint32_t SetDiagEnv(uint32_t flag);
uint32_t SetBrdEnv(uint32_t board, uint32_t flag);

/* Driver dump region `region` into `buffer`; *length holds the buffer's size
 * on entry and the bytes returned on exit. */
uint32_t KVD_GetDriverDumpRegion(uint32_t board, uint32_t region, uint8_t *buffer, uint32_t *length);

/* Non-volatile configuration region: `type` is KVD_REGION_TYPE_CONFIG;
 * *size holds the bytes wanted (and the buffer's size) on entry and the
 * bytes returned on exit; *mbx_status the firmware's status of the read. */
uint32_t getRegionData(uint32_t board, uint32_t type, uint32_t region, uint32_t offset, uint8_t *buffer,
                       uint32_t *size, uint16_t *mbx_status, uint32_t flags);

/* Writes `size` bytes from `buffer` at byte `offset` of a configuration
 * region; the range must lie inside the region (a region never grows).
 * The written bytes read back through getRegionData and survive resets.
 * The driver's region (23) holds the port settings the driver stores (the
 * FCoE parameters and FCF connection list among them): a write there is
 * loaded into those settings at once, and an image the driver cannot load
 * is refused whole (EINVAL); a restore returns them to their power-on
 * values. */
uint32_t setRegionData(uint32_t board, uint32_t type, uint32_t region, uint32_t offset, uint8_t *buffer,
                       uint32_t size, uint16_t *mbx_status, uint32_t flags);

/* Configuration update through the firmware's update mailbox, in whole
 * words: KVD_UPDATE_CFG_WRITE writes `length` bytes (a multiple of 4, at
 * most KVD_REGION_MAX) from `buffer` at the 4-aligned `offset`;
 * KVD_UPDATE_CFG_RESTORE returns the region to the contents the adapter
 * was built with (offset, buffer and length unused). */
#define KVD_UPDATE_CFG_WRITE 0
#define KVD_UPDATE_CFG_RESTORE 1
uint32_t KVD_IssueUpdateCfgMBox(uint32_t board, uint32_t request, uint32_t region, uint32_t offset,
                                uint8_t *buffer, uint32_t length, uint16_t *mbx_status);

#ifdef __cplusplus
}
#endif

#endif
