/// @file
/// How ports are called when people read about them.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "sim/chip/port_set.h"

namespace vexosim {

/// The user port of each chip port, -1 where there is none.
class PortNames {
public:
    /// Before the ports have user ports, chip ports name themselves.
    PortNames();
    void set(int chip_port, int user_port)
    {
        user_[static_cast<std::size_t>(chip_port)] = user_port;
    }
    int user(int chip_port) const { return user_[static_cast<std::size_t>(chip_port)]; }
    /// "cpu", the user port's number, or "chip:5" for a port without one.
    std::string name(int chip_port) const;
    /// Chip ports by user port, those without one behind them, the CPU port last.
    std::vector<int> in_order() const;
    /// The ports' names by user port, as in "1-4,7"; "none" for no port.
    std::string names(PortSet ports) const;

private:
    std::array<int, kPortCount> user_;
};

} // namespace vexosim
