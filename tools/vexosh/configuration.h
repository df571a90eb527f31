#pragma once

#include <array>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "core/sdk_base.h"

/// A card's configuration, read from the driver and the chip, and as commands. Flows and traps are
/// not part of it: their numbers are history.
namespace vexosh {

using Lines = std::vector<std::string>;

inline constexpr std::size_t kPorts = 54; ///< user ports; the CPU's is the last
/// A word for each port; empty where there is nothing to set.
using PortWords = std::array<std::string, kPorts>;
using PortNumbers = std::array<unsigned, kPorts>;

/// A property of ports, and the command that sets it: % stands for ports, $ for the word.
struct PortSetting {
    std::string command;
    PortWords words;
};

struct Members {
    std::set<Mp> tagged, untagged;
};

struct Configuration {
    std::map<unsigned, Members> vlans;
    Lines of_switch;
    std::vector<PortSetting> ports;
    PortWords mirrors;                           ///< as in "to 8 both"
    std::array<PortNumbers, kPorts> blocks{};    ///< flood_block_type_t, by egress and ingress
    std::map<unsigned, PortWords> spanning_tree; ///< states by group
    Lines tables;                                ///< LAGs, limits, rules, entries
    Lines lost;                                  ///< what no command could make, as comments
};

/// Reads everything, with the driver held.
Configuration read_configuration(VexoSdkBase& sdk);

/// The commands that bring a card that is configured like `fresh` to `wanted`.
Lines commands_for(const Configuration& wanted, const Configuration& fresh);

// The pieces.
std::vector<PortSetting> read_port_settings(VexoSdkBase& sdk);
/// Entries of tables that a fresh card has none of, as the commands that make them.
void read_tables(VexoSdkBase& sdk, Configuration& configuration);

} // namespace vexosh
