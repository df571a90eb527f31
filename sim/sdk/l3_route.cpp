// Layer-3 routes.
#include <bcmx/l3.h>

#include "sim/sdk/gate.h"
#include "sim/sdk/l3_records.h"

using namespace vexosim;

namespace {

int clear(bcmx_l3_route_t* route)
{
    if (route == nullptr)
        return BCM_E_PARAM;
    *route = {};
    return BCM_E_NONE;
}

/// The route's network, or nothing when its mask has holes or host bits are set.
std::optional<IpPrefix> prefix_of(const bcmx_l3_route_t* route)
{
    if (route == nullptr)
        return std::nullopt;
    const auto flags = route->l3r_flags;
    const int length = prefix_length(address_of(flags, route->l3r_ip_mask, route->l3r_ip6_mask));
    const IpAddress net = address_of(flags, route->l3r_ip_addr, route->l3r_ip6_net);
    if (length < 0 || net.masked(length) != net)
        return std::nullopt;
    return IpPrefix{net, length};
}

int add(Chip& chip, const bcmx_l3_route_t* route)
{
    const auto prefix = prefix_of(route);
    if (!prefix)
        return BCM_E_PARAM;
    NextHop hop;
    hop.interface = route->l3r_intf;
    hop.mac = load_mac(route->l3r_nexthop_mac);
    hop.ip4 = route->l3r_nexthop_ip;
    const int rc =
        check_next_hop(chip, route->l3r_flags, route->l3r_lport, route->l3r_trunk_id, hop);
    if (rc != BCM_E_NONE)
        return rc;
    const bool replace = (route->l3r_flags & BCM_L3_REPLACE) != 0;
    return chip.l3_routes.add(*prefix, L3Route{hop}, replace);
}

int get(const Chip& chip, bcmx_l3_route_t* route)
{
    const auto prefix = prefix_of(route);
    if (!prefix)
        return BCM_E_PARAM;
    const L3Route* found = chip.l3_routes.find(*prefix);
    if (found == nullptr)
        return BCM_E_NOT_FOUND;
    const NextHop& hop = found->next_hop;
    route->l3r_flags = flags_of(prefix->net, hop, found->hit);
    route->l3r_intf = hop.interface;
    route->l3r_nexthop_ip = hop.ip4;
    store_mac(hop.mac, route->l3r_nexthop_mac);
    store_egress(hop, route->l3r_lport, route->l3r_trunk_id);
    return BCM_E_NONE;
}

int erase(Chip& chip, const bcmx_l3_route_t* route)
{
    const auto prefix = prefix_of(route);
    return prefix ? chip.l3_routes.erase(*prefix) : int{BCM_E_PARAM};
}

int erase_interface(Chip& chip, const bcmx_l3_route_t* route)
{
    if (route == nullptr)
        return BCM_E_PARAM;
    return chip.l3_routes.erase_if([&](const IpPrefix&, const L3Route& entry) {
        return is_meant(route->l3r_flags, route->l3r_intf, entry.next_hop.interface);
    });
}

int erase_all(Chip& chip)
{
    return chip.l3_routes.erase_if([](const IpPrefix&, const L3Route&) { return true; });
}

} // namespace

extern "C" int bcmx_l3_route_t_init(bcmx_l3_route_t* route)
{
    return local_call("bcmx_l3_route_t_init", args(Out{route}), [&] { return clear(route); });
}

extern "C" int bcmx_l3_route_add(bcmx_l3_route_t* route)
{
    return sdk_call("bcmx_l3_route_add", args(route), [&](Chip& chip) { return add(chip, route); });
}

extern "C" int bcmx_l3_route_get(bcmx_l3_route_t* route)
{
    return sdk_call("bcmx_l3_route_get", args(route), [&](Chip& chip) { return get(chip, route); });
}

extern "C" int bcmx_l3_route_delete(bcmx_l3_route_t* route)
{
    return sdk_call("bcmx_l3_route_delete", args(route),
                    [&](Chip& chip) { return erase(chip, route); });
}

extern "C" int bcmx_l3_route_delete_by_interface(bcmx_l3_route_t* route)
{
    return sdk_call("bcmx_l3_route_delete_by_interface", args(route),
                    [&](Chip& chip) { return erase_interface(chip, route); });
}

extern "C" int bcmx_l3_route_delete_all(void)
{
    return sdk_call("bcmx_l3_route_delete_all", args(), [](Chip& chip) { return erase_all(chip); });
}
