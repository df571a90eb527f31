/// @file
/// The device at the far end of a port's wire, as auto-negotiation sees it.
#pragma once

#include <cstdint>
#include <string>

namespace vexosim {

/// Abilities are bits of `bcm_port_ability_t`: 0x1 is 10 Mb/s, 0x2 is 100, 0x4 is 1000, 0x80 is
/// 10000; pause 0x1 sends, 0x2 obeys, 0x4 is asymmetric.
struct LinkPartner {
    bool autoneg = true; ///< false: it has one speed and duplex, whatever the port does
    std::uint32_t speed_half = 0;
    std::uint32_t speed_full = 0;
    std::uint32_t pause = 0;

    /// Negotiates about all speeds, in both duplexes, and PAUSE in both directions.
    static LinkPartner able();
    /// Does not negotiate. `speed` is in Mb/s: 10, 100, 1000 or 10000; another has no link.
    static LinkPartner fixed(int speed, bool full_duplex = true);

    bool operator==(const LinkPartner&) const = default;
};

/// Puts a device at the far end of a port's wire; link scan finds it there when it looks next.
/// Until then, and once the wire has been detached, the partner is one that can do what the port
/// can.
/// @return empty, or one line that says why not.
std::string set_partner(int user_port, const LinkPartner& partner);

} // namespace vexosim
