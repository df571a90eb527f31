// Adding trap filters for ARP.
#include <bcmx/field.h>

#include "tests/flow/trap_fixture.h"

namespace {

const std::string first_use = "bcmx_field_udf_create_id({flags=0x380, offset=10}, 0)\n"
                              "bcmx_field_udf_create_id({flags=0x388, offset=11}, 1)\n"
                              "bcmx_field_qset_add_udf(qset:[60], 0)\n"
                              "bcmx_field_group_create(qset:[60]+udf:[0], 0, out)\n"
                              "bcmx_field_qset_add_udf(qset:[60], 1)\n"
                              "bcmx_field_group_create(qset:[60]+udf:[1], 0, out)\n";

const int failures[] = {-1, -4, -6, -8, -18, -19, 1};

TEST_F(ArpFilter, TheFirstMakesUdfsAndGroupsAndTwoEntries)
{
    EXPECT_EQ(shared(), "-1 -1 -1 -1");
    EXPECT_TRUE(add(ip4(10, 0, 0, 1), ip4(255, 255, 255, 0)));
    EXPECT_EQ(take_calls(), first_use +
                                trap_calls(1, 1, "UserDefined(1, 0, 0a000000, ffffff00)\n", 9) +
                                trap_calls(2, 2, "UserDefined(2, 1, 0a000000, ffffff00)\n", 9));
    EXPECT_EQ(shared(), "0 1 1 2");
    EXPECT_EQ(arp_fps, (Filters{{ip4(10, 0, 0, 0), 1}}));
    EXPECT_EQ(arp_fps_one_vlan, (Filters{{ip4(10, 0, 0, 0), 2}}));
}

TEST_F(ArpFilter, TheFirstStartsEachUdfAfresh)
{
    clear_calls();
    add(ip4(10, 0, 0, 1));
    const std::string calls = all_calls();
    EXPECT_EQ(calls.substr(0, calls.find("bcmx_field_qset")),
              "bcm_field_udf_spec_t_init(out)\n"
              "bcmx_field_udf_spec_set(out, 0x380, 10)\n"
              "bcmx_field_udf_create_id({flags=0x380, offset=10}, 0)\n"
              "bcm_field_udf_spec_t_init(out)\n"
              "bcmx_field_udf_spec_set(out, 0x388, 11)\n"
              "bcmx_field_udf_create_id({flags=0x388, offset=11}, 1)\n");
}

TEST_F(ArpFilter, LaterOnesMakeEntriesOnly)
{
    add(ip4(10, 0, 0, 1));
    clear_calls();
    EXPECT_TRUE(add(ip4(192, 168, 1, 2)));
    EXPECT_EQ(take_calls(), trap_calls(1, 3, "UserDefined(3, 0, c0a80102, ffffffff)\n", 9) +
                                trap_calls(2, 4, "UserDefined(4, 1, c0a80102, ffffffff)\n", 9));
}

TEST_F(ArpFilter, ADuplicateSucceedsAndChangesNothing)
{
    add(ip4(10, 0, 0, 1), ip4(255, 255, 255, 0));
    clear_calls();
    EXPECT_TRUE(add(ip4(10, 0, 0, 7), ip4(255, 255, 255, 0)));
    EXPECT_TRUE(add(ip4(10, 0, 0, 0))); // the key is all that counts, not the mask
    EXPECT_EQ(take_calls(), "");
    EXPECT_EQ(arp_fps.size(), 1u);
}

TEST_F(ArpFilter, TheUntaggedEntryStaysWhenTheTaggedOneFails)
{
    fail("bcmx_field_entry_create", -6, 2);
    EXPECT_FALSE(add(ip4(10, 0, 0, 1)));
    EXPECT_EQ(arp_fps, (Filters{{ip4(10, 0, 0, 1), 1}}));
    EXPECT_EQ(arp_fps_one_vlan, Filters{});
    clear_faults();
    EXPECT_TRUE(add(ip4(10, 0, 0, 1))); // a duplicate
    EXPECT_EQ(arp_fps_one_vlan, Filters{});
}

TEST_F(ArpFilter, OneVariantCanBeAddedByItself)
{
    EXPECT_TRUE(sdk().do_add_arp_filter(ip4(10, 0, 0, 1), 0xffffffff, true));
    EXPECT_EQ(take_calls(),
              first_use + trap_calls(2, 1, "UserDefined(1, 1, 0a000001, ffffffff)\n", 9));
    EXPECT_EQ(arp_fps, Filters{});
    EXPECT_EQ(arp_fps_one_vlan, (Filters{{ip4(10, 0, 0, 1), 1}}));
    EXPECT_TRUE(sdk().do_add_arp_filter(ip4(10, 0, 0, 1), 0xffffffff, true));
    EXPECT_EQ(arp_fps_one_vlan, (Filters{{ip4(10, 0, 0, 1), 2}}));
}

TEST_F(ArpFilter, AFailureEndsTheAddAndLeavesTheEntryUnrecorded)
{
    add(ip4(10, 0, 0, 1));
    const Filters before = arp_fps;
    for (const char* call :
         {"bcmx_field_entry_create", "bcmx_field_qualify_UserDefined", "bcmx_field_qualify_IpType",
          "bcmx_field_action_add", "bcmx_field_entry_install"}) {
        for (const int code : failures) {
            clear_calls();
            fail(call, code);
            EXPECT_FALSE(add(ip4(10, 0, 0, 2))) << call << code;
            const std::string calls = take_calls();
            EXPECT_EQ(calls.rfind('\n', calls.size() - 2) + 1, calls.find(std::string(call) + "("));
            EXPECT_EQ(arp_fps, before);
            EXPECT_EQ(arp_fps_one_vlan.size(), 1u);
        }
    }
    const int left = 2 + 4 * static_cast<int>(std::size(failures));
    EXPECT_EQ(bcmx_field_entry_destroy(left), 0);
    EXPECT_EQ(bcmx_field_entry_destroy(left + 1), -7);
}

/// A call of the first use that fails, what is remembered then, and the calls of the next add.
struct FirstUse {
    const char* call;
    unsigned nth;
    const char* shared;
    std::string next;
};

TEST_F(ArpFilter, WhatTheFirstUseMadeStaysAndIsNotMadeAgain)
{
    const std::string group_0 = "bcmx_field_group_create(qset:[60]+udf:[0], 0, out)\n";
    const std::string groups_from_0 = first_use.substr(first_use.find("bcmx_field_qset"));
    const std::string entries = trap_calls(1, 1, "UserDefined(1, 0, 0a000001, ffffffff)\n", 9) +
                                trap_calls(2, 2, "UserDefined(2, 1, 0a000001, ffffffff)\n", 9);
    const std::string without_tagged =
        trap_calls(1, 1, "UserDefined(1, 0, 0a000001, ffffffff)\n", 9) +
        "bcmx_field_entry_create(-1, out)\n"; // the group of the other filters
    const FirstUse cases[] = {
        {"bcmx_field_udf_spec_set", 1, "-1 -1 -1 -1", first_use + entries},
        {"bcmx_field_udf_create_id", 1, "0 -1 -1 -1", "bcmx_field_qset_add_udf(qset:[60], 0)\n"},
        {"bcmx_field_udf_spec_set", 2, "0 -1 -1 -1",
         "bcmx_field_qset_add_udf(qset:[60], 0)\n" + group_0 +
             "bcmx_field_qset_add_udf(qset:[60], -1)\n"},
        {"bcmx_field_udf_create_id", 2, "0 1 -1 -1",
         "bcmx_field_qset_add_udf(qset:[60], 0)\n" + group_0 +
             "bcmx_field_qset_add_udf(qset:[60], 1)\n"},
        {"bcmx_field_qset_add_udf", 1, "0 1 -1 -1", groups_from_0 + entries},
        {"bcmx_field_group_create", 1, "0 1 -1 -1", groups_from_0 + entries},
        {"bcmx_field_qset_add_udf", 2, "0 1 1 -1",
         without_tagged + "bcmx_field_qualify_UserDefined(2, 1, 0a000001, ffffffff)\n"},
        {"bcmx_field_group_create", 2, "0 1 1 -1",
         without_tagged + "bcmx_field_qualify_UserDefined(2, 1, 0a000001, ffffffff)\n"},
    };
    for (const FirstUse& c : cases) {
        SCOPED_TRACE(c.call + std::to_string(c.nth));
        forget();
        fail(c.call, -6, c.nth);
        EXPECT_FALSE(add(ip4(10, 0, 0, 1)));
        EXPECT_EQ(shared(), c.shared);
        EXPECT_EQ(arp_fps, Filters{});
        clear_faults();
        clear_calls();
        EXPECT_EQ(add(ip4(10, 0, 0, 1)), c.next.find(entries) != std::string::npos);
        EXPECT_EQ(take_calls(), c.next);
    }
}

TEST_F(ArpFilter, AFlowThatHasUdf1IsInTheWayOfTheFilters)
{
    ASSERT_TRUE(add_flow(flow_of(0x1000), Udf(14, {1, 2, 3, 4})));
    EXPECT_FALSE(add(ip4(10, 0, 0, 1)));
    EXPECT_EQ(shared(), "0 1 -1 -1");
    EXPECT_TRUE(add(ip4(10, 0, 0, 1))); // deliberately on the flow's UDF from now on
    EXPECT_EQ(shared(), "0 1 2 3");
}

TEST_F(ArpFilter, AFlowDoesNotSeeThatTheFiltersHaveUdf1)
{
    ASSERT_TRUE(add(ip4(10, 0, 0, 1)));
    EXPECT_EQ(udfs_in_use(), std::vector<unsigned>{});
    EXPECT_FALSE(add_flow(flow_of(0x1000), Udf(14, {1, 2, 3, 4})));
    EXPECT_TRUE(add_flow(flow_of(0x1000), Udf(14, {1, 2, 3, 4})));
    EXPECT_EQ(groups(), "3/4096/1 2@14\n");
}

TEST_F(ArpFilter, IsNoFlow)
{
    add(ip4(10, 0, 0, 1));
    EXPECT_EQ(groups() + flows(), "");
}

TEST_F(ArpFilter, AddingSaysNothing)
{
    EXPECT_EQ(printed([&] {
                  fail("bcmx_field_udf_create_id");
                  add(1);
                  forget();
                  add(1);
                  fail("bcmx_field_entry_install");
                  add(2);
              }),
              "");
}

TEST_F(ArpFilter, EveryCallOfAnAddCanFail)
{
    FaultSweep([&] { return sdk().add_arp_filter(1, 1); }).before_each([&] { forget(); }).run();
}

} // namespace
