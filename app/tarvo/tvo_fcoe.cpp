// FCoE parameters of the ASIC's logical ports and the FCFs it discovered:
// setfcoeparams, getfcoeparams and getfcflist.
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "tarvo.h"

#define TVO_FIP_MIN_WORDS 9
#define TVO_FIP_VLAN_FIRST 9
#define TVO_FIP_VLANS 4
#define TVO_FCF_LIST_SIZE 1428
#define TVO_FCF_LIST_FIT                                                                                     \
    ((TVO_FCF_LIST_SIZE - offsetof(tarvo_get_fcf_list_rsp_t, fcf_list)) / sizeof(tarvo_fcf_info_t))

static void tvo_fcoeparams_usage(void)
{
    printf(
        "Usage: tarvo setfcoparams  <fcoe mode 1=FIP > <lport_id> <switch wwpn> <fabric wwpn> "
        "<supported addr mode> <pref addr mode> <discov TMO> <vlan_id0> <vlan_id1> <vlan_id2> <vlan_id3>\n");
    printf("Usage: tarvo setfcoparams  <fcoe mode 0=non-FIP >\n");
    printf("            fcoe mode    - FIP=1 NON-FIP=0.\n");
    printf("            supported address mode  - SPMA=1 FPMA=2.\n");
    printf("            preffered address mode  - SPMA=1 FPMA=2.\n");
    printf("            lport_id   - Device id of port.\n");
    printf("            switch wpn  - FC WWPN of entry.\n");
    printf("            fabric wpn  - FC WWPN of entry.\n");
    printf("            discovery TMO  - Discovery TMO, multiple of 500ms.\n\n");
}

KVD_HANDLER(tvosetfcoeparams)
{
    HBA_WWN sw_name, fabric_name;
    uint32_t lport = 0;

    (void)row;
    uint32_t mode = margc >= 3 ? (uint32_t)strtoul(margv[2], NULL, 0) : 0;
    if (margc < 3 || mode > TARVO_FCOE_FIP || (mode == TARVO_FCOE_FIP && margc < TVO_FIP_MIN_WORDS)) {
        tvo_fcoeparams_usage();
        return KVD_OK;
    }
    if (mode == TARVO_FCOE_FIP) {
        printf("fip:%s lport:%s sw:%s fab:%s sup:%s pref:%s disc:%s \n", margv[2], margv[3], margv[4],
               margv[5], margv[6], margv[7], margv[8]);
        lport = (uint32_t)strtoul(margv[3], NULL, 0) & 0xFFFFFFu;
        if (!tvo_wwn_arg(&sw_name, 4)) {
            printf("tarvo setcfoeparams:%s bad Switch port_wwpn cur_wwn \n", margv[4]);
            return KVD_OK;
        }
        if (!tvo_wwn_arg(&fabric_name, 5)) {
            printf("tarvo setcfoeparams:%s bad Fabric port_wwpn cur_wwn \n", margv[5]);
            return KVD_OK;
        }
    }
    tarvo_set_fcoe_params_cmd_t *cmd =
        static_cast<tarvo_set_fcoe_params_cmd_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (!cmd)
        return KVD_OK;
    cmd->code = TARVO_CMD_SET_FCOE_PARAMS;
    cmd->fcoe_mode = mode;
    cmd->lport_id = lport;
    if (mode == TARVO_FCOE_FIP) {
        tarvo_fip_params_t *fip = &cmd->params.fip;
        fip->sup_addr_mode = (uint8_t)strtoul(margv[6], NULL, 0);
        fip->pref_addr_mode = (uint8_t)strtoul(margv[7], NULL, 0);
        fip->fcf_disc_tov = (uint16_t)strtoul(margv[8], NULL, 0);
        printf("fip:%s lport:%s sw:%s fab:%s sup:%s pref:%s disc:%s %s\n", margv[2], margv[3], margv[4],
               margv[5], margv[6], margv[7], margv[8], tvo_token(TVO_FIP_VLAN_FIRST));
        for (int i = 0; i < TVO_FIP_VLANS; i++) {
            int at = TVO_FIP_VLAN_FIRST + i;
            if (at < margc && margv[at])
                fip->vlan_id[i] = (uint16_t)strtoul(margv[at], NULL, 0);
        }
        memcpy(fip->sw_name, sw_name.wwn, sizeof(fip->sw_name));
        memcpy(fip->fabric_name, fabric_name.wwn, sizeof(fip->fabric_name));
    }
    tarvo_rsp_t *rsp = tvo_rsp_area(arg);
    memset(rsp, 0, sizeof(rsp->code));
    if (tvo_send(cmd, sizeof(*cmd), rsp, sizeof(rsp->code), TVO_CODE_DEC) == 0)
        printf("Done.\n\n");
    free(cmd);
    return KVD_OK;
}

// The port id is converted from the sub-command word itself, so logical
// port 0 is always the one asked for.
KVD_HANDLER(tvogetfcoeparams)
{
    const uint32_t size = sizeof(tarvo_get_fcoe_params_rsp_t);

    (void)row;
    (void)arg;
    if (margc != 3) {
        printf("Usage: tarvo getfcoeparams <logical port id>\n\n");
        return KVD_OK;
    }
    uint32_t lport = (uint32_t)strtoul(margv[1], NULL, 0);
    tarvo_get_fcoe_params_rsp_t *rsp = static_cast<tarvo_get_fcoe_params_rsp_t *>(tvo_alloc_rsp(size));
    if (!rsp)
        return KVD_OK;
    if (tvo_get(TARVO_CMD_GET_FCOE_PARAMS, lport, rsp, size, size) == 0) {
        printf("fcf mode:%s\n", rsp->fcoe_mode ? "FIP" : "NON-FIP");
        if (rsp->fcoe_mode) {
            const tarvo_fip_params_t *fip = &rsp->params.fip;
            printf("switch name : %02x%02x%02x%02x%02x%02x%02x%02x\n", TVO_BYTES8(fip->sw_name));
            printf("fabric name : %02x%02x%02x%02x%02x%02x%02x%02x\n", TVO_BYTES8(fip->fabric_name));
            printf("supported addr mode:%x\n", fip->sup_addr_mode);
            printf("preffered addr mode:%x\n", fip->pref_addr_mode);
            printf("discovery tmo:%x\n", fip->fcf_disc_tov);
            printf("vlans: 0x%x 0x%x 0x%x 0x%x\n", fip->vlan_id[0], fip->vlan_id[1], fip->vlan_id[2],
                   fip->vlan_id[3]);
            printf("\n");
        } else {
            printf("FC map:0x%x\n", rsp->params.non_fip.fc_map);
        }
    }
    free(rsp);
    return KVD_OK;
}

static void tvo_print_fcf(const tarvo_fcf_info_t *f)
{
    printf("handle:%x vlan_id:%x\n", f->handle, f->vlan_id);
    printf("mac name : %02x%02x%02x%02x%02x%02x\n", f->mac[0], f->mac[1], f->mac[2], f->mac[3], f->mac[4],
           f->mac[5]);
    printf("switch name : %02x%02x%02x%02x%02x%02x%02x%02x\n", TVO_BYTES8(f->sw_name));
    printf("fabric name : %02x%02x%02x%02x%02x%02x%02x%02x\n", TVO_BYTES8(f->fabric_name));
    printf("fc_map:%x lka period:%x\n", f->fc_map, f->lka_period);
    switch (f->state) {
    case FCF_CREATE_STATE:
        printf("FCF_CREATE_STATE\n");
        break;
    case FCF_READY_STATE:
        printf("FCF_READY_STATE\n");
        break;
    case FCF_AVAILABLE_STATE:
        printf("FCF_AVAILABLE_STATE\n");
        break;
    case FCF_OFFLINE:
        printf("FCF_OFFLINE\n");
        break;
    default:
        printf("Sate: Unknown %x\n", f->state);
        break;
    }
    printf("Control Flag:%x priority:%x\n", f->ctrl_flags, f->priority);
    printf("Supported address mode %s\n", f->sup_addr_mode == TARVO_ADDR_MODE_SPMA ? "SPMA" : "FPMA");
}

KVD_HANDLER(tvogetfcflist)
{
    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: tarvo getfcflist\n\n");
        return KVD_OK;
    }
    uint8_t *rsp = static_cast<uint8_t *>(tvo_alloc_rsp(TVO_FCF_LIST_SIZE));
    if (!rsp)
        return KVD_OK;
    if (tvo_get(TARVO_CMD_GET_FCF_LIST, 0, rsp, TVO_FCF_LIST_SIZE, TVO_FCF_LIST_SIZE) == 0) {
        tarvo_get_fcf_list_rsp_t head;
        memcpy(&head, rsp, offsetof(tarvo_get_fcf_list_rsp_t, fcf_list));
        printf("returned fcfs:%d\n", (int)head.returned_fcfs);
        printf("total fcfs:%d\n", (int)head.total_fcf);
        printf("active fcfs:%d\n", (int)head.active_fcfs);
        // Stop at the buffer's end whatever the count says.
        for (uint32_t i = 0; i < head.returned_fcfs && i < TVO_FCF_LIST_FIT; i++) {
            tarvo_fcf_info_t f;
            memcpy(&f, rsp + offsetof(tarvo_get_fcf_list_rsp_t, fcf_list) + i * sizeof(f), sizeof(f));
            tvo_print_fcf(&f);
        }
    }
    free(rsp);
    return KVD_OK;
}
