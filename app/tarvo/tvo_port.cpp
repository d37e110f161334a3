// Port controls, reset and diagnostics of the ASIC: lbmode, pause, cos,
// porttype, loopback, reset, modeset, diag, getdlog and panic. The setters
// send one small record and print "Done." on success.
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

#include "tarvo.h"

#define TVO_PFC_MASK_MAX 255
#define TVO_DLOG_SIZE 2048
#define TVO_ASIC_INVALID_COMMAND 2
#define TVO_ASIC_MORE_DATA 7
#define TVO_ASIC_BUSY 16
#define TVO_DLOG_TEXT_MAX 256

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

static void tvo_diag_usage(void)
{
    printf("Usage: tarvo diag <loop_count>\n\n");
    printf("     loop_count  - Number of times to run diagnostic tests (0 to <n>)\n");
    printf("                     0: *Indicates run tests forever.\n");
    printf("                     1:  Indicates run tests 1 time.\n");
    printf("                   <n>:  Indicates run tests <n> times.\n\n");
    printf("    *NOTE: If a 0 is used, Tarvo or the adapter must be reset or\n");
    printf("            power cycled to end the tests.\n\n");
    printf("     The adapter's link will go down while the tests\n");
    printf("     are running and will come back up when the tests complete.\n\n");
    printf("     After performing the diagnostic tests, run tarvo_get_diaglog\n");
    printf("     to obtain the results.\n\n");
}

// The tests run across a reset into operational firmware, sent right after
// the request.
KVD_HANDLER(tvodiag)
{
    (void)row;
    if (margc != 3) {
        tvo_diag_usage();
        return KVD_OK;
    }
    tarvo_rsp_t *rsp = tvo_rsp_area(arg);
    tarvo_diag_cmd_t *cmd = static_cast<tarvo_diag_cmd_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (!cmd)
        return KVD_OK;
    cmd->code = TARVO_CMD_DIAG;
    cmd->loop_count = (uint32_t)strtoul(margv[2], NULL, 0);
    uint32_t len = sizeof(rsp->code);
    memset(rsp, 0, len);
    uint32_t rc = KVD_SendTarvoCommand((uint32_t)cur_board, cmd, sizeof(*cmd), rsp, &len);
    free(cmd);
    if (rc != 0) {
        tvoParseErr(rc);
        return KVD_OK;
    }
    if (rsp->code == TVO_ASIC_INVALID_COMMAND) {
        printf("Invalid command.\n");
        return KVD_OK;
    }
    if (rsp->code == TVO_ASIC_BUSY) {
        printf("Adapter busy.\n");
        return KVD_OK;
    }
    if (rsp->code != 0) {
        printf("Tarvo command error. status=%x\n", rsp->code);
        return KVD_OK;
    }
    tarvo_reset_cmd_t *reset = static_cast<tarvo_reset_cmd_t *>(tvo_alloc_cmd(sizeof(*reset)));
    if (!reset)
        return KVD_OK;
    reset->code = TARVO_CMD_RESET;
    reset->firmware = TARVO_RESET_OPERATIONAL;
    memset(rsp, 0, sizeof(rsp->code));
    if (tvo_send(reset, sizeof(*reset), rsp, sizeof(rsp->code), TVO_CODE_DEC) == 0)
        printf("Diagnostics started.\n\n");
    free(reset);
    return KVD_OK;
}

static uint32_t tvo_word(const uint8_t *buf, size_t off)
{
    uint32_t w;

    memcpy(&w, buf + off, sizeof(w));
    return w;
}

// Requests the diagnostic log into *buf of *size bytes; a reply of code 7
// tells the size needed and is asked once more with room for it (a second 7
// is an error like any other). Returns 0 with the log in *buf, else -1 after
// the error line.
static int tvo_read_dlog(uint8_t **buf, uint32_t *size)
{
    tarvo_get_cmd_t *cmd = static_cast<tarvo_get_cmd_t *>(tvo_alloc_cmd(sizeof(tarvo_get_cmd_t)));

    if (!cmd)
        return -1;
    cmd->code = TARVO_CMD_GET_DIAG_LOG;
    cmd->length = *size;
    uint32_t len = *size;
    uint32_t rc = KVD_SendTarvoCommand((uint32_t)cur_board, cmd, sizeof(*cmd), *buf, &len);
    free(cmd);
    if (rc != 0) {
        tvoParseErr(rc);
        return -1;
    }
    uint32_t code = tvo_word(*buf, 0);
    if (code == 0)
        return 0;
    if (code != TVO_ASIC_MORE_DATA) {
        printf("Tarvo command error. code=%d.\n", (int)code);
        return -1;
    }
    uint64_t want = (uint64_t)tvo_word(*buf, offsetof(tarvo_diag_log_data_rsp_t, data_length)) +
                    offsetof(tarvo_diag_log_data_rsp_t, data);
    if (want > TVO_RSP_ALLOC_MAX) {
        printf("bad rsp_size %d\n", (int)want);
        return -1;
    }
    uint8_t *bigger = static_cast<uint8_t *>(calloc(1, (size_t)want));
    if (!bigger) {
        printf("Unable to allocate response buffer memory.\n");
        return -1;
    }
    free(*buf);
    *buf = bigger;
    *size = (uint32_t)want;
    return tvo_get(TARVO_CMD_GET_DIAG_LOG, 0, *buf, *size, *size);
}

static void tvo_print_dlog(const uint8_t *buf, uint32_t size)
{
    const size_t log_at = offsetof(tarvo_diag_log_data_rsp_t, data);
    const size_t first = log_at + offsetof(tarvo_diag_log_t, data);
    tarvo_diag_log_t log;

    if (size < first)
        return;
    memcpy(&log, buf + log_at, offsetof(tarvo_diag_log_t, data));
    log.status_length *= 4;
    printf("       Number of tests: %d\n", (int)log.num_tests);
    printf("         Status length: %d bytes\n", (int)log.status_length);
    printf("  Requested loop count: %d\n", (int)log.requested_loop_cnt);
    printf("  Completed loop count: %d\n", (int)log.completed_loop_cnt);
    printf("          Test summary: ");
    if (log.test_summary == TARVO_DIAG_SUCCESS)
        printf("Success.\n");
    else if (log.test_summary == TARVO_DIAG_FAILED)
        printf("Failed.\n");
    else if (log.test_summary == TARVO_DIAG_ABORTED)
        printf("Aborted.\n");
    else
        printf("unknown(%x)\n", log.test_summary);
    printf("\n");
    printf("Results:\n");
    printf("-----------------------------------------------------");
    // Entries lie (status bytes + 4) entry units of 8 bytes apart.
    const uint64_t stride = ((uint64_t)log.status_length + 4) * sizeof(tarvo_diag_log_entry_t);
    for (uint32_t i = 0; i < log.num_tests; i++) {
        uint64_t at = first + i * stride;
        if (at + sizeof(uint32_t) > size)
            break;
        uint32_t status = tvo_word(buf, (size_t)at);
        char text[TVO_DLOG_TEXT_MAX + 1];
        size_t room = size - (size_t)at - sizeof(uint32_t);
        size_t n = room < TVO_DLOG_TEXT_MAX ? room : TVO_DLOG_TEXT_MAX;
        memcpy(text, buf + at + sizeof(uint32_t), n);
        text[n] = '\0';
        int number = (int)i + 1;
        if (status == TARVO_DIAG_SUCCESS)
            printf("%4d: Success: %s\n", number, text);
        else if (status == TARVO_DIAG_FAILED)
            printf("%4d:  Failed: %s\n", number, text);
        else if (status == TARVO_DIAG_ABORTED)
            printf("%4d: Aborted: %s\n", number, text);
        else
            printf("%4d: Status(%x): %s\n", number, status, text);
    }
    printf("\n");
}

KVD_HANDLER(tvogetdlog)
{
    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: tvogetdlog\n\n");
        return KVD_OK;
    }
    uint32_t size = TVO_DLOG_SIZE;
    uint8_t *buf = static_cast<uint8_t *>(calloc(1, size));
    if (!buf) {
        printf("Unable to allocate response buffer memory.\n");
        return KVD_OK;
    }
    if (tvo_read_dlog(&buf, &size) == 0)
        tvo_print_dlog(buf, size);
    free(buf);
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
