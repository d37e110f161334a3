// FRU data, optical module pages and FCoE frame formats: getfru, setfru,
// getsfp and setfcoefmt. Address fields travel reversed (swap64_addr) in
// both directions: the ASIC holds a MAC's last byte first.
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "tarvo.h"

KVD_HANDLER(tvogetfru)
{
    tarvo_rsp_t *rsp;
    uint32_t len = sizeof(tarvo_fru_data_rsp_t);

    (void)row;
    if (margc != 2) {
        printf("Usage: tarvo getfru\n\n");
        return KVD_OK;
    }
    rsp = tvo_rsp_area(arg);
    tarvo_get_cmd_t *cmd = static_cast<tarvo_get_cmd_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (!cmd)
        return KVD_OK;
    memset(rsp, 0, len);
    cmd->code = TARVO_CMD_GET_FRU;
    cmd->length = len;
    uint32_t rc = KVD_SendTarvoCommand((uint32_t)cur_board, cmd, sizeof(*cmd), rsp, &len);
    if (rc != 0) {
        tvoParseErr(rc);
    } else {
        tarvo_fru_data_rsp_t *fru = &rsp->fru_data;
        swap64_addr(fru->mac0);
        swap64_addr(fru->mac1);
        if (fru->code != 0) {
            printf("Tarvo command error. code=%d.\n", (int)fru->code);
        } else {
            printf("FRU Data:\n");
            printf("--------------------------------------------------\n");
            printf("   Port 0 MAC Address: %02x:%02x:%02x:%02x:%02x:%02x\n", fru->mac0[2], fru->mac0[3],
                   fru->mac0[4], fru->mac0[5], fru->mac0[6], fru->mac0[7]);
            printf("   Port 1 MAC Address: %02x:%02x:%02x:%02x:%02x:%02x\n", fru->mac1[2], fru->mac1[3],
                   fru->mac1[4], fru->mac1[5], fru->mac1[6], fru->mac1[7]);
            printf("   Number of Channels: %d\n", (int)(fru->flags & 3));
            printf("\n");
        }
    }
    free(cmd);
    return KVD_OK;
}

static void tvo_setfru_usage(void)
{
    printf("Usage: tarvo setfru  <Port 0 MAC> [<Port 1 MAC>]\n\n");
    printf("               Port 0 MAC  - MAC Address of Port 0\n");
    printf("                             Example: (XX:XX:XX:XX:XX:XX)\n");
    printf("               Port 1 MAC  - MAC Address of Port 1\n");
    printf("                             Example: (XX:XX:XX:XX:XX:XX)\n\n");
}

KVD_HANDLER(tvosetfru)
{
    tarvo_set_fru_data_cmd_t *cmd;
    tarvo_rsp_t *rsp;

    (void)row;
    if (margc != 3 && margc != 4) {
        tvo_setfru_usage();
        return KVD_OK;
    }
    cmd = static_cast<tarvo_set_fru_data_cmd_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (!cmd)
        return KVD_OK;
    cmd->code = TARVO_CMD_SET_FRU;
    cmd->flags = (uint32_t)(margc - 2);
    if (!kvd_atomac(cmd->mac0, margv[2]) || (margc == 4 && !kvd_atomac(cmd->mac1, margv[3]))) {
        tvo_setfru_usage();
        free(cmd);
        return KVD_OK;
    }
    swap64_addr(cmd->mac0);
    swap64_addr(cmd->mac1);
    rsp = tvo_rsp_area(arg);
    memset(rsp, 0, 4);
    if (tvo_send(cmd, sizeof(*cmd), rsp, 4, TVO_CODE_DEC) == 0)
        printf("\n");
    free(cmd);
    return KVD_OK;
}

// One page of the module: 64 words, four to a line, each line led by its
// byte offset.
static void tvo_print_sfp_page(const uint8_t *page)
{
    for (int i = 0; i < TARVO_SFP_PAGE_SIZE / 4; i++) {
        uint32_t word;
        memcpy(&word, page + i * 4, sizeof(word));
        if (i % 4 == 0)
            printf("\n%4x: ", i * 4);
        printf("0x%08lx  ", (unsigned long)word);
    }
    printf("\n");
}

KVD_HANDLER(tvogetsfp)
{
    tarvo_rsp_t *rsp;

    (void)row;
    if (margc != 2) {
        printf("Usage: tarvo getsfp\n\n");
        return KVD_OK;
    }
    rsp = tvo_rsp_area(arg);
    if (tvo_get(TARVO_CMD_GET_SFP, 0, rsp, sizeof(tarvo_sfp_rsp_t), sizeof(tarvo_sfp_rsp_t)) == 0) {
        printf("Page 0xA0:");
        tvo_print_sfp_page(rsp->sfp.page_a0);
        printf("Page 0xA2:");
        tvo_print_sfp_page(rsp->sfp.page_a2);
    }
    return KVD_OK;
}

static void tvo_fcoefmt_usage(void)
{
    char name[32];

    printf("Usage: tarvo setfcoe <FCOE_FMT_TYPE>\n\n");
    printf("      FCOE_FMT_TYPE  - Tarvo FCOE range 0x00000001-0x001ffff.\n");
    printf("      %-24s0x%08x\n", "FC0E_FRAME_FORMAT_P0", FC0E_FRAME_FORMAT_P0);
    for (int t = 0; t <= 14; t++) {
        snprintf(name, sizeof(name), "FC0E_FRAME_FORMAT_T%d", t);
        printf("      %-24s0x%08x\n", name, FC0E_FRAME_FORMAT_T(t));
    }
    printf("\n");
}

KVD_HANDLER(tvofcoefmt)
{
    tarvo_set_cmd_t *cmd;
    tarvo_rsp_t *rsp;
    uint32_t value = 0;

    (void)row;
    if (margc == 3)
        value = (uint32_t)strtoul(margv[2], NULL, 0);
    if (margc != 3 || value == 0 || value >= TARVO_FCOE_FMT_LIMIT) {
        tvo_fcoefmt_usage();
        return KVD_OK;
    }
    cmd = static_cast<tarvo_set_cmd_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (!cmd)
        return KVD_OK;
    rsp = tvo_rsp_area(arg);
    memset(rsp, 0, 4);
    cmd->code = TARVO_CMD_SET_FCOE_FMT;
    cmd->value1 = value;
    cmd->value2 = 0;
    (void)tvo_send(cmd, sizeof(*cmd), rsp, 4, TVO_CODE_DEC);
    free(cmd);
    return KVD_OK;
}
