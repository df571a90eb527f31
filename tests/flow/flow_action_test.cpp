// Actions of flows, except those on ports.
#include <bcmx/field.h>

#include "tests/flow/flow_action_fixture.h"

namespace {

using Actions = std::vector<int>;

struct Row {
    int kind;
    of_action_param_s param;
    const char* call; ///< behind "bcmx_field_action_add" or "..._delete"
    std::string text; ///< printed on failure; with RC and REASON
};

const Row rows[] = {
    {0, param(4, 9), "(2, 166, 0, 0)\n",
     "add/del bcmFieldActionLoopback action failed, entry = 2, rc = RC, reason = REASON\n"},
    {2, param(0, 9), "(2, 35, 0, 0)\n",
     "add/del bcmFieldActionDrop failed, entry = 2, rc = RC, reason = REASON\n"},
    {2, param(99, 9), "(2, 35, 0, 0)\n",
     "add/del bcmFieldActionDrop failed, entry = 2, rc = RC, reason = REASON\n"},
    {3, param(0, 4000), "(2, 119, 4000, 0)\n",
     "add/del bcmFieldActionOuterVlanNew failed, rc = RC, reason = REASON\n"},
    {3, param(1, 7), "(2, 8, 7, 0)\n",
     "add/del bcmFieldActionOuterVlanPrioNew failed, rc = RC, reason = REASON\n"},
    {3, param(2, 9), "(2, 116, 0, 0)\n",
     "add/del bcmFieldActionInnerVlanDelete failed, rc = RC, reason = REASON\n"},
    {3, param(5, 0xb8), "(2, 15, 184, 0)\n",
     "add/del bcmFieldActionTosNew failed, rc = RC, reason = REASON\n"},
    {4, param(0, 9), "(2, 168, 0, 0)\n",
     "add/del bcmFieldActionBypassStp action failed, entry = 2, rc = RC, reason = REASON\n"},
    {4, param(99, 9), "(2, 168, 0, 0)\n",
     "add/del bcmFieldActionBypassStp action failed, entry = 2, rc = RC, reason = REASON\n"},
};

std::string with(std::string text, const std::string& word, const std::string& value)
{
    const auto place = text.find(word);
    return place == std::string::npos ? text : text.replace(place, word.size(), value);
}

TEST_F(FlowActions, EachIsAddedAndDeletedAndTheFlowInstalledAgain)
{
    for (const Row& row : rows) {
        EXPECT_TRUE(add(row.kind, row.param)) << row.call;
        EXPECT_EQ(take_calls(), std::string("bcmx_field_action_add") + row.call + reinstall(2));
        EXPECT_EQ(text, "");
        EXPECT_EQ(acting().size(), 2u) << row.call;
        EXPECT_TRUE(remove(row.kind, row.param)) << row.call;
        EXPECT_EQ(take_calls(), std::string("bcmx_field_action_delete") + row.call + reinstall(2));
        EXPECT_EQ(text, "");
        EXPECT_EQ(acting(), Actions{108}) << row.call;
    }
}

TEST_F(FlowActions, AFailureIsPrintedAndNothingInstalled)
{
    const std::pair<int, const char*> codes[] = {{-1, "Internal error"}, {-7, "Entry not found"},
                                                 {-8, "Entry exists"},   {-18, "Invalid port"},
                                                 {-19, "Unknown error"}, {1, "Unknown error"}};
    for (const Row& row : rows) {
        for (const auto& [code, reason] : codes) {
            const std::string line =
                with(with(row.text, "RC", std::to_string(code)), "REASON", reason);
            fail("bcmx_field_action_add", code);
            EXPECT_FALSE(add(row.kind, row.param));
            EXPECT_EQ(text, line);
            EXPECT_EQ(take_calls(), std::string("bcmx_field_action_add") + row.call);
            fail("bcmx_field_action_delete", code);
            EXPECT_FALSE(remove(row.kind, row.param));
            EXPECT_EQ(text, line);
            EXPECT_EQ(take_calls(), std::string("bcmx_field_action_delete") + row.call);
        }
    }
}

TEST_F(FlowActions, SomeOnlyInstallTheFlowAgain)
{
    for (const bool adding : {true, false}) {
        for (const auto& [kind, p] : {std::pair(1, param(0)), std::pair(1, param(99)),
                                      std::pair(0, param(3)), std::pair(0, param(5))}) {
            EXPECT_TRUE(change(adding, kind, p, Mp(1, 99)));
            EXPECT_EQ(take_calls(), reinstall(2));
            EXPECT_EQ(text, "");
        }
    }
}

TEST_F(FlowActions, KindsBeyond4AreRefused)
{
    for (const int kind : {5, 6, 255, 0x10000, -1}) {
        EXPECT_FALSE(add(kind));
        EXPECT_EQ(text, "unhandled action\n");
        EXPECT_FALSE(remove(kind));
        EXPECT_EQ(text, "unhandled action\n");
    }
    EXPECT_EQ(take_calls(), "");
}

TEST_F(FlowActions, FieldsBeyond5AreRefusedWithoutInstalling)
{
    for (const uint32_t type : {6u, 7u, 0xffffffffu}) {
        EXPECT_FALSE(add(3, param(type)));
        EXPECT_EQ(text, "unhandled case of add/del modify action\n");
        EXPECT_FALSE(remove(3, param(type)));
        EXPECT_EQ(text, "unhandled case of add/del modify action\n");
    }
    EXPECT_EQ(take_calls(), "");
}

TEST_F(FlowActions, AMacRewriteIsAddedAlsoToRemoveIt)
{
    for (const auto& [type, action] : {std::pair(3u, 187), std::pair(4u, 188)}) {
        const std::string call = "bcmx_field_action_mac_add(2, " + std::to_string(action) +
                                 ", 02:00:00:00:00:0c)\n" + reinstall(2);
        EXPECT_TRUE(remove(3, mac_param(type)));
        EXPECT_EQ(take_calls(), call);
        EXPECT_EQ(acting(), (Actions{108, action}));
        bcmx_field_action_delete(2, static_cast<bcm_field_action_t>(action), 0, 0);
        clear_calls();
        EXPECT_TRUE(add(3, mac_param(type)));
        EXPECT_EQ(take_calls(), call);
        EXPECT_EQ(acting(), (Actions{108, action}));
        bcmx_field_action_delete(2, static_cast<bcm_field_action_t>(action), 0, 0);
        clear_calls();
    }
    EXPECT_EQ(text, "");
}

TEST_F(FlowActions, AMacRewriteThatFailsSaysNothing)
{
    for (const uint32_t type : {3u, 4u}) {
        for (const bool adding : {true, false}) {
            fail("bcmx_field_action_mac_add", -8);
            EXPECT_FALSE(change(adding, 3, mac_param(type)));
            EXPECT_EQ(text, "");
        }
    }
    EXPECT_EQ(take_calls().find("reinstall"), std::string::npos);
}

TEST_F(FlowActions, AChangeActsOnceTheFlowIsInstalledAgain)
{
    fail("bcmx_field_entry_reinstall", -11);
    EXPECT_FALSE(add(2));
    EXPECT_EQ(text, "reinstall failed, entry = 2(0x2), rc = -11, reason = Operation failed\n");
    EXPECT_EQ(programmed(), (Actions{35, 108}));
    EXPECT_EQ(acting(), Actions{108});
    clear_faults();
    EXPECT_TRUE(add(1));
    EXPECT_EQ(acting(), (Actions{35, 108}));
}

TEST_F(FlowActions, AReinstallThatFailsShowsTheEntryInBothBases)
{
    for (const auto& [code, reason] : {std::pair(-7, "Entry not found"), {2, "Unknown error"}}) {
        fail("bcmx_field_entry_reinstall", code);
        text = printed([&, entry = 171] {
            EXPECT_FALSE(sdk().do_change_of_flow_action(entry, OF_ACTION_REINSTALL, {}, {}, true));
        });
        EXPECT_EQ(text, "reinstall failed, entry = 171(0xab), rc = " + std::to_string(code) +
                            ", reason = " + reason + "\n");
    }
}

TEST_F(FlowActions, OfAFlowThatDoesNotExistAreRefusedSilently)
{
    text = printed([&] {
        EXPECT_FALSE(sdk().add_of_flow_action(2, OF_ACTION_DROP, {}, {}));
        EXPECT_FALSE(sdk().delete_of_flow_action(2, OF_ACTION_DROP, {}, {}));
        EXPECT_FALSE(sdk().add_of_flow_action(2, static_cast<of_action_t>(5), {}, {}));
        EXPECT_FALSE(sdk().clear_of_flow_action(2));
    });
    EXPECT_EQ(text, "");
    EXPECT_EQ(take_calls(), "");
}

TEST_F(FlowActions, ClearingTakesAllOfThemAndDoesNotInstall)
{
    ASSERT_TRUE(add(2));
    clear_calls();
    EXPECT_TRUE(sdk().clear_of_flow_action(1));
    EXPECT_EQ(take_calls(), "bcmx_field_action_remove_all(2)\n");
    EXPECT_EQ(programmed(), Actions{}); // the counting of hits is gone, too
    EXPECT_EQ(acting(), (Actions{35, 108}));
}

TEST_F(FlowActions, ClearingFailsWithTheChip)
{
    for (const int code : {-1, -7, -18, 1}) {
        fail("bcmx_field_action_remove_all", code);
        EXPECT_FALSE(sdk().clear_of_flow_action(1));
    }
}

TEST_F(FlowActions, EveryCallOfEveryActionCanFail)
{
    CapturedOutput output;
    std::vector<std::pair<int, of_action_param_s>> all = {
        {1, param(0)}, {3, mac_param(3)}, {3, mac_param(4)}};
    for (const Row& row : rows)
        all.emplace_back(row.kind, row.param);
    for (const auto& [kind, p] : all) {
        const auto action = static_cast<of_action_t>(kind);
        const bool mac = kind == 3 && (p.type == 3 || p.type == 4);
        fault_sweep([&, p = p] { return sdk().add_of_flow_action(1, action, p, {}); });
        if (mac)
            bcmx_field_action_remove_all(2); // its removal adds it
        fault_sweep([&, p = p] { return sdk().delete_of_flow_action(1, action, p, {}); });
    }
    fault_sweep([&] { return sdk().clear_of_flow_action(1); });
}

} // namespace
