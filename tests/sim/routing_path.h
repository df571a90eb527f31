/// @file
/// Frames for the router, on a chip value. VLAN 10 has ports 1 and 2, untagged; VLAN 20 has port 3,
/// untagged, and port 4, tagged; VLAN 30 has ports 5, 6 and 7, untagged, of which 6 and 7 are trunk
/// 9. Interfaces 1, 2 and 3 are theirs. No MAC address is known, and the CPU is in none of them.
#pragma once

#include <bcm/rx.h>

#include <algorithm>
#include <initializer_list>

#include "tests/sim/path.h"

namespace vexosim {

inline constexpr MacAddress kRouter10 = 0x020000000a0a, kRouter20 = 0x020000000b0b,
                            kRouter30 = 0x020000000c0c, kNextHop = 0x00dd00000004;

constexpr std::uint32_t ip4(unsigned a, unsigned b, unsigned c, unsigned d)
{
    return a << 24 | b << 16 | c << 8 | d;
}
inline constexpr std::uint32_t kNear4 = ip4(10, 0, 10, 1), kFar4 = ip4(10, 0, 20, 1);

/// 2001:db8::first:...:last
inline IpAddress ip6(unsigned first, unsigned last)
{
    std::uint8_t bytes[16] = {0x20, 0x01, 0x0d, 0xb8};
    bytes[4] = static_cast<std::uint8_t>(first >> 8);
    bytes[5] = static_cast<std::uint8_t>(first);
    bytes[14] = static_cast<std::uint8_t>(last >> 8);
    bytes[15] = static_cast<std::uint8_t>(last);
    return IpAddress::from_ip6(bytes);
}

inline std::uint32_t load16(FrameView bytes, std::size_t at)
{
    return static_cast<std::uint32_t>(bytes[at]) << 8 | bytes[at + 1];
}
/// What the sum of an IPv4 header's words comes to, as far as they are there: 0xffff when its
/// checksum is right.
inline std::uint32_t header_sum(FrameView frame, std::size_t at = 14)
{
    std::uint32_t sum = 0;
    const std::size_t bytes = frame[at] & 15u;
    const std::size_t end = std::min(at + bytes * 4, frame.size() - 1);
    for (std::size_t i = at; i < end; i += 2)
        sum += load16(frame, i);
    while (sum > 0xffff)
        sum = (sum & 0xffff) + (sum >> 16);
    return sum;
}
/// With a right checksum.
inline Frame checked(Frame frame)
{
    frame[24] = frame[25] = 0;
    const std::uint32_t sum = ~header_sum(frame);
    frame[24] = static_cast<std::uint8_t>(sum >> 8);
    frame[25] = static_cast<std::uint8_t>(sum);
    return frame;
}
/// With one byte changed, and the IPv4 checksum as it was.
inline Frame with(Frame frame, std::size_t at, int value)
{
    frame[at] = static_cast<std::uint8_t>(value);
    return frame;
}

/// IPv4 from host A to the router of VLAN 10, 60 bytes unless it is to be longer.
inline Frame to_router4(std::uint32_t dst, int ttl = 64, std::uint32_t src = kNear4,
                        std::size_t bytes = 60)
{
    Frame frame = TestFrame(kRouter10, kHostA, bytes).ip(dst, src).bytes();
    frame[16] = static_cast<std::uint8_t>((bytes - 14) >> 8);
    frame[17] = static_cast<std::uint8_t>(bytes - 14);
    frame[22] = static_cast<std::uint8_t>(ttl);
    frame[23] = 17;
    return checked(frame);
}
/// IPv6, the same. The payload is 6 bytes, without a next header.
inline Frame to_router6(const IpAddress& dst, int hops = 64, const IpAddress& src = ip6(0x10, 1))
{
    Frame frame = TestFrame(kRouter10, kHostA, 60).type(0x86dd).bytes();
    frame[14] = 0x60;
    frame[19] = 6;
    frame[20] = 59;
    frame[21] = static_cast<std::uint8_t>(hops);
    std::copy(src.bytes.begin(), src.bytes.end(), frame.begin() + 22);
    std::copy(dst.bytes.begin(), dst.bytes.end(), frame.begin() + 38);
    return frame;
}

struct RoutingPath : testing::Test, Path {
    static constexpr int kTrunk = 9;

    RoutingPath()
    {
        only({});
        vlan(10, {}, {1, 2});
        vlan(20, {4}, {3});
        vlan(30, {}, {5, 6, 7});
        for (int port = 1; port <= 7; ++port)
            chip.ports.set_untagged_vlan(port, port <= 2 ? 10 : port <= 4 ? 20 : 30);
        chip.trunks.create_id(kTrunk);
        chip.trunks.set(kTrunk, {true, 3, {6, 7}, -1, -1, -1});
        interface(1, kRouter10, 10);
        interface(2, kRouter20, 20);
        interface(3, kRouter30, 30);
    }
    void interface(unsigned id, MacAddress mac, int vid)
    {
        ASSERT_EQ(chip.l3_interfaces.create_id({mac, vid, 0}, id, true), 0);
    }
    static NextHop hop(unsigned interface, int port, MacAddress mac = kNextHop)
    {
        return {interface, mac, false, port, 0};
    }
    static NextHop to_trunk(int id = kTrunk, unsigned interface = 3)
    {
        return {interface, kNextHop, true, id, 0};
    }
    void host(const IpAddress& address, const NextHop& hop)
    {
        ASSERT_EQ(chip.l3_hosts.add(address, {hop, true, false}, true), 0);
    }
    void host(std::uint32_t address, const NextHop& hop)
    {
        host(IpAddress::from_ip4(address), hop);
    }
    void route(const IpAddress& net, int length, const NextHop& hop)
    {
        ASSERT_EQ(chip.l3_routes.add({net.masked(length), length}, {hop, false}, true), 0);
    }
    void route(std::uint32_t net, int length, const NextHop& hop)
    {
        route(IpAddress::from_ip4(net), length, hop);
    }
    /// What leaves at a port when a frame arrives at port 1; empty when nothing does.
    Frame sent(FrameView arrives, int port)
    {
        send(1, arrives);
        const auto frames = outputs.frames(port);
        return frames.empty() ? Frame() : Frame(frames[0].begin(), frames[0].end());
    }
    /// Sends a frame in at port 1 and says why the CPU got it; "no" if it did not, or if anything
    /// left through a port.
    std::string cpu_reason(FrameView arrives)
    {
        if (send(1, arrives) != "cpu")
            return "no";
        return rx_reason_name(take().reason);
    }
    std::string trace(FrameView arrives) { return trace_frame(chip, cpu, 1, arrives, names).text; }
};

} // namespace vexosim
