// The "sli4" family: controller-level SLI-4 configuration requests chosen
// by the second word of the line.
//
// Each request rides in a MAILBOX with command code 0x9B, either embedded in
// the record (from byte 24) or in a separate buffer named by one
// scatter-gather entry, and goes to the library with one try. The firmware
// answers in place: the response header overlays the request header and the
// body follows it. A request function returns 2 when the board cannot run
// it, the library's result when that is not 0, 1 when the answer fails the
// request's success test, and 0 after copying the result.
#include <stdint.h>
#include <string.h>

#include "kvd_cmds.h"
#include "kvd_sli4cmds.h"

#define KVD_SLI4_RETRIES 1
#define KVD_SLI4_DELAY 100
#define KVD_SLI4_NOT_SUPPORTED 2
#define KVD_SLI4_BAD_ANSWER 1
#define KVD_SLI4_EXT_WORDS 5 /* 20-byte extension of DCBX and NOP */

// Request and payload lengths as the firmware has always been sent them.
// The attribute request lengths do not equal their buffers (548 for a
// 540-byte buffer): that is what the firmware expects, so they stay.
#define KVD_CNTL_ATTR_BUF 540
#define KVD_CNTL_ATTR_REQLEN 548
#define KVD_CNTL_ADDL_BUF 620
#define KVD_CNTL_ADDL_REQLEN 620
#define KVD_DCBX_BUF 20
#define KVD_PAYLOAD_NONEMB 20 /* header plus one scatter-gather entry */
#define KVD_PAYLOAD_FWCONFIG 16
#define KVD_PAYLOAD_BEACON 20
#define KVD_PAYLOAD_DCBX 16
#define KVD_PAYLOAD_NOP 24
#define KVD_BEACON_PORT_TYPE 1

static_assert(KVD_CNTL_ATTR_BUF == sizeof(KVD_vexa_sli4_rsp_hdr) + sizeof(get_cntl_attributes),
              "attribute buffer holds header and body");
static_assert(KVD_CNTL_ADDL_BUF == sizeof(KVD_vexa_sli4_rsp_hdr) + sizeof(get_cntl_addl_attributes),
              "additional attribute buffer holds header and body");

static void kvd_sli4_mailbox(MAILBOX *mb, int embedded, uint32_t payload_length)
{
    memset(mb, 0, sizeof(*mb));
    mb->mbxCommand = MBX_SLI4_CONFIG;
    mb->mbxOwner = 0;
    mb->un.varSli4Cfg.emb = embedded ? 1 : 0;
    mb->un.varSli4Cfg.sge_count = embedded ? 0 : 1;
    mb->un.varSli4Cfg.payload_length = payload_length;
}

// Points the record's one scatter-gather entry at a buffer of ours.
static void kvd_sli4_sge(MAILBOX *mb, const void *buffer, uint32_t length)
{
    const uint64_t address = (uint64_t)(uintptr_t)buffer;

    mb->un.varSli4Cfg.un.sge.addr_lo = (uint32_t)address;
    mb->un.varSli4Cfg.un.sge.addr_hi = (uint32_t)(address >> 32);
    mb->un.varSli4Cfg.un.sge.length = length;
}

static void kvd_sli4_header(void *request, uint8_t op, uint8_t subsystem, uint32_t time_out,
                            uint32_t request_length)
{
    KVD_vexa_sli4_req_hdr hdr;

    memset(&hdr, 0, sizeof(hdr));
    hdr.opCode = op;
    hdr.subSystem = subsystem;
    hdr.time_out = time_out;
    hdr.request_length = request_length;
    memcpy(request, &hdr, sizeof(hdr));
}

static uint8_t *kvd_sli4_embedded(MAILBOX *mb)
{
    return (uint8_t *)mb + SLI4_EMBEDDED_OFFSET;
}

// True when the response header reports success and its length passes.
static int kvd_sli4_answer_ok(const void *response, uint32_t min_len, int exact)
{
    KVD_vexa_sli4_rsp_hdr hdr;

    memcpy(&hdr, response, sizeof(hdr));
    if (hdr.status != 0 || hdr.additional_status != 0)
        return 0;
    return exact ? hdr.actual_response_length == min_len : hdr.actual_response_length >= min_len;
}

static int32_t kvd_sli4_issue(uint32_t board, MAILBOX *mb, void *extension, uint32_t extension_words)
{
    return IssueInternalMboxWithRetryEx(board, mb, extension, extension_words, 0, 0, KVD_SLI4_RETRIES,
                                        KVD_SLI4_DELAY);
}

int32_t get_Cntl_Attributes(uint32_t board, get_cntl_attributes *attributes)
{
    MAILBOX mb;
    uint8_t buffer[KVD_CNTL_ATTR_BUF];

    if (get_sli_mode(board) != 4)
        return KVD_SLI4_NOT_SUPPORTED;
    memset(buffer, 0, sizeof(buffer));
    kvd_sli4_header(buffer, SLI4_OPC_GET_CNTL_ATTRIBUTES, SLI4_SUBSYSTEM_COMMON, 1, KVD_CNTL_ATTR_REQLEN);
    kvd_sli4_mailbox(&mb, 0, KVD_PAYLOAD_NONEMB);
    kvd_sli4_sge(&mb, buffer, sizeof(buffer));
    int32_t rc = kvd_sli4_issue(board, &mb, NULL, 0);
    if (rc != 0)
        return rc;
    if (!kvd_sli4_answer_ok(buffer, SLI4_CNTL_ATTR_LEN, 0))
        return KVD_SLI4_BAD_ANSWER;
    memcpy(attributes, buffer + sizeof(KVD_vexa_sli4_rsp_hdr), sizeof(*attributes));
    return 0;
}

int32_t get_Cntl_Addl_Attributes(uint32_t board, get_cntl_addl_attributes *attributes)
{
    MAILBOX mb;
    uint8_t buffer[KVD_CNTL_ADDL_BUF];

    if (get_sli_mode(board) != 4)
        return KVD_SLI4_NOT_SUPPORTED;
    memset(buffer, 0, sizeof(buffer));
    kvd_sli4_header(buffer, SLI4_OPC_GET_CNTL_ADDL_ATTRIBUTES, SLI4_SUBSYSTEM_COMMON, 0,
                    KVD_CNTL_ADDL_REQLEN);
    kvd_sli4_mailbox(&mb, 0, KVD_PAYLOAD_NONEMB);
    kvd_sli4_sge(&mb, buffer, sizeof(buffer));
    int32_t rc = kvd_sli4_issue(board, &mb, NULL, 0);
    if (rc != 0)
        return rc;
    if (!kvd_sli4_answer_ok(buffer, SLI4_CNTL_ADDL_ATTR_LEN, 0))
        return KVD_SLI4_BAD_ANSWER;
    memcpy(attributes, buffer + sizeof(KVD_vexa_sli4_rsp_hdr), sizeof(*attributes));
    return 0;
}

// Copies the first 140 bytes of the response, header included: the last
// four fields of the record are not part of what the query returns and keep
// whatever the caller put there.
int32_t query_fw_config(uint32_t board, KVD_vexa_sli4_query_fw_config_rsp *config)
{
    MAILBOX mb;

    if (get_sli_mode(board) != 4)
        return KVD_SLI4_NOT_SUPPORTED;
    kvd_sli4_mailbox(&mb, 1, KVD_PAYLOAD_FWCONFIG);
    kvd_sli4_header(kvd_sli4_embedded(&mb), SLI4_OPC_QUERY_FW_CONFIG, SLI4_SUBSYSTEM_COMMON, 0,
                    SLI4_FW_CONFIG_LEN);
    int32_t rc = kvd_sli4_issue(board, &mb, NULL, 0);
    if (rc != 0)
        return rc;
    if (!kvd_sli4_answer_ok(kvd_sli4_embedded(&mb), SLI4_FW_CONFIG_LEN, 1))
        return KVD_SLI4_BAD_ANSWER;
    memcpy(config, kvd_sli4_embedded(&mb), SLI4_FW_CONFIG_LEN);
    return 0;
}

int32_t get_beacon_config(uint32_t board, uint8_t *beacon_state)
{
    MAILBOX mb;
    KVD_vexa_sli4_get_beacon_req req;

    if (get_sli_mode(board) != 4)
        return KVD_SLI4_NOT_SUPPORTED;
    kvd_sli4_mailbox(&mb, 1, KVD_PAYLOAD_BEACON);
    memset(&req, 0, sizeof(req));
    kvd_sli4_header(&req.hdr, SLI4_OPC_GET_BEACON_CONFIG, SLI4_SUBSYSTEM_COMMON, 0, SLI4_BEACON_LEN);
    req.portNum = 0;
    req.portType = KVD_BEACON_PORT_TYPE;
    memcpy(kvd_sli4_embedded(&mb), &req, sizeof(req));
    int32_t rc = kvd_sli4_issue(board, &mb, NULL, 0);
    if (rc != 0)
        return rc;
    if (!kvd_sli4_answer_ok(kvd_sli4_embedded(&mb), SLI4_BEACON_LEN, 1))
        return KVD_SLI4_BAD_ANSWER;
    *beacon_state = kvd_sli4_embedded(&mb)[sizeof(KVD_vexa_sli4_rsp_hdr)];
    return 0;
}

// DCBX exists only on FCoE ports. The request travels in its own 20-byte
// buffer, which also goes along as the call's extension.
int32_t get_dcbx_mode(uint32_t board, uint8_t *dcbx_mode)
{
    MAILBOX mb;
    uint8_t buffer[KVD_DCBX_BUF];

    if (get_protocol_mode(board) != 0)
        return KVD_SLI4_NOT_SUPPORTED;
    memset(buffer, 0, sizeof(buffer));
    kvd_sli4_header(buffer, SLI4_OPC_DCBX_GET_MODE, SLI4_SUBSYSTEM_DCBX, 0, SLI4_DCBX_LEN);
    kvd_sli4_mailbox(&mb, 0, KVD_PAYLOAD_DCBX);
    kvd_sli4_sge(&mb, buffer, sizeof(buffer));
    int32_t rc = kvd_sli4_issue(board, &mb, buffer, KVD_SLI4_EXT_WORDS);
    if (rc != 0)
        return rc;
    if (!kvd_sli4_answer_ok(buffer, SLI4_DCBX_LEN, 1))
        return KVD_SLI4_BAD_ANSWER;
    *dcbx_mode = buffer[sizeof(KVD_vexa_sli4_rsp_hdr)];
    return 0;
}

int32_t issue_sli4_nop(uint32_t board)
{
    MAILBOX mb;
    KVD_vexa_sli4_nop_req req;
    uint8_t extension[KVD_SLI4_EXT_WORDS * 4];

    if (get_sli_mode(board) != 4)
        return KVD_SLI4_NOT_SUPPORTED;
    kvd_sli4_mailbox(&mb, 1, KVD_PAYLOAD_NOP);
    memset(&req, 0, sizeof(req));
    kvd_sli4_header(&req.hdr, SLI4_OPC_NOP, SLI4_SUBSYSTEM_COMMON, 0, SLI4_NOP_LEN);
    req.context0 = 0;
    req.context1 = 0;
    memcpy(kvd_sli4_embedded(&mb), &req, sizeof(req));
    memset(extension, 0, sizeof(extension));
    int32_t rc = kvd_sli4_issue(board, &mb, extension, KVD_SLI4_EXT_WORDS);
    if (rc != 0)
        return rc;
    if (!kvd_sli4_answer_ok(kvd_sli4_embedded(&mb), SLI4_NOP_LEN, 1))
        return KVD_SLI4_BAD_ANSWER;
    return 0;
}

// A character field, written for its full width, NUL bytes included.
static void kvd_sli4_chars(const char *label, const char *field, size_t width)
{
    printf("%s", label);
    for (size_t i = 0; i < width; i++)
        printf("%c", field[i]);
    printf("\n");
}

#define KVD_CHARS(label, field) kvd_sli4_chars((label), (field), sizeof(field))

static KVD_HANDLER(cntlattr)
{
    get_cntl_attributes a;

    (void)arg;
    memset(&a, 0, sizeof(a));
    int32_t rc = get_Cntl_Attributes((uint32_t)cur_board, &a);
    if (rc != 0) {
        printf("%s - get_Cntl_Attributes returned 0x%x\n", row->c_string, rc);
        return rc;
    }
    KVD_CHARS("Version string: ", a.version_string);
    KVD_CHARS("Manufacture name: ", a.manufacturer_name);
    printf("Supported modes: x%08x\n", a.supported_modes);
    printf("EPROM version hi: x%02x\n", a.eprom_version_hi);
    printf("EPROM version lo: x%02x\n", a.eprom_version_lo);
    printf("MBX data structure version: x%08x\n", a.mbx_data_structure_version);
    printf("EP firmware data structure version: x%08x\n", a.ep_firmware_data_structure_version);
    KVD_CHARS("NCSI version string: ", a.ncsi_version_string);
    printf("Default extended timeout: 0x%08x\n", a.default_extended_timeout);
    KVD_CHARS("Model number: ", a.model);
    KVD_CHARS("Description: ", a.description);
    KVD_CHARS("Serial number: ", a.serial_number);
    KVD_CHARS("IP version string: ", a.ip_version_string);
    KVD_CHARS("FW version string: ", a.fw_version_string);
    KVD_CHARS("BIOS version string: ", a.bios_version_string);
    KVD_CHARS("Redboot version string: ", a.redboot_version_string);
    KVD_CHARS("Driver version string: ", a.driver_version_string);
    KVD_CHARS("FW on flash string: ", a.fw_on_flash_string);
    printf("Functionalities supported: x%08x\n", a.functionalities_supported);
    printf("ASIC revision: x%02x\n", a.asic_revision);
    printf("Max cdb length: %d\n", a.max_cdb_length);
    printf("Generational GUID0: x%02x\n", a.generational_guid0);
    printf("Generational GUID1: x");
    for (size_t i = 0; i < sizeof(a.generational_guid1); i++)
        printf("%02x", a.generational_guid1[i]);
    printf("\n");
    printf("Generational GUID2: x%02x\n", a.generational_guid2);
    printf("Generational GUID3: x%04x\n", a.generational_guid3);
    printf("HBA port count: %d\n", a.hba_port_count);
    printf("Multifunctional device: x%02x\n", a.multifunctional_device);
    printf("iSCSI version min max: x%02x\n", a.iscsi_version_min_max);
    printf("Default link down timeout: x%04x\n", a.default_link_down_timeout);
    printf("Physical port: %d\n", a.physical_port);
    printf("Max domains supported: %d\n", a.max_domains_supported);
    printf("HBA status: x%02x\n", a.hba_status);
    printf("Cache valid: x%02x\n", a.cache_valid);
    printf("Firmware post status: x%08x\n", a.firmware_post_status);
    printf("HBA MTU (8 hex): ");
    for (size_t i = 0; i < 8; i++)
        printf("%08x ", a.hba_mtu[i]);
    printf("\n");
    printf("ISCSI features: x%02x\n", a.iscsi_features);
    printf("PCI device id: x%04x\n", a.pci_device_id);
    printf("PCI vendor id: x%04x\n", a.pci_vendor_id);
    printf("PCI sub system id: x%04x\n", a.pci_sub_system_id);
    printf("PCI sub vendor id: x%04x\n", a.pci_sub_vendor_id);
    printf("PCI interface type: x%02x\n", a.interface_type);
    printf("PCI function number: x%02x\n", a.pci_function_number);
    printf("PCI device number: x%02x\n", a.pci_device_number);
    printf("PCI bus number: x%02x\n", a.pci_bus_number);
    printf("Unique Identifier: ");
    for (size_t i = 0; i < sizeof(a.unique_identifier); i++)
        printf("%02x", a.unique_identifier[i]);
    printf("\n");
    printf("Number of netfilters: x%02x\n", a.number_of_netfilters);
    return rc;
}

// Adapter model and platform of each IPL file number the boot code knows.
static const struct {
    uint16_t number;
    const char *model;
} kvd_ipl_models[] = {
    {1, "QF8S Standard rack"},       {2, "QF8D Low-profile rack"},  {3, "QF8M Blade mezzanine"},
    {4, "QF8B Blade chassis"},       {5, "QF6S Standard rack"},     {6, "QF6D Low-profile rack"},
    {7, "QF6M Blade mezzanine"},     {8, "QF6B Blade chassis"},     {9, "QC1S Standard rack"},
    {10, "QC1D Low-profile rack"},   {11, "QC1M Blade mezzanine"},  {12, "QC1B Blade chassis"},
    {13, "QC4S Standard rack"},      {14, "QC4D Low-profile rack"}, {15, "QC4M Blade mezzanine"},
    {16, "QC4B Blade chassis"},      {17, "QF3S Standard rack"},    {18, "QF3D Low-profile rack"},
    {19, "QF3M Blade mezzanine"},    {20, "QF3B Blade chassis"},    {21, "QN1S Standard rack"},
    {22, "QN1D Low-profile rack"},   {24, "QN1M Blade mezzanine"},  {25, "QN1B Blade chassis"},
    {26, "QN2S Standard rack"},      {27, "QN2D Low-profile rack"}, {28, "QN2M Blade mezzanine"},
    {29, "QN2B Blade chassis"},      {30, "QC2S Standard rack"},    {31, "QC2D Low-profile rack"},
    {32, "QC2M Blade mezzanine"},    {33, "QC2B Blade chassis"},    {34, "QF7S Standard rack"},
    {35, "QF7D Low-profile rack"},   {36, "QF7M Blade mezzanine"},  {37, "QF7B Blade chassis"},
    {38, "QC5S Standard rack"},      {39, "QC5D Low-profile rack"}, {40, "QC5M Blade mezzanine"},
    {41, "QC5B Blade chassis"},      {42, "QF9S Standard rack"},    {43, "QF9D Low-profile rack"},
    {65535, "QXXX Factory default"},
};

const char *kvd_ipl_model(uint32_t ipl_file_number)
{
    for (const auto &m : kvd_ipl_models)
        if (m.number == ipl_file_number)
            return m.model;
    return "Not documented";
}

static KVD_HANDLER(cntladdlattr)
{
    get_cntl_addl_attributes a;

    (void)arg;
    memset(&a, 0, sizeof(a));
    int32_t rc = get_Cntl_Addl_Attributes((uint32_t)cur_board, &a);
    if (rc != 0) {
        printf("%s - get_Cntl_Addl_Attributes returned 0x%x\n", row->c_string, rc);
        return rc;
    }
    printf("IPL file number: x%04x - %s\n", a.ipl_file_number, kvd_ipl_model(a.ipl_file_number));
    printf("IPL file: x%02x\n", a.ipl_file_version);
    printf("On die temperature: %d centigrade\n", a.on_die_temperature);
    printf("Driver advanced features: x%08x\n", a.driver_advanced_features_supported);
    KVD_CHARS("FCOE universal bios: ", a.fcoe_universal_bios_version);
    KVD_CHARS("FCOE x86 bios: ", a.fcoe_x86_bios_version);
    KVD_CHARS("FCOE efi bios: ", a.fcoe_efi_bios_version);
    KVD_CHARS("FCOE fcode: ", a.fcoe_fcode_version);
    KVD_CHARS("UEFI bios: ", a.uefi_bios_version);
    KVD_CHARS("UEFI nic: ", a.uefi_nic_version);
    KVD_CHARS("UEFI fcode: ", a.uefi_fcode_version);
    KVD_CHARS("UEFI iscsi: ", a.uefi_iscsi_version);
    KVD_CHARS("ISCSI x86 bios: ", a.iscsi_x86_bios_version);
    KVD_CHARS("PXE x86 bios: ", a.pxe_x86_bios_version);
    printf("FCOE default wwpn: ");
    for (size_t i = 0; i + 1 < sizeof(a.fcoe_default_wwpn); i++)
        printf("%02x:", a.fcoe_default_wwpn[i]);
    printf("%02x\n", a.fcoe_default_wwpn[sizeof(a.fcoe_default_wwpn) - 1]);
    KVD_CHARS("EXT phy: ", a.ext_phy_version);
    KVD_CHARS("FC universal bios: ", a.fc_universal_bios_version);
    KVD_CHARS("FC x86 bios: ", a.fc_x86_bios_version);
    KVD_CHARS("FC efi bios: ", a.fc_efi_bios_version);
    KVD_CHARS("FC fcode: ", a.fc_fcode_version);
    KVD_CHARS("EXT phy crc: ", a.ext_phy_crc_version);
    return rc;
}

// The last four lines show fields the query does not fill: the record is
// cleared first, so they read zero.
static KVD_HANDLER(fwconfig)
{
    KVD_vexa_sli4_query_fw_config_rsp c;

    (void)arg;
    memset(&c, 0, sizeof(c));
    int32_t rc = query_fw_config((uint32_t)cur_board, &c);
    if (rc != 0) {
        printf("%s - query_fw_config returned 0x%x\n", row->c_string, rc);
        return rc;
    }
    printf("        config_number: x%08x\n", c.config_number);
    printf("        asic_revision: x%08x\n", c.asic_revision);
    printf("        physical_port: x%08x\n", c.physical_port);
    printf("        function_mode: x%08x\n", c.function_mode);
    printf("            ulpo_mode: x%08x\n", c.ulp0_oper_mode);
    printf("   ulp0_nic_wqid_base: x%08x\n", c.ulp0_nic_wqid_base);
    printf("      ulp0_nic_wq_tot: x%08x\n", c.ulp0_nic_wq_tot);
    printf("   ulp0_toe_wqid_base: x%08x\n", c.ulp0_toe_wqid_base);
    printf("      ulp0_toe_wq_tot: x%08x\n", c.ulp0_toe_wq_tot);
    printf("   ulp0_toe_rqid_base: x%08x\n", c.ulp0_toe_rqid_base);
    printf("    ulp0_toe_rqid_tot: x%08x\n", c.ulp0_toe_rqid_tot);
    printf("ulp0_toe_defrqid_base: x%08x\n", c.ulp0_toe_defrqid_base);
    printf("   ulp0_toe_defrq_tot: x%08x\n", c.ulp0_toe_defrq_tot);
    printf("   ulp0_lro_rqid_base: x%08x\n", c.ulp0_lro_rqid_base);
    printf("    ulp0_lro_rqid_tot: x%08x\n", c.ulp0_lro_rqid_tot);
    printf("  ulp0_iscsi_icd_base: x%08x\n", c.ulp0_iscsi_icd_base);
    printf("   ulp0_iscsi_icd_tot: x%08x\n", c.ulp0_iscsi_icd_tot);
    printf("            ulp1_mode: x%08x\n", c.ulp1_oper_mode);
    printf("   ulp1_nic_wqid_base: x%08x\n", c.ulp1_nic_wqid_base);
    printf("      ulp1_nic_wq_tot: x%08x\n", c.ulp1_nic_wq_tot);
    printf("   ulp1_toe_wqid_base: x%08x\n", c.ulp1_toe_wqid_base);
    printf("      ulp1_toe_wq_tot: x%08x\n", c.ulp1_toe_wq_tot);
    printf("   ulp1_toe_rqid_base: x%08x\n", c.ulp1_toe_rqid_base);
    printf("    ulp1_toe_rqid_tot: x%08x\n", c.ulp1_toe_rqid_tot);
    printf("ulp1_toe_defrqid_base: x%08x\n", c.ulp1_toe_defrqid_base);
    printf("   ulp1_toe_defrq_tot: x%08x\n", c.ulp1_toe_defrq_tot);
    printf("   ulp1_lr0_rqid_base: x%08x\n", c.ulp1_lr0_rqid_base);
    printf("    ulp1_lr0_rqid_tot: x%08x\n", c.ulp1_lr0_rqid_tot);
    printf("  ulp1_iscsi_icd_base: x%08x\n", c.ulp1_iscsi_icd_base);
    printf("   ulp1_iscsi_icd_tot: x%08x\n", c.ulp1_iscsi_icd_tot);
    printf("function_capabilities: x%08x\n", c.function_capabilities);
    printf("            cqid_base: x%08x\n", c.cqid_base);
    printf("             cqid_tot: x%08x\n", c.cqid_tot);
    printf("            eqid_base: x%08x\n", c.eqid_base);
    printf("             eqid_tot: x%08x\n", c.eqid_tot);
    return rc;
}

static KVD_HANDLER(getbeacon)
{
    uint8_t state = 0;

    (void)arg;
    int32_t rc = get_beacon_config((uint32_t)cur_board, &state);
    if (rc != 0) {
        printf("%s - get_beacon_config returned 0x%x\n", row->c_string, rc);
        return rc;
    }
    printf("Beacon state %s\n", state ? "enabled" : "disabled");
    return rc;
}

static KVD_HANDLER(getdcbx)
{
    uint8_t mode = 0xAA;

    (void)arg;
    int32_t rc = get_dcbx_mode((uint32_t)cur_board, &mode);
    if (rc != 0) {
        printf("%s - get_dcbx_mode returned 0x%x\n", row->c_string, rc);
        return rc;
    }
    printf("DCBX mode x%02x - %s mode\n", mode, mode ? "CIN" : "CEE");
    return rc;
}

static KVD_HANDLER(nop)
{
    (void)arg;
    int32_t rc = issue_sli4_nop((uint32_t)cur_board);
    printf("%s - issue_Sli4_nop returned 0x%x\n", row->c_string, rc);
    return rc;
}

cmdinfo sli4info[] = {
    {"cntladdlattr", cntladdlattr}, {"cntlattr", cntlattr}, {"fwconfig", fwconfig},
    {"getbeacon", getbeacon},       {"getdcbx", getdcbx},   {"nop", nop},
};

static_assert(sizeof(sli4info) / sizeof(sli4info[0]) == g_sli4info_array_size, "one row per sub-command");

KVD_HANDLER(sli4Inval)
{
    (void)row;
    (void)arg;
    printf("Invalid subcommand: %s - use:\n", margc > 1 ? margv[1] : "");
    for (int i = 0; i < g_sli4info_array_size; i++)
        printf("%s\n", sli4info[i].c_string);
    return KVD_OK;
}

KVD_HANDLER(sli4)
{
    (void)row;
    (void)arg;
    if (margc < 2) {
        printf("Usage: sli4 [subCommand]\n");
        for (int i = 0; i < g_sli4info_array_size; i++)
            printf("%s\n", sli4info[i].c_string);
        return KVD_USAGE;
    }
    if (get_sli_mode((uint32_t)cur_board) != 4) {
        printf("Not supported on this board: %d\n", cur_board);
        return KVD_SLI4_NOT_SUPPORTED;
    }
    for (int i = 0; i < g_sli4info_array_size; i++) {
        if (strcmp(margv[1], sli4info[i].c_string) == 0) {
            (void)sli4info[i].c_routine(&sli4info[i], NULL);
            return KVD_OK;
        }
    }
    (void)sli4Inval(NULL, NULL);
    return KVD_OK;
}
