#include <gtest/gtest.h>

#include "platform/mp.h"
#include "platform/usp.h"

TEST(Mp, OrdersByModuleThenByPort)
{
    EXPECT_TRUE(Mp(0, 5) < Mp(2, 0));
    EXPECT_FALSE(Mp(2, 0) < Mp(0, 5));
    EXPECT_TRUE(Mp(1, 6) < Mp(1, 7));
    EXPECT_FALSE(Mp(1, 7) < Mp(1, 6));
    EXPECT_FALSE(Mp(1, 7) < Mp(1, 7));
}

TEST(Mp, OrdersAsUnsignedNumbers)
{
    EXPECT_TRUE(Mp(1, 0) < Mp(0x80000000u, 0));
    EXPECT_TRUE(Mp(0, 1) < Mp(0, 0xffffffffu));
}

TEST(Mp, EqualsOnlyWhenBothNumbersDo)
{
    EXPECT_TRUE(Mp(2, 50) == Mp(2, 50));
    EXPECT_FALSE(Mp(2, 50) == Mp(0, 50));
    EXPECT_FALSE(Mp(2, 50) == Mp(2, 51));
}

TEST(Mp, ReadsWhatWasSet)
{
    Mp mp(1, 2);
    mp.set_module(3);
    mp.set_port(53);
    const Mp& same = mp;
    EXPECT_EQ(mp.module(), 3u);
    EXPECT_EQ(mp.port(), 53u);
    EXPECT_EQ(same.module(), 3u);
    EXPECT_EQ(same.port(), 53u);
}

TEST(Usp, EqualsOnlyWhenAllThreeNumbersDo)
{
    EXPECT_TRUE(Usp(1, 2, 3) == Usp(1, 2, 3));
    EXPECT_FALSE(Usp(1, 2, 3) == Usp(0, 2, 3));
    EXPECT_FALSE(Usp(1, 2, 3) == Usp(1, 0, 3));
    EXPECT_FALSE(Usp(1, 2, 3) == Usp(1, 2, 0));
}

TEST(Usp, ReadsWhatWasSetAndCopiesFieldByField)
{
    Usp usp(0, 0, 0);
    usp.set_unit(1);
    usp.set_slot(2);
    usp.set_port(3);
    const Usp copy(usp);
    usp.set_port(4);
    EXPECT_EQ(copy.unit(), 1u);
    EXPECT_EQ(copy.slot(), 2u);
    EXPECT_EQ(copy.port(), 3u);
    EXPECT_EQ(usp.port(), 4u);
}
