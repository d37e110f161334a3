// SCSI commands to a target: "sendscsi" and its sub-commands, and the FCP
// READ(10)/WRITE(10) senders that "sendfcp" uses.
//
// The library builds the CDBs for sendscsi; the shell checks the words,
// lays the response and sense buffers out in the shared data area (the
// response first, the sense buffer right behind it) and dumps what came
// back.
#include <stdlib.h>
#include <string.h>

#include "kvd.h"

#define SCSI_RSP_ROOM 128
#define SCSI_LUNS_ROOM 512
#define SCSI_SENSE_ROOM 128
#define SCSI_CNT_MAX 10240

enum kvd_scsi_sub {
    SCSI_INQUIRY_SUB,
    SCSI_REPORTLUN,
    SCSI_READCAP,
    SCSI_INQUIRYWWN,
    SCSI_REPORTLUNWWN,
    SCSI_READCAPWWN,
    SCSI_READ_SUB,
    SCSI_WRITE_SUB,
    SCSI_CDB_SUB,
    SCSI_SUB_COUNT
};

/* Sub-command words in the order they are matched, with the fewest words
 * each needs and the usage line printed when it has fewer. */
static const struct {
    const char *word;
    int32_t min_words;
    const char *usage;
} scsi_subs[SCSI_SUB_COUNT] = {
    {"inquiry", 5, "Usage: sendscsi inquiry   wwpn lun evpd [pagecode]"},
    {"reportlun", 3, NULL},
    {"readcap", 4, "Usage: sendscsi readcap   wwpn lun"},
    {"inquirywwn", 6, "Usage: sendscsi inquirywwn lwwpn rwwpn lun evpd [pagecode]"},
    {"reportlunwwn", 3, NULL},
    {"readcapwwn", 5, "Usage: sendscsi readcap   wwpn lun"},
    {"read", 6, "Usage: sendscsi read      wwpn lun sectorAddress cnt"},
    {"write", 6, "Usage: sendscsi write     wwpn lun sectorAddress cnt [pattern]"},
    {"cdb", 5, "Usage: sendscsi cdb  wwpn lun opcode"},
};

static void sendscsi_usage(void)
{
    printf("Usage: sendscsi inquiry   wwpn lun evpd [pagecode]\n");
    printf("Usage: sendscsi readcap   wwpn lun\n");
    printf("Usage: sendscsi reportlun wwpn\n");
    printf("Usage: sendscsi inquirywwn   lwwpn rwwpn lun evpd [pagecode]\n");
    printf("Usage: sendscsi readcapwwn   lwwpn rwwpn lun\n");
    printf("Usage: sendscsi reportlunwwn lwwpn rwwpn\n");
    printf("Usage: sendscsi read      wwpn lun sectorAddress cnt\n");
    printf("Usage: sendscsi write     wwpn lun sectorAddress cnt [pattern]\n");
    printf("Usage: sendscsi cdb       wwpn lun opcode\n");
}

/* Word i of the line, or an empty word when the line is shorter: an absent
 * WWN then fails to parse like an empty one. */
static const char *kvd_word(int32_t i)
{
    return (i >= 0 && i < margc && margv[i] != NULL) ? margv[i] : "";
}

static uint32_t kvd_number(int32_t i)
{
    return (uint32_t)strtoul(kvd_word(i), NULL, 0);
}

/* The LUN as the library takes it: the typed number's low 16 bits, big-endian
 * in bytes 0 and 1, the other six bytes zero. */
static uint64_t kvd_lun_value(uint32_t number)
{
    uint8_t bytes[8] = {0};
    uint64_t lun;

    bytes[0] = (uint8_t)(number >> 8);
    bytes[1] = (uint8_t)number;
    memcpy(&lun, bytes, sizeof(lun));
    return lun;
}

/* Prints a reply: the sizes as the library returned them, each dump bounded
 * by the room its buffer had. */
static void kvd_scsi_print(const uint8_t *rsp, uint32_t rspsize, uint32_t rsproom, const uint8_t *sense,
                           uint32_t sensesize)
{
    printf("Rsp Buffer: %d\n", (int32_t)rspsize);
    hexdump(rsp, rspsize < rsproom ? rspsize : rsproom);
    printf("Sense Buffer: %d\n", (int32_t)sensesize);
    hexdump(sense, sensesize < SCSI_SENSE_ROOM ? sensesize : SCSI_SENSE_ROOM);
}

KVD_HANDLER(sendscsi)
{
    HBA_WWN wwn, rwwn;
    uint8_t *rsp = kvd_bigbuffer;
    uint32_t rsproom = SCSI_RSP_ROOM, rspsize, sensesize = SCSI_SENSE_ROOM;
    uint64_t lun = 0;
    uint32_t rc = 0;
    int32_t sub;

    (void)row;
    (void)arg;
    if (margc < 3) {
        sendscsi_usage();
        return KVD_USAGE;
    }
    if (!kvd_atowwn(&wwn, margv[2])) {
        if (!cur_wwn_set) {
            printf("sendscsi:%s bad port_wwpn\n", margv[2]);
            return KVD_BADARG;
        }
        wwn = cur_wwn;
    }
    for (sub = 0; sub < SCSI_SUB_COUNT; sub++)
        if (strcmp(margv[1], scsi_subs[sub].word) == 0)
            break;
    if (sub == SCSI_SUB_COUNT) {
        sendscsi_usage();
        return KVD_USAGE;
    }
    if (margc < scsi_subs[sub].min_words) {
        printf("%s\n", scsi_subs[sub].usage);
        return KVD_USAGE;
    }
    if (sub == SCSI_INQUIRYWWN || sub == SCSI_REPORTLUNWWN || sub == SCSI_READCAPWWN) {
        if (!kvd_atowwn(&rwwn, kvd_word(3))) {
            printf("sendscsi:%s bad remote wwpn\n", kvd_word(3));
            return KVD_BADARG;
        }
    }

    switch (sub) {
    case SCSI_INQUIRY_SUB:
    case SCSI_INQUIRYWWN: {
        int32_t at = sub == SCSI_INQUIRY_SUB ? 3 : 4; /* the lun word */
        uint8_t evpd = (uint8_t)kvd_number(at + 1);
        uint32_t page = 0;
        lun = kvd_lun_value(kvd_number(at));
        if (evpd != 0) {
            if (margc < at + 3) {
                printf(sub == SCSI_INQUIRY_SUB
                           ? "Usage: sendscsi inquiry wwpn lun evpd pagecode\n"
                           : "Usage: sendscsi inquirywwn lwwpn rwwpn lun evpd pagecode\n");
                return KVD_USAGE;
            }
            evpd = 1;
            page = kvd_number(at + 2);
        }
        rspsize = rsproom;
        if (sub == SCSI_INQUIRY_SUB)
            rc = SendScsiInquiry((uint32_t)cur_board, &wwn, lun, evpd, page, rsp, &rspsize, rsp + rsproom,
                                 &sensesize);
        else
            rc = KVD_SendScsiInquiryByWWN((uint32_t)cur_board, &wwn, &rwwn, lun, evpd, page, rsp, &rspsize,
                                          rsp + rsproom, &sensesize);
        break;
    }
    case SCSI_READCAP:
        rspsize = rsproom;
        rc = SendReadCapacity((uint32_t)cur_board, &wwn, kvd_lun_value(kvd_number(3)), rsp, &rspsize,
                              rsp + rsproom, &sensesize);
        break;
    case SCSI_READCAPWWN:
        rspsize = rsproom;
        rc = KVD_SendReadCapacityByWWN((uint32_t)cur_board, &wwn, &rwwn, kvd_number(4), rsp, &rspsize,
                                       rsp + rsproom, &sensesize);
        break;
    case SCSI_REPORTLUN:
    case SCSI_REPORTLUNWWN:
        rsproom = SCSI_LUNS_ROOM;
        rspsize = rsproom;
        if (sub == SCSI_REPORTLUN)
            rc = SendReportLUNs((uint32_t)cur_board, &wwn, rsp, &rspsize, rsp + rsproom, &sensesize);
        else
            rc = KVD_SendReportLUNsByWWN((uint32_t)cur_board, &wwn, &rwwn, rsp, &rspsize, rsp + rsproom,
                                         &sensesize);
        break;
    case SCSI_READ_SUB:
    case SCSI_WRITE_SUB: {
        int32_t cnt = (int32_t)kvd_number(5);
        uint32_t lba = kvd_number(4);
        /* A negative count would be a size of gigabytes: refused like one
         * past the limit. */
        if (cnt > SCSI_CNT_MAX || cnt < 0) {
            printf(sub == SCSI_READ_SUB ? "Usage: sendscsi read: cnt must be <= %d\n"
                                        : "Usage: sendscsi write: cnt must be <= %d\n",
                   SCSI_CNT_MAX);
            return KVD_USAGE;
        }
        lun = kvd_lun_value(kvd_number(3));
        rsproom = (uint32_t)cnt;
        rspsize = rsproom;
        if (sub == SCSI_READ_SUB) {
            rc = SendScsiRead((uint32_t)cur_board, &wwn, lun, lba, rsp, &rspsize, rsp + rsproom, &sensesize);
        } else {
            uint8_t pattern = margc == 7 ? (uint8_t)kvd_number(6) : 0;
            for (int32_t i = 0; i < cnt; i++)
                rsp[i] = pattern ? pattern : (uint8_t)i;
            rc = SendScsiWrite((uint32_t)cur_board, &wwn, lun, lba, rsp, &rspsize, rsp + rsproom, &sensesize);
        }
        break;
    }
    case SCSI_CDB_SUB:
        rspsize = rsproom;
        rc = SendScsiCDB((uint32_t)cur_board, &wwn, kvd_lun_value(kvd_number(3)), kvd_number(4), rsp,
                         &rspsize, rsp + rsproom, &sensesize);
        break;
    default:
        return KVD_USAGE;
    }
    if (rc != 0)
        return kvd_cannot_issue();
    kvd_scsi_print(rsp, rspsize, rsproom, rsp + rsproom, sensesize);
    return KVD_OK;
}

/* One FCP READ(10) or WRITE(10) in a command block built here. The block
 * count in the CDB is the byte count shifted down by 9 (a partial block is
 * dropped there) while the data length keeps the exact byte count. The
 * board check is against cur_board, whatever board is passed. */
static int32_t kvd_send_fcp(int write, uint32_t board, HBA_WWN *wwn, uint64_t lun, uint32_t lba, void *data,
                            uint32_t *datasize, void *rsp, uint32_t *rspsize)
{
    FCP_CMND cmd;
    uint32_t count = *datasize;
    uint32_t blocks = count >> 9;

    if ((int64_t)kvd_pci_brds <= (int64_t)cur_board)
        return 1;
    memset(&cmd, 0, sizeof(cmd));
    cmd.fcpLunMsl[0] = (uint8_t)(lun >> 8);
    cmd.fcpLunMsl[1] = (uint8_t)lun;
    cmd.fcpCntl3 = write ? FCP_WRDATA : FCP_RDDATA;
    cmd.fcpCdb[0] = write ? SCSI_WRITE_10 : SCSI_READ_10;
    cmd.fcpCdb[2] = (uint8_t)(lba >> 24);
    cmd.fcpCdb[3] = (uint8_t)(lba >> 16);
    cmd.fcpCdb[4] = (uint8_t)(lba >> 8);
    cmd.fcpCdb[5] = (uint8_t)lba;
    cmd.fcpCdb[7] = (uint8_t)(blocks >> 8);
    cmd.fcpCdb[8] = (uint8_t)blocks;
    cmd.fcpDl[0] = (uint8_t)(count >> 24);
    cmd.fcpDl[1] = (uint8_t)(count >> 16);
    cmd.fcpDl[2] = (uint8_t)(count >> 8);
    cmd.fcpDl[3] = (uint8_t)count;
    return (int32_t)SendFcpCmd(board, wwn, &cmd, sizeof(cmd), data, datasize, rsp, rspsize);
}

int32_t kvd_SendFcpRead(uint32_t board, HBA_WWN *wwn, uint64_t lun, uint32_t lba, void *data,
                        uint32_t *datasize, void *rsp, uint32_t *rspsize)
{
    return kvd_send_fcp(0, board, wwn, lun, lba, data, datasize, rsp, rspsize);
}

int32_t kvd_SendFcpWrite(uint32_t board, HBA_WWN *wwn, uint64_t lun, uint32_t lba, void *data,
                         uint32_t *datasize, void *rsp, uint32_t *rspsize)
{
    return kvd_send_fcp(1, board, wwn, lun, lba, data, datasize, rsp, rspsize);
}
