// The SD engine: bucket edges and sorting at their limits, the handle table
// at its limit, collection states, the buffer-too-small status at exactly
// the room, the seeded model's repeatability, and the fleet's "sd" section.
#include <gtest/gtest.h>

#include <vector>

#include "core/fleet.hpp"
#include "core/section.hpp"
#include "sd/sd.hpp"

using namespace kvdsim;

namespace
{

BoardConf board(int targets)
{
    BoardConf b;
    b.wwpn = {0x10, 0, 0x06, 0x4b, 0x51, 0xa0, 0, 0x70};
    for (int i = 0; i < targets; ++i) {
        RemotePort p;
        p.wwpn = {0x21, 0, 0x06, 0x4b, 0x51, 0xe1, 0, static_cast<uint8_t>(i)};
        b.remote_ports.push_back(p);
    }
    RemotePort initiator;
    initiator.fcp_target = false;
    b.remote_ports.push_back(initiator);
    return b;
}

std::vector<uint8_t> read(SdEngine &sd, size_t room, int32_t &rc, uint16_t &count)
{
    std::vector<uint8_t> out(room * sizeof(SD_IO_Latency_Response));
    rc = sd.get_data(count, out);
    return out;
}

void noop(uint32_t, HBA_WWN, uint32_t, uint32_t, void *, SD_event *)
{
}

} // namespace

TEST(SimSd, BucketEdgesAndSorting)
{
    EXPECT_EQ(sd_define_buckets(3, 10, 10), SD_ERROR_INVALID_SEARCH_TYPE);
    EXPECT_EQ(sd_define_buckets(SD_SEARCH_LINEAR, 10, 0), SD_ERROR_INVALID_ARG);
    ASSERT_EQ(sd_define_buckets(SD_SEARCH_LINEAR, 100, 10), SD_OK);
    const SdBuckets &b = sd_buckets();
    EXPECT_EQ(b.bounds[0], 100);
    EXPECT_EQ(b.bounds[19], 290);
    EXPECT_EQ(b.bucket(0), 0);   // below the base: the first bucket
    EXPECT_EQ(b.bucket(109), 0); // one short of the second edge
    EXPECT_EQ(b.bucket(110), 1); // at it
    EXPECT_EQ(b.bucket(289), 18);
    EXPECT_EQ(b.bucket(290), 19);
    EXPECT_EQ(b.bucket(~0ull), 19);
    // Power of two: widths step, step, 2 step, 4 step ...; the largest
    // edge still fits with a 32-bit base and step.
    ASSERT_EQ(sd_define_buckets(SD_SEARCH_POWER2, 0xFFFFFFFF, 0xFFFFFFFF), SD_OK);
    EXPECT_EQ(b.bounds[19], static_cast<int64_t>(0xFFFFFFFFull + (1ull << 18) * 0xFFFFFFFFull));
    ASSERT_EQ(sd_define_buckets(SD_SEARCH_POWER2, 0, 4), SD_OK);
    EXPECT_EQ(b.bounds[1], 4);
    EXPECT_EQ(b.bounds[3], 16);
    EXPECT_EQ(b.bucket(15), 2);
    EXPECT_EQ(b.bucket(16), 3);
}

TEST(SimSd, CollectionStatesAndRoom)
{
    sd_buckets() = SdBuckets{};
    SdEngine sd(board(12));
    int32_t rc;
    uint16_t count = 0;
    read(sd, 12, rc, count);
    EXPECT_EQ(rc, SD_ERROR_DATA_COLLECTION_NOT_ACTIVE);
    EXPECT_EQ(sd.start(), SD_ERROR_BUCKET_NOTSET);
    ASSERT_EQ(sd_define_buckets(SD_SEARCH_LINEAR, 2000, 1000), SD_OK);
    EXPECT_EQ(sd.reset(), SD_ERROR_DATA_COLLECTION_NOT_ACTIVE);
    ASSERT_EQ(sd.start(), SD_OK);
    EXPECT_EQ(sd.start(), SD_ERROR_DATA_COLLECTION_ACTIVE);
    read(sd, 11, rc, count); // one short of the room
    EXPECT_EQ(rc, SD_ERROR_MORE_DATA_AVAILABLE);
    EXPECT_EQ(count, 12);
    auto out = read(sd, 12, rc, count); // exactly the room
    ASSERT_EQ(rc, SD_OK);
    SD_IO_Latency_Response r;
    memcpy(&r, out.data() + 11 * sizeof r, sizeof r);
    EXPECT_EQ(r.sd_iolatency_target_wwpn.wwn[7], 11);
    uint32_t total = 0;
    for (auto &s : r.sd_time_stats_array)
        total += s.sd_tstats_bucket_count;
    EXPECT_EQ(total, 64u); // one round of the default traffic
    EXPECT_EQ(sd.stop(), SD_OK);
    EXPECT_EQ(sd.stop(), SD_ERROR_DATA_COLLECTION_NOT_ACTIVE);
    auto again = read(sd, 12, rc, count); // stopped: readable, no new round
    EXPECT_EQ(rc, SD_OK);
    EXPECT_EQ(out, again);
}

TEST(SimSd, SeededModelRepeats)
{
    ASSERT_EQ(sd_define_buckets(SD_SEARCH_LINEAR, 2000, 700), SD_OK);
    BoardConf conf = board(2);
    SdEngine a(conf), b(conf);
    conf.sd.seed = 2;
    SdEngine c(conf);
    int32_t rc;
    uint16_t n;
    for (SdEngine *e : {&a, &b, &c})
        ASSERT_EQ(e->start(), SD_OK);
    const auto ra = read(a, 2, rc, n), rb = read(b, 2, rc, n), rcc = read(c, 2, rc, n);
    EXPECT_EQ(ra, rb);
    EXPECT_NE(ra, rcc);
}

TEST(SimSd, HandlesAtTheirLimit)
{
    SdSubscriptions &subs = SdSubscriptions::instance();
    subs.drop_all();
    const Wwn port{0x10, 0, 0x06, 0x4b, 0x51, 0xa0, 0, 0x70}, vport{0x24, 0, 0x06, 0x4b, 0x51, 0xe9, 0, 1};
    uint32_t h = 0, first = 0, virt = 0;
    EXPECT_EQ(subs.subscribe(0, port, false, 0x40, 1, noop, nullptr, h), SD_ERROR_CATEGORY_NOT_SUPPORTED);
    EXPECT_EQ(subs.subscribe(0, port, false, SD_CATEGORY_SCSI, 0x80, noop, nullptr, h),
              SD_ERROR_SUBCATEGORY_NOT_SUPPORTED);
    // Distinct boards, so that none is a duplicate of another; the same kind
    // on a virtual port of the first is a subscription of its own.
    for (uint32_t i = 0; i + 1 < SdSubscriptions::kHandles; ++i) {
        ASSERT_EQ(subs.subscribe(100 + i, port, false, SD_CATEGORY_ELS, 1, noop, nullptr, h), SD_OK) << i;
        if (i == 0)
            first = h;
    }
    ASSERT_EQ(subs.subscribe(100, vport, true, SD_CATEGORY_ELS, 1, noop, nullptr, virt), SD_OK);
    EXPECT_EQ(subs.subscribe(999, port, false, SD_CATEGORY_ELS, 1, noop, nullptr, h),
              SD_ERROR_OUT_OF_HANDLES);
    EXPECT_EQ(subs.subscribe(100, port, false, SD_CATEGORY_ELS, 1, noop, nullptr, h),
              SD_ERROR_EVENT_ALREADY_REGISTERED);
    EXPECT_EQ(subs.unsubscribe(100, port, first + 1), SD_ERROR_REG_HANDLE); // another board's handle
    EXPECT_EQ(subs.unsubscribe(100, port, virt), SD_ERROR_REG_HANDLE);      // the vport's, through the port
    EXPECT_EQ(subs.unsubscribe(100, port, first), SD_OK);
    EXPECT_EQ(subs.unsubscribe(100, port, first), SD_ERROR_NO_ACTIVE_REGISTRATION);
    EXPECT_TRUE(subs.wants(100, vport, SD_CATEGORY_ELS, 1));
    EXPECT_FALSE(subs.wants(100, port, SD_CATEGORY_ELS, 1));
    EXPECT_EQ(subs.drop_port(100, vport), 1);
    EXPECT_EQ(subs.unsubscribe(100, vport, virt), SD_ERROR_NO_ACTIVE_REGISTRATION);
    EXPECT_EQ(subs.drop_board(101), 1);
    EXPECT_TRUE(subs.wants(102, port, SD_CATEGORY_ELS, 1));
    EXPECT_FALSE(subs.wants(102, port, SD_CATEGORY_ELS, 2));
    subs.drop_all();
    EXPECT_FALSE(subs.wants(102, port, SD_CATEGORY_ELS, 1));
}

TEST(SimSd, FleetSection)
{
    auto parse = [](const char *text, BoardConf &conf) {
        Json j = Json::parse(text);
        Section s(j, "boards[0]");
        read_sd_section(s, conf);
    };
    BoardConf conf = board(1);
    parse(R"({"sd": {"seed": 9, "traffic": [{"wwpn": "21:00:06:4b:51:e1:00:00", "ios": 100000,
              "min_us": 5, "max_us": 5}]}})",
          conf);
    EXPECT_EQ(conf.sd.seed, 9u);
    ASSERT_EQ(conf.sd.traffic.size(), 1u);
    EXPECT_EQ(conf.sd.traffic[0].ios, 100000u);
    const char *bad[] = {
        R"({"sd": {"traffic": [{"wwpn": "21:00:06:4b:51:e1:00:00", "ios": 100001}]}})",
        R"({"sd": {"traffic": [{"wwpn": "21:00:06:4b:51:e1:00:09"}]}})",
        R"({"sd": {"traffic": [{"wwpn": "21:00:06:4b:51:e1:00:00", "min_us": 6, "max_us": 5}]}})",
        R"({"sd": {"traffic": [{"wwpn": "21:00:06:4b:51:e1:00:00"}, {"wwpn": "21:00:06:4b:51:e1:00:00"}]}})",
        R"({"sd": {"speed": 1}})",
    };
    for (const char *t : bad) {
        BoardConf s = board(1);
        EXPECT_ANY_THROW(parse(t, s)) << t;
    }
}
