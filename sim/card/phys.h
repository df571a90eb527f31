#pragma once

#include <array>
#include <cstdint>

#include "vexosim/card.h"

namespace vexosim {

/// The ports' PHYs on the MII management bus. Register 0x1C is a window: a write without bit 15
/// selects one of 32 shadow registers (bits 14 to 10) to be read, one with bit 15 also writes its
/// low 10 bits.
class Phys {
public:
    static constexpr unsigned kRegisters = 32;
    static constexpr unsigned kWindow = 0x1C;

    Phys();

    static std::uint8_t address_of(int chip_port);
    static bool answers(std::uint8_t address);

    std::uint16_t read(std::uint8_t address, unsigned reg) const;
    void write(std::uint8_t address, unsigned reg, std::uint16_t value);
    std::uint16_t shadow(std::uint8_t address, unsigned selector) const;

private:
    struct Phy {
        std::array<std::uint16_t, kRegisters> registers{};
        std::array<std::uint16_t, 32> shadows{};
        unsigned selected = 0;
    };

    // Addresses start above 0, so that an address is never mistaken for a port.
    static constexpr int kFirstAddress = 64;
    static std::size_t index(std::uint8_t address) { return address - std::size_t{kFirstAddress}; }

    std::array<Phy, kPorts> phys_;
};

} // namespace vexosim
