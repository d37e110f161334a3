// Loopback tests, the IOCB ring view and adapter reset: loopback, riocb,
// reset.
#include <stdlib.h>
#include <string.h>

#include "kvd.h"

#define KVD_LB_DEFAULT_SIZE 1024
#define KVD_LB_MAX_SIZE 65536
#define KVD_LB_PCI_MAX_SIZE 1024
#define KVD_LB_DEFAULT_PASSES 1
#define KVD_LB_MIN_TIMEOUT 15
#define KVD_LB_DEFAULT_PATTERN 0xA5
#define KVD_LB_PCI_OFFSET 256 /* PCI loop data follow the mailbox record */
#define KVD_MBX_RUN_BIU_DIAG64 0x84
#define KVD_PCI_LB_RETRIES 3
#define KVD_PCI_LB_DELAY 300

static void loopback_usage(void)
{
    printf("Usage: loopback type size passes timeout pattern\n");
    printf("       type %d-pci %d-internal %d-external\n", KVD_LOOPBACK_PCI, KVD_LOOPBACK_INTERNAL,
           KVD_LOOPBACK_EXTERNAL);
    printf("       internal/external loopback size %d-%d (default %d)\n", 1, KVD_LB_MAX_SIZE,
           KVD_LB_DEFAULT_SIZE);
    printf("       pci loopback size %d-%d (default %d)\n", 1, KVD_LB_PCI_MAX_SIZE, KVD_LB_DEFAULT_SIZE);
    printf("       passes (default %d)\n", KVD_LB_DEFAULT_PASSES);
    printf("       timeout (default %d seconds)\n", KVD_LB_MIN_TIMEOUT);
    printf("       pattern %d-%d (default %d)\n", 0, 255, KVD_LB_DEFAULT_PATTERN);
}

// One PCI loopback pass: a RUN_BIU_DIAG64 mailbox built in the first 256
// bytes of the transmit buffer, its descriptors pointing 256 bytes into
// each buffer. Returns 0 on success, 1 on failure, 2 for a protocol that
// has no PCI loop.
int32_t kvd_RunPciLoopbackTest(uint32_t board, LOOPBACK *lb)
{
    MAILBOX mb;
    BIU_DIAG_VAR64 diag;
    uint64_t xmit = (uint64_t)(uintptr_t)(lb->XmitBuffer + KVD_LB_PCI_OFFSET);
    uint64_t rcv = (uint64_t)(uintptr_t)(lb->RcvBuffer + KVD_LB_PCI_OFFSET);
    int32_t mode = get_sli_mode(board);
    int32_t protocol;
    int32_t rc;

    if (mode < 1) {
        printf("%s - board %d sli %d invalid.\n", "kvd_RunPciLoopbackTest", (int)board, mode);
        return 1;
    }
    protocol = get_protocol_mode(board);
    if (protocol != 1) {
        printf("%s - board %d protocol %d not supported\n", "kvd_RunPciLoopbackTest", (int)board, protocol);
        return 2;
    }
    memset(&mb, 0, sizeof(mb));
    memset(&diag, 0, sizeof(diag));
    mb.mbxOwner = 0;
    mb.mbxCommand = KVD_MBX_RUN_BIU_DIAG64;
    diag.xmit_bde64.tus.f.bdeSize = lb->bufSize;
    diag.xmit_bde64.addrLow = (uint32_t)xmit;
    diag.xmit_bde64.addrHigh = (uint32_t)(xmit >> 32);
    diag.rcv_bde64.tus.f.bdeSize = lb->bufSize;
    diag.rcv_bde64.addrLow = (uint32_t)rcv;
    diag.rcv_bde64.addrHigh = (uint32_t)(rcv >> 32);
    memcpy(&mb.un, &diag, sizeof(diag));
    memcpy(lb->XmitBuffer, &mb, sizeof(mb));
    if (mode <= 3)
        rc = KVD_IssueMboxWithRetry(board, &mb, MAILBOX_WORDS / 2, MAILBOX_WORDS / 2, KVD_PCI_LB_RETRIES,
                                    KVD_PCI_LB_DELAY);
    else
        rc = KVD_IssueMboxWithRetryV2(board, &mb, MAILBOX_WORDS, KVD_PCI_LB_RETRIES, KVD_PCI_LB_DELAY);
    return rc == 0 && mb.mbxStatus == 0 ? 0 : 1;
}

// memcmp's answer, made definite: the difference of the first bytes that
// differ.
static int kvd_compare(const uint8_t *a, const uint8_t *b, uint32_t n)
{
    for (uint32_t i = 0; i < n; i++)
        if (a[i] != b[i])
            return (int)a[i] - (int)b[i];
    return 0;
}

KVD_HANDLER(loopback)
{
    LOOPBACK lb;
    uint32_t type;
    long size = KVD_LB_DEFAULT_SIZE;
    long passes = KVD_LB_DEFAULT_PASSES;
    long timeout = KVD_LB_MIN_TIMEOUT;
    long pattern = KVD_LB_DEFAULT_PATTERN;
    uint8_t *area = kvd_bigbuffer;
    uint8_t *room = NULL;
    uint32_t off;
    int32_t rc;
    int failed = 0;

    (void)row;
    (void)arg;
    if (margc < 2 || margc > 6) {
        loopback_usage();
        return KVD_OK;
    }
    type = (uint32_t)strtoul(margv[1], NULL, 0);
    if (margc > 2)
        size = strtol(margv[2], NULL, 0);
    if (margc > 3)
        passes = strtol(margv[3], NULL, 0);
    if (margc > 4)
        timeout = strtol(margv[4], NULL, 0);
    if (margc > 5)
        pattern = strtol(margv[5], NULL, 0);
    if (type > KVD_LOOPBACK_EXTERNAL || size < 1 ||
        size > (type == KVD_LOOPBACK_PCI ? KVD_LB_PCI_MAX_SIZE : KVD_LB_MAX_SIZE) || passes < 1 ||
        timeout < KVD_LB_MIN_TIMEOUT || pattern < 0 || pattern > 255) {
        kvd_cannot_issue();
        return KVD_OK;
    }
    // Transmit and receive buffers lie one after the other; frames above
    // half the shared area get room of their own that holds both.
    off = type == KVD_LOOPBACK_PCI ? KVD_LB_PCI_OFFSET : 0;
    if (2 * (size_t)size + off > KVD_DATA_AREA_SIZE) {
        room = (uint8_t *)calloc(2, (size_t)size);
        if (room == NULL) {
            kvd_cannot_issue();
            return KVD_OK;
        }
        area = room;
    }
    lb.bufSize = (uint32_t)size;
    lb.XmitBuffer = area;
    lb.RcvBuffer = area + size;

    if (type != KVD_LOOPBACK_PCI) {
        rc = (int32_t)KVD_ConfigLoopback(cur_board, type, (uint32_t)timeout);
        if (rc != 0) {
            printf("KVD_ConfigLoopback failed with error %d\n", rc);
            free(room);
            return KVD_OK;
        }
    }
    for (long pass = 1; pass <= passes; pass++) {
        memset(lb.RcvBuffer + off, (int)(uint8_t)(pattern + 1), (size_t)size);
        memset(lb.XmitBuffer + off, (int)pattern, (size_t)size);
        if (type == KVD_LOOPBACK_PCI) {
            rc = kvd_RunPciLoopbackTest(cur_board, &lb);
            if (rc != 0) {
                printf("\tkvd_RunPciLoopbackTest failed with error %d - pass %d\n", rc, (int)pass);
                failed = 1;
                break;
            }
        } else {
            rc = (int32_t)KVD_RunLoopbackTest(cur_board, &lb);
            if (rc != 0) {
                printf("\tKVD_RunLoopbackTest failed with error %d - pass %d\n", rc, (int)pass);
                failed = 1;
                break;
            }
        }
        rc = kvd_compare(lb.XmitBuffer + off, lb.RcvBuffer + off, (uint32_t)size);
        if (rc != 0) {
            printf("\tThe memcmp failed with error %d - pass %d\n", rc, (int)pass);
            printf("\tSent pattern x%02x\n", (unsigned)pattern);
            printf("\tReceived buffer pattern:");
            hexdump(lb.RcvBuffer, (uint32_t)size);
            failed = 1;
            break;
        }
        if (margc < 4) {
            hexdump(lb.RcvBuffer + off, (uint32_t)size);
            break;
        }
    }
    if (margc >= 4 && !failed) {
        if (type == KVD_LOOPBACK_PCI)
            printf("\tPci loopback of %d frames of size %d completed successfully.\n", (int)passes,
                   (int)size);
        else if (type == KVD_LOOPBACK_INTERNAL)
            printf("\tInternal loopback of %d frames of size %d completed successfully.\n", (int)passes,
                   (int)size);
        else
            printf("\tExternal loopback of %d frames of size %d completed successfully.\n", (int)passes,
                   (int)size);
    }
    if (type != KVD_LOOPBACK_PCI) {
        rc = (int32_t)KVD_EndLoopback(cur_board);
        if (rc != 0)
            printf("\tKVD_EndLoopback failed with error %d\n", rc);
    }
    free(room);
    return KVD_OK;
}

// The ring view reads the driver's SLI state record and the adapter memory
// image, both fetched into the shared area first. A ring or slot outside
// what the image holds is refused.
KVD_HANDLER(riocb)
{
    kvdsli_t sli;
    kvdsliring ring;
    uint32_t length = KVD_SLIM_IMAGE_SIZE;
    uint32_t addr;
    uint32_t entries;
    uint32_t words[8];
    uint64_t at;
    int32_t slot;

    (void)row;
    (void)arg;
    if (margc > 3) {
        printf("Usage: riocb [cmd | rsp ] [slot_number]\n");
        return KVD_USAGE;
    }
    if (cur_ring < 0 || cur_ring >= KVD_SLI_MAX_RINGS)
        return kvd_cannot_issue();
    if (KVD_GetSliImage(cur_board, kvd_slimbuffer, &length) != 0)
        return kvd_cannot_issue();
    if (length > KVD_SLIM_IMAGE_SIZE || length < sizeof(sli))
        return kvd_cannot_issue();
    memcpy(&sli, kvd_slimbuffer, sizeof(sli));
    ring = sli.sliinit.ringinit[cur_ring];
    if (margc == 1) {
        printf("board %d  ring %d  iocb %d\n", cur_board, cur_ring, cur_iocb);
        printf("cmdidx:%d  numCiocb:%d  rspidx:%d  numRiocb:%d\n", ring.cmdidx, ring.numCiocb, ring.rspidx,
               ring.numRiocb);
        return KVD_OK;
    }
    slot = margc == 3 ? atoi(margv[2]) : cur_iocb;
    if (strcmp(margv[1], "cmd") == 0) {
        addr = ring.cmdringaddr.low;
        entries = ring.numCiocb;
    } else if (strcmp(margv[1], "rsp") == 0) {
        addr = ring.rspringaddr.low;
        entries = ring.numRiocb;
    } else {
        printf("Usage: riocb [cmd | rsp ] [slot_number]\n");
        return KVD_USAGE;
    }
    if (sli.binfo_fc_flag & FC_SLI2)
        addr -= sli.binfo_fc_slim2_virt.low;
    at = (uint64_t)addr + (uint64_t)(uint32_t)slot * KVD_IOCB_SIZE;
    if (slot < 0 || (uint32_t)slot >= entries || at + KVD_IOCB_SIZE > length)
        return kvd_cannot_issue();
    cur_iocb++;
    if (cur_iocb < 0 || (uint32_t)cur_iocb >= entries)
        cur_iocb = 0;
    memcpy(words, kvd_slimbuffer + at, sizeof(words));
    for (int w = 0; w < 8; w++)
        printf("IOCB %d WORD%d: %08lx\n", slot, w, (unsigned long)words[w]);
    return KVD_OK;
}

KVD_HANDLER(reset)
{
    uint32_t type = KVD_RESET_SELECTIVE;

    (void)row;
    (void)arg;
    if ((margc == 2 || margc == 3) && strcmp(margv[1], "hba") == 0) {
        if (margc == 3)
            type = (uint32_t)strtoul(margv[2], NULL, 0);
        printf("hba: %d reset type: %x\n", cur_board, type);
        printf("status 0x%x\n", KVD_ResetAdapter(cur_board, type));
        return KVD_OK;
    }
    printf("Usage: reset [hba] [type]\n");
    printf("\t type 1-selective, 2-coordinated, 3-firmware\n");
    return KVD_USAGE;
}
