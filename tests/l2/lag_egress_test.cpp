// Configured members that come and go with their link: the egress-list operations, call by call.
#include "tests/l2/lag_fixture.h"

namespace {

// The chip's record of LAG 0 when it is written.
std::string set_0(const std::string& members, const std::string& designated)
{
    return "bcmx_trunk_set(0, " + trunk_info(3, members, designated) + ")\n";
}

const std::string get_0 = "bcmx_trunk_get(0, out)\n";

TEST_F(Lag, AnAddedPortJoinsTheActiveMembersAndIsFlushed)
{
    give_link({3, 4});
    Mps all = ports({3, 4, 5});
    add_lag_member(make_lag({3, 4}), lag_list, all);
    EXPECT_TRUE(sdk.port_add_to_egress_list(port(5)));
    EXPECT_EQ(calls_made(), get_0 + set_0("3, 4, 5", "3") + "bcmx_l2_addr_delete_by_port(5, 0)\n");
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Lag, ARemovedPortLeavesTheActiveMembers)
{
    give_link({3, 4});
    make_lag({3, 4});
    EXPECT_TRUE(sdk.port_remove_from_egress_list(port(4)));
    EXPECT_EQ(calls_made(), get_0 + set_0("3", "3"));
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Lag, RemovingTheLastActiveMemberMakesTheTrunkAnewUnderItsId)
{
    give_link({3});
    make_lag({3});
    EXPECT_TRUE(sdk.port_remove_from_egress_list(port(3)));
    EXPECT_EQ(calls_made(), get_0 + "bcmx_l2_addr_delete_by_trunk(0, 1)\n"
                                    "bcmx_trunk_destroy(0)\n"
                                    "bcmx_trunk_create_id(0)\n");
    EXPECT_TRUE(sdk.port_add_to_egress_list(port(3)));
    EXPECT_EQ(calls_made(), get_0 + set_0("3", "lport:-1") + "bcmx_l2_addr_delete_by_port(3, 0)\n");
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Lag, RemovingAPortThatIsNotActiveWritesTheTrunkAsItWas)
{
    give_link({3});
    make_lag({3, 4});
    EXPECT_TRUE(sdk.port_remove_from_egress_list(port(4)));
    EXPECT_EQ(calls_made(), get_0 + set_0("3", "3"));
}

TEST_F(Lag, APortOfNoLagIsNoFailureAndMakesNoCall)
{
    give_link({3});
    make_lag({3});
    for (const Mp& mp : {port(4), Mp(1, 3)}) {
        EXPECT_TRUE(sdk.port_add_to_egress_list(mp));
        EXPECT_TRUE(sdk.port_remove_from_egress_list(mp));
    }
    EXPECT_EQ(calls_made(), "");
}

TEST_F(Lag, APortThatDoesNotExistIsForTheChipToRefuse)
{
    give_link({3});
    Mps members = {Mp(1, 3)};
    add_lag_member(make_lag({3}), lag_list, members);
    EXPECT_FALSE(sdk.port_add_to_egress_list(Mp(1, 3)));
    EXPECT_EQ(calls_made(), get_0 + set_0("3, lport:-1", "3"));
}

TEST_F(Lag, TheLagsOfThePortAreVisitedInTheOrderOfTheBookkeeping)
{
    give_link({3, 4});
    make_lag({3});
    make_lag({4});
    lag_list.reverse();
    Mps both = ports({5});
    for (const unsigned id : {0u, 1u})
        EXPECT_TRUE(add_lag_member(id, lag_list, both));
    const EveryCallAnswers answer(0);
    EXPECT_TRUE(sdk.port_add_to_egress_list(port(5)));
    const std::string made = calls_made();
    EXPECT_LT(made.find("bcmx_trunk_get(1, out)"), made.find("bcmx_trunk_get(0, out)"));
    EXPECT_NE(made.find("bcmx_trunk_get(0, out)"), std::string::npos);
}

struct Step {
    std::string call;
    std::string last_line; // what is still called
};

TEST_F(Lag, AddingToTheEgressListStopsTheWalkAtTheCallThatFails)
{
    give_link({3, 4});
    make_lag({3});
    make_lag({4});
    Mps both = ports({5});
    for (const unsigned id : {0u, 1u})
        EXPECT_TRUE(add_lag_member(id, lag_list, both));
    const std::string flush = "bcmx_l2_addr_delete_by_port(5, 0)\n";
    const std::vector<Step> steps = {
        {"bcmx_trunk_get", get_0},
        {"bcmx_lplist_add", get_0},
        {"bcmx_trunk_set", get_0 + set_0("3, 5", "3")},
    };
    for (const Step& step : steps) {
        for (const int code : codes_except({})) {
            fail_next(step.call, code);
            EXPECT_FALSE(sdk.port_add_to_egress_list(port(5))) << step.call << code;
            EXPECT_EQ(calls_made(), step.last_line);
        }
    }
    EXPECT_EQ(lists_left(), 0u);
    fail_next("bcmx_lplist_free");
    EXPECT_FALSE(sdk.port_add_to_egress_list(port(5)));
    EXPECT_EQ(calls_made(), get_0 + set_0("3, 5", "3") + flush);
}

TEST_F(Lag, AddingToTheEgressListDoesNotDependOnTheFlush)
{
    give_link({3});
    make_lag({3, 4});
    fail_next("bcmx_l2_addr_delete_by_port", -1);
    EXPECT_TRUE(sdk.port_add_to_egress_list(port(4)));
}

TEST_F(Lag, RemovingFromTheEgressListStopsTheWalkAtTheCallThatFails)
{
    give_link({3, 4});
    make_lag({3, 4});
    make_lag({});
    Mps both = ports({4});
    EXPECT_TRUE(add_lag_member(1, lag_list, both));
    const std::vector<Step> steps = {
        {"bcmx_trunk_get", get_0},
        {"bcmx_lplist_remove", get_0},
        {"bcmx_trunk_set", get_0 + set_0("3", "3")},
    };
    for (const Step& step : steps) {
        for (const int code : codes_except({-7})) {
            fail_next(step.call, code);
            EXPECT_FALSE(sdk.port_remove_from_egress_list(port(4))) << step.call << code;
            EXPECT_EQ(calls_made(), step.last_line);
        }
    }
    EXPECT_EQ(lists_left(), 0u);
    fail_next("bcmx_lplist_free");
    EXPECT_FALSE(sdk.port_remove_from_egress_list(port(4)));
    EXPECT_EQ(calls_made(), get_0 + set_0("3", "3"));
}

TEST_F(Lag, OnlyTheListMayAnswerThatAPortIsNotThere)
{
    give_link({3, 4});
    make_lag({3, 4});
    fail_next("bcmx_lplist_remove", -7);
    EXPECT_TRUE(sdk.port_remove_from_egress_list(port(4)));
    EXPECT_EQ(calls_made(), get_0 + set_0("3, 4", "3"));
    for (const char* call : {"bcmx_trunk_get", "bcmx_trunk_set"}) {
        fail_next(call, -7);
        EXPECT_FALSE(sdk.port_remove_from_egress_list(port(4))) << call;
    }
}

TEST_F(Lag, EmptyingByTheEgressListStopsAtACallThatFails)
{
    give_link({3});
    make_lag({3});
    const std::string flush = "bcmx_l2_addr_delete_by_trunk(0, 1)\n";
    const std::vector<Step> steps = {
        {"bcmx_l2_addr_delete_by_trunk", get_0 + flush},
        {"bcmx_trunk_destroy", get_0 + flush + "bcmx_trunk_destroy(0)\n"},
        {"bcmx_trunk_create_id",
         get_0 + flush + "bcmx_trunk_destroy(0)\nbcmx_trunk_create_id(0)\n"},
    };
    for (const Step& step : steps) {
        fail_next(step.call, -7);
        EXPECT_FALSE(sdk.port_remove_from_egress_list(port(3))) << step.call;
        EXPECT_EQ(calls_made(), step.last_line);
    }
    EXPECT_EQ(lists_left(), 0u);
}

} // namespace
