#include "tools/vexosh/shell.h"

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

constexpr Command kCommands[] = {
    {"vlan create", "VID", "create a VLAN, with the CPU in it", create},
    {"vlan delete", "VID", "delete a VLAN and its MAC entries", remove},
    {"vlan add", "VID tagged PORTS | untagged PORTS ...", "make ports members", add_ports},
    {"vlan remove", "VID PORTS", "take ports out of a VLAN", remove_ports},
    {"vlan access", "VID PORTS",
     "make ports access ports: out of VLAN 1, untagged in VID, VID their default", access},
};

} // namespace

std::span<const Command> vlan_commands()
{
    return kCommands;
}

} // namespace vexosh
