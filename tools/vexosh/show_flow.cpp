// Flows, traps and the field processor under them. The driver says which there are, their priority
// and counters; what they match and do is read from the card.
#include "flow/field_group.h"
#include "flow/flow_entry.h"
#include "flow/trap_filter.h"
#include "tools/vexosh/field_reads.h"
#include "tools/vexosh/flow_words.h"
#include "tools/vexosh/port_reads.h"

namespace vexosh {

namespace {

using Sdk = VexoSdkBase;
using vexosim::TextTable;

std::string flow_priority(Sdk& sdk, unsigned id)
{
    int priority = 0;
    return sdk.get_of_flow_priority(id, priority) ? std::to_string(priority) : kUnreadable;
}

template <class Count>
std::string flow_packets(Sdk& sdk, unsigned id, bool (Sdk::*get)(unsigned, Count&))
{
    Count count = 0;
    return (sdk.*get)(id, count) ? std::to_string(count) : kUnreadable;
}

void show_flows(Shell& shell, Words& words)
{
    words.end();
    TextTable table{{"flow", "priority", "packets", "state", "match", "actions"}, {}};
    auto driver = shell.session().driver();
    const FieldEntries entries;
    for (const auto& [id, entry] : fid_fe_map) {
        const FieldEntryText& text = entries[entry];
        table.rows.push_back({std::to_string(id), flow_priority(*driver, id),
                              flow_packets(*driver, id, &Sdk::get_of_flow_stat_counter64),
                              text.state, text.match, text.actions});
    }
    print(shell, table, "there are no flows");
}

void show_flow(Shell& shell, Words& words)
{
    const unsigned id = words.number("FLOW", 0, UINT32_MAX);
    words.end();
    const auto flow = fid_fe_map.find(id);
    if (flow == fid_fe_map.end()) {
        throw BadInput("there is no flow " + std::to_string(id));
    }
    auto driver = shell.session().driver();
    const FieldEntryText text = FieldEntries()[flow->second];
    const TextTable table{
        {"flow", std::to_string(id)},
        {{"entry", std::to_string(flow->second)},
         {"group", text.group},
         {"priority", flow_priority(*driver, id)},
         {"packets", flow_packets(*driver, id, &Sdk::get_of_flow_stat_counter64)},
         {"packets, 32 bits", flow_packets(*driver, id, &Sdk::get_of_flow_stat_counter32)},
         {"state", text.state},
         {"match", text.match},
         {"actions", text.actions}}};
    print_properties(shell, table);
}

/// The mask of an ARP trap, which the driver does not keep, from the bytes that its entry matches.
std::uint32_t target_mask(const std::string& match, std::uint32_t first_byte)
{
    std::uint32_t mask = 0;
    const std::vector<std::string> words = split_words(match);
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (words[i - 1] != "udf") {
            continue;
        }
        Arg<const of_flow_qualify_udf_s&> bytes;
        bytes.read(words[i], "udf");
        for (std::uint32_t at = 0; at < bytes.value.length; ++at) {
            const std::uint32_t byte = bytes.value.offset + at - first_byte;
            mask |= byte < 4 ? std::uint32_t{bytes.mask[at]} << (24 - 8 * byte) : 0;
        }
    }
    return mask;
}

using Filters = std::map<std::uint32_t, std::int32_t>;

template <class Key>
void add_traps(TextTable& table, const FieldEntries& entries, const char* kind,
               const Filters& filters, Key key_text)
{
    for (const auto& [key, entry] : filters) {
        const FieldEntryText& text = entries[entry];
        table.rows.push_back({kind, key_text(key, text), std::to_string(entry), text.state,
                              text.match, text.actions});
    }
}

template <std::uint32_t FirstByte>
std::string target_text(std::uint32_t key, const FieldEntryText& entry)
{
    return text(MaskedIp{key, target_mask(entry.match, FirstByte)});
}

std::string number_text(std::uint32_t key, const FieldEntryText&)
{
    return std::to_string(key);
}

void show_traps(Shell& shell, Words& words)
{
    words.end();
    TextTable table{{"trap", "for", "entry", "state", "match", "actions"}, {}};
    const auto driver = shell.session().driver();
    const FieldEntries entries;
    add_traps(table, entries, "arp", arp_fps, target_text<38>);
    add_traps(table, entries, "arp, tagged", arp_fps_one_vlan, target_text<42>);
    add_traps(table, entries, "protocol", ip_proto_fps, number_text);
    add_traps(table, entries, "l4-port", l4_dport_fps, number_text);
    print(shell, table, "there are no traps");
}

/// Who has made a group.
std::string group_owner(const std::string& group)
{
    const int id = std::stoi(group);
    const bool of_traps = id == filter_group_no_udf || (id == arp_group && arp_group != -1) ||
                          (id == arp_group_one_vlan && arp_group_one_vlan != -1);
    const bool of_flows =
        std::ranges::any_of(fg_list, [id](const FieldGroupNode& node) { return node.id() == id; });
    return of_traps ? "traps" : of_flows ? "flows" : "-";
}

void show_field_groups(Shell& shell, Words& words)
{
    words.end();
    TextTable table{{"group", "for", "priority", "entries", "fields"}, {}};
    const auto driver = shell.session().driver();
    for (const auto& row : vexosim::field_groups_table().rows) {
        table.rows.push_back({row[0], group_owner(row[0]), row[1], row[2], row[3]});
    }
    print(shell, table, "there are no field groups");
}

/// The flow or filter behind each entry.
std::map<int, std::string> entry_owners()
{
    std::map<int, std::string> owners;
    for (const Filters* filters : {&arp_fps, &arp_fps_one_vlan, &ip_proto_fps, &l4_dport_fps}) {
        for (const auto& [key, entry] : *filters) {
            owners[entry] = "trap";
        }
    }
    for (const auto& [id, entry] : fid_fe_map) {
        owners[entry] = "flow " + std::to_string(id);
    }
    return owners;
}

void show_field_entries(Shell& shell, Words& words)
{
    words.end();
    TextTable table{{"entry", "group", "for", "state", "match", "actions"}, {}};
    const auto driver = shell.session().driver();
    std::map<int, std::string> owners = entry_owners();
    for (const auto& [entry, text] : FieldEntries()) {
        const std::string& owner = owners[entry];
        table.rows.push_back({std::to_string(entry), text.group, owner.empty() ? "-" : owner,
                              text.state, text.match, text.actions});
    }
    print(shell, table, "there are no field entries");
}

constexpr Command kCommands[] = {
    {"show flows", "",
     "flows; `changed` is one that frames still meet as it was, until it changes again",
     show_flows},
    {"show flow", "FLOW", "one of them, with its place in the chip", show_flow},
    {"show traps", "", "what is handed to the CPU", show_traps},
    {"show field-groups", "", "groups of field entries: whose they are, what they may match",
     show_field_groups},
    {"show field-entries", "",
     "all field entries of the chip, also such as a failure left behind, which are nobody's",
     show_field_entries},
};

} // namespace

std::span<const Command> show_flow_commands()
{
    return kCommands;
}

} // namespace vexosh
