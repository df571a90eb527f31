// L3 hosts, kept by the chip alone. One surprise: an IPv6 host is only added after an SDK that says
// 1 when it prepares its record.
#include <algorithm>

#include "core/bcm_sdk.h"
#include "l3/record.h"

using namespace vexolc;

namespace {

void set_address(bcmx_l3_host_t& host, unsigned ip)
{
    set_flag(host.l3a_flags, BCM_L3_IP6, false);
    host.l3a_ip_addr = ip;
}

void set_address(bcmx_l3_host_t& host, const unsigned char* ip6)
{
    set_flag(host.l3a_flags, BCM_L3_IP6, true);
    std::copy_n(ip6, 16, host.l3a_ip6_addr);
}

void set_network(bcmx_l3_route_t& route, unsigned net)
{
    set_flag(route.l3r_flags, BCM_L3_IP6, false);
    route.l3r_ip_addr = net;
}

void set_network(bcmx_l3_route_t& route, const unsigned char* net6)
{
    set_flag(route.l3r_flags, BCM_L3_IP6, true);
    std::copy_n(net6, 16, route.l3r_ip6_net);
}

/// Makes a record of an address behind a port or trunk; `prepared` is what the SDK must answer.
template <class Address>
bool make_host(bcmx_l3_host_t& host, Address address, const Mp& port, bool is_trunk,
               int prepared = BCM_E_NONE)
{
    const Egress egress(port, is_trunk);
    if (!egress.valid() || bcmx_l3_host_t_init(&host) != prepared)
        return false;
    egress.store(host.l3a_flags, host.l3a_lport, host.l3a_trunk_id);
    set_address(host, address);
    return true;
}

/// A host that exists counts as added.
bool add(bcmx_l3_host_t& host, const unsigned char* mac, unsigned interface_id)
{
    std::copy_n(mac, 6, host.l3a_nexthop_mac);
    host.l3a_intf = interface_id;
    return ok(bcmx_l3_host_add(&host), BCM_E_EXISTS);
}

bool find(bcmx_l3_host_t& host, unsigned char* mac, unsigned& interface_id)
{
    if (!ok(bcmx_l3_host_find(&host)))
        return false;
    std::copy_n(host.l3a_nexthop_mac, 6, mac);
    return store(interface_id, host.l3a_intf);
}

/// Deliberately without a mask, which the chip takes for all hosts of the family, and with "exists"
/// as the code that counts as success.
template <class Address>
bool delete_by_network(Address net)
{
    bcmx_l3_route_t route = {};
    if (!ok(bcmx_l3_route_t_init(&route)))
        return false;
    set_network(route, net);
    return ok(bcmx_l3_host_delete_by_network(&route), BCM_E_EXISTS);
}

} // namespace

bool VexoBcmSdk::add_l3_host_ip4(Mp port, bool is_trunk, unsigned ip, const unsigned char* mac,
                                 unsigned interface_id)
{
    bcmx_l3_host_t host = {};
    return make_host(host, ip, port, is_trunk) && add(host, mac, interface_id);
}

bool VexoBcmSdk::add_l3_host_ip6(Mp port, bool is_trunk, const unsigned char* ip6,
                                 const unsigned char* mac, unsigned interface_id)
{
    constexpr int prepared = 1; // deliberately not success: with an SDK that succeeds, never added
    bcmx_l3_host_t host = {};
    return make_host(host, ip6, port, is_trunk, prepared) && add(host, mac, interface_id);
}

bool VexoBcmSdk::get_l3_host_ip4(unsigned ip, Mp port, unsigned char* mac, unsigned& interface_id,
                                 bool is_trunk)
{
    bcmx_l3_host_t host = {};
    return make_host(host, ip, port, is_trunk) && find(host, mac, interface_id);
}

bool VexoBcmSdk::get_l3_host_ip6(const unsigned char* ip6, Mp port, unsigned char* mac,
                                 unsigned& interface_id, bool is_trunk)
{
    bcmx_l3_host_t host = {};
    return make_host(host, ip6, port, is_trunk) && find(host, mac, interface_id);
}

bool VexoBcmSdk::delete_l3_host_by_interface(unsigned interface_id, bool unmarked)
{
    bcmx_l3_host_t host = {};
    if (!ok(bcmx_l3_host_t_init(&host)))
        return false;
    host.l3a_intf = interface_id;
    if (!unmarked)
        host.l3a_flags |= BCM_L3_NEGATE;
    return ok(bcmx_l3_host_delete_by_interface(&host), BCM_E_NOT_FOUND);
}

bool VexoBcmSdk::delete_l3_host_by_network_ip4(unsigned net)
{
    return delete_by_network(net);
}

bool VexoBcmSdk::delete_l3_host_by_network_ip6(const unsigned char* net6)
{
    return delete_by_network(net6);
}

bool VexoBcmSdk::delete_l3_host_by_addr_ip4(unsigned ip, const Mp& port, bool is_trunk)
{
    bcmx_l3_host_t host = {};
    return make_host(host, ip, port, is_trunk) && ok(bcmx_l3_host_delete(&host));
}

bool VexoBcmSdk::delete_l3_host_by_addr_ip6(const unsigned char* ip6, const Mp& port, bool is_trunk)
{
    bcmx_l3_host_t host = {};
    return make_host(host, ip6, port, is_trunk) && ok(bcmx_l3_host_delete(&host));
}

bool VexoBcmSdk::delete_l3_host_all()
{
    return ok(bcmx_l3_host_delete_all());
}

bool VexoBcmSdk::invalidate_l3_entry(unsigned ip)
{
    return ok(bcmx_l3_invalidate_entry(ip), BCM_E_NOT_FOUND);
}

bool VexoBcmSdk::validate_l3_entry(unsigned ip)
{
    return ok(bcmx_l3_validate_entry(ip), BCM_E_NOT_FOUND);
}
