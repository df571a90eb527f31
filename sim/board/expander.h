#pragma once

#include <array>
#include <cstdint>

namespace vexoboard {

/// A PCA9555: sixteen lines in two ports, eight registers in four pairs. Within a transfer the
/// register number alternates between the two registers of the pair it started in.
class Expander {
public:
    static constexpr unsigned register_count = 8;

    std::uint8_t read(unsigned reg) const;
    void write(unsigned reg, std::uint8_t value);

    /// The register that follows `reg` within one transfer.
    static constexpr unsigned next(unsigned reg) { return reg ^ 1U; }

    void set_inputs(unsigned port, std::uint8_t levels) { inputs_[port] = levels; }
    std::uint8_t lines(unsigned port) const;

private:
    std::array<std::uint8_t, 2> inputs_{0xFF, 0xFF};
    std::array<std::uint8_t, 2> output_{0xFF, 0xFF};
    std::array<std::uint8_t, 2> polarity_{0x00, 0x00};
    std::array<std::uint8_t, 2> configuration_{0xFF, 0xFF};
};

} // namespace vexoboard
