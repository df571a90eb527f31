// Frames for the router: their next hop, and whether they may go there.
#include <bcm/rx.h>

#include "sim/chip/text.h"
#include "sim/pipeline/recorder.h"
#include "sim/pipeline/routing_header.h"
#include "sim/pipeline/stages.h"
#include "sim/pipeline/trunk_stages.h"

namespace vexosim {

namespace {

/// Notes why the frame is not routed; it goes on to the MAC table.
Step not_routed(const Packet& p, const char* why)
{
    explain(p, [&](const PortNames&) { return std::string(why) + ": not routed"; });
    return next();
}

Step refuse_address(Packet& p)
{
    p.routing = Routing::kAddressError;
    return drop(DropReason::l3_martian);
}

/// As received, and nowhere else. What the CPU has sent does not come back to it.
Step hand_to_cpu(Packet& p, int reason, const char* why)
{
    explain(p, [&](const PortNames&) { return std::string(why) + ": for the CPU"; });
    if (p.from_cpu())
        return drop(DropReason::l3_from_cpu);
    p.copy_to_cpu(reason);
    return done();
}

Step refuse_header(Packet& p, int reason, const char* why)
{
    p.routing = Routing::kHeaderError;
    return hand_to_cpu(p, reason, why);
}

std::string route_text(const Chip& chip, const Packet& p)
{
    const IpPrefix& won = p.route->key;
    int shorter = 0;
    for (int length = 0; length < won.length; ++length)
        shorter += chip.l3_routes.find({won.net.masked(length), length}) != nullptr ? 1 : 0;
    std::string over = shorter == 0 ? "" : ", over " + std::to_string(shorter) + " shorter";
    return "route " + prefix_text(won) + over;
}

/// Which entry the destination has found, and why that one.
std::string found_text(const Chip& chip, const Packet& p, const IpAddress& dst)
{
    const L3Host* host = chip.l3_hosts.find(dst);
    if (p.host != nullptr)
        return "host " + ip_text(dst);
    std::string unusable = host != nullptr ? "host " + ip_text(dst) + " is not valid; " : "";
    return unusable +
           (p.route != nullptr ? route_text(chip, p) : "no host or route for " + ip_text(dst));
}

/// A host that is valid comes before any route.
bool find_next_hop(const Chip& chip, Packet& p, const IpAddress& dst)
{
    const auto host = chip.l3_hosts.number_of(dst);
    if (host != 0 && chip.l3_hosts.item(host).entry.usable)
        p.host = &chip.l3_hosts.item(host);
    else if (const auto route = chip.l3_routes.longest(dst); route != 0)
        p.route = &chip.l3_routes.item(route);
    explain(p, [&](const PortNames&) { return found_text(chip, p, dst); });
    return p.host != nullptr || p.route != nullptr;
}

/// Out of the next hop's interface: from here on the frame is in its VLAN.
Step leave(const Chip& chip, Packet& p)
{
    const NextHop& hop = p.next_hop();
    const L3Interface* interface = chip.l3_interfaces.find(hop.interface);
    explain(p, [&](const PortNames& names) {
        return "to " + mac_text(hop.mac) + " at " +
               (hop.on_trunk ? "trunk " + std::to_string(hop.egress)
                             : "port " + names.name(hop.egress)) +
               ", by interface " + std::to_string(hop.interface) +
               (interface != nullptr ? " in VLAN " + std::to_string(interface->vid) : "");
    });
    if (interface == nullptr || !chip.vlans[interface->vid].exists)
        return drop(DropReason::l3_interface_gone);
    p.interface = interface;
    p.vlan = &chip.vlans[interface->vid];
    if (hop.on_trunk)
        return to_trunk(chip, p, hop.egress);
    p.out = PortSet{hop.egress};
    return next();
}

/// The CPU is asked about what it alone can answer for: its own packets first, whatever their hop
/// count.
Step route_packet(const Chip& chip, Packet& p, const RoutingHeader& ip)
{
    p.routing = Routing::kPacket;
    if (is_martian(ip.dst) || is_martian(ip.src))
        return refuse_address(p);
    if (ip.options)
        return hand_to_cpu(p, bcmRxReasonL3HeaderError, "a header with options");
    const bool found = find_next_hop(chip, p, ip.dst);
    if (found && !p.next_hop().on_trunk && p.next_hop().egress == kCpuPort)
        return hand_to_cpu(p, bcmRxReasonL3Slowpath, "the next hop is the CPU");
    if (is_link_local(ip.src))
        return refuse_address(p);
    if (ip.hops <= 1)
        return refuse_header(p, bcmRxReasonTtl, "no hop is left");
    if (!found)
        return hand_to_cpu(p, bcmRxReasonL3DestMiss, "no way there");
    return leave(chip, p);
}

std::string describe(const Chip& chip, const Packet& p, const RoutingHeader& ip)
{
    std::string router = mac_text(p.dst) + " is the router in VLAN " + std::to_string(p.vid) +
                         ", interface " + std::to_string(*chip.l3_interfaces.find(p.dst, p.vid));
    if (ip.fault != nullptr)
        return router;
    return router + "; " + ip_text(ip.src) + " to " + ip_text(ip.dst) + ", " +
           std::to_string(ip.hops) + (ip.hops == 1 ? " hop left" : " hops left");
}

[[gnu::noinline]] Step meet_router(const Chip& chip, Packet& p)
{
    if (!chip.l3_interfaces.find(p.dst, p.vid)) [[likely]]
        return next();
    if (p.redirected())
        return not_routed(p, "field entries say where it goes");
    if (p.ethertype != kIp4Type && p.ethertype != kIp6Type)
        return not_routed(p, "not IP");
    const FrameView bytes = p.frame.subspan(kHeaderBytes + (p.tagged ? kTagBytes : 0));
    const RoutingHeader ip =
        p.ethertype == kIp4Type ? read_ip4_header(bytes) : read_ip6_header(bytes);
    explain(p, [&](const PortNames&) { return describe(chip, p, ip); });
    if (ip.fault != nullptr)
        return refuse_header(p, bcmRxReasonL3HeaderError, ip.fault);
    if (is_link_local(ip.dst))
        return not_routed(p, "for an address of the link");
    return route_packet(chip, p, ip);
}

} // namespace

Step stage::route(const Chip& chip, Packet& p)
{
    if (chip.l3_interfaces.empty()) [[likely]]
        return next();
    return meet_router(chip, p);
}

} // namespace vexosim
