// Port entry points: what they refuse, and that what is set is read back.
#include <gtest/gtest.h>

#include <bcm/port.h>
#include <bcm/stat.h>
#include <bcmx/cosq.h>
#include <bcmx/port.h>
#include <bcmx/stat.h>
#include <bcmx/stg.h>
#include <bcmx/switch.h>

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

} // namespace
