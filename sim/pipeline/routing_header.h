/// @file
/// What a router looks at of an IP header.
#pragma once

#include "sim/chip/l3_types.h"
#include "vexosim/frame.h"

namespace vexosim {

struct RoutingHeader {
    IpAddress src, dst;
    int hops = 0;         ///< TTL or hop limit
    bool options = false; ///< of IPv4, or IPv6's for every hop

    /// Why it is none that a router may forward, in words; null when it is one.
    const char* fault = nullptr;
};

/// Reads the header at the start of `ip`. With a fault, nothing else of it counts.
RoutingHeader read_ip4_header(FrameView ip);
RoutingHeader read_ip6_header(FrameView ip);

/// Of the link that it is on alone: 169.254.0.0/16, fe80::/10.
bool is_link_local(const IpAddress& address);
/// No station's address that others could be told of: "this network" and the unspecified address,
/// loopback, groups, 240.0.0.0/4 with the broadcast.
bool is_martian(const IpAddress& address);

} // namespace vexosim
