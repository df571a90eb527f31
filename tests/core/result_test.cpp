#include "core/result.h"

#include <gtest/gtest.h>

#include "core/enum_table.h"
#include "platform/port_map.h"

using namespace vexolc;

namespace {

enum Letter { a, b, c };

} // namespace

TEST(Result, OnlyZeroIsSuccess)
{
    EXPECT_TRUE(ok(0));
    for (const int rc : {-1, -7, -8, -18, 1})
        EXPECT_FALSE(ok(rc)) << rc;
}

TEST(Result, ToleratedCodesAreSuccessToo)
{
    EXPECT_TRUE(ok(0, BCM_E_NOT_FOUND, BCM_E_UNAVAIL));
    EXPECT_TRUE(ok(-7, BCM_E_NOT_FOUND, BCM_E_UNAVAIL));
    EXPECT_TRUE(ok(-16, BCM_E_NOT_FOUND, BCM_E_UNAVAIL));
    EXPECT_FALSE(ok(-8, BCM_E_NOT_FOUND, BCM_E_UNAVAIL));
}

TEST(Result, EveryCodeHasItsTextAndOthersShareTheLast)
{
    for (int rc = 0; rc >= -18; --rc)
        EXPECT_STREQ(sdk_reason(rc), _shr_errmsg[-rc]) << rc;
    for (const int rc : {1, 18, -19, -20, 2147483647, -2147483647 - 1})
        EXPECT_STREQ(sdk_reason(rc), _shr_errmsg[19]) << rc;
}

TEST(Result, AnMpThatNamesNoPortIsLportMinus1)
{
    map_build_uport_to_user_port();
    map_build_user_port_to_module_port();
    vexo_user_port_to_lport[5] = 300;
    EXPECT_EQ(lport_of(Mp(0, 5)), 300);
    EXPECT_EQ(lport_of(Mp(1, 5)), -1);
}

TEST(EnumTable, ReadsBothWaysAndRefusesTheRest)
{
    constexpr EnumTable<Letter, 2> table = {{{a, 10}, {b, 20}}};
    int sdk = 77;
    Letter letter = c;
    EXPECT_TRUE(table.to_sdk(b, sdk));
    EXPECT_EQ(sdk, 20);
    EXPECT_TRUE(table.from_sdk(10, letter));
    EXPECT_EQ(letter, a);
    EXPECT_FALSE(table.to_sdk(c, sdk));
    EXPECT_FALSE(table.from_sdk(30, letter));
    EXPECT_EQ(sdk, 20);
    EXPECT_EQ(letter, a);
}

TEST(EnumTable, KnowsWhetherItIsTwoWay)
{
    constexpr EnumTable<Letter, 2> good = {{{a, 10}, {b, 20}}};
    constexpr EnumTable<Letter, 2> same_sdk = {{{a, 10}, {b, 10}}};
    constexpr EnumTable<Letter, 2> same_letter = {{{a, 10}, {a, 20}}};
    EXPECT_TRUE(good.two_way());
    EXPECT_FALSE(same_sdk.two_way());
    EXPECT_FALSE(same_letter.two_way());
}
