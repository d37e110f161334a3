// SD events, latency buckets and data collection.
//
// Statuses are the SD family's own: the environment not open is LIBRARY
// NOT INITIALIZED, an unknown board INVALID BOARD ID, a null pointer the
// call needs ARGUMENT MISSING. Subscriptions are taken on the physical
// port (a zero WWN or the board's own WWPN) or on a virtual port the board
// has, and released through the same port; a virtual port's end with it, so
// a deleted one's name is INVALID PORT like any other name. Only the
// physical port collects latency data. One bucket definition serves the
// library: the board named in the bucket calls must exist, and the definition cannot change while a board
// collects. At verbosity 1 and up each call prints its status on standard
// error.
#pragma GCC visibility push(default)
#include "libkvd.h"
#pragma GCC visibility pop

#include <cstdio>
#include <cstring>

#include "core/entry.hpp"

using namespace kvdsim;

namespace
{

constexpr CallFamily kSdFamily{SD_ERROR_LIB_NOT_INIT, SD_ERROR_INVALID_BOARD_ID, SD_ERROR_ARG_MISSING,
                               SD_ERROR_NO_MEMORY};
constexpr uint32_t kPerTarget = 1; // the one collection mode: per target

int32_t said(const char *name, int32_t rc)
{
    if (sd_verbosity() >= 1)
        fprintf(stderr, "libkvd sd: %s = %d\n", name, rc);
    return rc;
}

bool any_collecting(Library &lib)
{
    for (uint32_t i = 0; i < KVD_MAX_BOARDS; ++i)
        if (Board *b = lib.board(i); b && b->sd && b->sd->collecting())
            return true;
    return false;
}

} // namespace

int32_t KVD_SD_RegisterForEvent(uint32_t board, HBA_WWN vport, uint32_t category, uint32_t subcategory,
                                void *context, uint32_t *handle, kvd_sd_callback_fn callback)
{
    const int32_t rc = board_call<int32_t>(
        "KVD_SD_RegisterForEvent", board, kSdFamily, handle,
        [&](TraceLine &t) {
            t.arg("board", board)
                .arg_wwn("vport", vport.wwn)
                .arg_hex("category", category)
                .arg_hex("subcategory", subcategory);
        },
        [&](Call &c, Board &b) -> int32_t {
            c.out(handle, sizeof *handle);
            if (!callback)
                return SD_ERROR_ARG_MISSING;
            Wwn port;
            bool virtual_port = false;
            if (!b.sd->port_of(vport, port, virtual_port))
                return SD_ERROR_INVALID_VPORT;
            const int32_t got = SdSubscriptions::instance().subscribe(
                board, port, virtual_port, category, subcategory, callback, context, *handle);
            c.line.result(got);
            if (got == SD_OK)
                c.line.tag("handle", std::to_string(*handle).c_str());
            return got;
        });
    return said("KVD_SD_RegisterForEvent", rc);
}

int32_t KVD_SD_unRegisterForEvent(uint32_t board, HBA_WWN vport, uint32_t handle)
{
    return said(
        "KVD_SD_unRegisterForEvent",
        board_call<int32_t>(
            "KVD_SD_unRegisterForEvent", board, kSdFamily,
            [&](TraceLine &t) { t.arg("board", board).arg_wwn("vport", vport.wwn).arg("handle", handle); },
            [&](Call &, Board &b) -> int32_t {
                Wwn port;
                bool virtual_port = false;
                if (!b.sd->port_of(vport, port, virtual_port))
                    return SD_ERROR_INVALID_VPORT;
                return SdSubscriptions::instance().unsubscribe(board, port, handle);
            }));
}

int32_t kvd_sd_set_verbosity(int32_t level)
{
    return library_call<int32_t>(
        "kvd_sd_set_verbosity", kSdFamily,
        [&](TraceLine &t) { t.arg("level", static_cast<uint64_t>(level)); },
        [&](Call &) -> int32_t {
            if (level < 0 || level > 2)
                return SD_ERROR_INVALID_ARG;
            set_sd_verbosity(level);
            return SD_OK;
        });
}

int32_t kvd_sd_show_events(void)
{
    return said("kvd_sd_show_events", library_call<int32_t>(
                                          "kvd_sd_show_events", kSdFamily, [](TraceLine &) {},
                                          [&](Call &) -> int32_t {
                                              if (!Library::is_open())
                                                  return SD_ERROR_LIB_NOT_INIT;
                                              SdSubscriptions::instance().show();
                                              return SD_OK;
                                          }));
}

int32_t KVD_SD_Set_Bucket(uint32_t board, uint16_t search_type, uint32_t base, uint32_t step)
{
    return said("KVD_SD_Set_Bucket",
                board_call<int32_t>(
                    "KVD_SD_Set_Bucket", board, kSdFamily,
                    [&](TraceLine &t) {
                        t.arg("board", board).arg("type", search_type).arg("base", base).arg("step", step);
                    },
                    [&](Call &c, Board &) -> int32_t {
                        if (any_collecting(c.lib))
                            return SD_ERROR_DATA_COLLECTION_ACTIVE;
                        return sd_define_buckets(search_type, base, step);
                    }));
}

int32_t KVD_SD_Get_Bucket(uint32_t board, uint16_t *search_type, uint32_t *base, uint32_t *step,
                          int64_t *bounds)
{
    return said("KVD_SD_Get_Bucket", board_call<int32_t>(
                                         "KVD_SD_Get_Bucket", board, kSdFamily, bounds,
                                         [&](TraceLine &t) { t.arg("board", board); },
                                         [&](Call &c, Board &) -> int32_t {
                                             if (!search_type || !base || !step)
                                                 return SD_ERROR_ARG_MISSING;
                                             c.out(search_type, sizeof *search_type);
                                             c.out(base, sizeof *base);
                                             c.out(step, sizeof *step);
                                             c.out(bounds, sizeof(int64_t) * KVD_SD_BUCKETS);
                                             const SdBuckets &bk = sd_buckets();
                                             if (!bk.set)
                                                 return SD_ERROR_BUCKET_NOTSET;
                                             *search_type = bk.type;
                                             *base = bk.base;
                                             *step = bk.step;
                                             memcpy(bounds, bk.bounds.data(), sizeof bk.bounds);
                                             c.line.result(SD_OK).tag("type",
                                                                      std::to_string(bk.type).c_str());
                                             return SD_OK;
                                         }));
}

int32_t KVD_SD_Destroy_Bucket(uint32_t board)
{
    return said("KVD_SD_Destroy_Bucket",
                board_call<int32_t>(
                    "KVD_SD_Destroy_Bucket", board, kSdFamily, [&](TraceLine &t) { t.arg("board", board); },
                    [&](Call &c, Board &) -> int32_t {
                        if (!sd_buckets().set)
                            return SD_ERROR_BUCKET_NOTSET;
                        if (any_collecting(c.lib))
                            return SD_ERROR_DATA_COLLECTION_ACTIVE;
                        sd_buckets() = SdBuckets{};
                        return SD_OK;
                    }));
}

uint32_t KVD_SD_Get_Granularity(void)
{
    return library_call<uint32_t>(
        "KVD_SD_Get_Granularity", CallFamily{0, 0, 0, 0}, [](TraceLine &) {},
        [](Call &) -> uint32_t { return kSdGranularityNs; });
}

namespace
{

// The frame the collection calls share: the port and the mode first.
template <class Work>
int32_t collection_call(const char *name, uint32_t board, const HBA_WWN &vport, uint32_t mode, Work &&work,
                        int64_t size = -1)
{
    return said(name, board_call<int32_t>(
                          name, board, kSdFamily,
                          [&](TraceLine &t) {
                              t.arg("board", board).arg_wwn("vport", vport.wwn).arg("mode", mode);
                              if (size >= 0)
                                  t.arg("size", static_cast<uint64_t>(size));
                          },
                          [&](Call &c, Board &b) -> int32_t {
                              if (!b.sd->physical(vport))
                                  return SD_ERROR_INVALID_VPORT;
                              if (mode != kPerTarget)
                                  return SD_ERROR_NOT_SUPPORTED;
                              return work(c, *b.sd);
                          }));
}

} // namespace

int32_t KVD_SD_Start_Data_Collection(uint32_t board, HBA_WWN vport, uint32_t mode, uint32_t flags)
{
    return collection_call("KVD_SD_Start_Data_Collection", board, vport, mode,
                           [&](Call &, SdEngine &sd) { return flags ? SD_ERROR_INVALID_ARG : sd.start(); });
}

int32_t KVD_SD_Stop_Data_Collection(uint32_t board, HBA_WWN vport, uint32_t mode)
{
    return collection_call("KVD_SD_Stop_Data_Collection", board, vport, mode,
                           [&](Call &, SdEngine &sd) { return sd.stop(); });
}

int32_t KVD_SD_Reset_Data_Collection(uint32_t board, HBA_WWN vport, uint32_t mode)
{
    return collection_call("KVD_SD_Reset_Data_Collection", board, vport, mode,
                           [&](Call &, SdEngine &sd) { return sd.reset(); });
}

int32_t KVD_SD_Get_Data(uint32_t board, HBA_WWN vport, uint32_t mode, uint16_t *count, uint32_t size,
                        void *buffer)
{
    return collection_call(
        "KVD_SD_Get_Data", board, vport, mode,
        [&](Call &c, SdEngine &sd) -> int32_t {
            if (!count || (size && !buffer))
                return SD_ERROR_ARG_MISSING;
            c.out(count, sizeof *count);
            c.out(buffer, size);
            const int32_t rc = sd.get_data(*count, {static_cast<uint8_t *>(buffer), size});
            c.line.result(rc).tag("targets", std::to_string(*count).c_str());
            if (rc == SD_OK && *count)
                c.line.bytes("out", buffer, *count * sizeof(SD_IO_Latency_Response));
            return rc;
        },
        size);
}
