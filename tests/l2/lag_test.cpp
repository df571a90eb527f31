// LAG operations call by call: creating, deleting, and how traffic is spread.
#include "tests/l2/lag_fixture.h"

namespace {

TEST_F(Lag, CreatingALagGivesItsIdAndSpreadsBySourceAndDestinationMac)
{
    unsigned id = 77;
    EXPECT_TRUE(sdk.create_lag(id));
    EXPECT_EQ(id, 0u);
    EXPECT_TRUE(sdk.create_lag(id));
    EXPECT_EQ(id, 1u);
    EXPECT_EQ(calls_made(), "bcmx_trunk_create(out)\nbcmx_trunk_psc_set(0, 3)\n"
                            "bcmx_trunk_create(out)\nbcmx_trunk_psc_set(1, 3)\n");
}

TEST_F(Lag, AFailedCreationLeavesTheIdAlone)
{
    for (const int code : codes_except({})) {
        unsigned id = 77;
        fail_next("bcmx_trunk_create", code);
        EXPECT_FALSE(sdk.create_lag(id)) << code;
        EXPECT_EQ(id, 77u) << code;
        EXPECT_EQ(calls_made(), "bcmx_trunk_create(out)\n");
    }
}

TEST_F(Lag, ALagWhoseSpreadingCannotBeSetHasItsIdAllTheSame)
{
    for (const int code : codes_except({})) {
        unsigned id = 77;
        fail_next("bcmx_trunk_psc_set", code);
        EXPECT_FALSE(sdk.create_lag(id)) << code;
        EXPECT_NE(id, 77u) << code;
        EXPECT_TRUE(sdk.delete_lag(id)) << code;
    }
}

TEST_F(Lag, DeletingALagFlushesItsAddressesFirstStaticOnesToo)
{
    const unsigned id = make_lag({});
    EXPECT_TRUE(sdk.delete_lag(id));
    EXPECT_EQ(calls_made(), "bcmx_l2_addr_delete_by_trunk(0, 1)\nbcmx_trunk_destroy(0)\n");
}

TEST_F(Lag, DeletingALagDoesNotDependOnTheFlush)
{
    for (const int code : codes_except({})) {
        const unsigned id = make_lag({});
        fail_next("bcmx_l2_addr_delete_by_trunk", code);
        EXPECT_TRUE(sdk.delete_lag(id)) << code;
        EXPECT_TRUE(delete_lag_from_list(id, lag_list));
    }
}

TEST_F(Lag, DeletingALagIsFalseForEveryAnswerButSuccess)
{
    const unsigned id = make_lag({});
    for (const int code : codes_except({})) {
        fail_next("bcmx_trunk_destroy", code);
        EXPECT_FALSE(sdk.delete_lag(id)) << code;
    }
}

TEST_F(Lag, DeletingAnAbsentLagFails)
{
    EXPECT_FALSE(sdk.delete_lag(5));
    calls_made();
    EXPECT_FALSE(sdk.delete_lag(0x12345));
    EXPECT_EQ(calls_made(), "bcmx_l2_addr_delete_by_trunk(74565, 1)\nbcmx_trunk_destroy(74565)\n");
}

TEST_F(Lag, TrunkOperationsLeaveTheBookkeepingAlone)
{
    unsigned id = 77;
    EXPECT_TRUE(sdk.create_lag(id));
    EXPECT_TRUE(lag_list.empty());
    EXPECT_TRUE(add_lag_to_list(id, lag_list));
    EXPECT_TRUE(sdk.delete_lag(id));
    EXPECT_TRUE(is_lag_exist(id, lag_list));
    EXPECT_TRUE(lag_id_usp_map.empty());
}

TEST_F(Lag, EachWayToSpreadIsSetAndReadUnchanged)
{
    const unsigned id = make_lag({});
    for (const int value : {1, 2, 3, 4, 5, 6}) {
        lag_psc_t psc = {};
        EXPECT_TRUE(sdk.set_lag_psc(id, lag_psc_t{value}));
        EXPECT_TRUE(sdk.get_lag_psc(id, psc));
        EXPECT_EQ(psc, value);
        EXPECT_EQ(calls_made(), "bcmx_trunk_psc_set(0, " + std::to_string(value) +
                                    ")\nbcmx_trunk_psc_get(0, out)\n");
    }
}

TEST_F(Lag, AnotherWayToSpreadIsRefusedWithoutACall)
{
    const unsigned id = make_lag({});
    for (const int value : {-1, 0, 7, 259})
        EXPECT_FALSE(sdk.set_lag_psc(id, lag_psc_t{value})) << value;
    EXPECT_EQ(calls_made(), "");
}

TEST_F(Lag, SpreadingIsFalseForEveryAnswerButSuccess)
{
    const unsigned id = make_lag({});
    for (const int code : codes_except({})) {
        const EveryCallAnswers answer(code);
        lag_psc_t psc = LAG_PSC_DST_IP;
        EXPECT_FALSE(sdk.set_lag_psc(id, LAG_PSC_SRC_IP)) << code;
        EXPECT_FALSE(sdk.get_lag_psc(id, psc)) << code;
        EXPECT_EQ(psc, LAG_PSC_DST_IP) << code;
    }
}

} // namespace
