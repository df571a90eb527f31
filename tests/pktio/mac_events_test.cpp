#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "core/factory.h"
#include "pktio/event_records.h"
#include "pktio/receive.h"
#include "platform/port_map.h"
#include "tests/platform/port_tables.h"
#include "vexosim/clock.h"

namespace {

constexpr uint8_t host[] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
int own_cookie = 0;
int event_data = 0;

struct Heard {
    L2Addr addr;
    int type;
    void* data;
};
std::vector<Heard> heard;
struct HeardC {
    ctype_l2_addr_s addr;
    int type;
    void* data;
};
std::vector<HeardC> heard_c;
bool class_form_first = true;

void on_mac(L2Addr* addr, int type, void* data)
{
    class_form_first &= heard.size() == heard_c.size();
    heard.push_back({*addr, type, data});
}

void on_mac_c(ctype_l2_addr_s* addr, int type, void* data)
{
    class_form_first &= heard.size() == heard_c.size() + 1;
    heard_c.push_back({*addr, type, data});
}

int lport_of_user_port(int user_port)
{
    return vexo_user_port_to_lport[user_port];
}

bcmx_l2_addr_t entry_on(int lport, uint32_t flags = 0)
{
    bcmx_l2_addr_t entry = {};
    entry.flags = flags;
    std::copy_n(host, 6, entry.mac);
    entry.vid = 0xffee;
    entry.lport = lport;
    entry.tgid = 77;
    entry.rtag = 5;
    entry.auth = 3;
    return entry;
}

struct MacEvents : testing::Test {
    uint32_t count_before = 0;

    MacEvents()
    {
        vexosim::use_manual_clock();
        vexosdk_create_sdk_instance();
        build_port_tables();
        heard.clear();
        heard_c.clear();
        class_form_first = true;
        bcm_sdk->register_mac_update_callback_c(on_mac_c, &own_cookie);
        bcm_sdk->register_mac_update_callback(on_mac, &own_cookie);
        count_before = vexolc::mac_entry_count();
    }
    ~MacEvents() override { vexosdk_delete_sdk_instance(nullptr); }

    int counted() const { return static_cast<int>(vexolc::mac_entry_count() - count_before); }
};

void notify(bcmx_l2_addr_t entry, int insert = 1)
{
    vexo_l2_notify_handler(&entry, insert, &event_data);
}

void expect_common(const L2Addr& addr, const ctype_l2_addr_s& c_addr, uint32_t flags, int type)
{
    EXPECT_EQ(addr.flags(), flags);
    EXPECT_EQ(c_addr.flags, flags);
    EXPECT_EQ(std::memcmp(addr.mac(), host, 6), 0);
    EXPECT_EQ(std::memcmp(c_addr.mac, host, 6), 0);
    EXPECT_EQ(addr.vlan(), 0xffeeu);
    EXPECT_EQ(c_addr.vlan, 0xffeeu);
    EXPECT_EQ(addr.auth(), 3);
    EXPECT_EQ(c_addr.auth, 3);
    EXPECT_EQ(addr.type(), type);
    EXPECT_EQ(c_addr.type, type);
}

TEST_F(MacEvents, ALearnedEntryIsReportedOnItsPortInBothForms)
{
    notify(entry_on(lport_of_user_port(50), 0x40));
    ASSERT_EQ(heard.size(), 1u);
    ASSERT_EQ(heard_c.size(), 1u);
    const L2Addr& addr = heard[0].addr;
    const ctype_l2_addr_s& c_addr = heard_c[0].addr;
    expect_common(addr, c_addr, 0x40, 1);
    EXPECT_EQ(addr.port(), Usp(1, 1, 51));
    EXPECT_EQ(Usp(c_addr.unit, c_addr.slot, c_addr.port), Usp(1, 1, 51));
    EXPECT_TRUE(addr.learn_type());
    EXPECT_EQ(c_addr.learn_type, 1);
    EXPECT_FALSE(addr.is_trunk());
    EXPECT_EQ(c_addr.is_trunk, 0);
    EXPECT_EQ(addr.trunk_sel(), 0);
    EXPECT_EQ(c_addr.trunk, 0);
    EXPECT_EQ(c_addr.trunk_sel, 0);
    EXPECT_TRUE(class_form_first);
}

TEST_F(MacEvents, TheSlotOfTheCardIsReported)
{
    self_slot_id = 4;
    notify(entry_on(lport_of_user_port(50)));
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].addr.port(), Usp(1, 4, 51));
    ASSERT_EQ(heard_c.size(), 1u);
    const ctype_l2_addr_s& c_addr = heard_c[0].addr;
    EXPECT_EQ(Usp(c_addr.unit, c_addr.slot, c_addr.port), Usp(1, 4, 51));
}

TEST_F(MacEvents, ATrunkEntryIsReportedOnTheTrunkAndOnNoPort)
{
    notify(entry_on(-5, 0x80)); // the logical port is not looked at
    ASSERT_EQ(heard.size(), 1u);
    ASSERT_EQ(heard_c.size(), 1u);
    const L2Addr& addr = heard[0].addr;
    const ctype_l2_addr_s& c_addr = heard_c[0].addr;
    expect_common(addr, c_addr, 0x80, 1);
    EXPECT_EQ(addr.port(), Usp(0, 0, 0));
    EXPECT_EQ(Usp(c_addr.unit, c_addr.slot, c_addr.port), Usp(0, 0, 0));
    EXPECT_TRUE(addr.is_trunk());
    EXPECT_EQ(c_addr.is_trunk, 1);
    EXPECT_EQ(addr.trunk(), 77);
    EXPECT_EQ(c_addr.trunk, 77);
    EXPECT_EQ(addr.trunk_sel(), 5);
    EXPECT_EQ(c_addr.trunk_sel, 5);
    EXPECT_TRUE(addr.learn_type());
}

TEST_F(MacEvents, AStaticEntryIsReportedAsNotLearned)
{
    notify(entry_on(lport_of_user_port(0), 0x20));
    notify(entry_on(-1, 0xa0));
    ASSERT_EQ(heard.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_FALSE(heard[i].addr.learn_type());
        EXPECT_EQ(heard_c[i].addr.learn_type, 0);
    }
}

TEST_F(MacEvents, OtherFlagsChangeNothingAndArePassedOn)
{
    constexpr uint32_t with_meaning = 0x10 | 0x20 | 0x80;
    notify(entry_on(lport_of_user_port(1), ~with_meaning));
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].addr.flags(), ~with_meaning);
    EXPECT_TRUE(heard[0].addr.learn_type());
    EXPECT_FALSE(heard[0].addr.is_trunk());
    EXPECT_EQ(heard[0].addr.port(), Usp(1, 1, 2));
}

TEST_F(MacEvents, SubscribersGetTheKindOfReportAndTheDataOfTheEvent)
{
    for (const int insert : {0, 1, 2}) {
        heard.clear();
        heard_c.clear();
        notify(entry_on(lport_of_user_port(1)), insert);
        ASSERT_EQ(heard.size(), 1u);
        ASSERT_EQ(heard_c.size(), 1u);
        EXPECT_EQ(heard[0].type, insert);
        EXPECT_EQ(heard_c[0].type, insert);
        EXPECT_EQ(heard[0].addr.type(), insert);
        EXPECT_EQ(heard_c[0].addr.type, insert);
        EXPECT_EQ(heard[0].data, &event_data);
        EXPECT_EQ(heard_c[0].data, &event_data);
    }
}

TEST(MacEntryCount, StartsAtZero)
{
    EXPECT_EQ(vexolc::mac_entry_count(), 0u);
}

TEST_F(MacEvents, TheCounterFallsOnRemovalAndRisesOtherwise)
{
    notify(entry_on(lport_of_user_port(1)), 1);
    EXPECT_EQ(counted(), 1);
    notify(entry_on(lport_of_user_port(1)), 2);
    EXPECT_EQ(counted(), 2);
    notify(entry_on(lport_of_user_port(1)), 0);
    EXPECT_EQ(counted(), 1);
    notify(entry_on(lport_of_user_port(1)), -1);
    EXPECT_EQ(counted(), 2);
}

TEST_F(MacEvents, MulticastEntriesAreNeitherReportedNorCounted)
{
    bcmx_l2_addr_t entry = entry_on(lport_of_user_port(1));
    for (const int first : {0x01, 0x33, 0xff}) {
        entry.mac[0] = static_cast<uint8_t>(first);
        notify(entry);
    }
    EXPECT_TRUE(heard.empty() && heard_c.empty());
    EXPECT_EQ(counted(), 0);
}

TEST_F(MacEvents, PendingEntriesAreNeitherReportedNorCounted)
{
    notify(entry_on(lport_of_user_port(1), 0x10));
    notify(entry_on(-1, 0x90));
    EXPECT_TRUE(heard.empty() && heard_c.empty());
    EXPECT_EQ(counted(), 0);
}

TEST_F(MacEvents, EntriesOnTheCpuPortAreCountedButNotReported)
{
    notify(entry_on(lport_of_user_port(53)));
    EXPECT_TRUE(heard.empty() && heard_c.empty());
    EXPECT_EQ(counted(), 1);
}

TEST_F(MacEvents, EntriesOnNoPortAreCountedButNotReported)
{
    notify(entry_on(12345));
    notify(entry_on(-1));
    EXPECT_TRUE(heard.empty() && heard_c.empty());
    EXPECT_EQ(counted(), 2);
}

TEST_F(MacEvents, NothingIsCountedWithoutAnInstance)
{
    vexosdk_delete_sdk_instance(nullptr);
    notify(entry_on(lport_of_user_port(1)));
    EXPECT_TRUE(heard.empty() && heard_c.empty());
    EXPECT_EQ(counted(), 0);
}

bcm_l2_addr_t unit_entry(int chip_port, uint32_t flags)
{
    bcm_l2_addr_t entry = {};
    entry.flags = flags;
    std::copy_n(host, 6, entry.mac);
    entry.vid = 0xffee;
    entry.port = chip_port;
    entry.tgid = 77;
    entry.rtag = 5;
    return entry;
}

TEST_F(MacEvents, AWalkListsEntriesAsType2AndCountsThem)
{
    bcm_l2_addr_t entry = unit_entry(2, 0x40); // chip-local port 2 is user port 8
    EXPECT_EQ(vexo_mac_traverse_callback(0, &entry, &event_data), 0);
    ASSERT_EQ(heard.size(), 1u);
    ASSERT_EQ(heard_c.size(), 1u);
    const L2Addr& addr = heard[0].addr;
    EXPECT_EQ(addr.flags(), 0x40u);
    EXPECT_EQ(std::memcmp(addr.mac(), host, 6), 0);
    EXPECT_EQ(addr.vlan(), 0xffeeu);
    EXPECT_EQ(addr.port(), Usp(1, 1, 9));
    EXPECT_EQ(addr.auth(), 0);
    EXPECT_EQ(addr.type(), 2);
    EXPECT_EQ(heard_c[0].type, 2);
    EXPECT_EQ(heard_c[0].addr.port, 9u);
    EXPECT_EQ(heard[0].data, &event_data);
    EXPECT_EQ(counted(), 1);
}

TEST_F(MacEvents, AWalkListsTrunkEntriesWithoutASelection)
{
    bcm_l2_addr_t entry = unit_entry(2, 0x80);
    EXPECT_EQ(vexo_mac_traverse_callback(0, &entry, &event_data), 0);
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].addr.trunk(), 77);
    EXPECT_EQ(heard[0].addr.trunk_sel(), 0);
    EXPECT_EQ(heard_c[0].addr.trunk, 77);
    EXPECT_EQ(heard_c[0].addr.trunk_sel, 0);
}

TEST_F(MacEvents, AWalkGoesOnWhateverItMeets)
{
    bcm_l2_addr_t cpu = unit_entry(0, 0);
    bcm_l2_addr_t no_port = unit_entry(99, 0);
    bcm_l2_addr_t multicast = unit_entry(2, 0);
    multicast.mac[0] = 0x01;
    for (bcm_l2_addr_t* entry : {&cpu, &no_port, &multicast})
        EXPECT_EQ(vexo_mac_traverse_callback(0, entry, nullptr), 0);
    vexosdk_delete_sdk_instance(nullptr);
    bcm_l2_addr_t entry = unit_entry(2, 0);
    EXPECT_EQ(vexo_mac_traverse_callback(0, &entry, nullptr), 0);
    EXPECT_TRUE(heard.empty() && heard_c.empty());
}

} // namespace
