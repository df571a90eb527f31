/// @file
/// The chip's tables as text.
#pragma once

#include "sim/chip/chip.h"
#include "sim/chip/port_names.h"
#include "vexosim/state.h"

namespace vexosim {

TextTable ports_table(const Chip& chip, const PortNames& names);
TextTable vlans_table(const Chip& chip, const PortNames& names);
TextTable fdb_table(const Chip& chip, const PortNames& names);
TextTable lags_table(const Chip& chip, const PortNames& names);
TextTable vlan_rules_table(const Chip& chip, const PortNames& names);
TextTable spanning_tree_table(const Chip& chip, const PortNames& names);
TextTable port_history_table(const Chip& chip, const PortNames& names);
TextTable l3_interfaces_table(const Chip& chip);
TextTable l3_hosts_table(const Chip& chip, const PortNames& names);
TextTable l3_routes_table(const Chip& chip, const PortNames& names);
TextTable field_groups_table(const Chip& chip);
TextTable field_entries_table(const Chip& chip, const PortNames& names);
TextTable counters_table(const Chip& chip, const PortNames& names);
TextTable port_counters_table(const Chip& chip, int chip_port, bool all = false);
TextTable drops_table(const Chip& chip);

} // namespace vexosim
