// Discovered nodes, vital product data, persistent bindings and the FCP
// target mapping.
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"
#include "kvd_nodes_cmds.h"

KVD_HANDLER(nodeInform)
{
    NODEINFO node;
    char wwpn[24], wwnn[24];
    int32_t count;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: nodeinfo\n");
        return KVD_USAGE;
    }
    count = GetNodeInfo((uint32_t)cur_board, kvd_bigbuffer);
    if (count <= 0) {
        printf("No Node Info available\n");
        return KVD_NODATA;
    }
    if ((uint32_t)count > KVD_NODEINFO_MAX)
        count = (int32_t)KVD_NODEINFO_MAX;
    printf("Flg  Ste DID hex  DID dec  TargetID WWPName                  WWNName\n");
    for (int32_t i = 0; i < count; i++) {
        memcpy(&node, kvd_bigbuffer + (size_t)i * sizeof(node), sizeof(node));
        printf("%4x %3x %08lx %08d %08lx ", node.a_flag, node.a_state, (unsigned long)node.a_did,
               (int)node.a_did, (unsigned long)node.a_targetid);
        kvd_mac_sprintf(node.a_wwpn, wwpn);
        kvd_mac_sprintf(node.a_wwnn, wwnn);
        printf("%s  %s\n", wwpn, wwnn);
        if (kvd_page_break(i))
            break;
    }
    return KVD_OK;
}

KVD_HANDLER(vpdInfo)
{
    VPD vpd;
    uint32_t rc;
    char text[256];

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: vpdinfo\n");
        return KVD_OK;
    }
    memset(&vpd, 0, sizeof(vpd));
    vpd.version = KVD_VPD_VERSION;
    rc = GetVPDInfo((uint32_t)cur_board, &vpd);
    if (rc == 0) {
        printf("Model Description: %s\n", KVD_FIELDTEXT(text, vpd.ModelDescription));
        printf("Model Name: %s\n", KVD_FIELDTEXT(text, vpd.Model));
        printf("Program Type: %s\n", KVD_FIELDTEXT(text, vpd.ProgramType));
        printf("Port: %s\n", KVD_FIELDTEXT(text, vpd.PortNum));
    } else if (rc == KVD_VPD_NO_EVPD) {
        printf("No eVPD Data found on the HBA.\n");
    } else {
        kvd_cannot_issue();
    }
    return KVD_OK;
}

const char *kvd_bindtype_word(uint32_t type)
{
    static const char *const words[] = {"NONE ", "WWNN ", "WWPN ", "DID  ", "ALPA  "};

    return type < sizeof(words) / sizeof(words[0]) ? words[type] : "NONE ";
}

static const char *const kvd_bindflag_words[] = {"AUTOMAP|",  "BNDLST|",   "MAPLST|",   "UNMAPLST|",
                                                 "NODEVTMO|", "NOSCSIID|", "RPTLUNCMPL"};

KVD_HANDLER(listbind)
{
    HBA_BIND_LIST list;
    HBA_BIND_ENTRY e;
    uint32_t count, type;

    (void)row;
    (void)arg;
    memset(&list, 0, sizeof(list));
    list.NumberOfEntries = KVD_BIND_ROOM;
    memcpy(kvd_bigbuffer, &list.NumberOfEntries, sizeof(list.NumberOfEntries));
    if (GetFcpBindList((uint32_t)cur_board, (HBA_BIND_LIST *)(void *)kvd_bigbuffer) != 0) {
        printf("listbind failed ");
        return KVD_LIBERR;
    }
    memcpy(&count, kvd_bigbuffer, sizeof(count));
    if (count > KVD_BIND_ROOM)
        count = KVD_BIND_ROOM;
    printf("Idx  Bind Sid Did       WWNN                     WWPN                     FLAGS\n");
    printf("===============================================================================\n");
    for (uint32_t i = 0; i < count; i++) {
        memcpy(&e, kvd_bigbuffer + offsetof(HBA_BIND_LIST, entry) + i * sizeof(e), sizeof(e));
        printf("[%02d] ", (int)i);
        // The driver may hand over a type the enumeration does not name.
        memcpy(&type, &e.bind_type, sizeof(type));
        printf("%s", kvd_bindtype_word(type));
        printf("%02d 0x%08x ", (int)e.scsi_id, e.did);
        for (int k = 0; k < 8; k++)
            printf("%02x:", e.wwnn.wwn[k]);
        printf(" ");
        for (int k = 0; k < 8; k++)
            printf("%02x:", e.wwpn.wwn[k]);
        printf(" ");
        for (uint32_t bit = 0; bit < sizeof(kvd_bindflag_words) / sizeof(kvd_bindflag_words[0]); bit++)
            if (e.flags & (1u << bit))
                printf("%s", kvd_bindflag_words[bit]);
        printf("\n");
    }
    return KVD_OK;
}

uint64_t kvd_fcp_lun(uint32_t lun)
{
    uint8_t bytes[8] = {(uint8_t)(lun >> 8), (uint8_t)lun, 0, 0, 0, 0, 0, 0};
    uint64_t fcplun;

    memcpy(&fcplun, bytes, sizeof(fcplun));
    return fcplun;
}

const char *kvd_capacity(uint32_t blocks, uint32_t blocksize, uint32_t *capacity)
{
    uint32_t cap = blocks * blocksize;

    if (cap >= 0x40000001u) {
        *capacity = cap >> 30;
        return "GB";
    }
    if (cap >= 0x100001u) {
        *capacity = cap >> 20;
        return "MB";
    }
    *capacity = cap;
    return "B";
}

void fcpmap_get_extra(HBA_WWN wwpn, uint32_t lun)
{
    uint64_t fcplun = kvd_fcp_lun(lun);
    uint8_t *rsp = kvd_bigbuffer, *sense = kvd_bigbuffer + KVD_EXTRA_ROOM;
    uint32_t rspsize = KVD_EXTRA_ROOM, sensesize = KVD_EXTRA_ROOM;
    char text[KVD_EXTRA_ROOM + 1];

    // The vendor text runs on to the first NUL of the reply, never beyond it.
    memset(kvd_bigbuffer, 0, 2 * KVD_EXTRA_ROOM);
    if (SendScsiInquiry((uint32_t)cur_board, &wwpn, fcplun, 0, 0, rsp, &rspsize, sense, &sensesize) == 0) {
        memcpy(text, rsp, KVD_EXTRA_ROOM);
        text[KVD_EXTRA_ROOM] = 0;
        printf(" Vendor: %8s  Product: %16s\n", text + 8, text + 16);
    } else {
        printf(" Vendor: No data available  Product: No data available\n");
    }
    rspsize = KVD_EXTRA_ROOM;
    sensesize = KVD_EXTRA_ROOM;
    memset(kvd_bigbuffer, 0, 2 * KVD_EXTRA_ROOM);
    if (SendReadCapacity((uint32_t)cur_board, &wwpn, fcplun, rsp, &rspsize, sense, &sensesize) == 0) {
        uint32_t blocks = (uint32_t)rsp[0] << 24 | (uint32_t)rsp[1] << 16 | (uint32_t)rsp[2] << 8 | rsp[3];
        uint32_t blocksize = (uint32_t)rsp[6] << 8 | rsp[7];
        uint32_t capacity;
        const char *unit = kvd_capacity(blocks, blocksize, &capacity);

        printf(" Blocks: x%08x  Blocksize: x%08x  Capacity: %d %s\n", blocks, blocksize, (int)capacity, unit);
    } else {
        printf(" Blocks: No data available  Blocksize: No data available  Capacity: No data available\n");
    }
}

// The port-name line, the bus line and the device line of one entry.
static void kvd_fcpmap_entry(const HBA_FCPSCSIENTRY *e)
{
    char portname[24], nodename[24], drvname[33];
    HBA_OSDN osdn;

    kvd_mac_sprintf(e->FcpId.PortWWN.wwn, portname);
    kvd_mac_sprintf(e->FcpId.NodeWWN.wwn, nodename);
    printf("Portname:%s  Nodename:%s Fcid 0x%x FcpLun 0x%lx\n", portname, nodename, e->FcpId.FcId,
           (unsigned long)e->FcpId.FcpLun);
    printf("Bus 0x%x Tgt 0x%x Lun 0x%x ", e->ScsiId.ScsiBusNumber, e->ScsiId.ScsiTargetNumber,
           e->ScsiId.ScsiOSLun);
    if (e->ScsiId.OSDeviceName[0] != 0) {
        memcpy(&osdn, e->ScsiId.OSDeviceName, sizeof(osdn));
        printf("DeviceName %s:%d:%d:%d\n", KVD_FIELDTEXT(drvname, osdn.drvname), (int)osdn.instance,
               (int)osdn.target, (int)osdn.lun);
    } else {
        printf("\n");
    }
}

static int32_t kvd_fcpmap_plain(void)
{
    uint8_t *buf = (uint8_t *)calloc(1, KVD_FCPMAP_SIZE);
    HBA_FCPTARGETMAPPING head;
    HBA_FCPSCSIENTRY e;
    uint32_t count;

    if (buf == NULL)
        return kvd_cannot_issue();
    count = KVD_FCPMAP_ROOM;
    memcpy(buf, &count, sizeof(count));
    if (GetFcpTargetMapping((uint32_t)cur_board, (HBA_FCPTARGETMAPPING *)(void *)buf) != 0) {
        free(buf);
        return kvd_cannot_issue();
    }
    memcpy(&head.NumberOfEntries, buf, sizeof(head.NumberOfEntries));
    printf("Num Entries 0x%x\n", head.NumberOfEntries);
    count = head.NumberOfEntries < KVD_FCPMAP_ROOM ? head.NumberOfEntries : KVD_FCPMAP_ROOM;
    for (uint32_t i = 0; i < count; i++) {
        memcpy(&e, buf + offsetof(HBA_FCPTARGETMAPPING, entry) + i * sizeof(e), sizeof(e));
        kvd_fcpmap_entry(&e);
        fcpmap_get_extra(e.FcpId.PortWWN, e.ScsiId.ScsiOSLun);
    }
    free(buf);
    return KVD_OK;
}

static int32_t kvd_fcpmap_luid(HBA_WWN wwpn)
{
    uint8_t *buf = (uint8_t *)calloc(1, KVD_FCPMAP_V2_SIZE);
    HBA_FCPSCSIENTRYV2 e;
    HBA_FCPSCSIENTRY head;
    uint32_t count = 1, rc;

    if (buf == NULL)
        return kvd_cannot_issue();
    memcpy(buf, &count, sizeof(count));
    rc = KVD_GetFcpTargetMappingV2((uint32_t)cur_board, wwpn, (HBA_FCPTARGETMAPPINGV2 *)(void *)buf);
    if (rc == HBA_STATUS_ERROR_MORE_DATA) {
        memcpy(&count, buf, sizeof(count));
        printf("Num Entries returned 0x%x - trying again\n", count);
        // Never a room larger than the buffer, whatever the count asked.
        if (count > KVD_FCPMAP_V2_ROOM)
            count = KVD_FCPMAP_V2_ROOM;
        memcpy(buf, &count, sizeof(count));
        rc = KVD_GetFcpTargetMappingV2((uint32_t)cur_board, wwpn, (HBA_FCPTARGETMAPPINGV2 *)(void *)buf);
    }
    if (rc != 0) {
        free(buf);
        return kvd_cannot_issue();
    }
    memcpy(&count, buf, sizeof(count));
    printf("Num Entries 0x%x\n", count);
    if (count > KVD_FCPMAP_V2_ROOM)
        count = KVD_FCPMAP_V2_ROOM;
    for (uint32_t i = 0; i < count; i++) {
        uint32_t length;

        memcpy(&e, buf + offsetof(HBA_FCPTARGETMAPPINGV2, entry) + i * sizeof(e), sizeof(e));
        memcpy(&head.ScsiId, &e.ScsiId, sizeof(head.ScsiId));
        memcpy(&head.FcpId, &e.FcpId, sizeof(head.FcpId));
        kvd_fcpmap_entry(&head);
        length = (uint32_t)(uint8_t)e.LUID.buffer[3] + 4;
        if (length > sizeof(e.LUID.buffer))
            length = sizeof(e.LUID.buffer);
        printf("LUID: ");
        hexdump(e.LUID.buffer, length);
    }
    free(buf);
    return KVD_OK;
}

KVD_HANDLER(fcpmap)
{
    HBA_WWN wwpn;

    (void)row;
    (void)arg;
    if (margc == 1)
        return kvd_fcpmap_plain();
    if ((margc == 2 || margc == 3) && strcmp(margv[1], "luid") == 0) {
        if (margc == 3 ? !kvd_atowwn(&wwpn, margv[2]) : !cur_wwn_set) {
            printf("fcpmap:%s bad wwpn\n", margc == 3 ? margv[2] : "(null)");
            return KVD_BADARG;
        }
        if (margc == 2)
            wwpn = cur_wwn;
        return kvd_fcpmap_luid(wwpn);
    }
    printf("Usage: fcpmap [luid] <wwpn>\n");
    return KVD_USAGE;
}
