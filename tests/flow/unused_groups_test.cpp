// Freeing the groups without entries, in the list and in the chip.
#include <bcmx/field.h>

#include "tests/flow/flow_fixture.h"

namespace {

using Ids = std::vector<unsigned>;

struct UnusedGroups : FlowCard {
    /// A group with UDFs, in the chip and in the list.
    int make(const std::vector<unsigned>& udfs)
    {
        bcm_field_qset_t qset;
        BCM_FIELD_QSET_INIT(qset);
        std::vector<bcm_udf_s> words;
        for (const unsigned id : udfs) {
            bcm_field_udf_spec_t spec = {};
            EXPECT_EQ(bcmx_field_udf_create_id(&spec, static_cast<int>(id)), 0);
            EXPECT_EQ(bcmx_field_qset_add_udf(&qset, static_cast<int>(id)), 0);
            vexo_udf_usage[id] = 1;
            words.push_back({id, 4 * id, {}, {}});
        }
        int group = 0;
        EXPECT_EQ(bcmx_field_group_create(qset, 0, &group), 0);
        vexosdk_add_field_group(group, 0x1000, words);
        clear_calls();
        return group;
    }
};

TEST_F(UnusedGroups, AreDestroyedWithTheirUdfs)
{
    make({2, 1});
    EXPECT_EQ(vexosdk_remove_unused_group(), 0);
    EXPECT_EQ(take_calls(), "bcmx_field_group_destroy(1)\n"
                            "bcmx_field_udf_destroy(1)\n"
                            "bcmx_field_udf_destroy(2)\n");
    EXPECT_EQ(groups(), "");
    EXPECT_EQ(udfs_in_use(), Ids{});
}

TEST_F(UnusedGroups, AreFoundBetweenGroupsWithEntries)
{
    make({1});
    make({2});
    make({});
    vexosdk_add_entry_to_group(100, 2);
    EXPECT_EQ(vexosdk_remove_unused_group(), 0);
    EXPECT_EQ(take_calls(), "bcmx_field_group_destroy(1)\n"
                            "bcmx_field_udf_destroy(1)\n"
                            "bcmx_field_group_destroy(3)\n");
    EXPECT_EQ(groups(), "2/4096/1 2@8\n");
    EXPECT_EQ(udfs_in_use(), Ids{2});
}

TEST_F(UnusedGroups, NoneAreLeftToRemoveInAnEmptyList)
{
    EXPECT_EQ(vexosdk_remove_unused_group(), 0);
    EXPECT_EQ(take_calls(), "");
}

TEST_F(UnusedGroups, AreDroppedWithTheirUdfsWhenTheChipDoesNotKnowThem)
{
    make({1});
    bcmx_field_group_destroy(1);
    clear_calls();
    EXPECT_EQ(vexosdk_remove_unused_group(), 0);
    EXPECT_EQ(take_calls(), "bcmx_field_group_destroy(1)\nbcmx_field_udf_destroy(1)\n");
    EXPECT_EQ(groups(), "");
    EXPECT_EQ(udfs_in_use(), Ids{});
}

TEST_F(UnusedGroups, StayWhenTheirGroupCannotBeDestroyed)
{
    make({1});
    make({2});
    for (const int code : {-1, -4, -6, -8, -10, -18, -19, 1}) {
        fail("bcmx_field_group_destroy", code);
        EXPECT_EQ(vexosdk_remove_unused_group(), code);
        EXPECT_EQ(take_calls(), "bcmx_field_group_destroy(1)\n");
        EXPECT_EQ(groups(), "1/4096/0 1@4\n2/4096/0 2@8\n");
    }
}

TEST_F(UnusedGroups, StayWhenOneOfTheirUdfsCannotBeDestroyed)
{
    make({1, 2, 3});
    make({4});
    fail("bcmx_field_udf_destroy", -7, 2);
    EXPECT_EQ(vexosdk_remove_unused_group(), -7); // unlike the group, a UDF has to be there
    EXPECT_EQ(take_calls(), "bcmx_field_group_destroy(1)\n"
                            "bcmx_field_udf_destroy(1)\n"
                            "bcmx_field_udf_destroy(2)\n");
    EXPECT_EQ(groups(), "1/4096/0 1@4 2@8 3@12\n2/4096/0 4@16\n");
    EXPECT_EQ(udfs_in_use(), (Ids{2, 3, 4}));
}

TEST_F(UnusedGroups, WhoseUdfsAreHalfGoneAreInTheWayOfLaterOnes)
{
    make({1, 2});
    make({3});
    fail("bcmx_field_udf_destroy", -1, 2);
    EXPECT_EQ(vexosdk_remove_unused_group(), -1);
    clear_faults();
    EXPECT_EQ(vexosdk_remove_unused_group(), -7);
    EXPECT_EQ(groups(), "1/4096/0 1@4 2@8\n2/4096/0 3@12\n");
}

TEST_F(UnusedGroups, RemovedBeforeAFailureStayRemoved)
{
    make({1});
    make({2});
    fail("bcmx_field_group_destroy", -10, 2);
    EXPECT_EQ(vexosdk_remove_unused_group(), -10);
    EXPECT_EQ(groups(), "2/4096/0 2@8\n");
    EXPECT_EQ(udfs_in_use(), Ids{2});
}

TEST_F(UnusedGroups, WithAUdfBeyondThePoolDoNotTouchWhatLiesBehindIt)
{
    vexosdk_add_field_group(40, 0x1000, {{93, 0, {}, {}}});
    inject({.call = "bcmx_field_udf_destroy", .code = 0, .do_nothing = true});
    EXPECT_EQ(vexosdk_remove_unused_group(), 0);
    EXPECT_EQ(vexo_udf_available, 92u);
    EXPECT_EQ(groups(), "");
}

} // namespace
