// The fuzz library: every board-access operation the shell calls, answering
// from the reply stream. A call fills exactly the records the caller hands
// over (sizes from the record types or from the lengths the caller passes),
// and every count or length it hands back is taken from the stream
// unbounded, as a faulty library might return it: bounding those is the
// shell's job.
#include <errno.h>
#include <stddef.h>
#include <string.h>
#include <time.h>

#include "libkvd.h"
#include "kvdfuzz.h"

using kvdfuzz::stream_fill;
using kvdfuzz::stream_status;
using kvdfuzz::stream_u32;

namespace
{

template <typename T> uint32_t reply(T *record)
{
    uint32_t status = stream_status();
    if (record != nullptr)
        stream_fill(record, sizeof(*record));
    return status;
}

// A reply of at most *size bytes into buf; *size comes back from the stream.
uint32_t reply_sized(void *buf, uint32_t *size)
{
    uint32_t status = stream_status();
    if (buf != nullptr && size != nullptr)
        stream_fill(buf, *size);
    if (size != nullptr)
        *size = stream_u32();
    return status;
}

uint32_t reply_bytes(void *buf, size_t size)
{
    uint32_t status = stream_status();
    if (buf != nullptr)
        stream_fill(buf, size);
    return status;
}

} // namespace

extern "C" {

uint32_t libkvd_logging_enable;

uint32_t KVD_InitDiagEnv(KVD_BRDINFO *brdinfo, uint32_t max_boards)
{
    // The first entry from the stream, the others zero; the count may run
    // past the table.
    uint8_t count;
    if (brdinfo != nullptr && max_boards != 0) {
        memset(brdinfo, 0, sizeof(*brdinfo) * max_boards);
        stream_fill(brdinfo, sizeof(*brdinfo));
    }
    stream_fill(&count, 1);
    return count;
}
uint32_t InitDiagEnv(BRDINFO *brdinfo)
{
    uint8_t count;
    if (brdinfo != nullptr)
        stream_fill(brdinfo, sizeof(*brdinfo) * KVD_MAX_BOARDS);
    stream_fill(&count, 1);
    return count;
}
void KVD_FreeDiagEnv(void)
{
}
uint32_t KVD_GetLibVer(char *version)
{
    return reply_bytes(version, 32);
}
uint32_t unRegisterForEvent(uint32_t, uint32_t)
{
    return stream_status();
}

HBA_STATUS GetAdapterAttributes(uint32_t, HBA_ADAPTERATTRIBUTES *attributes)
{
    return reply(attributes);
}
HBA_STATUS GetAdapterPortAttributes(uint32_t, uint32_t, HBA_PORTATTRIBUTES *attributes)
{
    return reply(attributes);
}
HBA_STATUS GetPortAttributesByIndex(uint32_t, uint32_t, uint32_t, HBA_PORTATTRIBUTES *attributes)
{
    return reply(attributes);
}
HBA_STATUS GetDiscoveredPortAttributes(uint32_t, uint32_t, uint32_t, HBA_PORTATTRIBUTES *attributes)
{
    return reply(attributes);
}
HBA_STATUS GetPortAttributesByWWN(uint32_t, HBA_WWN, HBA_PORTATTRIBUTES *attributes)
{
    return reply(attributes);
}
HBA_STATUS GetPortStatistics(uint32_t, uint32_t, HBA_PORTSTATISTICS *statistics)
{
    return reply(statistics);
}
uint32_t KVD_GetLinkInfo(uint32_t, LINKINFO *info)
{
    return reply(info);
}
uint32_t KVD_GetDrvInfo(uint32_t, KVDDRVINFO *info)
{
    return reply(info);
}

int32_t KVD_IssueMboxWithRetry(uint32_t, MAILBOX *mb, uint32_t, uint32_t, uint32_t, uint32_t)
{
    return (int32_t)reply(mb);
}
int32_t KVD_IssueMboxWithRetryV2(uint32_t, MAILBOX *mb, uint32_t, uint32_t, uint32_t)
{
    return (int32_t)reply(mb);
}
int32_t IssueInternalMboxWithRetryEx(uint32_t, MAILBOX *mb, void *extension, uint32_t extension_words,
                                     uint32_t, uint32_t, uint32_t, uint32_t)
{
    int32_t status = (int32_t)reply(mb);
    if (extension != nullptr)
        stream_fill(extension, (size_t)extension_words * 4);
    return status;
}
int32_t kvd_get_board_sli4_if_type(uint32_t)
{
    return (int32_t)stream_u32();
}
uint32_t KVD_SendTarvoCommand(uint32_t, void *, uint32_t, void *rsp, uint32_t *rsp_len)
{
    return reply_sized(rsp, rsp_len);
}

// Authentication.
uint32_t KVD_GetAuthConfig(uint32_t, ZRT_FCSP_CONFIG *config)
{
    return reply(config);
}
uint32_t KVD_SetAuthConfig(uint32_t, ZRT_FCSP_CONFIG *, AUTH_PASSWD_INFO *)
{
    return stream_status();
}
uint32_t KVD_DeleteAuthConfig(uint32_t, uint64_t, uint64_t, AUTH_PASSWD_INFO *)
{
    return stream_status();
}
uint32_t KVD_GetAuthPassword(uint32_t, ZRT_AUTH_PASSWD *password)
{
    return reply(password);
}
uint32_t KVD_SetAuthPassword(uint32_t, ZRT_AUTH_PASSWD *)
{
    return stream_status();
}
uint32_t KVD_InitiateAuthentication(uint32_t, uint64_t, uint64_t)
{
    return stream_status();
}
uint32_t KVD_GetAuthStatus(uint32_t, KVD_AuthStatus *status, HBA_WWN *remote)
{
    uint32_t result = reply(status);
    (void)remote; // the caller's question, not an answer
    return result;
}
uint32_t KVD_GetAuthConfigList(uint32_t, uint64_t, KVD_AuthConfigList *list)
{
    // The count on the way in is the room the caller announced.
    uint32_t status = stream_status();
    uint32_t room;
    memcpy(&room, &list->numberOfEntries, sizeof(room));
    stream_fill(list, KVD_AUTHLIST_SIZE(room));
    return status;
}

// Events and loopback. Subscriptions are answered with an id; the events
// themselves reach the callbacks through the events target.
uint32_t RegisterForEvent(uint32_t, uint32_t, uint32_t, uint32_t, kvd_event_fn, uint32_t)
{
    return stream_u32();
}
uint32_t RegisterForCTEvents(uint32_t, uint16_t, kvd_ct_event_fn, uint32_t, uint32_t *pending)
{
    return reply(pending);
}
uint32_t GetEventBuffer(uint32_t, void *buffer, int32_t *count)
{
    uint32_t status = stream_status();
    if (buffer != nullptr && count != nullptr && *count > 0)
        stream_fill(buffer, (size_t)*count * sizeof(KVD_EVENT_ENTRY));
    if (count != nullptr)
        *count = (int32_t)stream_u32();
    return status;
}
uint32_t GetMissedEventsCount(uint32_t, uint32_t *count)
{
    return reply(count);
}
uint32_t SendMgmtResponse(uint32_t, void *, uint32_t, uint32_t)
{
    return stream_status();
}
uint32_t KVD_ConfigLoopback(uint32_t, uint32_t, uint32_t)
{
    return stream_status();
}
uint32_t KVD_RunLoopbackTest(uint32_t, LOOPBACK *loopback)
{
    return reply(loopback);
}
uint32_t KVD_EndLoopback(uint32_t)
{
    return stream_status();
}
uint32_t KVD_GetSliImage(uint32_t, void *buffer, uint32_t *length)
{
    return reply_sized(buffer, length);
}
uint32_t KVD_ResetAdapter(uint32_t, uint32_t)
{
    return stream_status();
}

// Logging.
uint32_t KVD_SetLibLogging(uint32_t mask)
{
    uint32_t status = stream_status();
    if (status == 0)
        libkvd_logging_enable = mask;
    return status;
}
uint32_t KVD_GetDriverLogMask(uint32_t, uint32_t *mask)
{
    return reply(mask);
}
uint32_t KVD_SetDriverLogMask(uint32_t, uint32_t)
{
    return stream_status();
}

// Management.
HBA_STATUS GetRNIDMgmtInfo(uint32_t, HBA_MGMTINFO *info)
{
    return reply(info);
}
HBA_STATUS SetRNIDMgmtInfo(uint32_t, HBA_MGMTINFO *)
{
    return stream_status();
}
HBA_STATUS SendRNID(uint32_t, HBA_WWN, uint32_t, void *reply_buf, uint32_t *length)
{
    return reply_sized(reply_buf, length);
}
HBA_STATUS RefreshInformation(uint32_t, uint32_t)
{
    return stream_status();
}
HBA_STATUS GetEventsCount(uint32_t, uint32_t *count)
{
    return reply(count);
}

// Nodes.
int32_t GetNodeInfo(uint32_t, void *buf)
{
    stream_fill(buf, KVD_NODEINFO_BUFSIZE);
    return (int32_t)stream_u32();
}
uint32_t GetVPDInfo(uint32_t, VPD *vpd)
{
    return reply(vpd);
}
uint32_t GetFcpBindList(uint32_t, HBA_BIND_LIST *list)
{
    return reply(list);
}
HBA_STATUS GetFcpTargetMapping(uint32_t, HBA_FCPTARGETMAPPING *mapping)
{
    return reply(mapping);
}
HBA_STATUS KVD_GetFcpTargetMappingV2(uint32_t, HBA_WWN, HBA_FCPTARGETMAPPINGV2 *mapping)
{
    return reply(mapping);
}

// Virtual ports. A list fills the room the caller states, then states its
// own count.
uint32_t KVD_VPCreate(uint32_t, const char *, KVD_VPATTRIB *attributes)
{
    return reply(attributes);
}
uint32_t KVD_VPDeleteV2(uint32_t, HBA_WWN, uint32_t, void *)
{
    return stream_status();
}
uint32_t KVD_VPGetAttrib(uint32_t, HBA_WWN, KVD_VPATTRIB *attributes)
{
    return reply(attributes);
}
uint32_t KVD_VPGetList(uint32_t, KVD_VPENTRYLIST *list)
{
    uint32_t status = stream_status();
    if (list != nullptr) {
        stream_fill(list,
                    offsetof(KVD_VPENTRYLIST, vpentry) + size_t{list->numberOfEntries} * sizeof(KVD_VPENTRY));
        list->numberOfEntries = stream_u32();
    }
    return status;
}
uint32_t KVD_GetAllNodeInfoByWWN(uint32_t, HBA_WWN, KVD_GETNODEINFO *list)
{
    uint32_t status = stream_status();
    if (list != nullptr) {
        stream_fill(list, offsetof(KVD_GETNODEINFO, nodeInfo) +
                              size_t{list->numberOfEntries} * sizeof(KVD_NODEINFOENTRY));
        list->numberOfEntries = stream_u32();
    }
    return status;
}
uint32_t KVD_VPGetResource(uint32_t, KVD_VPRESOURCE *resource)
{
    return reply(resource);
}
uint32_t KVD_NPIVReadyTest(uint32_t, uint32_t *checklist)
{
    return reply(checklist);
}
uint32_t vpGetPhys(uint32_t, uint32_t *instance, uint32_t *physical_host)
{
    uint32_t status = reply(instance);
    if (physical_host != nullptr)
        stream_fill(physical_host, sizeof(*physical_host));
    return status;
}

// SD events and latency. Subscriptions are answered with a handle; the
// data reply fills the size the caller states and states its own count.
int32_t KVD_SD_RegisterForEvent(uint32_t, HBA_WWN, uint32_t, uint32_t, void *, uint32_t *handle,
                                kvd_sd_callback_fn)
{
    return (int32_t)reply(handle);
}
int32_t KVD_SD_unRegisterForEvent(uint32_t, HBA_WWN, uint32_t)
{
    return (int32_t)stream_status();
}
int32_t kvd_sd_set_verbosity(int32_t)
{
    return (int32_t)stream_status();
}
int32_t kvd_sd_show_events(void)
{
    return (int32_t)stream_status();
}
int32_t KVD_SD_Set_Bucket(uint32_t, uint16_t, uint32_t, uint32_t)
{
    return (int32_t)stream_status();
}
int32_t KVD_SD_Get_Bucket(uint32_t, uint16_t *search_type, uint32_t *base, uint32_t *step, int64_t *bounds)
{
    int32_t status = (int32_t)reply(search_type);
    if (base != nullptr)
        stream_fill(base, sizeof(*base));
    if (step != nullptr)
        stream_fill(step, sizeof(*step));
    if (bounds != nullptr)
        stream_fill(bounds, KVD_SD_BUCKETS * sizeof(*bounds));
    return status;
}
int32_t KVD_SD_Destroy_Bucket(uint32_t)
{
    return (int32_t)stream_status();
}
uint32_t KVD_SD_Get_Granularity(void)
{
    return stream_u32();
}
int32_t KVD_SD_Start_Data_Collection(uint32_t, HBA_WWN, uint32_t, uint32_t)
{
    return (int32_t)stream_status();
}
int32_t KVD_SD_Stop_Data_Collection(uint32_t, HBA_WWN, uint32_t)
{
    return (int32_t)stream_status();
}
int32_t KVD_SD_Reset_Data_Collection(uint32_t, HBA_WWN, uint32_t)
{
    return (int32_t)stream_status();
}
int32_t KVD_SD_Get_Data(uint32_t, HBA_WWN, uint32_t, uint16_t *count, uint32_t size, void *buffer)
{
    int32_t status = (int32_t)reply_bytes(buffer, size);
    if (count != nullptr)
        stream_fill(count, sizeof(*count));
    return status;
}

// Driver parameters: the table the shell keeps holds KVD_CFG_MAX_PARAMS
// entries; the count comes from the stream.
uint32_t GetCfgParam(uint32_t, CFGPARAM *cfgparam)
{
    if (cfgparam != nullptr)
        stream_fill(cfgparam, KVD_CFG_MAX_PARAMS * sizeof(*cfgparam));
    return stream_u32();
}
uint32_t SetCfgParam(uint32_t, uint32_t, uint32_t)
{
    return stream_status();
}

// FCF connection list, discovered FCFs, per-target FCP priorities.
uint32_t KVD_FCoEGetConnList(uint32_t, KVD_FCFCONNLIST *list)
{
    return reply(list);
}
uint32_t KVD_FCoESetConnList(uint32_t, KVD_FCFCONNLIST *)
{
    return stream_status();
}
uint32_t KVD_FCoEGetFCFTable(uint32_t, uint32_t *count, KVD_FCFENTRY *table)
{
    uint32_t status = stream_status();
    if (count != nullptr) {
        if (table != nullptr)
            stream_fill(table, size_t{*count} * sizeof(*table));
        *count = stream_u32();
    }
    return status;
}
uint32_t KVD_QoSGetConfig(uint32_t, KVD_QOSCONFIG *config)
{
    return reply(config);
}
uint32_t KVD_QoSSetConfig(uint32_t, KVD_QOSCONFIG *)
{
    return stream_status();
}

// Pass-through.
uint32_t KVD_SendELSCmd(uint32_t, KVD_ELS_DEST *, void *, uint32_t, void *rsp, uint32_t *rsp_size)
{
    return reply_sized(rsp, rsp_size);
}
HBA_STATUS SendCTPassThru(uint32_t, void *, uint32_t, void *rsp, uint32_t *rsp_size)
{
    return reply_sized(rsp, rsp_size);
}
uint32_t SendMgmtCommand(uint32_t, HBA_WWN *, void *, uint32_t, void *rsp, uint32_t *rsp_size, uint32_t)
{
    return reply_sized(rsp, rsp_size);
}

// Port.
uint32_t KVD_FCoEGetParams(uint32_t, KVD_FCOEPARAM *param)
{
    return reply(param);
}
uint32_t KVD_FCoESetParams(uint32_t, KVD_FCOEPARAM *)
{
    return stream_status();
}
uint32_t KVD_QoSGetGlobalFlag(uint32_t, uint32_t *flag)
{
    return reply(flag);
}
uint32_t KVD_QoSSetGlobalFlag(uint32_t, uint32_t)
{
    return stream_status();
}
uint32_t KVD_GetQoSLinkSpeed(uint32_t, uint16_t *speed)
{
    return reply(speed);
}
uint32_t KVD_GetPersistLinkDown(uint32_t, uint16_t *config)
{
    return reply(config);
}
uint32_t KVD_SetPersistLinkDown(uint32_t, uint16_t)
{
    return stream_status();
}
uint32_t KVD_IssueDumpMBox(uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, uint8_t *buffer,
                           uint32_t *length)
{
    return reply_sized(buffer, length);
}
void kvd_show_mmm(int32_t, void *)
{
}

// Registers, memory and regions.
uint32_t KVD_ReadPciCfg(uint32_t, uint8_t *buffer, uint32_t, uint32_t count)
{
    return reply_bytes(buffer, count);
}
uint32_t WritePciCfg(uint32_t, uint32_t *, uint32_t, uint32_t)
{
    return stream_status();
}
uint32_t ReadCtlReg(uint32_t, uint32_t *value, uint32_t)
{
    return reply(value);
}
uint32_t WriteCtlReg(uint32_t, uint32_t *, uint32_t)
{
    return stream_status();
}
uint32_t WriteMem(uint32_t, uint8_t *, uint32_t, uint32_t)
{
    return stream_status();
}
uint32_t ReadMem(uint32_t, uint8_t *buffer, uint32_t, uint32_t count)
{
    return reply_bytes(buffer, count);
}
uint32_t KVD_SetDumpEnv(uint32_t, uint32_t)
{
    return stream_status();
}
uint32_t SetDiagEnv(uint32_t)
{
    return stream_status();
}
uint32_t SetBrdEnv(uint32_t, uint32_t)
{
    return stream_status();
}
uint32_t KVD_GetDriverDumpRegion(uint32_t, uint32_t, uint8_t *buffer, uint32_t *length)
{
    return reply_sized(buffer, length);
}
uint32_t getRegionData(uint32_t, uint32_t, uint32_t, uint32_t, uint8_t *buffer, uint32_t *size,
                       uint16_t *mbx_status, uint32_t)
{
    uint32_t status = reply_sized(buffer, size);
    if (mbx_status != nullptr)
        stream_fill(mbx_status, sizeof(*mbx_status));
    return status;
}
uint32_t setRegionData(uint32_t, uint32_t, uint32_t, uint32_t, uint8_t *, uint32_t, uint16_t *mbx_status,
                       uint32_t)
{
    return reply(mbx_status);
}
uint32_t KVD_IssueUpdateCfgMBox(uint32_t, uint32_t, uint32_t, uint32_t, uint8_t *, uint32_t,
                                uint16_t *mbx_status)
{
    return reply(mbx_status);
}

// SCSI and FCP: the data, then the sense, each of the size the caller gave.
static uint32_t scsi_reply(void *rsp, uint32_t *rsp_size, void *sense, uint32_t *sense_size)
{
    uint32_t status = reply_sized(rsp, rsp_size);
    if (sense != nullptr && sense_size != nullptr) {
        stream_fill(sense, *sense_size);
        *sense_size = stream_u32();
    }
    return status;
}
HBA_STATUS SendScsiInquiry(uint32_t, HBA_WWN *, uint64_t, uint8_t, uint32_t, void *rsp, uint32_t *rsp_size,
                           void *sense, uint32_t *sense_size)
{
    return scsi_reply(rsp, rsp_size, sense, sense_size);
}
HBA_STATUS SendReadCapacity(uint32_t, HBA_WWN *, uint64_t, void *rsp, uint32_t *rsp_size, void *sense,
                            uint32_t *sense_size)
{
    return scsi_reply(rsp, rsp_size, sense, sense_size);
}
HBA_STATUS SendReportLUNs(uint32_t, HBA_WWN *, void *rsp, uint32_t *rsp_size, void *sense,
                          uint32_t *sense_size)
{
    return scsi_reply(rsp, rsp_size, sense, sense_size);
}
HBA_STATUS SendScsiRead(uint32_t, HBA_WWN *, uint64_t, uint32_t, void *data, uint32_t *data_size, void *sense,
                        uint32_t *sense_size)
{
    return scsi_reply(data, data_size, sense, sense_size);
}
HBA_STATUS SendScsiWrite(uint32_t, HBA_WWN *, uint64_t, uint32_t, void *, uint32_t *data_size, void *sense,
                         uint32_t *sense_size)
{
    return scsi_reply(nullptr, data_size, sense, sense_size);
}
HBA_STATUS SendScsiCDB(uint32_t, HBA_WWN *, uint64_t, uint32_t, void *rsp, uint32_t *rsp_size, void *sense,
                       uint32_t *sense_size)
{
    return scsi_reply(rsp, rsp_size, sense, sense_size);
}
uint32_t KVD_SendScsiInquiryByWWN(uint32_t, HBA_WWN *, HBA_WWN *, uint64_t, uint8_t, uint32_t, void *rsp,
                                  uint32_t *rsp_size, void *sense, uint32_t *sense_size)
{
    return scsi_reply(rsp, rsp_size, sense, sense_size);
}
uint32_t KVD_SendReadCapacityByWWN(uint32_t, HBA_WWN *, HBA_WWN *, uint32_t, void *rsp, uint32_t *rsp_size,
                                   void *sense, uint32_t *sense_size)
{
    return scsi_reply(rsp, rsp_size, sense, sense_size);
}
uint32_t KVD_SendReportLUNsByWWN(uint32_t, HBA_WWN *, HBA_WWN *, void *rsp, uint32_t *rsp_size, void *sense,
                                 uint32_t *sense_size)
{
    return scsi_reply(rsp, rsp_size, sense, sense_size);
}
HBA_STATUS SendFcpCmd(uint32_t, HBA_WWN *, void *, uint32_t, void *data, uint32_t *data_size, void *rsp,
                      uint32_t *rsp_size)
{
    return scsi_reply(data, data_size, rsp, rsp_size);
}

} // extern "C"

// Commands that wait for events to arrive (sd_all_events, sd_latency) would
// sleep for seconds on every input: under the fuzzer no time passes for
// them, up to the limit of pass_time. Any other thread (libFuzzer's memory watcher sleeps a second between
// checks) really sleeps, or it would spin on a core of its own.
extern "C" unsigned int sleep(unsigned int seconds)
{
    if (kvdfuzz::in_input()) {
        kvdfuzz::pass_time(seconds);
        return 0;
    }
    struct timespec pause = {static_cast<time_t>(seconds), 0};
    while (nanosleep(&pause, &pause) != 0 && errno == EINTR)
        ;
    return 0;
}
