// The rest of the port operations. Not built yet: every operation here returns false and leaves its
// outputs alone.
#include "core/bcm_sdk.h"

bool VexoBcmSdk::set_port_jaming(const Mp&, bool)
{
    return false;
}

bool VexoBcmSdk::get_port_jaming(const Mp&, bool&)
{
    return false;
}

bool VexoBcmSdk::set_port_pause_addr(const Mp&, const unsigned char*)
{
    return false;
}

bool VexoBcmSdk::get_port_pause_addr(const Mp&, unsigned char (&)[6])
{
    return false;
}

bool VexoBcmSdk::set_port_bpdu_processing(const Mp&, bool)
{
    return false;
}

bool VexoBcmSdk::get_port_bpdu_processing(const Mp&, bool&)
{
    return false;
}

bool VexoBcmSdk::set_port_broadcast_control(const Mp&, unsigned)
{
    return false;
}

bool VexoBcmSdk::get_port_broadcast_control(const Mp&, unsigned&)
{
    return false;
}

bool VexoBcmSdk::set_port_multicast_control(const Mp&, unsigned)
{
    return false;
}

bool VexoBcmSdk::get_port_multicast_control(const Mp&, unsigned&)
{
    return false;
}

bool VexoBcmSdk::set_port_unicast_control(const Mp&, unsigned)
{
    return false;
}

bool VexoBcmSdk::get_port_unicast_control(const Mp&, unsigned&)
{
    return false;
}

bool VexoBcmSdk::set_port_egress_admin_state(const Mp&, bool)
{
    return false;
}

bool VexoBcmSdk::get_port_egress_admin_state(const Mp&, bool&)
{
    return false;
}

bool VexoBcmSdk::set_port_protocol_vlan(const Mp&, frame_type_t, unsigned short, unsigned)
{
    return false;
}

bool VexoBcmSdk::delete_port_protocol_vlan(const Mp&, frame_type_t, unsigned short)
{
    return false;
}

bool VexoBcmSdk::delete_port_protocol_vlan_all(const Mp&)
{
    return false;
}

bool VexoBcmSdk::set_mac_vlan(const unsigned char*, unsigned, unsigned)
{
    return false;
}

bool VexoBcmSdk::set_ipv4_subnet_vlan(unsigned, unsigned, unsigned, unsigned)
{
    return false;
}

bool VexoBcmSdk::set_ipv6_subnet_vlan(const unsigned char*, unsigned, unsigned, unsigned)
{
    return false;
}

bool VexoBcmSdk::get_port_ability(const Mp&, port_ability_type_t&)
{
    return false;
}

bool VexoBcmSdk::set_port_advertising_ability(const Mp&, port_ability_type_t)
{
    return false;
}

bool VexoBcmSdk::get_port_advertising_ability(const Mp&, port_ability_type_t&)
{
    return false;
}

bool VexoBcmSdk::get_port_current_ability(const Mp&, port_ability_type_t&)
{
    return false;
}

bool VexoBcmSdk::get_port_peer_ability(Mp, port_ability_type_t&)
{
    return false;
}

bool VexoBcmSdk::set_port_cos_mapping(const Mp&, unsigned, unsigned)
{
    return false;
}

bool VexoBcmSdk::get_port_cos_mapping(const Mp&, unsigned, unsigned&)
{
    return false;
}

bool VexoBcmSdk::set_switch_forward_mode(unsigned)
{
    return false;
}

bool VexoBcmSdk::get_switch_forward_mode(unsigned&)
{
    return false;
}

bool VexoBcmSdk::set_port_l2_enable(const Mp&, bool)
{
    return false;
}

bool VexoBcmSdk::set_port_switch_unknown_unicast_to_cpu(const Mp&, bool)
{
    return false;
}

bool VexoBcmSdk::get_port_switch_unknown_unicast_to_cpu(const Mp&, bool&)
{
    return false;
}

bool VexoBcmSdk::set_switch_unknown_unicast_to_cpu(bool)
{
    return false;
}

bool VexoBcmSdk::get_switch_unknown_unicast_to_cpu(bool&)
{
    return false;
}
