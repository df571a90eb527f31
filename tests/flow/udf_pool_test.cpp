#include "flow/udf_pool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

namespace {

using Ids = std::vector<unsigned>;

struct UdfPool : testing::Test {
    UdfPool() { vexolc::reset_udf_pool(); }

    static void use(unsigned from, unsigned to)
    {
        std::fill(vexo_udf_usage + from, vexo_udf_usage + to + 1, uint8_t{1});
    }

    static long used()
    {
        return std::count(std::begin(vexo_udf_usage), std::end(vexo_udf_usage), 1);
    }
};

TEST_F(UdfPool, HandsOutTheLowestFreeIds)
{
    use(1, 2);
    use(4, 4);
    Ids ids;
    EXPECT_EQ(alloc_udf_ids(3, ids), 0);
    EXPECT_EQ(ids, (Ids{3, 5, 6}));
    EXPECT_EQ(vexo_udf_usage[3], 1);
    EXPECT_EQ(vexo_udf_usage[5], 1);
    EXPECT_EQ(vexo_udf_usage[6], 1);
    EXPECT_EQ(vexo_udf_usage[7], 0);
}

TEST_F(UdfPool, HandsOutAll92ButNever0)
{
    Ids ids;
    EXPECT_EQ(alloc_udf_ids(92, ids), 0);
    EXPECT_EQ(ids.size(), 92u);
    EXPECT_EQ(ids.front(), 1u);
    EXPECT_EQ(ids.back(), 92u);
    EXPECT_EQ(used(), 93);
}

TEST_F(UdfPool, ARequestFor93IsOutOfResourcesAndTakesNothing)
{
    Ids ids;
    EXPECT_EQ(alloc_udf_ids(93, ids), -14);
    EXPECT_TRUE(ids.empty());
    EXPECT_EQ(used(), 1);
}

TEST_F(UdfPool, ARequestForNoneIsABadParameter)
{
    Ids ids;
    EXPECT_EQ(alloc_udf_ids(0, ids), -4);
    EXPECT_TRUE(ids.empty());
}

TEST_F(UdfPool, AShortfallSucceedsTakesNothingAndLeavesWhatWasFree)
{
    use(1, 91);
    Ids ids;
    EXPECT_EQ(alloc_udf_ids(2, ids), 0);
    EXPECT_EQ(ids, Ids{92});
    EXPECT_EQ(vexo_udf_usage[92], 0);
    EXPECT_EQ(used(), 92);
}

TEST_F(UdfPool, AShortfallFreesOnlyTheIdsOfTheRequest)
{
    use(3, 92);
    Ids ids = {50};
    EXPECT_EQ(alloc_udf_ids(3, ids), 0);
    EXPECT_EQ(ids, (Ids{50, 1, 2}));
    EXPECT_EQ(vexo_udf_usage[50], 1);
    EXPECT_EQ(used(), 91);
}

TEST_F(UdfPool, TheBoundStaysWhenIdsAreTaken)
{
    Ids ids;
    alloc_udf_ids(40, ids);
    EXPECT_EQ(vexo_udf_available, 92u);
    EXPECT_EQ(vexo_udf_get_available(), 92u);
    vexo_udf_available = 5;
    EXPECT_EQ(vexo_udf_get_available(), 5u);
    EXPECT_EQ(alloc_udf_ids(6, ids), -14);
}

} // namespace
