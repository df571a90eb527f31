// Counters beyond 32 bits, as the operations of both widths read them.
#include "sim/card/card.h"
#include "sim/chip/chip.h"
#include "tests/kit/kit.h"

namespace {

struct StatWidth : CardTest {
    StatWidth()
    {
        const ChipLock chip;
        PortCounters& c = chip->counters[chip_port_of(3)];
        c.in.octets = 0x1'2345'6789;
        c.in.cast[0] = 0xffff'ffff;
    }
};

TEST_F(StatWidth, TheWideFormHasAllAndTheNarrowOneTheLow32Bits)
{
    unsigned long long wide = 0;
    unsigned narrow = 0;
    EXPECT_TRUE(sdk().get_port_stat_counter(mp(3), STAT_IF_IN_OCTETS, wide));
    EXPECT_TRUE(sdk().get_port_stat_counter32(mp(3), STAT_IF_IN_OCTETS, narrow));
    EXPECT_EQ(wide, 0x1'2345'6789u);
    EXPECT_EQ(narrow, 0x2345'6789u);
}

TEST_F(StatWidth, ANarrowCounterGoesOnFromZero)
{
    unsigned narrow = 1;
    EXPECT_TRUE(sdk().get_port_stat_counter32(mp(3), STAT_IF_IN_UCAST_PKTS, narrow));
    EXPECT_EQ(narrow, 0xffff'ffffu);
    receive(3, udp(host1, host2));
    EXPECT_TRUE(sdk().get_port_stat_counter32(mp(3), STAT_IF_IN_UCAST_PKTS, narrow));
    EXPECT_EQ(narrow, 0u);
}

TEST_F(StatWidth, TheShortSetIsCutLikewise)
{
    std::list<BriefStatCounter64> wide;
    std::list<BriefStatCounter32> narrow;
    EXPECT_TRUE(sdk().get_port_brief_stat_counter_all64(mp(3), wide));
    EXPECT_TRUE(sdk().get_port_brief_stat_counter_all32(mp(3), narrow));
    EXPECT_EQ(std::next(wide.begin())->value, 0x1'2345'6789u);
    EXPECT_EQ(std::next(narrow.begin())->value, 0x2345'6789u);
}

} // namespace
