// The ASIC's built-in diagnostics: diag starts them (the request, then a
// reset into operational firmware under which they run) and getdlog prints
// the log they leave, asking a second time when the log is larger than the
// room first offered.
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "tarvo.h"

#define TVO_DLOG_SIZE 2048
#define TVO_ASIC_INVALID_COMMAND 2
#define TVO_ASIC_MORE_DATA 7
#define TVO_ASIC_BUSY 16
#define TVO_DLOG_TEXT_MAX 256 /* longest result text printed */

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

void tvo_print_dlog(const uint8_t *buf, uint32_t size)
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
