// VLANs, spanning-tree groups, flood blocking, port properties and switch controls: the results
// that a chip answers, and that a refused call changes nothing.
#include <gtest/gtest.h>

#include <bcm/error.h>

#include "sim/chip/chip.h"

namespace vexosim {
namespace {

TEST(VlanTable, VlanOneHasAllPortsFromTheStartAndCannotBeDestroyed)
{
    VlanTable t;
    PortSet members, untagged;
    EXPECT_EQ(t.get_ports(1, members, untagged), BCM_E_NONE);
    EXPECT_EQ(members, PortSet::all());
    EXPECT_EQ(untagged, PortSet::front());
    EXPECT_EQ(t.create(1), BCM_E_EXISTS);
    EXPECT_EQ(t.destroy(1), BCM_E_BADID);
    EXPECT_EQ(t.count(), 1);
}

TEST(VlanTable, IdsOutOfRangeAndUnknownOnesAreToldApart)
{
    VlanTable t;
    PortSet a, b;
    for (int vid : {-1, 0, 4095, 4096, 65535}) {
        EXPECT_EQ(t.create(vid), BCM_E_PARAM) << vid;
        EXPECT_EQ(t.destroy(vid), BCM_E_PARAM) << vid;
        EXPECT_EQ(t.add_ports(vid, {1}, {}), BCM_E_PARAM) << vid;
        EXPECT_EQ(t.remove_ports(vid, {1}), BCM_E_PARAM) << vid;
        EXPECT_EQ(t.get_ports(vid, a, b), BCM_E_PARAM) << vid;
    }
    EXPECT_EQ(t.destroy(4094), BCM_E_NOT_FOUND);
    EXPECT_EQ(t.add_ports(4094, {1}, {}), BCM_E_NOT_FOUND);
    EXPECT_EQ(t.remove_ports(4094, {1}), BCM_E_NOT_FOUND);
    EXPECT_EQ(t.get_ports(4094, a, b), BCM_E_NOT_FOUND);
    EXPECT_EQ(t.create(4094), BCM_E_NONE);
    EXPECT_EQ(t.destroy(4094), BCM_E_NONE);
}

TEST(VlanTable, AddingAMemberAgainMayUntagItAndNeverTagsIt)
{
    VlanTable t;
    t.create(10);
    EXPECT_EQ(t.add_ports(10, {1, 2}, {2}), BCM_E_NONE);
    EXPECT_EQ(t.add_ports(10, {1, 2}, {1}), BCM_E_NONE);
    EXPECT_EQ(t[10].untagged, (PortSet{1, 2}));
    EXPECT_EQ(t.remove_ports(10, {2, 3}), BCM_E_NONE);
    EXPECT_EQ(t.add_ports(10, {2}, {}), BCM_E_NONE);
    EXPECT_EQ(t[10].untagged, PortSet{1});
    EXPECT_EQ(t.add_ports(10, {4}, {5}), BCM_E_NONE);
    EXPECT_EQ(t[10].members, (PortSet{1, 2, 4})) << "untagged alone makes no member";
    EXPECT_EQ(t[10].untagged, PortSet{1});
}

TEST(VlanTable, PortsThatAreNoneChangeNothing)
{
    VlanTable t;
    VlanTable before = t;
    EXPECT_EQ(t.add_ports(1, {54}, {}), BCM_E_PORT);
    EXPECT_EQ(t.add_ports(1, {1}, {63}), BCM_E_PORT);
    EXPECT_EQ(t.remove_ports(1, {1, 54}), BCM_E_PORT);
    EXPECT_EQ(t, before);
}

TEST(VlanTable, AVlanComesBackEmpty)
{
    VlanTable t;
    t.create(10);
    t.add_ports(10, {1}, {1});
    t.destroy(10);
    t.create(10);
    EXPECT_EQ(t[10].members, PortSet{});
}

TEST(StgTable, EveryStateOfEveryPortIsKeptByGroup)
{
    StgTable t;
    for (int state = 0; state <= 4; ++state) {
        EXPECT_EQ(t.set(255, 53, state), BCM_E_NONE);
        int read = -1;
        EXPECT_EQ(t.get(255, 53, read), BCM_E_NONE);
        EXPECT_EQ(read, state);
        EXPECT_EQ(t.forwarding(255).test(53), state == 4);
    }
    EXPECT_EQ(t.state(1, 53), StpState::kForward);
    EXPECT_EQ(t.set_all(53, 1), BCM_E_NONE);
    EXPECT_EQ(t.state(1, 53), StpState::kBlock);
    EXPECT_EQ(t.state(255, 53), StpState::kBlock);
}

TEST(StgTable, BadGroupsPortsAndStatesAreRefused)
{
    StgTable t;
    StgTable before = t;
    int read = 7;
    EXPECT_EQ(t.set(0, 1, 1), BCM_E_NOT_FOUND);
    EXPECT_EQ(t.set(256, 1, 1), BCM_E_NOT_FOUND);
    EXPECT_EQ(t.set(1, 54, 1), BCM_E_PORT);
    EXPECT_EQ(t.set(1, -1, 1), BCM_E_PORT);
    EXPECT_EQ(t.set(1, 1, 5), BCM_E_PARAM);
    EXPECT_EQ(t.set(1, 1, -1), BCM_E_PARAM);
    EXPECT_EQ(t.get(256, 1, read), BCM_E_NOT_FOUND);
    EXPECT_EQ(t.get(1, 54, read), BCM_E_PORT);
    EXPECT_EQ(read, 7);
    EXPECT_EQ(t, before);
}

TEST(FloodBlock, KeepsTheFlagsOfEachPair)
{
    FloodBlock t;
    for (std::uint32_t flags = 0; flags < 16; ++flags) {
        EXPECT_EQ(t.set(3, 0, flags), BCM_E_NONE);
        std::uint32_t read = 99;
        EXPECT_EQ(t.get(3, 0, read), BCM_E_NONE);
        EXPECT_EQ(read, flags);
    }
    std::uint32_t read = 99;
    EXPECT_EQ(t.get(0, 3, read), BCM_E_NONE);
    EXPECT_EQ(read, 0u);
    EXPECT_EQ(t.set(3, 0, 16), BCM_E_PARAM);
    EXPECT_EQ(t.set(54, 0, 1), BCM_E_PORT);
    EXPECT_EQ(t.set(0, -1, 1), BCM_E_PORT);
}

TEST(PortTable, ValuesOutOfRangeAreRefusedAndChangeNothing)
{
    PortTable t;
    const PortTable before = t;
    EXPECT_EQ(t.set_enable(1, 2), BCM_E_PARAM);
    EXPECT_EQ(t.set_autoneg(1, -1), BCM_E_PARAM);
    EXPECT_EQ(t.set_speed(1, 10000), BCM_E_PARAM);
    EXPECT_EQ(t.set_speed(1, 0), BCM_E_PARAM);
    EXPECT_EQ(t.set_duplex(1, 2), BCM_E_PARAM);
    EXPECT_EQ(t.set_duplex(26, 0), BCM_E_PARAM) << "half at 10 Gb/s";
    EXPECT_EQ(t.set_pause(1, 1, 2), BCM_E_PARAM);
    EXPECT_EQ(t.set_pause(1, 2, 1), BCM_E_PARAM);
    EXPECT_EQ(t.set_jam(1, 3), BCM_E_PARAM);
    EXPECT_EQ(t.set_frame_max(1, 63), BCM_E_PARAM);
    EXPECT_EQ(t.set_frame_max(1, 16385), BCM_E_PARAM);
    EXPECT_EQ(t.set_untagged_vlan(1, 0), BCM_E_PARAM);
    EXPECT_EQ(t.set_untagged_vlan(1, 4095), BCM_E_PARAM);
    EXPECT_EQ(t.set_untagged_priority(1, 8), BCM_E_PARAM);
    EXPECT_EQ(t.set_discard(1, 4), BCM_E_PARAM);
    EXPECT_EQ(t.set_vlan_member(1, 4), BCM_E_PARAM);
    EXPECT_EQ(t.set_learn(1, 8), BCM_E_PARAM);
    EXPECT_EQ(t.set_bpdu_enable(1, 2), BCM_E_PARAM);
    EXPECT_EQ(t.set_cos(1, 8, 0), BCM_E_PARAM);
    EXPECT_EQ(t.set_cos(1, 0, 4), BCM_E_PARAM) << "four queues after reset";
    EXPECT_EQ(t.set_queue_count(0), BCM_E_PARAM);
    EXPECT_EQ(t.set_queue_count(9), BCM_E_PARAM);
    EXPECT_EQ(t.set_advert(1, {0, 0x80, 0, 0, 0}), BCM_E_PARAM) << "10 Gb/s on a 1 Gb/s port";
    EXPECT_EQ(t, before);
}

TEST(PortTable, PortsThatAreNoneAreRefused)
{
    PortTable t;
    const PortTable before = t;
    for (int port : {-2, 54, 256}) {
        EXPECT_EQ(t.set_enable(port, 0), BCM_E_PORT);
        EXPECT_EQ(t.set_speed(port, 100), BCM_E_PORT);
        EXPECT_EQ(t.set_duplex(port, 1), BCM_E_PORT);
        EXPECT_EQ(t.set_pause(port, 1, 1), BCM_E_PORT);
        EXPECT_EQ(t.set_pause(port, 1, 5), BCM_E_PORT);
        EXPECT_EQ(t.set_frame_max(port, 100), BCM_E_PORT);
        EXPECT_EQ(t.set_untagged_vlan(port, 1), BCM_E_PORT);
        EXPECT_EQ(t.set_discard(port, 1), BCM_E_PORT);
        EXPECT_EQ(t.set_vlan_member(port, 1), BCM_E_PORT);
        EXPECT_EQ(t.set_learn(port, 1), BCM_E_PORT);
        EXPECT_EQ(t.set_cos(port, 0, 0), BCM_E_PORT);
        EXPECT_EQ(t.set_advert(port, {}), BCM_E_PORT);
    }
    EXPECT_EQ(t, before);
}

TEST(PortTable, TheSmallestMaximumFollowsAllPorts)
{
    PortTable t;
    EXPECT_EQ(t.smallest_frame_max(), 1518);
    t.set_frame_max(5, 64);
    t.set_frame_max(6, 16384);
    EXPECT_EQ(t.smallest_frame_max(), 64);
    t.set_frame_max(5, 2000);
    EXPECT_EQ(t.smallest_frame_max(), 1518);
}

TEST(PortTable, TenGigabitPortsRunAtOneAndTen)
{
    PortTable t;
    EXPECT_EQ(t[26].speed, 10000);
    EXPECT_EQ(t[25].speed, 1000);
    EXPECT_EQ(t.set_speed(26, 1000), BCM_E_NONE);
    EXPECT_EQ(t.set_duplex(26, 0), BCM_E_NONE);
    EXPECT_EQ(t.set_speed(26, 10000), BCM_E_NONE);
    EXPECT_TRUE(t[26].duplex_full);
    EXPECT_EQ(t.set_speed(26, 100), BCM_E_PARAM);
}

TEST(PortTable, QueuesSpreadThePriorities)
{
    PortTable t;
    t.set_queue_count(8);
    for (int priority = 0; priority < 8; ++priority)
        EXPECT_EQ(t[53].cos[static_cast<std::size_t>(priority)], priority);
    t.set_queue_count(2);
    EXPECT_EQ(t[53].cos, (std::array<std::uint8_t, 8>{0, 0, 0, 0, 1, 1, 1, 1}));
    EXPECT_EQ(t.set_cos(-1, 0, 1), BCM_E_NONE);
    EXPECT_EQ(t[0].cos[0], 1);
    EXPECT_EQ(t[53].cos[0], 1);
}

TEST(PortTable, TheCpuPortAlwaysHasItsLink)
{
    PortTable t;
    t.set_link(0, false);
    EXPECT_EQ(t.up(), PortSet{0});
    t.set_link(7, true);
    EXPECT_EQ(t.up(), (PortSet{0, 7}));
    t.set_enable(7, 0);
    EXPECT_EQ(t.up(), PortSet{0});
}

TEST(SwitchControls, KeepsAnyValueAndKnowsWhatItUses)
{
    SwitchControls t;
    int value = -1;
    EXPECT_EQ(t.set(204, 12345), BCM_E_NONE);
    EXPECT_EQ(t.get(204, value), BCM_E_NONE);
    EXPECT_EQ(value, 12345);
    EXPECT_EQ(t.set(256, 0), BCM_E_PARAM);
    EXPECT_EQ(t.set(-1, 0), BCM_E_PARAM);
    EXPECT_EQ(t.get(256, value), BCM_E_PARAM);
    EXPECT_EQ(t.set(21, 2), BCM_E_PARAM);
    EXPECT_EQ(t.set_port(1, 204, 1), BCM_E_PARAM);
    EXPECT_EQ(t.set_port(54, 21, 1), BCM_E_PORT);
    EXPECT_EQ(t.set_port(1, 21, 1), BCM_E_NONE);
    EXPECT_EQ(t.get_port(1, 21, value), BCM_E_NONE);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(t.get_port(2, 21, value), BCM_E_NONE);
    EXPECT_EQ(value, 0);
}

TEST(CpuQueues, BadIndicesAreRefused)
{
    CpuQueues t;
    const CpuQueues before = t;
    CpuMapping m;
    EXPECT_EQ(t.set_mapping(64, m), BCM_E_PARAM);
    EXPECT_EQ(t.set_mapping(-1, m), BCM_E_PARAM);
    m.queue = 8;
    EXPECT_EQ(t.set_mapping(0, m), BCM_E_PARAM);
    EXPECT_EQ(t.set_queue_channel(8, 0), BCM_E_PARAM);
    EXPECT_EQ(t.set_queue_channel(0, 4), BCM_E_PARAM);
    EXPECT_EQ(t.set_cos_rate(8, 1), BCM_E_PARAM);
    EXPECT_EQ(t.set_cos_rate(0, -1), BCM_E_PARAM);
    EXPECT_EQ(t, before);
}

TEST(CounterTable, UnknownCountersAndPortsAreRefused)
{
    CounterTable t;
    std::uint64_t value = 9;
    EXPECT_EQ(t.get(54, 0, value), BCM_E_PORT);
    EXPECT_EQ(t.get(1, 78, value), BCM_E_PARAM);
    EXPECT_EQ(t.get(1, -1, value), BCM_E_PARAM);
    EXPECT_EQ(t.get_short(1, 4, value), BCM_E_PARAM);
    EXPECT_EQ(value, 9u);
    t[1].in.count(Cast::kUnicast, 64, 0);
    EXPECT_EQ(t.get_short(1, 0, value), BCM_E_NONE);
    EXPECT_EQ(value, 1u);
    EXPECT_EQ(t.get_short(1, 1, value), BCM_E_NONE);
    EXPECT_EQ(value, 64u);
    t.clear(1);
    EXPECT_EQ(t.get(1, 0, value), BCM_E_NONE);
    EXPECT_EQ(value, 0u);
}

TEST(CounterTable, TheShortSetStandsStillWhileItIsDisabled)
{
    CounterTable t;
    auto shown = [&](int counter) {
        std::uint64_t value = 0;
        EXPECT_EQ(t.get_short(1, counter, value), BCM_E_NONE);
        return value;
    };
    t[1].out.count(Cast::kUnicast, 64, 0);
    EXPECT_EQ(t.set_short_enable(1, 2), BCM_E_PARAM);
    EXPECT_EQ(t.set_short_enable(54, 0), BCM_E_PORT);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(t.set_short_enable(1, 0), BCM_E_NONE);
        t[1].out.count(Cast::kUnicast, 100, 1);
        EXPECT_EQ(shown(3), 64u);
        EXPECT_EQ(t.set_short_enable(1, 1), BCM_E_NONE);
        EXPECT_EQ(shown(3), 64u);
    }
    t[1].out.count(Cast::kUnicast, 65, 1);
    EXPECT_EQ(shown(2), 2u);
    EXPECT_EQ(shown(3), 129u);
    EXPECT_EQ(t[1].stat(7), 4u) << "the full set does not stop";
    t.set_short_enable(1, 0);
    t.clear(1);
    EXPECT_EQ(shown(3), 0u);
}

} // namespace
} // namespace vexosim
