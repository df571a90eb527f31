// Layer 3: interfaces and hosts.
#include "tools/vexosh/l3_verbs.h"

namespace vexosh {
namespace {

using Sdk = VexoSdkBase;

void add_interface(Shell& shell, Words& words)
{
    const Mac mac = parse_mac(words.next("MAC"));
    const unsigned vid = next_vid(words);
    const bool chosen = words.take("id");
    unsigned id = chosen ? next_interface(words) : 0;
    const bool replace = chosen && words.take("replace");
    words.end();
    auto driver = shell.session().driver();
    require(chosen ? driver->create_l3_interface_with_id(mac.data(), vid, id, replace)
                   : driver->create_l3_interface(mac.data(), vid, id),
            words.command() + " " + text(mac));
    shell.out() << "interface " << id << '\n';
}

void delete_interface(Shell& shell, Words& words)
{
    const std::string what = words.next("INTERFACE");
    const bool by_mac = what.find(':') != std::string::npos;
    const Mac mac = by_mac ? parse_mac(what) : Mac{};
    const unsigned number =
        by_mac ? next_vid(words)
               : static_cast<unsigned>(parse_number(what, "INTERFACE", 0, UINT32_MAX));
    words.end();
    auto driver = shell.session().driver();
    require(by_mac ? driver->delete_l3_interface(mac.data(), number)
                   : driver->delete_l3_interface_by_id(number),
            words.command() + " " + what);
}

void delete_hosts(Shell& shell, Words& words)
{
    const auto [id, others] = next_interfaces(words);
    require(shell.session().driver()->delete_l3_host_by_interface(id, !others),
            words.command() + " " + std::to_string(id));
}

void add_host(Shell& shell, Words& words)
{
    const std::string word = words.next("ADDRESS");
    const Address host = parse_address(word);
    const Mac mac = parse_mac(words.next("MAC"));
    const unsigned id = next_interface(words);
    const Egress egress = next_egress(words);
    words.end();
    auto driver = shell.session().driver();
    if (!host.ip6) {
        require(driver->add_l3_host_ip4(egress.place, egress.lag, host.ip4, mac.data(), id),
                words.command() + " " + word);
    } else if (!driver->add_l3_host_ip6(egress.place, egress.lag, host.bytes.data(), mac.data(),
                                        id)) {
        throw BadInput("l3 host add " + word + ": the driver refuses IPv6 hosts; a route to " +
                       word + "/128 does the same");
    }
}

void delete_host(Shell& shell, Words& words)
{
    const std::string word = words.next("ADDRESS");
    const Address host = parse_address(word);
    const Egress egress = next_egress(words);
    words.end();
    auto driver = shell.session().driver();
    require(host.ip6
                ? driver->delete_l3_host_by_addr_ip6(host.bytes.data(), egress.place, egress.lag)
                : driver->delete_l3_host_by_addr_ip4(host.ip4, egress.place, egress.lag),
            words.command() + " " + word);
}

/// The driver hands no mask on, so a prefix would promise what is not done.
void delete_network(Shell& shell, Words& words)
{
    const std::string word = words.next("ADDRESS");
    words.end();
    if (word.find('/') != std::string::npos) {
        throw BadInput(
            "bad address '" + word +
            "': the driver hands no prefix on and deletes the whole family; leave it out");
    }
    const Address net = parse_address(word);
    auto driver = shell.session().driver();
    require(net.ip6 ? driver->delete_l3_host_by_network_ip6(net.bytes.data())
                    : driver->delete_l3_host_by_network_ip4(net.ip4),
            words.command() + " " + word);
}

void find_host(Shell& shell, Words& words)
{
    const std::string word = words.next("ADDRESS");
    const Address host = parse_address(word);
    const Egress egress = next_egress(words);
    words.end();
    Mac mac{};
    unsigned id = 0;
    auto driver = shell.session().driver();
    const bool found =
        host.ip6
            ? driver->get_l3_host_ip6(host.bytes.data(), egress.place, mac.data(), id, egress.lag)
            : driver->get_l3_host_ip4(host.ip4, egress.place, mac.data(), id, egress.lag);
    if (!found) {
        throw BadInput("there is no host " + word);
    }
    print_next_hop(shell, mac, id, "");
}

template <auto Change>
void switch_host(Shell& shell, Words& words)
{
    const std::string word = words.next("ADDRESS");
    const std::uint32_t ip = parse_ip4(word);
    words.end();
    auto driver = shell.session().driver();
    require(((*driver).*Change)(ip), words.command() + " " + word);
}

constexpr Command kCommands[] = {
    {"l3 interface add", "MAC VID [id INTERFACE [replace]]",
     "frames to this address in this VLAN are routed; says the interface's id. One that exists "
     "stays as it is, unless its id is to be replaced",
     add_interface},
    {"l3 interface delete", "INTERFACE|MAC [VID]", "delete an interface, by its id or by MAC VID",
     delete_interface},
    {"l3 interface delete all", "", "delete all of them",
     delete_all<&Sdk::delete_l3_interface_all>},
    {"l3 host add", "ADDRESS MAC INTERFACE PORT|lag [LAG]",
     "packets to an address go to MAC, out of a port or LAG and as the interface. The driver "
     "refuses IPv6 hosts: a route to ADDRESS/128 does the same",
     add_host},
    {"l3 host find", "ADDRESS PORT|lag [LAG]", "a host as the driver reads it", find_host},
    {"l3 host delete", "ADDRESS PORT|lag [LAG]", "delete a host", delete_host},
    {"l3 host delete interface", "INTERFACE [others]",
     "delete the hosts of an interface; with others: of all the others", delete_hosts},
    {"l3 host delete network", "ADDRESS",
     "delete the hosts of a network: all of IPv4, or of IPv6, for the driver hands no mask on",
     delete_network},
    {"l3 host delete all", "", "delete all hosts", delete_all<&Sdk::delete_l3_host_all>},
    {"l3 host invalidate", "ADDRESS", "switch the entry of an IPv4 address off",
     switch_host<&Sdk::invalidate_l3_entry>},
    {"l3 host validate", "ADDRESS", "and on again", switch_host<&Sdk::validate_l3_entry>},
};

} // namespace

std::span<const Command> l3_commands()
{
    return kCommands;
}

} // namespace vexosh
