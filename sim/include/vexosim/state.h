/// @file
/// The card's state as tables of text, in user port numbers.
#pragma once

#include <string>
#include <vector>

namespace vexosim {

/// Texts in rows. The first column of a table says what the row is about.
struct TextTable {
    std::vector<std::string> columns;
    std::vector<std::vector<std::string>> rows;

    /// The column heads and the rows, in columns of equal width; numbers stand to the right. Cells
    /// are folded, behind commas and blanks if possible, so that lines are no longer than 80
    /// characters.
    std::string text() const;
};

/// One row for each port, by user port; the CPU port last.
TextTable ports_table();
/// One row for each VLAN.
TextTable vlans_table();
/// One row for each MAC entry, by VLAN and address.
TextTable fdb_table();
/// One row for each trunk: its id, criterion (1 to 6) and active members in their order.
TextTable lags_table();
/// VLANs of untagged frames by source address, source subnet and protocol.
TextTable vlan_rules_table();
/// One row for each state that ports have in a spanning-tree group: 1 to 255, and the ports.
TextTable spanning_tree_table();
/// What the SDK does not read back: whether a port's PAUSE was set by hand or is negotiated,
/// whether what it offers was chosen or is all it can do, and whether its short set of counters
/// counts.
TextTable port_history_table();
/// One row for each layer-3 interface, by id: its router MAC address and VLAN.
TextTable l3_interfaces_table();
/// One row for each host entry, IPv4 first: its next hop, egress ("7", "cpu" or "lag 3"), whether a
/// frame has found it ("hit"), and whether frames may ("valid").
TextTable l3_hosts_table();
/// One row for each route, IPv4 first: its network as in "10.0.0.0/8", the address of its next hop
/// ("-" if it was given none), and as for hosts.
TextTable l3_routes_table();
/// One row for each group of the field processor: its id, priority, number of entries, and the
/// fields that they may match.
TextTable field_groups_table();
/// One row for each entry of the field processor: its id, group, priority, state (`installed`;
/// `changed` since, so that frames still meet it as it was; `out` for one that they do not meet),
/// packets counted ("-" without a counter), and what it matches and does as last programmed.
TextTable field_entries_table();
/// Frames, octets and discards of the ports that have counted any.
TextTable counters_table();
/// The SDK's counters of one port by name, all 78 or those that are not 0, and the frames that left
/// by egress queue. Empty for a port that is none.
TextTable port_counters_table(int user_port, bool all = false);
/// Frames and copies that went nowhere, by reason; reasons that occurred only. The first rows say
/// how many frames came and were delivered.
TextTable drops_table();

/// A digest of the chip's whole state: equal before and after what changes nothing.
std::string state_digest();
/// Empty when every frame, and every copy, is accounted for; else what is not.
std::string check_conservation();

} // namespace vexosim
