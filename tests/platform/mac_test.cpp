#include <gtest/gtest.h>

#include "platform/mac.h"

namespace {

const unsigned char broadcast[6] = {0xff, 0xff, 0xff, 0xff, 0xff, 0xff};
const unsigned char group[6] = {0x01, 0x00, 0x5e, 0x00, 0x00, 0x01};
const unsigned char host[6] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};

} // namespace

TEST(Mac, IsTheSameOnlyWhenAllSixBytesAre)
{
    EXPECT_TRUE(mac_t_same(host, host));
    for (int i = 0; i < 6; ++i) {
        unsigned char other[6] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
        other[i] ^= 0x80;
        EXPECT_FALSE(mac_t_same(host, other)) << i;
    }
}

TEST(Mac, IsBroadcastOnlyWhenEveryBitIsSet)
{
    const unsigned char almost[6] = {0xff, 0xff, 0xff, 0xff, 0xff, 0xfe};
    EXPECT_TRUE(is_mac_t_broadcast(broadcast));
    EXPECT_FALSE(is_mac_t_broadcast(almost));
    EXPECT_FALSE(is_mac_t_broadcast(group));
}

TEST(Mac, IsMulticastByTheLowBitOfTheFirstByteBroadcastIncluded)
{
    const unsigned char local[6] = {0x02, 0x01, 0x01, 0x01, 0x01, 0x01};
    EXPECT_TRUE(is_mac_t_multicast(broadcast));
    EXPECT_TRUE(is_mac_t_multicast(group));
    EXPECT_FALSE(is_mac_t_multicast(host));
    EXPECT_FALSE(is_mac_t_multicast(local));
}
