// L3 routes, kept by the chip alone. One surprise: a delete reads the route first and goes on with
// what it read.
#include <algorithm>

#include "core/bcm_sdk.h"
#include "l3/record.h"

using namespace vexolc;

namespace {

void set_network(bcmx_l3_route_t& route, unsigned subnet, unsigned mask)
{
    set_flag(route.l3r_flags, BCM_L3_IP6, false);
    route.l3r_ip_addr = subnet;
    route.l3r_ip_mask = mask;
}

void set_network(bcmx_l3_route_t& route, const unsigned char* net6, const unsigned char* mask6)
{
    set_flag(route.l3r_flags, BCM_L3_IP6, true);
    std::copy_n(net6, 16, route.l3r_ip6_net);
    std::copy_n(mask6, 16, route.l3r_ip6_mask);
}

/// Makes a record of a network behind a port or trunk.
template <class Address>
bool make_route(bcmx_l3_route_t& route, Address net, Address mask, const Mp& port, bool is_trunk)
{
    const Egress egress(port, is_trunk);
    if (!egress.valid() || !ok(bcmx_l3_route_t_init(&route)))
        return false;
    egress.store(route.l3r_flags, route.l3r_lport, route.l3r_trunk_id);
    set_network(route, net, mask);
    return true;
}

/// A route that exists counts as added.
bool add(bcmx_l3_route_t& route, const unsigned char* mac, unsigned interface_id)
{
    std::copy_n(mac, 6, route.l3r_nexthop_mac);
    route.l3r_intf = interface_id;
    return ok(bcmx_l3_route_add(&route), BCM_E_EXISTS);
}

bool get(bcmx_l3_route_t& route, unsigned char* mac, unsigned& interface_id)
{
    if (!ok(bcmx_l3_route_get(&route)))
        return false;
    std::copy_n(route.l3r_nexthop_mac, 6, mac);
    return store(interface_id, route.l3r_intf);
}

/// Deletes with the record as the chip's answer leaves it; an absent route is asked to be deleted
/// all the same.
bool get_and_delete(bcmx_l3_route_t& route, int (*erase)(bcmx_l3_route_t*))
{
    return ok(bcmx_l3_route_get(&route), BCM_E_NOT_FOUND) && ok(erase(&route), BCM_E_NOT_FOUND);
}

} // namespace

bool VexoBcmSdk::get_l3_route_by_subnet_ip4(unsigned subnet, unsigned mask, const Mp& port,
                                            bool is_trunk, unsigned char (&mac)[6],
                                            unsigned& interface_id, unsigned& nexthop_ip)
{
    bcmx_l3_route_t route = {};
    return make_route(route, subnet, mask, port, is_trunk) && get(route, mac, interface_id) &&
           store(nexthop_ip, route.l3r_nexthop_ip);
}

bool VexoBcmSdk::get_l3_route_by_subnet_ip6(const unsigned char* net6, const unsigned char* mask6,
                                            const Mp& port, bool is_trunk, unsigned& interface_id,
                                            unsigned char* mac)
{
    bcmx_l3_route_t route = {};
    return make_route(route, net6, mask6, port, is_trunk) && get(route, mac, interface_id);
}

bool VexoBcmSdk::add_l3_route_ip4(const Mp& port, bool is_trunk, unsigned subnet, unsigned mask,
                                  const unsigned char* mac, unsigned interface_id,
                                  unsigned nexthop_ip)
{
    bcmx_l3_route_t route = {};
    if (!make_route(route, subnet, mask, port, is_trunk))
        return false;
    route.l3r_nexthop_ip = nexthop_ip;
    return add(route, mac, interface_id);
}

bool VexoBcmSdk::add_l3_route_ip6(const Mp& port, bool is_trunk, const unsigned char* net6,
                                  const unsigned char* mask6, const unsigned char* mac,
                                  unsigned interface_id)
{
    bcmx_l3_route_t route = {};
    return make_route(route, net6, mask6, port, is_trunk) && add(route, mac, interface_id);
}

bool VexoBcmSdk::delete_l3_route_by_interface(unsigned interface_id, bool unmarked)
{
    bcmx_l3_route_t route = {};
    if (!ok(bcmx_l3_route_t_init(&route)))
        return false;
    route.l3r_intf = interface_id;
    if (!unmarked)
        route.l3r_flags |= BCM_L3_NEGATE;
    // Deliberate: the record names no network, so an IPv4 default route is what is read, and then
    // its interface is the one whose routes go.
    return get_and_delete(route, bcmx_l3_route_delete_by_interface);
}

bool VexoBcmSdk::delete_l3_route_by_subnet_ip4(unsigned subnet, unsigned mask, const Mp& port,
                                               bool is_trunk)
{
    bcmx_l3_route_t route = {};
    return make_route(route, subnet, mask, port, is_trunk) &&
           get_and_delete(route, bcmx_l3_route_delete);
}

bool VexoBcmSdk::delete_l3_route_by_subnet_ip6(const unsigned char* net6,
                                               const unsigned char* mask6, const Mp& port,
                                               bool is_trunk)
{
    bcmx_l3_route_t route = {};
    return make_route(route, net6, mask6, port, is_trunk) &&
           get_and_delete(route, bcmx_l3_route_delete);
}

bool VexoBcmSdk::delete_l3_route_all()
{
    return ok(bcmx_l3_route_delete_all());
}
