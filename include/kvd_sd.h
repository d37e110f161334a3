/*
 * Statistics and diagnostic (SD) events and I/O latency collection of the
 * board-access library.
 *
 * Events are identified by a category and a one-bit subcategory. The library
 * calls the subscriber's callback from its own thread with an SD_event whose
 * payload is a details record, whose payload in turn is the event record.
 * Every event record starts with a version and the remote port's name.
 *
 * Latency collection sorts the completion times of the I/Os to each target
 * into KVD_SD_BUCKETS buckets; KVD_SD_Get_Data returns one
 * SD_IO_Latency_Response per target.
 */
#ifndef KVD_SD_H
#define KVD_SD_H

#include <stddef.h>
#include <stdint.h>

#include <time.h> /* hbaapi.h uses struct tm */

#include <hbaapi.h>

#include "kvd_brdinfo.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Library statuses of the SD calls. */
#define SD_OK 0
#define SD_ERROR_GENERIC 1
#define SD_ERROR_INVALID_ARG 2
#define SD_ERROR_INVALID_BOARD_ID 3
#define SD_ERROR_INVALID_VPORT 4
#define SD_ERROR_NOT_SUPPORTED 5
#define SD_ERROR_CATEGORY_NOT_SUPPORTED 6
#define SD_ERROR_SUBCATEGORY_NOT_SUPPORTED 7
#define SD_ERROR_MORE_DATA_AVAILABLE 8
#define SD_ERROR_EVENT_ALREADY_REGISTERED 9
#define SD_ERROR_NO_ACTIVE_REGISTRATION 10
#define SD_ERROR_ARG_MISSING 11
#define SD_ERROR_NO_MEMORY 12
#define SD_ERROR_BUCKET_NOTSET 13
#define SD_ERROR_REG_HANDLE 14
#define SD_ERROR_INVALID_SEARCH_TYPE 15
#define SD_ERROR_FUNCTION_NOT_SUPPORTED 16
#define SD_ERROR_OUT_OF_HANDLES 17
#define SD_ERROR_LIB_NOT_INIT 18
#define SD_ERROR_DATA_COLLECTION_ACTIVE 19
#define SD_ERROR_DATA_COLLECTION_NOT_ACTIVE 20

/* Categories and their subcategories. */
#define SD_CATEGORY_ELS 0x1
#define SD_CATEGORY_FABRIC 0x2
#define SD_CATEGORY_SCSI 0x4
#define SD_CATEGORY_BOARD 0x8
#define SD_CATEGORY_ADAPTER 0x10

#define SD_ELS_SUBCATEGORY_PLOGI_RCV 0x1
#define SD_ELS_SUBCATEGORY_PRLO_RCV 0x2
#define SD_ELS_SUBCATEGORY_ADISC_RCV 0x4
#define SD_ELS_SUBCATEGORY_LSRJT_RCV 0x8
#define SD_ELS_SUBCATEGORY_LOGO_RCV 0x10
#define SD_FABRIC_SUBCATEGORY_FABRIC_BUSY 0x1
#define SD_FABRIC_SUBCATEGORY_PORT_BUSY 0x2
#define SD_FABRIC_SUBCATEGORY_FCPRDCHKERR 0x4
#define SD_SCSI_SUBCATEGORY_QFULL 0x1
#define SD_SCSI_SUBCATEGORY_DEVBSY 0x2
#define SD_SCSI_SUBCATEGORY_CHECKCONDITION 0x4
#define SD_SCSI_SUBCATEGORY_LUNRESET 0x8
#define SD_SCSI_SUBCATEGORY_TGTRESET 0x10
#define SD_SCSI_SUBCATEGORY_BUSRESET 0x20
#define SD_SCSI_SUBCATEGORY_VARQUEDEPTH 0x40
#define SD_BOARD_SUBCATEGORY_PORTINTERR 0x1
#define SD_ADAPTER_SUBCATEGORY_ARRIVAL 0x1

/* What the callback receives. */
typedef struct SD_event {
    uint32_t sd_evt_version;
    size_t sd_evt_size;
    void *sd_evt_payload; /* the details record */
} SD_event;

typedef struct SD_els_event_details_v0 {
    uint32_t sd_elsevt_version;
    void *sd_elsevt_payload;
} SD_els_event_details_v0;

typedef struct SD_fabric_event_details_v0 {
    uint32_t sd_fabricevt_version;
    void *sd_fabricevt_payload;
} SD_fabric_event_details_v0;

typedef struct sd_scsi_event_details_v0 {
    uint32_t sd_scsi_evt_version;
    void *sd_scsi_evt_payload;
} sd_scsi_event_details_v0;

/* Event records. */
typedef struct sd_plogi_rcv_v0 {
    uint32_t sd_plogir_version;
    HBA_WWN sd_plogir_portname;
    HBA_WWN sd_plogir_nodename;
} sd_plogi_rcv_v0;

typedef struct sd_prlo_rcv_v0 {
    uint32_t sd_prlor_version;
    HBA_WWN sd_prlor_remoteport;
} sd_prlo_rcv_v0;

typedef struct sd_adisc_rcv_v0 {
    uint32_t sd_adiscr_version;
    HBA_WWN sd_adiscr_portname;
    HBA_WWN sd_adiscr_nodename;
} sd_adisc_rcv_v0;

typedef struct sd_lsrjt_rcv_v0 {
    uint32_t sd_lsrjtr_version;
    HBA_WWN sd_lsrjtr_remoteport;
    uint32_t sd_lsrjtr_original_cmd;
    uint32_t sd_lsrjtr_reasoncode;
    uint32_t sd_lsrjtr_reasoncodeexpl;
} sd_lsrjt_rcv_v0;

typedef struct sd_logo_rcv_v0 {
    uint32_t sd_logo_version;
    HBA_WWN sd_logo_rportname;
    HBA_WWN sd_logo_payloadwwpn;
} sd_logo_rcv_v0;

typedef struct sd_pbsy_rcv_v0 {
    uint32_t sd_pbsyr_evt_version;
    HBA_WWN sd_pbsyr_rport;
} sd_pbsy_rcv_v0;

typedef struct sd_fcprdchkerr_v0 {
    uint32_t sd_fcprdchkerr_version;
    HBA_WWN sd_fcprdchkerr_rport;
    uint32_t sd_fcprdchkerr_lun;
    uint32_t sd_fcprdchkerr_opcode;
    uint32_t sd_fcprdchkerr_fcpiparam;
} sd_fcprdchkerr_v0;

typedef struct SD_scsi_generic_v0 {
    uint32_t sd_scsi_generic_version;
    HBA_WWN sd_scsi_generic_rport;
    uint32_t sd_scsi_generic_lun;
} SD_scsi_generic_v0;

typedef struct sd_scsi_varquedepth_v0 {
    uint32_t sd_varquedepth_version;
    HBA_WWN sd_varquedepth_rport;
    uint32_t sd_varquedepth_lun;
    uint32_t sd_varquedepth_oldval;
    uint32_t sd_varquedepth_newval;
} sd_scsi_varquedepth_v0;

typedef struct sd_scsi_checkcondition_v0 {
    uint32_t sd_checkcondition_version;
    HBA_WWN sd_checkcondition_rport;
    uint32_t sd_checkcondition_lun;
    uint32_t sd_checkcondition_cmdcode;
    uint32_t sd_checkcondition_senskey;
    uint32_t sd_checkcondition_asc;
    uint32_t sd_checkcondition_ascq;
} sd_scsi_checkcondition_v0;

KVD_STATIC_ASSERT(offsetof(sd_plogi_rcv_v0, sd_plogir_portname) == 4, "event port name at byte 4");
KVD_STATIC_ASSERT(offsetof(sd_plogi_rcv_v0, sd_plogir_nodename) == 12, "second name at byte 12");
KVD_STATIC_ASSERT(sizeof(sd_plogi_rcv_v0) == 20, "sd_plogi_rcv_v0 is 20 bytes");
KVD_STATIC_ASSERT(sizeof(sd_prlo_rcv_v0) == 12, "sd_prlo_rcv_v0 is 12 bytes");
KVD_STATIC_ASSERT(sizeof(sd_adisc_rcv_v0) == 20, "sd_adisc_rcv_v0 is 20 bytes");
KVD_STATIC_ASSERT(offsetof(sd_lsrjt_rcv_v0, sd_lsrjtr_original_cmd) == 12, "LS_RJT command at byte 12");
KVD_STATIC_ASSERT(sizeof(sd_lsrjt_rcv_v0) == 24, "sd_lsrjt_rcv_v0 is 24 bytes");
KVD_STATIC_ASSERT(offsetof(sd_logo_rcv_v0, sd_logo_payloadwwpn) == 12, "LOGO payload name at byte 12");
KVD_STATIC_ASSERT(sizeof(sd_pbsy_rcv_v0) == 12, "sd_pbsy_rcv_v0 is 12 bytes");
KVD_STATIC_ASSERT(offsetof(sd_fcprdchkerr_v0, sd_fcprdchkerr_lun) == 12, "read check LUN at byte 12");
KVD_STATIC_ASSERT(sizeof(sd_fcprdchkerr_v0) == 24, "sd_fcprdchkerr_v0 is 24 bytes");
KVD_STATIC_ASSERT(sizeof(SD_scsi_generic_v0) == 16, "SD_scsi_generic_v0 is 16 bytes");
KVD_STATIC_ASSERT(offsetof(sd_scsi_varquedepth_v0, sd_varquedepth_newval) == 20, "new depth at byte 20");
KVD_STATIC_ASSERT(sizeof(sd_scsi_varquedepth_v0) == 24, "sd_scsi_varquedepth_v0 is 24 bytes");
KVD_STATIC_ASSERT(offsetof(sd_scsi_checkcondition_v0, sd_checkcondition_ascq) == 28, "ASCQ at byte 28");
KVD_STATIC_ASSERT(sizeof(sd_scsi_checkcondition_v0) == 32, "sd_scsi_checkcondition_v0 is 32 bytes");

/* Latency buckets and the per-target counts. */
#define KVD_SD_BUCKETS 20
#define SD_SEARCH_LINEAR 1
#define SD_SEARCH_POWER2 2

typedef struct SD_time_stats_v0 {
    uint32_t sd_tstats_bucket_count;
} SD_time_stats_v0;

typedef struct SD_IO_Latency_Response {
    HBA_WWN sd_iolatency_target_wwpn;
    SD_time_stats_v0 sd_time_stats_array[KVD_SD_BUCKETS];
} SD_IO_Latency_Response;

KVD_STATIC_ASSERT(sizeof(SD_IO_Latency_Response) == 88, "SD_IO_Latency_Response is 88 bytes");
KVD_STATIC_ASSERT(offsetof(SD_IO_Latency_Response, sd_time_stats_array) == 8, "counts at byte 8");

typedef void (*kvd_sd_callback_fn)(uint32_t board, HBA_WWN port, uint32_t category, uint32_t subcategory,
                                   void *context, SD_event *event);

/* Events. The vport WWN is all zero for the physical port. */
int32_t KVD_SD_RegisterForEvent(uint32_t board, HBA_WWN vport, uint32_t category, uint32_t subcategory,
                                void *context, uint32_t *handle, kvd_sd_callback_fn callback);
int32_t KVD_SD_unRegisterForEvent(uint32_t board, HBA_WWN vport, uint32_t handle);
/* The library's own SD trace on standard error: 0 off, 1 calls, 2 events too. */
int32_t kvd_sd_set_verbosity(int32_t level);
/* Prints the library's subscriptions on standard output. */
int32_t kvd_sd_show_events(void);

/* Latency buckets, one definition for the library; base and step in ticks. */
int32_t KVD_SD_Set_Bucket(uint32_t board, uint16_t search_type, uint32_t base, uint32_t step);
int32_t KVD_SD_Get_Bucket(uint32_t board, uint16_t *search_type, uint32_t *base, uint32_t *step,
                          int64_t *bounds);
int32_t KVD_SD_Destroy_Bucket(uint32_t board);
/* Nanoseconds per tick. */
uint32_t KVD_SD_Get_Granularity(void);

/* Data collection on a port; `mode` 1 collects per target. */
int32_t KVD_SD_Start_Data_Collection(uint32_t board, HBA_WWN vport, uint32_t mode, uint32_t flags);
int32_t KVD_SD_Stop_Data_Collection(uint32_t board, HBA_WWN vport, uint32_t mode);
int32_t KVD_SD_Reset_Data_Collection(uint32_t board, HBA_WWN vport, uint32_t mode);
/* Fills `buffer` with one response per target; MORE DATA AVAILABLE with the
 * number of targets in `count` when `size` holds fewer. */
int32_t KVD_SD_Get_Data(uint32_t board, HBA_WWN vport, uint32_t mode, uint16_t *count, uint32_t size,
                        void *buffer);

#ifdef __cplusplus
}
#endif

#endif
