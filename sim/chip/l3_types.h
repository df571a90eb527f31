/// @file
/// What the layer-3 tables are made of.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <tuple>

#include "sim/chip/digest.h"
#include "sim/chip/mac_table.h"

namespace vexosim {

/// IPv4 or IPv6; bytes as on the wire. An IPv4 address has four, the others are 0.
struct IpAddress {
    bool ip6 = false;
    std::array<std::uint8_t, 16> bytes{};

    static IpAddress from_ip4(std::uint32_t ip);
    static IpAddress from_ip6(const std::uint8_t* ip6);
    std::uint32_t ip4() const;
    /// The first and the last 64 bits.
    std::uint64_t high() const { return load(0); }
    std::uint64_t low() const { return load(8); }

    /// The address with only its first `length` bits.
    IpAddress masked(int length) const;

    bool operator==(const IpAddress&) const = default;
    bool operator<(const IpAddress& other) const
    {
        return std::tie(ip6, bytes) < std::tie(other.ip6, other.bytes);
    }
    void digest(Digest& d) const
    {
        d.add(ip6);
        d.add(bytes);
    }

private:
    std::uint64_t load(std::size_t at) const
    {
        std::uint64_t value = 0;
        for (std::size_t i = at; i < at + 8; ++i)
            value = value << 8 | bytes[i];
        return value;
    }
};

/// Number of leading ones of a mask given as an address, or -1 when it has holes.
int prefix_length(const IpAddress& mask);

/// A network: an address without host bits, and the length of its mask.
struct IpPrefix {
    IpAddress net;
    int length = 0;

    bool contains(const IpAddress& address) const { return address.masked(length) == net; }

    bool operator==(const IpPrefix&) const = default;
    bool operator<(const IpPrefix& other) const
    {
        return std::tie(net, length) < std::tie(other.net, other.length);
    }
    void digest(Digest& d) const
    {
        d.add(net);
        d.add(length);
    }
};

struct IpHash {
    std::uint64_t operator()(const IpAddress& address) const;
    std::uint64_t operator()(const IpPrefix& prefix) const;
};

/// Where packets to a host or network go.
struct NextHop {
    unsigned interface = 0;
    MacAddress mac = 0;
    bool on_trunk = false;
    int egress = 0;        ///< a chip-local port, or a trunk's id
    std::uint32_t ip4 = 0; ///< of a route's next hop, for those who ask

    bool operator==(const NextHop&) const = default;
    void digest(Digest& d) const;
};

} // namespace vexosim
