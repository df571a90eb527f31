// Adding flows while the chip fails at one call: what is printed, and what is left behind.
#include <bcmx/field.h>

#include "tests/flow/flow_fixture.h"

namespace {

struct Failure {
    const char* call;
    std::string text;   ///< the line that says so; with RC and REASON
    const char* last;   ///< the last call that is made
    const char* groups; ///< what is left registered
    int entries;        ///< what is left in the chip
};

const Failure failures[] = {
    {"bcmx_field_udf_create_id",
     "bcmx_qset_add_fields failed, flags = 0x1004, rc = RC, reason = REASON.\n",
     "bcmx_field_udf_create_id({flags=0x380, offset=4}, 1)\n", "", 0},
    {"bcmx_field_qset_add_udf",
     "bcmx_qset_add_fields failed, flags = 0x1004, rc = RC, reason = REASON.\n",
     "bcmx_field_qset_add_udf(qset:[7], 1)\n", "", 0},
    {"bcmx_field_group_create", "bcmx_field_group_create failed, rc = RC, reason = REASON\n",
     "bcmx_field_group_create(qset:[7]+udf:[1], 0, out)\n", "", 0},
    {"bcmx_field_entry_create", "bcmx_field_entry_create failed, rc = RC, reason = REASON\n",
     "bcmx_field_entry_create(1, out)\n", "1/4100/0 1@14\n", 0},
    {"bcmx_field_qualify_DstMac",
     "bcmx_field_entry_add_qualify failed, bcm_fe = 11(0xb), rc = RC, reason = REASON\n",
     "bcmx_field_qualify_DstMac(11, 02:00:00:00:00:0b, ff:ff:ff:ff:ff:ff)\n", "1/4100/0 1@14\n", 1},
    {"bcmx_field_qualify_UserDefined",
     "bcmx_field_entry_add_qualify failed, bcm_fe = 11(0xb), rc = RC, reason = REASON\n",
     "bcmx_field_qualify_UserDefined(11, 1, 01020304, ffffffff)\n", "1/4100/0 1@14\n", 1},
    {"bcmx_field_counter_create", "bcmx_field_counter_create failed, entry = 11, rc = RC\n",
     "bcmx_field_counter_create(11)\n", "1/4100/0 1@14\n", 1},
    {"bcmx_field_action_add", "add update counter action failed, entry = 11, rc = RC\n",
     "bcmx_field_action_add(11, 108, 1, 0)\n", "1/4100/0 1@14\n", 1},
    {"bcmx_field_entry_install",
     "bcmx_field_entry_install failed, bcm_fe = 11(0xb), rc = RC, reason = REASON\n",
     "bcmx_field_entry_install(11)\n", "1/4100/0 1@14\n", 1},
};

std::string with(std::string text, const std::string& word, const std::string& value)
{
    const auto place = text.find(word);
    return place == std::string::npos ? text : text.replace(place, word.size(), value);
}

bool ends_with(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

/// The next entry of the chip has the number 11.
struct FlowFaults : FlowCard {
    void start_over()
    {
        bcmx_field_init();
        vexolc::reset_udf_pool();
        fg_list.clear();
        int group = 0;
        int entry = 0;
        bcm_field_qset_t qset;
        BCM_FIELD_QSET_INIT(qset);
        bcmx_field_group_create(qset, 0, &group);
        while (entry < 10)
            bcmx_field_entry_create(group, &entry);
        for (; entry > 0; --entry)
            bcmx_field_entry_destroy(entry);
        bcmx_field_group_destroy(group);
        clear_calls();
    }

    void expect(const Failure& failure, int code, const std::string& reason)
    {
        SCOPED_TRACE(failure.call + std::to_string(code));
        start_over();
        fail(failure.call, code);
        EXPECT_FALSE(add_flow(flow_of(0x1004), Udf(14, {1, 2, 3, 4})));
        const std::string line =
            with(with(failure.text, "RC", std::to_string(code)), "REASON", reason);
        EXPECT_TRUE(ends_with(text, line)) << text;
        EXPECT_TRUE(ends_with(take_calls(), failure.last));
        EXPECT_EQ(groups(), failure.groups);
        EXPECT_EQ(bcmx_field_entry_install(11), failure.entries == 1 ? 0 : -7);
        EXPECT_EQ(flow_id, 77u);
        EXPECT_EQ(flows(), "");
        EXPECT_EQ(next_flow_id, 0u);
    }
};

TEST_F(FlowFaults, EachFailureIsPrintedEndsTheFlowAndLeavesWhatWasMade)
{
    for (const Failure& failure : failures) {
        expect(failure, -1, "Internal error");
        expect(failure, -7, "Entry not found");
        expect(failure, -8, "Entry exists");
        expect(failure, -18, "Invalid port");
    }
}

TEST_F(FlowFaults, CodesWithoutATextShareOne)
{
    for (const Failure& failure : failures) {
        expect(failure, -19, "Unknown error");
        expect(failure, -1000, "Unknown error");
        expect(failure, 1, "Unknown error");
    }
}

TEST_F(FlowFaults, EveryCallOfEveryKindOfFlowCanFail)
{
    const Udf udf(14, {1, 2, 3, 4, 5, 6});
    for (const unsigned flags : {0u, 0x0fffu, 0x1fffu}) {
        SCOPED_TRACE(flags);
        CapturedOutput output;
        FaultSweep([&] { return sdk().add_of_flow(flow_of(flags), flow_id, udf); })
            .before_each([&] {
                fg_list.clear();
                fid_fe_map.clear();
                vexolc::reset_udf_pool();
                vexosdk_add_field_group(40, 1, {});
            })
            .output(flow_id)
            .harmless("bcmx_field_group_destroy")
            .run();
    }
}

} // namespace
