// The event engine's board side: the event log and its missed count, the
// temperature bands, the fleet's "events" section and the trigger requests.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "core/fleet.hpp"
#include "core/state.hpp"
#include "events/events.hpp"
#include "sim_test.hpp"

using namespace kvdsim;
using namespace kvdsim::test;

namespace
{

std::vector<KVD_EVENT_ENTRY> drain(BoardEvents &ev, uint32_t wanted)
{
    std::vector<KVD_EVENT_ENTRY> out(wanted + 1);
    out.resize(ev.drain(out.data(), wanted));
    return out;
}

TEST(SimEvents, LogKeepsTheNewestEntriesAndCountsTheRestMissed)
{
    BoardEvents ev(0, EventsConf{});
    for (int i = 0; i < static_cast<int>(BoardEvents::kLogEntries); ++i)
        ev.temperature_event(KVD_TEMP_UNKNOWN, i);
    EXPECT_EQ(ev.take_missed(), 0u); // at the limit
    ev.temperature_event(KVD_TEMP_UNKNOWN, 64);
    EXPECT_EQ(ev.take_missed(), 1u); // one past it: the oldest goes
    EXPECT_EQ(ev.take_missed(), 0u); // reading clears

    auto first = drain(ev, 2);
    ASSERT_EQ(first.size(), 2u);
    EXPECT_EQ(first[0].code, static_cast<uint32_t>(FC_REG_TEMPERATURE_EVENT));
    EXPECT_EQ(first[0].data[1], 1u);
    EXPECT_EQ(first[1].data[1], 2u);
    EXPECT_EQ(drain(ev, 1000).size(), BoardEvents::kLogEntries - 2);
    EXPECT_EQ(drain(ev, 5).size(), 0u);
}

TEST(SimEvents, TemperatureBands)
{
    EventsConf conf;
    conf.temperature = 40;
    conf.warning = 75;
    conf.critical = 90;
    BoardEvents ev(0, conf);
    auto types = [&](std::initializer_list<int32_t> readings) {
        for (int32_t t : readings)
            ev.set_temperature(t);
        std::string s;
        for (const auto &e : drain(ev, 100))
            s += std::to_string(e.data[0]) + "@" + std::to_string(e.data[1]) + " ";
        return s;
    };
    EXPECT_EQ(types({74, 60}), "");                // below the warning level
    EXPECT_EQ(types({75, 80, 89}), "2@75 ");       // warning at the threshold, once
    EXPECT_EQ(types({90, 150}), "1@90 ");          // critical at the threshold
    EXPECT_EQ(types({89, 74}), "2@89 3@74 ");      // down a band, then normal
    EXPECT_EQ(types({-40, 95, 10}), "1@95 3@10 "); // straight up and back
}

TEST(SimEvents, CtResponsesMatchOpenRequests)
{
    BoardEvents ev(1, EventsConf{});
    const uint8_t data[] = {1, 2, 3};
    const uint32_t tag = ev.ct_request(0x20, data);
    EXPECT_FALSE(ev.ct_response(tag + 1, data));
    EXPECT_TRUE(ev.ct_response(tag, data));
    EXPECT_FALSE(ev.ct_response(tag, data)); // answered once
    uint32_t got = 0;
    std::vector<uint8_t> payload;
    ASSERT_TRUE(ev.last_response(got, payload));
    EXPECT_EQ(got, tag);
    EXPECT_EQ(payload.size(), 3u);
}

std::string events_doc(const std::string &section)
{
    return board_doc(R"("events": )" + section);
}

TEST(SimEvents, FleetSection)
{
    fleet_ok(events_doc(R"({"temperature":-40,"warning":149,"critical":150})"));
    fleet_fault(events_doc(R"({"critical":151})"));
    fleet_fault(events_doc(R"({"warning":80,"critical":80})")); // critical must be above warning
    fleet_fault(events_doc(R"({"colour":1})"));
    fleet_ok(events_doc(R"({"schedule":[{"after_ms":86400000,"event":"temp 80"}]})"));
    fleet_fault(events_doc(R"({"schedule":[{"after_ms":86400001,"event":"temp 80"}]})"));
    fleet_fault(events_doc(R"({"schedule":[{"event":"temp 80"}]})"));
    auto schedule = [](int n) {
        std::string s = "[";
        for (int i = 0; i < n; ++i)
            s += std::string(i ? "," : "") + R"({"after_ms":1,"event":"temp 1"})";
        return R"({"schedule":)" + s + "]}";
    };
    fleet_ok(events_doc(schedule(256)));
    fleet_fault(events_doc(schedule(257)));
}

TEST(SimEvents, TriggerRequests)
{
    Library &lib = Library::instance();
    std::lock_guard<std::mutex> lk(lib.mu);
    lib.load();
    EXPECT_EQ(apply_request(lib, "0 temp 150"), "ok");
    EXPECT_EQ(apply_request(lib, "0 temp -40"), "ok");
    EXPECT_EQ(apply_request(lib, "0 temp 151").rfind("error:", 0), 0u);
    EXPECT_EQ(apply_request(lib, "31 temp 1").rfind("error: no board", 0), 0u);
    EXPECT_EQ(apply_request(lib, "32 temp 1").rfind("error:", 0), 0u);
    EXPECT_EQ(apply_request(lib, "").rfind("error:", 0), 0u);
    EXPECT_EQ(apply_request(lib, "0").rfind("error:", 0), 0u);
    EXPECT_EQ(apply_request(lib, "0 rscn 0x1000000").rfind("error:", 0), 0u);
    EXPECT_EQ(apply_request(lib, "0 vprscn 10:00 0x10").rfind("error:", 0), 0u);
    EXPECT_EQ(apply_request(lib, "0 ct 0x10000 01").rfind("error:", 0), 0u);
    const std::string max(2 * BoardEvents::kMaxPayload, 'a');
    EXPECT_EQ(apply_request(lib, "0 ct 0x20 " + max).rfind("ok", 0), 0u);
    EXPECT_EQ(apply_request(lib, "0 ct 0x20 " + max + "aa").rfind("error:", 0), 0u);
    EXPECT_EQ(apply_request(lib, "0 ct 0x20 abc").rfind("error:", 0), 0u); // odd digits
    EXPECT_EQ(apply_request(lib, "0 link down"), "ok");
    EXPECT_FALSE(lib.board(0)->fw->link().up);
    EXPECT_EQ(apply_request(lib, "0 link up"), "ok");
    EXPECT_TRUE(lib.board(0)->fw->link().up);
    KVD_EVENT_ENTRY e[8];
    lib.board(0)->events->drain(e, 8);
}

} // namespace

namespace
{

void noop_temp(uint32_t, uint32_t, uint32_t)
{
}

TEST(SimEvents, SubscriptionSlotsAndQueueAtTheirLimits)
{
    Dispatcher &d = Dispatcher::instance();
    const auto fn = reinterpret_cast<kvd_event_fn>(noop_temp);
    for (int i = 0; i < Dispatcher::kSlots; ++i)
        ASSERT_NE(d.subscribe(5, FC_REG_TEMPERATURE_EVENT, 0, fn, false, 0, 0), 0u) << i;
    EXPECT_EQ(d.subscribe(5, FC_REG_TEMPERATURE_EVENT, 0, fn, false, 0, 0), 0u); // one past
    EXPECT_TRUE(d.wants(5, FC_REG_TEMPERATURE_EVENT, 0));
    EXPECT_FALSE(d.wants(5, FC_REG_LINK_EVENT, 0));
    EXPECT_FALSE(d.wants(6, FC_REG_TEMPERATURE_EVENT, 0));
    EXPECT_EQ(d.unsubscribe(6, 0), 0);
    EXPECT_EQ(d.unsubscribe(5, 0), Dispatcher::kSlots);
    EXPECT_FALSE(d.wants(5, FC_REG_TEMPERATURE_EVENT, 0));

    // Nothing delivers here: the queue fills to its limit, then refuses.
    for (size_t i = 0; i < Dispatcher::kQueueMax; ++i)
        ASSERT_TRUE(d.post(Event{})) << i;
    EXPECT_FALSE(d.post(Event{}));
    d.deliver_pending();
    EXPECT_TRUE(d.post(Event{}));
    d.deliver_pending();
}

struct CountingMemory final : HostMemory {
    std::vector<uint8_t> bytes = std::vector<uint8_t>(2 * 65536 + 2);
    bool write(uint64_t address, const void *src, size_t len) override
    {
        if (address + len > bytes.size())
            return false;
        std::memcpy(bytes.data() + address, src, len);
        return true;
    }
    bool read(uint64_t address, void *dst, size_t len) override
    {
        if (address + len > bytes.size())
            return false;
        std::memcpy(dst, bytes.data() + address, len);
        return true;
    }
};

TEST(SimDiag, LoopbackFramesAtTheirLimits)
{
    Library &lib = Library::instance();
    std::lock_guard<std::mutex> lk(lib.mu);
    lib.load();
    Board &b = *lib.board(0);
    CountingMemory mem;
    LOOPBACK lb{65536, reinterpret_cast<uint8_t *>(uintptr_t{1}),
                reinterpret_cast<uint8_t *>(uintptr_t{65537})};
    EXPECT_EQ(b.diag->run_loopback(lb, mem), static_cast<uint32_t>(EINVAL)); // not configured
    EXPECT_EQ(b.diag->config_loopback(*b.fw, 0, 15), static_cast<uint32_t>(EINVAL));
    EXPECT_EQ(b.diag->config_loopback(*b.fw, 3, 15), static_cast<uint32_t>(EINVAL));
    EXPECT_EQ(b.diag->config_loopback(*b.fw, 1, 15), 0u);
    EXPECT_FALSE(b.fw->link().up);
    mem.bytes[1] = 0x5a;
    EXPECT_EQ(b.diag->run_loopback(lb, mem), 0u);
    EXPECT_EQ(mem.bytes[65537], 0x5a);
    lb.bufSize = 65537;
    EXPECT_EQ(b.diag->run_loopback(lb, mem), static_cast<uint32_t>(EINVAL));
    lb.bufSize = 0;
    EXPECT_EQ(b.diag->run_loopback(lb, mem), static_cast<uint32_t>(EINVAL));
    EXPECT_EQ(b.diag->end_loopback(*b.fw), 0u);
    EXPECT_TRUE(b.fw->link().up);
    EXPECT_EQ(b.diag->end_loopback(*b.fw), static_cast<uint32_t>(EINVAL));
}

TEST(SimDiag, RingsWrapAndTheImageStaysInTheRoom)
{
    Library &lib = Library::instance();
    std::lock_guard<std::mutex> lk(lib.mu);
    lib.load();
    Diag &d = *lib.board(0)->diag;               // SLI-3: rings in adapter memory
    const int start = d.ring(kRingDiag).cmd_idx; // a loopback run may have used the ring
    for (int i = 0; i < 16; ++i)
        d.exchange(kRingDiag, kIocbXmitSequence64, 8, 0x1000, 0, 0, 0);
    EXPECT_EQ(d.ring(kRingDiag).cmd_idx, start); // 16 entries: back to the same slot
    d.exchange(kRingDiag, kIocbXmitSequence64, 8, 0x1000, 7, 0, 0);
    EXPECT_EQ(d.ring(kRingDiag).cmd_idx, (start + 1) % 16);
    d.exchange(KVD_SLI_MAX_RINGS, kIocbXmitSequence64, 8, 0, 0, 0, 0); // no such ring: ignored

    std::vector<uint8_t> img(KVD_SLIM_IMAGE_SIZE + 100, 0xff);
    EXPECT_EQ(d.image(img), static_cast<uint32_t>(KVD_SLIM_IMAGE_SIZE));
    EXPECT_EQ(img[KVD_SLIM_IMAGE_SIZE], 0xff); // nothing past the image
    kvdsli_t sli;
    std::memcpy(&sli, img.data(), sizeof sli);
    const kvdsliring &r = sli.sliinit.ringinit[kRingDiag];
    EXPECT_EQ(r.rspringaddr.low + r.numRiocb * KVD_IOCB_SIZE,
              (uint32_t)KVD_SLI_RING_BASE + 256 * KVD_IOCB_SIZE);
    std::vector<uint8_t> small(sizeof(kvdsli_t));
    EXPECT_EQ(d.image(small), sizeof(kvdsli_t)); // bounded by the caller's room
}

TEST(SimDiag, ResetsTakeTheLinkDownAndClearTheRings)
{
    Library &lib = Library::instance();
    std::lock_guard<std::mutex> lk(lib.mu);
    lib.load();
    Board &b = *lib.board(0);
    const char *name = nullptr;
    const uint32_t down = b.fw->link().down_count;
    EXPECT_EQ(b.diag->reset(*b.fw, KVD_RESET_SELECTIVE, &name), 0u);
    EXPECT_EQ(b.fw->link().down_count, down + 1);
    EXPECT_TRUE(b.fw->link().up);
    b.diag->exchange(kRingCt, kIocbXmitSequence64, 8, 0, 0, 0, 0);
    EXPECT_EQ(b.diag->reset(*b.fw, KVD_RESET_COORDINATED, &name), 0u);
    EXPECT_EQ(b.diag->ring(kRingCt).cmd_idx, 0); // the rings start over
}

} // namespace
