#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/types.h>

#include "sim/board/expander.h"

namespace vexoboard {

/// The bus with its one device. Transfers return the number of bytes moved, at most `longest`, or a
/// negative errno: ENXIO when no device answers at the address, EIO when the expander has no such
/// register.
class I2cBus {
public:
    static constexpr int expander_address = 7;
    static constexpr std::size_t longest = 8192;

    ssize_t read(int address, std::uint64_t reg, std::uint8_t* bytes, std::size_t count);
    ssize_t write(int address, std::uint64_t reg, const std::uint8_t* bytes, std::size_t count);

    Expander expander;
    std::string log;

private:
    void note(int address, const char* verb, std::uint64_t reg);
    int check(int address, std::uint64_t reg);
    void note_byte(std::uint8_t value);
};

} // namespace vexoboard
