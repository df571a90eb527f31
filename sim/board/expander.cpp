#include "sim/board/expander.h"

namespace vexoboard {

std::uint8_t Expander::lines(unsigned port) const
{
    const unsigned as_input = configuration_[port];
    return static_cast<std::uint8_t>((inputs_[port] & as_input) | (output_[port] & ~as_input));
}

std::uint8_t Expander::read(unsigned reg) const
{
    const unsigned port = reg % 2;
    switch (reg / 2) {
    case 0:
        return static_cast<std::uint8_t>(lines(port) ^ polarity_[port]);
    case 1:
        return output_[port]; // the flip-flop, not the line
    case 2:
        return polarity_[port];
    default:
        return configuration_[port];
    }
}

void Expander::write(unsigned reg, std::uint8_t value)
{
    const unsigned port = reg % 2;
    switch (reg / 2) {
    case 0:
        break; // the input port cannot be written
    case 1:
        output_[port] = value;
        break;
    case 2:
        polarity_[port] = value;
        break;
    default:
        configuration_[port] = value;
        break;
    }
}

} // namespace vexoboard
