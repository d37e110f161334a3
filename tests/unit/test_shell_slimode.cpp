// SLI level and protocol of the boards of the default fleet, as other
// commands ask for them.
#include <gtest/gtest.h>

#include <cstdlib>

#include "kvd.h"

namespace
{

struct SliMode : testing::Test {
    static void SetUpTestSuite()
    {
        unsetenv("KVD_SIM_FLEET"); // the embedded default fleet
        ASSERT_EQ(KVD_InitDiagEnv(kvd_un.brdaddr, KVD_MAX_BOARDS), 3u);
    }
    static void TearDownTestSuite()
    {
        KVD_FreeDiagEnv();
    }
};

TEST_F(SliMode, LevelComesFromTheDriver)
{
    EXPECT_EQ(get_sli_mode(0), 3);
    EXPECT_EQ(get_sli_mode(1), 3);
    EXPECT_EQ(get_sli_mode(2), 4);
}

TEST_F(SliMode, FcoeFeatureMeansProtocolZero)
{
    EXPECT_EQ(get_protocol_mode(0), 1);
    EXPECT_EQ(get_protocol_mode(1), 0);
    EXPECT_EQ(get_protocol_mode(2), 1);
}

TEST_F(SliMode, FailedQueryGivesMinusOne)
{
    EXPECT_EQ(get_sli_mode(7), -1);
    EXPECT_EQ(get_protocol_mode(7), -1);
    EXPECT_EQ(get_sli_mode(0xFFFFFFFFu), -1);
}

} // namespace
