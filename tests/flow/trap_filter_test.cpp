// Trap filters for IP protocols and L4 destination ports.
#include <bcmx/field.h>

#include "tests/flow/trap_fixture.h"

namespace {

/// The two kinds of filter, which differ in what they match only.
struct Kind {
    const char* name;
    bool (VexoBcmSdk::*add)(unsigned);
    bool (VexoBcmSdk::*remove)(unsigned);
    bool (VexoBcmSdk::*remove_all)();
    Filters& filters;
    const char* qualifier; ///< of entry 1 for key 17
};

const Kind kinds[] = {
    {"protocol", &VexoBcmSdk::add_ip_protocol_filter, &VexoBcmSdk::delete_ip_protocol_filter,
     &VexoBcmSdk::delete_ip_protocol_filter_all, ip_proto_fps, "IpProtocol"},
    {"port", &VexoBcmSdk::add_l4_destination_port_filter,
     &VexoBcmSdk::delete_l4_destination_port_filter,
     &VexoBcmSdk::delete_l4_destination_port_filter_all, l4_dport_fps, "L4DstPort"},
};

const int failures[] = {-1, -4, -6, -8, -18, -19, 1};

struct TrapFilter : FlowCard {
    bool add(const Kind& kind, unsigned key) { return (sdk().*kind.add)(key); }
    bool remove(const Kind& kind, unsigned key) { return (sdk().*kind.remove)(key); }
    bool remove_all(const Kind& kind) { return (sdk().*kind.remove_all)(); }
};

TEST_F(TrapFilter, TheSharedGroupIsMadeAtBringUp)
{
    bcmx_field_init();
    clear_calls();
    EXPECT_TRUE(sdk().init_filter_group_no_udf());
    EXPECT_EQ(take_calls(), "bcmx_field_group_create_id(qset:[28, 30, 60], 0, -1)\n");
    EXPECT_EQ(filter_group_no_udf, -1);
    EXPECT_FALSE(sdk().init_filter_group_no_udf());
    EXPECT_EQ(groups(), "");
}

TEST_F(TrapFilter, AProtocolIsTrapped)
{
    EXPECT_TRUE(sdk().add_ip_protocol_filter(17));
    EXPECT_EQ(take_calls(), trap_calls(-1, 1, "IpProtocol(1, 17, 0xff)\n", 8));
    EXPECT_EQ(ip_proto_fps, (Filters{{17, 1}}));
    EXPECT_EQ(l4_dport_fps, Filters{});
}

TEST_F(TrapFilter, AProtocolIsItsLow8BitsAndRemembersTheRest)
{
    EXPECT_TRUE(sdk().add_ip_protocol_filter(0x111));
    EXPECT_EQ(take_calls(), trap_calls(-1, 1, "IpProtocol(1, 17, 0xff)\n", 8));
    EXPECT_EQ(ip_proto_fps, (Filters{{0x111, 1}}));
    EXPECT_TRUE(sdk().add_ip_protocol_filter(0x11));
    EXPECT_EQ(ip_proto_fps, (Filters{{0x11, 2}, {0x111, 1}}));
}

TEST_F(TrapFilter, AnL4PortIsTrapped)
{
    EXPECT_TRUE(sdk().add_l4_destination_port_filter(65535));
    EXPECT_EQ(take_calls(), trap_calls(-1, 1, "L4DstPort(1, 65535, 0xffff)\n", 8));
    EXPECT_EQ(l4_dport_fps, (Filters{{65535, 1}}));
    EXPECT_EQ(ip_proto_fps, Filters{});
}

TEST_F(TrapFilter, AnL4PortIsItsLow16BitsAndRemembersTheRest)
{
    EXPECT_TRUE(sdk().add_l4_destination_port_filter(0x10050));
    EXPECT_EQ(take_calls(), trap_calls(-1, 1, "L4DstPort(1, 80, 0xffff)\n", 8));
    EXPECT_EQ(l4_dport_fps, (Filters{{0x10050, 1}}));
}

TEST_F(TrapFilter, AddingASecondTimeSucceedsAndCallsNothing)
{
    for (const Kind& kind : kinds) {
        add(kind, 17);
        clear_calls();
        EXPECT_TRUE(add(kind, 17)) << kind.name;
        EXPECT_EQ(take_calls(), "");
    }
}

TEST_F(TrapFilter, AFailureEndsTheAddAndLeavesTheEntryBehind)
{
    for (const Kind& kind : kinds) {
        const std::string qualifier = std::string("bcmx_field_qualify_") + kind.qualifier;
        for (const std::string& call :
             {std::string("bcmx_field_entry_create"), std::string("bcmx_field_qualify_IpType"),
              qualifier, std::string("bcmx_field_action_add"),
              std::string("bcmx_field_entry_install")}) {
            for (const int code : failures) {
                fail(call, code);
                EXPECT_FALSE(add(kind, 17)) << call << code;
                const std::string calls = take_calls();
                EXPECT_EQ(calls.rfind('\n', calls.size() - 2) + 1, calls.find(call + "("));
                EXPECT_EQ(kind.filters, Filters{});
            }
        }
    }
    const int left_per_kind = 4 * static_cast<int>(std::size(failures));
    EXPECT_EQ(bcmx_field_entry_destroy(2 * left_per_kind), 0);
    EXPECT_EQ(bcmx_field_entry_destroy(2 * left_per_kind + 1), -7);
}

TEST_F(TrapFilter, DeletingDestroysTheEntryAndRemembersTheFilter)
{
    int entry = 0;
    for (const Kind& kind : kinds) {
        add(kind, 17);
        clear_calls();
        EXPECT_TRUE(remove(kind, 17)) << kind.name;
        const std::string number = std::to_string(++entry);
        EXPECT_EQ(take_calls(), "bcmx_field_entry_destroy(" + number + ")\n");
        EXPECT_EQ(kind.filters, (Filters{{17, entry}}));
        EXPECT_TRUE(add(kind, 17)); // does nothing: there is no entry in the chip
        EXPECT_EQ(take_calls(), "");
        EXPECT_EQ(bcmx_field_entry_install(entry), -7);
        EXPECT_TRUE(remove(kind, 17)); // the chip says that there is none
    }
}

TEST_F(TrapFilter, DeletingAnAbsentOneSucceedsAndCallsNothing)
{
    for (const Kind& kind : kinds) {
        EXPECT_TRUE(remove(kind, 17)) << kind.name;
        EXPECT_TRUE(remove_all(kind)) << kind.name;
        EXPECT_EQ(take_calls(), "");
        EXPECT_EQ(kind.filters, Filters{});
    }
}

TEST_F(TrapFilter, DeletingFailsWithTheChipUnlessItHasNoSuchEntry)
{
    for (const Kind& kind : kinds) {
        add(kind, 17);
        for (const int code : failures) {
            fail("bcmx_field_entry_destroy", code);
            EXPECT_FALSE(remove(kind, 17)) << kind.name << code;
        }
        fail("bcmx_field_entry_destroy", -7);
        EXPECT_TRUE(remove(kind, 17)) << kind.name;
        clear_faults();
    }
}

TEST_F(TrapFilter, DeletingAllGoesByKeyAndForgetsThem)
{
    for (const Kind& kind : kinds) {
        kind.filters = {{17, 103}, {6, 101}, {0x106, 102}};
        EXPECT_TRUE(remove_all(kind)) << kind.name;
        EXPECT_EQ(take_calls(), "bcmx_field_entry_destroy(101)\n"
                                "bcmx_field_entry_destroy(103)\n"
                                "bcmx_field_entry_destroy(102)\n");
        EXPECT_EQ(kind.filters, Filters{});
        EXPECT_TRUE(add(kind, 17));
        EXPECT_EQ(kind.filters.size(), 1u);
        clear_calls();
    }
}

TEST_F(TrapFilter, DeletingAllStopsAtAFailureAndForgetsNone)
{
    const Filters all = {{1, 101}, {2, 102}, {3, 103}};
    for (const Kind& kind : kinds) {
        for (const int code : failures) {
            kind.filters = all;
            fail("bcmx_field_entry_destroy", code, 2);
            EXPECT_FALSE(remove_all(kind)) << kind.name << code;
            EXPECT_EQ(take_calls(), "bcmx_field_entry_destroy(101)\n"
                                    "bcmx_field_entry_destroy(102)\n");
            EXPECT_EQ(kind.filters, all);
        }
    }
}

TEST_F(TrapFilter, OneKindDoesNotTouchTheOther)
{
    add(kinds[0], 17);
    add(kinds[1], 17);
    EXPECT_TRUE(remove_all(kinds[0]));
    EXPECT_EQ(l4_dport_fps, (Filters{{17, 2}}));
    EXPECT_EQ(bcmx_field_entry_install(2), 0);
}

TEST_F(TrapFilter, SaysNothing)
{
    EXPECT_EQ(printed([&] {
                  for (const Kind& kind : kinds) {
                      add(kind, 17);
                      fail("bcmx_field_entry_destroy");
                      remove(kind, 17);
                      fail("bcmx_field_entry_create");
                      add(kind, 18);
                      fail("bcmx_field_entry_destroy");
                      remove_all(kind);
                  }
              }),
              "");
}

TEST_F(TrapFilter, EveryCallCanFail)
{
    for (const Kind& kind : kinds) {
        FaultSweep([&] { return add(kind, 17); }).before_each([&] { kind.filters.clear(); }).run();
        FaultSweep([&] { return remove(kind, 17); }).harmless("bcmx_field_entry_destroy", -7).run();
        FaultSweep([&] { return remove_all(kind); })
            .before_each([&] {
                kind.filters = {{1, 101}, {2, 102}};
            })
            .harmless("bcmx_field_entry_destroy", -7)
            .run();
    }
}

} // namespace
