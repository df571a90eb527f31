#pragma once

#include <cstdint>

/// A module/port pair: how callers of the driver name a front-panel port or the CPU port.
///
/// Module 0 holds user ports 0 to 48, module 2 user ports 49 to 52, module 3 the CPU port (53);
/// module 1 is never produced. `port` is the user port itself. Operations that act on a LAG or a
/// VLAN through an `Mp` read the trunk or VLAN id from `port`.
class Mp {
public:
    constexpr Mp() = default;
    constexpr Mp(unsigned module, unsigned port) : module_(module), port_(port) {}

    unsigned module() { return module_; }
    constexpr unsigned module() const { return module_; }
    unsigned port() { return port_; }
    constexpr unsigned port() const { return port_; }

    void set_module(unsigned module) { module_ = module; }
    void set_port(unsigned port) { port_ = port; }

    constexpr bool operator==(const Mp& other) const
    {
        return port_ == other.port_ && module_ == other.module_; // ports differ more often
    }

    /// Orders by module, then by port.
    constexpr bool operator<(const Mp& other) const
    {
        return module_ != other.module_ ? module_ < other.module_ : port_ < other.port_;
    }

private:
    uint32_t module_ = 0;
    uint32_t port_ = 0;
};
