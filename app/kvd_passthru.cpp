// Raw Fibre Channel traffic built by the shell: one FCP block transfer
// ("sendfcp"), extended link services ("els"), name-server queries ("ct")
// and management requests ("sendmgmt").
#include <arpa/inet.h>
#include <stdlib.h>
#include <string.h>

#include "kvd.h"

#define FCP_DATA_SIZE 512
#define FCP_RSP_ROOM 160
#define ELS_BUF_SIZE 2048
#define CT_CLEAR_SIZE 280
#define CT_REQ_SIZE 20
#define CT_RSP_ROOM 4096

static uint32_t kvd_be_word(const uint8_t *p)
{
    uint32_t w;

    memcpy(&w, p, sizeof(w));
    return ntohl(w);
}

static uint32_t kvd_min(uint32_t a, uint32_t b)
{
    return a < b ? a : b;
}

/* Big-endian words, four to a line led by the byte offset. */
static void kvd_dump_be_words(const uint8_t *buf, int32_t count)
{
    for (int32_t off = 0; count > 0; off += 4, count -= 4) {
        if (off % 16 == 0)
            printf("\n%4x: ", off);
        printf("%08x  ", kvd_be_word(buf + off));
    }
    printf("\n");
}

KVD_HANDLER(sendfcp)
{
    HBA_WWN wwn;
    uint8_t *data = kvd_bigbuffer;
    uint8_t *rsp = kvd_bigbuffer + FCP_DATA_SIZE;
    uint32_t datasize = FCP_DATA_SIZE, rspsize = FCP_RSP_ROOM;
    uint64_t lun;
    uint32_t lba;
    int32_t rc;

    (void)row;
    (void)arg;
    if (margc < 6) {
        printf("Usage: sendfcp read      wwpn lun sectorAddress cnt\n");
        printf("Usage: sendfcp write     wwpn lun sectorAddress cnt [pattern]\n");
        return KVD_USAGE;
    }
    if (!kvd_atowwn(&wwn, margv[2])) {
        if (!cur_wwn_set) {
            printf("sendfcp:%s bad port_wwpn\n", margv[2]);
            return KVD_BADARG;
        }
        wwn = cur_wwn;
    }
    if (strcmp(margv[1], "read") != 0 && strcmp(margv[1], "write") != 0) {
        printf("Usage: sendfcp read     wwpn lun sectorAddress cnt\n");
        printf("Usage: sendfcp write    wwpn lun sectorAddress cnt [pattern]\n");
        return KVD_USAGE;
    }
    lun = strtoul(margv[3], NULL, 0);
    lba = (uint32_t)strtoul(margv[4], NULL, 0);
    /* The cnt word is required but the transfer is always one block. */
    if (strcmp(margv[1], "write") == 0) {
        uint8_t pattern = margc == 7 ? (uint8_t)strtoul(margv[6], NULL, 0) : 0;
        memset(data, pattern, FCP_DATA_SIZE);
        rc = kvd_SendFcpWrite((uint32_t)cur_board, &wwn, lun, lba, data, &datasize, rsp, &rspsize);
    } else {
        rc = kvd_SendFcpRead((uint32_t)cur_board, &wwn, lun, lba, data, &datasize, rsp, &rspsize);
    }
    if (rc != 0)
        return kvd_cannot_issue();
    printf("Data Buffer: %d\n", (int32_t)datasize);
    kvd_dump_be_words(data, (int32_t)kvd_min(datasize, FCP_DATA_SIZE));
    printf("Fcp Response Buffer: %d\n", (int32_t)rspsize);
    kvd_dump_be_words(rsp, (int32_t)kvd_min(rspsize, FCP_RSP_ROOM));
    return KVD_OK;
}

KVD_HANDLER(sendels)
{
    KVD_ELS_DEST dest;
    uint8_t *req = kvd_bigbuffer;
    uint8_t *rsp = kvd_bigbuffer + ELS_BUF_SIZE;
    uint32_t code, size, rspsize = ELS_BUF_SIZE, rc;
    int echo = 0;
    int32_t result = KVD_OK;

    (void)row;
    (void)arg;
    if (margc < 3) {
        printf("Usage: els echo  did [size 4 - %d]\n", ELS_BUF_SIZE);
        printf("Usage: els rls   did\n");
        printf("Usage: els rps   did\n");
        printf("Usage: els rpl   did\n");
        printf("Usage: els rnid  did\n");
        return KVD_USAGE;
    }
    dest.addrType = KVD_ELS_ADDR_DID;
    dest.did = (uint32_t)strtoul(margv[2], NULL, 0);
    memset(req, 0, ELS_BUF_SIZE);
    memset(rsp, 0xff, ELS_BUF_SIZE);
    if (strcmp(margv[1], "echo") == 0) {
        echo = 1;
        code = ELS_CMD_ECHO;
        size = ELS_BUF_SIZE;
        if (margc == 4) {
            uint32_t want = (uint32_t)strtoul(margv[3], NULL, 0);
            if (want < ELS_BUF_SIZE)
                size = (want + 3) & ~3u;
        }
        rspsize = size;
    } else if (strcmp(margv[1], "rls") == 0) {
        code = ELS_CMD_RLS;
        size = 8;
    } else if (strcmp(margv[1], "rps") == 0) {
        code = ELS_CMD_RPS;
        size = 12;
    } else if (strcmp(margv[1], "rpl") == 0) {
        code = ELS_CMD_RPL;
        size = 12;
    } else if (strcmp(margv[1], "rnid") == 0) {
        code = ELS_CMD_RNID;
        size = 8;
        req[4] = RNID_FMT_TOPOLOGY;
    } else {
        printf("Usage: els echo  did [[size 4 - %d]\n", ELS_BUF_SIZE);
        printf("Usage: els rls  did\n");
        printf("Usage: els rps  did\n");
        printf("Usage: els rpl  did\n");
        printf("Usage: els rnid did\n");
        return KVD_USAGE;
    }
    memcpy(req, &code, sizeof(code));

    rc = KVD_SendELSCmd((uint32_t)cur_board, &dest, req, size, rsp, &rspsize);
    if (rc != 0) {
        kvd_cannot_issue();
        if (rc == KVD_RC_ELS_RSP_TOO_SMALL)
            printf("Response buffer size too small. Try %d.\n", (int32_t)rspsize);
        else if (rc == KVD_RC_ELS_REQ_TOO_LARGE)
            printf("Max buffer size exceed (%d bytes).\n", (int32_t)rspsize);
        return KVD_LIBERR;
    }
    printf("reqsize: x%x data x%02x -- rspsize: x%x data x%02x\n", size, 0, rspsize, 0xff);
    /* The reply is taken at the request's size, whatever came back. */
    rspsize = size;
    if (echo && size > 4) {
        if (memcmp(rsp + 4, req + 4, size - 4) == 0) {
            printf("Buffers match.\n");
        } else {
            printf("Buffer mismatch.\n");
            result = 1;
        }
    }
    for (uint32_t o = 0;; o += 4) {
        if (o % 16 == 0)
            printf("\n%4x: ", o);
        printf("0x%08lx  ", (unsigned long)kvd_be_word(rsp + o));
        if (o + 4 >= rspsize)
            break;
        if (num_lines > 0 && o % (8 * (uint32_t)num_lines) == 8 * (uint32_t)num_lines - 4 &&
            promptContinueOrAbort())
            break;
    }
    printf("\n");
    return result;
}

/* The CT preamble and the one argument word of a name-server request. */
static void kvd_ct_request(uint8_t *buf, uint8_t gs_type, uint16_t command, uint32_t word)
{
    memset(buf, 0, CT_CLEAR_SIZE);
    buf[0] = CT_REVISION;
    buf[4] = gs_type;
    buf[5] = CT_GS_SUBTYPE_NAME_SERVER;
    buf[8] = (uint8_t)(command >> 8);
    buf[9] = (uint8_t)command;
    buf[16] = (uint8_t)(word >> 24);
    buf[17] = (uint8_t)(word >> 16);
    buf[18] = (uint8_t)(word >> 8);
    buf[19] = (uint8_t)word;
}

/* "nport" with a non-zero port id keeps sending until a send fails (a soak
 * test); Ctrl-C ends the shell through quit as at any other time. The signal
 * path leaves with _exit, so each round is flushed before the next send: an
 * answer redirected to a file is not lost with the buffer. */
KVD_HANDLER(ct)
{
    uint8_t *buf = kvd_bigbuffer;
    uint32_t nportid = 0, rspsize;
    uint8_t gs_type = CT_GS_TYPE_DIRECTORY;
    uint16_t command;
    uint32_t word;
    int soak;

    (void)row;
    (void)arg;
    if (margc != 2 && margc != 3) {
        printf("Usage: ct [nport | wwpn | wwnn | sym] [nportid]\n");
        return KVD_USAGE;
    }
    if (margc == 3)
        nportid = (uint32_t)strtoul(margv[2], NULL, 0);
    word = nportid;
    if (strcmp(margv[1], "nport") == 0) {
        command = CT_GID_FT;
        word = FC4_TYPE_SCSI_FCP;
    } else if (strcmp(margv[1], "wwpn") == 0) {
        command = CT_GPN_ID;
    } else if (strcmp(margv[1], "wwnn") == 0) {
        command = CT_GNN_ID;
    } else if (strcmp(margv[1], "sym") == 0) {
        command = CT_GSPN_ID;
    } else if (strcmp(margv[1], "test1") == 0) {
        gs_type = CT_GS_TYPE_MANAGEMENT;
        command = CT_GID_FT;
        word = FC4_TYPE_SCSI_FCP;
    } else {
        printf("Usage: ct [nport | wwpn | wwnn] [nportid]\n");
        return KVD_USAGE;
    }
    soak = command == CT_GID_FT && gs_type == CT_GS_TYPE_DIRECTORY && nportid != 0;
    do {
        kvd_ct_request(buf, gs_type, command, word);
        rspsize = CT_RSP_ROOM;
        if (SendCTPassThru((uint32_t)cur_board, buf, CT_REQ_SIZE, buf, &rspsize) != 0)
            return kvd_cannot_issue();
        int32_t left = (int32_t)kvd_min(rspsize, CT_RSP_ROOM);
        for (int32_t off = 0; left > 0; off += 4, left -= 4) {
            uint32_t w;
            if (off % 16 == 0)
                printf("\n%4x: ", off);
            memcpy(&w, buf + off, sizeof(w));
            printf("%08x  ", w);
        }
        printf("\n");
        if (soak)
            fflush(stdout);
    } while (soak);
    return KVD_OK;
}

#define MGMT_CNT_MAX KVD_DATA_AREA_SIZE

KVD_HANDLER(sendmgmt)
{
    HBA_WWN wwn;
    uint8_t *buf = kvd_bigbuffer;
    uint32_t fstype, cnt, tmo, rspsize;

    (void)row;
    (void)arg;
    if (margc != 4 && margc != 5) {
        printf("Usage: sendmgmt port_wwpn fstype cnt [tmo]\n");
        return KVD_USAGE;
    }
    if (!kvd_atowwn(&wwn, margv[1])) {
        if (!cur_wwn_set) {
            printf("sendmgmt:%s bad port_wwpn\n", margv[1]);
            return KVD_BADARG;
        }
        wwn = cur_wwn;
    }
    fstype = (uint32_t)strtoul(margv[2], NULL, 0);
    cnt = (uint32_t)strtoul(margv[3], NULL, 0);
    tmo = margc == 5 ? (uint32_t)strtoul(margv[4], NULL, 0) : 0;
    if (cnt == 0) {
        printf("sendmgmt: cnt must be non-zero\n");
        return KVD_FAIL;
    }
    /* Request and reply share the data area: a count beyond it is refused. */
    if (cnt > MGMT_CNT_MAX) {
        printf("sendmgmt: cnt must be <= %d\n", MGMT_CNT_MAX);
        return KVD_FAIL;
    }
    memset(buf, 0, CT_CLEAR_SIZE);
    buf[0] = CT_REVISION;
    buf[4] = (uint8_t)fstype;
    buf[8] = (uint8_t)(KVD_MGMT_CMD_CODE & 0xff); /* stored little-endian */
    buf[9] = (uint8_t)(KVD_MGMT_CMD_CODE >> 8);
    for (uint32_t i = 16; i < cnt; i++)
        buf[i] = (uint8_t)i;
    rspsize = cnt;
    (void)SendMgmtCommand((uint32_t)cur_board, &wwn, buf, cnt, buf, &rspsize, tmo);
    if (rspsize != 0) {
        uint32_t left = kvd_min(rspsize, cnt);
        for (uint32_t off = 0; left > 0; off += 4) {
            if (off % 16 == 0)
                printf("\n%4x: ", off);
            printf("%08lx  ", (unsigned long)kvd_be_word(buf + off));
            left = left > 4 ? left - 4 : 0;
        }
    }
    printf("\n");
    return KVD_OK;
}
