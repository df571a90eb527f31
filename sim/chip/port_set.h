/// @file
/// A set of chip ports in one machine word.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace vexosim {

/// Ports of the chip: 0 is the CPU port, 1 to 53 are front ports.
inline constexpr int kPortCount = 54;
inline constexpr int kCpuPort = 0;

constexpr bool is_chip_port(int port)
{
    return port >= 0 && port < kPortCount;
}

/// Ports rise when iterated over. Members are 0 to 63.
class PortSet {
public:
    constexpr PortSet() = default;
    constexpr PortSet(std::initializer_list<int> ports)
    {
        for (int port : ports)
            set(port);
    }
    static constexpr PortSet from_bits(std::uint64_t bits)
    {
        PortSet s;
        s.bits_ = bits;
        return s;
    }
    /// Ports 0 to 53.
    static constexpr PortSet all() { return from_bits((std::uint64_t{1} << kPortCount) - 1); }
    /// Ports 1 to 53.
    static constexpr PortSet front() { return all() - PortSet{kCpuPort}; }

    constexpr std::uint64_t bits() const { return bits_; }
    constexpr bool test(int port) const { return (bits_ >> port & 1) != 0; }
    constexpr bool any() const { return bits_ != 0; }
    constexpr bool empty() const { return bits_ == 0; }
    constexpr int count() const { return std::popcount(bits_); }
    /// Whether every port of `other` is in this set.
    constexpr bool contains(PortSet other) const { return (other - *this).empty(); }

    constexpr void set(int port) { bits_ |= std::uint64_t{1} << port; }
    constexpr void reset(int port) { bits_ &= ~(std::uint64_t{1} << port); }
    constexpr void assign(int port, bool in)
    {
        if (in)
            set(port);
        else
            reset(port);
    }

    constexpr PortSet& operator|=(PortSet o) { return *this = *this | o; }
    constexpr PortSet& operator&=(PortSet o) { return *this = *this & o; }
    constexpr PortSet& operator-=(PortSet o) { return *this = *this - o; }
    friend constexpr PortSet operator|(PortSet a, PortSet b)
    {
        return from_bits(a.bits_ | b.bits_);
    }
    friend constexpr PortSet operator&(PortSet a, PortSet b)
    {
        return from_bits(a.bits_ & b.bits_);
    }
    /// Ports of `a` that are not in `b`.
    friend constexpr PortSet operator-(PortSet a, PortSet b)
    {
        return from_bits(a.bits_ & ~b.bits_);
    }
    friend constexpr bool operator==(PortSet, PortSet) = default;

    class Iterator {
    public:
        using value_type = int;
        using difference_type = std::ptrdiff_t;
        constexpr explicit Iterator(std::uint64_t bits) : bits_(bits) {}
        constexpr int operator*() const { return std::countr_zero(bits_); }
        constexpr Iterator& operator++()
        {
            bits_ &= bits_ - 1;
            return *this;
        }
        friend constexpr bool operator==(Iterator, Iterator) = default;

    private:
        std::uint64_t bits_;
    };
    constexpr Iterator begin() const { return Iterator(bits_); }
    constexpr Iterator end() const { return Iterator(0); }

private:
    std::uint64_t bits_ = 0;
};

} // namespace vexosim
