// Single port commands: link-down persistence, the dump mailbox, the SLI
// status counters, the QoS link speed and the library's MMM display. Each
// prints the library's result in its own words.
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"

#define KVD_DUMP_REGION_DEFAULT 23
#define KVD_DUMP_LENGTH_DEFAULT 1024
#define KVD_DUMP_BUFFER 2048

KVD_HANDLER(persistlinkget)
{
    uint16_t config = 0;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: %s <no arguments>\n", "persistlinkget");
        return KVD_USAGE;
    }
    rc = KVD_GetPersistLinkDown((uint32_t)cur_board, &config);
    printf("%s - KVD_GetPersistLinkDown returned 0x%x\n", "persistlinkget", rc);
    printf("\tlinkDownConfig x%04x\n", config);
    return (int32_t)rc;
}

// The value goes to the library as typed (low 16 bits): the library, not
// the shell, decides which values it takes.
KVD_HANDLER(persistlinkset)
{
    int value = 0;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: %s linkDownConfig <%d,%d>\n", "persistlinkset", 0, 1);
        printf("   %d - no persist link down\n", 0);
        printf("   %d - persist link down\n", 1);
        return KVD_USAGE;
    }
    if (sscanf(margv[1], "%d", &value) != 1)
        value = 0;
    rc = KVD_SetPersistLinkDown((uint32_t)cur_board, (uint16_t)value);
    printf("%s - KVD_SetPersistLinkDown returned 0x%x\n", "persistlinkset", rc);
    return (int32_t)rc;
}

// Prints as many 16-byte lines as the length asked for covers. The length
// the library reports back is not used: whatever it says, the lines stay
// inside the buffer, since the length asked for is at most its size.
KVD_HANDLER(issuedumpmbox)
{
    static uint8_t buffer[KVD_DUMP_BUFFER];
    uint32_t region = KVD_DUMP_REGION_DEFAULT;
    uint32_t offset = 0;
    uint32_t length = KVD_DUMP_LENGTH_DEFAULT;
    uint32_t asked;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc == 4) {
        region = (uint32_t)strtoul(margv[1], NULL, 0);
        offset = (uint32_t)strtoul(margv[2], NULL, 0);
        length = (uint32_t)strtoul(margv[3], NULL, 0);
        if (length > KVD_DUMP_BUFFER) {
            printf("Max length is %d\n", KVD_DUMP_BUFFER);
            return KVD_OK;
        }
    } else if (margc != 1) {
        printf("Usage: %s <no arguments> or\n", "issuedumpmbox");
        printf("\tregion offset length (max length %d)\n", KVD_DUMP_LENGTH_DEFAULT);
        printf("\tdefault region %d default offset %d default length %d\n", KVD_DUMP_REGION_DEFAULT, 0,
               KVD_DUMP_LENGTH_DEFAULT);
        return KVD_OK;
    }
    asked = length;
    memset(buffer, 0, sizeof(buffer));
    rc = KVD_IssueDumpMBox((uint32_t)cur_board, 2, 0, region, offset, buffer, &length);
    if (rc != 0) {
        printf("KVD_IssueDumpMBox returned x%x\n", rc);
        return (int32_t)rc;
    }
    static_assert(KVD_DUMP_BUFFER % 16 == 0, "whole lines fit the buffer");
    for (uint32_t line = 0; line < asked && line < KVD_DUMP_BUFFER; line += 16) {
        printf("DATA[%03x] ", line);
        for (uint32_t i = 0; i < 16; i++)
            printf(i < 15 ? "%02x " : "%02x", buffer[line + i]);
        printf("\n");
    }
    return (int32_t)rc;
}

KVD_HANDLER(slireadstat)
{
    MAILBOX mb;
    int32_t clear = -1;
    int32_t rc;

    (void)row;
    (void)arg;
    if (margc == 2)
        clear = (int32_t)strtoul(margv[1], NULL, 0);
    if (clear != 0 && clear != 1) {
        printf("Usage: %s clearCounters\n", "slireadstat");
        printf("\tclearCounters <0 - no clear, 1 - clear counters>\n");
        printf("\tIf clear, the counter values will still be\n");
        printf("\treturned before being cleared.\n");
        return KVD_OK;
    }
    memset(&mb, 0, sizeof(mb));
    mb.mbxCommand = MBX_READ_STATUS;
    mb.mbxOwner = 0;
    mb.un.varRdStatus.clrCounters = (uint32_t)clear;
    rc = KVD_IssueMboxWithRetry((uint32_t)cur_board, &mb, 32, 64, 5, 100);
    if (rc != 0) {
        printf("%s - KVD_IssueMboxWithRetry error %d\n", "slireadstat", rc);
        return KVD_OK;
    }
    printf("Read Status Command: Status: 0x%x\n", mb.mbxStatus);
    if (mb.mbxStatus == 0) {
        const READ_STATUS_VAR *st = &mb.un.varRdStatus;
        printf("activeXriCnt           %6d\n", st->activeXriCnt);
        printf("activeRpiCnt           %6d\n", st->activeRpiCnt);
        printf("xmitByteCnt        %10d\n", (int)st->xmitByteCnt);
        printf("rcvByteCnt         %10d\n", (int)st->rcvByteCnt);
        printf("xmitFrameCnt       %10d\n", (int)st->xmitFrameCnt);
        printf("rcvFrameCnt        %10d\n", (int)st->rcvFrameCnt);
        printf("xmitSeqCnt         %10d\n", (int)st->xmitSeqCnt);
        printf("rcvSeqCnt          %10d\n", (int)st->rcvSeqCnt);
        printf("totalOrigExchanges %10d\n", (int)st->totalOrigExchanges);
        printf("totalRespExchanges %10d\n", (int)st->totalRespExchanges);
        printf("rcvPbsyCnt         %10d\n", (int)st->rcvPbsyCnt);
        printf("rcvFbsyCnt         %10d\n", (int)st->rcvFbsyCnt);
    }
    return KVD_OK;
}

KVD_HANDLER(qoslinkspeed)
{
    uint16_t speed = 0;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: %s <no arguments>\n", "qoslinkspeed");
        return KVD_USAGE;
    }
    rc = KVD_GetQoSLinkSpeed((uint32_t)cur_board, &speed);
    if (rc != 0)
        printf("%s - KVD_GetQoSLinkSpeed error %d\n", "qoslinkspeed", (int)rc);
    else
        printf("QoS Speed - x%04x\n", speed);
    return KVD_OK;
}

KVD_HANDLER(showmmm)
{
    (void)row;
    if (margc != 1) {
        printf("Usage: %s <no arguments>\n", "showmmm");
        return KVD_USAGE;
    }
    fflush(stdout);
    kvd_show_mmm(1, arg);
    return KVD_OK;
}
