// Latency buckets and data collection: the bucket definition (which the
// bucket commands always make on board 1), the collection on the current
// board, the per-target counts, and sd_latency, a whole timed measurement
// with periodic snapshots.
#include <stddef.h>
#include <stdlib.h>
#include <string.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include "kvd_sd_cmds.h"

#define SD_BUCKET_BOARD 1   /* the bucket calls always name board 1 */
#define SD_COLLECT_MODE 1   /* per-target collection */
#define SD_DATA_BUFSIZE 800 /* the first try: room for 9 targets */
#define SD_FCPMAP_SIZE 79872
#define SD_FCPMAP_ROOM 256

static const char *sd_search_word(uint16_t type)
{
    return type == SD_SEARCH_LINEAR ? "linear" : "power2";
}

static void sd_print_bounds(const int64_t *bounds)
{
    for (int i = 0; i < KVD_SD_BUCKETS; i++)
        printf("%lld ", (long long)bounds[i]);
    printf("\n");
}

static void sd_set_bucket_usage(void)
{
    printf("Usage: sd_set_bucket <linear|power2> <base> <step>\n");
    printf("   set base and step to zero to use defaults\n");
}

KVD_HANDLER(sd_set_bucket)
{
    uint16_t type;
    long base, step;
    const char *text;

    (void)row;
    (void)arg;
    if (margc != 4) {
        sd_set_bucket_usage();
        return KVD_USAGE;
    }
    if (strncmp(margv[1], "linear", 6) == 0) {
        type = SD_SEARCH_LINEAR;
    } else if (strncmp(margv[1], "power2", 6) == 0) {
        type = SD_SEARCH_POWER2;
    } else {
        sd_set_bucket_usage();
        return KVD_USAGE;
    }
    base = strtol(margv[2], NULL, 0);
    step = strtol(margv[3], NULL, 0);
    if (base == 0 && step == 0)
        base = step = (long)KVD_SD_Get_Granularity();
    decode_sd_status(KVD_SD_Set_Bucket(SD_BUCKET_BOARD, type, (uint32_t)base, (uint32_t)step), &text);
    printf("KVD_SD_Set_Bucket returned - %s \n", text);
    return KVD_OK;
}

KVD_HANDLER(sd_get_bucket)
{
    uint16_t type = 0;
    uint32_t base = 0, step = 0;
    int64_t bounds[KVD_SD_BUCKETS];
    const char *text;
    int32_t rc;

    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: sd_get_bucket \n");
        return KVD_USAGE;
    }
    memset(bounds, 0, sizeof(bounds));
    rc = KVD_SD_Get_Bucket(SD_BUCKET_BOARD, &type, &base, &step, bounds);
    decode_sd_status(rc, &text);
    printf("KVD_SD_Get_Bucket returned - %s \n", text);
    if (rc == 0) {
        printf("Search type : %s base %d step %d \n", sd_search_word(type), (int)base, (int)step);
        sd_print_bounds(bounds);
    }
    return KVD_OK;
}

KVD_HANDLER(sd_free_bucket)
{
    const char *text;

    (void)row;
    (void)arg;
    if (margc >= 2) {
        printf("Usage: sd_free_bucket\n");
        return KVD_USAGE;
    }
    decode_sd_status(KVD_SD_Destroy_Bucket(SD_BUCKET_BOARD), &text);
    printf("KVD_SD_Destroy_Bucket returned - %s \n", text);
    return KVD_OK;
}

KVD_HANDLER(sd_granularity)
{
    (void)row;
    (void)arg;
    if (margc != 1) {
        printf("Usage: sd_granularity (no arguments)\n");
        return KVD_USAGE;
    }
    printf("Nanoseconds per clock tick: %d\n", (int)KVD_SD_Get_Granularity());
    return KVD_OK;
}

// The optional vport WWN of the collection and data commands: zero unless
// a second word is given, which must parse.
static int sd_vport_arg(HBA_WWN *vport, const char *usage)
{
    memset(vport, 0, sizeof(*vport));
    if (margc >= 3 || (margc == 2 && !kvd_atowwn(vport, margv[1]))) {
        printf("%s\n", usage);
        return 0;
    }
    return 1;
}

KVD_HANDLER(sd_start_data_coll)
{
    HBA_WWN vport;
    const char *text;

    (void)row;
    (void)arg;
    if (!sd_vport_arg(&vport, "Usage: sd_start_data [vport wwn]"))
        return KVD_USAGE;
    decode_sd_status(KVD_SD_Start_Data_Collection((uint32_t)cur_board, vport, SD_COLLECT_MODE, 0), &text);
    printf("KVD_SD_Start_Data_Collection returned - %s \n", text);
    return KVD_OK;
}

KVD_HANDLER(sd_stop_data_coll)
{
    HBA_WWN vport;
    const char *text;

    (void)row;
    (void)arg;
    if (!sd_vport_arg(&vport, "Usage: sd_stop_data [vport wwn]"))
        return KVD_USAGE;
    decode_sd_status(KVD_SD_Stop_Data_Collection((uint32_t)cur_board, vport, SD_COLLECT_MODE), &text);
    printf("KVD_SD_Stop_Data_Collection returned - %s \n", text);
    return KVD_OK;
}

KVD_HANDLER(sd_reset_data_coll)
{
    HBA_WWN vport;
    const char *text;

    (void)row;
    (void)arg;
    if (!sd_vport_arg(&vport, "Usage: sd_reset_data [vport wwn]"))
        return KVD_USAGE;
    decode_sd_status(KVD_SD_Reset_Data_Collection((uint32_t)cur_board, vport, SD_COLLECT_MODE), &text);
    printf("KVD_SD_Reset_Data_Collection returned - %s \n", text);
    return KVD_OK;
}

// Reads the per-target counts of the current board and prints them; the
// two callers differ in the count format and two messages.
static void sd_read_data(HBA_WWN vport, int wide, const char *no_memory, const char *no_buckets)
{
    uint8_t first[SD_DATA_BUFSIZE];
    uint8_t *buf = first, *grown = NULL;
    uint32_t size = sizeof(first);
    uint16_t count = 0;
    int32_t rc;
    const char *text;
    char wwn[24];
    struct timeval tv;
    struct tm tm;

    memset(first, 0, sizeof(first));
    rc = KVD_SD_Get_Data((uint32_t)cur_board, vport, SD_COLLECT_MODE, &count, size, buf);
    if (rc == SD_ERROR_MORE_DATA_AVAILABLE) {
        size = (uint32_t)count * sizeof(SD_IO_Latency_Response);
        grown = (uint8_t *)calloc(1, size ? size : 1);
        if (grown == NULL) {
            printf("%s\n", no_memory);
            return;
        }
        buf = grown;
        rc = KVD_SD_Get_Data((uint32_t)cur_board, vport, SD_COLLECT_MODE, &count, size, buf);
    }
    decode_sd_status(rc, &text);
    printf("KVD_SD_Get_Data returned - %s \n", text);
    if (rc == 0) {
        if (count == 0) {
            printf("%s", no_buckets);
        } else {
            // Never more targets than the buffer holds, whatever the count says.
            uint32_t shown = count < size / sizeof(SD_IO_Latency_Response)
                                 ? count
                                 : (uint32_t)(size / sizeof(SD_IO_Latency_Response));
            printf("Target count %d\n", (int)count);
            gettimeofday(&tv, NULL);
            localtime_r(&tv.tv_sec, &tm);
            for (uint32_t t = 0; t < shown; t++) {
                SD_IO_Latency_Response r;
                memcpy(&r, buf + t * sizeof(r), sizeof(r));
                kvd_mac_sprintf(r.sd_iolatency_target_wwpn.wwn, wwn);
                printf("WWPN:%s\n", wwn);
                printf("%02d:%02d:%02d ", tm.tm_hour, tm.tm_min, tm.tm_sec);
                for (int i = 0; i < KVD_SD_BUCKETS; i++)
                    printf(wide ? "%10ld " : "%ld ", (long)r.sd_time_stats_array[i].sd_tstats_bucket_count);
                printf("\n");
            }
        }
    }
    free(grown);
}

KVD_HANDLER(sd_get_data)
{
    HBA_WWN vport;

    (void)row;
    (void)arg;
    if (!sd_vport_arg(&vport, "Usage: sd_get_data [vport wwn]"))
        return KVD_USAGE;
    sd_read_data(vport, 0, "Failed to allocate memory ", "No buckets found ");
    return KVD_OK;
}

void dump_io_latency(uint32_t board, HBA_WWN vport)
{
    (void)board; // the counts are read for the current board
    sd_read_data(vport, 1, "Failed to allocate memory", "No buckets found");
}

int32_t sd_fcpmap(void)
{
    uint8_t *buf = (uint8_t *)calloc(1, SD_FCPMAP_SIZE);
    uint32_t count = SD_FCPMAP_ROOM, shown;
    char portname[24], nodename[24], drvname[33];

    if (buf == NULL)
        return kvd_cannot_issue();
    memcpy(buf, &count, sizeof(count));
    if (GetFcpTargetMapping((uint32_t)cur_board, (HBA_FCPTARGETMAPPING *)(void *)buf) != 0) {
        free(buf);
        return kvd_cannot_issue();
    }
    memcpy(&count, buf, sizeof(count));
    printf("FCPMAP entries on this board: %d\n", (int)count);
    shown = count < SD_FCPMAP_ROOM ? count : SD_FCPMAP_ROOM;
    for (uint32_t i = 0; i < shown; i++) {
        HBA_FCPSCSIENTRY e;
        HBA_OSDN osdn;
        memcpy(&e, buf + offsetof(HBA_FCPTARGETMAPPING, entry) + i * sizeof(e), sizeof(e));
        kvd_mac_sprintf(e.FcpId.PortWWN.wwn, portname);
        kvd_mac_sprintf(e.FcpId.NodeWWN.wwn, nodename);
        printf("Portname:%s  Nodename:%s Fcid 0x%x FcpLun 0x%lx\n", portname, nodename, e.FcpId.FcId,
               (unsigned long)e.FcpId.FcpLun);
        printf("Bus 0x%x Tgt 0x%x Lun 0x%x ", e.ScsiId.ScsiBusNumber, e.ScsiId.ScsiTargetNumber,
               e.ScsiId.ScsiOSLun);
        if (e.ScsiId.OSDeviceName[0] != 0) {
            // The words at bytes 32, 36 and 40 of the device name field.
            memcpy(&osdn, e.ScsiId.OSDeviceName, sizeof(osdn));
            printf("DeviceName %s:%d:%d:%d\n", KVD_FIELDTEXT(drvname, osdn.drvname), (int)osdn.instance,
                   (int)osdn.target, (int)osdn.lun);
        } else {
            printf("\n");
        }
    }
    free(buf);
    return (int32_t)count;
}

static void sd_latency_usage(void)
{
    printf(
        "Usage: sd_latency [board id] [vport wwn]\n[base] [step] [linear/power2] [cumulative/reset]\n"
        "[runTimeSeconds] [snapshotSeconds]\nvport wwn may be zero to use the physical port\nbase and step "
        "are mulitpliers of the granularity\nzero base and step will use the default granularity\nlinear "
        "= 1, power2 = 2\ncumulative = 0, reset = 1\nminimum runTimeSeconds is 3\nminimum snapshotSeconds "
        "is 2\nsnapshotSeconds must be less than runTimeSeconds\nminimum seconds is 2\n");
}

static int32_t sd_latency_refuse(const char *why)
{
    sd_latency_usage();
    printf("%s\n", why);
    return KVD_USAGE;
}

KVD_HANDLER(sd_latency)
{
    HBA_WWN vport;
    uint32_t board, granularity, base, step, bstep = 0, bbase = 0;
    long base_mult, step_mult, type, mode, run_time, snap_time, snapshots;
    uint16_t got_type = 0;
    int64_t bounds[KVD_SD_BUCKETS];
    char wwn[24];
    const char *text;
    int32_t rc;

    (void)row;
    (void)arg;
    if (margc != 9) {
        sd_latency_usage();
        return KVD_USAGE;
    }
    board = (uint32_t)strtoul(margv[1], NULL, 0);
    cur_board = (int32_t)board;
    memset(&vport, 0, sizeof(vport));
    if (!kvd_atowwn(&vport, margv[2]))
        return sd_latency_refuse("Could not convert the wwn");
    base_mult = strtol(margv[3], NULL, 0);
    step_mult = strtol(margv[4], NULL, 0);
    type = strtol(margv[5], NULL, 0);
    mode = strtol(margv[6], NULL, 0);
    run_time = strtol(margv[7], NULL, 0);
    snap_time = strtol(margv[8], NULL, 0);
    if (base_mult < 0)
        return sd_latency_refuse("Invalid base multiplier");
    if (step_mult < 0)
        return sd_latency_refuse("Invalid step multiplier");
    if (type != SD_SEARCH_LINEAR && type != SD_SEARCH_POWER2)
        return sd_latency_refuse("Invalid linear or power2 value");
    if (mode != 0 && mode != 1)
        return sd_latency_refuse("Invalid cumulative or reset value");
    if (run_time < 3)
        return sd_latency_refuse("runTimeSeconds less than 3");
    if (snap_time < 2)
        return sd_latency_refuse("snapshotSeconds less than 2");
    if (snap_time >= run_time)
        return sd_latency_refuse("snapshotSeconds not less than runTimeSeconds");

    granularity = KVD_SD_Get_Granularity();
    base = (type == SD_SEARCH_LINEAR && base_mult == 0) ? granularity : (uint32_t)base_mult * granularity;
    step = (uint32_t)step_mult * granularity;
    snapshots = run_time / snap_time;
    kvd_mac_sprintf(vport.wwn, wwn);
    printf("board id        %d\n", (int)board);
    printf("wwpn            %s\n", wwn);
    printf("granularity     %d\n", (int)granularity);
    printf("base            %d\n", (int)base);
    printf("step            %d\n", (int)step);
    printf("search_type     %s\n", sd_search_word((uint16_t)type));
    printf("runTimeSeconds  %d\n", (int)run_time);
    printf("snapshotSeconds %d\n", (int)snap_time);
    printf("snapshots       %d\n", (int)snapshots);
    printf("%s\n", mode == 1 ? "reset buckets between snapshots" : "cumulative bucket collection");

    if (sd_fcpmap() <= 0) {
        printf("%s - no nodes for IO\n", "sd_latency");
        return KVD_FAIL;
    }
    rc = KVD_SD_Set_Bucket(SD_BUCKET_BOARD, (uint16_t)type, base, step);
    decode_sd_status(rc, &text);
    printf("KVD_SD_Set_Bucket returned - %s\n", text);
    if (rc != 0)
        return KVD_FAIL;
    memset(bounds, 0, sizeof(bounds));
    rc = KVD_SD_Get_Bucket(SD_BUCKET_BOARD, &got_type, &bbase, &bstep, bounds);
    decode_sd_status(rc, &text);
    printf("KVD_SD_Get_Bucket returned - %s\n", text);
    if (rc != 0)
        return KVD_FAIL;
    printf("Search type : %s base %d step %d \n", sd_search_word((uint16_t)type), (int)base, (int)step);
    sd_print_bounds(bounds);

    rc = KVD_SD_Start_Data_Collection(board, vport, SD_COLLECT_MODE, 0);
    decode_sd_status(rc, &text);
    printf("KVD_SD_Start_Data_Collection returned - %s\n", text);
    if (rc != 0)
        return KVD_FAIL;
    printf("Snapshots %d - collecting data every %d seconds for %d seconds.\n", (int)snapshots,
           (int)snap_time, (int)run_time);
    for (long s = 0; s < snapshots; s++) {
        if (mode == 1) {
            rc = KVD_SD_Reset_Data_Collection(board, vport, SD_COLLECT_MODE);
            if (rc != 0) {
                decode_sd_status(rc, &text);
                printf("KVD_SD_Reset_Data_Collection returned - %s\n", text);
                break;
            }
        }
        fflush(stdout);
        sleep((unsigned)snap_time);
        dump_io_latency(board, vport);
    }
    rc = KVD_SD_Stop_Data_Collection(board, vport, SD_COLLECT_MODE) != 0;
    decode_sd_status(rc, &text);
    printf("KVD_SD_Start_Data_Collection returned - %s\n", text);
    if (rc != 0)
        return KVD_FAIL;
    rc = KVD_SD_Destroy_Bucket(SD_BUCKET_BOARD);
    decode_sd_status(rc, &text);
    printf("KVD_SD_Destroy_Bucket returned - %s\n", text);
    return rc == 0 ? KVD_OK : KVD_FAIL;
}
