#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vexosim {

/// The chip's register space: 32-bit words, in the CPU's byte order when they are mapped. The
/// driver may write mapped registers at any time, so every access is volatile.
class Registers {
public:
    static constexpr std::uint32_t kBytes = 0x4000;

    std::uint32_t read(std::uint32_t byte_offset) const
    {
        return byte_offset < kBytes ? words_[byte_offset / 4] : 0;
    }
    /// @return false outside of the space.
    bool write(std::uint32_t byte_offset, std::uint32_t value)
    {
        if (byte_offset >= kBytes)
            return false;
        words_[byte_offset / 4] = value;
        return true;
    }
    /// Where the words are.
    std::uintptr_t base() const { return reinterpret_cast<std::uintptr_t>(words_); }

    std::vector<std::uint8_t> led_program; ///< what the LED processor runs

private:
    volatile std::uint32_t words_[kBytes / 4] = {};
};

} // namespace vexosim
