#pragma once

#include <cstdint>

/// A unit/slot/port triple: how the line-card manager names a port, a LAG or a VLAN in events and
/// in the interfaces of its own.
///
/// `slot` is the kind: 1 a physical port (`port` = user port + 1), 2 a LAG (`port` as the LAG
/// mapping assigned it), 3 a VLAN (`port` = VLAN id). Slot 0 and slots above 3 name nothing.
/// `unit` is 1 for every triple that the driver converts from an `Mp`.
class Usp {
public:
    constexpr Usp() = default;
    constexpr Usp(unsigned unit, unsigned slot, unsigned port)
        : unit_(unit), slot_(slot), port_(port)
    {
    }
    constexpr Usp(const Usp&) = default;
    Usp& operator=(const Usp&) = default;

    unsigned unit() { return unit_; }
    constexpr unsigned unit() const { return unit_; }
    unsigned slot() { return slot_; }
    constexpr unsigned slot() const { return slot_; }
    unsigned port() { return port_; }
    constexpr unsigned port() const { return port_; }

    void set_unit(unsigned unit) { unit_ = unit; }
    void set_slot(unsigned slot) { slot_ = slot; }
    void set_port(unsigned port) { port_ = port; }

    constexpr bool operator==(const Usp& other) const
    {
        return unit_ == other.unit_ && slot_ == other.slot_ && port_ == other.port_;
    }

private:
    uint32_t unit_ = 0;
    uint32_t slot_ = 0;
    uint32_t port_ = 0;
};
