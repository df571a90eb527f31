// Who is active in a LAG, call by call: ports as they are put in and taken out.
#include "tests/l2/lag_fixture.h"

// The SDK keeps a list that it was made to fail to free.
extern "C" const char* __lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "leak:bcmx_lplist_init\nleak:bcmx_lplist_add\nleak:bcmx_trunk_get\n";
}

namespace {

std::string info(int psc, const std::string& members, const std::string& designated)
{
    return "{psc=" + std::to_string(psc) + ", ports=[" + members + "], dlf_port=" + designated +
           ", mc_port=" + designated + ", ipmc_port=" + designated + "}";
}

const std::string empty_0 = "bcmx_l2_addr_delete_by_trunk(0, 1)\n"
                            "bcmx_trunk_destroy(0)\n"
                            "bcmx_trunk_create_id(0)\n";

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
                                info(4, "5, 3", "5") +
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
                                        info(3, "3", "3") +
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
                                info(3, "4", "4") +
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
        EXPECT_EQ(calls_made(), read + "bcmx_trunk_set(0, " + info(3, "3", "3") + ")\n");
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
    EXPECT_NE(made.find(info(3, "3", "3")), std::string::npos) << made;
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

TEST_F(Lag, DeletingBlocksTheLeavingMembersAndKeepsTheOthers)
{
    give_link({3, 4, 5});
    const unsigned id = make_lag({3, 4, 5});
    EXPECT_TRUE(sdk.delete_ports_from_lag(id, ports({6, 5, 3})));
    EXPECT_EQ(calls_made(), "bcmx_trunk_get(0, out)\n"
                            "bcmx_port_stp_set(5, 1)\n"
                            "bcmx_port_stp_set(3, 1)\n"
                            "bcmx_trunk_set(0, " +
                                info(3, "4", "3") + ")\n");
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Lag, DeletingRemovesEachPortOnceAndFreesItsOwnListFirst)
{
    give_link({3, 4});
    const unsigned id = make_lag({3, 4});
    EXPECT_TRUE(sdk.delete_ports_from_lag(id, ports({3})));
    const std::string made = vexosim::all_calls();
    EXPECT_NE(made.find("bcmx_port_stp_set(3, 1)\n"
                        "bcmx_lplist_port_remove([3, 4], 3, 0)\n"
                        "bcmx_trunk_set(0, " +
                        info(3, "4", "3") +
                        ")\n"
                        "bcmx_lplist_free([3])\n"
                        "bcmx_lplist_free([4])\n"),
              std::string::npos)
        << made;
}

TEST_F(Lag, DeletingAPortThatIsGivenTwiceCountsItTwice)
{
    give_link({3, 4});
    for (const std::vector<unsigned>& leaving : {std::vector<unsigned>{3, 3}, {3, 3, 3}}) {
        const unsigned id = make_lag({3, 4});
        EXPECT_TRUE(sdk.delete_ports_from_lag(id, ports(leaving)));
        EXPECT_NE(calls_made().find(empty_0), std::string::npos);
        EXPECT_TRUE(sdk.delete_lag(id));
        EXPECT_TRUE(delete_lag_from_list(id, lag_list));
    }
}

TEST_F(Lag, DeletingPortsThatAreNoMembersWritesTheTrunkAsItWas)
{
    give_link({3});
    const unsigned id = make_lag({3});
    EXPECT_TRUE(sdk.delete_ports_from_lag(id, ports({6})));
    EXPECT_EQ(calls_made(),
              "bcmx_trunk_get(0, out)\nbcmx_trunk_set(0, " + info(3, "3", "3") + ")\n");
}

TEST_F(Lag, DeletingTheLastMembersMakesTheTrunkAnewUnderItsId)
{
    give_link({3, 4});
    const unsigned id = make_lag({3, 4});
    EXPECT_TRUE(sdk.delete_ports_from_lag(id, ports({4, 3})));
    EXPECT_EQ(calls_made(), "bcmx_trunk_get(0, out)\n"
                            "bcmx_port_stp_set(4, 1)\n"
                            "bcmx_port_stp_set(3, 1)\n" +
                                empty_0);
    EXPECT_EQ(lists_left(), 0u);
    unsigned other = 77;
    EXPECT_TRUE(sdk.create_lag(other));
    EXPECT_EQ(other, 1u); // id 0 is taken
}

TEST_F(Lag, DeletingFromALagThatTheBookkeepingDoesNotKnowFailsWithoutACall)
{
    unsigned id = 77;
    EXPECT_TRUE(sdk.create_lag(id));
    calls_made();
    EXPECT_FALSE(sdk.delete_ports_from_lag(id, ports({3})));
    EXPECT_EQ(calls_made(), "");
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Lag, DeletingNeedsTwoLists)
{
    give_link({3});
    const unsigned id = make_lag({3});
    for (const unsigned nth : {1u, 2u}) {
        fail_next("bcmx_lplist_init", -2, nth);
        EXPECT_FALSE(sdk.delete_ports_from_lag(id, ports({3}))) << nth;
        EXPECT_EQ(calls_made(), "");
    }
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Lag, DeletingStopsAtACallThatFails)
{
    give_link({3, 4});
    const unsigned id = make_lag({3, 4});
    for (const int code : codes_except({})) {
        fail_next("bcmx_trunk_get", code);
        EXPECT_FALSE(sdk.delete_ports_from_lag(id, ports({3}))) << code;
        EXPECT_EQ(calls_made(), "bcmx_trunk_get(0, out)\n");
        fail_next("bcmx_trunk_set", code);
        EXPECT_FALSE(sdk.delete_ports_from_lag(id, ports({3}))) << code;
        EXPECT_NE(calls_made().find("bcmx_port_stp_set(3, 1)\n"), std::string::npos);
    }
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Lag, EmptyingStopsAtACallThatFails)
{
    const std::string start = "bcmx_trunk_get(0, out)\nbcmx_port_stp_set(3, 1)\n";
    const std::string flush = "bcmx_l2_addr_delete_by_trunk(0, 1)\n";
    give_link({3});
    const unsigned id = make_lag({3});
    fail_next("bcmx_l2_addr_delete_by_trunk", -7);
    EXPECT_FALSE(sdk.delete_ports_from_lag(id, ports({3})));
    EXPECT_EQ(calls_made(), start + flush);
    fail_next("bcmx_trunk_destroy", -7);
    EXPECT_FALSE(sdk.delete_ports_from_lag(id, ports({3})));
    EXPECT_EQ(calls_made(), start + flush + "bcmx_trunk_destroy(0)\n");
    fail_next("bcmx_trunk_create_id", -8);
    EXPECT_FALSE(sdk.delete_ports_from_lag(id, ports({3})));
    EXPECT_EQ(calls_made(), start + empty_0);
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Lag, DeletingDoesNotDependOnBlockingNorOnTheLists)
{
    give_link({3, 4});
    const unsigned id = make_lag({3, 4});
    fail_next("bcmx_port_stp_set", -1);
    EXPECT_TRUE(sdk.delete_ports_from_lag(id, ports({3})));
    fail_next("bcmx_lplist_port_remove", -1);
    EXPECT_TRUE(sdk.delete_ports_from_lag(id, ports({6})));
    fail_next("bcmx_lplist_add", -1);
    EXPECT_TRUE(sdk.delete_ports_from_lag(id, ports({6})));
}

TEST_F(Lag, DeletingFailsWhenAListCannotBeFreed)
{
    give_link({3, 4});
    const unsigned id = make_lag({3, 4});
    for (const unsigned nth : {2u, 3u}) { // the first is the room for the members
        fail_next("bcmx_lplist_free", -1, nth);
        EXPECT_FALSE(sdk.delete_ports_from_lag(id, ports({3}))) << nth;
    }
    vexosim::clear_faults();
    EXPECT_TRUE(sdk.delete_ports_from_lag(id, ports({3})));
}

} // namespace
