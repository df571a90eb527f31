// Deleting trap filters for ARP.
#include "tests/flow/trap_fixture.h"

namespace {

const int failures[] = {-1, -4, -6, -8, -18, -19, 1};

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

TEST_F(ArpFilter, EveryCallOfADeleteCanFail)
{
    CapturedOutput output;
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
