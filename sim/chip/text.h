/// @file
/// How addresses are written.
#pragma once

#include <string>

#include "sim/chip/l3_types.h"
#include "sim/chip/mac_table.h"

namespace vexosim {

/// As in "00:11:22:aa:bb:cc".
std::string mac_text(MacAddress mac);
/// An IPv4 or IPv6 address, as in "192.0.2.1" and "2001:db8::1".
std::string ip4_text(const std::uint8_t* address);
std::string ip6_text(const std::uint8_t* address);
std::string ip_text(const IpAddress& address);
/// A network, as in "10.0.0.0/8".
std::string prefix_text(const IpPrefix& prefix);
/// The lowest digits of a number in hexadecimal.
std::string hex_text(std::uint64_t value, int digits);
/// "port 5", "the CPU" or "trunk 3", given the name of the entry's port.
std::string place_text(const MacEntry& entry, const std::string& port_name);

} // namespace vexosim
