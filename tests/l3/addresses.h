#pragma once

#include <array>

#include "tests/kit/kit.h"

using Mac = std::array<unsigned char, 6>;
using Ip6 = std::array<unsigned char, 16>;

inline constexpr Mac router = {0x02, 0x00, 0x00, 0x00, 0x00, 0x01};
inline constexpr Mac next_hop = {0x02, 0x00, 0x00, 0x00, 0x00, 0x09};

constexpr unsigned ip4(unsigned a, unsigned b, unsigned c, unsigned d)
{
    return a << 24 | b << 16 | c << 8 | d;
}

inline constexpr Ip6 host6 = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x07};
inline constexpr Ip6 net6 = {0x20, 0x01, 0x0d, 0xb8};
inline constexpr Ip6 mask6 = {0xff, 0xff, 0xff, 0xff};
