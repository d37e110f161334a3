// NPIV virtual ports: create, delete, attributes, the list, the nodes a
// port sees, resources, the host-to-board map and the readiness test. A
// library failure prints the library's code and leaves the status 0.
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"
#include "kvd_vport_cmds.h"

void print_npiv_checklist(uint32_t bits)
{
    printf("NPIV Ready checklist: 0x%02x\n", bits);
    printf("Driver NPIV enabled : %d\n", (bits & KVD_NPIV_DRIVER_ENABLED) ? 1 : 0);
    printf("SLI NPIV ready mode : %d\n", (bits & KVD_NPIV_SLI_READY) ? 1 : 0);
    printf("        HBA support : %d\n", (bits & KVD_NPIV_HBA_SUPPORT) ? 1 : 0);
    printf("      HBA resources : %d\n", (bits & KVD_NPIV_HBA_RESOURCES) ? 1 : 0);
    printf("            Link up : %d\n", (bits & KVD_NPIV_LINK_UP) ? 1 : 0);
    printf("     Point-to-point : %d\n", (bits & KVD_NPIV_POINT_TO_POINT) ? 1 : 0);
    printf("     Fabric support : %d\n", (bits & KVD_NPIV_FABRIC_SUPPORT) ? 1 : 0);
    printf("   Fabric resources : %d\n", (bits & KVD_NPIV_FABRIC_RESOURCES) ? 1 : 0);
}

static void print_vport_attributes(const KVD_VPATTRIB *a)
{
    char wwn[24], name[sizeof(a->name) + 1];

    printf("vport attributes:\n");
    printf("Version: x%x\n", a->ver);
    kvd_mac_sprintf(a->wwpn.wwn, wwn);
    printf("wwpn: %s\n", wwn);
    kvd_mac_sprintf(a->wwnn.wwn, wwn);
    printf("wwnn: %s\n", wwn);
    printf("Name: %s\n", KVD_FIELDTEXT(name, a->name));
    printf("Options: x%x\n", a->options);
    printf("PortFcId:: x%x\n", a->portFcId);
    printf("State: x%x\n", a->state);
    printf("Restrict Login: x%x\n", a->restrictLogin);
    printf("Platform Handle: x%llx\n", (unsigned long long)a->buf);
    kvd_mac_sprintf(a->fabricName.wwn, wwn);
    printf("Fabric Name: %s\n", wwn);
}

KVD_HANDLER(vpcreate)
{
    KVD_VPATTRIB attr;
    char name[KVD_VPNAME_SIZE];
    uint32_t options, rc;

    (void)row;
    (void)arg;
    if (margc < 2 || margc > 4) {
        printf("Usage: vpcreate options [wwnn] [wwpn]\n");
        return KVD_USAGE;
    }
    memset(name, 0, sizeof(name));
    memcpy(name, KVD_VPNAME, sizeof(KVD_VPNAME));
    memset(&attr, 0, sizeof(attr));
    options = (uint32_t)atoi(margv[1]);
    if (!(options & KVD_VPOPT_AUTO_WWN)) {
        if (margc > 2 && !kvd_atowwn(&attr.wwnn, margv[2])) {
            printf("vpcreate: bad wwnn specified\n");
            return KVD_BADARG;
        }
        if (margc > 3 && !kvd_atowwn(&attr.wwpn, margv[3])) {
            printf("vpcreate: bad wwpn specified\n");
            return KVD_BADARG;
        }
    }
    attr.ver = KVD_VPATTRIB_VERSION;
    attr.options = options;
    rc = KVD_VPCreate((uint32_t)cur_board, name, &attr);
    if (rc == 0)
        print_vport_attributes(&attr);
    else
        printf("vpcreate failed with rc = x%x\n", rc);
    return KVD_OK;
}

KVD_HANDLER(vpdelete)
{
    HBA_WWN wwpn;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 3) {
        printf("Usage: vpdelete options wwpn\n");
        return KVD_USAGE;
    }
    if (!kvd_atowwn(&wwpn, margv[2])) {
        printf("vpdelete: bad wwpn specified\n");
        return KVD_BADARG;
    }
    rc = KVD_VPDeleteV2((uint32_t)cur_board, wwpn, (uint32_t)atoi(margv[1]), 0);
    if (rc == 0)
        printf("vport deleted.\n");
    else
        printf("vpdelete failed with rc = x%x\n", rc);
    return KVD_OK;
}

KVD_HANDLER(vpgetattr)
{
    KVD_VPATTRIB attr;
    HBA_WWN wwpn;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: vpgetattr wwpn\n");
        return KVD_USAGE;
    }
    if (!kvd_atowwn(&wwpn, margv[1])) {
        printf("vpgetattr: bad wwpn specified\n");
        return KVD_BADARG;
    }
    memset(&attr, 0, sizeof(attr));
    attr.ver = KVD_VPATTRIB_VERSION;
    rc = KVD_VPGetAttrib((uint32_t)cur_board, wwpn, &attr);
    if (rc != 0) {
        printf("vpgetattr failed with rc = x%x\n", rc);
        return KVD_OK;
    }
    print_vport_attributes(&attr);
    printf("VPort mode : %s \n", (attr.flags & KVD_VPFLAG_STATIC) ? "static" : "dynamic");
    print_npiv_checklist(attr.checklist);
    return KVD_OK;
}

KVD_HANDLER(vpgetlist)
{
    KVD_VPENTRY e;
    char wwpn[24], wwnn[24];
    uint32_t count, rc;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: vpgetlist\n");
        return KVD_USAGE;
    }
    count = KVD_VPLIST_ROOM;
    memcpy(kvd_bigbuffer, &count, sizeof(count));
    rc = KVD_VPGetList((uint32_t)cur_board, (KVD_VPENTRYLIST *)(void *)kvd_bigbuffer);
    if (rc != 0) {
        printf("vpgetlist failed with rc = x%x\n", rc);
        return KVD_OK;
    }
    memcpy(&count, kvd_bigbuffer, sizeof(count));
    if (count > KVD_VPLIST_ROOM)
        count = KVD_VPLIST_ROOM;
    printf("Dumping %d vports:\n", (int)count);
    for (uint32_t i = 0; i < count; i++) {
        memcpy(&e, kvd_bigbuffer + offsetof(KVD_VPENTRYLIST, vpentry) + i * sizeof(e), sizeof(e));
        kvd_mac_sprintf(e.wwpn.wwn, wwpn);
        kvd_mac_sprintf(e.wwnn.wwn, wwnn);
        printf("VPORT %d:\n", (int)i);
        printf("  wwpn: %s\n", wwpn);
        printf("  wwnn: %s\n", wwnn);
        printf("  PortFcId: x%x\n", e.portFcId);
    }
    return KVD_OK;
}

KVD_HANDLER(vpgetninfo)
{
    KVD_NODEINFOENTRY e;
    HBA_WWN wwpn;
    char wwn[24];
    uint32_t count, rc;

    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: vpgetninfo wwpn\n");
        return KVD_USAGE;
    }
    if (!kvd_atowwn(&wwpn, margv[1])) {
        printf("vpgetninfo: bad wwpn specified\n");
        return KVD_BADARG;
    }
    count = KVD_VPNODE_ROOM;
    memcpy(kvd_bigbuffer, &count, sizeof(count));
    rc = KVD_GetAllNodeInfoByWWN((uint32_t)cur_board, wwpn, (KVD_GETNODEINFO *)(void *)kvd_bigbuffer);
    if (rc != 0) {
        printf("vpgetninfo failed with rc = x%x\n", rc);
        return KVD_OK;
    }
    memcpy(&count, kvd_bigbuffer, sizeof(count));
    if (count > KVD_VPNODE_ROOM)
        count = KVD_VPNODE_ROOM;
    printf("Dumping %d nodes:\n", (int)count);
    for (uint32_t i = 0; i < count; i++) {
        memcpy(&e, kvd_bigbuffer + offsetof(KVD_GETNODEINFO, nodeInfo) + i * sizeof(e), sizeof(e));
        printf("Node %d:\n", (int)i);
        printf("type: %d  state: %d\n", (int)e.type, (int)e.nodeState);
        printf("  fcpId: 0x%06x  scsiTargetNumber: %d\n", e.fcpId.FcId, (int)e.scsiId.ScsiTargetNumber);
        kvd_mac_sprintf(e.fcpId.NodeWWN.wwn, wwn);
        printf("  wwnn: %s\n", wwn);
        kvd_mac_sprintf(e.fcpId.PortWWN.wwn, wwn);
        printf("  wwpn: %s\n", wwn);
    }
    return KVD_OK;
}

KVD_HANDLER(vpgetphys)
{
    uint32_t host, instance = 0, phys = 0;

    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: vpgetphys host_no\n");
        return KVD_USAGE;
    }
    host = (uint32_t)strtoul(margv[1], NULL, 0);
    if (vpGetPhys(host, &instance, &phys) != 0) {
        printf("vpgetphys: bad host_no specified\n");
        return KVD_OK;
    }
    printf("Vport host%d is on physical vexa%d - host%d\n", (int)host, (int)instance, (int)phys);
    return KVD_OK;
}

KVD_HANDLER(vpgetres)
{
    KVD_VPRESOURCE res;
    uint32_t rc;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: vpgetres\n");
        return KVD_USAGE;
    }
    memset(&res, 0xff, sizeof(res));
    rc = KVD_VPGetResource((uint32_t)cur_board, &res);
    if (rc != 0) {
        printf("vpgetres failed with rc = x%x\n", rc);
        return KVD_OK;
    }
    printf("VP Resources: vlinks_max %d  vlinks_inuse %d  rpi_max %d  rpi_inuse %d\n", (int)res.vlinks_max,
           (int)res.vlinks_inuse, (int)res.rpi_max, (int)res.rpi_inuse);
    return KVD_OK;
}

KVD_HANDLER(vpnpivrdy)
{
    uint32_t bits = 0, rc;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: vpnpivrdy\n");
        return KVD_USAGE;
    }
    rc = KVD_NPIVReadyTest((uint32_t)cur_board, &bits);
    if (rc != 0) {
        printf("vpnpivrdy failed with rc = x%x\n", rc);
        return KVD_OK;
    }
    print_npiv_checklist(bits);
    return KVD_OK;
}
