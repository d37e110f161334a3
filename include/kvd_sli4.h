/*
 * SLI-4 configuration requests: the SLI4_CONFIG mailbox variant (command
 * code 0x9B), the request and response headers of the controller requests,
 * the object-store requests and their descriptors, and the operations of the
 * board-access library that carry them.
 *
 * All records are little-endian with bit-fields numbered from bit 0. Offsets
 * in comments count from the start of the record named; the variant starts
 * at mailbox byte 4 and the request area at mailbox byte 24.
 *
 * kvd_mbox.h includes this header for the variant before it declares the
 * mailbox; the operations at the end need the mailbox and so come after it.
 */
#ifndef KVD_SLI4_H
#define KVD_SLI4_H

#include "kvd_brdinfo.h"

/* ---- The SLI4_CONFIG variant ------------------------------------------ */

/* One scatter-gather entry of a non-embedded request (mailbox byte 24). */
typedef struct {
    uint32_t addr_lo; /* host address of the request buffer, low half */
    uint32_t addr_hi;
    uint32_t length; /* bytes */
} SLI4_SGE;

KVD_STATIC_ASSERT(sizeof(SLI4_SGE) == 12, "scatter-gather entry is 3 words");

typedef struct {
    uint32_t emb : 1; /* mailbox word at 4: 1 = request embedded in the record */
    uint32_t rsvd1 : 2;
    uint32_t sge_count : 5; /* entries of a non-embedded request */
    uint32_t rsvd2 : 16;
    uint32_t special : 8;
    uint32_t payload_length; /* 8 */
    uint32_t tag_lo;         /* 12 */
    uint32_t tag_hi;         /* 16 */
    uint32_t rsvd3;          /* 20 */
    union {                  /* 24 */
        struct {
            uint8_t be_op_code;
            uint8_t be_subsystem;
            uint8_t be_port_number;
            uint8_t be_domain;
            uint32_t be_timeout;        /* 28 */
            uint32_t be_request_length; /* 32 */
        } be;
        SLI4_SGE sge;
        uint32_t payload[26]; /* embedded request, first 104 bytes */
    } un;
} SLI4_CONFIG;

KVD_STATIC_ASSERT(sizeof(SLI4_CONFIG) == 124, "SLI4_CONFIG fills the variant");
KVD_STATIC_ASSERT(4 + offsetof(SLI4_CONFIG, payload_length) == 8, "payload_length at mailbox byte 8");
KVD_STATIC_ASSERT(4 + offsetof(SLI4_CONFIG, tag_lo) == 12, "tag_lo at mailbox byte 12");
KVD_STATIC_ASSERT(4 + offsetof(SLI4_CONFIG, tag_hi) == 16, "tag_hi at mailbox byte 16");
KVD_STATIC_ASSERT(4 + offsetof(SLI4_CONFIG, un) == 24, "request area at mailbox byte 24");
KVD_STATIC_ASSERT(4 + offsetof(SLI4_CONFIG, un.be.be_timeout) == 28, "be_timeout at mailbox byte 28");
KVD_STATIC_ASSERT(4 + offsetof(SLI4_CONFIG, un.be.be_request_length) == 32, "be_request_length at byte 32");
KVD_STATIC_ASSERT(4 + offsetof(SLI4_CONFIG, un.sge.length) == 32, "SGE length at mailbox byte 32");

/* Where the request lives in the mailbox and how much room it has there. */
#define SLI4_EMBEDDED_OFFSET 24
#define SLI4_EMBEDDED_SIZE 232 /* mailbox bytes 24-255 */

/* ---- Controller requests (the "sli4" family) ------------------------- */

/* Subsystems and opcodes. */
#define SLI4_SUBSYSTEM_COMMON 0x01
#define SLI4_SUBSYSTEM_DCBX 0x10
#define SLI4_OPC_GET_CNTL_ATTRIBUTES 0x20
#define SLI4_OPC_NOP 0x21
#define SLI4_OPC_QUERY_FW_CONFIG 0x3A
#define SLI4_OPC_GET_BEACON_CONFIG 0x46
#define SLI4_OPC_GET_CNTL_ADDL_ATTRIBUTES 0x79
#define SLI4_OPC_DCBX_GET_MODE 0x04 /* subsystem DCBX */

/* Completion statuses written into the response header. */
#define SLI4_STATUS_SUCCESS 0x00
#define SLI4_STATUS_FAILED 0x01
#define SLI4_STATUS_ILLEGAL_REQUEST 0x02
#define SLI4_STATUS_ILLEGAL_FIELD 0x03
#define SLI4_STATUS_INSUFFICIENT_BUFFER 0x04
#define SLI4_STATUS_UNAUTHORIZED 0x05

/* Mailbox status of an SLI4_CONFIG whose request failed: the request's own
 * status and additional status are in its response header. */
#define MBXERR_SLI4_CONFIG_FAILED 0x0040

/* Additional statuses. */
#define SLI4_ADDL_NONE 0x00
#define SLI4_ADDL_INVALID_OPCODE 0x01
#define SLI4_ADDL_INVALID_SUBSYSTEM 0x02
#define SLI4_ADDL_REQUEST_TOO_SHORT 0x03
#define SLI4_ADDL_BAD_LENGTH 0x04
#define SLI4_ADDL_NOT_SUPPORTED 0x05
#define SLI4_ADDL_BAD_DESCRIPTOR 0x06
#define SLI4_ADDL_OBJECT_NOT_FOUND 0x40
#define SLI4_ADDL_INVALID_OFFSET 0x41
#define SLI4_ADDL_NAME_TOO_LONG 0x42
#define SLI4_ADDL_READ_ONLY 0x43
#define SLI4_ADDL_NOT_A_DIRECTORY 0x44
#define SLI4_ADDL_STORE_FULL 0x45
#define SLI4_ADDL_IS_DIRECTORY 0x46

/* Request header (16 bytes), at the start of every request. */
typedef struct {
    uint8_t opCode;
    uint8_t subSystem;
    uint8_t port_number; /* controller attributes only */
    uint8_t domain;
    uint32_t time_out;       /* 4 */
    uint32_t request_length; /* 8: bytes after this header the request may use */
    uint32_t rsvd;           /* 12 */
} KVD_vexa_sli4_req_hdr;

/* Response header, written over the request header in place. */
typedef struct {
    uint8_t opCode;
    uint8_t subSystem;
    uint16_t rsvd1;
    uint8_t status;            /* 4 */
    uint8_t additional_status; /* 5 */
    uint16_t rsvd2;
    uint32_t response_length;        /* 8: bytes the full reply needs */
    uint32_t actual_response_length; /* 12: bytes written after this header */
} KVD_vexa_sli4_rsp_hdr;

KVD_STATIC_ASSERT(sizeof(KVD_vexa_sli4_req_hdr) == 16, "request header is 16 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_vexa_sli4_req_hdr, time_out) == 4, "time_out");
KVD_STATIC_ASSERT(offsetof(KVD_vexa_sli4_req_hdr, request_length) == 8, "request_length");
KVD_STATIC_ASSERT(sizeof(KVD_vexa_sli4_rsp_hdr) == 16, "response header is 16 bytes");
KVD_STATIC_ASSERT(offsetof(KVD_vexa_sli4_rsp_hdr, status) == 4, "status");
KVD_STATIC_ASSERT(offsetof(KVD_vexa_sli4_rsp_hdr, additional_status) == 5, "additional_status");
KVD_STATIC_ASSERT(offsetof(KVD_vexa_sli4_rsp_hdr, response_length) == 8, "response_length");
KVD_STATIC_ASSERT(offsetof(KVD_vexa_sli4_rsp_hdr, actual_response_length) == 12, "actual_response_length");

/* Controller attributes: the response body of GET_CNTL_ATTRIBUTES. */
typedef struct {
    char version_string[32];
    char manufacturer_name[32];          /* 32 */
    uint32_t supported_modes;            /* 64 */
    uint8_t eprom_version_lo;            /* 68 */
    uint8_t eprom_version_hi;            /* 69 */
    uint16_t rsvd1;                      /* 70 */
    uint32_t mbx_data_structure_version; /* 72 */
    uint32_t ep_firmware_data_structure_version;
    char ncsi_version_string[12];       /* 80 */
    uint32_t default_extended_timeout;  /* 92 */
    char model[32];                     /* 96 */
    char description[48];               /* 128 */
    char serial_number[32];             /* 176 */
    char ip_version_string[32];         /* 208 */
    char fw_version_string[32];         /* 240 */
    char bios_version_string[32];       /* 272 */
    char redboot_version_string[32];    /* 304 */
    char driver_version_string[32];     /* 336 */
    char fw_on_flash_string[32];        /* 368 */
    uint32_t functionalities_supported; /* 400 */
    uint16_t max_cdb_length;            /* 404 */
    uint8_t asic_revision;              /* 406 */
    uint8_t generational_guid0;         /* 407 */
    uint8_t generational_guid1[12];     /* 408 */
    uint16_t generational_guid3;        /* 420 */
    uint8_t generational_guid2;         /* 422 */
    uint8_t hba_port_count;             /* 423 */
    uint16_t default_link_down_timeout; /* 424 */
    uint8_t iscsi_version_min_max;      /* 426 */
    uint8_t multifunctional_device;     /* 427 */
    uint8_t cache_valid;                /* 428 */
    uint8_t hba_status;                 /* 429 */
    uint8_t max_domains_supported;      /* 430 */
    uint8_t physical_port;              /* 431 */
    uint32_t firmware_post_status;      /* 432 */
    uint32_t hba_mtu[8];                /* 436 */
    uint8_t iscsi_features;             /* 468 */
    uint8_t rsvd2[3];
    uint32_t rsvd3[3];      /* 472 */
    uint16_t pci_vendor_id; /* 484 */
    uint16_t pci_device_id;
    uint16_t pci_sub_vendor_id;
    uint16_t pci_sub_system_id;
    uint8_t pci_bus_number; /* 492 */
    uint8_t pci_device_number;
    uint8_t pci_function_number;
    uint8_t interface_type;
    uint8_t unique_identifier[8]; /* 496 */
    uint8_t number_of_netfilters; /* 504 */
    uint8_t rsvd4[4];
    uint8_t rsvd5[3];  /* alignment of the words that follow */
    uint32_t rsvd6[3]; /* 512 */
} get_cntl_attributes;

KVD_STATIC_ASSERT(sizeof(get_cntl_attributes) == 524, "controller attributes are 524 bytes");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, supported_modes) == 64, "supported_modes");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, eprom_version_hi) == 69, "eprom_version_hi");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, mbx_data_structure_version) == 72, "mbx version");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, ncsi_version_string) == 80, "ncsi_version_string");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, default_extended_timeout) == 92, "default_extended_timeout");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, model) == 96, "model");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, description) == 128, "description");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, serial_number) == 176, "serial_number");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, fw_on_flash_string) == 368, "fw_on_flash_string");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, functionalities_supported) == 400, "functionalities");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, generational_guid1) == 408, "generational_guid1");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, generational_guid3) == 420, "generational_guid3");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, generational_guid2) == 422, "generational_guid2");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, default_link_down_timeout) == 424, "link down timeout");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, physical_port) == 431, "physical_port");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, firmware_post_status) == 432, "firmware_post_status");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, hba_mtu) == 436, "hba_mtu");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, iscsi_features) == 468, "iscsi_features");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, pci_vendor_id) == 484, "pci_vendor_id");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, pci_sub_system_id) == 490, "pci_sub_system_id");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, pci_bus_number) == 492, "pci_bus_number");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, interface_type) == 495, "interface_type");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, unique_identifier) == 496, "unique_identifier");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, number_of_netfilters) == 504, "number_of_netfilters");
KVD_STATIC_ASSERT(offsetof(get_cntl_attributes, rsvd6) == 512, "trailing reserved words");

/* Additional controller attributes: the body of GET_CNTL_ADDL_ATTRIBUTES. */
typedef struct {
    uint16_t ipl_file_number;
    uint8_t ipl_file_version; /* 2 */
    uint8_t rsvd1;
    uint8_t on_die_temperature; /* 4: degrees Celsius */
    uint8_t rsvd2[3];
    uint32_t driver_advanced_features_supported; /* 8 */
    uint32_t rsvd3[4];                           /* 12 */
    char fcoe_universal_bios_version[32];        /* 28 */
    char fcoe_x86_bios_version[32];
    char fcoe_efi_bios_version[32];
    char fcoe_fcode_version[32];
    char uefi_bios_version[32];
    char uefi_nic_version[32];
    char uefi_fcode_version[32];
    char uefi_iscsi_version[32];
    char iscsi_x86_bios_version[32];
    char pxe_x86_bios_version[32];
    uint8_t fcoe_default_wwpn[8]; /* 348 */
    char ext_phy_version[32];     /* 356 */
    char fc_universal_bios_version[32];
    char fc_x86_bios_version[32];
    char fc_efi_bios_version[32];
    char fc_fcode_version[32];
    char ext_phy_crc_version[8]; /* 516 */
    uint32_t rsvd4[20];          /* 524 */
} get_cntl_addl_attributes;

KVD_STATIC_ASSERT(sizeof(get_cntl_addl_attributes) == 604, "additional attributes are 604 bytes");
KVD_STATIC_ASSERT(offsetof(get_cntl_addl_attributes, ipl_file_version) == 2, "ipl_file_version");
KVD_STATIC_ASSERT(offsetof(get_cntl_addl_attributes, on_die_temperature) == 4, "on_die_temperature");
KVD_STATIC_ASSERT(offsetof(get_cntl_addl_attributes, driver_advanced_features_supported) == 8, "features");
KVD_STATIC_ASSERT(offsetof(get_cntl_addl_attributes, fcoe_universal_bios_version) == 28, "first version");
KVD_STATIC_ASSERT(offsetof(get_cntl_addl_attributes, pxe_x86_bios_version) == 316, "pxe_x86_bios_version");
KVD_STATIC_ASSERT(offsetof(get_cntl_addl_attributes, fcoe_default_wwpn) == 348, "fcoe_default_wwpn");
KVD_STATIC_ASSERT(offsetof(get_cntl_addl_attributes, ext_phy_version) == 356, "ext_phy_version");
KVD_STATIC_ASSERT(offsetof(get_cntl_addl_attributes, fc_fcode_version) == 484, "fc_fcode_version");
KVD_STATIC_ASSERT(offsetof(get_cntl_addl_attributes, ext_phy_crc_version) == 516, "ext_phy_crc_version");
KVD_STATIC_ASSERT(offsetof(get_cntl_addl_attributes, rsvd4) == 524, "trailing reserved words");

/* The whole QUERY_FW_CONFIG response, header included. */
typedef struct {
    KVD_vexa_sli4_rsp_hdr hdr;
    uint32_t config_number; /* 16 */
    uint32_t asic_revision;
    uint32_t physical_port;
    uint32_t function_mode;
    uint32_t ulp0_oper_mode; /* 32 */
    uint32_t ulp0_nic_wqid_base;
    uint32_t ulp0_nic_wq_tot;
    uint32_t ulp0_toe_wqid_base;
    uint32_t ulp0_toe_wq_tot;
    uint32_t ulp0_toe_rqid_base;
    uint32_t ulp0_toe_rqid_tot;
    uint32_t ulp0_toe_defrqid_base;
    uint32_t ulp0_toe_defrq_tot;
    uint32_t ulp0_lro_rqid_base;
    uint32_t ulp0_lro_rqid_tot;
    uint32_t ulp0_iscsi_icd_base;
    uint32_t ulp0_iscsi_icd_tot;
    uint32_t ulp1_oper_mode; /* 84 */
    uint32_t ulp1_nic_wqid_base;
    uint32_t ulp1_nic_wq_tot;
    uint32_t ulp1_toe_wqid_base;
    uint32_t ulp1_toe_wq_tot;
    uint32_t ulp1_toe_rqid_base;
    uint32_t ulp1_toe_rqid_tot;
    uint32_t ulp1_toe_defrqid_base;
    uint32_t ulp1_toe_defrq_tot;
    uint32_t ulp1_lr0_rqid_base;
    uint32_t ulp1_lr0_rqid_tot;
    uint32_t ulp1_iscsi_icd_base;
    uint32_t ulp1_iscsi_icd_tot;
    uint32_t function_capabilities; /* 136 */
    uint32_t cqid_base;             /* 140 */
    uint32_t cqid_tot;
    uint32_t eqid_base;
    uint32_t eqid_tot;
} KVD_vexa_sli4_query_fw_config_rsp;

KVD_STATIC_ASSERT(sizeof(KVD_vexa_sli4_query_fw_config_rsp) == 156, "firmware configuration reply");
KVD_STATIC_ASSERT(offsetof(KVD_vexa_sli4_query_fw_config_rsp, config_number) == 16, "config_number");
KVD_STATIC_ASSERT(offsetof(KVD_vexa_sli4_query_fw_config_rsp, ulp0_oper_mode) == 32, "ulp0_oper_mode");
KVD_STATIC_ASSERT(offsetof(KVD_vexa_sli4_query_fw_config_rsp, ulp1_oper_mode) == 84, "ulp1_oper_mode");
KVD_STATIC_ASSERT(offsetof(KVD_vexa_sli4_query_fw_config_rsp, function_capabilities) == 136, "capabilities");
KVD_STATIC_ASSERT(offsetof(KVD_vexa_sli4_query_fw_config_rsp, cqid_base) == 140, "cqid_base");
KVD_STATIC_ASSERT(offsetof(KVD_vexa_sli4_query_fw_config_rsp, eqid_tot) == 152, "eqid_tot");

/* GET_BEACON_CONFIG request body (request byte 16). */
typedef struct {
    KVD_vexa_sli4_req_hdr hdr;
    uint8_t portNum : 6;
    uint8_t portType : 2;
    uint8_t rsvd[3];
} KVD_vexa_sli4_get_beacon_req;

KVD_STATIC_ASSERT(sizeof(KVD_vexa_sli4_get_beacon_req) == 20, "beacon request");

/* NOP request body: two context words the firmware hands back. */
typedef struct {
    KVD_vexa_sli4_req_hdr hdr;
    uint32_t context0; /* 16 */
    uint32_t context1; /* 20 */
} KVD_vexa_sli4_nop_req;

KVD_STATIC_ASSERT(sizeof(KVD_vexa_sli4_nop_req) == 24, "nop request");

/* Response lengths the firmware reports (bytes after the header). */
#define SLI4_CNTL_ATTR_LEN 524
#define SLI4_CNTL_ADDL_ATTR_LEN 604
#define SLI4_FW_CONFIG_LEN 140
#define SLI4_BEACON_LEN 4
#define SLI4_DCBX_LEN 4
#define SLI4_NOP_LEN 8

/* ---- Object store (the "sli4iov" family) ------------------------------ */

#define SLI4_OPC_READ_OBJECT 0xAB
#define SLI4_OPC_WRITE_OBJECT 0xAC
#define SLI4_OPC_READ_OBJECT_LIST 0xAD
#define SLI4_OPC_DELETE_OBJECT 0xAE

#define SLI4_OBJECT_NAME_SIZE 104 /* NUL included */
#define SLI4_MAX_HBD 8            /* descriptors that fit in the request area */
#define SLI4_OBJ_REQ_LEN 116      /* request_length of a request without descriptors */
#define SLI4_OBJ_DELETE_REQ_LEN 112

/* Object file types of a list entry. */
#define SLI4_OBJ_TYPE_NORMAL 0
#define SLI4_OBJ_TYPE_DIRECTORY 1
#define SLI4_OBJ_TYPE_LINKED 2

typedef struct {
    uint8_t opCode;
    uint8_t subSystem;
    uint16_t reserved1;
    uint32_t time_out;       /* 4 */
    uint32_t request_length; /* 8 */
    uint8_t version;         /* 12 */
    uint8_t reserved2;
    uint8_t reserved3;
    uint8_t reserved4;
} gorvik_common_request_header;

typedef struct {
    uint8_t opCode;
    uint8_t subSystem;
    uint16_t reserved1;
    uint8_t status;           /* 4 */
    uint8_t additionalStatus; /* 5 */
    uint16_t reserved2;
    uint32_t responseLength;       /* 8 */
    uint32_t actualResponseLength; /* 12 */
} gorvik_common_response_header;

KVD_STATIC_ASSERT(sizeof(gorvik_common_request_header) == 16, "object request header");
KVD_STATIC_ASSERT(offsetof(gorvik_common_request_header, request_length) == 8, "object request_length");
KVD_STATIC_ASSERT(offsetof(gorvik_common_request_header, version) == 12, "object request version");
KVD_STATIC_ASSERT(sizeof(gorvik_common_response_header) == 16, "object response header");
KVD_STATIC_ASSERT(offsetof(gorvik_common_response_header, status) == 4, "object status");
KVD_STATIC_ASSERT(offsetof(gorvik_common_response_header, additionalStatus) == 5, "additionalStatus");
KVD_STATIC_ASSERT(offsetof(gorvik_common_response_header, actualResponseLength) == 12,
                  "actualResponseLength");

typedef struct {
    uint32_t length : 24;
    uint32_t rsvd0 : 8;
    uint32_t bufferAddressLow;
    uint32_t bufferAddressHigh;
} host_buffer_descriptor;

KVD_STATIC_ASSERT(sizeof(host_buffer_descriptor) == 12, "host buffer descriptor");

typedef struct {
    gorvik_common_request_header hdr;
    uint32_t desiredWriteLength : 24; /* 16 */
    uint32_t reserved5 : 7;
    uint32_t endOfFile : 1;
    uint32_t writeOffset;                     /* 20 */
    char objectName[SLI4_OBJECT_NAME_SIZE];   /* 24 */
    uint32_t hostBufferDescriptorCount;       /* 128 */
    host_buffer_descriptor hbd[SLI4_MAX_HBD]; /* 132 */
} gorvik_common_write_object_cmd;

typedef struct {
    gorvik_common_request_header hdr;
    uint32_t desiredReadLength : 24; /* 16 */
    uint32_t reserved5 : 8;
    uint32_t readOffset;                      /* 20 */
    char objectName[SLI4_OBJECT_NAME_SIZE];   /* 24 */
    uint32_t hostBufferDescriptorCount;       /* 128 */
    host_buffer_descriptor hbd[SLI4_MAX_HBD]; /* 132 */
} gorvik_common_read_object_cmd;

typedef struct {
    gorvik_common_request_header hdr;
    uint16_t descriptorCount;                 /* 16: 0 asks for the count only */
    uint16_t descriptorOffset;                /* 18 */
    uint32_t reserved5;                       /* 20 */
    char objectName[SLI4_OBJECT_NAME_SIZE];   /* 24 */
    uint32_t hostBufferDescriptorCount;       /* 128 */
    host_buffer_descriptor hbd[SLI4_MAX_HBD]; /* 132 */
} gorvik_common_list_object_cmd;

typedef struct {
    gorvik_common_request_header hdr;
    uint32_t reserved5;                     /* 16 */
    uint32_t reserved6;                     /* 20 */
    char objectName[SLI4_OBJECT_NAME_SIZE]; /* 24 */
} gorvik_common_delete_object_cmd;

KVD_STATIC_ASSERT(offsetof(gorvik_common_write_object_cmd, writeOffset) == 20, "writeOffset");
KVD_STATIC_ASSERT(offsetof(gorvik_common_write_object_cmd, objectName) == 24, "write objectName");
KVD_STATIC_ASSERT(offsetof(gorvik_common_write_object_cmd, hostBufferDescriptorCount) == 128,
                  "write hbd count");
KVD_STATIC_ASSERT(offsetof(gorvik_common_write_object_cmd, hbd) == 132, "write hbd");
KVD_STATIC_ASSERT(sizeof(gorvik_common_write_object_cmd) == 132 + 12 * SLI4_MAX_HBD, "write request");
KVD_STATIC_ASSERT(offsetof(gorvik_common_read_object_cmd, readOffset) == 20, "readOffset");
KVD_STATIC_ASSERT(offsetof(gorvik_common_read_object_cmd, objectName) == 24, "read objectName");
KVD_STATIC_ASSERT(offsetof(gorvik_common_read_object_cmd, hostBufferDescriptorCount) == 128,
                  "read hbd count");
KVD_STATIC_ASSERT(offsetof(gorvik_common_read_object_cmd, hbd) == 132, "read hbd");
KVD_STATIC_ASSERT(offsetof(gorvik_common_list_object_cmd, descriptorOffset) == 18, "descriptorOffset");
KVD_STATIC_ASSERT(offsetof(gorvik_common_list_object_cmd, objectName) == 24, "list objectName");
KVD_STATIC_ASSERT(offsetof(gorvik_common_list_object_cmd, hbd) == 132, "list hbd");
KVD_STATIC_ASSERT(sizeof(gorvik_common_delete_object_cmd) == 128, "delete request");
KVD_STATIC_ASSERT(SLI4_EMBEDDED_OFFSET + sizeof(gorvik_common_read_object_cmd) <= 256, "fits the mailbox");

typedef struct {
    gorvik_common_response_header hdr;
    uint32_t actualWriteLength; /* 16 */
} gorvik_common_write_object_rsp;

typedef struct {
    gorvik_common_response_header hdr;
    uint32_t actualReadLength; /* 16 */
    uint32_t reserved3 : 31;   /* 20 */
    uint32_t eof : 1;
} gorvik_common_read_object_rsp;

typedef struct {
    gorvik_common_response_header hdr;
    uint32_t actualDescriptorLength; /* 16: low 16 bits, entries returned */
} gorvik_common_list_object_rsp;

KVD_STATIC_ASSERT(offsetof(gorvik_common_write_object_rsp, actualWriteLength) == 16, "actualWriteLength");
KVD_STATIC_ASSERT(offsetof(gorvik_common_read_object_rsp, actualReadLength) == 16, "actualReadLength");
KVD_STATIC_ASSERT(sizeof(gorvik_common_read_object_rsp) == 24, "eof word at 20");
KVD_STATIC_ASSERT(offsetof(gorvik_common_list_object_rsp, actualDescriptorLength) == 16, "descriptor length");

/* One directory entry of a list reply, in the data area. */
typedef struct {
    uint32_t objectHandle : 24;
    uint32_t reserved : 5;
    uint32_t objectFileType : 3;
    uint32_t objectInfo; /* 4: bytes, elements or handle, by type */
    char baseName[24];   /* 8 */
    char revName[128];   /* 32 */
} read_object_list_descriptor;

KVD_STATIC_ASSERT(sizeof(read_object_list_descriptor) == 160, "list entry is 160 bytes");
KVD_STATIC_ASSERT(offsetof(read_object_list_descriptor, objectInfo) == 4, "objectInfo");
KVD_STATIC_ASSERT(offsetof(read_object_list_descriptor, baseName) == 8, "baseName");
KVD_STATIC_ASSERT(offsetof(read_object_list_descriptor, revName) == 32, "revName");

/* The operations below take the mailbox; kvd_mbox.h reads this header
 * again once the mailbox is declared. */
#include "kvd_mbox.h"

#endif /* KVD_SLI4_H */

/* ---- Library operations ------------------------------------------------ */
#if defined(KVD_MBOX_COMPLETE) && !defined(KVD_SLI4_OPS)
#define KVD_SLI4_OPS

#ifdef __cplusplus
extern "C" {
#endif

/* Issues an SLI-4 configuration mailbox. A non-embedded request names its
 * buffer in the scatter-gather entry; `extension` (extension_words 32-bit
 * words, or none) is a second host buffer handed over with the record.
 * Result 0 when the mailbox completed (the request's own status is in the
 * response header), otherwise an errno value. */
int32_t IssueInternalMboxWithRetryEx(uint32_t board, MAILBOX *mb, void *extension, uint32_t extension_words,
                                     uint32_t rsvd1, uint32_t rsvd2, uint32_t retries, uint32_t delay);

/* The board's SLI-4 interface type (0 for a board that is not SLI-4), or a
 * negative number for a board the library does not know. */
int32_t kvd_get_board_sli4_if_type(uint32_t board);

#ifdef __cplusplus
}
#endif

#endif
