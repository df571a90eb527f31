// Flows that send frames to ports, while the chip fails at one call.
#include <bcmx/field.h>

#include "tests/flow/flow_action_fixture.h"

namespace {

using Actions = std::vector<int>;

/// What each kind prints at each of its calls; the list has one port and gets a second.
struct FlowRedirectFaults : FlowActions {
    FlowRedirectFaults()
    {
        add(0, param(7), mp(4));
        remove(0, param(7), mp(4));
        clear_calls();
    }

    void expect(bool adding, uint32_t type, const std::string& call, int code,
                const std::string& line)
    {
        SCOPED_TRACE(call + std::to_string(type) + (adding ? " add" : " remove"));
        fail(call, code);
        EXPECT_FALSE(change(adding, 0, param(type), mp(3)));
        const std::string first = type == 7 ? std::string("add = ") + (adding ? "1" : "0") +
                                                  ", redirect to port, mp = (0, 3)\n"
                                            : "";
        EXPECT_EQ(text, first + line);
        EXPECT_EQ(take_calls().find("reinstall"), std::string::npos);
        clear_faults();
        bcmx_field_action_remove_all(2);
        printed([&] {
            sdk().add_of_flow_action(1, OF_ACTION_OUTPUT, param(7), mp(4));
            sdk().delete_of_flow_action(1, OF_ACTION_OUTPUT, param(7), mp(4));
        });
        clear_calls();
    }
};

TEST_F(FlowRedirectFaults, AListThatCannotBeReadIsReported)
{
    const std::string end = ", rc = -6, reason = Table full\n";
    const std::string start = "bcmx_field_action_ports_get failed, entry = 2";
    const std::string call = "bcmx_field_action_ports_get";
    expect(true, 1, call, -6, start + end);
    expect(false, 2, call, -6, start + end);
    expect(true, 7, call, -6, start + ", bcm_action = 30" + end);
    expect(false, 7, call, -6, start + ", bcm_action = 29" + end);
    expect(true, 1, call, 1, start + ", rc = 1, reason = Unknown error\n");
}

TEST_F(FlowRedirectFaults, AListThatCannotGrowIsNot)
{
    for (const uint32_t type : {1u, 2u, 7u}) {
        expect(true, type, "bcmx_lplist_add", -2, "");
        expect(false, type, "bcmx_lplist_add", -2, "");
    }
}

TEST_F(FlowRedirectFaults, AnOldListThatCannotBeDeletedIsReportedWithoutAReason)
{
    const std::string start = "bcmx_field_action_delete failed, entry = 2, bcm_action = ";
    for (const uint32_t type : {1u, 2u, 7u}) {
        expect(true, type, "bcmx_field_action_delete", -1, start + "30\n");
        expect(false, type, "bcmx_field_action_delete", -7, start + "29\n");
    }
}

TEST_F(FlowRedirectFaults, ANewListThatCannotBeAddedIsReportedWithItsLength)
{
    const std::string line = "add/del bcmFieldActionRedirectPort failed, mp = 0/3, entry = 2, "
                             "port_list_count = 2, rc = -14, reason = No resources for operation\n";
    for (const uint32_t type : {1u, 2u, 7u}) {
        expect(true, type, "bcmx_field_action_ports_add", -14, line);
        expect(false, type, "bcmx_field_action_ports_add", -14, line);
    }
}

TEST_F(FlowRedirectFaults, AListThatIsNotFoundIsStartedAnewWithoutDeletingTheOld)
{
    fail("bcmx_field_action_ports_get", -7);
    EXPECT_FALSE(add(0, param(7), mp(3)));
    EXPECT_EQ(take_calls(), "bcmx_field_action_ports_get(2, 30, out)\n"
                            "bcmx_field_action_ports_add(2, 30, [3])\n");
    EXPECT_NE(text.find("port_list_count = 1, rc = -8, reason = Entry exists\n"),
              std::string::npos);
}

TEST_F(FlowRedirectFaults, TheOldListStaysInForceWhenTheNewOneFails)
{
    fail("bcmx_field_action_ports_add", -2);
    EXPECT_FALSE(add(0, param(7), mp(3)));
    EXPECT_EQ(programmed(), (Actions{29, 108}));
    EXPECT_EQ(acting(), (Actions{29, 30, 108}));
}

TEST_F(FlowRedirectFaults, TheCountOfAListThatIsStillEmptyIs0)
{
    bcmx_field_action_remove_all(2);
    inject({.call = "bcmx_lplist_add", .code = 0, .do_nothing = true});
    inject({.call = "bcmx_field_action_ports_add", .code = -4});
    EXPECT_FALSE(add(0, param(7), mp(3)));
    EXPECT_NE(text.find("port_list_count = 0, rc = -4, "), std::string::npos) << text;
}

TEST_F(FlowRedirectFaults, EveryCallCanFail)
{
    CapturedOutput output;
    for (const bool adding : {true, false}) {
        for (const uint32_t type : {0u, 1u, 6u, 7u}) {
            FaultSweep([&] {
                return adding
                           ? sdk().add_of_flow_action(1, OF_ACTION_OUTPUT, param(type), mp(3))
                           : sdk().delete_of_flow_action(1, OF_ACTION_OUTPUT, param(type), mp(3));
            })
                .before_each([&] {
                    bcmx_field_action_remove_all(2);
                    if (!adding && type == 0)
                        bcmx_field_action_add(2, bcmFieldActionBypassStp, 0, 0);
                })
                .harmless("bcmx_field_action_ports_get", -7) // then there is no list yet
                .spare("bcmx_lplist_free")
                .run();
        }
    }
}

} // namespace
