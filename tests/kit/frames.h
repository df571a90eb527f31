#pragma once

#include <array>
#include <cstdint>
#include <ostream>
#include <string>

#include "vexosim/frame.h"

namespace vexokit {

using MacBytes = std::array<std::uint8_t, 6>;

/// A station: its MAC address 02:00:00:00:00:NN and its IPv4 address 10.0.0.NN.
struct Host {
    MacBytes mac;
    std::uint32_t ip;
};

constexpr Host host(std::uint8_t n)
{
    return {{2, 0, 0, 0, 0, n}, 0x0A000000u | n};
}

inline constexpr Host host1 = host(1), host2 = host(2), host3 = host(3), host4 = host(4);
inline constexpr MacBytes broadcast_mac = {0xff, 0xff, 0xff, 0xff, 0xff, 0xff};

/// A frame for tests: its bytes without FCS, at least 60 of them. Each change makes a new frame.
class TestFrame {
public:
    explicit TestFrame(vexosim::Frame bytes) : bytes_(std::move(bytes)) {}

    /// With an 802.1Q tag in front of the EtherType, outside of tags that are there.
    TestFrame tagged(int vid, int priority = 0) const;
    /// Without its outermost tag, if it has one.
    TestFrame untagged() const;
    /// Cut, or filled with zeros, to this many bytes.
    TestFrame sized(std::size_t bytes) const;
    TestFrame to(const MacBytes& mac) const;
    TestFrame from(const MacBytes& mac) const;
    /// With one byte changed.
    TestFrame with(std::size_t offset, std::uint8_t value) const;

    bool is_tagged() const;
    const vexosim::Frame& bytes() const { return bytes_; }
    operator vexosim::FrameView() const { return bytes_; }
    bool operator==(const TestFrame&) const = default;

private:
    vexosim::Frame bytes_;
};

/// As bytes in hexadecimal, the headers apart.
std::string describe(vexosim::FrameView frame);
std::ostream& operator<<(std::ostream& out, const TestFrame& frame);

TestFrame raw(vexosim::Frame bytes);
/// Any Ethernet frame; the payload is filled with zeros to 60 bytes.
TestFrame ethernet(const MacBytes& to, const MacBytes& from, std::uint16_t ethertype,
                   const vexosim::Frame& payload = {});
/// UDP from port 1000 to port 2000, with right checksums.
TestFrame udp(const Host& from, const Host& to, std::size_t payload_bytes = 18);
/// UDP to a group address 224.x.y.z, and to its MAC address.
TestFrame multicast(const Host& from, std::uint32_t group = 0xE0010203u);
/// UDP to everyone.
TestFrame broadcast(const Host& from);
/// Who has `to`'s address? Tell `from`.
TestFrame arp(const Host& from, const Host& to);
/// The answer to arp(to, from).
TestFrame arp_reply(const Host& from, const Host& to);
/// A spanning-tree configuration frame.
TestFrame bpdu(const Host& from);
/// A link-layer discovery frame.
TestFrame lldp(const Host& from);

} // namespace vexokit
