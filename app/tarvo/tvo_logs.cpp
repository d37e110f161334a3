// The ASIC's logs: logcfg, logdata and paniclog. None knows the size of the
// reply in advance: each first reads the configuration (code 8) to learn it,
// then asks again offering a buffer of that size. Counts and sizes in the
// replies are trusted only as far as the buffer they arrived in.
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "tarvo.h"

#define TVO_LOG_ALL 0xFFFFFFFFu
#define TVO_LOG_ENTRY_OFF offsetof(tarvo_log_data_rsp_t, data)
#define TVO_PANIC_ENTRY_OFF offsetof(tarvo_panic_log_data_rsp_t, data)
#define TVO_LOG_CFG_ENTRY_OFF offsetof(tarvo_log_config_rsp_t, data)

static void tvo_hyphens(void)
{
    printf("--------------------------------------------------------------------------------\n");
}

// The size of the next response: a payload size the ASIC reported plus its
// code word; 0 (after the message) when no buffer that large is taken.
static uint32_t tvo_next_size(uint32_t payload)
{
    uint64_t size = (uint64_t)payload + 4;

    if (size > TVO_RSP_ALLOC_MAX) {
        printf("Unable to allocate response buffer memory.\n");
        return 0;
    }
    return (uint32_t)size;
}

// The log count the response states; 0 when the response (its size from
// the configuration's log_cfg_size, which may be 0) ends before the field.
static uint16_t tvo_log_num(const uint8_t *cfg, uint32_t size)
{
    uint16_t num_logs = 0;

    if (size >= offsetof(tarvo_log_config_rsp_t, num_logs) + sizeof(num_logs))
        memcpy(&num_logs, cfg + offsetof(tarvo_log_config_rsp_t, num_logs), sizeof(num_logs));
    return num_logs;
}

// How many log descriptions lie whole inside `size` bytes of response.
static uint32_t tvo_log_count(const uint8_t *cfg, uint32_t size)
{
    uint16_t num_logs = tvo_log_num(cfg, size);
    uint32_t fit;

    fit = size < TVO_LOG_CFG_ENTRY_OFF ? 0 : (uint32_t)((size - TVO_LOG_CFG_ENTRY_OFF) / sizeof(tarvo_log_t));
    return num_logs < fit ? num_logs : fit;
}

static tarvo_log_t tvo_log_at(const uint8_t *cfg, uint32_t index)
{
    tarvo_log_t log;

    memcpy(&log, cfg + TVO_LOG_CFG_ENTRY_OFF + (size_t)index * sizeof(log), sizeof(log));
    return log;
}

// Prints `count` text entries of entry_size bytes starting at `at`, each led
// by its index or, when `number` is not negative, by that number.
static void tvo_print_entries(const uint8_t *at, uint32_t count, uint32_t entry_size, int number)
{
    char *text = static_cast<char *>(malloc((size_t)entry_size + 1));

    if (!text) {
        printf("Unable to allocate response buffer memory.\n");
        return;
    }
    for (uint32_t i = 0; i < count; i++) {
        kvd_fieldtext(text, (size_t)entry_size + 1, at + (size_t)i * entry_size, entry_size);
        printf("%d: %s\n", number >= 0 ? number : (int)i, text);
    }
    free(text);
}

KVD_HANDLER(tvologcfg)
{
    uint8_t *cfg;
    uint32_t size;

    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: tarvo logcfg\n\n");
        return KVD_OK;
    }
    cfg = static_cast<uint8_t *>(calloc(1, sizeof(tarvo_get_config_rsp_t)));
    if (!cfg) {
        printf("Unable to allocate response buffer memory.\n");
        return KVD_OK;
    }
    if (tvo_get(TARVO_CMD_GET_CONFIG, 0, cfg, sizeof(tarvo_get_config_rsp_t),
                sizeof(tarvo_get_config_rsp_t))) {
        free(cfg);
        return KVD_OK;
    }
    tarvo_get_config_rsp_t config;
    memcpy(&config, cfg, sizeof(config));
    uint64_t want = (uint64_t)config.log_cfg_size + 4;
    size = (uint32_t)want;
    if (want > sizeof(config)) {
        // A larger reply than the configuration's own buffer: a notice, and
        // a buffer of the size asked for.
        printf("bad rsp_size %d\n", (int)size);
        free(cfg);
        size = tvo_next_size(config.log_cfg_size);
        cfg = size ? static_cast<uint8_t *>(calloc(1, size)) : NULL;
        if (!cfg) {
            if (size)
                printf("Unable to allocate response buffer memory.\n");
            return KVD_OK;
        }
    }
    if (tvo_get(TARVO_CMD_GET_LOG_CONFIG, 0, cfg, size, size) == 0) {
        uint32_t count = tvo_log_count(cfg, size);
        for (uint32_t i = 0; i < count; i++) {
            tarvo_log_t log = tvo_log_at(cfg, i);
            printf("      Id: %d\n", log.id);
            printf(" Entries: %d\n", log.num_entries);
            printf("    Size: %d\n", log.entry_size);
            printf("\n");
        }
    }
    free(cfg);
    return KVD_OK;
}

// Reads and prints one log; false when the command should end.
static bool tvo_print_log(const tarvo_log_t *log)
{
    uint64_t bytes = (uint64_t)log->num_entries * log->entry_size + TVO_LOG_ENTRY_OFF;
    uint8_t *data = bytes <= TVO_RSP_ALLOC_MAX ? static_cast<uint8_t *>(calloc(1, bytes)) : NULL;
    tarvo_get_cmd_t *cmd;
    bool ok = false;

    if (!data) {
        printf("Unable to allocate response buffer memory.\n");
        return false;
    }
    cmd = static_cast<tarvo_get_cmd_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (cmd) {
        cmd->code = TARVO_CMD_GET_LOG_DATA;
        cmd->context = log->id;
        cmd->length = (uint32_t)bytes;
        if (tvo_send(cmd, sizeof(*cmd), data, (uint32_t)bytes, TVO_STATUS_HEX) == 0) {
            uint16_t head;
            memcpy(&head, data + offsetof(tarvo_log_data_rsp_t, head), sizeof(head));
            printf("LOG %d\nhead %d size %d entries %d\n", log->id, head, log->entry_size, log->num_entries);
            tvo_hyphens();
            tvo_print_entries(data + TVO_LOG_ENTRY_OFF, log->num_entries, log->entry_size, -1);
            printf("\n");
            ok = true;
        }
        free(cmd);
    }
    free(data);
    return ok;
}

KVD_HANDLER(tvologdata)
{
    tarvo_rsp_t *rsp;
    uint32_t id, size;
    uint8_t *cfg;

    (void)row;
    if (margc != 3) {
        printf("Usage: tarvo logdata <logid>\n");
        printf("       tarvo logdata all\n\n");
        printf("          logid   - Log file id. Identified in tarvo logcfg\n");
        printf("          all     - Display all log files.\n\n");
        return KVD_OK;
    }
    id = strcmp(margv[2], "all") == 0 ? TVO_LOG_ALL : (uint32_t)strtoul(margv[2], NULL, 0);
    rsp = tvo_rsp_area(arg);
    if (tvo_get(TARVO_CMD_GET_CONFIG, 0, rsp, sizeof(tarvo_get_config_rsp_t), sizeof(tarvo_get_config_rsp_t)))
        return KVD_OK;
    size = tvo_next_size(rsp->config.log_cfg_size);
    cfg = size ? static_cast<uint8_t *>(calloc(1, size)) : NULL;
    if (!cfg) {
        if (size)
            printf("Unable to allocate response buffer memory.\n");
        return KVD_OK;
    }
    if (tvo_get(TARVO_CMD_GET_LOG_CONFIG, 0, cfg, size, size) == 0) {
        uint32_t count = tvo_log_count(cfg, size);
        if (id == TVO_LOG_ALL)
            printf("Log count: %d\n\n", tvo_log_num(cfg, size));
        for (uint32_t i = 0; i < count; i++) {
            tarvo_log_t log = tvo_log_at(cfg, i);
            if (id != TVO_LOG_ALL && log.id != id)
                continue;
            if (!tvo_print_log(&log))
                break;
        }
    }
    free(cfg);
    return KVD_OK;
}

#define TVO_PANIC_NUMBER 32 /* what every panic-log line is led by */

KVD_HANDLER(tvopaniclog)
{
    tarvo_rsp_t *rsp;
    uint32_t size;
    uint8_t *data;

    (void)row;
    if (margc != 2) {
        printf("Usage: tarvo paniclog\n\n");
        return KVD_OK;
    }
    rsp = tvo_rsp_area(arg);
    if (tvo_get(TARVO_CMD_GET_CONFIG, 0, rsp, sizeof(tarvo_get_config_rsp_t), sizeof(tarvo_get_config_rsp_t)))
        return KVD_OK;
    uint64_t want = (uint64_t)rsp->config.panic_log_size + 4;
    size = want <= TVO_RSP_ALLOC_MAX ? (uint32_t)want : 0;
    // The fixed part is always held, so that it reads as zero when the
    // ASIC offers less.
    data =
        size ? static_cast<uint8_t *>(calloc(
                   1, size < sizeof(tarvo_panic_log_data_rsp_t) ? sizeof(tarvo_panic_log_data_rsp_t) : size))
             : NULL;
    if (!data) {
        printf("Tarvo no-mem error. \n");
        return KVD_OK;
    }
    if (tvo_get(TARVO_CMD_GET_PANIC_LOG, 0, data, size, size) == 0) {
        tarvo_panic_log_data_rsp_t p;
        memcpy(&p, data, sizeof(p));
        printf("      Log Present: %s\n", p.log_present ? "Yes" : "No");
        if (p.type == 1)
            printf("       Panic type: Solicited\n");
        else if (p.type == 2)
            printf("       Panic type: Exception\n");
        else
            printf("       Panic type: unknown(%x)\n", p.type);
        printf("         regs_epc: %x\n", p.regs_epc);
        printf("   regs_cp0_cause: %x\n", p.regs_cp0_cause);
        printf("  regs_cp0_status: %x\n", p.regs_cp0_status);
        for (int i = 0; i < 32; i++)
            printf("     regs_gp[%2d]: %x\n", i, p.regs_gp[i]);
        printf("\n");
        printf("Panic Log: %d Entries: Head %d Entry size %d\n", p.num_entries, p.head, p.entry_size);
        tvo_hyphens();
        uint32_t fit = 0;
        if (p.entry_size && size > TVO_PANIC_ENTRY_OFF)
            fit = (uint32_t)((size - TVO_PANIC_ENTRY_OFF) / p.entry_size);
        tvo_print_entries(data + TVO_PANIC_ENTRY_OFF, p.num_entries < fit ? p.num_entries : fit, p.entry_size,
                          TVO_PANIC_NUMBER);
        printf("\n");
    }
    free(data);
    return KVD_OK;
}
