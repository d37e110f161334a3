// Adapter, port, statistics, link and driver information: one library query
// each, printed as fixed labelled lines.
//
// Text fields of the library's records are fixed-size and need not be
// terminated, so every one is copied into a terminated local before it is
// printed.
#include <stdlib.h>
#include <string.h>

#include "kvd_cmds.h"

#define KVD_STATUS_STALE_DATA 8 /* HBA_STATUS_ERROR_STALE_DATA */

static_assert(KVD_STATUS_STALE_DATA == HBA_STATUS_ERROR_STALE_DATA, "stale-data status");

KVD_HANDLER(hbaattr)
{
    HBA_ADAPTERATTRIBUTES attr;
    char manufacturer[sizeof(attr.Manufacturer) + 1];
    char serial[sizeof(attr.SerialNumber) + 1];
    char model[sizeof(attr.Model) + 1];
    char description[sizeof(attr.ModelDescription) + 1];
    char drvver[sizeof(attr.DriverVersion) + 1];
    char drvname[sizeof(attr.DriverName) + 1];
    char firmware[sizeof(attr.FirmwareVersion) + 1];
    char symname[sizeof(attr.NodeSymbolicName) + 1];
    char hardware[sizeof(attr.HardwareVersion) + 1];
    char rom[sizeof(attr.OptionROMVersion) + 1];
    char nodename[24];

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: hbaatr\n");
        return KVD_USAGE;
    }
    memset(&attr, 0, sizeof(attr));
    if (GetAdapterAttributes((uint32_t)cur_board, &attr) != 0)
        return kvd_cannot_issue();
    printf("Manuftr:%s  SerialNum:%s\n", KVD_FIELDTEXT(manufacturer, attr.Manufacturer),
           KVD_FIELDTEXT(serial, attr.SerialNumber));
    printf("Model:%s  Description:%s\n", KVD_FIELDTEXT(model, attr.Model),
           KVD_FIELDTEXT(description, attr.ModelDescription));
    printf("Driver:%s  DrvrName:%s Firmware:%s\n", KVD_FIELDTEXT(drvver, attr.DriverVersion),
           KVD_FIELDTEXT(drvname, attr.DriverName), KVD_FIELDTEXT(firmware, attr.FirmwareVersion));
    printf("NSymName:%s  Hdw:%s ROM:%s\n", KVD_FIELDTEXT(symname, attr.NodeSymbolicName),
           KVD_FIELDTEXT(hardware, attr.HardwareVersion), KVD_FIELDTEXT(rom, attr.OptionROMVersion));
    printf("VendorId 0x%x  numPorts 0x%x\n", attr.VendorSpecificID, attr.NumberOfPorts);
    kvd_mac_sprintf(attr.NodeWWN.wwn, nodename);
    printf("Nodename:%s\n", nodename);
    return KVD_OK;
}

// The port attribute block. When the library names an OS device, the
// device-name text fills the first 32 bytes of OSDeviceName and three
// numbers follow it; discovered ports print them in hexadecimal.
static void kvd_print_portattr(const HBA_PORTATTRIBUTES *attr, int hex_numbers)
{
    char symname[sizeof(attr->PortSymbolicName) + 1];
    char device[KVD_OSDEV_TEXT_MAX + 1];
    char portname[24];
    char nodename[24];
    char fabric[24];
    int32_t num[3];

    printf("Fcid 0x%x  Type 0x%x  State 0x%x  COS 0x%x\n", attr->PortFcId, attr->PortType, attr->PortState,
           attr->PortSupportedClassofService);
    printf("Fc4Types:");
    for (size_t i = 0; i < sizeof(attr->PortSupportedFc4Types.bits); i++)
        printf("%x ", attr->PortSupportedFc4Types.bits[i]);
    printf("\n");
    printf("Fc4ActiveTypes:");
    for (size_t i = 0; i < sizeof(attr->PortActiveFc4Types.bits); i++)
        printf("%x ", attr->PortActiveFc4Types.bits[i]);
    printf("\n");
    printf("speedSup 0x%x  speed 0x%x\n", attr->PortSupportedSpeed, attr->PortSpeed);
    printf("MaxFrm 0x%x  NumDiscPort 0x%x\n", attr->PortMaxFrameSize, attr->NumberofDiscoveredPorts);
    KVD_FIELDTEXT(symname, attr->PortSymbolicName);
    if (attr->OSDeviceName[0] != '\0') {
        kvd_fieldtext(device, sizeof(device), attr->OSDeviceName, KVD_OSDEV_TEXT_MAX);
        memcpy(&num[0], attr->OSDeviceName + KVD_OSDEV_NUM0, sizeof(num[0]));
        memcpy(&num[1], attr->OSDeviceName + KVD_OSDEV_NUM1, sizeof(num[1]));
        memcpy(&num[2], attr->OSDeviceName + KVD_OSDEV_NUM2, sizeof(num[2]));
        if (hex_numbers)
            printf("PortName %s  DeviceName %s:%x:%x:%x\n", symname, device, (unsigned)num[0],
                   (unsigned)num[1], (unsigned)num[2]);
        else
            printf("PortName %s  DeviceName %s:%d:%d:%d\n", symname, device, num[0], num[1], num[2]);
    } else {
        printf("PortName %s\n", symname);
    }
    printf("\n");
    kvd_mac_sprintf(attr->PortWWN.wwn, portname);
    kvd_mac_sprintf(attr->NodeWWN.wwn, nodename);
    printf("Portname:%s  Nodename:%s\n", portname, nodename);
    kvd_mac_sprintf(attr->FabricName.wwn, fabric);
    printf("FabricName:%s\n", fabric);
}

KVD_HANDLER(portattr)
{
    HBA_PORTATTRIBUTES attr;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: portattr\n");
        return KVD_USAGE;
    }
    memset(&attr, 0, sizeof(attr));
    if (GetAdapterPortAttributes((uint32_t)cur_board, 0, &attr) != 0)
        return kvd_cannot_issue();
    kvd_print_portattr(&attr, 0);
    return KVD_OK;
}

// The index queries report stale data (the port list changed since it was
// last read) apart from other failures.
static int32_t kvd_index_failure(HBA_STATUS status)
{
    if (status == KVD_STATUS_STALE_DATA) {
        fprintf(stderr, "Need refresh\n");
        return KVD_LIBERR;
    }
    return kvd_cannot_issue();
}

KVD_HANDLER(iportattr)
{
    HBA_PORTATTRIBUTES attr;
    HBA_STATUS status;

    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: iportattr index\n");
        return KVD_USAGE;
    }
    memset(&attr, 0, sizeof(attr));
    status = GetPortAttributesByIndex((uint32_t)cur_board, 0, (uint32_t)atoi(margv[1]), &attr);
    if (status != 0)
        return kvd_index_failure(status);
    kvd_print_portattr(&attr, 0);
    return KVD_OK;
}

KVD_HANDLER(dportattr)
{
    HBA_PORTATTRIBUTES attr;
    HBA_STATUS status;

    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: dportattr disc_port_index\n");
        return KVD_USAGE;
    }
    memset(&attr, 0, sizeof(attr));
    status = GetDiscoveredPortAttributes((uint32_t)cur_board, 0, (uint32_t)atoi(margv[1]), &attr);
    if (status != 0)
        return kvd_index_failure(status);
    kvd_print_portattr(&attr, 1);
    return KVD_OK;
}

// A WWN that does not parse falls back to the current WWN, when one is set;
// the parser has already said what was wrong with the text.
KVD_HANDLER(wportattr)
{
    HBA_PORTATTRIBUTES attr;
    HBA_WWN wwn;

    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: wportattr port_wwpn\n");
        return KVD_USAGE;
    }
    if (!kvd_atowwn(&wwn, margv[1])) {
        if (!cur_wwn_set) {
            printf("wportattr:%s bad port_wwpn\n", margv[1]);
            return KVD_BADARG;
        }
        wwn = cur_wwn;
    }
    memset(&attr, 0, sizeof(attr));
    if (GetPortAttributesByWWN((uint32_t)cur_board, wwn, &attr) != 0)
        return kvd_cannot_issue();
    kvd_print_portattr(&attr, 0);
    return KVD_OK;
}

KVD_HANDLER(portstat)
{
    HBA_PORTSTATISTICS st;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: portstat\n");
        return KVD_USAGE;
    }
    memset(&st, 0, sizeof(st));
    if (GetPortStatistics((uint32_t)cur_board, 0, &st) != 0)
        return kvd_cannot_issue();
    printf("TxFrm 0x%lx  TxWrd 0x%lx  RxFrm 0x%lx  RxWrd 0x%lx\n", (unsigned long)st.TxFrames,
           (unsigned long)st.TxWords, (unsigned long)st.RxFrames, (unsigned long)st.RxWords);
    printf("LIP 0x%lx  NOS 0x%lx  Err 0x%lx  Dump 0x%lx\n", (unsigned long)st.LIPCount,
           (unsigned long)st.NOSCount, (unsigned long)st.ErrorFrames, (unsigned long)st.DumpedFrames);
    printf("LnkFail 0x%lx  LOSync 0x%lx  LOSig 0x%lx  PrimProtoErr 0x%lx\n",
           (unsigned long)st.LinkFailureCount, (unsigned long)st.LossOfSyncCount,
           (unsigned long)st.LossOfSignalCount, (unsigned long)st.PrimitiveSeqProtocolErrCount);
    printf("InvTxWrd 0x%lx  InvCRC 0x%lx\n", (unsigned long)st.InvalidTxWordCount,
           (unsigned long)st.InvalidCRCCount);
    return KVD_OK;
}

KVD_HANDLER(linkinfo)
{
    LINKINFO info;
    char portname[24];
    char nodename[24];

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: linkinfo\n");
        return KVD_USAGE;
    }
    memset(&info, 0, sizeof(info));
    if (KVD_GetLinkInfo((uint32_t)cur_board, &info) != 0)
        return kvd_cannot_issue();
    printf("Event 0x%x  Up 0x%x  Down 0x%x  Multi 0x%x\n", info.a_linkEventTag, info.a_linkUp,
           info.a_linkDown, info.a_linkMulti);
    printf("PortID 0x%x  alpa 0x%x  topology 0x%x state 0x%x\n", info.a_DID, info.a_alpa, info.a_topology,
           info.a_linkState);
    // Entry 0 of the map is its length byte on the wire and is skipped; a
    // count beyond the map is printed as given but the map is not overrun.
    printf("ALPAmap %d:", info.a_alpaCnt);
    for (size_t i = 1; i <= info.a_alpaCnt && i < sizeof(info.a_alpaMap); i++)
        printf(" %x", info.a_alpaMap[i]);
    printf("\n");
    kvd_mac_sprintf(info.a_wwpName, portname);
    kvd_mac_sprintf(info.a_wwnName, nodename);
    printf("Portname %s  Nodename %s\n", portname, nodename);
    return KVD_OK;
}

// Words printed for the feature bits of the driver information, in order.
static const struct {
    uint64_t bit;
    const char *word;
} kvd_features[] = {
    {KVD_FTR_DIAGS, " diags "},
    {KVD_FTR_LUN_MAPPING, " lun_mapping "},
    {KVD_FTR_DHCHAP, " dhchap "},
    {KVD_FTR_IKE, " ike "},
    {KVD_FTR_NPIV, " npiv "},
    {KVD_FTR_WWN_RESET, " wwn_reset "},
    {KVD_FTR_VOLATILE_WWN, " volatile_wwn "},
    {KVD_FTR_E2E_AUTH, " e2e_auth "},
    {KVD_FTR_SD, " sd "},
    {KVD_FTR_FCOE, " fcoe "},
    {KVD_FTR_PERSIST_LINK, " persistLinkEnable "},
    {KVD_FTR_SLI_CONFIG_EXT, " SLI_config_extension "},
};

KVD_HANDLER(drvinfo)
{
    KVDDRVINFO info;
    char drvname[sizeof(info.drvName) + 1];
    char drvver[sizeof(info.drvVer) + 1];
    char ftrname[sizeof(info.ftrDrvName) + 1];
    char ftrver[sizeof(info.ftrDrvVer) + 1];
    char hostname[sizeof(info.hostname) + 1];
    char wwpn[24];
    char wwnn[24];

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: drvinfo\n");
        return KVD_USAGE;
    }
    memset(&info, 0, sizeof(info));
    info.drvInfoVer = KVD_DRVINFO_VERSION;
    if (KVD_GetDrvInfo((uint32_t)cur_board, &info) != 0)
        return kvd_cannot_issue();
    printf("Structure Version: %d  Driver Type: 0x%x\n", info.drvInfoVer, info.drvType);
    printf("Quorvista Support Level: %d\n", info.rmLevel);
    printf("Caldrimesh Support Level: %d\n", info.mpLevel);
    printf("HBAAPI Support Level: %d\n", info.hbaapiLevel);
    printf("Driver Name: %s  Driver Version: %s\n", KVD_FIELDTEXT(drvname, info.drvName),
           KVD_FIELDTEXT(drvver, info.drvVer));
    printf("IOCTL Driver Name: %s  IOCTL Driver Version: %s\n", KVD_FIELDTEXT(ftrname, info.ftrDrvName),
           KVD_FIELDTEXT(ftrver, info.ftrDrvVer));
    kvd_mac_sprintf(info.wwpn, wwpn);
    kvd_mac_sprintf(info.wwnn, wwnn);
    printf("did: 0x%x  ", info.d_id);
    printf("wwpn: %s  ", wwpn);
    printf("wwnn: %s\n", wwnn);
    printf("hostname: %s\n", KVD_FIELDTEXT(hostname, info.hostname));
    printf("SLI Mode: %d\n", (int)info.sliMode);
    printf("Feature List: x%llx - ", (unsigned long long)info.featureList);
    for (size_t i = 0; i < sizeof(kvd_features) / sizeof(kvd_features[0]); i++) {
        if (info.featureList & kvd_features[i].bit)
            printf("%s", kvd_features[i].word);
    }
    printf("\n");
    return KVD_OK;
}
