// The ASIC's forwarding table: fteins, ftedel and getftbl. Entries are keyed
// by an FC device id (low 24 bits) and a WWPN; MAC fields arrive last byte
// first and are reversed before printing, the WWPN is printed as received.
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "tarvo.h"

#define TVO_DID_MASK 0xFFFFFFu

static void tvo_fteins_usage(void)
{
    printf("Usage: tarvo fteins -f <did> <wwpn>\n");
    printf("       tarvo fteins -d <did> <wwpn>\n\n");
    printf("            -f    - Forward all matching frames to Pelmir.\n");
    printf("            -d    - Drop all matching frames.\n");
    printf("            did   - FC Device id of entry.\n");
    printf("            wwpn  - FC WWPN of entry.\n\n");
}

KVD_HANDLER(tvofteins)
{
    uint32_t mask;
    HBA_WWN wwpn;

    (void)row;
    if (margc != 5) {
        tvo_fteins_usage();
        return KVD_OK;
    }
    if (strcmp(margv[2], "-f") == 0 || strcmp(margv[2], "-F") == 0) {
        mask = TARVO_FTE_FORWARD;
    } else if (strcmp(margv[2], "-d") == 0 || strcmp(margv[2], "-D") == 0) {
        mask = TARVO_FTE_DROP;
    } else {
        tvo_fteins_usage();
        return KVD_OK;
    }
    uint32_t did = (uint32_t)strtoul(margv[3], NULL, 0) & TVO_DID_MASK;
    if (!tvo_wwn_arg(&wwpn, 4)) {
        printf("tarvo fteins:%s bad port_wwpn cur_wwn \n", margv[4]);
        return KVD_OK;
    }
    tarvo_fte_insert_cmd_t *cmd = static_cast<tarvo_fte_insert_cmd_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (!cmd)
        return KVD_OK;
    tarvo_rsp_t *rsp = tvo_rsp_area(arg);
    memset(rsp, 0, sizeof(rsp->code));
    cmd->code = TARVO_CMD_FTE_INSERT;
    cmd->mask = mask;
    cmd->fcid = did;
    memcpy(cmd->wwpn, wwpn.wwn, sizeof(cmd->wwpn));
    if (tvo_send(cmd, sizeof(*cmd), rsp, sizeof(rsp->code), TVO_CODE_DEC) == 0)
        printf("Done.\n\n");
    free(cmd);
    return KVD_OK;
}

KVD_HANDLER(tvoftedel)
{
    HBA_WWN wwpn;

    (void)row;
    if (margc != 4) {
        printf("Usage: tarvo ftedel <did> <wwpn>\n\n");
        printf("            did        - FC Device id of entry.\n");
        printf("            wwpn       - FC WWPN of entry.\n\n");
        return KVD_OK;
    }
    uint32_t did = (uint32_t)strtoul(margv[2], NULL, 0) & TVO_DID_MASK;
    if (!tvo_wwn_arg(&wwpn, 3)) {
        printf("tarvo ftedel:%s bad port_wwpn\n", margv[3]);
        return KVD_OK;
    }
    tarvo_fte_delete_cmd_t *cmd = static_cast<tarvo_fte_delete_cmd_t *>(tvo_alloc_cmd(sizeof(*cmd)));
    if (!cmd)
        return KVD_OK;
    tarvo_rsp_t *rsp = tvo_rsp_area(arg);
    memset(rsp, 0, sizeof(rsp->code));
    cmd->code = TARVO_CMD_FTE_DELETE;
    cmd->fcid = did;
    memcpy(cmd->wwpn, wwpn.wwn, sizeof(cmd->wwpn));
    if (tvo_send(cmd, sizeof(*cmd), rsp, sizeof(rsp->code), TVO_CODE_DEC) == 0)
        printf("Done.\n\n");
    free(cmd);
    return KVD_OK;
}

static void tvo_print_fte(int index, const tarvo_fte_t *e)
{
    printf("Entry %d:\n", index);
    printf("-----------------------------------------------------\n");
    printf("             Type: 0x%x\n", e->type);
    printf("        Type Mask: 0x%x\n", e->type_mask);
    printf("              Tag: 0x%x\n", e->tag);
    printf("         Tag Mask: 0x%x\n", e->tag_mask);
    printf("       LIF Bitmap: 0x%x\n", e->lif_bitmap);
    printf("            Flags: 0x%x\n", e->flags);
    printf("      MAC Address: %02x:%02x:%02x:%02x:%02x:%02x:%02x:%02x\n", TVO_BYTES8(e->mac_addr));
    printf(" MAC Address Mask: %02x:%02x:%02x:%02x:%02x:%02x:%02x:%02x\n", TVO_BYTES8(e->mac_addr_mask));
    printf("             WWPN: %02x%02x%02x%02x%02x%02x%02x%02x\n", TVO_BYTES8(e->fc_wwpn));
    printf("\n");
}

KVD_HANDLER(tvogetftbl)
{
    (void)row;
    if (margc != 2) {
        printf("Usage: tarvo getftbl\n\n");
        return KVD_OK;
    }
    tarvo_rsp_t *rsp = tvo_rsp_area(arg);
    const uint32_t size = sizeof(tarvo_ftable_rsp_t);
    if (tvo_get(TARVO_CMD_GET_FTABLE, 0, rsp, size, size) != 0)
        return KVD_OK;
    for (int i = 0; i < TARVO_FTABLE_ENTRIES; i++) {
        tarvo_fte_t *e = &rsp->ftable.entry[i];
        swap64_addr(e->mac_addr);
        swap64_addr(e->mac_addr_mask);
        if (e->flags & TARVO_FTE_IN_USE)
            tvo_print_fte(i, e);
    }
    printf("\n");
    return KVD_OK;
}
