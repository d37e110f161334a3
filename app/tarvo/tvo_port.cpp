// Port controls and resets of the ASIC: lbmode, pause, cos, porttype,
// loopback, reset, modeset and panic. Each sends one small record and prints
// "Done." on success (lbmode prints the mode read).
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

#include "tarvo.h"

#define TVO_PFC_MASK_MAX 255

// Keywords are taken in three spellings: lower case, capitalised, upper case.
static int tvo_keyword(const char *word, const char *lower, const char *capital, const char *upper)
{
    return strcmp(word, lower) == 0 || strcmp(word, capital) == 0 || strcmp(word, upper) == 0;
}

// Sends a record with a 4-byte reply in the lent area; "Done." on success.
static void tvo_send_done(void *cmd, uint32_t len, void *arg)
{
    tarvo_rsp_t *rsp = tvo_rsp_area(arg);

    memset(rsp, 0, sizeof(rsp->code));
    if (tvo_send(cmd, len, rsp, sizeof(rsp->code), TVO_CODE_DEC) == 0)
        printf("Done.\n\n");
}

static void tvo_send_set(uint32_t code, uint32_t value1, uint32_t value2, void *arg)
{
    tarvo_set_cmd_t *cmd = static_cast<tarvo_set_cmd_t *>(tvo_alloc_cmd(sizeof(tarvo_set_cmd_t)));

    if (!cmd)
        return;
    cmd->code = code;
    cmd->value1 = value1;
    cmd->value2 = value2;
    tvo_send_done(cmd, sizeof(*cmd), arg);
    free(cmd);
}

KVD_HANDLER(tvolbmode)
{
    (void)row;
    uint32_t port = margc == 3 ? (uint32_t)strtoul(margv[2], NULL, 0) : 0;
    if (margc != 3 || port > 1) {
        printf("Usage: tarvo lbmode <port>\n");
        printf("          port   - Loopback port. (0 or 1)\n\n");
        return KVD_OK;
    }
    tarvo_rsp_t *rsp = tvo_rsp_area(arg);
    const uint32_t size = sizeof(tarvo_lb_mode_rsp_t);
    if (tvo_get(TARVO_CMD_GET_LB_MODE, port, rsp, size, size) == 0) {
        if (rsp->lb_mode.mode)
            printf("Port %d: Loopback enabled.\n", (int)port);
        else
            printf("Port %d: Loopback disabled.\n", (int)port);
    }
    return KVD_OK;
}

static void tvo_pause_usage(void)
{
    printf("Usage: tarvo pause sp\n");
    printf("       tarvo pause ppp <priorities>\n");
    printf("          sp          - Sets IP network pause type to SP.\n");
    printf("          ppp         - Sets IP network pause type to PFC.\n");
    printf("          priorities  - Sets PFC priority for each COS.\n");
    for (int cos = 1; cos <= 8; cos++)
        printf("                        0x%02x   COS%d\n", 1u << (cos - 1), cos);
    printf("\n");
}

// The usage names "ppp"; the word taken is "pfc".
KVD_HANDLER(tvopause)
{
    (void)row;
    if (margc == 3 && (strcmp(margv[2], "sp") == 0 || strcmp(margv[2], "SP") == 0)) {
        tvo_send_set(TARVO_CMD_SET_PAUSE, TARVO_PAUSE_SP, 0, arg);
        return KVD_OK;
    }
    if (margc == 4 && (strcmp(margv[2], "pfc") == 0 || strcmp(margv[2], "PFC") == 0)) {
        unsigned long mask = strtoul(margv[3], NULL, 0);
        if (mask <= TVO_PFC_MASK_MAX) {
            tvo_send_set(TARVO_CMD_SET_PAUSE, TARVO_PAUSE_PFC, (uint32_t)mask, arg);
            return KVD_OK;
        }
    }
    tvo_pause_usage();
    return KVD_OK;
}

KVD_HANDLER(tvocos)
{
    (void)row;
    if (margc != 3) {
        printf("Usage: tarvo cos <cos>\n");
        printf("          cos  - FCoE class of service [default=3]\n\n");
        return KVD_OK;
    }
    tvo_send_set(TARVO_CMD_SET_COS, (uint32_t)strtoul(margv[2], NULL, 0), 0, arg);
    return KVD_OK;
}

KVD_HANDLER(tvoporttype)
{
    uint32_t type = 0;

    (void)row;
    if (margc == 3 && tvo_keyword(margv[2], "access", "Access", "ACCESS"))
        type = TARVO_PORT_ACCESS;
    else if (margc == 3 && tvo_keyword(margv[2], "trunk", "Trunk", "TRUNK"))
        type = TARVO_PORT_TRUNK;
    if (type == 0) {
        printf("Usage: tarvo porttype <type>\n");
        printf("          type  - UIF port type [access or trunk]\n\n");
        return KVD_OK;
    }
    tvo_send_set(TARVO_CMD_SET_PORT_TYPE, type, 0, arg);
    return KVD_OK;
}

KVD_HANDLER(tvoloopback)
{
    int mode = -1;

    (void)row;
    uint32_t port = margc == 4 ? (uint32_t)strtoul(margv[2], NULL, 0) : 0;
    if (margc == 4 && tvo_keyword(margv[3], "enable", "Enable", "ENABLE"))
        mode = 1;
    else if (margc == 4 && tvo_keyword(margv[3], "disable", "Disable", "DISABLE"))
        mode = 0;
    if (mode < 0 || port > 1) {
        printf("Usage: tarvo loopback <port> <mode>\n");
        printf("          port   - Loopback port. (0 or 1)\n");
        printf("          mode   - Loopback mode. (enable or disable)\n\n");
        return KVD_OK;
    }
    tarvo_loopback_cmd_t *cmd = static_cast<tarvo_loopback_cmd_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (!cmd)
        return KVD_OK;
    cmd->code = TARVO_CMD_LOOPBACK;
    cmd->context = port;
    cmd->type = (uint32_t)mode;
    tvo_send_done(cmd, sizeof(*cmd), arg);
    free(cmd);
    return KVD_OK;
}

KVD_HANDLER(tvoreset)
{
    int firmware = -1;

    (void)row;
    if (margc != 3)
        printf("margc %d != 1\n", margc);
    else if (strcasecmp(margv[2], "op") == 0)
        firmware = TARVO_RESET_OPERATIONAL;
    else if (strcasecmp(margv[2], "golden") == 0)
        firmware = TARVO_RESET_GOLDEN;
    if (firmware < 0) {
        printf("Usage: tarvo reset [op | golden] \n");
        printf("\tOp:\tOperational firmware that was downloaded\n");
        printf("\tGolden:\tGloden firmware that was install during manufacturing.\n\n");
        return KVD_OK;
    }
    tarvo_reset_cmd_t *cmd = static_cast<tarvo_reset_cmd_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (!cmd)
        return KVD_OK;
    cmd->code = TARVO_CMD_RESET;
    cmd->firmware = (uint32_t)firmware;
    tvo_send_done(cmd, sizeof(*cmd), arg);
    free(cmd);
    return KVD_OK;
}

KVD_HANDLER(tvomodeset)
{
    int mode = -1;

    (void)row;
    if (margc == 3 && tvo_keyword(margv[2], "enable", "Enable", "ENABLE"))
        mode = 1;
    else if (margc == 3 && tvo_keyword(margv[2], "disable", "Disable", "DISABLE"))
        mode = 0;
    if (mode < 0) {
        printf("Usage: tarvo modeset enable\n");
        printf("       tarvo modeset disable\n");
        printf("          enable   - Enable maintenance mode.\n");
        printf("          disable  - Disable maintenance mode.\n\n");
        return KVD_OK;
    }
    printf("tvomodeset current board %d\n", cur_board);
    tvo_send_set(TARVO_CMD_MAINT_MODE, (uint32_t)mode, 0, arg);
    return KVD_OK;
}

KVD_HANDLER(tvopanic)
{
    (void)row;
    if (margc != 2) {
        printf("Usage: tvopanic\n\n");
        return KVD_OK;
    }
    uint32_t *cmd = static_cast<uint32_t *>(tvo_alloc_cmd(sizeof(uint32_t)));
    if (!cmd)
        return KVD_OK;
    *cmd = TARVO_CMD_PANIC;
    tvo_send_done(cmd, sizeof(*cmd), arg);
    free(cmd);
    return KVD_OK;
}
