// The "tarvo" dispatcher, its sub-command table, the transport helpers the
// family shares, and the init settings (init, getinit).
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "tarvo.h"

cmdinfo tarvoinfo[tarvoinfo_array_size] = {
    {"inval", tvoinval},
    {"init", tvoinit},
    {"download", tvodownload},
    {"rdmem", tvordmem},
    {"wmem", tvowmem},
    {"fteins", tvofteins},
    {"ftedel", tvoftedel},
    {"getinit", tvogetinit},
    {"getfru", tvogetfru},
    {"setfru", tvosetfru},
    {"setfcoefmt", tvofcoefmt},
    {"getcfg", tvogetcfg},
    {"portstat", tvoportstat},
    {"lifstat", tvolifstat},
    {"asicstat", tvoasicstat},
    {"logcfg", tvologcfg},
    {"logdata", tvologdata},
    {"paniclog", tvopaniclog},
    {"lbmode", tvolbmode},
    {"pause", tvopause},
    {"cos", tvocos},
    {"porttype", tvoporttype},
    {"diag", tvodiag},
    {"loopback", tvoloopback},
    {"reset", tvoreset},
    {"modeset", tvomodeset},
    {"getftbl", tvogetftbl},
    {"getsfp", tvogetsfp},
    {"getdlog", tvogetdlog},
    {"panic", tvopanic},
    {"setfcoeparams", tvosetfcoeparams},
    {"getfcoeparams", tvogetfcoeparams},
    {"getfcflist", tvogetfcflist},
    {"setfacl", tvosetfacl},
    {"getfacl", tvogetfacl},
    {"createvl", tvocreatevl},
    {"deletevl", tvodeletevl},
    {"setetspg", tvosetetspg},
    {"getetspg", tvogetetspg},
    {"setHostEthPfcFlg", tvosetHostEthPfcFlg},
    {"getHostEthPfcFlg", tvogetHostEthPfcFlg},
    {"getDcbxMode", tvogetDcbxMode},
};

#define TVO_MAX_WORDS 13

KVD_HANDLER(tarvo)
{
    tarvo_rsp_t rsp;

    (void)row;
    (void)arg;
    if (margc < 2 || margc > TVO_MAX_WORDS) {
        printf("Usage%s: tarvo command [brd]\n", margv[0]);
        for (int i = 0; i < tarvoinfo_array_size; i++)
            printf("%s\n", tarvoinfo[i].c_string);
        return KVD_USAGE;
    }
    for (int i = 1; i < tarvoinfo_array_size; i++) {
        if (strcmp(tarvoinfo[i].c_string, margv[1]) == 0) {
            (void)tarvoinfo[i].c_routine(&tarvoinfo[i], &rsp);
            return KVD_OK;
        }
    }
    (void)tvoinval(&tarvoinfo[0], &rsp);
    return KVD_OK;
}

KVD_HANDLER(tvoinval)
{
    (void)row;
    (void)arg;
    printf("Invalid command: %s   supported commands include:\n", margv[1]);
    for (int i = 1; i < tarvoinfo_array_size; i++) {
        printf("%10s ", tarvoinfo[i].c_string);
        if (i % 6 == 0)
            printf("\n");
    }
    printf("\n");
    return KVD_OK;
}

void tvoParseErr(uint32_t status)
{
    switch (status) {
    case TARVO_ERR_GENERAL:
        printf("Tarvo command error. General Error.\n");
        break;
    case TARVO_ERR_RSP_OVERRUN:
        printf("Tarvo command error. Response buffer overrun.\n");
        break;
    case TARVO_ERR_INVALID_ADAPTER:
        printf("Tarvo command error. Invalid adapter.\n");
        break;
    case TARVO_ERR_INVALID_BOARD:
        printf("Tarvo command error. Invalid board id.\n");
        break;
    case TARVO_ERR_LINK_DOWN:
        printf("Tarvo command error. Link down.\n");
        break;
    case TARVO_ERR_TIMEOUT:
        printf("Tarvo command error. Timeout.\n");
        break;
    default:
        printf("Tarvo command error. error=%d.\n", (int)status);
        break;
    }
}

void swap32_buffer(void *buffer, int length)
{
    uint8_t *p = static_cast<uint8_t *>(buffer);

    if (!p || length < 4)
        return;
    for (int i = 0; i + 4 <= length; i += 4) {
        uint8_t b0 = p[i], b1 = p[i + 1];
        p[i] = p[i + 3];
        p[i + 1] = p[i + 2];
        p[i + 2] = b1;
        p[i + 3] = b0;
    }
}

void swap64_addr(uint8_t *address)
{
    uint8_t tmp[TARVO_ADDR_SIZE];

    memcpy(tmp, address, sizeof(tmp));
    for (int i = 0; i < TARVO_ADDR_SIZE; i++)
        address[i] = tmp[TARVO_ADDR_SIZE - 1 - i];
}

tarvo_rsp_t *tvo_rsp_area(void *arg)
{
    static tarvo_rsp_t spare;

    if (arg)
        return static_cast<tarvo_rsp_t *>(arg);
    printf("Rsp ptr is null\n");
    return &spare;
}

void *tvo_alloc_cmd(size_t size)
{
    void *cmd = calloc(1, size);

    if (!cmd)
        printf("Unable to allocate command buffer memory.\n");
    return cmd;
}

void *tvo_alloc_rsp(size_t size)
{
    void *rsp = calloc(1, size);

    if (!rsp)
        printf("Unable to allocate rsp buffer memory %d.\n", (int)size);
    return rsp;
}

const char *tvo_token(int index)
{
    return index < margc ? margv[index] : "(null)";
}

int tvo_wwn_arg(HBA_WWN *wwn, int index)
{
    if (index < margc && margv[index] && kvd_atowwn(wwn, margv[index]))
        return 1;
    if (!cur_wwn_set)
        return 0;
    *wwn = cur_wwn;
    return 1;
}

int tvo_send(void *cmd, uint32_t cmd_len, void *rsp, uint32_t rsp_size, int code_style)
{
    uint32_t len = rsp_size;
    uint32_t rc = KVD_SendTarvoCommand((uint32_t)cur_board, cmd, cmd_len, rsp, &len);
    uint32_t code;

    if (rc != 0) {
        kvd_progress_end(); // a transfer's progress line ends before the error
        tvoParseErr(rc);
        return -1;
    }
    memcpy(&code, rsp, sizeof(code));
    if (code != 0) {
        kvd_progress_end();
        if (code_style == TVO_STATUS_HEX)
            printf("Tarvo command error. status=%x\n", code);
        else
            printf("Tarvo command error. code=%d.\n", (int)code);
        return -1;
    }
    return 0;
}

int tvo_get(uint32_t code, uint32_t context, void *rsp, uint32_t rsp_size, uint32_t length)
{
    tarvo_get_cmd_t *cmd = static_cast<tarvo_get_cmd_t *>(tvo_alloc_cmd(sizeof(tarvo_get_cmd_t)));
    int rc;

    if (!cmd)
        return -1;
    memset(rsp, 0, rsp_size);
    cmd->code = code;
    cmd->context = context;
    cmd->length = length;
    rc = tvo_send(cmd, sizeof(*cmd), rsp, rsp_size, TVO_CODE_DEC);
    free(cmd);
    return rc;
}

static const char *tvo_fw_type_text(uint32_t type)
{
    switch (type) {
    case TARVO_FW_TYPE_OPERATIONAL:
        return "Operational";
    case TARVO_FW_TYPE_GOLDEN:
        return "Golden";
    case TARVO_FW_TYPE_DIAGNOSTIC:
        return "Diagnostic";
    default:
        return NULL;
    }
}

static void tvo_print_fw_type(uint32_t type)
{
    const char *text = tvo_fw_type_text(type);

    if (text)
        printf("     Firmware Type: %s\n", text);
    else
        printf("     Firmware Type: Unknown: x%x\n", type);
}

// The fields both init and getinit print first.
static void tvo_print_init_head(const tarvo_init_rsp_t *r)
{
    printf("         BB_credit: %d\n", (int)r->bb_credit);
    printf("        Frame Size: %d\n", (int)r->frame_size);
    printf("  Firmware Version: %x\n", r->fw_version);
    printf("      Reset Status: %s\n", r->reset_status ? "panic" : "normal");
    printf("  Maintenance Mode: %s\n", r->maint_status ? "enabled" : "disabled");
}

KVD_HANDLER(tvoinit)
{
    tarvo_init_cmd_t *cmd;
    tarvo_rsp_t *rsp;

    (void)row;
    if (margc != 4) {
        printf("Usage: tarvo init <bb_credit> <frame_size>\n\n");
        printf("        bb_credit  - Tarvo/Pelmir FC buffer-to-buffer credit.\n");
        printf("        frame_size - Tarvo/Pelmir FC frame size.\n\n");
        return KVD_OK;
    }
    uint32_t bb_credit = (uint32_t)strtoul(margv[2], NULL, 0);
    uint32_t frame_size = (uint32_t)strtoul(margv[3], NULL, 0);
    cmd = static_cast<tarvo_init_cmd_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (!cmd)
        return KVD_OK;
    rsp = tvo_rsp_area(arg);
    memset(rsp, 0, sizeof(tarvo_init_rsp_t));
    cmd->code = TARVO_CMD_INIT;
    cmd->bb_credit = bb_credit;
    cmd->frame_size = frame_size;
    if (tvo_send(cmd, sizeof(*cmd), rsp, sizeof(tarvo_init_rsp_t), TVO_CODE_DEC) == 0) {
        tvo_print_init_head(&rsp->init);
        printf("          FRU Data: %s\n", rsp->init.fru_data_valid ? "valid" : "invalid");
        tvo_print_fw_type(rsp->init.fw_type);
        printf("\n");
    }
    free(cmd);
    return KVD_OK;
}

KVD_HANDLER(tvogetinit)
{
    tarvo_rsp_t *rsp;

    (void)row;
    if (margc != 2) {
        printf("Usage: tarvo getinit\n\n");
        return KVD_OK;
    }
    rsp = tvo_rsp_area(arg);
    if (tvo_get(TARVO_CMD_GET_INIT, 0, rsp, sizeof(tarvo_init_rsp_t), sizeof(tarvo_init_rsp_t)) == 0) {
        tvo_print_init_head(&rsp->init);
        tvo_print_fw_type(rsp->init.fw_type);
        printf("          Fru Data: %s\n", rsp->init.fru_data_valid ? "Valid" : "Invalid");
        printf("\n");
    }
    return KVD_OK;
}
