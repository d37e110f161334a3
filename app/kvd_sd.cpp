// Statistics and diagnostic (SD) events: the callback the library calls for
// every subscribed event, the decoders of statuses and categories, and the
// subscription commands.
//
// EventCallBack runs on the library's thread. It writes only hit_count
// (relaxed atomic increments: the library may deliver from more than one
// thread) and standard output, under standard output's lock so that one
// event's line stays whole. The decoders' static texts are per thread, so
// the callback and a command never format into the same buffer.
#include <stdlib.h>
#include <string.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include "kvd_sd_cmds.h"

int32_t hit_count[KVD_SD_KINDS];
int32_t callback_verbose_level;

typedef struct sd_kind {
    uint32_t category;
    const char *category_name;
    uint32_t subcategory;
    const char *subcategory_name;
    const char *help;
    const char *context;
} sd_kind;

// Index i is the kind's place in hit_count and in the handle arrays.
static const sd_kind sd_kinds[KVD_SD_KINDS] = {
    {0x1, "ELS", 0x1, "PLOGI", "PLOGI", "ELS CONTEXT"},
    {0x1, "ELS", 0x2, "PRLO", "PRLO", "ELS CONTEXT"},
    {0x1, "ELS", 0x4, "ADISC", "ADISC", "ELS CONTEXT"},
    {0x1, "ELS", 0x8, "LSRJT", "LSRJT", "ELS CONTEXT"},
    {0x1, "ELS", 0x10, "LOGO", "LOGO", "ELS CONTEXT"},
    {0x2, "FABRIC", 0x1, "FABRIC BUSY", "FABRIC", "FABRIC CONTEXT"},
    {0x2, "FABRIC", 0x2, "PORT BUSY", "PORT", "FABRIC CONTEXT"},
    {0x2, "FABRIC", 0x4, "FCPRDCHKERR", "FCPRD", "FABRIC CONTEXT"},
    {0x4, "SCSI", 0x1, "QFULL", "QFULL", "SCSI CONTEXT"},
    {0x4, "SCSI", 0x2, "DEVBSY", "DEVBSY", "SCSI CONTEXT"},
    {0x4, "SCSI", 0x4, "CHECK", "CHECK", "SCSI CONTEXT"},
    {0x4, "SCSI", 0x8, "LUNRESET", "LUNRST", "SCSI CONTEXT"},
    {0x4, "SCSI", 0x10, "TGTRESET", "TGTRST", "SCSI CONTEXT"},
    {0x4, "SCSI", 0x20, "BUSRESET", "BUSRST", "SCSI CONTEXT"},
    {0x4, "SCSI", 0x40, "VARQUEDEPTH", "VARQUE", "SCSI CONTEXT"},
    {0x8, "BOARD", 0x1, "PORTINTERR", "PORT", "BOARD CONTEXT"},
    {0x10, "ADAPTER", 0x1, "ARRIVAL", "ARR", "ADAPTER CONTEXT"},
};

static const char *sd_status_texts[] = {
    "OK",
    "GENERIC",
    "INVALID ARGUMENT",
    "INVALID BOARD ID",
    "INVALID PORT",
    "NOT SUPPORTED",
    "CATEGORY NOT SUPPORTED",
    "SUBCATEGORY NOT SUPPORTED",
    "MORE DATA AVAILABLE",
    "ALREADY REGISTERED",
    "NO ACTIVE REGISTRATION",
    "ARGUMENT MISSING",
    "NO MEMORY",
    "BUCKET NOT SET",
    "REG HANDLE",
    "INVALID SEARCH TYPE",
    "FUNCTION NOT SUPPORTED",
    "OUT OF HANDLES",
    "LIBRARY NOT INITIALIZED",
    "DATA COLLECTION ACTIVE",
    "DATA COLLECTION NOT ACTIVE",
};

#define SD_STATUS_COUNT ((int32_t)(sizeof(sd_status_texts) / sizeof(sd_status_texts[0])))

int decode_sd_status(int32_t status, const char **text)
{
    static thread_local char unknown[32];

    snprintf(unknown, sizeof(unknown), "x%x UNKNOWN", (unsigned)status);
    *text = unknown;
    if (status < 0 || status >= SD_STATUS_COUNT)
        return 0;
    *text = sd_status_texts[status];
    return 1;
}

int decode_sd_category(uint32_t category, uint32_t subcategory, const char **category_text,
                       const char **subcategory_text, int32_t *index)
{
    static thread_local char cat_unknown[32];
    static thread_local char sub_unknown[32];
    const char *known_category = NULL;

    // The "NOT SUPPORTED" texts are formatted only when needed: the
    // callback decodes every event, and a known pair is the common case.
    for (int32_t i = 0; i < KVD_SD_KINDS; i++) {
        if (sd_kinds[i].category != category)
            continue;
        known_category = sd_kinds[i].category_name;
        if (sd_kinds[i].subcategory == subcategory) {
            *category_text = known_category;
            *subcategory_text = sd_kinds[i].subcategory_name;
            *index = i;
            return 1;
        }
    }
    snprintf(sub_unknown, sizeof(sub_unknown), "x%x NOT SUPPORTED", subcategory);
    *subcategory_text = sub_unknown;
    if (known_category != NULL) {
        *category_text = known_category;
    } else {
        snprintf(cat_unknown, sizeof(cat_unknown), "x%x NOT SUPPORTED", category);
        *category_text = cat_unknown;
    }
    return 0;
}

void sd_help_category(void)
{
    printf("Supported category+subcategory hex codes\n");
    for (int32_t i = 0; i < KVD_SD_KINDS; i++) {
        if (i == 0 || sd_kinds[i].category != sd_kinds[i - 1].category)
            printf("%s\t0x%x\n", sd_kinds[i].category_name, sd_kinds[i].category);
        printf("\t%s\t0x%x\n", sd_kinds[i].help, sd_kinds[i].subcategory);
    }
}

void dump_hit_count(uint32_t board)
{
    static const char *groups[KVD_SD_KINDS] = {"ELS",  "ELS",  "ELS",  "ELS",  "ELS",  "FAB",
                                               "FAB",  "FAB",  "SCSI", "SCSI", "SCSI", "SCSI",
                                               "SCSI", "SCSI", "SCSI", "BRD",  "ADP"};
    static const char *labels[KVD_SD_KINDS] = {"PLO",  "PRI",  "ADS",  "LSR",  "LOGO", "FAB",
                                               "PORT", "FCPR", "QFLL", "DEVB", "CHKC", "LUNR",
                                               "TGTR", "BUSR", "VARQ", "PORT", "ARR"};

    printf("Event counts for board id: %d\n", (int)board);
    for (int i = 0; i < KVD_SD_KINDS; i++)
        printf("%-11s", groups[i]);
    printf("\n");
    for (int i = 0; i < KVD_SD_KINDS; i++)
        printf("%-11s", labels[i]);
    printf("\n");
    for (int i = 0; i < KVD_SD_KINDS; i++)
        printf("%10ld ", (long)__atomic_load_n(&hit_count[i], __ATOMIC_RELAXED));
    printf("\n");
}

int32_t register_all_sd_events(uint32_t board, HBA_WWN vport, uint32_t *handles)
{
    int32_t sum = 0;

    for (int i = 0; i < KVD_SD_KINDS; i++)
        sum += KVD_SD_RegisterForEvent(board, vport, sd_kinds[i].category, sd_kinds[i].subcategory,
                                       (void *)sd_kinds[i].context, &handles[i], EventCallBack);
    return sum;
}

// ---------------------------------------------------------------------------
// The callback

// The event record behind the event's details record, at most `size` bytes
// of it and no more than the event says it has; the rest reads as zero.
static void sd_event_record(const SD_event *event, void *record, size_t size)
{
    SD_event ev;
    SD_els_event_details_v0 details;

    memset(record, 0, size);
    if (event == NULL)
        return;
    memcpy(&ev, event, sizeof(ev));
    if (ev.sd_evt_payload == NULL)
        return;
    memcpy(&details, ev.sd_evt_payload, sizeof(details));
    if (details.sd_elsevt_payload == NULL)
        return;
    memcpy(record, details.sd_elsevt_payload, ev.sd_evt_size < size ? ev.sd_evt_size : size);
}

#define SD_WWN_FMT "%02x:%02x:%02x:%02x:%02x:%02x:%02x:%02x"
#define SD_WWN_ARGS(w)                                                                                       \
    (w).wwn[0], (w).wwn[1], (w).wwn[2], (w).wwn[3], (w).wwn[4], (w).wwn[5], (w).wwn[6], (w).wwn[7]

static void sd_print_els(uint32_t subcategory, SD_event *event)
{
    switch (subcategory) {
    case SD_ELS_SUBCATEGORY_PLOGI_RCV:
    case SD_ELS_SUBCATEGORY_ADISC_RCV:
    case SD_ELS_SUBCATEGORY_LOGO_RCV: {
        // The three share one shape: version, two names.
        sd_plogi_rcv_v0 r;
        sd_event_record(event, &r, sizeof(r));
        printf(subcategory == SD_ELS_SUBCATEGORY_PLOGI_RCV ? " - PLOGI_RCV port_name " SD_WWN_FMT
                                                             " node_name " SD_WWN_FMT
               : subcategory == SD_ELS_SUBCATEGORY_ADISC_RCV
                   ? " - ADISC_RCV port_name " SD_WWN_FMT " node_name " SD_WWN_FMT
                   : " - LOGO_RCV port_name " SD_WWN_FMT " node_name " SD_WWN_FMT,
               SD_WWN_ARGS(r.sd_plogir_portname), SD_WWN_ARGS(r.sd_plogir_nodename));
        break;
    }
    case SD_ELS_SUBCATEGORY_PRLO_RCV: {
        sd_prlo_rcv_v0 r;
        sd_event_record(event, &r, sizeof(r));
        printf(" - PRLO_RCV port_name " SD_WWN_FMT, SD_WWN_ARGS(r.sd_prlor_remoteport));
        break;
    }
    case SD_ELS_SUBCATEGORY_LSRJT_RCV: {
        sd_lsrjt_rcv_v0 r;
        sd_event_record(event, &r, sizeof(r));
        printf(" - LSRJT port_name " SD_WWN_FMT " cmd 0x%x reason 0x%x expl 0x%x",
               SD_WWN_ARGS(r.sd_lsrjtr_remoteport), r.sd_lsrjtr_original_cmd, r.sd_lsrjtr_reasoncode,
               r.sd_lsrjtr_reasoncodeexpl);
        break;
    }
    default:
        printf("Unhandled ELS x%x\n", subcategory);
    }
}

static void sd_print_fabric(uint32_t subcategory, SD_event *event)
{
    switch (subcategory) {
    case SD_FABRIC_SUBCATEGORY_PORT_BUSY: {
        sd_pbsy_rcv_v0 r;
        sd_event_record(event, &r, sizeof(r));
        printf(" - Port busy event port_name " SD_WWN_FMT, SD_WWN_ARGS(r.sd_pbsyr_rport));
        break;
    }
    case SD_FABRIC_SUBCATEGORY_FCPRDCHKERR: {
        sd_fcprdchkerr_v0 r;
        sd_event_record(event, &r, sizeof(r));
        printf(" - Read Check port_name " SD_WWN_FMT " lun 0x%x opcode 0x%x param 0x%x",
               SD_WWN_ARGS(r.sd_fcprdchkerr_rport), r.sd_fcprdchkerr_lun, r.sd_fcprdchkerr_opcode,
               r.sd_fcprdchkerr_fcpiparam);
        break;
    }
    case SD_FABRIC_SUBCATEGORY_FABRIC_BUSY:
        printf(" - Fabric busy event sd_event %p", (void *)event);
        break;
    default:
        printf("Unhandled FABRIC x%x\n", subcategory);
    }
}

static void sd_print_scsi(uint32_t subcategory, SD_event *event)
{
    static const char *generic[] = {" - QUEUE_FULL event", " - DEVICE_BUSY event", NULL, " - LUN_RESET event",
                                    " - TARGET_RESET event"};

    switch (subcategory) {
    case SD_SCSI_SUBCATEGORY_QFULL:
    case SD_SCSI_SUBCATEGORY_DEVBSY:
    case SD_SCSI_SUBCATEGORY_LUNRESET:
    case SD_SCSI_SUBCATEGORY_TGTRESET: {
        SD_scsi_generic_v0 r;
        int which = subcategory == SD_SCSI_SUBCATEGORY_QFULL      ? 0
                    : subcategory == SD_SCSI_SUBCATEGORY_DEVBSY   ? 1
                    : subcategory == SD_SCSI_SUBCATEGORY_LUNRESET ? 3
                                                                  : 4;
        sd_event_record(event, &r, sizeof(r));
        printf("%s port_name " SD_WWN_FMT " lun 0x%x", generic[which], SD_WWN_ARGS(r.sd_scsi_generic_rport),
               r.sd_scsi_generic_lun);
        break;
    }
    case SD_SCSI_SUBCATEGORY_CHECKCONDITION: {
        sd_scsi_checkcondition_v0 r;
        sd_event_record(event, &r, sizeof(r));
        printf(" - CHECK CONDITION port_name " SD_WWN_FMT " lun 0x%x cmd 0x%x sk 0x%x asc 0x%x ascq 0x%x",
               SD_WWN_ARGS(r.sd_checkcondition_rport), r.sd_checkcondition_lun, r.sd_checkcondition_cmdcode,
               r.sd_checkcondition_senskey, r.sd_checkcondition_asc, r.sd_checkcondition_ascq);
        break;
    }
    case SD_SCSI_SUBCATEGORY_BUSRESET:
        printf(" - BUS_RESET");
        break;
    case SD_SCSI_SUBCATEGORY_VARQUEDEPTH: {
        sd_scsi_varquedepth_v0 r;
        sd_event_record(event, &r, sizeof(r));
        printf(" - VAR QUEUE depth port_name " SD_WWN_FMT " lun 0x%x olval 0x%x new_val 0x%x",
               SD_WWN_ARGS(r.sd_varquedepth_rport), r.sd_varquedepth_lun, r.sd_varquedepth_oldval,
               r.sd_varquedepth_newval);
        break;
    }
    default:
        printf("Unhandled SCSI x%x\n", subcategory);
    }
}

static void sd_print_event(uint32_t category, uint32_t subcategory, SD_event *event)
{
    switch (category) {
    case SD_CATEGORY_ELS:
        sd_print_els(subcategory, event);
        break;
    case SD_CATEGORY_FABRIC:
        sd_print_fabric(subcategory, event);
        break;
    case SD_CATEGORY_SCSI:
        sd_print_scsi(subcategory, event);
        break;
    case SD_CATEGORY_BOARD:
        if (subcategory == SD_BOARD_SUBCATEGORY_PORTINTERR)
            printf(" - Board internal error sd_event %p", (void *)event);
        else
            printf("Unhandled BOARD x%x\n", subcategory);
        break;
    case SD_CATEGORY_ADAPTER:
        if (subcategory == SD_ADAPTER_SUBCATEGORY_ARRIVAL)
            printf("%s - Board arrival error sd_event %p\n", "EventCallBack", (void *)event);
        else
            printf("Unhandled ADAPTER x%x\n", subcategory);
        break;
    default:
        printf("Unhandled Event x%x Subcategory x%x\n", category, subcategory);
    }
}

void EventCallBack(uint32_t board, HBA_WWN port, uint32_t category, uint32_t subcategory, void *context,
                   SD_event *event)
{
    struct timeval tv;
    struct tm tm;
    const char *category_text, *subcategory_text;
    int32_t index = -1;
    int verbose = __atomic_load_n(&callback_verbose_level, __ATOMIC_RELAXED);

    (void)context;
    if (verbose) {
        // The time of day is only shown: it is not taken when nothing prints.
        gettimeofday(&tv, NULL);
        localtime_r(&tv.tv_sec, &tm);
        flockfile(stdout);
        printf("%02d:%02d:%02d board id %d - port wwn ", tm.tm_hour, tm.tm_min, tm.tm_sec, (int)board);
        for (int i = 0; i < 7; i++)
            printf("%02x:", port.wwn[i]);
        sd_print_event(category, subcategory, event);
    }
    int decoded = decode_sd_category(category, subcategory, &category_text, &subcategory_text, &index);
    if (verbose) {
        printf("\n");
        fflush(stdout);
        funlockfile(stdout);
    }
    if (decoded && index >= 0 && index < KVD_SD_KINDS)
        __atomic_fetch_add(&hit_count[index], 1, __ATOMIC_RELAXED);
}

// ---------------------------------------------------------------------------
// Commands

static void sd_zero_counts(void)
{
    for (int i = 0; i < KVD_SD_KINDS; i++)
        __atomic_store_n(&hit_count[i], 0, __ATOMIC_RELAXED);
}

static void sd_all_events_usage(void)
{
    printf("Usage: sd_all_events [board id] [vport wwn] [seconds to wait] viewCallback\nminimum seconds is "
           "1\nviewCallback: 0 = no, 1 = yes\n");
}

KVD_HANDLER(sd_all_events)
{
    HBA_WWN vport;
    uint32_t handles[KVD_SD_KINDS];
    uint32_t board;
    long seconds = 0, view = 0;
    int32_t saved = __atomic_load_n(&callback_verbose_level, __ATOMIC_RELAXED);
    const char *text;

    (void)row;
    (void)arg;
    if (margc < 3 || margc > 5) {
        sd_all_events_usage();
        return KVD_USAGE;
    }
    board = (uint32_t)strtoul(margv[1], NULL, 0);
    cur_board = (int32_t)board;
    memset(&vport, 0, sizeof(vport));
    if (!kvd_atowwn(&vport, margv[2])) {
        sd_all_events_usage();
        printf("Could not convert the vport wwn\n");
        return KVD_USAGE;
    }
    if (margc >= 4) {
        seconds = strtol(margv[3], NULL, 0);
        if (seconds < 1) {
            sd_all_events_usage();
            printf("seconds must be greater than zero\n");
            return KVD_USAGE;
        }
    }
    if (margc == 5) {
        view = strtol(margv[4], NULL, 0);
        if (view != 0 && view != 1) {
            sd_all_events_usage();
            printf("viewCallback must be 0 or 1\n");
            return KVD_USAGE;
        }
    }
    sd_zero_counts();
    memset(handles, 0, sizeof(handles));
    if (register_all_sd_events(board, vport, handles) == 0) {
        sd_fcpmap();
        __atomic_store_n(&callback_verbose_level, (int32_t)view, __ATOMIC_RELAXED);
        if (seconds != 0) {
            printf("%s - Stopping after %d seconds\n", "sd_all_events", (int)seconds);
            fflush(stdout);
            sleep((unsigned)seconds);
        } else {
            printf("Press Enter key to exit .. \n");
            fflush(stdout);
            (void)getchar();
        }
    } else {
        printf("%s - some error occured during registration\n", "sd_all_events");
    }
    for (int i = 0; i < KVD_SD_KINDS; i++) {
        int32_t rc = KVD_SD_unRegisterForEvent(board, vport, handles[i]);
        if (rc != 0) {
            decode_sd_status(rc, &text);
            printf("%s - Error unregistering for event %d\n", "sd_all_events", i);
            printf("KVD_SD_unRegisterForEvent() - %s\n", text);
        }
    }
    __atomic_store_n(&callback_verbose_level, saved, __ATOMIC_RELAXED);
    dump_hit_count(board);
    return KVD_OK;
}

KVD_HANDLER(sd_quick_event)
{
    HBA_WWN vport;
    uint32_t board, category, subcategory, handle = 0;
    long seconds;
    const char *category_text, *subcategory_text, *text;
    int32_t index, rc;

    (void)row;
    (void)arg;
    if (margc != 6) {
        printf("Usage: sd_quick_event [board id] [vport wwn] [category] [subcategory] [seconds]\n");
        sd_help_category();
        return KVD_USAGE;
    }
    board = (uint32_t)strtoul(margv[1], NULL, 0);
    sd_zero_counts();
    memset(&vport, 0, sizeof(vport));
    if (!kvd_atowwn(&vport, margv[2])) {
        printf("Usage: sd_quick_event [board id] [vport wwn] [category] [subcategory] [seconds]\n");
        printf("Could not convert the wwn\n");
        return KVD_USAGE;
    }
    category = (uint32_t)strtoul(margv[3], NULL, 0);
    subcategory = (uint32_t)strtoul(margv[4], NULL, 0);
    seconds = strtol(margv[5], NULL, 0);
    if (seconds < 1)
        seconds = 1;
    decode_sd_category(category, subcategory, &category_text, &subcategory_text, &index);
    printf("%s - category %s  subcategory %s\n", "sd_quick_event", category_text, subcategory_text);
    rc = KVD_SD_RegisterForEvent(board, vport, category, subcategory, (void *)"KVD SD Quick Event", &handle,
                                 EventCallBack);
    if (rc != 0) {
        decode_sd_status(rc, &text);
        printf("%s - Error %s occured during registration\n", "sd_quick_event", text);
        return KVD_FAIL;
    }
    printf("%s - Stopping after %d secondsn", "sd_quick_event", (int)seconds);
    fflush(stdout);
    sleep((unsigned)seconds);
    rc = KVD_SD_unRegisterForEvent(board, vport, handle);
    if (rc != 0) {
        decode_sd_status(rc, &text);
        printf("%s - Error %s unregistering for event\n", "sd_quick_event", text);
        return KVD_FAIL;
    }
    dump_hit_count(board);
    return KVD_OK;
}

KVD_HANDLER(sd_revent)
{
    HBA_WWN vport;
    uint32_t board, category, subcategory, handle = 0;
    const char *category_text, *subcategory_text, *text;
    int32_t index, rc;

    (void)row;
    (void)arg;
    if (margc != 5) {
        printf("Usage: sd_revent [board id] [vport wwn] [category] [subcategory]\n");
        sd_help_category();
        return KVD_USAGE;
    }
    board = (uint32_t)strtoul(margv[1], NULL, 0);
    memset(&vport, 0, sizeof(vport));
    if (!kvd_atowwn(&vport, margv[2])) {
        printf("Usage: sd_revent [board id] [vport wwn] [category] [subcategory]\n");
        printf("Could not convert the wwn\n");
        return KVD_USAGE;
    }
    category = (uint32_t)strtoul(margv[3], NULL, 0);
    subcategory = (uint32_t)strtoul(margv[4], NULL, 0);
    decode_sd_category(category, subcategory, &category_text, &subcategory_text, &index);
    printf("category %s  subcategory %s\n", category_text, subcategory_text);
    rc = KVD_SD_RegisterForEvent(board, vport, category, subcategory, (void *)"KVD SD Register Event",
                                 &handle, EventCallBack);
    if (rc != 0) {
        decode_sd_status(rc, &text);
        printf("%s - Error %s occured during registration\n", "sd_revent", text);
        return KVD_FAIL;
    }
    printf("New handle %d created, required for deregister\n", (int)handle);
    return KVD_OK;
}

KVD_HANDLER(sd_urevent)
{
    HBA_WWN vport;
    uint32_t board, handle;
    const char *text;
    int32_t rc;

    (void)row;
    (void)arg;
    if (margc != 4) {
        printf("Usage: sd_urevent [board id] [vport wwn] [reg_handle]\n");
        return KVD_USAGE;
    }
    board = (uint32_t)strtoul(margv[1], NULL, 0);
    memset(&vport, 0, sizeof(vport));
    if (!kvd_atowwn(&vport, margv[2])) {
        printf("Usage: sd_urevent [board id] [vport wwn] [reg_handle]\n");
        printf("Could not convert the wwn\n");
        return KVD_USAGE;
    }
    handle = (uint32_t)strtoul(margv[3], NULL, 0);
    rc = KVD_SD_unRegisterForEvent(board, vport, handle);
    if (rc != 0) {
        decode_sd_status(rc, &text);
        printf("%s - Error %s unregistering for event\n", "sd_urevent", text);
    }
    return KVD_OK;
}

static void sd_verbose_levels(void)
{
    printf("       0 - off\n");
    printf("       1 - function\n");
    printf("       2 - all\n");
}

KVD_HANDLER(sd_verbose)
{
    const char *text;
    int32_t level, rc;

    (void)row;
    (void)arg;
    if (margc != 2) {
        printf("Usage: sd_verbose [verbosity]\n");
        sd_verbose_levels();
        return KVD_USAGE;
    }
    level = (int32_t)strtol(margv[1], NULL, 0);
    rc = kvd_sd_set_verbosity(level);
    if (rc != 0) {
        decode_sd_status(rc, &text);
        printf("%s - Error %s setting verbosty to %d\n", "sd_verbose", text, (int)level);
        sd_verbose_levels();
    }
    return KVD_OK;
}

KVD_HANDLER(sd_show_events)
{
    const char *text;
    int32_t rc;

    (void)row;
    (void)arg;
    fflush(stdout);
    rc = kvd_sd_show_events();
    if (rc != 0) {
        decode_sd_status(rc, &text);
        printf("%s - Error %s showing events\n", "sd_show_events", text);
    }
    return KVD_OK;
}

KVD_HANDLER(sd_test_env)
{
    static BRDINFO legacy[KVD_MAX_BOARDS];
    const char *text;
    uint32_t legacy_count;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: sd_test_env \n");
        return KVD_USAGE;
    }
    for (uint32_t b = 0; b < kvd_pci_brds; b++)
        (void)unRegisterForEvent(b, 0);
    KVD_FreeDiagEnv();
    decode_sd_status(KVD_SD_Set_Bucket(1, SD_SEARCH_LINEAR, 0, 0), &text);
    printf("KVD_SD_Set_Bucket returned - %s \n", text);
    memset(legacy, 0, sizeof(legacy));
    legacy_count = InitDiagEnv(legacy);
    KVD_FreeDiagEnv();
    kvd_pci_brds = KVD_InitDiagEnv(kvd_un.brdaddr, KVD_MAX_BOARDS);
    printf("legacy InitDiagEnv found %d boards : KVD_InitDiagEnv found %d\n", (int)legacy_count,
           (int)kvd_pci_brds);
    return KVD_OK;
}
