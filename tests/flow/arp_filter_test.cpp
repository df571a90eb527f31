// Trap filters for ARP.
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

struct ArpFilter : FlowCard {
    bool add(unsigned ip, unsigned mask = 0xffffffff) { return sdk().add_arp_filter(ip, mask); }
    bool remove(unsigned ip, unsigned mask = 0xffffffff)
    {
        bool done = false;
        text = printed([&] { done = sdk().delete_arp_filter(ip, mask); });
        return done;
    }
    bool remove_all()
    {
        bool done = false;
        text = printed([&] { done = sdk().delete_arp_filter_all(); });
        return done;
    }

    /// What the filters share, as it is before the first.
    void forget()
    {
        bcmx_field_init();
        sdk().init_filter_group_no_udf();
        arp_fps.clear();
        arp_fps_one_vlan.clear();
        arp_group = arp_group_one_vlan = arp_udf_id = arp_udf_id_one_vlan = -1;
        clear_calls();
    }

    static std::string shared()
    {
        return std::to_string(arp_udf_id) + " " + std::to_string(arp_udf_id_one_vlan) + " " +
               std::to_string(arp_group) + " " + std::to_string(arp_group_one_vlan);
    }
};

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

TEST_F(ArpFilter, DeletingRemovesAndDestroysBothEntries)
{
    add(ip4(10, 0, 0, 1), ip4(255, 255, 255, 0));
    clear_calls();
    EXPECT_TRUE(remove(ip4(10, 0, 0, 9), ip4(255, 255, 255, 0)));
    EXPECT_EQ(take_calls(), "bcmx_field_entry_remove(1)\n"
                            "bcmx_field_entry_destroy(1)\n"
                            "bcmx_field_entry_remove(2)\n"
                            "bcmx_field_entry_destroy(2)\n");
    EXPECT_EQ(text, "");
    EXPECT_EQ(arp_fps, Filters{});
    EXPECT_EQ(arp_fps_one_vlan, Filters{});
    EXPECT_EQ(shared(), "0 1 1 2");
    EXPECT_TRUE(add(ip4(10, 0, 0, 1), ip4(255, 255, 255, 0)));
    EXPECT_EQ(arp_fps, (Filters{{ip4(10, 0, 0, 0), 3}}));
}

TEST_F(ArpFilter, DeletingOneThatWasNeverAddedDestroysEntry0)
{
    EXPECT_TRUE(remove(ip4(10, 0, 0, 1)));
    EXPECT_EQ(take_calls(), "bcmx_field_entry_remove(0)\n"
                            "bcmx_field_entry_destroy(0)\n"
                            "bcmx_field_entry_remove(0)\n"
                            "bcmx_field_entry_destroy(0)\n");
    EXPECT_EQ(text, "");
    EXPECT_EQ(arp_fps, Filters{});
    EXPECT_EQ(arp_fps_one_vlan, Filters{});
}

TEST_F(ArpFilter, OnlyEntryMinus1CountsAsNone)
{
    arp_fps[5] = -1;
    arp_fps_one_vlan[5] = -2;
    EXPECT_TRUE(remove(5));
    EXPECT_EQ(take_calls(), "bcmx_field_entry_remove(-2)\nbcmx_field_entry_destroy(-2)\n");
    EXPECT_EQ(arp_fps, Filters{});
    EXPECT_EQ(arp_fps_one_vlan, Filters{});
}

TEST_F(ArpFilter, DeletingPrintsWhatFailsAndGoesOn)
{
    const std::string cannot_remove = "failed to remove field entry.\n";
    const std::string cannot_destroy = "failed to destroy field entry.\n";
    for (const int code : failures) {
        add(ip4(10, 0, 0, 1));
        clear_faults();
        inject({.call = "bcmx_field_entry_remove", .sticky = true, .code = code});
        inject({.call = "bcmx_field_entry_destroy", .nth = 2, .code = code});
        EXPECT_TRUE(remove(ip4(10, 0, 0, 1)));
        EXPECT_EQ(text, cannot_remove + cannot_remove + cannot_destroy) << code;
        EXPECT_EQ(arp_fps, Filters{});
        EXPECT_EQ(arp_fps_one_vlan, Filters{});
        clear_faults();
    }
}

TEST_F(ArpFilter, EntriesThatTheChipForgotAreDeletedWithoutAWord)
{
    add(ip4(10, 0, 0, 1));
    inject({.call = "bcmx_field_entry_remove", .sticky = true, .code = -7});
    inject({.call = "bcmx_field_entry_destroy", .sticky = true, .code = -7});
    EXPECT_TRUE(remove(ip4(10, 0, 0, 1)));
    EXPECT_EQ(text, "");
    clear_faults();
    add(ip4(10, 0, 0, 1));
    inject({.call = "bcmx_field_entry_remove", .sticky = true, .code = -7});
    inject({.call = "bcmx_field_entry_destroy", .sticky = true, .code = -7});
    EXPECT_TRUE(remove_all());
    EXPECT_EQ(text, "");
}

TEST_F(ArpFilter, DeletingAllGoesByMapAndKey)
{
    arp_fps = {{9, 101}, {3, 102}};
    arp_fps_one_vlan = {{9, 103}, {1, -1}};
    EXPECT_TRUE(remove_all());
    EXPECT_EQ(take_calls(), "bcmx_field_entry_remove(102)\nbcmx_field_entry_destroy(102)\n"
                            "bcmx_field_entry_remove(101)\nbcmx_field_entry_destroy(101)\n"
                            "bcmx_field_entry_remove(-1)\nbcmx_field_entry_destroy(-1)\n"
                            "bcmx_field_entry_remove(103)\nbcmx_field_entry_destroy(103)\n");
    EXPECT_EQ(text, "");
    EXPECT_EQ(arp_fps, Filters{});
    EXPECT_EQ(arp_fps_one_vlan, Filters{});
    EXPECT_TRUE(remove_all());
}

TEST_F(ArpFilter, DeletingAllReportsAnyFailureAfterTheLastEntry)
{
    for (const unsigned nth : {1u, 2u}) {
        for (const int code : failures) {
            arp_fps = {{1, 101}};
            arp_fps_one_vlan = {{1, 102}};
            fail("bcmx_field_entry_remove", code, nth);
            EXPECT_FALSE(remove_all()) << nth << code;
            EXPECT_EQ(text, "failed to remove field entry\n"); // without a full stop here
            EXPECT_EQ(arp_fps.size() + arp_fps_one_vlan.size(), 0u);
            arp_fps = {{1, 101}};
            arp_fps_one_vlan = {{1, 102}};
            fail("bcmx_field_entry_destroy", code, nth);
            EXPECT_FALSE(remove_all()) << nth << code;
            EXPECT_EQ(text, "failed to destroy field entry.\n");
            EXPECT_EQ(arp_fps.size() + arp_fps_one_vlan.size(), 0u);
        }
    }
    const std::string calls = take_calls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), '\n'),
              4l * 2 * 2 * static_cast<long>(std::size(failures)));
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

TEST_F(ArpFilter, EveryCallCanFail)
{
    CapturedOutput output;
    FaultSweep([&] { return sdk().add_arp_filter(1, 1); }).before_each([&] { forget(); }).run();
    const auto fill = [] {
        arp_fps = {{1, 101}, {2, 102}};
        arp_fps_one_vlan = {{1, 103}, {2, 104}};
    };
    FaultSweep([&] { return sdk().delete_arp_filter(1, 1); })
        .before_each(fill)
        .harmless("bcmx_field_entry_remove")
        .harmless("bcmx_field_entry_destroy")
        .run();
    FaultSweep([&] { return sdk().delete_arp_filter_all(); })
        .before_each(fill)
        .harmless("bcmx_field_entry_remove", -7)
        .harmless("bcmx_field_entry_destroy", -7)
        .run();
}

} // namespace
