// Who is active in a LAG, call by call: ports as they are put in.
#include "tests/l2/lag_fixture.h"

// The SDK keeps a list that it was made to fail to free.
extern "C" const char* __lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "leak:bcmx_lplist_init\nleak:bcmx_lplist_add\nleak:bcmx_trunk_get\n";
}

namespace {

TEST_F(Lag, AddingTakesThePortsWithLinkInOrderAndFlushesThem)
{
    give_link({5, 3});
    unsigned id = 77;
    EXPECT_TRUE(sdk.create_lag(id));
    EXPECT_TRUE(sdk.set_lag_psc(id, LAG_PSC_SRC_IP));
    calls_made();
    EXPECT_TRUE(sdk.add_ports_to_lag(id, ports({4, 5, 6, 3})));
    EXPECT_EQ(calls_made(), "bcmx_port_link_status_get(4, out)\n"
                            "bcmx_port_link_status_get(5, out)\n"
                            "bcmx_port_link_status_get(6, out)\n"
                            "bcmx_port_link_status_get(3, out)\n"
                            "bcmx_trunk_psc_get(0, out)\n"
                            "bcmx_trunk_set(0, " +
                                trunk_info(4, "5, 3", "5") +
                                ")\n"
                                "bcmx_l2_addr_delete_by_port(5, 0)\n"
                                "bcmx_l2_addr_delete_by_port(3, 0)\n");
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Lag, AddingReplacesTheMembersThatWereThere)
{
    give_link({3, 4, 5});
    const unsigned id = make_lag({3});
    EXPECT_TRUE(sdk.add_ports_to_lag(id, ports({4, 5})));
    calls_made();
    EXPECT_TRUE(sdk.port_add_to_egress_list(port(3)));
    EXPECT_NE(calls_made().find("ports=[4, 5, 3]"), std::string::npos);
}

TEST_F(Lag, AddingFlushesBeforeItFreesItsList)
{
    give_link({3});
    unsigned id = 77;
    EXPECT_TRUE(sdk.create_lag(id));
    calls_made();
    EXPECT_TRUE(sdk.add_ports_to_lag(id, ports({3})));
    EXPECT_EQ(vexosim::all_calls(), "bcmx_lplist_init(out, 54, 0)\n"
                                    "bcmx_port_link_status_get(3, out)\n"
                                    "bcmx_lplist_add([], 3)\n"
                                    "bcmx_trunk_psc_get(0, out)\n"
                                    "bcmx_trunk_set(0, " +
                                        trunk_info(3, "3", "3") +
                                        ")\n"
                                        "bcmx_l2_addr_delete_by_port(3, 0)\n"
                                        "bcmx_lplist_free([3])\n");
}

TEST_F(Lag, AddingOnlyPortsWithoutLinkSucceedsAndLeavesTheTrunkAlone)
{
    give_link({3});
    make_lag({3});
    EXPECT_TRUE(sdk.add_ports_to_lag(0, ports({4, 5})));
    EXPECT_EQ(calls_made(), "bcmx_port_link_status_get(4, out)\n"
                            "bcmx_port_link_status_get(5, out)\n");
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Lag, AddingOnlyPortsWithoutLinkDoesNotDependOnFreeingItsList)
{
    fail_next("bcmx_lplist_free", -1);
    EXPECT_TRUE(sdk.add_ports_to_lag(0, ports({4})));
}

TEST_F(Lag, AddingNoPortsSucceedsEvenWithoutTheLag)
{
    EXPECT_TRUE(sdk.add_ports_to_lag(99, {}));
    EXPECT_EQ(calls_made(), "");
}

TEST_F(Lag, AddingSkipsAPortThatDoesNotExistOrWhoseLinkCannotBeRead)
{
    give_link({3, 4});
    unsigned id = 77;
    EXPECT_TRUE(sdk.create_lag(id));
    calls_made();
    fail_next("bcmx_port_link_status_get", -9, 2);
    EXPECT_TRUE(sdk.add_ports_to_lag(id, {Mp(1, 5), port(3), port(4)}));
    EXPECT_EQ(calls_made(), "bcmx_port_link_status_get(lport:-1, out)\n"
                            "bcmx_port_link_status_get(3, out)\n"
                            "bcmx_port_link_status_get(4, out)\n"
                            "bcmx_trunk_psc_get(0, out)\n"
                            "bcmx_trunk_set(0, " +
                                trunk_info(3, "4", "4") +
                                ")\n"
                                "bcmx_l2_addr_delete_by_port(4, 0)\n");
}

TEST_F(Lag, AddingStopsAtACallThatFails)
{
    give_link({3});
    unsigned id = 77;
    EXPECT_TRUE(sdk.create_lag(id));
    calls_made();
    const std::string read = "bcmx_port_link_status_get(3, out)\nbcmx_trunk_psc_get(0, out)\n";
    for (const int code : codes_except({})) {
        fail_next("bcmx_lplist_init", code);
        EXPECT_FALSE(sdk.add_ports_to_lag(id, ports({3})));
        EXPECT_EQ(calls_made(), "");
        fail_next("bcmx_trunk_psc_get", code);
        EXPECT_FALSE(sdk.add_ports_to_lag(id, ports({3})));
        EXPECT_EQ(calls_made(), read);
        fail_next("bcmx_trunk_set", code);
        EXPECT_FALSE(sdk.add_ports_to_lag(id, ports({3})));
        EXPECT_EQ(calls_made(), read + "bcmx_trunk_set(0, " + trunk_info(3, "3", "3") + ")\n");
    }
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Lag, AddingDoesNotDependOnTheFlush)
{
    give_link({3, 4});
    unsigned id = 77;
    EXPECT_TRUE(sdk.create_lag(id));
    fail_next("bcmx_l2_addr_delete_by_port", -1);
    EXPECT_TRUE(sdk.add_ports_to_lag(id, ports({3, 4})));
    EXPECT_NE(calls_made().find("bcmx_l2_addr_delete_by_port(4, 0)\n"), std::string::npos);
}

TEST_F(Lag, AddingEndsWithTheResultOfFreeingItsList)
{
    give_link({3});
    unsigned id = 77;
    EXPECT_TRUE(sdk.create_lag(id));
    fail_next("bcmx_lplist_free", -1);
    EXPECT_FALSE(sdk.add_ports_to_lag(id, ports({3})));
}

TEST_F(Lag, AddingGoesOnWhenTheListDoesNotTakeAPort)
{
    give_link({3, 4});
    unsigned id = 77;
    EXPECT_TRUE(sdk.create_lag(id));
    calls_made();
    fail_next("bcmx_lplist_add", -2, 2);
    EXPECT_TRUE(sdk.add_ports_to_lag(id, ports({3, 4})));
    const std::string made = calls_made();
    EXPECT_NE(made.find(trunk_info(3, "3", "3")), std::string::npos) << made;
    EXPECT_NE(made.find("bcmx_l2_addr_delete_by_port(4, 0)\n"), std::string::npos) << made;
}

TEST_F(Lag, AddingMoreThanEightMembersIsForTheChipToRefuse)
{
    give_link({1, 2, 3, 4, 5, 6, 7, 8, 9});
    unsigned id = 77;
    EXPECT_TRUE(sdk.create_lag(id));
    EXPECT_FALSE(sdk.add_ports_to_lag(id, ports({1, 2, 3, 4, 5, 6, 7, 8, 9})));
    EXPECT_TRUE(sdk.add_ports_to_lag(id, ports({1, 2, 3, 4, 5, 6, 7, 8})));
}

TEST_F(Lag, APortOfAnotherLagIsForTheChipToRefuseAndTheLagStaysAsItWas)
{
    give_link({3, 4, 5});
    make_lag({3});
    const unsigned second = make_lag({5});
    Mps both = ports({3, 6}); // 6 is not active anywhere
    EXPECT_TRUE(add_lag_member(0, lag_list, both));
    EXPECT_TRUE(add_lag_member(second, lag_list, both));
    EXPECT_FALSE(sdk.add_ports_to_lag(second, ports({4, 3})));
    EXPECT_FALSE(sdk.port_add_to_egress_list(port(3)));
    calls_made();
    EXPECT_TRUE(sdk.port_remove_from_egress_list(port(6))); // writes them as they are
    const std::string made = calls_made();
    EXPECT_NE(made.find("bcmx_trunk_set(1, " + trunk_info(3, "5", "5")), std::string::npos) << made;
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Lag, ANinthActiveMemberIsForTheChipToRefuse)
{
    give_link({1, 2, 3, 4, 5, 6, 7, 8, 9});
    const unsigned id = make_lag({1, 2, 3, 4, 5, 6, 7, 8});
    Mps ninth = ports({9});
    EXPECT_TRUE(add_lag_member(id, lag_list, ninth));
    EXPECT_FALSE(sdk.port_add_to_egress_list(port(9)));
    EXPECT_EQ(lists_left(), 0u);
    EXPECT_TRUE(sdk.port_remove_from_egress_list(port(8)));
    EXPECT_TRUE(sdk.port_add_to_egress_list(port(9)));
}

} // namespace
