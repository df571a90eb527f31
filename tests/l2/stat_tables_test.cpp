#include "l2/stat_tables.h"

#include <gtest/gtest.h>

namespace {

struct StatTables : testing::Test {
    StatTables()
    {
        vexolc::fill_stat_to_stat_val();
        vexolc::fill_brief_to_port_stat();
    }

    int32_t out = 1234;
};

TEST(StatTablesAtLoad, AreZero)
{
    for (int32_t entry : stat_to_stat_val)
        EXPECT_EQ(entry, 0);
    for (int32_t entry : brief_to_port_stat)
        EXPECT_EQ(entry, 0);
}

TEST_F(StatTables, FindTheSdksCountersOnEitherSideOfTheGap)
{
    EXPECT_TRUE(vexolc::find_stat_val(1, &out));
    EXPECT_EQ(out, 0);
    EXPECT_TRUE(vexolc::find_stat_val(33, &out));
    EXPECT_EQ(out, 32);
    EXPECT_TRUE(vexolc::find_stat_val(34, &out));
    EXPECT_EQ(out, 35);
    EXPECT_TRUE(vexolc::find_stat_val(76, &out));
    EXPECT_EQ(out, 77);
}

TEST_F(StatTables, HaveNoCounterAtZero)
{
    EXPECT_EQ(stat_to_stat_val[0], -1);
    EXPECT_EQ(brief_to_port_stat[0], 0);
}

TEST_F(StatTables, FindTheSdksPortCounters)
{
    for (int type = 1; type <= 4; ++type) {
        EXPECT_TRUE(vexolc::find_port_stat(type, &out));
        EXPECT_EQ(out, type - 1);
    }
}

TEST_F(StatTables, FindNothingOutsideAndWriteNothing)
{
    for (int type : {-1, 0, 77})
        EXPECT_FALSE(vexolc::find_stat_val(type, &out)) << type;
    for (int type : {-1, 0, 5})
        EXPECT_FALSE(vexolc::find_port_stat(type, &out)) << type;
    EXPECT_EQ(out, 1234);
}

TEST_F(StatTables, FindNothingForANullOutput)
{
    EXPECT_FALSE(vexolc::find_stat_val(1, nullptr));
    EXPECT_FALSE(vexolc::find_port_stat(1, nullptr));
}

} // namespace
