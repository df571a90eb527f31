/// @file
/// The switch chip: all its tables as one value that can be copied, compared and reset.
#pragma once

#include <cstdint>
#include <string>

#include "sim/chip/counters.h"
#include "sim/chip/cpu_queues.h"
#include "sim/chip/field_table.h"
#include "sim/chip/flood_block.h"
#include "sim/chip/l3_forwarding_table.h"
#include "sim/chip/l3_interface_table.h"
#include "sim/chip/learn_limits.h"
#include "sim/chip/mac_table.h"
#include "sim/chip/mirror_table.h"
#include "sim/chip/port_table.h"
#include "sim/chip/rate_table.h"
#include "sim/chip/stg_table.h"
#include "sim/chip/switch_controls.h"
#include "sim/chip/trunk_table.h"
#include "sim/chip/vlan_rules.h"
#include "sim/chip/vlan_table.h"
#include "vexosim/drops.h"

namespace vexosim {

/// `Chip{}` is the chip after reset and initialisation. About 2.3 MB, most of it on the heap.
struct Chip {
    std::uint64_t now_us = 0; ///< the time; whoever owns the chip keeps it

    PortTable ports;
    FloodBlock flood_block;
    VlanTable vlans;
    VlanRules vlan_rules;
    StgTable stgs;
    MacTable macs;
    LearnLimits learn_limits;
    CpuQueues cpu;
    SwitchControls controls;
    TrunkTable trunks;
    MirrorTable mirrors;
    RateTable rates;
    FieldTable field;
    L3InterfaceTable l3_interfaces;
    L3HostTable l3_hosts;
    L3RouteTable l3_routes;
    CounterTable counters;
    DropCounters drops;

    Chip() = default;

    /// Empty when frames and copies balance, else a line that says what does not.
    std::string check_conservation() const;
    /// Of everything but the time.
    std::uint64_t digest() const;

    bool operator==(const Chip&) const = default;
};

} // namespace vexosim
