// Every operation on ports, mirrors and counters with each of its SDK calls failing.
#include "tests/l2/fault_sweep.h"

namespace {

const unsigned char net6[16] = {0x20, 0x01, 0x0d, 0xb8};

std::vector<Operation> port_setters()
{
    using Base = VexoSdkBase;
    return {
        {"set_port_enable",
         setting(&Base::set_port_enable, false),
         {{"bcmx_l2_addr_delete_by_port"}}},
        {"set_port_autoneg", setting(&Base::set_port_autoneg, true)},
        {"set_port_speed", setting(&Base::set_port_speed, SPEED_100M)},
        {"set_port_duplex", setting(&Base::set_port_duplex, DUPLEX_FULL)},
        {"set_port_pause", [](Sdk& sdk, Outputs&) { return sdk.set_port_pause(p5, 1, 1); }},
        {"set_port_jaming", setting(&Base::set_port_jaming, true)},
        {"set_port_pause_addr",
         [](Sdk& sdk, Outputs&) { return sdk.set_port_pause_addr(p5, host); }},
        {"set_port_mtu", setting(&Base::set_port_mtu, 9000u)},
        {"set_port_vlan_pvid", setting(&Base::set_port_vlan_pvid, 1u)},
        {"set_port_vlan_priority",
         [](Sdk& sdk, Outputs&) { return sdk.set_port_vlan_priority(p5, 0, 3); }},
        {"set_port_vlan_accept_frame", setting(&Base::set_port_vlan_accept_frame, true)},
        {"set_port_ingress_discarding",
         setting(&Base::set_port_ingress_discarding, INGRESS_DISCARD_ALL)},
        {"set_port_protocol_vlan",
         [](Sdk& sdk, Outputs&) {
             return sdk.set_port_protocol_vlan(p5, FRAME_ETHERNET_II, 0x800, 1);
         }},
        {"delete_port_protocol_vlan",
         [](Sdk& sdk, Outputs&) {
             return sdk.delete_port_protocol_vlan(p5, FRAME_ETHERNET_II, 0x800);
         },
         {},
         [](Sdk& sdk) { sdk.set_port_protocol_vlan(p5, FRAME_ETHERNET_II, 0x800, 1); }},
        {"delete_port_protocol_vlan_all",
         [](Sdk& sdk, Outputs&) { return sdk.delete_port_protocol_vlan_all(p5); }},
        {"set_mac_vlan", [](Sdk& sdk, Outputs&) { return sdk.set_mac_vlan(host, 1, 1); }},
        {"set_ipv4_subnet_vlan",
         [](Sdk& sdk, Outputs&) { return sdk.set_ipv4_subnet_vlan(0x0a000000, 0xff000000, 1, 1); }},
        {"set_ipv6_subnet_vlan",
         [](Sdk& sdk, Outputs&) { return sdk.set_ipv6_subnet_vlan(net6, 32, 1, 1); }},
        {"set_port_advertising_ability",
         setting(&Base::set_port_advertising_ability, PORT_ABILITY_100M_FULL)},
        {"set_port_flood_blocking",
         [](Sdk& sdk, Outputs&) {
             return sdk.set_port_flood_blocking(p3, p5, FLOOD_BLOCK_BROADCAST);
         }},
        {"set_port_flood_blocking_cpu",
         setting(&Base::set_port_flood_blocking_cpu, FLOOD_BLOCK_BROADCAST)},
        {"set_port_l2_enable",
         setting(&Base::set_port_l2_enable, false),
         {{"bcmx_l2_addr_delete_by_port", -7}}},
        {"set_port_egress_admin_state", setting(&Base::set_port_egress_admin_state, false)},
        {"set_port_unicast_control", setting(&Base::set_port_unicast_control, 9u)},
        {"set_port_multicast_control", setting(&Base::set_port_multicast_control, 9u)},
        {"set_port_broadcast_control", setting(&Base::set_port_broadcast_control, 9u)},
        {"set_port_cos_mapping",
         [](Sdk& sdk, Outputs&) { return sdk.set_port_cos_mapping(p5, 3, 3); }},
        {"set_port_bpdu_processing", setting(&Base::set_port_bpdu_processing, true)},
        {"set_port_switch_unknown_unicast_to_cpu",
         setting(&Base::set_port_switch_unknown_unicast_to_cpu, true)},
        {"set_switch_unknown_unicast_to_cpu",
         [](Sdk& sdk, Outputs&) { return sdk.set_switch_unknown_unicast_to_cpu(true); }},
        {"set_switch_forward_mode",
         [](Sdk& sdk, Outputs&) { return sdk.set_switch_forward_mode(1); }},
        {"set_port_stp_state", setting(&Base::set_port_stp_state, STP_FORWARDING)},
        {"set_stg_stp_state",
         [](Sdk& sdk, Outputs&) { return sdk.set_stg_stp_state(1, p5, MSTP_FORWARDING); }},
        {"enable_mirror", [](Sdk& sdk, Outputs&) { return sdk.enable_mirror(1); }},
        {"set_mirror_port",
         [](Sdk& sdk, Outputs&) { return sdk.set_mirror_port(p3, p5, MIRROR_BOTH); }},
        {"set_port_stat_enable", setting(&Base::set_port_stat_enable, true)},
        {"clear_port_stat_counter",
         [](Sdk& sdk, Outputs&) { return sdk.clear_port_stat_counter(p5); }},
    };
}

std::vector<Operation> port_getters()
{
    using Base = VexoSdkBase;
    return {
        {"get_port_enabled", reading(&Base::get_port_enabled, &Outputs::flag)},
        {"get_port_autoneg", reading(&Base::get_port_autoneg, &Outputs::flag)},
        {"get_port_speed", reading(&Base::get_port_speed, &Outputs::integer)},
        {"get_port_duplex", reading(&Base::get_port_duplex, &Outputs::integer)},
        {"get_port_pause",
         [](Sdk& sdk, Outputs& out) { return sdk.get_port_pause(p5, out.number, out.number); }},
        {"get_port_jaming", reading(&Base::get_port_jaming, &Outputs::flag)},
        {"get_port_mtu", reading(&Base::get_port_mtu, &Outputs::number)},
        {"get_port_phy_state", reading(&Base::get_port_phy_state, &Outputs::integer)},
        {"get_port_vlan_pvid", reading(&Base::get_port_vlan_pvid, &Outputs::number)},
        {"get_port_vlan_priority",
         [](Sdk& sdk, Outputs& out) { return sdk.get_port_vlan_priority(p5, 0, out.number); }},
        {"get_port_vlan_accept_frame", reading(&Base::get_port_vlan_accept_frame, &Outputs::flag)},
        {"get_port_ingress_discarding",
         reading(&Base::get_port_ingress_discarding, &Outputs::integer)},
        {"get_port_ability", reading(&Base::get_port_ability, &Outputs::number)},
        {"get_port_advertising_ability",
         reading(&Base::get_port_advertising_ability, &Outputs::number)},
        {"get_port_current_ability", reading(&Base::get_port_current_ability, &Outputs::number)},
        {"get_port_flood_blocking_cpu",
         reading(&Base::get_port_flood_blocking_cpu, &Outputs::number)},
        {"get_port_egress_admin_state",
         reading(&Base::get_port_egress_admin_state, &Outputs::flag),
         {{"bcmx_port_flood_block_get"}}},
        {"get_port_unicast_control", reading(&Base::get_port_unicast_control, &Outputs::number)},
        {"get_port_multicast_control",
         reading(&Base::get_port_multicast_control, &Outputs::number)},
        {"get_port_broadcast_control",
         reading(&Base::get_port_broadcast_control, &Outputs::number)},
        {"get_port_cos_mapping",
         [](Sdk& sdk, Outputs& out) { return sdk.get_port_cos_mapping(p5, 3, out.number); }},
        {"get_port_bpdu_processing", reading(&Base::get_port_bpdu_processing, &Outputs::flag)},
        {"get_port_switch_unknown_unicast_to_cpu",
         reading(&Base::get_port_switch_unknown_unicast_to_cpu, &Outputs::flag)},
        {"get_switch_unknown_unicast_to_cpu",
         [](Sdk& sdk, Outputs& out) { return sdk.get_switch_unknown_unicast_to_cpu(out.flag); }},
        {"get_switch_forward_mode",
         [](Sdk& sdk, Outputs& out) { return sdk.get_switch_forward_mode(out.number); }},
        {"get_port_peer_ability",
         [](Sdk& sdk, Outputs& out) {
             auto ability = static_cast<port_ability_type_t>(out.number);
             const bool done = sdk.get_port_peer_ability(p5, ability);
             out.number = ability;
             return done;
         }},
        {"get_port_pause_addr",
         [](Sdk& sdk, Outputs&) {
             unsigned char mac[6];
             return sdk.get_port_pause_addr(p5, mac);
         }},
        {"get_port_flood_blocking",
         [](Sdk& sdk, Outputs& out) {
             auto block = static_cast<flood_block_type_t>(out.number);
             const bool done = sdk.get_port_flood_blocking(p3, p5, block);
             out.number = block;
             return done;
         }},
        {"get_stg_stp_state",
         [](Sdk& sdk, Outputs& out) {
             auto state = static_cast<mstp_state_t>(out.integer);
             const bool done = sdk.get_stg_stp_state(1, p5, state);
             out.integer = state;
             return done;
         }},
        {"get_port_stp_state", reading(&Base::get_port_stp_state, &Outputs::integer)},
        {"get_mirror_port",
         [](Sdk& sdk, Outputs& out) {
             Mp destination;
             auto type = static_cast<mirror_type_t>(out.integer);
             const bool done = sdk.get_mirror_port(destination, p5, type);
             out.integer = type;
             return done;
         },
         {{"bcmx_mirror_port_get"}}},
    };
}

template <class Counter>
auto listing(bool (VexoSdkBase::*get)(const Mp&, std::list<Counter>&))
{
    return [get](Sdk& sdk, Outputs&) {
        std::list<Counter> all;
        return (sdk.*get)(p5, all);
    };
}

template <class Counter>
auto filling(bool (VexoSdkBase::*get)(const Mp&, Counter*, unsigned&))
{
    return [get](Sdk& sdk, Outputs& out) {
        Counter all[76];
        unsigned count = 76;
        const bool done = (sdk.*get)(p5, all, count);
        out.number = done ? count : out.number;
        return done;
    };
}

template <class Type, class Value>
auto counting(bool (VexoSdkBase::*get)(const Mp&, Type, Value&), Value Outputs::*out)
{
    return [get, out](Sdk& sdk, Outputs& outputs) {
        return (sdk.*get)(p5, static_cast<Type>(2), outputs.*out);
    };
}

/// But for single summary counters, which fail on every chip.
std::vector<Operation> counter_operations()
{
    using Base = VexoSdkBase;
    return {
        {"get_port_stat_counter",
         counting(&Base::get_port_stat_counter, &Outputs::wide),
         {{"bcmx_stat_get"}}},
        {"get_port_stat_counter32",
         counting(&Base::get_port_stat_counter32, &Outputs::number),
         {{"bcmx_stat_get32"}}},
        {"get_port_stat_counter_all64",
         listing(&Base::get_port_stat_counter_all64),
         {{"bcmx_stat_get"}}},
        {"get_port_stat_counter_all32",
         listing(&Base::get_port_stat_counter_all32),
         {{"bcmx_stat_get32"}}},
        {"get_port_stat_counter_all64_ext",
         filling(&Base::get_port_stat_counter_all64_ext),
         {{"bcmx_stat_get"}}},
        {"get_port_stat_counter_all32_ext",
         filling(&Base::get_port_stat_counter_all32_ext),
         {{"bcmx_stat_get32"}}},
        {"get_port_brief_stat_counter_all64", listing(&Base::get_port_brief_stat_counter_all64)},
        {"get_port_brief_stat_counter_all32", listing(&Base::get_port_brief_stat_counter_all32)},
    };
}

TEST_F(Sweep, PortSetters)
{
    sweep(port_setters());
}

TEST_F(Sweep, PortGetters)
{
    sweep(port_getters());
}

TEST_F(Sweep, PortCounters)
{
    sweep(counter_operations());
}

} // namespace
