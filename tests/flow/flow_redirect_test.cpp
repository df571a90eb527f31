// Flows that send frames to ports: adding fills the redirect list (30), removing the egress mask
// (29).
#include <bcmx/field.h>

#include "platform/port_map.h"
#include "tests/flow/flow_action_fixture.h"

namespace {

using Actions = std::vector<int>;

using FlowRedirect = FlowActions;

TEST_F(FlowRedirect, ToAFirstPortAddsTheList)
{
    EXPECT_TRUE(add(0, param(7), mp(3)));
    EXPECT_EQ(take_calls(), "bcmx_field_action_ports_get(2, 30, out)\n"
                            "bcmx_field_action_ports_add(2, 30, [3])\n" +
                                reinstall(2));
    EXPECT_EQ(text, "add = 1, redirect to port, mp = (0, 3)\n");
    EXPECT_EQ(acting(), (Actions{30, 108}));
}

TEST_F(FlowRedirect, ToASecondPortReplacesTheListByALongerOne)
{
    add(0, param(7), mp(3));
    clear_calls();
    EXPECT_TRUE(add(0, param(0xffffffff), mp(50)));
    EXPECT_EQ(take_calls(), "bcmx_field_action_ports_get(2, 30, out)\n"
                            "bcmx_field_action_delete(2, 30, 0, 0)\n"
                            "bcmx_field_action_ports_add(2, 30, [3, 50])\n" +
                                reinstall(2));
    EXPECT_EQ(text, "add = 1, redirect to port, mp = (2, 50)\n");
}

TEST_F(FlowRedirect, RemovingAPortAddsItToTheEgressMask)
{
    add(0, param(7), mp(3));
    clear_calls();
    EXPECT_TRUE(remove(0, param(7), mp(3)));
    EXPECT_EQ(take_calls(), "bcmx_field_action_ports_get(2, 29, out)\n"
                            "bcmx_field_action_ports_add(2, 29, [3])\n" +
                                reinstall(2));
    EXPECT_EQ(text, "add = 0, redirect to port, mp = (0, 3)\n");
    EXPECT_EQ(acting(), (Actions{29, 30, 108}));
    clear_calls();
    EXPECT_TRUE(remove(0, param(8), mp(4)));
    EXPECT_EQ(take_calls(), "bcmx_field_action_ports_get(2, 29, out)\n"
                            "bcmx_field_action_delete(2, 29, 0, 0)\n"
                            "bcmx_field_action_ports_add(2, 29, [3, 4])\n" +
                                reinstall(2));
}

TEST_F(FlowRedirect, ToTheCpuAddsTheListOrExtendsIt)
{
    for (const uint32_t type : {1u, 2u}) {
        EXPECT_TRUE(add(0, param(type), Mp(1, 99)));
        EXPECT_EQ(take_calls(), "bcmx_field_action_ports_get(2, 30, out)\n"
                                "bcmx_field_action_ports_add(2, 30, [cpu])\n" +
                                    reinstall(2));
        EXPECT_EQ(text, "");
        bcmx_field_action_remove_all(2);
        clear_calls();
    }
    add(0, param(7), mp(3));
    clear_calls();
    EXPECT_TRUE(add(0, param(1)));
    EXPECT_EQ(take_calls(), "bcmx_field_action_ports_get(2, 30, out)\n"
                            "bcmx_field_action_delete(2, 30, 0, 0)\n"
                            "bcmx_field_action_ports_add(2, 30, [3, cpu])\n" +
                                reinstall(2));
}

TEST_F(FlowRedirect, RemovingTheCpuReadsTheRedirectListAndAddsToTheEgressMask)
{
    EXPECT_TRUE(remove(0, param(1)));
    EXPECT_EQ(take_calls(), "bcmx_field_action_ports_get(2, 30, out)\n"
                            "bcmx_field_action_ports_add(2, 29, [cpu])\n" +
                                reinstall(2));
    EXPECT_EQ(text, "");
}

TEST_F(FlowRedirect, RemovingTheCpuFailsForAFlowWithARedirectListOnly)
{
    add(0, param(2));
    clear_calls();
    EXPECT_FALSE(remove(0, param(2)));
    EXPECT_EQ(take_calls(), "bcmx_field_action_ports_get(2, 30, out)\n"
                            "bcmx_field_action_delete(2, 29, 0, 0)\n");
    EXPECT_EQ(text, "bcmx_field_action_delete failed, entry = 2, bcm_action = 29\n");
    EXPECT_EQ(acting(), (Actions{30, 108}));
}

TEST_F(FlowRedirect, RemovingTheCpuMovesTheRedirectListIntoAnExistingEgressMask)
{
    add(0, param(7), mp(3));
    remove(0, param(7), mp(4));
    clear_calls();
    EXPECT_TRUE(remove(0, param(1)));
    EXPECT_EQ(take_calls(), "bcmx_field_action_ports_get(2, 30, out)\n"
                            "bcmx_field_action_delete(2, 29, 0, 0)\n"
                            "bcmx_field_action_ports_add(2, 29, [3, cpu])\n" +
                                reinstall(2));
}

TEST_F(FlowRedirect, ToAllAddsEveryFrontPortAndBypassesTheSpanningTree)
{
    EXPECT_TRUE(add(0, param(0), Mp(1, 99)));
    const std::string calls = take_calls();
    EXPECT_EQ(text, "");
    EXPECT_EQ(acting(), (Actions{30, 108, 168}));
    EXPECT_NE(calls.find("bcmx_field_action_ports_add(2, 30, ["), std::string::npos);
    EXPECT_EQ(std::count(calls.begin(), calls.begin() + static_cast<long>(calls.find(']')), ','),
              51 + 2);
    EXPECT_NE(calls.find("])\nbcmx_field_action_add(2, 168, 0, 0)\n" + reinstall(2)),
              std::string::npos);
    EXPECT_EQ(calls.find("ports_get"), std::string::npos);
}

TEST_F(FlowRedirect, ToAllPortsOnlyLeavesTheSpanningTreeAlone)
{
    EXPECT_TRUE(add(0, param(6)));
    EXPECT_EQ(acting(), (Actions{30, 108}));
    const std::string calls = take_calls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), '\n'), 2);
}

TEST_F(FlowRedirect, AllAreTheUportsFrom1To52InOrder)
{
    std::string ports;
    for (int uport = 1; uport <= 52; ++uport)
        ports += (uport == 1 ? "" : ", ") + std::to_string(vexo_uport_to_user_port[uport]);
    EXPECT_TRUE(add(0, param(6)));
    EXPECT_EQ(take_calls(), "bcmx_field_action_ports_add(2, 30, [" + ports + "])\n" + reinstall(2));
}

TEST_F(FlowRedirect, RemovingAllAddsEveryFrontPortToTheEgressMask)
{
    EXPECT_TRUE(remove(0, param(6)));
    EXPECT_EQ(take_calls().find("bcmx_field_action_ports_add(2, 29, ["), 0u);
    EXPECT_EQ(acting(), (Actions{29, 108}));
    bcmx_field_action_remove_all(2);
    bcmx_field_action_add(2, bcmFieldActionBypassStp, 0, 0);
    clear_calls();
    EXPECT_TRUE(remove(0, param(0)));
    EXPECT_NE(take_calls().find("])\nbcmx_field_action_delete(2, 168, 0, 0)\n" + reinstall(2)),
              std::string::npos);
    EXPECT_EQ(acting(), Actions{29});
}

TEST_F(FlowRedirect, ToAllFailsSilentlyAtItsPorts)
{
    for (const uint32_t type : {0u, 6u}) {
        for (const bool adding : {true, false}) {
            for (const unsigned nth : {1u, 52u}) {
                fail("bcmx_lplist_add", -2, nth);
                EXPECT_FALSE(change(adding, 0, param(type)));
                EXPECT_EQ(text, "");
                EXPECT_EQ(take_calls(), "");
            }
            fail("bcmx_field_action_ports_add", -8);
            EXPECT_FALSE(change(adding, 0, param(type)));
            EXPECT_EQ(text, "");
            const std::string calls = take_calls();
            EXPECT_EQ(std::count(calls.begin(), calls.end(), '\n'), 1);
        }
    }
    EXPECT_EQ(live_lplists(), 0u);
}

TEST_F(FlowRedirect, ToAllKeepsThePortsWhenTheBypassFails)
{
    fail("bcmx_field_action_add", -11);
    EXPECT_FALSE(add(0, param(0)));
    EXPECT_EQ(text, "add/del bcmFieldActionBypassStp action failed, entry = 2, rc = -11, reason = "
                    "Operation failed\n");
    EXPECT_EQ(programmed(), (Actions{30, 108}));
    EXPECT_EQ(acting(), Actions{108});
}

TEST_F(FlowRedirect, WithoutACpuPortThereIsNothingToAsk)
{
    vexo_user_port_to_lport[53] = -1;
    for (const uint32_t type : {1u, 2u}) {
        for (const bool adding : {true, false}) {
            EXPECT_FALSE(change(adding, 0, param(type)));
            EXPECT_EQ(text, "cannot get cpu lport\n");
        }
    }
    EXPECT_EQ(take_calls(), "");
}

TEST_F(FlowRedirect, ToAPortThatDoesNotExistAsksNothing)
{
    for (const bool adding : {true, false}) {
        EXPECT_FALSE(change(adding, 0, param(7), Mp(1, 99)));
        EXPECT_EQ(text, "add/del action forward to single port failed, mp = 1/99\n");
    }
    EXPECT_EQ(take_calls(), "");
}

TEST_F(FlowRedirect, ToAPortThatIsNotAttachedIsRefusedByTheChip)
{
    vexo_user_port_to_lport[3] = -1;
    EXPECT_FALSE(add(0, param(7), mp(3)));
    EXPECT_EQ(text, "add = 1, redirect to port, mp = (0, 3)\n"
                    "add/del bcmFieldActionRedirectPort failed, mp = 0/3, entry = 2, "
                    "port_list_count = 1, rc = -18, reason = Invalid port\n");
}

} // namespace
