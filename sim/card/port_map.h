#pragma once

#include <array>
#include <atomic>
#include <cstddef>

#include "vexosim/card.h"

namespace vexosim {

/// Which logical and user port a chip-local port has. Written while the device is attached, read at
/// any time without a lock. A logical port is a fixed distance away from its chip-local port, so
/// that taking one numbering for the other shows.
class PortMap {
public:
    /// Chip-local port of a logical port, -1 when it names none.
    int chip_port(int lport) const
    {
        const int port = lport - kFirstLport;
        return is_chip_port(port) && row(port) != kNoLport ? port : -1;
    }
    /// Logical port of a chip-local port, -1 when it has none.
    int lport(int chip_port) const
    {
        return is_chip_port(chip_port) && row(chip_port) != kNoLport ? kFirstLport + chip_port : -1;
    }
    /// User port of a chip-local port, -1 when it has none.
    int user_port(int chip_port) const
    {
        return is_chip_port(chip_port) && row(chip_port) >= 0 ? row(chip_port) : -1;
    }
    /// Chip-local port of a user port, -1 when there is none.
    int chip_port_of_user(int user_port) const
    {
        if (!is_chip_port(user_port))
            return -1;
        const auto& stored = chip_port_of_[static_cast<std::size_t>(user_port)];
        return stored.load(std::memory_order_relaxed) - 1;
    }

    /// Whether any port has a logical port.
    bool any() const;

    /// Gives a chip-local port a logical port, and what the driver says its user port is.
    void create(int chip_port, int user_port);

    /// No port has a logical port any more.
    void clear();

    static bool is_chip_port(int port) { return port >= 0 && port < kPorts; }

private:
    static constexpr int kNoLport = -2;
    static constexpr int kNoUserPort = -1;

    int row(int chip_port) const
    {
        const auto& stored = stored_[static_cast<std::size_t>(chip_port)];
        return stored.load(std::memory_order_relaxed) + kNoLport;
    }

    std::array<std::atomic<int>, kPorts> stored_{};       // zero means kNoLport
    std::array<std::atomic<int>, kPorts> chip_port_of_{}; // by user port, one above; 0 is none
};

} // namespace vexosim
