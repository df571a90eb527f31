// Adding flows.
#include <bcmx/field.h>

#include "tests/flow/flow_fixture.h"

namespace {

using Ids = std::vector<unsigned>;

using Flow = FlowCard;

TEST_F(Flow, TheFirstOfItsKindMakesAGroupAndAnEntry)
{
    EXPECT_TRUE(add_flow(flow_of(0x0005)));
    EXPECT_EQ(take_calls(), "bcmx_field_group_create(qset:[7, 12], 0, out)\n"
                            "bcmx_field_entry_create(1, out)\n"
                            "bcmx_field_qualify_InPort(1, 5)\n"
                            "bcmx_field_qualify_DstMac(1, 02:00:00:00:00:0b, ff:ff:ff:ff:ff:ff)\n"
                            "bcmx_field_counter_create(1)\n"
                            "bcmx_field_action_add(1, 108, 1, 0)\n"
                            "bcmx_field_entry_install(1)\n");
    EXPECT_EQ(text, "add qualify InPort = (0, 5)\n"
                    "add qualify DstMac = 02:00:00:00:00:0b\n");
    EXPECT_EQ(flow_id, 0u);
    EXPECT_EQ(flows(), "0:1 ");
    EXPECT_EQ(groups(), "1/5/1\n");
}

TEST_F(Flow, ASecondOfTheKindSharesTheGroup)
{
    add_flow(flow_of(0x0004));
    clear_calls();
    EXPECT_TRUE(add_flow(flow_of(0x0004)));
    EXPECT_EQ(take_calls(), "bcmx_field_entry_create(1, out)\n"
                            "bcmx_field_qualify_DstMac(2, 02:00:00:00:00:0b, ff:ff:ff:ff:ff:ff)\n"
                            "bcmx_field_counter_create(2)\n"
                            "bcmx_field_action_add(2, 108, 1, 0)\n"
                            "bcmx_field_entry_install(2)\n");
    EXPECT_EQ(text, "add qualify DstMac = 02:00:00:00:00:0b\n");
    EXPECT_EQ(flow_id, 1u);
    EXPECT_EQ(flows(), "0:1 1:2 ");
    EXPECT_EQ(groups(), "1/4/2\n");
}

TEST_F(Flow, OneOfAnotherKindGetsAGroupOfItsOwn)
{
    add_flow(flow_of(0x0006));
    add_flow(flow_of(0x0006));
    EXPECT_TRUE(add_flow(flow_of(0x0002)));
    EXPECT_EQ(groups(), "1/6/2\n2/2/1\n");
}

TEST_F(Flow, WithoutFlagsMatchesEverythingAndIsCounted)
{
    EXPECT_TRUE(add_flow(flow_of(0)));
    EXPECT_EQ(take_calls(), "bcmx_field_group_create(qset:[], 0, out)\n"
                            "bcmx_field_entry_create(1, out)\n"
                            "bcmx_field_counter_create(1)\n"
                            "bcmx_field_action_add(1, 108, 1, 0)\n"
                            "bcmx_field_entry_install(1)\n");
    EXPECT_EQ(text, "");
    EXPECT_EQ(groups(), "1/0/1\n");
}

TEST_F(Flow, TheByteMatchIsNotLookedAtWithoutItsFlag)
{
    EXPECT_TRUE(add_flow(flow_of(0x0004), {14, 4, nullptr, nullptr}));
    EXPECT_EQ(groups(), "1/4/1\n");
}

TEST_F(Flow, WithAByteMatchMakesUdfs)
{
    EXPECT_TRUE(add_flow(flow_of(0x1000), Udf(14, {1, 2, 3, 4, 5, 6})));
    EXPECT_EQ(take_calls(), "bcmx_field_udf_create_id({flags=0x380, offset=4}, 1)\n"
                            "bcmx_field_qset_add_udf(qset:[], 1)\n"
                            "bcmx_field_udf_create_id({flags=0x380, offset=5}, 2)\n"
                            "bcmx_field_qset_add_udf(qset:[]+udf:[1], 2)\n"
                            "bcmx_field_group_create(qset:[]+udf:[1, 2], 0, out)\n"
                            "bcmx_field_entry_create(1, out)\n"
                            "bcmx_field_qualify_UserDefined(1, 1, 01020304, ffffffff)\n"
                            "bcmx_field_qualify_UserDefined(1, 2, 05060000, ffff0000)\n"
                            "bcmx_field_counter_create(1)\n"
                            "bcmx_field_action_add(1, 108, 1, 0)\n"
                            "bcmx_field_entry_install(1)\n");
    EXPECT_EQ(text, "bcmx_field_qset_add_udf: udf_ids[0] = 1, offset = 14, bcm_offset = 4\n"
                    "bcmx_field_qset_add_udf: udf_ids[1] = 2, offset = 18, bcm_offset = 5\n"
                    "bcmx_field_qualify_UserDefined: entry = 0x1, udf_id = 1, data = 01 02 03 04, "
                    "mask = ff ff ff ff\n"
                    "bcmx_field_qualify_UserDefined: entry = 0x1, udf_id = 2, data = 05 06 00 00, "
                    "mask = ff ff 00 00\n");
    EXPECT_EQ(groups(), "1/4096/1 1@14 2@18\n");
    EXPECT_EQ(udfs_in_use(), (Ids{1, 2}));
}

TEST_F(Flow, ByteMatchesAtTheSameOffsetsShareGroupAndUdfs)
{
    add_flow(flow_of(0x1000), Udf(14, {1, 2, 3, 4}));
    EXPECT_TRUE(add_flow(flow_of(0x1000), Udf(14, {9, 9, 9, 9}, {0xf0, 0, 0, 1})));
    EXPECT_EQ(text, "bcmx_field_qualify_UserDefined: entry = 0x2, udf_id = 1, data = 09 09 09 09, "
                    "mask = f0 00 00 01\n");
    EXPECT_EQ(groups(), "1/4096/2 1@14\n");
}

TEST_F(Flow, ByteMatchesAtOtherOffsetsOrOfOtherLengthsGetNewGroups)
{
    add_flow(flow_of(0x1000), Udf(14, {1, 2, 3, 4}));
    EXPECT_TRUE(add_flow(flow_of(0x1000), Udf(18, {1, 2, 3, 4})));
    EXPECT_TRUE(add_flow(flow_of(0x1000), Udf(14, {1, 2, 3, 4, 5})));
    EXPECT_EQ(groups(), "1/4096/1 1@14\n2/4096/1 2@18\n3/4096/1 3@14 4@18\n");
}

TEST_F(Flow, AByteMatchOfNoBitsGetsAGroupWithoutUdfs)
{
    EXPECT_TRUE(add_flow(flow_of(0x1000), Udf(14, {1, 2}, {0, 0})));
    EXPECT_EQ(text, "");
    EXPECT_EQ(groups(), "1/4096/1\n");
    EXPECT_TRUE(add_flow(flow_of(0x1000), Udf(30, {5}, {0})));
    EXPECT_EQ(groups(), "1/4096/2\n");
    EXPECT_EQ(udfs_in_use(), Ids{});
}

TEST_F(Flow, AByteMatchOfLength0FailsBeforeAnythingIsMade)
{
    EXPECT_FALSE(add_flow(flow_of(0x1000), Udf(14, {})));
    EXPECT_EQ(text, "");
    EXPECT_EQ(take_calls(), "");
    EXPECT_EQ(groups(), "");
    EXPECT_EQ(flow_id, 77u);
}

TEST_F(Flow, AByteMatchOfMoreWordsThanUdfsIsOutOfResources)
{
    const std::vector<uint8_t> bytes(std::size_t{93} * 4, 1);
    EXPECT_FALSE(add_flow(flow_of(0x1000), Udf(2, bytes)));
    EXPECT_EQ(text, "bcmx_qset_add_fields failed, flags = 0x1000, rc = -14, reason = "
                    "No resources for operation.\n");
    EXPECT_EQ(take_calls(), "");
    EXPECT_EQ(udfs_in_use(), Ids{});
    const std::vector<uint8_t> fitting(std::size_t{92} * 4, 1);
    EXPECT_TRUE(add_flow(flow_of(0x1000), Udf(2, fitting)));
    EXPECT_EQ(udfs_in_use().size(), 92u);
    EXPECT_FALSE(add_flow(flow_of(0x1002), Udf(2, {1})));
    EXPECT_EQ(flows(), "0:1 ");
}

TEST_F(Flow, AnIngressPortThatDoesNotExistLeavesItsEntryBehind)
{
    of_flow_mp_s flow = flow_of(0x0001);
    flow.port = Mp(1, 5);
    EXPECT_FALSE(add_flow(flow));
    EXPECT_EQ(text, "bcmx_field_entry_add_qualify failed, bcm_fe = 1(0x1), rc = -4, reason = "
                    "Invalid parameter\n");
    EXPECT_EQ(take_calls(), "bcmx_field_group_create(qset:[12], 0, out)\n"
                            "bcmx_field_entry_create(1, out)\n");
    EXPECT_EQ(groups(), "1/1/0\n");
    EXPECT_EQ(bcmx_field_group_destroy(1), -10);
}

TEST_F(Flow, OnesThatFailDoNotUseUpIds)
{
    EXPECT_TRUE(add_flow(flow_of(4)));
    EXPECT_EQ(flow_id, 0u);
    fail("bcmx_field_entry_install");
    EXPECT_FALSE(add_flow(flow_of(4)));
    clear_faults();
    EXPECT_TRUE(add_flow(flow_of(4)));
    EXPECT_EQ(flow_id, 1u);
    EXPECT_EQ(next_flow_id, 2u);
    EXPECT_EQ(flows(), "0:1 1:3 ");
    EXPECT_EQ(groups(), "1/4/2\n");
}

TEST_F(Flow, AnotherOfWhichThereIsNoRoomLeavesTheOthersAlone)
{
    fail("bcmx_field_entry_create", -6);
    EXPECT_FALSE(add_flow(flow_of(4)));
    EXPECT_EQ(text, "bcmx_field_entry_create failed, rc = -6, reason = Table full\n");
    EXPECT_EQ(groups(), "1/4/0\n"); // the new group stays, without entries
    clear_faults();
    clear_calls();
    EXPECT_TRUE(add_flow(flow_of(2)));
    EXPECT_EQ(groups(), "2/2/1\n"); // until the next flow is added
    EXPECT_NE(take_calls().find("bcmx_field_entry_install(1)\nbcmx_field_group_destroy(1)\n"),
              std::string::npos);
}

TEST_F(Flow, AGroupThatCannotBeFreedDoesNotFailTheFlow)
{
    vexosdk_add_field_group(40, 1, {});
    fail("bcmx_field_group_destroy", -10);
    EXPECT_TRUE(add_flow(flow_of(4)));
    EXPECT_EQ(groups(), "40/1/0\n1/4/1\n");
}

TEST_F(Flow, UdfsOfAGroupThatCouldNotBeMadeStay)
{
    fail("bcmx_field_group_create", -6);
    EXPECT_FALSE(add_flow(flow_of(0x1000), Udf(14, {1, 2, 3, 4})));
    EXPECT_EQ(groups(), "");
    EXPECT_EQ(udfs_in_use(), Ids{1});
    EXPECT_EQ(bcmx_field_udf_destroy(1), 0);
}

TEST_F(Flow, AUdfIdThatTheChipHasGivenAwayIsLost)
{
    bcm_field_udf_spec_t spec = {};
    bcmx_field_udf_create_id(&spec, 1);
    EXPECT_FALSE(add_flow(flow_of(0x1000), Udf(14, {1})));
    EXPECT_EQ(text,
              "bcmx_qset_add_fields failed, flags = 0x1000, rc = -8, reason = Entry exists.\n");
    EXPECT_EQ(udfs_in_use(), Ids{1});
    EXPECT_TRUE(add_flow(flow_of(0x1000), Udf(14, {1})));
    EXPECT_EQ(udfs_in_use(), (Ids{1, 2}));
}

TEST_F(Flow, WithAnIdOfTheCallersChoiceIsNotBuilt)
{
    EXPECT_FALSE(sdk().add_of_flow_with_id(flow_of(4), 5));
    EXPECT_EQ(take_calls(), "");
    EXPECT_EQ(groups() + flows(), "");
    EXPECT_EQ(next_flow_id, 0u);
}

TEST_F(Flow, TheTableTakes16384AndSaysThatItIsFull)
{
    log_calls(false);
    printed([&] {
        for (unsigned n = 0; n < 16384; ++n)
            ASSERT_TRUE(sdk().add_of_flow(flow_of(4), flow_id, no_udf)) << n;
    });
    EXPECT_EQ(flow_id, 16383u);
    EXPECT_FALSE(add_flow(flow_of(4)));
    EXPECT_EQ(text, "bcmx_field_entry_create failed, rc = -6, reason = Table full\n");
    EXPECT_EQ(groups(), "1/4/16384\n");
    EXPECT_EQ(flow_id, 16383u);
}

} // namespace
