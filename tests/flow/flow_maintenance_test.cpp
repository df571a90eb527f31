// Deleting, ranking and counting flows.
#include <bcmx/field.h>

#include "sim/card/card.h"
#include "tests/flow/flow_fixture.h"

namespace {

using Ids = std::vector<unsigned>;

const int failures[] = {-1, -4, -6, -8, -10, -17, -18, -19, 1};

/// Flows 0 and 1 share group 1; flow 2 has group 2, with UDFs 1 and 2.
struct FlowMaintenance : FlowCard {
    FlowMaintenance()
    {
        add_flow(flow_of(0x0004));
        add_flow(flow_of(0x0004));
        add_flow(flow_of(0x1000), Udf(14, {1, 2, 3, 4, 5, 6}));
        clear_calls();
    }

    static void set_counter(int entry, uint64_t packets)
    {
        const ChipLock chip;
        auto& found = const_cast<FieldEntry&>(*chip->field.find(entry));
        found.packets = packets;
    }
};

TEST_F(FlowMaintenance, DeletingOneOfAGroupKeepsTheGroup)
{
    EXPECT_TRUE(sdk().delete_of_flow(0));
    EXPECT_EQ(take_calls(), "bcmx_field_entry_destroy(1)\nbcmx_field_counter_destroy(1)\n");
    EXPECT_EQ(flows(), "1:2 2:3 ");
    EXPECT_EQ(groups(), "1/4/1\n2/4096/1 1@14 2@18\n");
}

TEST_F(FlowMaintenance, DeletingTheLastOfAGroupFreesTheGroupAndItsUdfs)
{
    EXPECT_TRUE(sdk().delete_of_flow(2));
    EXPECT_EQ(take_calls(), "bcmx_field_entry_destroy(3)\n"
                            "bcmx_field_counter_destroy(3)\n"
                            "bcmx_field_group_destroy(2)\n"
                            "bcmx_field_udf_destroy(1)\n"
                            "bcmx_field_udf_destroy(2)\n");
    EXPECT_EQ(flows(), "0:1 1:2 ");
    EXPECT_EQ(groups(), "1/4/2\n");
    EXPECT_EQ(udfs_in_use(), Ids{});
}

TEST_F(FlowMaintenance, DeletingAnUnknownFlowSucceedsAndCallsNothing)
{
    EXPECT_TRUE(sdk().delete_of_flow(3));
    EXPECT_TRUE(sdk().delete_of_flow(0xffffffff));
    EXPECT_EQ(take_calls(), "");
    EXPECT_EQ(flows(), "0:1 1:2 2:3 ");
}

TEST_F(FlowMaintenance, AFlowThatTheChipForgotIsDeletedAllTheSame)
{
    bcmx_field_entry_destroy(3);
    clear_calls();
    EXPECT_TRUE(sdk().delete_of_flow(2));
    EXPECT_EQ(flows(), "0:1 1:2 ");
    EXPECT_EQ(groups(), "1/4/2\n");
}

TEST_F(FlowMaintenance, AnEntryThatCannotBeDestroyedKeepsItsFlow)
{
    for (const int code : failures) {
        fail("bcmx_field_entry_destroy", code);
        EXPECT_FALSE(sdk().delete_of_flow(0)) << code;
        EXPECT_EQ(take_calls(), "bcmx_field_entry_destroy(1)\n");
        EXPECT_EQ(flows(), "0:1 1:2 2:3 ");
        EXPECT_EQ(groups(), "1/4/2\n2/4096/1 1@14 2@18\n");
    }
}

TEST_F(FlowMaintenance, ACounterThatCannotBeDestroyedKeepsItsFlowButNotItsEntry)
{
    for (const int code : failures) {
        fail("bcmx_field_counter_destroy", code);
        EXPECT_FALSE(sdk().delete_of_flow(0)) << code;
        EXPECT_EQ(flows(), "0:1 1:2 2:3 ");
        EXPECT_EQ(groups(), "1/4/2\n2/4096/1 1@14 2@18\n");
    }
    EXPECT_EQ(bcmx_field_entry_install(1), -7);
    clear_faults();
    EXPECT_TRUE(sdk().delete_of_flow(0));
}

TEST_F(FlowMaintenance, DeletingAFlowWithoutAnyGroupIsFalse)
{
    fg_list.clear();
    EXPECT_FALSE(sdk().delete_of_flow(0));
    EXPECT_EQ(take_calls(), "bcmx_field_entry_destroy(1)\nbcmx_field_counter_destroy(1)\n");
    EXPECT_EQ(flows(), "1:2 2:3 ");
}

TEST_F(FlowMaintenance, AGroupThatCannotBeFreedDoesNotMatterToTheDelete)
{
    fail("bcmx_field_group_destroy", -10);
    EXPECT_TRUE(sdk().delete_of_flow(2));
    EXPECT_EQ(groups(), "1/4/2\n2/4096/0 1@14 2@18\n");
    clear_faults();
    EXPECT_TRUE(sdk().delete_of_flow(0)); // frees it now
    EXPECT_EQ(groups(), "1/4/1\n");
}

TEST_F(FlowMaintenance, ClearingDestroysTheEntriesOnly)
{
    EXPECT_TRUE(sdk().clear_of_flow_table());
    EXPECT_EQ(take_calls(), "bcmx_field_entry_destroy(1)\n"
                            "bcmx_field_entry_destroy(2)\n"
                            "bcmx_field_entry_destroy(3)\n");
    EXPECT_EQ(flows(), "");
    EXPECT_EQ(groups(), "1/4/2\n2/4096/1 1@14 2@18\n");
    EXPECT_EQ(udfs_in_use(), (Ids{1, 2}));
}

TEST_F(FlowMaintenance, ClearingGoesByFlowId)
{
    fid_fe_map = {{7, 2}, {1, 3}, {4, 1}};
    EXPECT_TRUE(sdk().clear_of_flow_table());
    EXPECT_EQ(take_calls(), "bcmx_field_entry_destroy(3)\n"
                            "bcmx_field_entry_destroy(1)\n"
                            "bcmx_field_entry_destroy(2)\n");
}

TEST_F(FlowMaintenance, ClearingDoesNotMindFailures)
{
    inject({.call = "bcmx_field_entry_destroy", .sticky = true, .code = -1});
    EXPECT_TRUE(sdk().clear_of_flow_table());
    EXPECT_EQ(flows(), "");
    EXPECT_TRUE(sdk().clear_of_flow_table());
}

TEST_F(FlowMaintenance, AfterClearingIdsGoOnAndTheOldGroupsAreShared)
{
    sdk().clear_of_flow_table();
    EXPECT_TRUE(add_flow(flow_of(0x0004)));
    EXPECT_EQ(flow_id, 3u);
    EXPECT_EQ(flows(), "3:4 ");
    EXPECT_EQ(groups(), "1/4/3\n2/4096/1 1@14 2@18\n"); // the destroyed entries are still listed
}

TEST_F(FlowMaintenance, AfterClearingTheOldIdsAreUnknown)
{
    sdk().clear_of_flow_table();
    clear_calls();
    unsigned long long wide = 5;
    unsigned narrow = 5;
    int priority = 5;
    printed([&] {
        EXPECT_TRUE(sdk().delete_of_flow(0));
        EXPECT_FALSE(sdk().add_of_flow_action(0, OF_ACTION_DROP, {}, {}));
        EXPECT_FALSE(sdk().delete_of_flow_action(0, OF_ACTION_DROP, {}, {}));
        EXPECT_FALSE(sdk().clear_of_flow_action(0));
        EXPECT_FALSE(sdk().set_of_flow_priority(0, 1));
        EXPECT_FALSE(sdk().get_of_flow_priority(0, priority));
        EXPECT_FALSE(sdk().get_of_flow_stat_counter64(0, wide));
        EXPECT_FALSE(sdk().get_of_flow_stat_counter32(0, narrow));
    });
    EXPECT_EQ(take_calls(), "");
}

TEST_F(FlowMaintenance, ThePriorityGoesToTheChipAndComesFromIt)
{
    int priority = 5;
    EXPECT_TRUE(sdk().set_of_flow_priority(1, -7));
    EXPECT_TRUE(sdk().get_of_flow_priority(1, priority));
    EXPECT_EQ(priority, -7);
    EXPECT_EQ(take_calls(), "bcmx_field_entry_prio_set(2, -7)\n"
                            "bcmx_field_entry_prio_get(2, out)\n");
    EXPECT_TRUE(sdk().get_of_flow_priority(0, priority));
    EXPECT_EQ(priority, 0);
}

TEST_F(FlowMaintenance, ThePriorityOfAnUnknownFlowIsFalseWithoutAWord)
{
    int priority = 5;
    text = printed([&] {
        EXPECT_FALSE(sdk().set_of_flow_priority(3, 1));
        EXPECT_FALSE(sdk().get_of_flow_priority(3, priority));
    });
    EXPECT_EQ(text, "");
    EXPECT_EQ(take_calls(), "");
    EXPECT_EQ(priority, 5);
}

TEST_F(FlowMaintenance, ThePriorityFailsWithTheChip)
{
    for (const int code : {-7, -1, -18, 1}) {
        int priority = 5;
        fail("bcmx_field_entry_prio_set", code);
        EXPECT_FALSE(sdk().set_of_flow_priority(0, 1));
        fail("bcmx_field_entry_prio_get", code);
        EXPECT_FALSE(sdk().get_of_flow_priority(0, priority));
        EXPECT_EQ(priority, 5);
    }
}

TEST_F(FlowMaintenance, CountersAreReadInBothWidths)
{
    set_counter(2, 0x1234567890abcdefULL);
    unsigned long long wide = 5;
    unsigned narrow = 5;
    text = printed([&] {
        EXPECT_TRUE(sdk().get_of_flow_stat_counter64(1, wide));
        EXPECT_TRUE(sdk().get_of_flow_stat_counter32(1, narrow));
    });
    EXPECT_EQ(text, "");
    EXPECT_EQ(wide, 0x1234567890abcdefULL);
    EXPECT_EQ(narrow, 0x90abcdefu);
    EXPECT_EQ(take_calls(), "bcmx_field_counter_get(2, 0, out)\n"
                            "bcmx_field_counter_get32(2, 0, out)\n");
}

TEST_F(FlowMaintenance, TheCounterOfAnUnknownFlowCannotBeFound)
{
    unsigned long long wide = 5;
    unsigned narrow = 5;
    text = printed([&] {
        EXPECT_FALSE(sdk().get_of_flow_stat_counter64(3, wide));
        EXPECT_FALSE(sdk().get_of_flow_stat_counter32(4, narrow));
    });
    EXPECT_EQ(text, "cannot find flow entry, id = 3\ncannot find flow entry, id = 4\n");
    EXPECT_EQ(take_calls(), "");
    EXPECT_EQ(wide, 5u);
    EXPECT_EQ(narrow, 5u);
}

TEST_F(FlowMaintenance, ACounterThatCannotBeReadIsReportedTheSameInBothWidths)
{
    for (const auto& [code, reason] : {std::pair(-7, "Entry not found"),
                                       {-1, "Internal error"},
                                       {-18, "Invalid port"},
                                       {-19, "Unknown error"},
                                       {1, "Unknown error"}}) {
        unsigned long long wide = 5;
        unsigned narrow = 5;
        const std::string line =
            "bcmx_field_counter_get failed, entry = 2, rc = " + std::to_string(code) +
            ", reason = " + reason + "\n";
        fail("bcmx_field_counter_get", code);
        EXPECT_EQ(printed([&] { EXPECT_FALSE(sdk().get_of_flow_stat_counter64(1, wide)); }), line);
        fail("bcmx_field_counter_get32", code);
        EXPECT_EQ(printed([&] { EXPECT_FALSE(sdk().get_of_flow_stat_counter32(1, narrow)); }),
                  line);
        EXPECT_EQ(wide, 5u);
        EXPECT_EQ(narrow, 5u);
    }
}

TEST_F(FlowMaintenance, EveryCallCanFail)
{
    CapturedOutput output;
    unsigned long long wide = 5;
    unsigned narrow = 5;
    int priority = 5;
    fault_sweep([&] { return sdk().set_of_flow_priority(0, 3); });
    FaultSweep([&] { return sdk().get_of_flow_priority(0, priority); }).output(priority).run();
    FaultSweep([&] { return sdk().get_of_flow_stat_counter64(0, wide); }).output(wide).run();
    FaultSweep([&] { return sdk().get_of_flow_stat_counter32(0, narrow); }).output(narrow).run();
    const auto list = fg_list;
    const auto map = fid_fe_map;
    const auto put_back = [&] {
        fg_list = list;
        fid_fe_map = map;
    };
    FaultSweep([&] { return sdk().delete_of_flow(2); })
        .before_each(put_back)
        .harmless("bcmx_field_entry_destroy", -7)
        .harmless("bcmx_field_counter_destroy", -7)
        .harmless("bcmx_field_group_destroy")
        .harmless("bcmx_field_udf_destroy")
        .run();
    FaultSweep([&] { return sdk().clear_of_flow_table(); })
        .before_each(put_back)
        .harmless("bcmx_field_entry_destroy")
        .run();
}

} // namespace
