// kvd: engineering diagnostic shell for Quellmarsh Fibre Channel and FCoE
// host bus adapters. Process entry, the interactive loop and option mode.
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "kvd.h"

static void kvd_interactive(char *buffer)
{
    cmdinfo *row;

    printf("Quellmarsh Engineering Debug Utility\n");
    if (kvd_pci_brds == 0) {
        printf("\nFound No Adapters\n");
        exit(1);
    }
    printf("\nDo not run this utility unless instructed by Korvan Technical Support\n");
    printf("libkvd syslog types enabled %08x\n", libkvd_logging_enable);

    // Entry 0 speaks for the whole driver.
    char drvrid[sizeof(kvd_un.brdaddr[0].a_drvrid) + 1];
    KVD_FIELDTEXT(drvrid, kvd_un.brdaddr[0].a_drvrid);
    printf("\nFound %d adapters: onmask %x offmask %x Driver:%s\n", kvd_pci_brds, kvd_un.brdaddr[0].a_onmask,
           kvd_un.brdaddr[0].a_offmask, drvrid);
    kvd_list_adapters();

    (void)kvd_lineedit_start("kvd");
    do {
        kvd_show_prompt(KVD_CMD_PROMPT);
        row = getcmd(buffer, KVD_CMDBUF_SIZE, 0);
    } while (row->c_routine(row, NULL) != 1);
    exit(0);
}

// Each option that gets this far runs the command buffer once, as it then
// stands; a failed status ends the run at the next option.
static void kvd_options(int argc, char **argv, char *buffer)
{
    int32_t status = 0;
    cmdinfo *row;
    int opt;

    for (;;) {
        opt = getopt(argc, argv, "ab:c:l::h?");
        if (opt == -1 || status != 0)
            exit(status);
        switch (opt) {
        case 'a':
            snprintf(buffer, KVD_CMDBUF_SIZE, "hbaattr\n");
            break;
        case 'b':
            cur_board = (int32_t)strtoul(optarg, NULL, 0);
            break;
        case 'c':
            snprintf(buffer, KVD_CMDBUF_SIZE, "%s\n", optarg);
            prompt_to_continue = 0;
            break;
        case 'l':
            break;
        default:
            usage(KVD_USAGE);
        }
        if (kvd_pci_brds == 0) {
            printf("\nNo Adapters Found\n");
            exit(KVD_NO_ADAPTERS);
        }
        row = getcmd(buffer, KVD_CMDBUF_SIZE, 1);
        status = row->c_routine(row, NULL);
    }
}

int main(int argc, char **argv)
{
    char buffer[KVD_CMDBUF_SIZE];

    memset(buffer, 0, sizeof(buffer));
    signal(SIGQUIT, quit_on_signal);
    signal(SIGINT, quit_on_signal);
    signal(SIGTERM, quit_on_signal);
    // A reader that goes away ends the shell, whatever disposition of
    // SIGPIPE was inherited.
    signal(SIGPIPE, SIG_DFL);

    kvd_bigbuffer = kvd_un.d.bytes;
    kvd_slimbuffer = kvd_un.d.bytes;
    memset(kvd_un.brdaddr, 0, sizeof(kvd_un.brdaddr));
    cur_iocb = cur_ring = cur_board = 0;
    // The count is the library's, the table is ours: never more boards
    // than its 32 entries, whatever the library answers.
    kvd_pci_brds = kvd_bound_boards(KVD_InitDiagEnv(kvd_un.brdaddr, KVD_MAX_BOARDS));

    if (argc < 2)
        kvd_interactive(buffer);
    kvd_options(argc, argv, buffer);
    return 0;
}
