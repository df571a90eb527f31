// Port entry points: values they refuse, and that what is set is read back.
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

struct PortSettings : CardTest {
    const int port = kFirstLport + chip_port_of(3);
    const int xe_port = kFirstLport + 26;
};

TEST_F(PortSettings, BadValuesAreRefusedAndChangeNothing)
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

TEST_F(PortSettings, CountersThatThereAreNotAreRefused)
{
    std::uint64_t wide = 5;
    std::uint32_t narrow = 5;
    for (const int bad : {static_cast<int>(snmpValCount), 127}) { // 127: the last the enum can hold
        EXPECT_EQ(bcmx_stat_get(port, static_cast<bcm_stat_val_t>(bad), &wide), BCM_E_PARAM);
        EXPECT_EQ(bcmx_stat_get32(port, static_cast<bcm_stat_val_t>(bad), &narrow), BCM_E_PARAM);
    }
    for (const int bad : {static_cast<int>(bcmPortStatCount), 7}) { // likewise 7
        EXPECT_EQ(bcmx_port_stat_get(port, static_cast<bcm_port_stat_t>(bad), &wide), BCM_E_PARAM);
        EXPECT_EQ(bcmx_port_stat_get32(port, static_cast<bcm_port_stat_t>(bad), &narrow),
                  BCM_E_PARAM);
    }
    EXPECT_EQ(wide, 5u);
    EXPECT_EQ(narrow, 5u);
}

TEST_F(PortSettings, WhatIsSetIsReadBack)
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

TEST_F(PortSettings, AStateForAllGroupsIsReadFromTheDefaultGroup)
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

TEST_F(PortSettings, AProtocolsVlanIsReplacedFoundAndDeleted)
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

TEST_F(PortSettings, AbilitiesFollowTheKindOfPort)
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

TEST_F(PortSettings, ThePartnersAbilitiesAreThereWhileTheLinkIsUp)
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
