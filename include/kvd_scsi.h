/*
 * SCSI commands to remote targets: the FCP command block, the FCP response,
 * fixed-format sense data, and the library operations that carry them.
 *
 * All of these records are wire format (big-endian multi-byte fields).
 */
#ifndef KVD_SCSI_H
#define KVD_SCSI_H

#include <time.h> /* hbaapi.h uses struct tm without including it */

#include <hbaapi.h>

#include "kvd_brdinfo.h"

/* FCP command block (FCP_CMND payload), 32 bytes. */
typedef struct fcp_cmnd {
    uint8_t fcpLunMsl[4]; /* LUN bytes 0-3: single-level LUN in bytes 0-1 */
    uint8_t fcpLunLsl[4]; /* LUN bytes 4-7 */
    uint8_t fcpCntl0;     /* command reference number */
    uint8_t fcpCntl1;     /* task attribute (0: simple) */
    uint8_t fcpCntl2;     /* task management flags */
    uint8_t fcpCntl3;     /* data direction: FCP_WRDATA, FCP_RDDATA */
    uint8_t fcpCdb[16];   /* CDB, unused bytes zero */
    uint8_t fcpDl[4];     /* data length in bytes, big-endian */
} FCP_CMND;

KVD_STATIC_ASSERT(sizeof(FCP_CMND) == 32, "fcp_cmnd is 32 bytes");
KVD_STATIC_ASSERT(offsetof(FCP_CMND, fcpLunLsl) == 4, "fcpLunLsl offset");
KVD_STATIC_ASSERT(offsetof(FCP_CMND, fcpCntl0) == 8, "fcpCntl0 offset");
KVD_STATIC_ASSERT(offsetof(FCP_CMND, fcpCntl3) == 11, "fcpCntl3 offset");
KVD_STATIC_ASSERT(offsetof(FCP_CMND, fcpCdb) == 12, "fcpCdb offset");
KVD_STATIC_ASSERT(offsetof(FCP_CMND, fcpDl) == 28, "fcpDl offset");

#define FCP_WRDATA 0x01 /* fcpCntl3: data goes to the target */
#define FCP_RDDATA 0x02 /* fcpCntl3: data comes from the target */

/* FCP response (FCP_RSP payload): this fixed part, then the response
 * information (fcpRspLen bytes), then the sense data (fcpSnsLen bytes). */
typedef struct fcp_rsp {
    uint8_t rspRsvd[8];
    uint8_t rspRetryDelay[2];
    uint8_t rspFlags;      /* FCP_*_VALID, FCP_RESID_* */
    uint8_t rspScsiStatus; /* SCSI status byte */
    uint8_t rspResid[4];   /* residual byte count, big-endian */
    uint8_t rspSnsLen[4];  /* sense length, big-endian */
    uint8_t rspRspLen[4];  /* response information length, big-endian */
} FCP_RSP;

KVD_STATIC_ASSERT(sizeof(FCP_RSP) == 24, "fcp_rsp is 24 bytes");
KVD_STATIC_ASSERT(offsetof(FCP_RSP, rspFlags) == 10, "rspFlags offset");
KVD_STATIC_ASSERT(offsetof(FCP_RSP, rspResid) == 12, "rspResid offset");
KVD_STATIC_ASSERT(offsetof(FCP_RSP, rspRspLen) == 20, "rspRspLen offset");

#define FCP_RSP_LEN_VALID 0x01
#define FCP_SNS_LEN_VALID 0x02
#define FCP_RESID_OVER 0x04  /* the command needed more than fcpDl */
#define FCP_RESID_UNDER 0x08 /* fewer bytes moved than fcpDl */

/* SCSI status bytes. */
#define SCSI_STAT_GOOD 0x00
#define SCSI_STAT_CHECK_CONDITION 0x02
#define SCSI_STAT_BUSY 0x08

/* Operation codes the targets serve. */
#define SCSI_TEST_UNIT_READY 0x00
#define SCSI_REQUEST_SENSE 0x03
#define SCSI_INQUIRY 0x12
#define SCSI_READ_CAPACITY_10 0x25
#define SCSI_READ_10 0x28
#define SCSI_WRITE_10 0x2A
#define SCSI_SERVICE_ACTION_IN_16 0x9E /* READ CAPACITY(16) with action 0x10 */
#define SCSI_SAI_READ_CAPACITY_16 0x10
#define SCSI_REPORT_LUNS 0xA0

#define SCSI_BLOCK_SIZE 512

/* VPD pages. */
#define VPD_SUPPORTED_PAGES 0x00
#define VPD_UNIT_SERIAL 0x80
#define VPD_DEVICE_ID 0x83

/* Fixed-format sense data, 18 bytes. */
typedef struct scsi_sense {
    uint8_t responseCode; /* 0x70: current error, fixed format */
    uint8_t obsolete;
    uint8_t senseKey; /* low 4 bits */
    uint8_t information[4];
    uint8_t addSenseLen; /* bytes that follow: 10 */
    uint8_t cmdSpecific[4];
    uint8_t asc;
    uint8_t ascq;
    uint8_t fruCode;
    uint8_t senseKeySpecific[3];
} SCSI_SENSE;

KVD_STATIC_ASSERT(sizeof(SCSI_SENSE) == 18, "fixed sense data is 18 bytes");
KVD_STATIC_ASSERT(offsetof(SCSI_SENSE, addSenseLen) == 7, "addSenseLen offset");
KVD_STATIC_ASSERT(offsetof(SCSI_SENSE, asc) == 12, "asc offset");

#define SENSE_FIXED_CURRENT 0x70
#define SENSE_KEY_NO_SENSE 0x0
#define SENSE_KEY_ILLEGAL_REQUEST 0x5
#define ASC_INVALID_OPCODE 0x20       /* INVALID COMMAND OPERATION CODE */
#define ASC_LBA_OUT_OF_RANGE 0x21     /* LOGICAL BLOCK ADDRESS OUT OF RANGE */
#define ASC_INVALID_FIELD_IN_CDB 0x24 /* INVALID FIELD IN CDB */
#define ASC_LUN_NOT_SUPPORTED 0x25    /* LOGICAL UNIT NOT SUPPORTED */

#ifdef __cplusplus
extern "C" {
#endif

/* SCSI commands built by the library. `lun` is the 8-byte SCSI LUN in memory
 * order (a single-level LUN: bytes 0-1, the rest zero). Sizes are in/out: in,
 * the room of the buffer; out, the length the target returned. A command the
 * target ends with CHECK CONDITION succeeds with its sense data in the sense
 * buffer (sense size non-zero). */
HBA_STATUS SendScsiInquiry(uint32_t board, HBA_WWN *wwpn, uint64_t lun, uint8_t evpd, uint32_t page_code,
                           void *rsp, uint32_t *rsp_size, void *sense, uint32_t *sense_size);
HBA_STATUS SendReadCapacity(uint32_t board, HBA_WWN *wwpn, uint64_t lun, void *rsp, uint32_t *rsp_size,
                            void *sense, uint32_t *sense_size);
HBA_STATUS SendReportLUNs(uint32_t board, HBA_WWN *wwpn, void *rsp, uint32_t *rsp_size, void *sense,
                          uint32_t *sense_size);
HBA_STATUS SendScsiRead(uint32_t board, HBA_WWN *wwpn, uint64_t lun, uint32_t lba, void *data,
                        uint32_t *data_size, void *sense, uint32_t *sense_size);
HBA_STATUS SendScsiWrite(uint32_t board, HBA_WWN *wwpn, uint64_t lun, uint32_t lba, void *data,
                         uint32_t *data_size, void *sense, uint32_t *sense_size);
HBA_STATUS SendScsiCDB(uint32_t board, HBA_WWN *wwpn, uint64_t lun, uint32_t opcode, void *rsp,
                       uint32_t *rsp_size, void *sense, uint32_t *sense_size);

/* The same, sent from the local port named by `lwwpn`. The read-capacity
 * form takes the LUN as a plain number. */
uint32_t KVD_SendScsiInquiryByWWN(uint32_t board, HBA_WWN *lwwpn, HBA_WWN *rwwpn, uint64_t lun, uint8_t evpd,
                                  uint32_t page_code, void *rsp, uint32_t *rsp_size, void *sense,
                                  uint32_t *sense_size);
uint32_t KVD_SendReadCapacityByWWN(uint32_t board, HBA_WWN *lwwpn, HBA_WWN *rwwpn, uint32_t lun, void *rsp,
                                   uint32_t *rsp_size, void *sense, uint32_t *sense_size);
uint32_t KVD_SendReportLUNsByWWN(uint32_t board, HBA_WWN *lwwpn, HBA_WWN *rwwpn, void *rsp,
                                 uint32_t *rsp_size, void *sense, uint32_t *sense_size);

/* Raw FCP: the caller's FCP_CMND (fcp_len bytes, at least 32) runs on the
 * target; the data moves through `data` (in: room, out: bytes moved) and the
 * FCP_RSP comes back in `rsp`. */
HBA_STATUS SendFcpCmd(uint32_t board, HBA_WWN *wwpn, void *fcp_cmnd, uint32_t fcp_len, void *data,
                      uint32_t *data_size, void *rsp, uint32_t *rsp_size);

#ifdef __cplusplus
}
#endif

#endif
