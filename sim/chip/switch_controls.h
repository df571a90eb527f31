/// @file
/// Numbered settings of the chip, and those that a port has.
#pragma once

#include <array>

#include "sim/chip/digest.h"
#include "sim/chip/port_set.h"

namespace vexosim {

/// All 0 after reset. The chip acts on control 21 (unknown unicast to the CPU, 0 or 1) and keeps
/// the value of the others.
class SwitchControls {
public:
    static constexpr int kCount = 256;
    static constexpr int kUnknownUnicastToCpu = 21;

    /// PARAM: a control outside 0 to 255, a value that the control does not take.
    int set(int control, int value);
    int get(int control, int& value) const;
    /// Ports have control 21 only. PORT; PARAM.
    int set_port(int port, int control, int value);
    int get_port(int port, int control, int& value) const;

    /// Whether frames of unknown unicast destination that enter at `port` are copied to the CPU.
    bool unknown_unicast_to_cpu(int port) const
    {
        return values_[kUnknownUnicastToCpu] != 0 || unknown_unicast_ports_.test(port);
    }

    bool operator==(const SwitchControls&) const = default;
    void digest(Digest& d) const
    {
        d.add(values_);
        d.add(unknown_unicast_ports_);
    }

private:
    std::array<int, kCount> values_{};
    PortSet unknown_unicast_ports_;
};

} // namespace vexosim
