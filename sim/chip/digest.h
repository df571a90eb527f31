/// @file
/// A 64-bit digest of values, the same on every machine.
#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <type_traits>

#include "sim/chip/port_set.h"

namespace vexosim {

class Digest {
public:
    template <class T>
    requires std::integral<T> || std::is_enum_v<T>
    void add(T value)
    {
        state_ = mix(state_ ^ static_cast<std::uint64_t>(value)) + 0x9e3779b97f4a7c15u;
    }
    void add(PortSet ports) { add(ports.bits()); }
    template <class T, std::size_t N>
    void add(const std::array<T, N>& values)
    {
        for (const T& value : values)
            add(value);
    }
    template <class T>
    requires requires(const T& t, Digest& d) { t.digest(d); }
    void add(const T& value) { value.digest(*this); }
    std::uint64_t value() const { return state_; }

    static constexpr std::uint64_t mix(std::uint64_t x)
    {
        x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9u;
        x = (x ^ (x >> 27)) * 0x94d049bb133111ebu;
        return x ^ (x >> 31);
    }

private:
    std::uint64_t state_ = 0;
};

} // namespace vexosim
