// MAC entries towards the CPU, alone and by VLAN bitmap, and deletes by bitmap.
#include <gtest/gtest.h>

#include <array>

#include "platform/port_map.h"
#include "tests/l2/driver.h"

namespace {

const unsigned char host[6] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
const unsigned char group[6] = {0x01, 0x00, 0x5e, 0x00, 0x00, 0x01};
const unsigned char everyone[6] = {0xff, 0xff, 0xff, 0xff, 0xff, 0xff};

using Bitmap = std::array<unsigned char, 512>;

Bitmap bitmap(const std::vector<unsigned>& vids)
{
    Bitmap bits = {};
    for (const unsigned vid : vids)
        bits[vid / 8] = static_cast<unsigned char>(bits[vid / 8] | 1u << vid % 8);
    return bits;
}

std::string adds(const std::vector<unsigned>& vids)
{
    std::string lines;
    for (const unsigned vid : vids)
        lines += "bcmx_l2_addr_add({flags=0x20, mac=00:11:22:33:44:55, vid=" + std::to_string(vid) +
                 ", port=cpu}, null)\n";
    return lines;
}

std::string deletes(const std::vector<unsigned>& vids)
{
    std::string lines;
    for (const unsigned vid : vids)
        lines += "bcmx_l2_addr_delete(00:11:22:33:44:55, " + std::to_string(vid) + ")\n";
    return lines;
}

} // namespace

TEST(FdbBitmap, ASystemMacIsStaticAndLeadsToTheCpu)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_TRUE(sdk.add_system_mac(host, 0x10001));
    EXPECT_TRUE(sdk.add_system_mac(host, 1)); // again
    EXPECT_EQ(calls_made(), adds({1, 1}));
}

TEST(FdbBitmap, AMulticastSystemMacIsRefusedWithoutACall)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const unsigned char* mac : {group, everyone}) {
        EXPECT_FALSE(sdk.add_system_mac(mac, 1));
        EXPECT_FALSE(sdk.add_system_mac_vlan_bitmap(mac, bitmap({1}).data()));
    }
    EXPECT_EQ(calls_made(), "");
}

TEST(FdbBitmap, ASystemMacNeedsAnAttachedCpuPort)
{
    VexoBcmSdk& sdk = driver_with_log();
    vexo_user_port_to_lport[53] = -1;
    EXPECT_FALSE(sdk.add_system_mac(host, 1));
    EXPECT_FALSE(sdk.add_system_mac_vlan_bitmap(host, bitmap({1}).data()));
    EXPECT_EQ(calls_made(), "");
}

TEST(FdbBitmap, EveryVlanWhoseBitIsSetGetsTheSystemMacInRisingOrder)
{
    VexoBcmSdk& sdk = driver_with_log();
    const EveryCallAnswers answer(0);
    const std::vector<unsigned> vids = {0, 1, 7, 8, 15, 511, 512, 4094, 4095};
    EXPECT_TRUE(sdk.add_system_mac_vlan_bitmap(host, bitmap(vids).data()));
    EXPECT_EQ(calls_made(), adds(vids));
}

TEST(FdbBitmap, AnEmptyBitmapSucceedsWithoutACall)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_TRUE(sdk.add_system_mac_vlan_bitmap(host, bitmap({}).data()));
    EXPECT_TRUE(sdk.delete_mac_vlan_bitmap(host, bitmap({}).data()));
    EXPECT_EQ(calls_made(), "");
}

TEST(FdbBitmap, AddingToleratesEntriesThatExistAndStopsAtOtherAnswers)
{
    VexoBcmSdk& sdk = driver_with_log();
    const Bitmap bits = bitmap({1, 2, 3});
    {
        const EveryCallAnswers answer(-8);
        EXPECT_TRUE(sdk.add_system_mac_vlan_bitmap(host, bits.data()));
        EXPECT_EQ(calls_made(), adds({1, 2, 3}));
    }
    for (const int code : codes_except({-8})) {
        fail_next("bcmx_l2_addr_add", code, 2);
        EXPECT_FALSE(sdk.add_system_mac_vlan_bitmap(host, bits.data())) << code;
        EXPECT_EQ(calls_made(), adds({1, 2}));
    }
}

TEST(FdbBitmap, DeletingLooksAtTheFirst512VlansOnly)
{
    VexoBcmSdk& sdk = driver_with_log();
    const EveryCallAnswers answer(0);
    const std::vector<unsigned> vids = {0, 1, 7, 8, 510, 511, 512, 4095};
    EXPECT_TRUE(sdk.delete_mac_vlan_bitmap(host, bitmap(vids).data()));
    EXPECT_EQ(calls_made(), deletes({0, 1, 7, 8, 510, 511}));
}

TEST(FdbBitmap, DeletingReadsNoMoreThan64Bytes)
{
    VexoBcmSdk& sdk = driver_with_log();
    const std::vector<unsigned char> bits(64); // a read beyond it is for sanitizers to see
    EXPECT_TRUE(sdk.delete_mac_vlan_bitmap(host, bits.data()));
}

TEST(FdbBitmap, DeletingToleratesExistsButNotAnAbsentEntry)
{
    VexoBcmSdk& sdk = driver_with_log();
    const Bitmap bits = bitmap({1, 2, 3});
    {
        const EveryCallAnswers answer(-8);
        EXPECT_TRUE(sdk.delete_mac_vlan_bitmap(host, bits.data()));
        EXPECT_EQ(calls_made(), deletes({1, 2, 3}));
    }
    for (const int code : codes_except({-8})) {
        const EveryCallAnswers answer(code);
        EXPECT_FALSE(sdk.delete_mac_vlan_bitmap(host, bits.data())) << code;
        EXPECT_EQ(calls_made(), deletes({1}));
    }
}

TEST(FdbBitmap, DeletingWhatWasAddedSucceedsOnce)
{
    VexoBcmSdk& sdk = driver_with_log();
    const Bitmap bits = bitmap({1});
    EXPECT_TRUE(sdk.add_system_mac_vlan_bitmap(host, bits.data()));
    EXPECT_TRUE(sdk.delete_mac_vlan_bitmap(host, bits.data()));
    EXPECT_FALSE(sdk.delete_mac_vlan_bitmap(host, bits.data()));
}
