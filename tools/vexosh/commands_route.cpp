// Layer-3 routes.
#include "tools/vexosh/l3_verbs.h"

namespace vexosh {
namespace {

using Sdk = VexoSdkBase;

/// Where there is an IPv4 default route, the driver deletes the routes of its interface instead.
void check_default_route(const Interfaces& wanted)
{
    for (const auto& route : vexosim::l3_routes_table().rows) {
        if (route[0] == "0.0.0.0/0" && (wanted.others || route[3] != std::to_string(wanted.id))) {
            throw BadInput("l3 route delete interface: the driver would delete the routes of "
                           "interface " +
                           route[3] + ", that of the default route; delete `default` first");
        }
    }
}

void delete_routes(Shell& shell, Words& words)
{
    const Interfaces wanted = next_interfaces(words);
    auto driver = shell.session().driver();
    check_default_route(wanted);
    require(driver->delete_l3_route_by_interface(wanted.id, !wanted.others),
            words.command() + " " + std::to_string(wanted.id));
}

void add_route(Shell& shell, Words& words)
{
    const std::string word = words.next("NETWORK");
    const Network network = parse_network(word);
    const Mac mac = parse_mac(words.next("MAC"));
    const unsigned id = next_interface(words);
    const Egress egress = next_egress(words);
    const bool via = words.take("via");
    if (via && network.net.ip6) {
        throw BadInput("l3 route add " + word + ": the driver takes no `via` for IPv6");
    }
    const std::uint32_t next_hop = via ? parse_ip4(words.next("ADDRESS")) : 0;
    words.end();
    auto driver = shell.session().driver();
    require(network.net.ip6
                ? driver->add_l3_route_ip6(egress.place, egress.lag, network.net.bytes.data(),
                                           network.mask.bytes.data(), mac.data(), id)
                : driver->add_l3_route_ip4(egress.place, egress.lag, network.net.ip4,
                                           network.mask.ip4, mac.data(), id, next_hop),
            words.command() + " " + word);
}

void delete_route(Shell& shell, Words& words)
{
    const std::string word = words.next("NETWORK");
    const Network network = parse_network(word);
    const Egress egress = next_egress(words);
    words.end();
    auto driver = shell.session().driver();
    require(network.net.ip6
                ? driver->delete_l3_route_by_subnet_ip6(
                      network.net.bytes.data(), network.mask.bytes.data(), egress.place, egress.lag)
                : driver->delete_l3_route_by_subnet_ip4(network.net.ip4, network.mask.ip4,
                                                        egress.place, egress.lag),
            words.command() + " " + word);
}

void find_route(Shell& shell, Words& words)
{
    const std::string word = words.next("NETWORK");
    const Network network = parse_network(word);
    const Egress egress = next_egress(words);
    words.end();
    unsigned char mac[6] = {};
    unsigned id = 0;
    unsigned next_hop = 0;
    auto driver = shell.session().driver();
    const bool found =
        network.net.ip6
            ? driver->get_l3_route_by_subnet_ip6(network.net.bytes.data(),
                                                 network.mask.bytes.data(), egress.place,
                                                 egress.lag, id, mac)
            : driver->get_l3_route_by_subnet_ip4(network.net.ip4, network.mask.ip4, egress.place,
                                                 egress.lag, mac, id, next_hop);
    if (!found) {
        throw BadInput("there is no route to " + word);
    }
    print_next_hop(shell, std::to_array(mac), id,
                   network.net.ip6 ? "" : "via        " + ip4_text(next_hop) + "\n");
}

constexpr Command kCommands[] = {
    {"l3 route add", "NETWORK MAC INTERFACE PORT|lag [LAG] [via ADDRESS]",
     "packets to a network (10.0.0.0/8, 2001:db8::/32, default) go to MAC, unless a longer prefix "
     "fits; via only notes the next hop's IPv4 address",
     add_route},
    {"l3 route find", "NETWORK PORT|lag [LAG]", "a route as the driver reads it", find_route},
    {"l3 route delete", "NETWORK PORT|lag [LAG]", "delete a route", delete_route},
    {"l3 route delete interface", "INTERFACE [others]",
     "delete the routes of an interface; with others: of all the others. Not where another "
     "interface has the IPv4 default route, which leads the driver astray",
     delete_routes},
    {"l3 route delete all", "", "delete all routes", delete_all<&Sdk::delete_l3_route_all>},
};

} // namespace

std::span<const Command> route_commands()
{
    return kCommands;
}

} // namespace vexosh
