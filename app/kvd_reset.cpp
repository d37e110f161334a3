// Adapter reset: selective, coordinated or firmware.
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"

KVD_HANDLER(reset)
{
    uint32_t type = 1;

    (void)row;
    (void)arg;
    if ((margc != 2 && margc != 3) || strcmp(margv[1], "hba") != 0) {
        printf("Usage: reset [hba] [type]\n");
        printf("\t type 1-selective, 2-coordinated, 3-firmware\n");
        return KVD_USAGE;
    }
    if (margc == 3)
        type = (uint32_t)strtoul(margv[2], NULL, 10);
    printf("hba: %d reset type: %x\n", cur_board, type);
    printf("status 0x%x\n", KVD_ResetAdapter((uint32_t)cur_board, type));
    return KVD_OK;
}
