/* A stand-in libkvd.so.3 with one board and its own version text, used to
 * show that kvd binds to whichever libkvd.so.3 the loader finds first.
 * It offers only the calls the start-up and getversions make, and a dump
 * that misreports its length: kvd binds functions lazily, so the others are
 * never looked up. (Taking the address of a library operation in the shell
 * would need it at load time.) */
#include <string.h>

#include "libkvd.h"

uint32_t libkvd_logging_enable = 0x5a;

uint32_t KVD_InitDiagEnv(KVD_BRDINFO *brdinfo, uint32_t max_boards)
{
    if (max_boards < 1)
        return 0;
    memset(brdinfo, 0, sizeof(*brdinfo));
    brdinfo->a_pci = 0x00012c71;
    brdinfo->a_ddi = 9;
    strcpy(brdinfo->a_drvrid, "alt-driver");
    return 1;
}

void KVD_FreeDiagEnv(void)
{
}

uint32_t KVD_GetLibVer(char *version)
{
    strcpy(version, "alternate 3.0");
    return 0;
}

uint32_t unRegisterForEvent(uint32_t board, uint32_t event_id)
{
    (void)board;
    (void)event_id;
    return 0;
}

HBA_STATUS GetAdapterPortAttributes(uint32_t board, uint32_t port, HBA_PORTATTRIBUTES *attributes)
{
    int32_t host = 77;

    (void)board;
    (void)port;
    memset(attributes, 0, sizeof(*attributes));
    memcpy(attributes->OSDeviceName + KVD_OSDEV_HOST, &host, sizeof(host));
    return 0;
}

/* A dump that fills the whole 2048-byte dump buffer with its offsets and
 * then claims far more than it wrote. */
uint32_t KVD_IssueDumpMBox(uint32_t board, uint32_t type, uint32_t index, uint32_t region, uint32_t offset,
                           uint8_t *buffer, uint32_t *length)
{
    (void)board;
    (void)type;
    (void)index;
    (void)region;
    (void)offset;
    for (uint32_t i = 0; i < KVD_DUMP_MAX; i++)
        buffer[i] = (uint8_t)(i >> 4);
    *length = 0xFFFFFFFFu;
    return 0;
}
