#include "sim/board/i2c_bus.h"

#include <algorithm>
#include <cerrno>

namespace vexoboard {

void I2cBus::note(int address, const char* verb, std::uint64_t reg)
{
    log += std::to_string(address) + ' ' + verb + ' ' + std::to_string(reg) + ':';
}

void I2cBus::note_byte(std::uint8_t value)
{
    constexpr char digits[] = "0123456789abcdef";
    log += ' ';
    log += digits[value >> 4];
    log += digits[value & 0xF];
}

int I2cBus::check(int address, std::uint64_t reg)
{
    if (address != expander_address) {
        log += " no answer\n";
        return -ENXIO;
    }
    if (reg >= Expander::register_count) {
        log += " no register\n";
        return -EIO;
    }
    return 0;
}

ssize_t I2cBus::read(int address, std::uint64_t reg, std::uint8_t* bytes, std::size_t count)
{
    note(address, "read", reg);
    if (const int error = check(address, reg); error != 0) {
        return error;
    }
    count = std::min(count, longest);
    auto at = static_cast<unsigned>(reg);
    for (std::size_t i = 0; i < count; ++i, at = Expander::next(at)) {
        bytes[i] = expander.read(at);
        note_byte(bytes[i]);
    }
    log += '\n';
    return static_cast<ssize_t>(count);
}

ssize_t I2cBus::write(int address, std::uint64_t reg, const std::uint8_t* bytes, std::size_t count)
{
    note(address, "write", reg);
    if (const int error = check(address, reg); error != 0) {
        return error;
    }
    count = std::min(count, longest);
    auto at = static_cast<unsigned>(reg);
    for (std::size_t i = 0; i < count; ++i, at = Expander::next(at)) {
        expander.write(at, bytes[i]);
        note_byte(bytes[i]);
    }
    log += '\n';
    return static_cast<ssize_t>(count);
}

} // namespace vexoboard
