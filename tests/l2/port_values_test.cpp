// How the chip's values read at the interface. The SDK's getters are this file's own, so that the
// chip can be made to say anything.
#include <bcmx/cosq.h>
#include <bcmx/l2.h>
#include <bcmx/port.h>
#include <bcmx/rate.h>
#include <bcmx/stg.h>
#include <bcmx/switch.h>
#include <gtest/gtest.h>

#include <map>

#include "core/factory.h"
#include "tests/core/instance.h"

namespace {

int chip_value = 0;
int chip_value_2 = 0;
int chip_result = BCM_E_NONE;

template <class T>
int give(T* out)
{
    *out = static_cast<T>(chip_value);
    return chip_result;
}

constexpr int refused = -1;

// What an operation makes of each value of the chip.
template <class T, class Get>
std::map<int, int> readings(std::initializer_list<int> values, Get get)
{
    VexoBcmSdk& sdk = new_instance();
    std::map<int, int> result;
    for (const int value : values) {
        chip_value = value;
        T out = static_cast<T>(99);
        const bool done = get(sdk, out);
        if (!done) {
            EXPECT_EQ(static_cast<int>(out), static_cast<int>(static_cast<T>(99))) << value;
        }
        result[value] = done ? static_cast<int>(out) : refused;
    }
    return result;
}

// Checked port mapping needs a port: before a bring-up, (0, 0) is user port 0.
const Mp port(0, 0);

} // namespace

extern "C" {

int bcmx_port_enable_get(bcmx_lport_t, int* out)
{
    return give(out);
}
int bcmx_port_autoneg_get(bcmx_lport_t, int* out)
{
    return give(out);
}
int bcmx_port_speed_get(bcmx_lport_t, int* out)
{
    return give(out);
}
int bcmx_port_duplex_get(bcmx_lport_t, int* out)
{
    return give(out);
}
int bcmx_port_frame_max_get(bcmx_lport_t, int* out)
{
    return give(out);
}
int bcmx_port_link_status_get(bcmx_lport_t, int* out)
{
    return give(out);
}
int bcmx_port_untagged_vlan_get(bcmx_lport_t, bcm_vlan_t* out)
{
    return give(out);
}
int bcmx_port_untagged_priority_get(bcmx_lport_t, int* out)
{
    return give(out);
}
int bcmx_port_discard_get(bcmx_lport_t, int* out)
{
    return give(out);
}
int bcmx_port_flood_block_get(bcmx_lport_t, bcmx_lport_t, uint32_t* out)
{
    return give(out);
}
int bcmx_port_stp_get(bcmx_lport_t, int* out)
{
    return give(out);
}
int bcmx_stg_stp_get(bcm_stg_t, bcmx_lport_t, int* out)
{
    return give(out);
}

int bcmx_l2_age_timer_get(int* out)
{
    return give(out);
}
int bcmx_port_jam_get(bcmx_lport_t, int* out)
{
    return give(out);
}
int bcmx_port_bpdu_enable_get(bcmx_lport_t, int* out)
{
    return give(out);
}
int bcmx_port_learn_get(bcmx_lport_t, uint32_t* out)
{
    return give(out);
}
int bcmx_switch_control_get(bcm_switch_control_t, int* out)
{
    return give(out);
}
int bcmx_switch_control_port_get(bcmx_lport_t, bcm_switch_control_t, int* out)
{
    return give(out);
}
int bcmx_cosq_port_mapping_get(bcmx_lport_t, int, bcm_cos_queue_t* out)
{
    return give(out);
}
int bcmx_rate_bcast_get(int* out, int* flags, bcmx_lport_t)
{
    *flags = chip_value_2;
    return give(out);
}

int bcmx_port_pause_get(bcmx_lport_t, int* tx, int* rx)
{
    *rx = chip_value_2;
    return give(tx);
}

} // extern "C"

using Map = std::map<int, int>;
using Sdk = VexoBcmSdk;

TEST(PortValues, EnabledIsEveryValueButZero)
{
    EXPECT_EQ(readings<bool>({0, 1, 2, -1},
                             [](Sdk& s, bool& out) { return s.get_port_enabled(port, out); }),
              (Map{{0, 0}, {1, 1}, {2, 1}, {-1, 1}}));
}

TEST(PortValues, AutonegotiationIsOnAtOneOnly)
{
    EXPECT_EQ(
        readings<bool>({0, 1, 2}, [](Sdk& s, bool& out) { return s.get_port_autoneg(port, out); }),
        (Map{{0, 0}, {1, 1}, {2, 0}}));
}

TEST(PortValues, OtherSwitchesAreOnAtOneOnlyButBpdusAtEveryValueButZero)
{
    const Map one_only = {{0, 0}, {1, 1}, {2, 0}, {-1, 0}};
    const std::initializer_list<int> values = {0, 1, 2, -1};
    EXPECT_EQ(
        readings<bool>(values, [](Sdk& s, bool& out) { return s.get_port_jaming(port, out); }),
        one_only);
    EXPECT_EQ(readings<bool>(values,
                             [](Sdk& s, bool& out) {
                                 return s.get_port_switch_unknown_unicast_to_cpu(port, out);
                             }),
              one_only);
    EXPECT_EQ(
        readings<bool>(values,
                       [](Sdk& s, bool& out) { return s.get_switch_unknown_unicast_to_cpu(out); }),
        one_only);
    EXPECT_EQ(readings<bool>(
                  values, [](Sdk& s, bool& out) { return s.get_port_bpdu_processing(port, out); }),
              (Map{{0, 0}, {1, 1}, {2, 1}, {-1, 1}}));
}

TEST(PortValues, APortIsUnlockedOnlyWhenItLearnsAndForwards)
{
    EXPECT_EQ(readings<bool>({0, 1, 2, 3, 4, 5, 6, 7},
                             [](Sdk& s, bool& out) { return s.get_port_mac_lock(port, out); }),
              (Map{{0, 1}, {1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 0}, {6, 1}, {7, 0}}));
}

TEST(PortValues, TheExtendedLockIsNotLearningAndTellsForwardingWhenLockedOnly)
{
    const auto from = [](bool before) {
        return [before](Sdk& s, int& out) {
            bool locked = before;
            bool forward = before;
            const bool done = s.get_port_mac_lock_ext(port, locked, forward);
            out = (locked ? 2 : 0) + (forward ? 1 : 0);
            return done;
        };
    };
    EXPECT_EQ(readings<int>({0, 1, 2, 3, 4, 5, 6, 7}, from(true)),
              (Map{{0, 2}, {1, 1}, {2, 2}, {3, 1}, {4, 3}, {5, 1}, {6, 3}, {7, 1}}));
    EXPECT_EQ(readings<int>({0, 1, 2, 3, 4, 5, 6, 7}, from(false)),
              (Map{{0, 2}, {1, 0}, {2, 2}, {3, 0}, {4, 3}, {5, 0}, {6, 3}, {7, 0}}));
}

TEST(PortValues, QueuesRatesAndTheForwardingModeAreUnchanged)
{
    const Map same = {{0, 0}, {7, 7}};
    chip_value_2 = 0; // no class is limited: not looked at
    EXPECT_EQ(readings<unsigned>(
                  {0, 7}, [](Sdk& s, auto& out) { return s.get_port_cos_mapping(port, 3, out); }),
              same);
    EXPECT_EQ(
        readings<unsigned>(
            {0, 7}, [](Sdk& s, auto& out) { return s.get_port_broadcast_control(port, out); }),
        same);
    EXPECT_EQ(readings<unsigned>({0, 7},
                                 [](Sdk& s, auto& out) { return s.get_switch_forward_mode(out); }),
              same);
}

TEST(PortValues, FourSpeedsAreKnownAndOthersRefused)
{
    EXPECT_EQ(readings<speed_type_t>({10, 100, 1000, 10000, 0, 2500, 40000},
                                     [](Sdk& s, auto& out) { return s.get_port_speed(port, out); }),
              (Map{{10, 1},
                   {100, 2},
                   {1000, 3},
                   {10000, 4},
                   {0, refused},
                   {2500, refused},
                   {40000, refused}}));
}

TEST(PortValues, DuplexIsHalfAtZeroAndFullOtherwise)
{
    EXPECT_EQ(readings<duplex_type_t>(
                  {0, 1, 2}, [](Sdk& s, auto& out) { return s.get_port_duplex(port, out); }),
              (Map{{0, 1}, {1, 2}, {2, 2}}));
}

TEST(PortValues, LinkIsUpAtOneOnly)
{
    EXPECT_EQ(readings<phy_state_t>(
                  {0, 1, 2, -1}, [](Sdk& s, auto& out) { return s.get_port_phy_state(port, out); }),
              (Map{{0, 0}, {1, 1}, {2, 0}, {-1, 0}}));
}

TEST(PortValues, FrameSizeVlanAndPriorityAreUnchanged)
{
    EXPECT_EQ(readings<unsigned>({1518, 16384},
                                 [](Sdk& s, auto& out) { return s.get_port_mtu(port, out); }),
              (Map{{1518, 1518}, {16384, 16384}}));
    EXPECT_EQ(readings<unsigned>({1, 4094},
                                 [](Sdk& s, auto& out) { return s.get_port_vlan_pvid(port, out); }),
              (Map{{1, 1}, {4094, 4094}}));
    EXPECT_EQ(readings<unsigned>(
                  {0, 7}, [](Sdk& s, auto& out) { return s.get_port_vlan_priority(port, 3, out); }),
              (Map{{0, 0}, {7, 7}}));
}

TEST(PortValues, AnyDiscardingReadsAsTaggedFramesOnly)
{
    EXPECT_EQ(
        readings<bool>({0, 1, 2, 3, 4},
                       [](Sdk& s, bool& out) { return s.get_port_vlan_accept_frame(port, out); }),
        (Map{{0, 0}, {1, 1}, {2, 1}, {3, 1}, {4, 1}}));
}

TEST(PortValues, DiscardModesReadAsTheyAreSetAndOthersAreRefused)
{
    EXPECT_EQ(readings<ingress_discard_type_t>(
                  {0, 1, 2, 3, 4, -1},
                  [](Sdk& s, auto& out) { return s.get_port_ingress_discarding(port, out); }),
              (Map{{0, 0}, {1, 3}, {2, 2}, {3, 1}, {4, refused}, {-1, refused}}));
}

TEST(PortValues, FloodBlockBitsAreUnchanged)
{
    EXPECT_EQ(readings<flood_block_type_t>(
                  {0, 0xf, 0x10},
                  [](Sdk& s, auto& out) { return s.get_port_flood_blocking(port, port, out); }),
              (Map{{0, 0}, {0xf, 0xf}, {0x10, 0x10}}));
    EXPECT_EQ(
        readings<flood_block_type_t>(
            {0, 0xf}, [](Sdk& s, auto& out) { return s.get_port_flood_blocking_cpu(port, out); }),
        (Map{{0, 0}, {0xf, 0xf}}));
}

TEST(PortValues, PauseReadsReceiveFirst)
{
    VexoBcmSdk& sdk = new_instance();
    unsigned rx = 9;
    unsigned tx = 9;
    chip_value = 1;   // transmit
    chip_value_2 = 0; // receive
    EXPECT_TRUE(sdk.get_port_pause(port, rx, tx));
    EXPECT_EQ(rx, 0u);
    EXPECT_EQ(tx, 1u);
}

TEST(PortValues, SpanningTreeStatesReadAsTheyAreSetAndOthersAreRefused)
{
    EXPECT_EQ(
        readings<stp_state_t>({0, 1, 2, 3, 4, 5, -1},
                              [](Sdk& s, auto& out) { return s.get_port_stp_state(port, out); }),
        (Map{{0, 4}, {1, 0}, {2, 1}, {3, 2}, {4, 3}, {5, refused}, {-1, refused}}));
}

static_assert(MSTP_FORWARDING_ALIAS == 4); // never read

TEST(PortValues, GroupStatesReadBlockingAndListeningAsDiscarding)
{
    EXPECT_EQ(
        readings<mstp_state_t>({0, 1, 2, 3, 4, 5, -1},
                               [](Sdk& s, auto& out) { return s.get_stg_stp_state(1, port, out); }),
        (Map{{0, 3}, {1, 0}, {2, 0}, {3, 1}, {4, 2}, {5, refused}, {-1, refused}}));
}

// `readings` looks at the output of each that is refused.
template <class T, class Get>
void expect_untouched(Get get)
{
    chip_result = BCM_E_FAIL;
    EXPECT_EQ(readings<T>({0, 1, 10}, get), (Map{{0, refused}, {1, refused}, {10, refused}}));
}

TEST(PortValues, WhatAFailingChipWroteIsNotHandedOut)
{
    expect_untouched<bool>([](Sdk& s, bool& out) { return s.get_port_enabled(port, out); });
    expect_untouched<bool>([](Sdk& s, bool& out) { return s.get_port_autoneg(port, out); });
    expect_untouched<bool>([](Sdk& s, bool& out) { return s.get_port_jaming(port, out); });
    expect_untouched<bool>([](Sdk& s, bool& out) { return s.get_port_mac_lock(port, out); });
    expect_untouched<bool>([](Sdk& s, bool& out) { return s.get_port_bpdu_processing(port, out); });
    expect_untouched<bool>(
        [](Sdk& s, bool& out) { return s.get_port_vlan_accept_frame(port, out); });
    expect_untouched<bool>(
        [](Sdk& s, bool& out) { return s.get_switch_unknown_unicast_to_cpu(out); });
    expect_untouched<int>([](Sdk& s, int& out) { return s.get_fdb_aging_time(out); });
    expect_untouched<unsigned>([](Sdk& s, auto& out) { return s.get_port_mtu(port, out); });
    expect_untouched<unsigned>([](Sdk& s, auto& out) { return s.get_port_vlan_pvid(port, out); });
    expect_untouched<unsigned>(
        [](Sdk& s, auto& out) { return s.get_port_vlan_priority(port, 3, out); });
    expect_untouched<unsigned>(
        [](Sdk& s, auto& out) { return s.get_port_cos_mapping(port, 3, out); });
    expect_untouched<unsigned>(
        [](Sdk& s, auto& out) { return s.get_port_broadcast_control(port, out); });
    expect_untouched<unsigned>([](Sdk& s, auto& out) { return s.get_switch_forward_mode(out); });
    expect_untouched<speed_type_t>([](Sdk& s, auto& out) { return s.get_port_speed(port, out); });
    expect_untouched<duplex_type_t>([](Sdk& s, auto& out) { return s.get_port_duplex(port, out); });
    expect_untouched<phy_state_t>(
        [](Sdk& s, auto& out) { return s.get_port_phy_state(port, out); });
    expect_untouched<flood_block_type_t>(
        [](Sdk& s, auto& out) { return s.get_port_flood_blocking(port, port, out); });
    expect_untouched<stp_state_t>(
        [](Sdk& s, auto& out) { return s.get_port_stp_state(port, out); });
    expect_untouched<mstp_state_t>(
        [](Sdk& s, auto& out) { return s.get_stg_stp_state(1, port, out); });
}
