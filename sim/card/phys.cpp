#include "sim/card/phys.h"

namespace vexosim {

Phys::Phys()
{
    for (Phy& phy : phys_) {
        phy.registers[0x00] = 0x1140; // auto-negotiation, 1000 Mb/s, full duplex
        phy.registers[0x10] = 0x0020; // all LEDs forced off
        phy.shadows[0x0D] = 0x0031;   // LEDs 1 and 2 as after reset
        phy.shadows[0x0E] = 0x0076;   // LEDs 3 and 4 as after reset
    }
}

std::uint8_t Phys::address_of(int chip_port)
{
    return static_cast<std::uint8_t>(kFirstAddress + chip_port);
}

bool Phys::answers(std::uint8_t address)
{
    return address > kFirstAddress && address < kFirstAddress + kPorts; // the CPU port has none
}

std::uint16_t Phys::read(std::uint8_t address, unsigned reg) const
{
    const Phy& phy = phys_[index(address)];
    if (reg != kWindow)
        return phy.registers[reg];
    return static_cast<std::uint16_t>(phy.selected << 10 | phy.shadows[phy.selected]);
}

void Phys::write(std::uint8_t address, unsigned reg, std::uint16_t value)
{
    Phy& phy = phys_[index(address)];
    if (reg != kWindow) {
        phy.registers[reg] = value;
        return;
    }
    phy.selected = value >> 10 & 0x1Fu;
    if ((value & 0x8000u) != 0)
        phy.shadows[phy.selected] = value & 0x3FFu;
}

std::uint16_t Phys::shadow(std::uint8_t address, unsigned selector) const
{
    return phys_[index(address)].shadows[selector & 0x1Fu];
}

} // namespace vexosim
