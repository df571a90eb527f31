/// @file
/// What kind of card is simulated. To be set before the card is brought up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vexosim {

/// A device on the card's bus. Only unit 0 has a switch behind it.
struct BusDevice {
    static constexpr std::uint16_t kSwitchId = 0x5654;
    std::uint16_t id = kSwitchId; ///< the SDK supports no other
    std::uint8_t revision = 1;
    bool registers_mapped = true; ///< false: base address 0, reached through read and write only
    bool answers = true;          ///< false: nothing answers at the base address
};

struct Profile {
    std::vector<BusDevice> devices{1};
    int bus_create_result = 0; ///< of `linux_bde_create`
    /// Operations that the bus driver may lack.
    bool bus_sflush = true, bus_sinval = true, bus_l2p = true, bus_p2l = true;

    bool l2_shadow = true;       ///< an L2 table shadow is kept by software
    bool learn_limits = true;    ///< learning limits exist
    bool led_ram_at_160 = false; ///< LED RAM for port data starts at 160, not 128

    /// Capacities of the chip's tables.
    std::size_t macs = 32768;
    std::size_t trunks = 128;
    std::size_t l3_hosts = 8192;
    std::size_t l3_routes = 16384;
    std::size_t l3_interfaces = 512;
    std::size_t field_groups = 16;
    std::size_t field_entries = 16384;
    std::size_t udfs = 93;
};

/// @return false, and nothing changed, when the card has been brought up already.
bool set_profile(const Profile& profile);
const Profile& profile();

} // namespace vexosim
