// "logging": the library's syslog mask and the driver's logging mask of the
// current board, each shown bit by bit; "logging lib MASK" and
// "logging drv MASK" set one of them (hexadecimal) and then show both.
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"

typedef struct {
    uint32_t bit;
    const char *name;
} kvd_logbit;

static const kvd_logbit kvd_syslog_bits[] = {
    {KVD_SYSLOG_ERROR, "errors"}, {KVD_SYSLOG_WARNING, "warnings"}, {KVD_SYSLOG_MBOX, "mailbox commands"},
    {KVD_SYSLOG_EVENT, "events"}, {KVD_SYSLOG_ENV, "environment"},  {KVD_SYSLOG_TRACE, "call trace"},
};

static const kvd_logbit kvd_drvlog_bits[] = {
    {KVD_DRVLOG_INIT, "initialisation"}, {KVD_DRVLOG_LINK, "link events"}, {KVD_DRVLOG_DISC, "discovery"},
    {KVD_DRVLOG_MBOX, "mailbox"},        {KVD_DRVLOG_ELS, "ELS"},          {KVD_DRVLOG_FCP, "FCP I/O"},
    {KVD_DRVLOG_EVENT, "events"},        {KVD_DRVLOG_FCOE, "FCoE"},        {KVD_DRVLOG_MGMT, "management"},
};

static void kvd_print_bits(uint32_t mask, const kvd_logbit *bits, size_t count)
{
    for (size_t i = 0; i < count; i++)
        printf("\tx%08x %-18s %s\n", bits[i].bit, bits[i].name, (mask & bits[i].bit) ? "on" : "off");
}

static int32_t kvd_show_logging(void)
{
    uint32_t mask = 0;

    printf("libkvd syslog types enabled %08x\n", libkvd_logging_enable);
    kvd_print_bits(libkvd_logging_enable, kvd_syslog_bits,
                   sizeof(kvd_syslog_bits) / sizeof(kvd_syslog_bits[0]));
    if (KVD_GetDriverLogMask((uint32_t)cur_board, &mask) != 0) {
        fputs(kvd_err_cannot_issue_cmd, stderr);
        return KVD_LIBERR;
    }
    printf("driver logging mask board %d x%08x\n", cur_board, mask);
    kvd_print_bits(mask, kvd_drvlog_bits, sizeof(kvd_drvlog_bits) / sizeof(kvd_drvlog_bits[0]));
    return KVD_OK;
}

KVD_HANDLER(logging)
{
    uint32_t mask;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc == 1)
        return kvd_show_logging();
    if (margc != 3 || (strcmp(margv[1], "lib") != 0 && strcmp(margv[1], "drv") != 0)) {
        printf("Usage: logging [lib|drv mask]\n");
        printf("   lib mask - libkvd syslog types (hex, bits x%08x)\n", KVD_SYSLOG_ALL);
        printf("   drv mask - driver logging of the board (hex, bits x%08x)\n", KVD_DRVLOG_ALL);
        return KVD_USAGE;
    }
    mask = (uint32_t)strtoul(margv[2], NULL, 16);
    if (strcmp(margv[1], "lib") == 0)
        rc = KVD_SetLibLogging(mask);
    else
        rc = KVD_SetDriverLogMask((uint32_t)cur_board, mask);
    if (rc != 0) {
        fputs(kvd_err_cannot_issue_cmd, stderr);
        return KVD_LIBERR;
    }
    return kvd_show_logging();
}
