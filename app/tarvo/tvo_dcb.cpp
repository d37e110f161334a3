// Data Center Bridging settings of the ASIC: the ETS priority groups
// (getetspg, setetspg), the host Ethernet PFC flag (getHostEthPfcFlg,
// setHostEthPfcFlg) and the DCBX mode (getDcbxMode). Code 42 both reads and
// writes the groups, and code 44 answers both the PFC flag and the DCBX mode:
// the ASIC tells the requests apart by the record alone.
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "tarvo.h"

#define TVO_PG_COUNT 8
#define TVO_PG_IDX_MAX 8 /* admitted, although the message names 7 */

static void tvo_print_pg_set(const tarvo_pg_info_t *pg)
{
    for (int i = 0; i < TVO_PG_COUNT; i++)
        printf("%d\tpg_ids=%x pg_bw=%x\n", i, pg->pg_ids[i], pg->pg_bw[i]);
}

// Reads the groups into rsp (84 bytes) and prints them; 0 on success.
static int tvo_read_pg(tarvo_get_ets_pg_info_rsp_t *rsp)
{
    if (tvo_get(TARVO_CMD_ETS_PG, 0, rsp, sizeof(*rsp), sizeof(*rsp)) != 0)
        return -1;
    printf("max supported pg:%d\n", (int)rsp->max_supported_pg);
    printf("current pg:%d\n", (int)rsp->curr_pg_info.num_pg);
    tvo_print_pg_set(&rsp->curr_pg_info);
    printf("default pg:%d\n", (int)rsp->def_pg_info.num_pg);
    tvo_print_pg_set(&rsp->def_pg_info);
    for (int i = 0; i < TVO_PG_COUNT; i++)
        printf("max_bg_bw[%d]= %x\n", i, rsp->max_bg_bw[i]);
    return 0;
}

KVD_HANDLER(tvogetetspg)
{
    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: tarvo getetspg\n\n");
        return KVD_OK;
    }
    tarvo_get_ets_pg_info_rsp_t *rsp =
        static_cast<tarvo_get_ets_pg_info_rsp_t *>(tvo_alloc_rsp(sizeof(tarvo_get_ets_pg_info_rsp_t)));
    if (!rsp)
        return KVD_OK;
    if (tvo_read_pg(rsp) == 0)
        printf("Good\n");
    free(rsp);
    return KVD_OK;
}

KVD_HANDLER(tvosetetspg)
{
    (void)row;
    (void)arg;
    if (margc != 5) {
        printf("Usage: tarvo setetspg <pg_idx> <pg_id_bit_map> <pg_bw>\n\n");
        return KVD_OK;
    }
    uint32_t idx = (uint32_t)strtoul(margv[2], NULL, 0);
    if (idx > TVO_PG_IDX_MAX) {
        printf(" pg_idx cannot exceed %d\n", 7);
        printf("Usage: tarvo setetspg <pg_idx> <pg_id_bit_map> <pg_bw>\n\n");
        return KVD_OK;
    }
    uint8_t bitmap = (uint8_t)strtoul(margv[3], NULL, 0);
    uint8_t bw = (uint8_t)strtoul(margv[4], NULL, 0);
    tarvo_get_ets_pg_info_rsp_t *rsp =
        static_cast<tarvo_get_ets_pg_info_rsp_t *>(tvo_alloc_rsp(sizeof(tarvo_get_ets_pg_info_rsp_t)));
    if (!rsp)
        return KVD_OK;
    if (tvo_read_pg(rsp) != 0) {
        free(rsp);
        return KVD_OK;
    }
    // Index 8 lands the bitmap on pg_bw[0] and the bandwidth one byte past
    // the record: the spare byte keeps it inside the buffer, and only the
    // record's 24 bytes are sent.
    const size_t len = sizeof(tarvo_set_pg_info_cmd_t);
    uint8_t *cmd = static_cast<uint8_t *>(tvo_alloc_cmd(len + 1));
    if (!cmd) {
        free(rsp);
        return KVD_OK;
    }
    const uint32_t code = TARVO_CMD_ETS_PG;
    const size_t pg_at = offsetof(tarvo_set_pg_info_cmd_t, pg_info);
    memcpy(cmd, &code, sizeof(code));
    memcpy(cmd + pg_at, &rsp->curr_pg_info, sizeof(tarvo_pg_info_t));
    cmd[pg_at + offsetof(tarvo_pg_info_t, pg_ids) + idx] = bitmap;
    cmd[pg_at + offsetof(tarvo_pg_info_t, pg_bw) + idx] = bw;
    memset(rsp, 0, sizeof(uint32_t));
    (void)tvo_send(cmd, (uint32_t)len, rsp, sizeof(uint32_t), TVO_CODE_DEC);
    free(cmd);
    free(rsp);
    return KVD_OK;
}

KVD_HANDLER(tvosetHostEthPfcFlg)
{
    const uint32_t rsp_size = sizeof(uint32_t);

    (void)row;
    if (margc != 3) {
        printf("Usage: tarvo setHostEthPfcFlg\n\n");
        return KVD_OK;
    }
    uint32_t flag = (uint32_t)strtoul(margv[2], NULL, 0);
    if (!arg) {
        printf("Unable to allocate rsp buffer memory %d.\n", (int)rsp_size);
        return KVD_OK;
    }
    tarvo_set_host_eth_pfc_flag_cmd_t *cmd = static_cast<tarvo_set_host_eth_pfc_flag_cmd_t *>(
        tvo_alloc_cmd(sizeof(tarvo_set_host_eth_pfc_flag_cmd_t)));
    if (!cmd)
        return KVD_OK;
    memset(arg, 0, rsp_size);
    cmd->code = TARVO_CMD_SET_HOST_PFC;
    cmd->host_pfc_enable = flag;
    cmd->rsvd1 = rsp_size;
    (void)tvo_send(cmd, sizeof(*cmd), arg, rsp_size, TVO_CODE_DEC);
    free(cmd);
    return KVD_OK;
}

KVD_HANDLER(tvogetHostEthPfcFlg)
{
    (void)row;
    if (margc != 2) {
        printf("Usage: tarvo getHostEthPfcFlg\n");
        return KVD_OK;
    }
    tarvo_rsp_t *rsp = tvo_rsp_area(arg);
    const uint32_t size = sizeof(tarvo_get_host_eth_pfc_flag_rsp_t);
    if (tvo_get(TARVO_CMD_GET_HOST_PFC, 0, rsp, size, size) == 0)
        printf("PFC flag:%s\n", rsp->hostpfc.host_pfc_enable ? "Enabled" : "Disabled");
    return KVD_OK;
}

static const char *tvo_dcbx_mode_name(uint32_t mode)
{
    switch (mode - TARVO_DCBX_MODE_BASE) {
    case TARVO_DCBX_MODE_PRE_CEE:
        return "TARVO_DCBX_MODE_PRE_CEE";
    case TARVO_DCBX_MODE_CEE_VER_01:
        return "TARVO_DCBX_MODE_CEE_VER_01";
    case TARVO_DCBX_MODE_CEE_VER_02:
        return "TARVO_DCBX_MODE_CEE_VER_02";
    case TARVO_DCBX_MODE_CEE_VER_03:
        return "TARVO_DCBX_MODE_CEE_VER_03";
    case TARVO_DCBX_MODE_CEE_VER_04:
        return "TARVO_DCBX_MODE_CEE_VER_04";
    default:
        return "Unknown?";
    }
}

KVD_HANDLER(tvogetDcbxMode)
{
    (void)row;
    if (margc != 2) {
        printf("Usage: tarvo getdcbxmode\n");
        return KVD_OK;
    }
    tarvo_rsp_t *rsp = tvo_rsp_area(arg);
    const uint32_t size = sizeof(tarvo_get_dcbx_mode_rsp_t);
    if (tvo_get(TARVO_CMD_GET_HOST_PFC, 0, rsp, size, size) == 0) {
        printf("DCBX mode:%x=\t", rsp->dcbx_mode.mode);
        printf("%s\n", tvo_dcbx_mode_name(rsp->dcbx_mode.mode));
    }
    return KVD_OK;
}
