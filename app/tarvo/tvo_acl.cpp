// Fabric access lists and virtual links of the ASIC's logical ports:
// getfacl, setfacl, createvl and deletevl. The list is read through a reply
// with room for one entry; setfacl sends back what it read plus the new
// entry, so it copies only the entries that actually arrived.
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "tarvo.h"

// The reply offered: the record and one entry, room for exactly one entry.
#define TVO_FACL_RSP_SIZE (sizeof(tarvo_get_facl_rsp_t) + sizeof(tarvo_facl_t))
#define TVO_FACL_FIT ((TVO_FACL_RSP_SIZE - offsetof(tarvo_get_facl_rsp_t, facl_list)) / sizeof(tarvo_facl_t))

// Reads logical port lport's list into rsp (TVO_FACL_RSP_SIZE bytes) and
// prints the counts; returns the entries that arrived, or -1.
static int tvo_read_facl(uint32_t lport, uint8_t *rsp)
{
    tarvo_get_facl_rsp_t head;

    if (tvo_get(TARVO_CMD_GET_FACL, lport, rsp, TVO_FACL_RSP_SIZE, TVO_FACL_RSP_SIZE) != 0)
        return -1;
    memcpy(&head, rsp, offsetof(tarvo_get_facl_rsp_t, facl_list));
    printf("returned facls :%d\n", (int)head.returned_facls);
    printf("total facls :%d\n", (int)head.total_facls);
    return head.returned_facls < TVO_FACL_FIT ? (int)head.returned_facls : (int)TVO_FACL_FIT;
}

KVD_HANDLER(tvogetfacl)
{
    (void)row;
    (void)arg;
    if (margc != 3) {
        printf("Usage: tarvo getfcal <logical port id>\n\n");
        return KVD_OK;
    }
    uint32_t lport = (uint32_t)strtoul(margv[2], NULL, 0);
    uint8_t *rsp = static_cast<uint8_t *>(tvo_alloc_rsp(TVO_FACL_RSP_SIZE));
    if (!rsp)
        return KVD_OK;
    int n = tvo_read_facl(lport, rsp);
    if (n >= 0) {
        for (int i = 0; i < n; i++) {
            tarvo_facl_t e;
            memcpy(&e, rsp + offsetof(tarvo_get_facl_rsp_t, facl_list) + i * sizeof(e), sizeof(e));
            printf("switch name : %02x%02x%02x%02x%02x%02x%02x%02x\n", TVO_BYTES8(e.sw_name));
            printf("fabric name : %02x%02x%02x%02x%02x%02x%02x%02x\n", TVO_BYTES8(e.fabric_name));
            printf("ACC CTRL %x\n", e.acc_ctrl);
        }
        printf("Good\n");
    }
    free(rsp);
    return KVD_OK;
}

KVD_HANDLER(tvosetfacl)
{
    HBA_WWN sw_name, fabric_name;

    (void)row;
    (void)arg;
    if (margc != 6) {
        printf("Usage: tarvo setfcal <logical port id> <sw_name> <fabric name> <Permit=1, deny =0>\n\n");
        return KVD_OK;
    }
    // The messages name the token to the right of the one that failed.
    if (!tvo_wwn_arg(&sw_name, 3)) {
        printf("tarvo setfacl:%s bad Switch port_wwpn cur_wwn \n", margv[4]);
        return KVD_OK;
    }
    if (!tvo_wwn_arg(&fabric_name, 4)) {
        printf("tarvo setfacl:%s bad Fabric port_wwpn cur_wwn \n", margv[5]);
        return KVD_OK;
    }
    uint32_t lport = (uint32_t)strtoul(margv[2], NULL, 0);
    uint32_t permit = (uint32_t)strtoul(margv[5], NULL, 0);
    uint8_t *rsp = static_cast<uint8_t *>(tvo_alloc_rsp(TVO_FACL_RSP_SIZE));
    if (!rsp)
        return KVD_OK;
    int n = tvo_read_facl(lport, rsp);
    if (n < 0) {
        free(rsp);
        return KVD_OK;
    }
    const size_t list_at = offsetof(tarvo_set_facl_cmd_t, facl_list);
    const size_t len = list_at + (size_t)(n + 1) * sizeof(tarvo_facl_t);
    uint8_t *cmd = static_cast<uint8_t *>(tvo_alloc_cmd(len));
    if (!cmd) {
        free(rsp);
        return KVD_OK;
    }
    memcpy(cmd + list_at, rsp + offsetof(tarvo_get_facl_rsp_t, facl_list), (size_t)n * sizeof(tarvo_facl_t));
    tarvo_facl_t added;
    memset(&added, 0, sizeof(added));
    memcpy(added.fabric_name, fabric_name.wwn, sizeof(added.fabric_name));
    memcpy(added.sw_name, sw_name.wwn, sizeof(added.sw_name));
    added.acc_ctrl = permit;
    memcpy(cmd + list_at + (size_t)n * sizeof(tarvo_facl_t), &added, sizeof(added));
    const uint32_t head[3] = {TARVO_CMD_SET_FACL, lport, (uint32_t)n + 1};
    memcpy(cmd, head, sizeof(head));
    memset(rsp, 0, TVO_FACL_RSP_SIZE);
    if (tvo_send(cmd, (uint32_t)len, rsp, TVO_FACL_RSP_SIZE, TVO_CODE_DEC) == 0)
        printf("Good\n");
    free(cmd);
    free(rsp);
    return KVD_OK;
}

// Takes the port id only: the switch and fabric names come from the tokens
// after it, which a line of three tokens does not have, so they are the
// current WWN or nothing.
KVD_HANDLER(tvocreatevl)
{
    HBA_WWN sw_name, fabric_name;
    const uint32_t rsp_size = sizeof(uint32_t);

    (void)row;
    if (margc != 3) {
        printf("Usage: tarvo createvl <lport_id> <sw_name> <fabric name>\n");
        return KVD_OK;
    }
    uint32_t lport = (uint32_t)strtoul(margv[2], NULL, 0);
    tarvo_cmd_create_vl_t *cmd = static_cast<tarvo_cmd_create_vl_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (!cmd)
        return KVD_OK;
    if (!arg) {
        printf("Unable to allocate rsp buffer memory %d.\n", (int)rsp_size);
        free(cmd);
        return KVD_OK;
    }
    if (!tvo_wwn_arg(&sw_name, 3)) {
        printf("tarvo setcfoeparams:%s bad Switch port_wwpn cur_wwn \n", tvo_token(3));
        free(cmd);
        return KVD_OK;
    }
    if (!tvo_wwn_arg(&fabric_name, 4)) {
        printf("tarvo setcfoeparams:%s bad Fabric port_wwpn cur_wwn \n", tvo_token(4));
        free(cmd);
        return KVD_OK;
    }
    memset(arg, 0, rsp_size);
    cmd->code = TARVO_CMD_CREATE_VL;
    cmd->lport_id = lport;
    memcpy(cmd->fcf.sw_name, sw_name.wwn, sizeof(cmd->fcf.sw_name));
    memcpy(cmd->fcf.fabric_name, fabric_name.wwn, sizeof(cmd->fcf.fabric_name));
    if (tvo_send(cmd, sizeof(*cmd), arg, rsp_size, TVO_CODE_DEC) == 0)
        printf("Good\n");
    free(cmd);
    return KVD_OK;
}

KVD_HANDLER(tvodeletevl)
{
    (void)row;
    if (margc != 3) {
        printf("Usage: tarvo deletevl <handle>\n\n");
        return KVD_OK;
    }
    uint32_t handle = (uint32_t)strtoul(margv[2], NULL, 0);
    tarvo_cmd_delete_vl_t *cmd = static_cast<tarvo_cmd_delete_vl_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (!cmd)
        return KVD_OK;
    tarvo_rsp_t *rsp = tvo_rsp_area(arg);
    memset(rsp, 0, sizeof(rsp->code));
    cmd->code = TARVO_CMD_DELETE_VL;
    cmd->vl_handle = handle;
    if (tvo_send(cmd, sizeof(*cmd), rsp, sizeof(rsp->code), TVO_CODE_DEC) == 0)
        printf("Good\n");
    free(cmd);
    return KVD_OK;
}
