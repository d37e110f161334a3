// Driver configuration parameters: "getcfg" fetches the driver's list into
// the process-wide table and prints it page by page; "setcfg" changes one
// parameter, found by name in the table the last "getcfg" filled. The shell
// knows no parameter names: the list and its order are the library's.
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"

// The list of the last successful "getcfg", for any board, and its length.
CFGPARAM cfgparam[KVD_CFG_MAX_PARAMS];
int32_t gotcfg = 0;

static const char *const kvd_cfg_header =
    "Low        High       Default    Current    Flag       Chgstate   Name";

KVD_HANDLER(getcfg)
{
    char name[KVD_CFG_NAME_LEN + 1];
    char help[KVD_CFG_HELP_LEN + 1];
    uint32_t count;

    (void)row;
    (void)arg;
    if (margc > 2) {
        printf("Usage: getcfg [help]\n");
        return KVD_USAGE;
    }
    count = GetCfgParam((uint32_t)cur_board, cfgparam);
    if (count == 0)
        return kvd_cannot_issue();
    // The table holds no more than its own room, whatever the count says.
    if (count > KVD_CFG_MAX_PARAMS)
        count = KVD_CFG_MAX_PARAMS;
    gotcfg = (int32_t)count;

    printf("%s\n", kvd_cfg_header);
    for (uint32_t i = 0; i < count; i++) {
        const CFGPARAM *p = &cfgparam[i];

        printf("0x%08x 0x%08x 0x%08x 0x%08x 0x%08x 0x%08x %s\n", p->a_low, p->a_hi, p->a_default,
               p->a_current, (uint32_t)p->a_flag, (uint32_t)p->a_changestate,
               KVD_FIELDTEXT(name, p->a_string));
        if (margc == 2)
            printf("%s\n", KVD_FIELDTEXT(help, p->a_help));
        // Each page starts with the header; no pause after the last entry.
        if (i + 1 < count && num_lines > 0 && (int)i % num_lines == num_lines - 1) {
            if (promptContinueOrAbort())
                return KVD_OK;
            printf("%s\n", kvd_cfg_header);
        }
    }
    return KVD_OK;
}

// An unknown name is not reported here: the index one past the list goes
// to the library, which refuses it.
KVD_HANDLER(setcfg)
{
    char name[KVD_CFG_NAME_LEN + 1];
    uint32_t value;
    int32_t index;

    (void)row;
    (void)arg;
    if (margc != 3) {
        printf("Usage: setcfg cfgstring value\n");
        return KVD_USAGE;
    }
    if (gotcfg <= 0) {
        printf("Must run getcfg first\n");
        return KVD_PRECOND;
    }
    value = (uint32_t)strtoul(margv[2], NULL, 0);
    for (index = 0; index < gotcfg; index++)
        if (strcmp(KVD_FIELDTEXT(name, cfgparam[index].a_string), margv[1]) == 0)
            break;
    if (SetCfgParam((uint32_t)cur_board, (uint32_t)index, value) != 0)
        return kvd_cannot_issue();
    return KVD_OK;
}
