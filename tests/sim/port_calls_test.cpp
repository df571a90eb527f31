// Port entry points: what they refuse, and that what is set is read back.
#include <gtest/gtest.h>

#include <bcm/port.h>
#include <bcm/stat.h>
#include <bcmx/cosq.h>
#include <bcmx/port.h>
#include <bcmx/stat.h>
#include <bcmx/stg.h>
#include <bcmx/switch.h>

#include <cstring>

#include "tests/kit/kit.h"

namespace {

constexpr int kNoPort = kFirstLport + kPorts;

struct PortCalls : CardTest {
    const int port = kFirstLport + chip_port_of(3);
    const int xe_port = kFirstLport + 26;
};

struct Call {
    const char* name;
    std::function<int(bcmx_lport_t)> make;
};

std::vector<Call> setters()
{
    static bcm_mac_t mac = {2, 0, 0, 0, 0, 1};
    static bcm_port_ability_t ability{};
    return {
        {"enable", [](int p) { return bcmx_port_enable_set(p, 1); }},
        {"autoneg", [](int p) { return bcmx_port_autoneg_set(p, 1); }},
        {"speed", [](int p) { return bcmx_port_speed_set(p, 1000); }},
        {"duplex", [](int p) { return bcmx_port_duplex_set(p, 1); }},
        {"pause", [](int p) { return bcmx_port_pause_set(p, 1, 1); }},
        {"jam", [](int p) { return bcmx_port_jam_set(p, 1); }},
        {"pause_addr", [](int p) { return bcmx_port_pause_addr_set(p, mac); }},
        {"frame_max", [](int p) { return bcmx_port_frame_max_set(p, 1518); }},
        {"untagged_vlan", [](int p) { return bcmx_port_untagged_vlan_set(p, 1); }},
        {"untagged_priority", [](int p) { return bcmx_port_untagged_priority_set(p, 0); }},
        {"discard", [](int p) { return bcmx_port_discard_set(p, 0); }},
        {"vlan_member", [](int p) { return bcmx_port_vlan_member_set(p, 3); }},
        {"learn", [](int p) { return bcmx_port_learn_set(p, 5); }},
        {"protocol_vlan_add", [](int p) { return bcmx_port_protocol_vlan_add(p, 1, 0x800, 1); }},
        {"protocol_vlan_delete", [](int p) { return bcmx_port_protocol_vlan_delete(p, 1, 0x800); }},
        {"protocol_vlan_delete_all", [](int p) { return bcmx_port_protocol_vlan_delete_all(p); }},
        {"advert", [](int p) { return bcmx_port_ability_advert_set(p, &ability); }},
        {"flood_block", [](int p) { return bcmx_port_flood_block_set(p, kFirstLport, 0); }},
        {"flood_block to", [](int p) { return bcmx_port_flood_block_set(kFirstLport + 1, p, 0); }},
        {"bpdu_enable", [](int p) { return bcmx_port_bpdu_enable_set(p, 1); }},
        {"stp", [](int p) { return bcmx_port_stp_set(p, 4); }},
        {"stg_stp", [](int p) { return bcmx_stg_stp_set(1, p, 4); }},
        {"stat_enable", [](int p) { return bcmx_port_stat_enable_set(p, 1); }},
        {"stat_clear", [](int p) { return bcmx_stat_clear(p); }},
        {"switch control", [](int p) { return bcmx_switch_control_port_set(p, 21, 0); }},
        {"cosq", [](int p) { return bcmx_cosq_port_mapping_set(p, 0, 0); }},
    };
}

/// Getters of an int; given null they have nowhere to write.
struct IntGetter {
    const char* name;
    std::function<int(bcmx_lport_t, int*)> read;
};

std::vector<IntGetter> int_getters()
{
    const auto wide = [](auto call) {
        return [call](int p, int* value) {
            std::uint32_t flags = 77;
            const int rc = call(p, value == nullptr ? nullptr : &flags);
            if (value != nullptr && flags != 77)
                *value = static_cast<int>(flags);
            return rc;
        };
    };
    return {
        {"enable", bcmx_port_enable_get},
        {"autoneg", bcmx_port_autoneg_get},
        {"speed", bcmx_port_speed_get},
        {"duplex", bcmx_port_duplex_get},
        {"jam", bcmx_port_jam_get},
        {"frame_max", bcmx_port_frame_max_get},
        {"link_status", bcmx_port_link_status_get},
        {"untagged_priority", bcmx_port_untagged_priority_get},
        {"discard", bcmx_port_discard_get},
        {"bpdu_enable", bcmx_port_bpdu_enable_get},
        {"stp", bcmx_port_stp_get},
        {"stg_stp", [](int p, int* v) { return bcmx_stg_stp_get(1, p, v); }},
        {"switch control", [](int p, int* v) { return bcmx_switch_control_port_get(p, 21, v); }},
        {"cosq", [](int p, int* v) { return bcmx_cosq_port_mapping_get(p, 0, v); }},
        {"pause tx",
         [](int p, int* v) {
             int other = 0;
             return bcmx_port_pause_get(p, v, &other);
         }},
        {"pause rx",
         [](int p, int* v) {
             int other = 0;
             return bcmx_port_pause_get(p, &other, v);
         }},
        {"learn", wide([](int p, std::uint32_t* v) { return bcmx_port_learn_get(p, v); })},
        {"flood_block", wide([](int p, std::uint32_t* v) {
             return bcmx_port_flood_block_get(p, kFirstLport, v);
         })},
        {"stat",
         wide([](int p, std::uint32_t* v) { return bcmx_stat_get32(p, snmpIfInOctets, v); })},
        {"port_stat", wide([](int p, std::uint32_t* v) {
             return bcmx_port_stat_get32(p, bcmPortStatIngressBytes, v);
         })},
        {"ability", wide([](int p, std::uint32_t* v) { return bcmx_port_ability_get(p, v); })},
    };
}

TEST_F(PortCalls, EveryOneRefusesPortsThatAreNone)
{
    for (const int none : {-1, 0, 5, kFirstLport - 1, kNoPort}) {
        for (const Call& call : setters())
            EXPECT_EQ(call.make(none), BCM_E_PORT) << call.name << " of " << none;
        for (const IntGetter& getter : int_getters()) {
            int value = -5;
            EXPECT_EQ(getter.read(none, &value), BCM_E_PORT) << getter.name << " of " << none;
            EXPECT_EQ(value, -5) << getter.name;
        }
    }
}

TEST_F(PortCalls, EveryOneTakesEveryPort)
{
    for (const int lport : {kFirstLport, port, xe_port, kFirstLport + 53}) {
        for (const Call& call : setters()) {
            const std::string name = call.name;
            EXPECT_EQ(call.make(lport), 0) << name << " of " << lport;
        }
        for (const IntGetter& getter : int_getters()) {
            int value = -5;
            EXPECT_EQ(getter.read(lport, &value), 0) << getter.name;
            EXPECT_NE(value, -5) << getter.name << " wrote nothing";
        }
    }
}

TEST_F(PortCalls, EveryGetterRefusesANullOutput)
{
    for (const IntGetter& getter : int_getters())
        EXPECT_EQ(getter.read(port, nullptr), BCM_E_PARAM) << getter.name;
    EXPECT_EQ(bcmx_port_untagged_vlan_get(port, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_port_pause_addr_get(port, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_port_ability_local_get(port, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_port_ability_advert_get(port, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_port_ability_remote_get(port, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_stat_get(port, snmpIfInOctets, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_port_stat_get(port, bcmPortStatIngressBytes, nullptr), BCM_E_PARAM);
}

TEST_F(PortCalls, BadValuesAreRefusedAndChangeNothing)
{
    const std::uint64_t before = chip_digest();
    const std::vector<std::pair<const char*, int>> results = {
        {"enable", bcmx_port_enable_set(port, 2)},
        {"autoneg", bcmx_port_autoneg_set(port, -1)},
        {"speed", bcmx_port_speed_set(port, 10000)},
        {"speed of a 10 Gb/s port", bcmx_port_speed_set(xe_port, 100)},
        {"duplex", bcmx_port_duplex_set(port, 2)},
        {"half duplex at 10 Gb/s", bcmx_port_duplex_set(xe_port, BCM_PORT_DUPLEX_HALF)},
        {"pause tx", bcmx_port_pause_set(port, 2, 0)},
        {"pause rx", bcmx_port_pause_set(port, 0, 2)},
        {"jam", bcmx_port_jam_set(port, 2)},
        {"pause address", bcmx_port_pause_addr_set(port, nullptr)},
        {"frame_max below", bcmx_port_frame_max_set(port, 63)},
        {"frame_max above", bcmx_port_frame_max_set(port, 16385)},
        {"VLAN 0", bcmx_port_untagged_vlan_set(port, 0)},
        {"VLAN 4095", bcmx_port_untagged_vlan_set(port, 4095)},
        {"priority below", bcmx_port_untagged_priority_set(port, -1)},
        {"priority above", bcmx_port_untagged_priority_set(port, 8)},
        {"discard", bcmx_port_discard_set(port, 4)},
        {"vlan_member", bcmx_port_vlan_member_set(port, 4)},
        {"learn", bcmx_port_learn_set(port, 8)},
        {"frame type", bcmx_port_protocol_vlan_add(port, 3, 0x800, 1)},
        {"protocol's VLAN", bcmx_port_protocol_vlan_add(port, 1, 0x800, 4095)},
        {"advert", bcmx_port_ability_advert_set(port, nullptr)},
        {"flood_block", bcmx_port_flood_block_set(port, port, 16)},
        {"bpdu_enable", bcmx_port_bpdu_enable_set(port, 2)},
        {"stp", bcmx_port_stp_set(port, 5)},
        {"stg_stp", bcmx_stg_stp_set(1, port, -1)},
        {"stat_enable", bcmx_port_stat_enable_set(port, 2)},
        {"cosq", bcmx_cosq_port_mapping_set(port, 0, 8)},
        {"cosq priority", bcmx_cosq_port_mapping_set(port, 8, 0)},
        {"cosq of all ports", bcmx_cosq_mapping_set(0, -1)},
        {"queues", bcm_cosq_config_set(0, 9)},
        {"control", bcmx_switch_control_set(256, 0)},
        {"control of a unit", bcm_switch_control_set(0, -1, 0)},
        {"unit's flood_block", bcm_port_flood_block_set(0, 1, 0, 16)},
    };
    for (const auto& [name, rc] : results)
        EXPECT_EQ(rc, BCM_E_PARAM) << name;
    EXPECT_EQ(bcmx_stg_stp_set(0, port, 4), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_stg_stp_set(256, port, 4), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcm_port_flood_block_set(0, 54, 0, 7), BCM_E_PORT);
    EXPECT_EQ(bcm_port_flood_block_set(0, 1, 54, 7), BCM_E_PORT);
    EXPECT_EQ(bcm_stat_clear(0, 54), BCM_E_PORT);
    EXPECT_EQ(chip_digest(), before);
}

TEST_F(PortCalls, CountersThatThereAreNotAreRefused)
{
    std::uint64_t wide = 5;
    std::uint32_t narrow = 5;
    for (const int bad : {-1, static_cast<int>(snmpValCount)}) {
        EXPECT_EQ(bcmx_stat_get(port, static_cast<bcm_stat_val_t>(bad), &wide), BCM_E_PARAM);
        EXPECT_EQ(bcmx_stat_get32(port, static_cast<bcm_stat_val_t>(bad), &narrow), BCM_E_PARAM);
    }
    for (const int bad : {-1, static_cast<int>(bcmPortStatCount)}) {
        EXPECT_EQ(bcmx_port_stat_get(port, static_cast<bcm_port_stat_t>(bad), &wide), BCM_E_PARAM);
        EXPECT_EQ(bcmx_port_stat_get32(port, static_cast<bcm_port_stat_t>(bad), &narrow),
                  BCM_E_PARAM);
    }
    EXPECT_EQ(wide, 5u);
    EXPECT_EQ(narrow, 5u);
}

TEST_F(PortCalls, WhatIsSetIsReadBack)
{
    int value = 0, other = 0;
    bcm_vlan_t vid = 0;
    std::uint32_t flags = 0;
    bcmx_port_speed_set(port, 100);
    bcmx_port_speed_get(port, &value);
    EXPECT_EQ(value, 100);
    bcmx_port_pause_set(port, 1, 0);
    bcmx_port_pause_get(port, &value, &other);
    EXPECT_EQ(value * 10 + other, 10);
    bcmx_port_untagged_vlan_set(port, 77);
    bcmx_port_untagged_vlan_get(port, &vid);
    EXPECT_EQ(vid, 77);
    bcmx_port_learn_set(port, 3);
    bcmx_port_learn_get(port, &flags);
    EXPECT_EQ(flags, 3u);
    bcmx_port_flood_block_set(port, xe_port, 5);
    bcmx_port_flood_block_get(port, xe_port, &flags);
    EXPECT_EQ(flags, 5u);
    bcmx_port_flood_block_get(xe_port, port, &flags);
    EXPECT_EQ(flags, 0u) << "a pair has a direction";
    bcm_mac_t mac = {2, 0, 0, 0, 0, 9}, read{};
    bcmx_port_pause_addr_set(port, mac);
    bcmx_port_pause_addr_get(port, read);
    EXPECT_EQ(std::memcmp(mac, read, sizeof mac), 0);
    bcmx_switch_control_set(200, -3);
    bcmx_switch_control_get(200, &value);
    EXPECT_EQ(value, -3);
}

TEST_F(PortCalls, AStateForAllGroupsIsReadFromTheDefaultGroup)
{
    int state = 0;
    bcmx_port_stp_set(port, 2);
    bcmx_stg_stp_get(200, port, &state);
    EXPECT_EQ(state, 2);
    bcmx_stg_stp_set(200, port, 3);
    bcmx_port_stp_get(port, &state);
    EXPECT_EQ(state, 2);
    bcmx_stg_stp_set(1, port, 4);
    bcmx_port_stp_get(port, &state);
    EXPECT_EQ(state, 4);
}

TEST_F(PortCalls, AProtocolsVlanIsReplacedFoundAndDeleted)
{
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(bcmx_port_protocol_vlan_add(port, 1, static_cast<std::uint16_t>(i), 1), 0);
    EXPECT_EQ(bcmx_port_protocol_vlan_add(port, 1, 16, 1), BCM_E_FULL);
    EXPECT_EQ(bcmx_port_protocol_vlan_add(port, 1, 3, 2), 0) << "in place of the other";
    EXPECT_EQ(bcmx_port_protocol_vlan_delete(port, 2, 3), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_port_protocol_vlan_delete(port, 1, 3), 0);
    EXPECT_EQ(bcmx_port_protocol_vlan_delete(port, 1, 3), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_port_protocol_vlan_delete_all(port), 0);
    EXPECT_EQ(bcmx_port_protocol_vlan_delete_all(port), 0);
}

TEST_F(PortCalls, AbilitiesFollowTheKindOfPort)
{
    bcm_port_ability_t local{}, advert{}, remote{};
    bcm_port_abil_t word = 0;
    EXPECT_EQ(bcmx_port_ability_local_get(xe_port, &local), 0);
    EXPECT_EQ(local.speed_full_duplex, BCM_PORT_ABILITY_10GB | BCM_PORT_ABILITY_1000MB);
    EXPECT_EQ(local.speed_half_duplex, 0u);
    bcmx_port_ability_get(xe_port, &word);
    EXPECT_EQ(word, BCM_PORT_ABIL_10GB_FD | BCM_PORT_ABIL_1000MB_FD | BCM_PORT_ABIL_PAUSE_TX |
                        BCM_PORT_ABIL_PAUSE_RX | BCM_PORT_ABIL_AN);
    bcmx_port_ability_get(port, &word);
    EXPECT_EQ(word, BCM_PORT_ABIL_10MB_HD | BCM_PORT_ABIL_10MB_FD | BCM_PORT_ABIL_100MB_HD |
                        BCM_PORT_ABIL_100MB_FD | BCM_PORT_ABIL_1000MB_FD | BCM_PORT_ABIL_PAUSE_TX |
                        BCM_PORT_ABIL_PAUSE_RX | BCM_PORT_ABIL_AN);
    advert.speed_full_duplex = BCM_PORT_ABILITY_100MB;
    EXPECT_EQ(bcmx_port_ability_advert_set(port, &advert), 0);
    EXPECT_EQ(bcmx_port_ability_advert_set(xe_port, &advert), BCM_E_PARAM);
    EXPECT_EQ(bcmx_port_ability_advert_get(port, &remote), 0);
    EXPECT_EQ(remote.speed_full_duplex, BCM_PORT_ABILITY_100MB);
}

TEST_F(PortCalls, ThePartnersAbilitiesAreThereWhileTheLinkIsUp)
{
    bcm_port_ability_t remote{};
    bcmx_port_ability_remote_get(port, &remote);
    EXPECT_NE(remote.speed_full_duplex, 0u);
    wire(3).set_far_end(false);
    drain();
    bcmx_port_ability_remote_get(port, &remote);
    EXPECT_EQ(remote.speed_full_duplex, 0u);
}

} // namespace
