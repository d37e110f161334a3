/*
 * Records exchanged with the Tarvo converged-network ASIC.
 *
 * One command record goes down, one response record comes back, both
 * carried by KVD_SendTarvoCommand. Records are arrays of 32-bit words in
 * host byte order; 8-byte address fields (MAC, WWPN) are byte arrays. Every
 * command starts with its 32-bit code, every response with the ASIC's
 * completion status `code` (0 = success).
 */
#ifndef KVD_TARVO_H
#define KVD_TARVO_H

#include "kvd_brdinfo.h"

/* Command codes. */
#define TARVO_CMD_INIT 0x1
#define TARVO_CMD_FW_DOWNLOAD 0x2
#define TARVO_CMD_READ_MEM 0x3
#define TARVO_CMD_WRITE_MEM 0x4
#define TARVO_CMD_FTE_INSERT 0x5
#define TARVO_CMD_FTE_DELETE 0x6
#define TARVO_CMD_GET_INIT 0x7
#define TARVO_CMD_GET_CONFIG 0x8
#define TARVO_CMD_GET_PORT_STATS 0x9
#define TARVO_CMD_GET_LIF_STATS 0xA
#define TARVO_CMD_GET_ASIC_STATS 0xB
#define TARVO_CMD_GET_LOG_CONFIG 0xC
#define TARVO_CMD_GET_LOG_DATA 0xD
#define TARVO_CMD_GET_PANIC_LOG 0xE
#define TARVO_CMD_GET_LB_MODE 0xF
#define TARVO_CMD_SET_PAUSE 0x10
#define TARVO_CMD_SET_COS 0x11
#define TARVO_CMD_SET_PORT_TYPE 0x12
#define TARVO_CMD_DIAG 0x13
#define TARVO_CMD_LOOPBACK 0x14
#define TARVO_CMD_GET_FTABLE 0x15
#define TARVO_CMD_GET_SFP 0x16
#define TARVO_CMD_SET_FRU 0x17
#define TARVO_CMD_GET_FRU 0x18
#define TARVO_CMD_SET_FCOE_FMT 0x19
#define TARVO_CMD_GET_DIAG_LOG 0x20
#define TARVO_CMD_PANIC 0x21
#define TARVO_CMD_SET_FCOE_PARAMS 0x22
#define TARVO_CMD_GET_FCOE_PARAMS 0x23
#define TARVO_CMD_GET_FCF_LIST 0x24
#define TARVO_CMD_SET_FACL 0x25
#define TARVO_CMD_GET_FACL 0x26
#define TARVO_CMD_CREATE_VL 0x27
#define TARVO_CMD_DELETE_VL 0x28
#define TARVO_CMD_ETS_PG 0x2A
#define TARVO_CMD_SET_HOST_PFC 0x2B
#define TARVO_CMD_GET_HOST_PFC 0x2C
#define TARVO_CMD_RESET 0x80000001u
#define TARVO_CMD_MAINT_MODE 0x80000002u

/* Transport statuses of KVD_SendTarvoCommand (0: the exchange completed). */
#define TARVO_ERR_GENERAL 1
#define TARVO_ERR_RSP_OVERRUN 3
#define TARVO_ERR_INVALID_ADAPTER 4
#define TARVO_ERR_INVALID_BOARD 77
#define TARVO_ERR_LINK_DOWN 88
#define TARVO_ERR_TIMEOUT 99

/* Firmware types reported in tarvo_init_rsp_t.fw_type. */
#define TARVO_FW_TYPE_OPERATIONAL 0xABCD0001u
#define TARVO_FW_TYPE_GOLDEN 0xABCD0002u
#define TARVO_FW_TYPE_DIAGNOSTIC 0xABCD0003u

/* Image types of a firmware download. */
#define TARVO_IMAGE_OPERATIONAL 1
#define TARVO_IMAGE_DIAGNOSTIC 2

/* FCoE frame-format bits: P0, and T0..T14 (bit n for Tn). */
#define FC0E_FRAME_FORMAT_P0 0x00010000u
#define FC0E_FRAME_FORMAT_T(n) (0x00000001u << (n))
#define TARVO_FCOE_FMT_LIMIT 0x00020000u /* every accepted value lies below */

/* Ports: 0 and 1 are the Ethernet uplinks, 2 and 3 the FC side toward the
 * Fibre Channel controller, 4 and 5 the host-side Ethernet functions. */
#define TARVO_NUM_PORTS 6
#define TARVO_FC_PORT_FIRST 2
#define TARVO_FC_PORT_LAST 3
#define TARVO_NUM_PRIORITIES 8

#define TARVO_ADDR_SIZE 8
#define TARVO_SFP_PAGE_SIZE 256
#define TARVO_FTABLE_ENTRIES 256
#define TARVO_LOG_NAME_SIZE 20
#define TARVO_RSP_SIZE 10248
#define TARVO_MEM_READ_MAX 256 /* bytes one read may ask for */

/* ---- Command records ---------------------------------------------------- */

typedef struct tarvo_init_cmd {
    uint32_t code;
    uint32_t bb_credit;  /* FC buffer-to-buffer credit */
    uint32_t frame_size; /* FC frame size */
} tarvo_init_cmd_t;

/* The image bytes follow the record. */
typedef struct tarvo_fw_download_cmd {
    uint32_t code;
    uint32_t length; /* image byte count */
    uint32_t type;   /* TARVO_IMAGE_... */
} tarvo_fw_download_cmd_t;

/* A write carries one data word after the record (length 1). */
typedef struct tarvo_memory_cmd {
    uint32_t code;
    uint32_t address; /* ASIC byte address, 4-byte aligned */
    uint32_t length;  /* count of 32-bit words */
} tarvo_memory_cmd_t;

typedef struct tarvo_fte_insert_cmd {
    uint32_t code;
    uint32_t mask;
    uint32_t fcid; /* low 24 bits */
    uint8_t wwpn[TARVO_ADDR_SIZE];
} tarvo_fte_insert_cmd_t;

typedef struct tarvo_fte_delete_cmd {
    uint32_t code;
    uint32_t fcid; /* low 24 bits */
    uint8_t wwpn[TARVO_ADDR_SIZE];
} tarvo_fte_delete_cmd_t;

typedef struct tarvo_get_cmd {
    uint32_t code;
    uint32_t context; /* port, log id or 0 */
    uint32_t length;  /* byte size of the response buffer offered */
} tarvo_get_cmd_t;

typedef struct tarvo_set_cmd {
    uint32_t code;
    uint32_t value1;
    uint32_t value2;
} tarvo_set_cmd_t;

typedef struct tarvo_loopback_cmd {
    uint32_t code;
    uint32_t context; /* port */
    uint32_t type;    /* mode */
} tarvo_loopback_cmd_t;

typedef struct tarvo_reset_cmd {
    uint32_t code;
    uint32_t firmware; /* which image to run */
} tarvo_reset_cmd_t;

typedef struct tarvo_set_fru_data_cmd {
    uint32_t code;
    uint8_t mac0[TARVO_ADDR_SIZE];
    uint8_t mac1[TARVO_ADDR_SIZE];
    uint32_t flags; /* number of MAC addresses given */
} tarvo_set_fru_data_cmd_t;

typedef struct tarvo_diag_cmd {
    uint32_t code;
    uint32_t loop_count;
} tarvo_diag_cmd_t;

typedef struct tarvo_facl {
    uint8_t fabric_name[TARVO_ADDR_SIZE];
    uint8_t sw_name[TARVO_ADDR_SIZE];
    uint32_t acc_ctrl; /* 1 permit, 0 deny */
} tarvo_facl_t;

/* num_acls tarvo_facl_t entries start at facl_list. */
typedef struct tarvo_set_facl_cmd {
    uint32_t code;
    uint32_t lport_id;
    uint32_t num_acls;
    uint32_t facl_list[1];
} tarvo_set_facl_cmd_t;

typedef struct fcf_id {
    uint8_t sw_name[TARVO_ADDR_SIZE];
    uint8_t fabric_name[TARVO_ADDR_SIZE];
} fcf_id_t;

typedef struct tarvo_cmd_create_vl {
    uint32_t code;
    uint32_t lport_id;
    fcf_id_t fcf;
} tarvo_cmd_create_vl_t;

typedef struct tarvo_cmd_delete_vl {
    uint32_t code;
    uint32_t vl_handle;
} tarvo_cmd_delete_vl_t;

typedef struct tarvo_fip_params {
    uint8_t sw_name[TARVO_ADDR_SIZE];
    uint8_t fabric_name[TARVO_ADDR_SIZE];
    uint8_t sup_addr_mode;
    uint8_t pref_addr_mode;
    uint16_t fcf_disc_tov;
    uint16_t vlan_id[4];
} tarvo_fip_params_t;

typedef struct tarvo_non_fip_params {
    uint32_t fc_map;
} tarvo_non_fip_params_t;

typedef union tarvo_fcoe_params {
    tarvo_fip_params_t fip;
    tarvo_non_fip_params_t non_fip;
} tarvo_fcoe_params_t;

typedef struct tarvo_set_fcoe_params_cmd {
    uint32_t code;
    uint32_t fcoe_mode; /* 0 non-FIP, 1 FIP */
    uint32_t lport_id;
    tarvo_fcoe_params_t params;
} tarvo_set_fcoe_params_cmd_t;

typedef struct tarvo_pg_info {
    uint32_t num_pg;
    uint8_t pg_ids[8];
    uint8_t pg_bw[8];
} tarvo_pg_info_t;

typedef struct tarvo_set_pg_info_cmd {
    uint32_t code;
    tarvo_pg_info_t pg_info;
} tarvo_set_pg_info_cmd_t;

typedef struct tarvo_set_host_eth_pfc_flag_cmd {
    uint32_t code;
    uint32_t host_pfc_enable;
    uint32_t rsvd1; /* the response size offered */
} tarvo_set_host_eth_pfc_flag_cmd_t;

typedef union tarvo_cmd {
    uint32_t word[5];
    uint32_t code;
    tarvo_init_cmd_t init;
    tarvo_fw_download_cmd_t fw;
    tarvo_memory_cmd_t mem;
    tarvo_fte_insert_cmd_t fte_insert;
    tarvo_fte_delete_cmd_t fte_delete;
    tarvo_get_cmd_t get;
    tarvo_set_cmd_t set;
    tarvo_loopback_cmd_t lb;
    tarvo_reset_cmd_t reset;
    tarvo_set_fru_data_cmd_t fru;
    tarvo_diag_cmd_t diag;
    tarvo_set_facl_cmd_t setfacl;
    tarvo_cmd_create_vl_t createvl;
    tarvo_cmd_delete_vl_t deletevl;
    tarvo_set_fcoe_params_cmd_t fcoeparams;
    tarvo_set_pg_info_cmd_t pginfo;
    tarvo_set_host_eth_pfc_flag_cmd_t hostpfc;
} tarvo_cmd_t;

/* ---- Response records --------------------------------------------------- */

typedef struct tarvo_init_rsp {
    uint32_t code;
    uint32_t bb_credit;
    uint32_t frame_size;
    uint32_t fw_version;
    uint32_t reset_status; /* 0 normal, else the last reset was a panic */
    uint32_t maint_status; /* 0 disabled, else maintenance mode */
    uint32_t fw_type;      /* TARVO_FW_TYPE_... */
    uint32_t fru_data_valid;
} tarvo_init_rsp_t;

typedef struct tarvo_fru_data_rsp {
    uint32_t code;
    uint8_t mac0[TARVO_ADDR_SIZE];
    uint8_t mac1[TARVO_ADDR_SIZE];
    uint32_t flags; /* low 2 bits: number of channels */
} tarvo_fru_data_rsp_t;

/* Pairs are port 0 then port 1. */
typedef struct tarvo_get_config_rsp {
    uint32_t code;
    uint32_t pause_type[2];
    uint32_t priority[2];
    uint32_t fcoe_cos[2];
    uint32_t uif_port_type[2];
    uint32_t log_cfg_size;   /* bytes of the log configuration after code */
    uint32_t panic_log_size; /* bytes of the panic record after code */
    uint32_t dcx_present[2];
    uint32_t current_pause_type[2];
    uint32_t current_priority[2];
    uint32_t current_fcoe_cos[2];
    uint32_t current_uif_port_type[2];
    uint32_t fcoe_format;
    uint32_t current_fcoe_format;
    uint32_t supported_fcoe_format;
} tarvo_get_config_rsp_t;

/* FC-side port counters (ports TARVO_FC_PORT_FIRST..LAST). */
typedef struct tarvo_fc_stats_rsp {
    uint32_t code;
    uint32_t port;
    uint64_t tx_frames;
    uint64_t rx_frames;
    uint64_t tx_words;
    uint64_t rx_words;
    uint64_t tx_discards;
    uint64_t rx_discards;
    uint64_t crc_errors;
    uint64_t encoding_errors;
    uint64_t invalid_tx_words;
    uint64_t link_failures;
    uint64_t loss_of_sync;
    uint64_t loss_of_signal;
    uint64_t primitive_seq_errors;
    uint64_t bb_credit_zero_tx;
    uint64_t bb_credit_zero_rx;
    uint64_t rx_r_rdy;
    uint64_t tx_r_rdy;
    uint64_t fcoe_encap_frames;
    uint64_t fcoe_decap_frames;
    uint64_t fcoe_encap_errors;
    uint64_t fcoe_decap_errors;
    uint64_t rx_truncated_frames;
    uint64_t rx_too_long_frames;
    uint64_t link_resets;
} tarvo_fc_stats_rsp_t;

/* Ethernet-side port counters (every other port). */
typedef struct tarvo_network_stats_rsp {
    uint32_t code;
    uint32_t port;
    uint64_t tx_bytes;
    uint64_t rx_bytes;
    uint64_t tx_frames;
    uint64_t rx_frames;
    uint64_t tx_unicast;
    uint64_t rx_unicast;
    uint64_t tx_multicast;
    uint64_t rx_multicast;
    uint64_t tx_broadcast;
    uint64_t rx_broadcast;
    uint64_t tx_pause;
    uint64_t rx_pause;
    uint64_t tx_pfc[TARVO_NUM_PRIORITIES];
    uint64_t rx_pfc[TARVO_NUM_PRIORITIES];
    uint64_t rx_crc_errors;
    uint64_t rx_undersize;
    uint64_t rx_oversize;
    uint64_t rx_fragments;
    uint64_t rx_jabbers;
    uint64_t rx_alignment_errors;
    uint64_t rx_symbol_errors;
    uint64_t rx_dropped;
    uint64_t tx_dropped;
    uint64_t rx_fcoe_frames;
    uint64_t tx_fcoe_frames;
    uint64_t rx_fip_frames;
    uint64_t tx_fip_frames;
    uint64_t rx_frames_64;
    uint64_t rx_frames_65_127;
    uint64_t rx_frames_128_255;
    uint64_t rx_frames_256_511;
    uint64_t rx_frames_512_1023;
    uint64_t rx_frames_1024_1518;
    uint64_t rx_frames_1519_max;
    uint64_t rx_vlan_frames;
    uint64_t tx_vlan_frames;
    uint64_t link_down_events;
} tarvo_network_stats_rsp_t;

/* Logical-interface counters. */
typedef struct tarvo_lif_stats_rsp {
    uint32_t code;
    uint32_t lif;
    uint64_t tx_frames;
    uint64_t rx_frames;
    uint64_t tx_bytes;
    uint64_t rx_bytes;
    uint64_t tx_fcoe_frames;
    uint64_t rx_fcoe_frames;
    uint64_t tx_dropped;
    uint64_t rx_dropped;
} tarvo_lif_stats_rsp_t;

/* ASIC-wide counters; per-port arrays are indexed [port][priority]. */
typedef struct tarvo_asic_stats_rsp {
    uint32_t code;
    uint32_t uptime; /* seconds since the last reset */
    uint64_t commands;
    uint64_t command_errors;
    uint64_t fw_downloads;
    uint64_t resets;
    uint64_t panics;
    uint64_t ecc_corrected;
    uint64_t ecc_uncorrected;
    uint64_t parity_errors;
    uint64_t pcie_tx_tlps;
    uint64_t pcie_rx_tlps;
    uint64_t pcie_errors;
    uint64_t dma_reads;
    uint64_t dma_writes;
    uint64_t ftable_hits;
    uint64_t ftable_misses;
    uint64_t ftable_inserts;
    uint64_t ftable_deletes;
    uint64_t fip_solicitations;
    uint64_t fip_advertisements;
    uint64_t fip_keepalives;
    uint64_t vlink_creates;
    uint64_t vlink_deletes;
    uint64_t log_entries;
    uint64_t rx_priority_drops[TARVO_NUM_PORTS][TARVO_NUM_PRIORITIES];
    uint64_t pause_time[TARVO_NUM_PORTS][TARVO_NUM_PRIORITIES]; /* microseconds paused */
    uint64_t buffer_high_water[TARVO_NUM_PORTS][TARVO_NUM_PRIORITIES];
    uint64_t rsvd[24];
} tarvo_asic_stats_rsp_t;

typedef struct tarvo_log {
    uint16_t id;
    uint16_t num_entries;
    uint16_t entry_size; /* bytes per log line */
    uint16_t rsvd;
    char name[TARVO_LOG_NAME_SIZE];
} tarvo_log_t;

/* num_logs tarvo_log_t entries start at data. */
typedef struct tarvo_log_config_rsp {
    uint32_t code;
    uint16_t num_logs;
    uint16_t rsvd;
    uint32_t data[1];
} tarvo_log_config_rsp_t;

/* Fixed-size NUL-terminated text entries start at data. */
typedef struct tarvo_log_data_rsp {
    uint32_t code;
    uint16_t head; /* index of the newest entry */
    uint16_t rsvd;
    uint32_t data[1];
} tarvo_log_data_rsp_t;

typedef struct tarvo_panic_log_data_rsp {
    uint32_t code;
    uint32_t rsvd_flag;
    uint32_t type; /* 1 solicited, 2 exception */
    uint32_t regs_epc;
    uint32_t regs_cp0_cause;
    uint32_t regs_cp0_status;
    uint32_t regs_gp[32];
    uint16_t log_present;
    uint16_t num_entries;
    uint16_t entry_size;
    uint16_t head;
    uint32_t data[1];
} tarvo_panic_log_data_rsp_t;

typedef struct tarvo_lb_mode_rsp {
    uint32_t code;
    uint32_t mode;
} tarvo_lb_mode_rsp_t;

typedef struct tarvo_fte {
    uint16_t flags;
    uint8_t type;
    uint8_t type_mask;
    uint16_t tag;
    uint16_t tag_mask;
    uint8_t mac_addr[TARVO_ADDR_SIZE];
    uint8_t mac_addr_mask[TARVO_ADDR_SIZE];
    uint8_t fc_wwpn[TARVO_ADDR_SIZE];
    uint32_t lif_bitmap;
    uint32_t rsvd;
} tarvo_fte_t;

typedef struct tarvo_ftable_rsp {
    uint32_t code;
    tarvo_fte_t entry[TARVO_FTABLE_ENTRIES];
} tarvo_ftable_rsp_t;

typedef struct tarvo_sfp_rsp {
    uint32_t code;
    uint8_t page_a0[TARVO_SFP_PAGE_SIZE];
    uint8_t page_a2[TARVO_SFP_PAGE_SIZE];
} tarvo_sfp_rsp_t;

typedef struct tarvo_diag_log_entry {
    uint32_t status;
    uint32_t data;
} tarvo_diag_log_entry_t;

/* Followed by tarvo_diag_log_entry_t records. */
typedef struct tarvo_diag_log {
    uint32_t num_tests;
    uint32_t status_length;
    uint32_t requested_loop_cnt;
    uint32_t completed_loop_cnt;
    uint32_t test_summary;
    uint32_t data[1];
} tarvo_diag_log_t;

/* A tarvo_diag_log_t starts at data. */
typedef struct tarvo_diag_log_data_rsp {
    uint32_t code;
    uint32_t data_length;
    uint32_t data[1];
} tarvo_diag_log_data_rsp_t;

/* returned_facls tarvo_facl_t entries start at facl_list. */
typedef struct tarvo_get_facl_rsp {
    uint32_t code;
    uint32_t returned_facls;
    uint32_t total_facls;
    uint32_t facl_list[1];
} tarvo_get_facl_rsp_t;

typedef struct tarvo_fcf_info {
    uint32_t handle;
    uint8_t mac[6];
    uint16_t vlan_id;
    uint8_t sw_name[TARVO_ADDR_SIZE];
    uint8_t fabric_name[TARVO_ADDR_SIZE];
    uint32_t fc_map;
    uint32_t lka_period;
    uint16_t state;
    uint16_t ctrl_flags;
    uint16_t sup_addr_mode;
    uint16_t priority;
} tarvo_fcf_info_t;

/* returned_fcfs tarvo_fcf_info_t entries start at fcf_list. */
typedef struct tarvo_get_fcf_list_rsp {
    uint32_t code;
    uint32_t returned_fcfs;
    uint32_t total_fcf;
    uint32_t active_fcfs;
    uint32_t fcf_list[1];
} tarvo_get_fcf_list_rsp_t;

typedef struct tarvo_get_fcoe_params_rsp {
    uint32_t code;
    uint32_t fcoe_mode;
    tarvo_fcoe_params_t params;
} tarvo_get_fcoe_params_rsp_t;

typedef struct tarvo_get_ets_pg_info_rsp {
    uint32_t code;
    uint32_t max_supported_pg;
    uint32_t dcbx_feature_syncd;
    tarvo_pg_info_t curr_pg_info;
    tarvo_pg_info_t def_pg_info;
    uint32_t max_bg_bw[8];
} tarvo_get_ets_pg_info_rsp_t;

typedef struct tarvo_get_host_eth_pfc_flag_rsp {
    uint32_t code;
    uint32_t host_pfc_enable;
} tarvo_get_host_eth_pfc_flag_rsp_t;

typedef struct tarvo_get_dcbx_mode_rsp {
    uint32_t code;
    uint32_t mode;
} tarvo_get_dcbx_mode_rsp_t;

typedef union tarvo_rsp {
    uint32_t word[32];
    uint32_t code;
    uint8_t raw[TARVO_RSP_SIZE];
    tarvo_init_rsp_t init;
    tarvo_fru_data_rsp_t fru_data;
    tarvo_get_config_rsp_t config;
    tarvo_fc_stats_rsp_t fc_stats;
    tarvo_network_stats_rsp_t net_stats;
    tarvo_lif_stats_rsp_t lif_stats;
    tarvo_asic_stats_rsp_t asic_stats;
    tarvo_log_config_rsp_t log_cfg;
    tarvo_log_data_rsp_t log;
    tarvo_panic_log_data_rsp_t panic_log;
    tarvo_lb_mode_rsp_t lb_mode;
    tarvo_ftable_rsp_t ftable;
    tarvo_sfp_rsp_t sfp;
    tarvo_diag_log_data_rsp_t diag_log;
    tarvo_get_facl_rsp_t get_facl;
    tarvo_get_fcf_list_rsp_t fcflist;
    tarvo_get_fcoe_params_rsp_t fcoeparams;
    tarvo_get_ets_pg_info_rsp_t pginfo;
    tarvo_get_host_eth_pfc_flag_rsp_t hostpfc;
    tarvo_get_dcbx_mode_rsp_t dcbx_mode;
} tarvo_rsp_t;

/* ---- Firmware image file ------------------------------------------------ */

/* The first 32 bytes of an image file. */
typedef struct tarvo_image_hdr {
    uint32_t rsvd1;
    uint32_t rsvd2;
    uint32_t version;
    uint32_t file_length; /* multiple of 4; the checksum covers file_length - 16 bytes */
    uint32_t image_length;
    uint32_t rsvd3;
    uint32_t rsvd4;
    uint32_t checksum_offset; /* file offset of the version record's checksum word */
} tarvo_image_hdr_t;

/* Ends at checksum_offset + 4. */
typedef struct tarvo_version_hdr {
    uint32_t padded;
    uint32_t type;
    uint32_t version;
    uint32_t checksum; /* XOR of the image's words */
} tarvo_version_hdr_t;

/* ---- Layout checks ------------------------------------------------------ */

#define KVD_TARVO_SIZE(t, n) KVD_STATIC_ASSERT(sizeof(t) == (n), #t " size")
#define KVD_TARVO_OFF(t, f, n) KVD_STATIC_ASSERT(offsetof(t, f) == (n), #t "." #f " offset")

KVD_TARVO_SIZE(tarvo_init_cmd_t, 12);
KVD_TARVO_OFF(tarvo_init_cmd_t, bb_credit, 4);
KVD_TARVO_OFF(tarvo_init_cmd_t, frame_size, 8);
KVD_TARVO_SIZE(tarvo_fw_download_cmd_t, 12);
KVD_TARVO_OFF(tarvo_fw_download_cmd_t, length, 4);
KVD_TARVO_OFF(tarvo_fw_download_cmd_t, type, 8);
KVD_TARVO_SIZE(tarvo_memory_cmd_t, 12);
KVD_TARVO_OFF(tarvo_memory_cmd_t, address, 4);
KVD_TARVO_OFF(tarvo_memory_cmd_t, length, 8);
KVD_TARVO_SIZE(tarvo_fte_insert_cmd_t, 20);
KVD_TARVO_OFF(tarvo_fte_insert_cmd_t, mask, 4);
KVD_TARVO_OFF(tarvo_fte_insert_cmd_t, fcid, 8);
KVD_TARVO_OFF(tarvo_fte_insert_cmd_t, wwpn, 12);
KVD_TARVO_SIZE(tarvo_fte_delete_cmd_t, 16);
KVD_TARVO_OFF(tarvo_fte_delete_cmd_t, fcid, 4);
KVD_TARVO_OFF(tarvo_fte_delete_cmd_t, wwpn, 8);
KVD_TARVO_SIZE(tarvo_get_cmd_t, 12);
KVD_TARVO_OFF(tarvo_get_cmd_t, context, 4);
KVD_TARVO_OFF(tarvo_get_cmd_t, length, 8);
KVD_TARVO_SIZE(tarvo_set_cmd_t, 12);
KVD_TARVO_OFF(tarvo_set_cmd_t, value1, 4);
KVD_TARVO_OFF(tarvo_set_cmd_t, value2, 8);
KVD_TARVO_SIZE(tarvo_loopback_cmd_t, 12);
KVD_TARVO_OFF(tarvo_loopback_cmd_t, context, 4);
KVD_TARVO_OFF(tarvo_loopback_cmd_t, type, 8);
KVD_TARVO_SIZE(tarvo_reset_cmd_t, 8);
KVD_TARVO_OFF(tarvo_reset_cmd_t, firmware, 4);
KVD_TARVO_SIZE(tarvo_set_fru_data_cmd_t, 24);
KVD_TARVO_OFF(tarvo_set_fru_data_cmd_t, mac0, 4);
KVD_TARVO_OFF(tarvo_set_fru_data_cmd_t, mac1, 12);
KVD_TARVO_OFF(tarvo_set_fru_data_cmd_t, flags, 20);
KVD_TARVO_SIZE(tarvo_diag_cmd_t, 8);
KVD_TARVO_OFF(tarvo_diag_cmd_t, loop_count, 4);
KVD_TARVO_SIZE(tarvo_facl_t, 20);
KVD_TARVO_OFF(tarvo_facl_t, sw_name, 8);
KVD_TARVO_OFF(tarvo_facl_t, acc_ctrl, 16);
KVD_TARVO_SIZE(tarvo_set_facl_cmd_t, 16);
KVD_TARVO_OFF(tarvo_set_facl_cmd_t, lport_id, 4);
KVD_TARVO_OFF(tarvo_set_facl_cmd_t, num_acls, 8);
KVD_TARVO_OFF(tarvo_set_facl_cmd_t, facl_list, 12);
KVD_TARVO_SIZE(fcf_id_t, 16);
KVD_TARVO_OFF(fcf_id_t, fabric_name, 8);
KVD_TARVO_SIZE(tarvo_cmd_create_vl_t, 24);
KVD_TARVO_OFF(tarvo_cmd_create_vl_t, lport_id, 4);
KVD_TARVO_OFF(tarvo_cmd_create_vl_t, fcf, 8);
KVD_TARVO_SIZE(tarvo_cmd_delete_vl_t, 8);
KVD_TARVO_OFF(tarvo_cmd_delete_vl_t, vl_handle, 4);
KVD_TARVO_SIZE(tarvo_fip_params_t, 28);
KVD_TARVO_OFF(tarvo_fip_params_t, fabric_name, 8);
KVD_TARVO_OFF(tarvo_fip_params_t, sup_addr_mode, 16);
KVD_TARVO_OFF(tarvo_fip_params_t, pref_addr_mode, 17);
KVD_TARVO_OFF(tarvo_fip_params_t, fcf_disc_tov, 18);
KVD_TARVO_OFF(tarvo_fip_params_t, vlan_id, 20);
KVD_TARVO_SIZE(tarvo_non_fip_params_t, 4);
KVD_TARVO_SIZE(tarvo_fcoe_params_t, 28);
KVD_TARVO_SIZE(tarvo_set_fcoe_params_cmd_t, 40);
KVD_TARVO_OFF(tarvo_set_fcoe_params_cmd_t, fcoe_mode, 4);
KVD_TARVO_OFF(tarvo_set_fcoe_params_cmd_t, lport_id, 8);
KVD_TARVO_OFF(tarvo_set_fcoe_params_cmd_t, params, 12);
KVD_TARVO_SIZE(tarvo_pg_info_t, 20);
KVD_TARVO_OFF(tarvo_pg_info_t, pg_ids, 4);
KVD_TARVO_OFF(tarvo_pg_info_t, pg_bw, 12);
KVD_TARVO_SIZE(tarvo_set_pg_info_cmd_t, 24);
KVD_TARVO_OFF(tarvo_set_pg_info_cmd_t, pg_info, 4);
KVD_TARVO_SIZE(tarvo_set_host_eth_pfc_flag_cmd_t, 12);
KVD_TARVO_OFF(tarvo_set_host_eth_pfc_flag_cmd_t, host_pfc_enable, 4);
KVD_TARVO_OFF(tarvo_set_host_eth_pfc_flag_cmd_t, rsvd1, 8);
KVD_TARVO_SIZE(tarvo_cmd_t, 40);

KVD_TARVO_SIZE(tarvo_init_rsp_t, 32);
KVD_TARVO_OFF(tarvo_init_rsp_t, bb_credit, 4);
KVD_TARVO_OFF(tarvo_init_rsp_t, frame_size, 8);
KVD_TARVO_OFF(tarvo_init_rsp_t, fw_version, 12);
KVD_TARVO_OFF(tarvo_init_rsp_t, reset_status, 16);
KVD_TARVO_OFF(tarvo_init_rsp_t, maint_status, 20);
KVD_TARVO_OFF(tarvo_init_rsp_t, fw_type, 24);
KVD_TARVO_OFF(tarvo_init_rsp_t, fru_data_valid, 28);
KVD_TARVO_SIZE(tarvo_fru_data_rsp_t, 24);
KVD_TARVO_OFF(tarvo_fru_data_rsp_t, mac0, 4);
KVD_TARVO_OFF(tarvo_fru_data_rsp_t, mac1, 12);
KVD_TARVO_OFF(tarvo_fru_data_rsp_t, flags, 20);
KVD_TARVO_SIZE(tarvo_get_config_rsp_t, 96);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, pause_type, 4);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, priority, 12);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, fcoe_cos, 20);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, uif_port_type, 28);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, log_cfg_size, 36);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, panic_log_size, 40);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, dcx_present, 44);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, current_pause_type, 52);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, current_priority, 60);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, current_fcoe_cos, 68);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, current_uif_port_type, 76);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, fcoe_format, 84);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, current_fcoe_format, 88);
KVD_TARVO_OFF(tarvo_get_config_rsp_t, supported_fcoe_format, 92);
KVD_TARVO_SIZE(tarvo_fc_stats_rsp_t, 200);
KVD_TARVO_OFF(tarvo_fc_stats_rsp_t, tx_frames, 8);
KVD_TARVO_OFF(tarvo_fc_stats_rsp_t, link_resets, 192);
KVD_TARVO_SIZE(tarvo_network_stats_rsp_t, 416);
KVD_TARVO_OFF(tarvo_network_stats_rsp_t, tx_bytes, 8);
KVD_TARVO_OFF(tarvo_network_stats_rsp_t, tx_pfc, 104);
KVD_TARVO_OFF(tarvo_network_stats_rsp_t, rx_pfc, 168);
KVD_TARVO_OFF(tarvo_network_stats_rsp_t, link_down_events, 408);
KVD_TARVO_SIZE(tarvo_lif_stats_rsp_t, 72);
KVD_TARVO_OFF(tarvo_lif_stats_rsp_t, tx_frames, 8);
KVD_TARVO_OFF(tarvo_lif_stats_rsp_t, rx_dropped, 64);
KVD_TARVO_SIZE(tarvo_asic_stats_rsp_t, 1536);
KVD_TARVO_OFF(tarvo_asic_stats_rsp_t, commands, 8);
KVD_TARVO_OFF(tarvo_asic_stats_rsp_t, rx_priority_drops, 192);
KVD_TARVO_OFF(tarvo_asic_stats_rsp_t, pause_time, 576);
KVD_TARVO_OFF(tarvo_asic_stats_rsp_t, buffer_high_water, 960);
KVD_TARVO_OFF(tarvo_asic_stats_rsp_t, rsvd, 1344);
KVD_TARVO_SIZE(tarvo_log_t, 28);
KVD_TARVO_OFF(tarvo_log_t, num_entries, 2);
KVD_TARVO_OFF(tarvo_log_t, entry_size, 4);
KVD_TARVO_OFF(tarvo_log_t, name, 8);
KVD_TARVO_SIZE(tarvo_log_config_rsp_t, 12);
KVD_TARVO_OFF(tarvo_log_config_rsp_t, num_logs, 4);
KVD_TARVO_OFF(tarvo_log_config_rsp_t, data, 8);
KVD_TARVO_SIZE(tarvo_log_data_rsp_t, 12);
KVD_TARVO_OFF(tarvo_log_data_rsp_t, head, 4);
KVD_TARVO_OFF(tarvo_log_data_rsp_t, data, 8);
KVD_TARVO_SIZE(tarvo_panic_log_data_rsp_t, 164);
KVD_TARVO_OFF(tarvo_panic_log_data_rsp_t, rsvd_flag, 4);
KVD_TARVO_OFF(tarvo_panic_log_data_rsp_t, type, 8);
KVD_TARVO_OFF(tarvo_panic_log_data_rsp_t, regs_epc, 12);
KVD_TARVO_OFF(tarvo_panic_log_data_rsp_t, regs_cp0_cause, 16);
KVD_TARVO_OFF(tarvo_panic_log_data_rsp_t, regs_cp0_status, 20);
KVD_TARVO_OFF(tarvo_panic_log_data_rsp_t, regs_gp, 24);
KVD_TARVO_OFF(tarvo_panic_log_data_rsp_t, log_present, 152);
KVD_TARVO_OFF(tarvo_panic_log_data_rsp_t, num_entries, 154);
KVD_TARVO_OFF(tarvo_panic_log_data_rsp_t, entry_size, 156);
KVD_TARVO_OFF(tarvo_panic_log_data_rsp_t, head, 158);
KVD_TARVO_OFF(tarvo_panic_log_data_rsp_t, data, 160);
KVD_TARVO_SIZE(tarvo_lb_mode_rsp_t, 8);
KVD_TARVO_SIZE(tarvo_fte_t, 40);
KVD_TARVO_OFF(tarvo_fte_t, type, 2);
KVD_TARVO_OFF(tarvo_fte_t, type_mask, 3);
KVD_TARVO_OFF(tarvo_fte_t, tag, 4);
KVD_TARVO_OFF(tarvo_fte_t, tag_mask, 6);
KVD_TARVO_OFF(tarvo_fte_t, mac_addr, 8);
KVD_TARVO_OFF(tarvo_fte_t, mac_addr_mask, 16);
KVD_TARVO_OFF(tarvo_fte_t, fc_wwpn, 24);
KVD_TARVO_OFF(tarvo_fte_t, lif_bitmap, 32);
KVD_TARVO_OFF(tarvo_fte_t, rsvd, 36);
KVD_TARVO_SIZE(tarvo_ftable_rsp_t, 10244);
KVD_TARVO_OFF(tarvo_ftable_rsp_t, entry, 4);
KVD_TARVO_SIZE(tarvo_sfp_rsp_t, 516);
KVD_TARVO_OFF(tarvo_sfp_rsp_t, page_a0, 4);
KVD_TARVO_OFF(tarvo_sfp_rsp_t, page_a2, 260);
KVD_TARVO_SIZE(tarvo_diag_log_entry_t, 8);
KVD_TARVO_SIZE(tarvo_diag_log_t, 24);
KVD_TARVO_SIZE(tarvo_diag_log_data_rsp_t, 12);
KVD_TARVO_OFF(tarvo_diag_log_data_rsp_t, data_length, 4);
KVD_TARVO_OFF(tarvo_diag_log_data_rsp_t, data, 8);
KVD_TARVO_SIZE(tarvo_get_facl_rsp_t, 16);
KVD_TARVO_OFF(tarvo_get_facl_rsp_t, returned_facls, 4);
KVD_TARVO_OFF(tarvo_get_facl_rsp_t, total_facls, 8);
KVD_TARVO_OFF(tarvo_get_facl_rsp_t, facl_list, 12);
KVD_TARVO_SIZE(tarvo_fcf_info_t, 44);
KVD_TARVO_OFF(tarvo_fcf_info_t, mac, 4);
KVD_TARVO_OFF(tarvo_fcf_info_t, vlan_id, 10);
KVD_TARVO_OFF(tarvo_fcf_info_t, sw_name, 12);
KVD_TARVO_OFF(tarvo_fcf_info_t, fabric_name, 20);
KVD_TARVO_OFF(tarvo_fcf_info_t, fc_map, 28);
KVD_TARVO_OFF(tarvo_fcf_info_t, lka_period, 32);
KVD_TARVO_OFF(tarvo_fcf_info_t, state, 36);
KVD_TARVO_OFF(tarvo_fcf_info_t, ctrl_flags, 38);
KVD_TARVO_OFF(tarvo_fcf_info_t, sup_addr_mode, 40);
KVD_TARVO_OFF(tarvo_fcf_info_t, priority, 42);
KVD_TARVO_SIZE(tarvo_get_fcf_list_rsp_t, 20);
KVD_TARVO_OFF(tarvo_get_fcf_list_rsp_t, returned_fcfs, 4);
KVD_TARVO_OFF(tarvo_get_fcf_list_rsp_t, total_fcf, 8);
KVD_TARVO_OFF(tarvo_get_fcf_list_rsp_t, active_fcfs, 12);
KVD_TARVO_OFF(tarvo_get_fcf_list_rsp_t, fcf_list, 16);
KVD_TARVO_SIZE(tarvo_get_fcoe_params_rsp_t, 36);
KVD_TARVO_OFF(tarvo_get_fcoe_params_rsp_t, fcoe_mode, 4);
KVD_TARVO_OFF(tarvo_get_fcoe_params_rsp_t, params, 8);
KVD_TARVO_SIZE(tarvo_get_ets_pg_info_rsp_t, 84);
KVD_TARVO_OFF(tarvo_get_ets_pg_info_rsp_t, max_supported_pg, 4);
KVD_TARVO_OFF(tarvo_get_ets_pg_info_rsp_t, dcbx_feature_syncd, 8);
KVD_TARVO_OFF(tarvo_get_ets_pg_info_rsp_t, curr_pg_info, 12);
KVD_TARVO_OFF(tarvo_get_ets_pg_info_rsp_t, def_pg_info, 32);
KVD_TARVO_OFF(tarvo_get_ets_pg_info_rsp_t, max_bg_bw, 52);
KVD_TARVO_SIZE(tarvo_get_host_eth_pfc_flag_rsp_t, 8);
KVD_TARVO_SIZE(tarvo_get_dcbx_mode_rsp_t, 8);
KVD_TARVO_SIZE(tarvo_rsp_t, TARVO_RSP_SIZE);
KVD_TARVO_SIZE(tarvo_image_hdr_t, 32);
KVD_TARVO_OFF(tarvo_image_hdr_t, version, 8);
KVD_TARVO_OFF(tarvo_image_hdr_t, file_length, 12);
KVD_TARVO_OFF(tarvo_image_hdr_t, image_length, 16);
KVD_TARVO_OFF(tarvo_image_hdr_t, checksum_offset, 28);
KVD_TARVO_SIZE(tarvo_version_hdr_t, 16);
KVD_TARVO_OFF(tarvo_version_hdr_t, version, 8);
KVD_TARVO_OFF(tarvo_version_hdr_t, checksum, 12);

#ifdef __cplusplus
extern "C" {
#endif

/* Sends one command record of cmd_len bytes to the board's ASIC and receives
 * its response into rsp, whose byte size *rsp_len gives on entry; the
 * delivered size is written back. 0: the exchange completed (the response's
 * code tells the ASIC's verdict); otherwise a TARVO_ERR_... status. */
uint32_t KVD_SendTarvoCommand(uint32_t board, void *cmd, uint32_t cmd_len, void *rsp, uint32_t *rsp_len);

#ifdef __cplusplus
}
#endif

#endif
