/*
 * Fibre Channel pass-through: extended link services (ELS), common transport
 * (CT) requests to the fabric's services, and management CT requests to a
 * remote port. Payloads are wire format (big-endian).
 */
#ifndef KVD_PASSTHRU_H
#define KVD_PASSTHRU_H

#include <time.h> /* hbaapi.h uses struct tm without including it */

#include <hbaapi.h>

#include "kvd_brdinfo.h"

/* ELS command codes (byte 0 of the request payload). */
#define ELS_CMD_LS_RJT 0x01
#define ELS_CMD_LS_ACC 0x02
#define ELS_CMD_RLS 0x0F
#define ELS_CMD_ECHO 0x10
#define ELS_CMD_RPS 0x56
#define ELS_CMD_RPL 0x57
#define ELS_CMD_RNID 0x78

#define ELS_MAX_PAYLOAD 2048
#define RNID_FMT_TOPOLOGY 0xDF /* general topology discovery data */

/* LS_RJT reason codes (byte 5 of the reject). */
#define LSRJT_INVALID_CMD 0x01
#define LSRJT_LOGICAL_ERR 0x03
#define LSRJT_UNABLE_TPC 0x09 /* unable to perform command request */
#define LSRJT_CMD_UNSUPPORTED 0x0B

/* Where an ELS goes. */
typedef struct kvd_els_dest {
    uint32_t addrType; /* KVD_ELS_ADDR_DID */
    uint32_t did;      /* destination identifier, low 24 bits */
} KVD_ELS_DEST;

KVD_STATIC_ASSERT(sizeof(KVD_ELS_DEST) == 8, "KVD_ELS_DEST is 8 bytes");

#define KVD_ELS_ADDR_DID 1

/* KVD_SendELSCmd results besides 0 and errno values. */
#define KVD_RC_ELS_RSP_TOO_SMALL 7 /* *rsp_size: the room the reply needs */
#define KVD_RC_ELS_REQ_TOO_LARGE 8 /* *rsp_size: the most the destination takes */

/* CT_IU preamble (FC-GS common header), 16 bytes. */
typedef struct kvd_ct_hdr {
    uint8_t revision; /* 1 */
    uint8_t inId[3];
    uint8_t gsType;
    uint8_t gsSubtype;
    uint8_t options;
    uint8_t rsvd1;
    uint8_t cmdRsp[2];  /* command code, or FS_ACC / FS_RJT; big-endian */
    uint8_t maxSize[2]; /* maximum / residual size in words */
    uint8_t rsvd2;
    uint8_t reason;      /* FS_RJT reason code */
    uint8_t explanation; /* FS_RJT reason code explanation */
    uint8_t vendor;
} KVD_CT_HDR;

KVD_STATIC_ASSERT(sizeof(KVD_CT_HDR) == 16, "CT preamble is 16 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_CT_HDR, gsType) == 4, "gsType offset");
KVD_STATIC_ASSERT(offsetof(KVD_CT_HDR, cmdRsp) == 8, "cmdRsp offset");
KVD_STATIC_ASSERT(offsetof(KVD_CT_HDR, reason) == 13, "reason offset");

#define CT_REVISION 1
#define CT_GS_TYPE_DIRECTORY 0xFC
#define CT_GS_TYPE_MANAGEMENT 0xFA
#define CT_GS_SUBTYPE_NAME_SERVER 0x02
#define CT_NAME_SERVER_DID 0xFFFFFC
#define CT_FABRIC_DID 0xFFFFFE

#define CT_FS_RJT 0x8001
#define CT_FS_ACC 0x8002
#define CT_GID_FT 0x0171
#define CT_GPN_ID 0x0112
#define CT_GNN_ID 0x0113
#define CT_GSPN_ID 0x0118

/* FS_RJT reason codes and name server explanations. */
#define CT_RJT_INVALID_CMD 0x01
#define CT_RJT_INVALID_VERSION 0x02
#define CT_RJT_LOGICAL_ERROR 0x03
#define CT_RJT_INVALID_SIZE 0x04
#define CT_RJT_UNABLE 0x09
#define CT_RJT_NOT_SUPPORTED 0x0B
#define CT_EXPL_NONE 0x00
#define CT_EXPL_PORT_ID_NOT_REG 0x01
#define CT_EXPL_FC4_TYPES_NOT_REG 0x07
#define CT_EXPL_SYM_PORT_NAME_NOT_REG 0x08

#define FC4_TYPE_SCSI_FCP 0x08

/* Request code of the management CT requests, as the request carries it. */
#define KVD_MGMT_CMD_CODE 0x7E3A

#ifdef __cplusplus
extern "C" {
#endif

/* One ELS to dest; the reply lands in rsp (in: room, out: its length). */
uint32_t KVD_SendELSCmd(uint32_t board, KVD_ELS_DEST *dest, void *req, uint32_t req_size, void *rsp,
                        uint32_t *rsp_size);
/* One CT request to the fabric service its GS type names. A reply longer than
 * the room is cut; *rsp_size reports its full length. */
HBA_STATUS SendCTPassThru(uint32_t board, void *req, uint32_t req_size, void *rsp, uint32_t *rsp_size);
/* One management CT request to the remote port `wwpn`; tmo in seconds, 0 for
 * the default. */
uint32_t SendMgmtCommand(uint32_t board, HBA_WWN *wwpn, void *req, uint32_t req_size, void *rsp,
                         uint32_t *rsp_size, uint32_t tmo);

#ifdef __cplusplus
}
#endif

#endif
