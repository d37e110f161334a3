// The SD decoders at the ends of their tables, and EventCallBack's counting:
// a kind outside the table is counted nowhere (and prints its "Unhandled"
// line), events from several threads at once lose no increment, and a
// record shorter than its kind is read no further than the event says.
#include <gtest/gtest.h>

#include <string.h>
#include <thread>
#include <vector>

#include "kvd_sd_cmds.h"

TEST(ShellSd, DecodeStatusEnds)
{
    const char *text = nullptr;
    EXPECT_EQ(decode_sd_status(20, &text), 1);
    EXPECT_STREQ(text, "DATA COLLECTION NOT ACTIVE");
    EXPECT_EQ(decode_sd_status(21, &text), 0);
    EXPECT_STREQ(text, "x15 UNKNOWN");
    EXPECT_EQ(decode_sd_status(-1, &text), 0);
    EXPECT_STREQ(text, "xffffffff UNKNOWN");
}

TEST(ShellSd, DecodeCategory)
{
    const char *cat, *sub;
    int32_t index = 99;
    EXPECT_EQ(decode_sd_category(0x10, 0x1, &cat, &sub, &index), 1);
    EXPECT_EQ(index, 16);
    EXPECT_STREQ(sub, "ARRIVAL");
    index = 99;
    EXPECT_EQ(decode_sd_category(1, 3, &cat, &sub, &index), 0);
    EXPECT_STREQ(cat, "ELS");
    EXPECT_STREQ(sub, "x3 NOT SUPPORTED");
    EXPECT_EQ(index, 99);
    EXPECT_EQ(decode_sd_category(3, 1, &cat, &sub, &index), 0);
    EXPECT_STREQ(cat, "x3 NOT SUPPORTED");
    EXPECT_EQ(decode_sd_category(4, 0x80, &cat, &sub, &index), 0); // one past SCSI's last
}

TEST(ShellSd, CallbackCountsExactlyAndOnlyKnownKinds)
{
    HBA_WWN port{};
    memset(hit_count, 0, sizeof(hit_count));
    callback_verbose_level = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 10000; ++i) {
                EventCallBack(0, port, 4, 0x40, nullptr, nullptr);
                EventCallBack(0, port, 0x20, 1, nullptr, nullptr);
                EventCallBack(0, port, 2, 8, nullptr, nullptr);
            }
        });
    for (auto &t : threads)
        t.join();
    EXPECT_EQ(hit_count[14], 40000);
    int32_t total = 0;
    for (int32_t c : hit_count)
        total += c;
    EXPECT_EQ(total, 40000);
}

TEST(ShellSd, ShortRecordReadsNoFurther)
{
    // A check-condition event whose record holds only the version and the
    // port name: the rest prints as zero.
    uint8_t record[12];
    memset(record, 0xab, sizeof(record));
    SD_els_event_details_v0 details{0, record};
    SD_event event{0, sizeof(record), &details};
    HBA_WWN port{};
    callback_verbose_level = 1;
    testing::internal::CaptureStdout();
    EventCallBack(0, port, 4, 4, nullptr, &event);
    std::string out = testing::internal::GetCapturedStdout();
    callback_verbose_level = 0;
    EXPECT_NE(
        out.find(" - CHECK CONDITION port_name ab:ab:ab:ab:ab:ab:ab:ab lun 0x0 cmd 0x0 sk 0x0 asc 0x0 ascq "
                 "0x0\n"),
        std::string::npos)
        << out;
}

TEST(ShellSd, UnknownSubcategoryOfEachCategoryPrintsUnhandled)
{
    // The library in use delivers none of these; another may. One past the
    // last subcategory of each category, and a category past the last.
    const struct {
        uint32_t category, subcategory;
        const char *line;
    } cases[] = {
        {1, 0x20, "Unhandled ELS x20\n\n"},      {2, 0x8, "Unhandled FABRIC x8\n\n"},
        {4, 0x80, "Unhandled SCSI x80\n\n"},     {8, 0x2, "Unhandled BOARD x2\n\n"},
        {0x10, 0x2, "Unhandled ADAPTER x2\n\n"}, {0x20, 0x1, "Unhandled Event x20 Subcategory x1\n\n"},
    };
    HBA_WWN port{{0x10, 0, 0, 0, 0xc9, 0, 0, 0x01}};
    memset(hit_count, 0, sizeof(hit_count));
    callback_verbose_level = 1;
    for (const auto &c : cases) {
        testing::internal::CaptureStdout();
        EventCallBack(0, port, c.category, c.subcategory, nullptr, nullptr);
        const std::string out = testing::internal::GetCapturedStdout();
        EXPECT_EQ(out.substr(out.find(" - port wwn ")),
                  std::string(" - port wwn 10:00:00:00:c9:00:00:") + c.line);
    }
    callback_verbose_level = 0;
    for (int32_t n : hit_count)
        EXPECT_EQ(n, 0);
}
