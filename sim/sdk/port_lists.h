#pragma once

#include <bcmx/lplist.h>

#include <optional>
#include <vector>

#include "sim/chip/port_set.h"

/// Port lists from the inside: what entry points do with them, unlogged and beyond faults.
namespace vexosim {

/// A list without storage.
bcmx_lplist_t empty_list();

/// As the SDK functions of the same names do. MEMORY; PARAM.
int make_list(bcmx_lplist_t* list, int room);
int free_list(bcmx_lplist_t* list);
int add_to_list(bcmx_lplist_t* list, bcmx_lport_t lport);
int remove_from_list(bcmx_lplist_t* list, bcmx_lport_t lport, bool all);

/// The chip-local ports of a list, in its order; nothing when one names no port.
std::optional<std::vector<int>> chip_ports(const bcmx_lplist_t& list);
/// The same as a set.
std::optional<PortSet> port_set(const bcmx_lplist_t& list);

/// Makes a list of the logical ports of chip-local ports. What `list` held is not looked at;
/// nothing is stored on failure. MEMORY; PARAM: null.
int make_list_of(bcmx_lplist_t* list, const std::vector<int>& ports);
int make_list_of(bcmx_lplist_t* list, PortSet ports);

} // namespace vexosim
