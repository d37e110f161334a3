// Read-only dumps: the host registers or a driver dump region ("dumpreg"),
// and one non-volatile configuration region of the adapter ("dumpregion").
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"

#define KVD_DRIVER_REGION_SIZE 256

KVD_HANDLER(dumpreg)
{
    uint8_t buffer[KVD_DRIVER_REGION_SIZE];
    uint32_t length = sizeof(buffer);
    uint32_t region = 0;
    uint32_t regs[4];

    (void)row;
    (void)arg;
    if (margc > 2) {
        printf("Usage: dumpreg [identifier]\n");
        return KVD_USAGE;
    }
    if (margc == 2)
        region = (uint32_t)strtoul(margv[1], NULL, 0);
    memset(buffer, 0, sizeof(buffer));
    if (KVD_GetDriverDumpRegion((uint32_t)cur_board, region, buffer, &length) != 0)
        return kvd_cannot_issue();
    if (region == 0) {
        memcpy(regs, buffer, sizeof(regs));
        printf("HA: x%x\n", regs[0]);
        printf("CA: x%x\n", regs[1]);
        printf("HS: x%x\n", regs[2]);
        printf("HC: x%x\n", regs[3]);
        return KVD_OK;
    }
    if (length > sizeof(buffer))
        length = sizeof(buffer);
    printf("Driver Region %d Data (%d bytes):\n", (int)region, (int)length);
    hexdump(buffer, length);
    return KVD_OK;
}

// Bytes shown of each region "dumpregion" knows; the VPD region is larger on
// SLI-4 boards. Region 32 is listed in the help but deliberately not shown.
#define KVD_REGION_VPD 14
#define KVD_REGION_FACTORY_ID 32
#define KVD_REGION_VPD_SLI4_SIZE 1000
#define KVD_REGION_BUFFER 2048

static const struct {
    uint32_t region;
    uint32_t size;
} kvd_region_sizes[] = {
    {0, 60},  {4, 120},  {5, 200},  {6, 200},  {7, 200},  {8, 60},
    {9, 256}, {10, 256}, {14, 512}, {17, 100}, {22, 512}, {23, 1024},
};

static const char *const kvd_dumpregion_help[] = {
    "Usage: dumpregion [region]",
    "0  Non-volatile parameters - Firmware",
    "4  Wake-up parameters - Firmware",
    "5  PCI configuration register values",
    "6  PCI configuration register values",
    "7  PCI configuration register values",
    "8  Boot parameters x86 - BootBIOS, OpenBoot",
    "9  Multiboot parameters - x86 BootBIOS",
    "10 EFI parameters - EFIBoot",
    "14 VPD - Firmware for host system",
    "17 Environment non-volatile parameter",
    "22 FLEX10/FLEX FC parameters",
    "23 FCoE parameters - Driver",
    "32 Factory-assigned ID",
};

// The bytes shown of a region, 0 for one that is not known.
static uint32_t kvd_region_size(uint32_t region, int32_t sli_mode)
{
    if (region == KVD_REGION_VPD && sli_mode == 4)
        return KVD_REGION_VPD_SLI4_SIZE;
    for (size_t i = 0; i < sizeof(kvd_region_sizes) / sizeof(kvd_region_sizes[0]); i++)
        if (kvd_region_sizes[i].region == region)
            return kvd_region_sizes[i].size;
    return 0;
}

KVD_HANDLER(dumpregion)
{
    uint8_t buffer[KVD_REGION_BUFFER];
    uint32_t region, size;
    uint16_t status = 0;
    int32_t sli_mode;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 2) {
        for (size_t i = 0; i < sizeof(kvd_dumpregion_help) / sizeof(kvd_dumpregion_help[0]); i++)
            printf("%s\n", kvd_dumpregion_help[i]);
        return KVD_USAGE;
    }
    sli_mode = get_sli_mode((uint32_t)cur_board);
    if (sli_mode < 0) {
        printf("Could not obtain sli mode of board\n");
        return KVD_LIBERR;
    }
    region = (uint32_t)strtoul(margv[1], NULL, 0);
    if (region == KVD_REGION_FACTORY_ID)
        return KVD_OK;
    size = kvd_region_size(region, sli_mode);
    if (size == 0) {
        printf("Invalid region\n");
        return KVD_LIBERR;
    }
    memset(buffer, 0, sizeof(buffer));
    rc = getRegionData((uint32_t)cur_board, KVD_REGION_TYPE_CONFIG, region, 0, buffer, &size, &status, 0);
    if (rc != 0) {
        printf("get region data error %d\n", (int)rc);
        return KVD_LIBERR;
    }
    // Rows cover the size asked for; the library may have changed `size`,
    // so the size shown is the table's again, always inside the buffer.
    size = kvd_region_size(region, sli_mode);
    for (uint32_t off = 0; off < size; off += 16) {
        const uint8_t *b = buffer + off;
        printf("DATA[%03x] %02x %02x %02x %02x %02x %02x %02x %02x %02x %02x %02x %02x %02x %02x %02x %02x\n",
               off, b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7], b[8], b[9], b[10], b[11], b[12], b[13],
               b[14], b[15]);
    }
    return KVD_OK;
}
