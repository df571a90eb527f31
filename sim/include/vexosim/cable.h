/// @file
/// What happens to the cable between a port and the far end of its wire: it is pulled, it flaps, it
/// loses and delays frames. A new wire has a new cable. Frames that are given to receive(), and
/// replayed files, come in behind it.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vexosim {

/// Pulls a port's cable, or plugs it in: both ends lose the link, and get it back. It no longer
/// flaps.
/// @return empty, or one line that says why not; so do the other functions.
std::string plug_cable(int user_port, bool plugged);

/// A cable that is pulled now, for half of each period, and plugged in for the other half.
/// @param period at least a millisecond.
std::string flap_cable(int user_port, std::chrono::microseconds period);

/// What a cable does to the frames of a direction. Those that it loses depend on nothing but the
/// seed, port, direction and how many came before since this was set.
struct Impairment {
    double loss_percent = 0; ///< 0 to 100
    std::chrono::microseconds delay{0};
    std::uint64_t seed = 1;
    bool operator==(const Impairment&) const = default;
};

enum class CableWay : std::uint8_t {
    in, ///< from the far end to the port
    out
};

/// Sets what a cable does to frames of a direction; the default is nothing. Frames that are on
/// their way arrive when they would have.
std::string impair_cable(int user_port, CableWay way, const Impairment& impairment);

/// One direction of a cable.
struct CableLane {
    Impairment impairment;
    std::uint64_t lost = 0;  ///< since the impairment was set
    std::size_t waiting = 0; ///< delayed frames that are on their way
};
struct CableStatus {
    int user_port = 0;
    bool plugged = true;
    std::chrono::microseconds flap_period{0}; ///< 0: does not flap
    CableLane in, out;
};
/// The cables with which something is wrong, by port.
std::vector<CableStatus> impaired_cables();

} // namespace vexosim
