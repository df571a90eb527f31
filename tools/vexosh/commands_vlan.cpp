#include "tools/vexosh/verbs.h"

namespace vexosh {
namespace {

void create(Shell& shell, Words& words)
{
    const unsigned vid = parse_vid(words.next("VID"));
    words.end();
    require(shell.session().driver()->create_vlan(vid), "vlan create " + std::to_string(vid));
}

void remove(Shell& shell, Words& words)
{
    const unsigned vid = parse_vid(words.next("VID"));
    words.end();
    require(shell.session().driver()->delete_vlan(vid), "vlan delete " + std::to_string(vid));
}

void add_ports(Shell& shell, Words& words)
{
    const unsigned vid = parse_vid(words.next("VID"));
    std::list<Mp> tagged;
    std::list<Mp> untagged;
    if (words.empty()) {
        words.usage_error("missing tagged or untagged");
    }
    while (!words.empty()) {
        if (words.take("tagged")) {
            tagged.splice(tagged.end(), parse_ports(words.next("PORTS")));
        } else if (words.take("untagged")) {
            untagged.splice(untagged.end(), parse_ports(words.next("PORTS")));
        } else {
            words.end();
        }
    }
    require(shell.session().driver()->add_ports_to_vlan(vid, tagged, untagged),
            "vlan add " + std::to_string(vid));
}

void remove_ports(Shell& shell, Words& words)
{
    const unsigned vid = parse_vid(words.next("VID"));
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    words.end();
    require(shell.session().driver()->delete_ports_from_vlan(vid, ports),
            "vlan remove " + std::to_string(vid));
}

void access(Shell& shell, Words& words)
{
    const unsigned vid = parse_vid(words.next("VID"));
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    words.end();
    auto driver = shell.session().driver();
    require(driver->create_vlan(vid), "vlan access: create " + std::to_string(vid));
    if (vid != 1) {
        require(driver->delete_ports_from_vlan(1, ports), "vlan access: leave 1");
    }
    require(driver->add_ports_to_vlan(vid, {}, ports), "vlan access: join " + std::to_string(vid));
    for (const Mp& port : ports) {
        require(driver->set_port_vlan_pvid(port, vid), "vlan access: default of " + text(port));
    }
}

void cpu(Shell& shell, Words& words)
{
    const unsigned vid = next_vid(words);
    const bool in = words.take("in");
    if (!in && !words.take("out")) {
        words.usage_error("missing in or out");
    }
    words.end();
    auto driver = shell.session().driver();
    require(in ? driver->add_cpu_port_to_vlan(vid) : driver->delete_cpu_port_from_vlan(vid),
            "vlan cpu " + std::to_string(vid));
}

unsigned optional_priority(Words& words)
{
    const unsigned priority = words.empty() ? 0 : words.number("PRIORITY", 0, 7);
    words.end();
    return priority;
}

void by_mac(Shell& shell, Words& words)
{
    const Mac mac = parse_mac(words.next("MAC"));
    const unsigned vid = next_vid(words);
    const unsigned priority = optional_priority(words);
    require(shell.session().driver()->set_mac_vlan(mac.data(), vid, priority),
            "vlan mac " + text(mac));
}

unsigned mask_of(unsigned prefix)
{
    return prefix == 0 ? 0 : UINT32_MAX << (32 - prefix);
}

void by_subnet(Shell& shell, Words& words)
{
    const std::string subnet = words.next("ADDRESS/BITS");
    const std::size_t slash = subnet.find('/');
    if (slash == std::string::npos) {
        words.usage_error("'" + subnet + "' has no prefix length");
    }
    const std::string address = subnet.substr(0, slash);
    const bool ip6 = address.find(':') != std::string::npos;
    const auto bits = static_cast<unsigned>(
        parse_number(subnet.substr(slash + 1), "prefix length", 0, ip6 ? 128 : 32));
    const Ip6 net6 = ip6 ? parse_ip6(address) : Ip6{};
    const unsigned net4 = ip6 ? 0 : parse_ip4(address);
    const unsigned vid = next_vid(words);
    const unsigned priority = optional_priority(words);
    auto driver = shell.session().driver();
    require(ip6 ? driver->set_ipv6_subnet_vlan(net6.data(), bits, vid, priority)
                : driver->set_ipv4_subnet_vlan(net4, mask_of(bits), vid, priority),
            "vlan subnet " + subnet);
}

struct Protocol {
    frame_type_t frame;
    unsigned short type;
};

Protocol next_protocol(Words& words)
{
    const auto frame = next_enum<frame_type_t>(words, "frame type");
    return {frame, static_cast<unsigned short>(words.number("protocol type", 0, UINT16_MAX))};
}

void by_protocol(Shell& shell, Words& words)
{
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    const Protocol protocol = next_protocol(words);
    const unsigned vid = next_vid(words);
    words.end();
    each_port(shell, words, ports, [&](VexoSdkBase& sdk, const Mp& port) {
        return sdk.set_port_protocol_vlan(port, protocol.frame, protocol.type, vid);
    });
}

void no_protocol(Shell& shell, Words& words)
{
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    const bool all = words.take("all");
    const Protocol protocol = all ? Protocol{} : next_protocol(words);
    words.end();
    each_port(shell, words, ports, [&](VexoSdkBase& sdk, const Mp& port) {
        return all ? sdk.delete_port_protocol_vlan_all(port)
                   : sdk.delete_port_protocol_vlan(port, protocol.frame, protocol.type);
    });
}

constexpr Command kCommands[] = {
    {"vlan create", "VID", "create a VLAN, with the CPU in it", create},
    {"vlan delete", "VID", "delete a VLAN and its MAC entries", remove},
    {"vlan add", "VID tagged|untagged PORTS ...", "make ports members", add_ports},
    {"vlan remove", "VID PORTS", "take ports out of a VLAN", remove_ports},
    {"vlan access", "VID PORTS",
     "make ports access ports: out of VLAN 1, untagged in VID, VID their default", access},
    {"vlan cpu", "VID in|out", "the CPU port joins a VLAN, tagged, or leaves it", cpu},
    {"vlan mac", "MAC VID [PRIORITY]", "VLAN of untagged frames from an address", by_mac},
    {"vlan subnet", "ADDRESS/BITS VID [PRIORITY]",
     "VLAN of untagged frames from an IPv4 or IPv6 subnet", by_subnet},
    {"vlan protocol", "PORTS ethernet|802.3|snap TYPE VID", "VLAN of untagged frames of a protocol",
     by_protocol},
    {"vlan no-protocol", "PORTS all|ethernet|802.3|snap [TYPE]",
     "forget the VLAN of one protocol, or of all", no_protocol},
};

} // namespace

std::span<const Command> vlan_commands()
{
    return kCommands;
}

} // namespace vexosh
