// VLANs.
#include <bcmx/vlan.h>

#include <algorithm>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"
#include "sim/sdk/port_lists.h"

namespace {

using namespace vexosim;

int add_subnet(VlanRules& rules, const bcm_vlan_ip_t& subnet)
{
    const VlanAssignment vlan{subnet.vid, subnet.prio};
    if ((subnet.flags & ~BCM_VLAN_SUBNET_IP6) != 0)
        return BCM_E_PARAM;
    if ((subnet.flags & BCM_VLAN_SUBNET_IP6) == 0)
        return rules.add_ip4(subnet.ip4, subnet.mask, vlan);
    Ip6Address address;
    std::copy(std::begin(subnet.ip6), std::end(subnet.ip6), address.begin());
    return rules.add_ip6(address, subnet.prefix, vlan);
}

/// Puts both lists' content in place of what they hold, or neither.
int replace_lists(bcmx_lplist_t* ports, PortSet members, bcmx_lplist_t* untagged, PortSet plain)
{
    if (ports == nullptr || untagged == nullptr)
        return BCM_E_PARAM;
    const auto fill = [](bcmx_lplist_t& list, PortSet set) {
        list.lp_last = -1;
        int rc = BCM_E_NONE;
        for (const int port : set)
            rc = rc == BCM_E_NONE ? add_to_list(&list, card().ports.lport(port)) : rc;
        return rc;
    };
    const int rc = fill(*ports, members);
    return rc == BCM_E_NONE ? fill(*untagged, plain) : rc;
}

} // namespace

extern "C" int bcmx_vlan_create(bcm_vlan_t vid)
{
    return sdk_call("bcmx_vlan_create", args(vid),
                    [&](Chip& chip) { return chip.vlans.create(vid); });
}

extern "C" int bcmx_vlan_destroy(bcm_vlan_t vid)
{
    return sdk_call("bcmx_vlan_destroy", args(vid),
                    [&](Chip& chip) { return chip.vlans.destroy(vid); });
}

extern "C" int bcmx_vlan_port_add(bcm_vlan_t vid, bcmx_lplist_t ports, bcmx_lplist_t untagged)
{
    return sdk_call("bcmx_vlan_port_add", args(vid, Ports{&ports}, Ports{&untagged}),
                    [&](Chip& chip) -> int {
                        const auto members = port_set(ports), plain = port_set(untagged);
                        if (!members || !plain)
                            return BCM_E_PORT;
                        return chip.vlans.add_ports(vid, *members, *plain);
                    });
}

extern "C" int bcmx_vlan_port_remove(bcm_vlan_t vid, bcmx_lplist_t ports)
{
    return sdk_call("bcmx_vlan_port_remove", args(vid, Ports{&ports}), [&](Chip& chip) -> int {
        const auto gone = port_set(ports);
        return gone ? chip.vlans.remove_ports(vid, *gone) : BCM_E_PORT;
    });
}

extern "C" int bcmx_vlan_port_get(bcm_vlan_t vid, bcmx_lplist_t* ports, bcmx_lplist_t* untagged)
{
    return sdk_call("bcmx_vlan_port_get", args(vid, Out{ports}, Out{untagged}), [&](Chip& chip) {
        PortSet members, plain;
        const int rc = chip.vlans.get_ports(vid, members, plain);
        return rc == BCM_E_NONE ? replace_lists(ports, members, untagged, plain) : rc;
    });
}

extern "C" int bcmx_vlan_mac_add(bcm_mac_t mac, bcm_vlan_t vid, int prio)
{
    return sdk_call("bcmx_vlan_mac_add", args(Mac{mac}, vid, prio), [&](Chip& chip) -> int {
        return mac == nullptr ? BCM_E_PARAM : chip.vlan_rules.add_mac(load_mac(mac), {vid, prio});
    });
}

extern "C" int bcmx_vlan_ip4_add(bcm_ip_t ip, bcm_ip_t mask, bcm_vlan_t vid, int prio)
{
    return sdk_call("bcmx_vlan_ip4_add", args(Ip4{ip}, Ip4{mask}, vid, prio), [&](Chip& chip) {
        return chip.vlan_rules.add_ip4(ip, mask, {vid, prio});
    });
}

extern "C" int bcmx_vlan_ip_add(bcm_vlan_ip_t* vlan_ip)
{
    return sdk_call("bcmx_vlan_ip_add", args(vlan_ip), [&](Chip& chip) -> int {
        return vlan_ip == nullptr ? BCM_E_PARAM : add_subnet(chip.vlan_rules, *vlan_ip);
    });
}
