// A configuration as commands.
#include "tools/vexosh/configuration.h"

#include <algorithm>

#include "tools/vexosh/port_at.h"
#include "tools/vexosh/port_reads.h"

namespace vexosh {
namespace {

/// The floods that a mirror keeps from its destination.
constexpr unsigned kMirrorBlocks =
    FLOOD_BLOCK_BROADCAST | FLOOD_BLOCK_UNKNOWN_UNICAST | FLOOD_BLOCK_KNOWN_MULTICAST;

std::string with_ports(std::string command, const std::list<Mp>& ports, const std::string& word)
{
    if (const std::size_t at = command.find('$'); at != std::string::npos) {
        command.replace(at, 1, word);
    }
    return command.replace(command.find('%'), 1, text(ports));
}

/// A command for each word that some ports are to have and do not have.
void add_setting(Lines& lines, const std::string& command, const PortWords& wanted,
                 const PortWords& present)
{
    std::vector<std::pair<std::string, std::list<Mp>>> ports_by_word;
    for (std::size_t port = 0; port < kPorts; ++port) {
        const std::string& word = wanted[port];
        if (word.empty() || word == present[port]) {
            continue;
        }
        auto group =
            std::ranges::find(ports_by_word, word, &decltype(ports_by_word)::value_type::first);
        if (group == ports_by_word.end()) {
            group = ports_by_word.insert(group, {word, {}});
        }
        group->second.push_back(port_at(port));
    }
    for (const auto& [word, ports] : ports_by_word) {
        lines.push_back(with_ports(command, ports, word));
    }
}

std::list<Mp> missing(const std::set<Mp>& wanted, const std::set<Mp>& present)
{
    std::list<Mp> ports;
    std::set_difference(wanted.begin(), wanted.end(), present.begin(), present.end(),
                        std::back_inserter(ports));
    return ports;
}

void add_members(Lines& lines, unsigned vid, const Members& wanted, const Members& present)
{
    const std::string vlan = std::to_string(vid);
    std::set<Mp> stay = wanted.tagged;
    stay.insert(wanted.untagged.begin(), wanted.untagged.end());
    std::list<Mp> leave = missing(present.tagged, stay);
    leave.splice(leave.end(), missing(present.untagged, stay));
    const std::list<Mp> tagged = missing(wanted.tagged, present.tagged);
    const std::list<Mp> untagged = missing(wanted.untagged, present.untagged);
    if (!leave.empty()) {
        lines.push_back("vlan remove " + vlan + " " + text(leave));
    }
    if (!tagged.empty() || !untagged.empty()) {
        lines.push_back("vlan add " + vlan + (tagged.empty() ? "" : " tagged " + text(tagged)) +
                        (untagged.empty() ? "" : " untagged " + text(untagged)));
    }
}

void add_vlans(Lines& lines, const Configuration& wanted, const Configuration& fresh)
{
    for (const auto& [vid, members] : fresh.vlans) {
        if (!wanted.vlans.contains(vid)) {
            lines.push_back("vlan delete " + std::to_string(vid));
        }
    }
    for (const auto& [vid, members] : wanted.vlans) {
        const auto present = fresh.vlans.find(vid);
        if (present == fresh.vlans.end()) {
            lines.push_back("vlan create " + std::to_string(vid));
        }
        add_members(lines, vid, members,
                    present == fresh.vlans.end() ? Members{{parse_port("cpu")}, {}}
                                                 : present->second);
    }
}

/// A mirror that is set keeps floods from its destination, so what is blocked comes after it.
void add_blocks(Lines& lines, const Configuration& wanted, const Configuration& fresh)
{
    auto present = fresh.blocks;
    for (std::size_t source = 0; source < kPorts; ++source) {
        if (wanted.mirrors[source] == fresh.mirrors[source]) {
            continue;
        }
        const auto to =
            static_cast<std::size_t>(parse_user_port(split_words(wanted.mirrors[source]).at(1)));
        for (std::size_t ingress = 0; ingress < kPorts - 1; ++ingress) {
            present[to][ingress] |= ingress == to ? 0 : kMirrorBlocks;
        }
    }
    const auto words = [](const PortNumbers& flags) {
        PortWords blocked;
        std::ranges::transform(flags, blocked.begin(), [](unsigned f) {
            std::string kinds = text(static_cast<flood_block_type_t>(f));
            std::erase(kinds, ',');
            return kinds.empty() ? "none" : kinds;
        });
        return blocked;
    };
    for (std::size_t egress = 0; egress < kPorts; ++egress) {
        if (wanted.blocks[egress] != present[egress]) {
            add_setting(lines, "port block % " + text(port_at(egress)) + " $",
                        words(wanted.blocks[egress]), words(present[egress]));
        }
    }
}

/// The state that a port was given in all groups at once: blocking, which none is given alone, or
/// else that of most groups.
std::string common_state(const std::map<unsigned, PortWords>& groups, std::size_t port)
{
    std::map<std::string, int> count;
    for (const auto& [group, states] : groups) {
        ++count[states[port]];
    }
    return count.contains("blocking") ? "blocking"
                                      : std::ranges::max_element(count, {}, [](const auto& one) {
                                            return one.second;
                                        })->first;
}

/// A state of the driver's groups.
PortWords group_words(PortWords states)
{
    for (std::string& state : states) {
        state = state == "listening" || state == "blocking" ? "discarding" : state;
    }
    return states;
}

void add_spanning_tree(Lines& lines, const Configuration& wanted, const Configuration& fresh)
{
    PortWords common;
    PortWords before;
    auto present = fresh.spanning_tree;
    for (std::size_t port = 0; port < kPorts; ++port) {
        common[port] = common_state(wanted.spanning_tree, port);
        before[port] = common_state(fresh.spanning_tree, port);
        for (auto& [group, states] : present) {
            states[port] = common[port] == before[port] ? states[port] : common[port];
        }
    }
    add_setting(lines, "stp port % $", common, before);
    for (const auto& [group, states] : wanted.spanning_tree) {
        if (states != present[group]) {
            add_setting(lines, "stp group " + std::to_string(group) + " % $", group_words(states),
                        group_words(present[group]));
        }
    }
}

void add_new(Lines& lines, const Lines& wanted, const Lines& present)
{
    std::ranges::copy_if(wanted, std::back_inserter(lines), [&](const std::string& line) {
        return std::ranges::find(present, line) == present.end();
    });
}

} // namespace

Lines commands_for(const Configuration& wanted, const Configuration& fresh)
{
    Lines lines = wanted.lost;
    add_vlans(lines, wanted, fresh);
    add_new(lines, wanted.of_switch, fresh.of_switch);
    for (std::size_t i = 0; i < wanted.ports.size(); ++i) {
        add_setting(lines, wanted.ports[i].command, wanted.ports[i].words, fresh.ports[i].words);
    }
    add_setting(lines, "mirror from % $", wanted.mirrors, fresh.mirrors);
    add_blocks(lines, wanted, fresh);
    add_spanning_tree(lines, wanted, fresh);
    add_new(lines, wanted.tables, fresh.tables);
    return lines;
}

} // namespace vexosh
