// Process-wide state, the library environment and the adapter listing.
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "kvd.h"

struct kvd_area kvd_un;
uint8_t *kvd_bigbuffer;
uint8_t *kvd_slimbuffer;
uint32_t kvd_pci_brds;
int32_t cur_board;
int32_t cur_ring;
int32_t cur_iocb;
HBA_WWN cur_wwn;
int32_t cur_wwn_set;
int32_t num_lines = 16;
int32_t prompt_to_continue = 1;
const char *kvd_err_cannot_issue_cmd = "Cannot issue command\n";

int kvd_cannot_issue(void)
{
    fprintf(stderr, "%s", kvd_err_cannot_issue_cmd);
    return KVD_LIBERR;
}

void usage(int status)
{
    printf("\n");
    printf("kvd -- Korvan diagnostic fibre channel utility\n");
    printf("\n");
    printf("Usage: kvd <options>\n");
    printf("\n");
    printf("options:\n");
    printf("  -a                       get hba attributes.\n");
    printf("  -b board                 specify the board on which to perform the action.\n");
    printf("  -c \"command <OPTIONS>\"   run specified command and then exit.  Must include\n");
    printf("                           quotes.\n");
    printf("  -h                       display this help and exit.\n");
    printf("\n");
    printf("By default if no options are specified kvd will run in\n");
    printf("interactive mode.\n");
    printf("\n");
    exit(status);
}

uint32_t kvd_bound_boards(uint32_t count)
{
    return count < KVD_MAX_BOARDS ? count : KVD_MAX_BOARDS;
}

static void kvd_release(void)
{
    for (uint32_t board = 0; board < kvd_bound_boards(kvd_pci_brds); board++)
        (void)unRegisterForEvent(board, 0);
    KVD_FreeDiagEnv();
}

KVD_HANDLER(quit)
{
    (void)row;
    (void)arg;
    kvd_release();
    exit(1);
}

// SIGINT, SIGQUIT and SIGTERM end the shell the way "quit" does. The prompt
// is flushed before every read, so nothing of ours waits in the output
// buffer, and _exit keeps the handler clear of stdio.
void quit_on_signal(int signo)
{
    (void)signo;
    kvd_lineedit_restore();
    kvd_release();
    _exit(1);
}

// One line per board in the table, in board-number order; entries without a
// PCI id are gaps. Returns the number of lines printed.
int kvd_list_adapters(void)
{
    HBA_PORTATTRIBUTES attributes;
    char fwname[sizeof(kvd_un.brdaddr[0].a_fwname) + 1];
    char wwpn[24];
    int32_t host;
    int listed = 0;

    for (int board = 0; board < KVD_MAX_BOARDS; board++) {
        const KVD_BRDINFO *entry = &kvd_un.brdaddr[board];
        if (entry->a_pci == 0)
            continue;
        memset(&attributes, 0, sizeof(attributes));
        if (GetAdapterPortAttributes((uint32_t)board, 0, &attributes) != 0) {
            kvd_cannot_issue();
            continue;
        }
        memcpy(&host, attributes.OSDeviceName + KVD_OSDEV_HOST, sizeof(host));
        KVD_FIELDTEXT(fwname, entry->a_fwname);
        kvd_mac_sprintf(entry->a_wwpn, wwpn);
        printf("Adapter %d: vexa%d host%d PCI id %x%s%s WWPN:%s\n", board, (int)entry->a_ddi, host,
               entry->a_pci, fwname[0] ? " Firmware:" : "", fwname, wwpn);
        listed++;
    }
    return listed;
}

KVD_HANDLER(adapters)
{
    (void)row;
    (void)arg;
    if (kvd_list_adapters() == 0)
        printf("No Adapters found\n");
    return KVD_OK;
}

KVD_HANDLER(getversions)
{
    char version[32] = {0};

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: getversions\n");
        return KVD_USAGE;
    }
    KVD_GetLibVer(version);
    version[sizeof(version) - 1] = '\0';
    printf("Using libkvd version: %s\n", version);
    return KVD_OK;
}
