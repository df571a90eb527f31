// Who is active in a LAG, call by call: ports as they are taken out.
#include "tests/l2/lag_fixture.h"

namespace {

const std::string empty_0 = "bcmx_l2_addr_delete_by_trunk(0, 1)\n"
                            "bcmx_trunk_destroy(0)\n"
                            "bcmx_trunk_create_id(0)\n";

TEST_F(Lag, DeletingBlocksTheLeavingMembersAndKeepsTheOthers)
{
    give_link({3, 4, 5});
    const unsigned id = make_lag({3, 4, 5});
    EXPECT_TRUE(sdk.delete_ports_from_lag(id, ports({6, 5, 3})));
    EXPECT_EQ(calls_made(), "bcmx_trunk_get(0, out)\n"
                            "bcmx_port_stp_set(5, 1)\n"
                            "bcmx_port_stp_set(3, 1)\n"
                            "bcmx_trunk_set(0, " +
                                trunk_info(3, "4", "3") + ")\n");
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Lag, DeletingListsThePortsBeforeItReadsTheTrunkAndFreesItsOwnListFirst)
{
    give_link({3, 4});
    const unsigned id = make_lag({3, 4});
    EXPECT_TRUE(sdk.delete_ports_from_lag(id, ports({3, 6})));
    EXPECT_EQ(vexosim::all_calls(), "bcmx_lplist_init(out, 54, 0)\n"
                                    "bcmx_lplist_init(out, 54, 0)\n"
                                    "bcmx_lplist_add([], 3)\n"
                                    "bcmx_lplist_add([3], 6)\n"
                                    "bcmx_lplist_free([])\n"
                                    "bcmx_lplist_t_init(out)\n"
                                    "bcmx_trunk_get(0, out)\n"
                                    "bcmx_lplist_count([3, 4])\n"
                                    "bcmx_port_stp_set(3, 1)\n"
                                    "bcmx_lplist_port_remove([3, 4], 3, 0)\n"
                                    "bcmx_lplist_port_remove([4], 6, 0)\n"
                                    "bcmx_trunk_set(0, " +
                                        trunk_info(3, "4", "3") +
                                        ")\n"
                                        "bcmx_lplist_free([3, 6])\n"
                                        "bcmx_lplist_free([4])\n");
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
              "bcmx_trunk_get(0, out)\nbcmx_trunk_set(0, " + trunk_info(3, "3", "3") + ")\n");
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
