// VLAN operations call by call: ports joining and leaving. Every change is computed from the chip's
// own view.
#include "tests/l2/vlan_fixture.h"

#include "platform/port_map.h"

// The SDK keeps a list that it was made to fail to free.
extern "C" const char* __lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "leak:bcmx_lplist_init\nleak:bcmx_lplist_add\n";
}

namespace {

TEST_F(Vlan, AddingPortsMakesThemMembersAsListed)
{
    ASSERT_TRUE(sdk.create_vlan(10));
    calls_made();
    EXPECT_TRUE(sdk.add_ports_to_vlan(10, ports({4, 3}), ports({50, 0})));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_get(10, out, out)\n"
                            "bcmx_vlan_port_remove(10, [])\n"
                            "bcmx_vlan_port_add(10, [4, 3, 50, 0], [50, 0])\n");
    EXPECT_EQ(members(10), "tagged 3/53 0/3 0/4 untagged 2/50 0/0 ");
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Vlan, AddingAMemberWithTheOtherTaggingTakesItOutFirst)
{
    make_vlan_10();
    EXPECT_TRUE(sdk.add_ports_to_vlan(10, ports({5}), ports({3})));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_get(10, out, out)\n"
                            "bcmx_vlan_port_remove(10, [3, 5])\n"
                            "bcmx_vlan_port_add(10, [5, 3], [3])\n");
    EXPECT_EQ(members(10), "tagged 3/53 0/4 0/5 untagged 0/3 0/6 ");
}

TEST_F(Vlan, AddingAMemberWithTheSameTaggingTakesNothingOut)
{
    make_vlan_10();
    EXPECT_TRUE(sdk.add_ports_to_vlan(10, ports({3}), ports({5})));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_get(10, out, out)\n"
                            "bcmx_vlan_port_remove(10, [])\n"
                            "bcmx_vlan_port_add(10, [3, 5], [5])\n");
    EXPECT_EQ(members(10), "tagged 3/53 0/3 0/4 untagged 0/5 0/6 ");
}

TEST_F(Vlan, AddingNoPortsStillReadsRemovesAndAdds)
{
    make_vlan_10();
    EXPECT_TRUE(sdk.add_ports_to_vlan(10, {}, {}));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_get(10, out, out)\n"
                            "bcmx_vlan_port_remove(10, [])\n"
                            "bcmx_vlan_port_add(10, [], [])\n");
    EXPECT_EQ(members(10), "tagged 3/53 0/3 0/4 untagged 0/5 0/6 ");
}

TEST_F(Vlan, APortOfBothListsIsMovedOnceAndEndsUntagged)
{
    make_vlan_10();
    EXPECT_TRUE(sdk.add_ports_to_vlan(10, ports({3, 5}), ports({3, 5})));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_get(10, out, out)\n"
                            "bcmx_vlan_port_remove(10, [3, 5])\n"
                            "bcmx_vlan_port_add(10, [3, 5, 3, 5], [3, 5])\n");
    EXPECT_EQ(members(10), "tagged 3/53 0/4 untagged 0/3 0/5 0/6 ");
}

TEST_F(Vlan, TheCpuPortCanBeAddedLikeAnyOther)
{
    make_vlan_10();
    EXPECT_TRUE(sdk.add_ports_to_vlan(10, {}, ports({53})));
    EXPECT_EQ(members(10), "tagged 0/3 0/4 untagged 3/53 0/5 0/6 ");
}

TEST_F(Vlan, AddingToAnAbsentVlanFailsAfterReadingIt)
{
    EXPECT_FALSE(sdk.add_ports_to_vlan(20, ports({3}), {}));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_get(20, out, out)\n");
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Vlan, AnUnmappedPortIsHandedToTheChipAsMinusOne)
{
    make_vlan_10();
    EXPECT_FALSE(sdk.add_ports_to_vlan(10, {port(7), Mp(1, 0)}, {}));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_get(10, out, out)\n"
                            "bcmx_vlan_port_remove(10, [])\n"
                            "bcmx_vlan_port_add(10, [7, lport:-1], [])\n");
    EXPECT_FALSE(sdk.delete_ports_from_vlan(10, {port(3), Mp(1, 0)}));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_remove(10, [3, lport:-1])\n");
    EXPECT_EQ(members(10), "tagged 3/53 0/3 0/4 untagged 0/5 0/6 ");
}

TEST_F(Vlan, AddingMakesItsListsInOrderAndFreesAllBeforeNewUntagged)
{
    make_vlan_10();
    vexosim::clear_calls();
    EXPECT_TRUE(sdk.add_ports_to_vlan(10, ports({5}), ports({3})));
    const std::string log = vexosim::all_calls();
    EXPECT_EQ(log.substr(0, log.find("bcmx_vlan_port_get")), "bcmx_lplist_init(out, 54, 0)\n"
                                                             "bcmx_lplist_init(out, 54, 0)\n"
                                                             "bcmx_lplist_init(out, 54, 0)\n"
                                                             "bcmx_lplist_add([], 5)\n"
                                                             "bcmx_lplist_add([], 5)\n"
                                                             "bcmx_lplist_add([], 3)\n"
                                                             "bcmx_lplist_add([5], 3)\n"
                                                             "bcmx_lplist_init(out, 54, 0)\n"
                                                             "bcmx_lplist_init(out, 54, 0)\n"
                                                             "bcmx_lplist_init(out, 54, 0)\n");
    EXPECT_LT(log.find("bcmx_lplist_free([5, 3])"), log.find("bcmx_lplist_free([3])"));
}

TEST_F(Vlan, ListsHaveRoomForThePortsOfTheInstance)
{
    make_vlan_10();
    sdk.port_count = 7;
    vexosim::clear_calls();
    Mps tagged;
    Mps untagged;
    EXPECT_TRUE(sdk.add_ports_to_vlan(10, ports({7}), {}));
    EXPECT_TRUE(sdk.delete_ports_from_vlan(10, ports({7})));
    EXPECT_TRUE(sdk.get_vlan_info(10, tagged, untagged));
    std::size_t lists = 0;
    const std::string log = vexosim::all_calls();
    const std::string made = "bcmx_lplist_init(out, 7, 0)\n";
    for (auto at = log.find(made); at != std::string::npos; at = log.find(made, at + 1))
        ++lists;
    EXPECT_EQ(lists, 6u + 1 + 2);
    EXPECT_EQ(log.find("bcmx_lplist_init(out, 54"), std::string::npos);
}

TEST_F(Vlan, AddingStopsAtTheListThatCannotBeMade)
{
    make_vlan_10();
    for (unsigned nth = 1; nth <= 6; ++nth) {
        fail_next("bcmx_lplist_init", -2, nth);
        vexosim::clear_calls();
        EXPECT_FALSE(sdk.add_ports_to_vlan(10, ports({5}), ports({3}))) << nth;
        EXPECT_EQ(calls_made(), "");
        EXPECT_EQ(lists_left(), 0u);
    }
}

TEST_F(Vlan, AddingStopsAtTheStepThatFailsAndUndoesNothing)
{
    make_vlan_10();
    fail_next("bcmx_vlan_port_get");
    EXPECT_FALSE(sdk.add_ports_to_vlan(10, ports({5}), ports({3})));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_get(10, out, out)\n");
    fail_next("bcmx_vlan_port_remove");
    EXPECT_FALSE(sdk.add_ports_to_vlan(10, ports({5}), ports({3})));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_get(10, out, out)\n"
                            "bcmx_vlan_port_remove(10, [3, 5])\n");
    EXPECT_EQ(members(10), "tagged 3/53 0/3 0/4 untagged 0/5 0/6 ");
    fail_next("bcmx_vlan_port_add");
    EXPECT_FALSE(sdk.add_ports_to_vlan(10, ports({5}), ports({3})));
    EXPECT_EQ(members(10), "tagged 3/53 0/4 untagged 0/6 ");
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Vlan, AddingFailsWhenAPortCannotBeListed)
{
    make_vlan_10();
    for (unsigned nth = 1; nth <= 6; ++nth) { // four into the new lists, two into the moved ones
        fail_next("bcmx_lplist_add", -2, nth);
        EXPECT_FALSE(sdk.add_ports_to_vlan(10, ports({5}), ports({3}))) << nth;
        EXPECT_EQ(calls_made().find("bcmx_vlan_port_add"), std::string::npos);
        EXPECT_EQ(members(10), "tagged 3/53 0/3 0/4 untagged 0/5 0/6 ");
    }
}

TEST_F(Vlan, AddingFailsWhenAListCannotBeFreedButThePortsAreIn)
{
    make_vlan_10();
    const std::size_t last = 2;
    for (unsigned nth = 1; nth <= last; ++nth) {
        // Moved, tagged and untagged members are freed before, with results that do not count.
        fail_next("bcmx_lplist_free", -1, 3 + nth);
        EXPECT_FALSE(sdk.add_ports_to_vlan(10, ports({5}), ports({3}))) << nth;
        vexosim::clear_faults();
        EXPECT_EQ(members(10), "tagged 3/53 0/4 0/5 untagged 0/3 0/6 ");
    }
    for (const unsigned nth : {1u, 2u, 3u, 6u}) {
        fail_next("bcmx_lplist_free", -1, nth);
        EXPECT_TRUE(sdk.add_ports_to_vlan(10, ports({5}), ports({3}))) << nth;
    }
}

TEST_F(Vlan, DeletingPortsTakesThemOut)
{
    make_vlan_10();
    EXPECT_TRUE(sdk.delete_ports_from_vlan(10, ports({5, 3})));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_remove(10, [5, 3])\n");
    EXPECT_EQ(members(10), "tagged 3/53 0/4 untagged 0/6 ");
    EXPECT_TRUE(sdk.delete_ports_from_vlan(10, {}));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_remove(10, [])\n");
}

TEST_F(Vlan, DeletingPortsThatAreNotMembersIsTheChipsToJudge)
{
    make_vlan_10();
    EXPECT_TRUE(sdk.delete_ports_from_vlan(10, ports({20})));
    EXPECT_FALSE(sdk.delete_ports_from_vlan(20, ports({3})));
}

TEST_F(Vlan, DeletingPortsMakesAndFreesOneList)
{
    make_vlan_10();
    vexosim::clear_calls();
    EXPECT_TRUE(sdk.delete_ports_from_vlan(10, ports({5, 3})));
    EXPECT_EQ(vexosim::all_calls(), "bcmx_lplist_init(out, 54, 0)\n"
                                    "bcmx_lplist_add([], 5)\n"
                                    "bcmx_lplist_add([5], 3)\n"
                                    "bcmx_vlan_port_remove(10, [5, 3])\n"
                                    "bcmx_lplist_free([5, 3])\n");
}

TEST_F(Vlan, DeletingPortsFailsAtAnyStep)
{
    make_vlan_10();
    for (const char* call :
         {"bcmx_lplist_init", "bcmx_lplist_add", "bcmx_vlan_port_remove", "bcmx_lplist_free"}) {
        for (const int code : codes_except({})) {
            fail_next(call, code);
            EXPECT_FALSE(sdk.delete_ports_from_vlan(10, ports({5}))) << call << " " << code;
        }
    }
}

TEST_F(Vlan, AddingTheCpuPortMakesItATaggedMember)
{
    make_vlan_10();
    sdk.delete_cpu_port_from_vlan(10);
    calls_made();
    EXPECT_TRUE(sdk.add_cpu_port_to_vlan(10));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_add(10, [cpu], [])\n");
    EXPECT_EQ(members(10), "tagged 3/53 0/3 0/4 untagged 0/5 0/6 ");
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Vlan, AddingTheCpuPortFailsForAnyCodeAnExistingEntryIncluded)
{
    make_vlan_10();
    for (const int code : codes_except({})) {
        fail_next("bcmx_vlan_port_add", code);
        EXPECT_FALSE(sdk.add_cpu_port_to_vlan(10)) << code;
    }
}

TEST_F(Vlan, DeletingTheCpuPortTakesItOut)
{
    make_vlan_10();
    EXPECT_TRUE(sdk.delete_cpu_port_from_vlan(10));
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_remove(10, [cpu])\n");
    EXPECT_EQ(members(10), "tagged 0/3 0/4 untagged 0/5 0/6 ");
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Vlan, DeletingTheCpuPortFromAnAbsentVlanSucceeds)
{
    EXPECT_TRUE(sdk.delete_cpu_port_from_vlan(20));
    for (const int code : codes_except({-7})) {
        fail_next("bcmx_vlan_port_remove", code);
        EXPECT_FALSE(sdk.delete_cpu_port_from_vlan(10)) << code;
    }
}

struct CpuPort : Vlan, testing::WithParamInterface<bool> {
    bool change(unsigned vid)
    {
        return GetParam() ? sdk.add_cpu_port_to_vlan(vid) : sdk.delete_cpu_port_from_vlan(vid);
    }

    std::string output_of_change(unsigned vid)
    {
        testing::internal::CaptureStdout();
        EXPECT_FALSE(change(vid));
        return testing::internal::GetCapturedStdout();
    }
};
INSTANTIATE_TEST_SUITE_P(All, CpuPort, testing::Bool(),
                         [](const auto& param) { return param.param ? "Add" : "Delete"; });

TEST_P(CpuPort, WithoutACpuPortAMessageIsPrintedAlwaysAndNothingIsCalled)
{
    const int lport = vexo_user_port_to_lport[53];
    vexo_user_port_to_lport[53] = -1;
    EXPECT_EQ(output_of_change(10), "failed to get cpu port.\n");
    EXPECT_EQ(vexosim::all_calls(), "");
    vexo_user_port_to_lport[53] = lport;
}

TEST_P(CpuPort, AFailureIsPrintedInTheWordsOfAddingWhileTracingOnly)
{
    vexosim::inject(
        {.call = GetParam() ? "bcmx_vlan_port_add" : "bcmx_vlan_port_remove", .sticky = true});
    EXPECT_EQ(output_of_change(10), "");
    sdk.set_trace("trace_level_sdk", true);
    EXPECT_EQ(output_of_change(10), "failed to add cpu port to vlan 10 when creating vlan\n");
    EXPECT_EQ(output_of_change(0x1000a),
              "failed to add cpu port to vlan 65546 when creating vlan\n");
    EXPECT_EQ(output_of_change(4294967295u),
              "failed to add cpu port to vlan 4294967295 when creating vlan\n");
    sdk.set_trace("trace_level_sdk", false);
}

TEST_P(CpuPort, FailsSilentlyWhenThePortCannotBeListed)
{
    sdk.set_trace("trace_level_sdk", true);
    fail_next("bcmx_lplist_add", -2);
    EXPECT_EQ(output_of_change(10), "");
    EXPECT_EQ(calls_made(), "");
    sdk.set_trace("trace_level_sdk", false);
}

} // namespace
