// Which SLI level a board's firmware runs and whether its port is native
// Fibre Channel or FCoE, for commands that run only on some boards. Both
// ask the driver afresh on every call and print nothing.
#include <string.h>

#include "kvd.h"

static int kvd_get_drvinfo(uint32_t board, KVDDRVINFO *info)
{
    memset(info, 0, sizeof(*info));
    info->drvInfoVer = KVD_DRVINFO_VERSION;
    return KVD_GetDrvInfo(board, info) == 0;
}

int32_t get_sli_mode(uint32_t board)
{
    KVDDRVINFO info;

    if (!kvd_get_drvinfo(board, &info))
        return -1;
    return (int32_t)info.sliMode;
}

int32_t get_protocol_mode(uint32_t board)
{
    KVDDRVINFO info;

    if (!kvd_get_drvinfo(board, &info))
        return -1;
    return (info.featureList & KVD_FTR_FCOE) ? 0 : 1;
}
