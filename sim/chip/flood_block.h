/// @file
/// Which floods do not cross from one port to another.
#pragma once

#include <array>
#include <cstdint>

#include "sim/chip/digest.h"
#include "sim/chip/port_set.h"

namespace vexosim {

/// Kinds of flood, in the order of the BCM_PORT_FLOOD_BLOCK_* bits.
enum class FloodClass : std::uint8_t {
    kBroadcast,
    kUnknownUnicast,
    kKnownMulticast,
    kUnknownMulticast
};
inline constexpr std::size_t kFloodClasses = 4;

class FloodBlock {
public:
    /// `flags` is the whole set of BCM_PORT_FLOOD_BLOCK_* bits of the pair. PORT; PARAM: other
    /// bits.
    int set(int ingress, int egress, std::uint32_t flags);
    int get(int ingress, int egress, std::uint32_t& flags) const;

    /// Egress ports that floods of the class from `ingress` do not reach.
    PortSet blocked(int ingress, FloodClass kind) const
    {
        return blocked_[static_cast<std::size_t>(ingress)][static_cast<std::size_t>(kind)];
    }

    bool operator==(const FloodBlock&) const = default;
    void digest(Digest& d) const { d.add(blocked_); }

private:
    std::array<std::array<PortSet, kFloodClasses>, kPortCount> blocked_{};
};

} // namespace vexosim
