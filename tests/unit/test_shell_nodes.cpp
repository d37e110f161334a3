// The capacity units of "fcpmap" at their limits, the LUN bytes it sends,
// and the binding type words of "listbind".
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "kvd_nodes_cmds.h"

TEST(FcpmapCapacity, UnitsChangeJustPastEachLimit)
{
    uint32_t cap = 7;
    EXPECT_STREQ(kvd_capacity(0x200000, 0x200, &cap), "MB"); // 0x40000000: not above the GB limit
    EXPECT_EQ(cap, 1024u);
    EXPECT_STREQ(kvd_capacity(0x40000001, 1, &cap), "GB");
    EXPECT_EQ(cap, 1u);
    EXPECT_STREQ(kvd_capacity(0x100000, 1, &cap), "B");
    EXPECT_EQ(cap, 0x100000u);
    EXPECT_STREQ(kvd_capacity(0x100001, 1, &cap), "MB");
    EXPECT_EQ(cap, 1u);
    // The product wraps in 32 bits: 2^23 blocks of 2^9 bytes are 0.
    EXPECT_STREQ(kvd_capacity(0x800000, 0x200, &cap), "B");
    EXPECT_EQ(cap, 0u);
}

TEST(FcpmapLun, NumberGoesInTheFirstTwoBytes)
{
    uint8_t bytes[8];
    const uint64_t lun = kvd_fcp_lun(0x0102);
    memcpy(bytes, &lun, 8);
    const uint8_t want[8] = {1, 2, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(memcmp(bytes, want, 8), 0);
    EXPECT_EQ(kvd_fcp_lun(0x10102), kvd_fcp_lun(0x0102)); // bits above 15 are dropped
}

TEST(Listbind, TypeWords)
{
    EXPECT_STREQ(kvd_bindtype_word(BIND_NONE), "NONE ");
    EXPECT_STREQ(kvd_bindtype_word(BIND_DID), "DID  ");
    EXPECT_STREQ(kvd_bindtype_word(BIND_ALPA), "ALPA  ");
    EXPECT_STREQ(kvd_bindtype_word(5), "NONE ");
    EXPECT_STREQ(kvd_bindtype_word(0xffffffffu), "NONE ");
}

TEST(Fcpmap, LuidRoomFitsItsBuffer)
{
    EXPECT_EQ(KVD_FCPMAP_V2_ROOM, 259u);
    EXPECT_LE(offsetof(HBA_FCPTARGETMAPPING, entry) + KVD_FCPMAP_ROOM * sizeof(HBA_FCPSCSIENTRY),
              (size_t)KVD_FCPMAP_SIZE);
}
