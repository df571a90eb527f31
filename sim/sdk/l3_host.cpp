// Layer-3 hosts.
#include <bcmx/l3.h>

#include "sim/sdk/gate.h"
#include "sim/sdk/l3_records.h"

using namespace vexosim;

namespace {

int clear(bcmx_l3_host_t* host)
{
    if (host == nullptr)
        return BCM_E_PARAM;
    *host = {};
    return BCM_E_NONE;
}

IpAddress address_of(const bcmx_l3_host_t& host)
{
    return vexosim::address_of(host.l3a_flags, host.l3a_ip_addr, host.l3a_ip6_addr);
}

int add(Chip& chip, const bcmx_l3_host_t* host)
{
    if (host == nullptr)
        return BCM_E_PARAM;
    NextHop hop;
    hop.interface = host->l3a_intf;
    hop.mac = load_mac(host->l3a_nexthop_mac);
    const int rc = check_next_hop(chip, host->l3a_flags, host->l3a_lport, host->l3a_trunk_id, hop);
    if (rc != BCM_E_NONE)
        return rc;
    const bool replace = (host->l3a_flags & BCM_L3_REPLACE) != 0;
    return chip.l3_hosts.add(address_of(*host), L3Host{hop, true}, replace);
}

int find(const Chip& chip, bcmx_l3_host_t* host)
{
    if (host == nullptr)
        return BCM_E_PARAM;
    const IpAddress address = address_of(*host);
    const L3Host* found = chip.l3_hosts.find(address);
    if (found == nullptr)
        return BCM_E_NOT_FOUND;
    const NextHop& hop = found->next_hop;
    host->l3a_flags = flags_of(address, hop, found->hit);
    host->l3a_intf = hop.interface;
    store_mac(hop.mac, host->l3a_nexthop_mac);
    store_egress(hop, host->l3a_lport, host->l3a_trunk_id);
    return BCM_E_NONE;
}

int erase(Chip& chip, const bcmx_l3_host_t* host)
{
    return host == nullptr ? int{BCM_E_PARAM} : chip.l3_hosts.erase(address_of(*host));
}

int erase_network(Chip& chip, const bcmx_l3_route_t* route)
{
    if (route == nullptr)
        return BCM_E_PARAM;
    const auto flags = route->l3r_flags;
    const int length =
        prefix_length(vexosim::address_of(flags, route->l3r_ip_mask, route->l3r_ip6_mask));
    if (length < 0)
        return BCM_E_PARAM;
    const IpAddress net = vexosim::address_of(flags, route->l3r_ip_addr, route->l3r_ip6_net);
    const IpPrefix prefix{net.masked(length), length};
    return chip.l3_hosts.erase_if(
        [&](const IpAddress& address, const L3Host&) { return prefix.contains(address); });
}

int erase_interface(Chip& chip, const bcmx_l3_host_t* host)
{
    if (host == nullptr)
        return BCM_E_PARAM;
    return chip.l3_hosts.erase_if([&](const IpAddress&, const L3Host& entry) {
        return is_meant(host->l3a_flags, host->l3a_intf, entry.next_hop.interface);
    });
}

int erase_all(Chip& chip)
{
    return chip.l3_hosts.erase_if([](const IpAddress&, const L3Host&) { return true; });
}

} // namespace

extern "C" int bcmx_l3_host_t_init(bcmx_l3_host_t* host)
{
    return local_call("bcmx_l3_host_t_init", args(Out{host}), [&] { return clear(host); });
}

extern "C" int bcmx_l3_host_add(bcmx_l3_host_t* host)
{
    return sdk_call("bcmx_l3_host_add", args(host), [&](Chip& chip) { return add(chip, host); });
}

extern "C" int bcmx_l3_host_find(bcmx_l3_host_t* host)
{
    return sdk_call("bcmx_l3_host_find", args(host), [&](Chip& chip) { return find(chip, host); });
}

extern "C" int bcmx_l3_host_delete(bcmx_l3_host_t* host)
{
    return sdk_call("bcmx_l3_host_delete", args(host),
                    [&](Chip& chip) { return erase(chip, host); });
}

extern "C" int bcmx_l3_host_delete_by_network(bcmx_l3_route_t* route)
{
    return sdk_call("bcmx_l3_host_delete_by_network", args(route),
                    [&](Chip& chip) { return erase_network(chip, route); });
}

extern "C" int bcmx_l3_host_delete_by_interface(bcmx_l3_host_t* host)
{
    return sdk_call("bcmx_l3_host_delete_by_interface", args(host),
                    [&](Chip& chip) { return erase_interface(chip, host); });
}

extern "C" int bcmx_l3_host_delete_all(void)
{
    return sdk_call("bcmx_l3_host_delete_all", args(), [](Chip& chip) { return erase_all(chip); });
}

extern "C" int bcmx_l3_validate_entry(bcm_ip_t ip)
{
    return sdk_call("bcmx_l3_validate_entry", args(Ip4{ip}), [&](Chip& chip) {
        return chip.l3_hosts.set_usable(IpAddress::from_ip4(ip), true);
    });
}

extern "C" int bcmx_l3_invalidate_entry(bcm_ip_t ip)
{
    return sdk_call("bcmx_l3_invalidate_entry", args(Ip4{ip}), [&](Chip& chip) {
        return chip.l3_hosts.set_usable(IpAddress::from_ip4(ip), false);
    });
}
