// The shell's own commands: unknown word, help, host shell and set.
#include <stdlib.h>
#include <string.h>

#include "kvd.h"

KVD_HANDLER(inval)
{
    (void)row;
    (void)arg;
    if (margv[0] == NULL || margv[0][0] == '\0')
        return KVD_OK; // an empty line does nothing
    printf("Invalid command: %s\n", margv[0]);
    help(row, arg);
    return KVD_USAGE;
}

KVD_HANDLER(help)
{
    int printed = 0;

    (void)row;
    (void)arg;
    for (int i = 0; i < kvdcmdcnt; i++) {
        const char *word = kvdCmds[i].c_string;
        if (strncmp(word, "inval", 5) == 0 || word[0] == '!')
            continue;
        printf("%15s ", word);
        if (++printed % 4 == 0)
            printf("\n");
    }
    printf("%10s\n", "p");
    return KVD_OK;
}

KVD_HANDLER(shell)
{
    // Every word comes from one command line, so the joined text always
    // fits a second line buffer.
    char command[KVD_CMDBUF_SIZE + 1];
    size_t len;

    (void)row;
    (void)arg;
    if (margc <= 1) {
        printf("Usage: ! <command>\n");
        return KVD_USAGE;
    }
    len = (size_t)snprintf(command, sizeof(command), "%s", margv[1]);
    for (int i = 2; i < margc && len < sizeof(command); i++)
        len += (size_t)snprintf(command + len, sizeof(command) - len, " %s", margv[i]);
    fflush(stdout); // keep our output ahead of the host command's
    if (system(command) == -1) {
        // the host command's outcome is its own business
    }
    return KVD_OK;
}

// The keywords of "set", in its usage line's order; each but "wwn" sets the
// variable beside it. Completion offers the same words.
const char *const set_keywords[] = {"board", "ring", "iocb", "wwn", "lines", NULL};
static int32_t *const set_targets[] = {&cur_board, &cur_ring, &cur_iocb, NULL, &num_lines};

KVD_HANDLER(set)
{
    char text[24];
    int value;

    (void)row;
    (void)arg;
    if (margc == 1) {
        printf("board %d  ring %d  iocb %d", cur_board, cur_ring, cur_iocb);
        printf(" lines %d", num_lines);
        if (cur_wwn_set) {
            kvd_mac_sprintf(cur_wwn.wwn, text);
            printf(" wwn %s\n", text);
        } else {
            printf("\n");
        }
        return KVD_OK;
    }
    if (margc == 3 || margc == 4) {
        value = atoi(margv[2]);
        if (margc == 4)
            (void)atoi(margv[3]); // converted, and then of no use
        for (int k = 0; set_keywords[k] != NULL; k++) {
            if (set_targets[k] != NULL && strcmp(margv[1], set_keywords[k]) == 0) {
                *set_targets[k] = value;
                return KVD_OK;
            }
        }
        if (strcmp(margv[1], "wwn") == 0) {
            if (!kvd_atowwn(&cur_wwn, margv[2])) {
                printf("set:%s bad port_wwn\n", margv[2]);
                return KVD_BADARG;
            }
            cur_wwn_set = 1;
            return KVD_OK;
        }
    }
    printf("Usage: set [board | ring | iocb | wwn | lines] value\n");
    return KVD_USAGE;
}
