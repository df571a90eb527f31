#pragma once

#include <string>
#include <string_view>

#include "tools/vexosh/input.h"

/// Layer-3 addresses and networks in words.
namespace vexosh {

/// An IPv4 or IPv6 address.
struct Address {
    bool ip6 = false;
    std::uint32_t ip4 = 0;
    Ip6 bytes{};
};
Address parse_address(std::string_view word);

/// A network and its mask.
struct Network {
    Address net;
    Address mask;
};
/// ADDRESS/LENGTH, ADDRESS/MASK for IPv4, `default` for 0.0.0.0/0. Throws for bits of the address
/// that the mask does not cover, and for masks with holes.
Network parse_network(std::string_view word);

} // namespace vexosh
