// Hostile mode: which calls it names, the patterns and their order, and
// that a fill stays inside the span it was given.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "core/hostile.hpp"

using namespace kvdsim;

TEST(Hostile, NamesSeedAndRefusals)
{
    HostileRules r;
    std::string errors;
    r.parse("GetAdapterAttributes,,seed=2,bad-name,seed=x,KVD_GetLinkInfo", errors);
    EXPECT_EQ(errors, "libkvd: KVD_SIM_HOSTILE: bad item \"bad-name\": bad call name\n"
                      "libkvd: KVD_SIM_HOSTILE: bad item \"seed=x\": seed not a 32-bit number\n");
    EXPECT_TRUE(r.wants("GetAdapterAttributes"));
    EXPECT_TRUE(r.wants("KVD_GetLinkInfo"));
    EXPECT_FALSE(r.wants("GetAdapterAttribute"));
    EXPECT_FALSE(r.wants_events());
    // The cycle starts at the seed and wraps after four calls.
    EXPECT_EQ(r.next_call(), Hostile::Negatives);
    EXPECT_EQ(r.next_call(), Hostile::Text);
    EXPECT_EQ(r.next_call(), Hostile::Ones);
    EXPECT_EQ(r.next_call(), Hostile::Maxima);
    EXPECT_EQ(r.next_event(), Hostile::Negatives); // events keep their own cycle

    r.parse("all", errors);
    EXPECT_TRUE(r.wants("anything") && r.wants_events());
    r.parse(nullptr, errors);
    EXPECT_FALSE(r.on());
}

TEST(Hostile, FillsExactlyTheSpan)
{
    uint8_t buf[10];
    const uint8_t ones[] = {0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff};
    const uint8_t max[] = {0xff, 0xff, 0xff, 0x7f, 0xff, 0xff, 0xff, 0x7f};
    const uint8_t neg[] = {0x00, 0x00, 0x00, 0x80, 0x00, 0x00, 0x00, 0x80};
    const uint8_t text[] = {'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A'};
    const struct {
        Hostile pat;
        const uint8_t *want;
        const char *name;
    } cases[] = {{Hostile::Ones, ones, "ff"},
                 {Hostile::Maxima, max, "max"},
                 {Hostile::Negatives, neg, "neg"},
                 {Hostile::Text, text, "text"}};
    for (const auto &c : cases) {
        memset(buf, 0x5a, sizeof buf);
        hostile_fill(c.pat, buf + 1, 8);
        EXPECT_EQ(memcmp(buf + 1, c.want, 8), 0) << c.name;
        EXPECT_EQ(buf[0], 0x5a);
        EXPECT_EQ(buf[9], 0x5a);
        EXPECT_STREQ(hostile_name(c.pat), c.name);
    }
}
