// The VLAN of untagged frames by protocol, source address and subnet.
#include <algorithm>

#include <bcmx/port.h>
#include <bcmx/vlan.h>

#include "core/bcm_sdk.h"
#include "core/enum_table.h"
#include "core/result.h"

using namespace vexolc;

namespace {

// Deliberately not two-way: the second 802.3 value sets the same frame type as the first.
constexpr EnumTable<frame_type_t, 4> frame_types = {{
    {FRAME_ETHERNET_II, BCM_PORT_FRAMETYPE_ETHER2},
    {FRAME_802_3, BCM_PORT_FRAMETYPE_8023},
    {FRAME_802_3_LLC, BCM_PORT_FRAMETYPE_8023},
    {FRAME_SNAP, BCM_PORT_FRAMETYPE_SNAP},
}};

bcm_vlan_t vlan_of(unsigned vid)
{
    return static_cast<bcm_vlan_t>(vid);
}

} // namespace

bool VexoBcmSdk::set_port_protocol_vlan(const Mp& port, frame_type_t frame,
                                        unsigned short ethertype, unsigned vid)
{
    int lport = -1;
    int type = 0;
    return map_mp_to_lport(port, lport) && frame_types.to_sdk(frame, type) &&
           ok(bcmx_port_protocol_vlan_add(lport, type, ethertype, vlan_of(vid)));
}

bool VexoBcmSdk::delete_port_protocol_vlan(const Mp& port, frame_type_t frame,
                                           unsigned short ethertype)
{
    int lport = -1;
    int type = 0;
    return map_mp_to_lport(port, lport) && frame_types.to_sdk(frame, type) &&
           ok(bcmx_port_protocol_vlan_delete(lport, type, ethertype));
}

bool VexoBcmSdk::delete_port_protocol_vlan_all(const Mp& port)
{
    int lport = -1;
    return map_mp_to_lport(port, lport) && ok(bcmx_port_protocol_vlan_delete_all(lport));
}

bool VexoBcmSdk::set_mac_vlan(const unsigned char* mac, unsigned vid, unsigned priority)
{
    bcm_mac_t address;
    std::copy_n(mac, 6, address);
    return ok(bcmx_vlan_mac_add(address, vlan_of(vid), static_cast<int>(priority)));
}

bool VexoBcmSdk::set_ipv4_subnet_vlan(unsigned ip, unsigned mask, unsigned vid, unsigned priority)
{
    return ok(bcmx_vlan_ip4_add(ip, mask, vlan_of(vid), static_cast<int>(priority)));
}

bool VexoBcmSdk::set_ipv6_subnet_vlan(const unsigned char* ip6, unsigned prefix_length,
                                      unsigned vid, unsigned priority)
{
    bcm_vlan_ip_t subnet = {};
    subnet.flags = BCM_VLAN_SUBNET_IP6;
    std::copy_n(ip6, 16, subnet.ip6);
    subnet.prefix = static_cast<int>(prefix_length);
    subnet.vid = vlan_of(vid);
    subnet.prio = static_cast<int>(priority);
    return ok(bcmx_vlan_ip_add(&subnet));
}
