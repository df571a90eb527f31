#include "tests/kit/frames.h"

#include <algorithm>
#include <cstdio>

namespace vexokit {

namespace {

using vexosim::Frame;

constexpr std::size_t kMinBytes = 60;
constexpr std::size_t kTypeOffset = 12;

void put16(Frame& bytes, std::uint32_t value)
{
    bytes.push_back(static_cast<std::uint8_t>(value >> 8 & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
}

void put32(Frame& bytes, std::uint32_t value)
{
    put16(bytes, value >> 16);
    put16(bytes, value & 0xFFFF);
}

void put(Frame& bytes, const MacBytes& mac)
{
    bytes.insert(bytes.end(), mac.begin(), mac.end());
}

/// The Internet checksum of an even number of bytes.
std::uint16_t checksum(const Frame& bytes)
{
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        sum += static_cast<std::uint32_t>(bytes[i]) << 8 | bytes[i + 1];
    while (sum > 0xFFFF)
        sum = (sum & 0xFFFF) + (sum >> 16);
    return static_cast<std::uint16_t>(~sum);
}

void store16(Frame& bytes, std::size_t offset, std::uint16_t value)
{
    bytes[offset] = static_cast<std::uint8_t>(value >> 8);
    bytes[offset + 1] = static_cast<std::uint8_t>(value & 0xFF);
}

Frame ip_header(std::uint32_t from, std::uint32_t to, std::size_t payload)
{
    constexpr std::uint32_t kUdp = 17, kTtl = 64;
    Frame header;
    put16(header, 0x4500);
    put16(header, static_cast<std::uint32_t>(20 + payload));
    put32(header, 0x00010000); // identification 1, no fragment
    put16(header, kTtl << 8 | kUdp);
    put16(header, 0);
    put32(header, from);
    put32(header, to);
    store16(header, 10, checksum(header));
    return header;
}

Frame udp_datagram(std::uint32_t from, std::uint32_t to, std::size_t payload)
{
    const auto length = static_cast<std::uint32_t>(8 + payload);
    Frame datagram;
    put16(datagram, 1000);
    put16(datagram, 2000);
    put16(datagram, length);
    put16(datagram, 0);
    for (std::size_t i = 0; i < payload; ++i)
        datagram.push_back(static_cast<std::uint8_t>(i));
    Frame covered = datagram;
    put32(covered, from);
    put32(covered, to);
    put32(covered, 17u << 16 | length);
    covered.insert(covered.begin() + length, length % 2, 0);
    store16(datagram, 6, checksum(covered));
    return datagram;
}

TestFrame udp_to(const Host& from, const MacBytes& mac, std::uint32_t ip, std::size_t payload)
{
    const Frame datagram = udp_datagram(from.ip, ip, payload);
    Frame packet = ip_header(from.ip, ip, datagram.size());
    packet.insert(packet.end(), datagram.begin(), datagram.end());
    return ethernet(mac, from.mac, 0x0800, packet);
}

TestFrame arp_packet(const MacBytes& to_mac, std::uint32_t operation, const Host& from,
                     const MacBytes& target, std::uint32_t target_ip)
{
    Frame packet;
    put32(packet, 0x00010800); // Ethernet, IPv4
    put32(packet, 0x06040000u | operation);
    put(packet, from.mac);
    put32(packet, from.ip);
    put(packet, target);
    put32(packet, target_ip);
    return ethernet(to_mac, from.mac, 0x0806, packet);
}

} // namespace

TestFrame TestFrame::tagged(int vid, int priority) const
{
    Frame tag;
    put16(tag, 0x8100);
    put16(tag, static_cast<std::uint32_t>(priority << 13 | vid));
    Frame bytes = bytes_;
    bytes.insert(bytes.begin() + kTypeOffset, tag.begin(), tag.end());
    return TestFrame(bytes);
}

bool TestFrame::is_tagged() const
{
    return bytes_.size() >= kTypeOffset + 4 && bytes_[kTypeOffset] == 0x81 &&
           bytes_[kTypeOffset + 1] == 0x00;
}

TestFrame TestFrame::untagged() const
{
    Frame bytes = bytes_;
    if (is_tagged())
        bytes.erase(bytes.begin() + kTypeOffset, bytes.begin() + kTypeOffset + 4);
    return TestFrame(bytes);
}

TestFrame TestFrame::sized(std::size_t bytes) const
{
    Frame changed = bytes_;
    changed.resize(bytes);
    return TestFrame(changed);
}

TestFrame TestFrame::to(const MacBytes& mac) const
{
    Frame bytes = bytes_;
    std::copy(mac.begin(), mac.end(), bytes.begin());
    return TestFrame(bytes);
}

TestFrame TestFrame::from(const MacBytes& mac) const
{
    Frame bytes = bytes_;
    std::copy(mac.begin(), mac.end(), bytes.begin() + 6);
    return TestFrame(bytes);
}

TestFrame TestFrame::with(std::size_t offset, std::uint8_t value) const
{
    Frame bytes = bytes_;
    bytes.at(offset) = value;
    return TestFrame(bytes);
}

std::string describe(vexosim::FrameView frame)
{
    std::string text = std::to_string(frame.size()) + " bytes:";
    char byte[4];
    for (std::size_t i = 0; i < frame.size(); ++i) {
        std::snprintf(byte, sizeof byte, "%02x", static_cast<unsigned>(frame[i]));
        text += i % 16 == 0 && i != 0 ? "\n   " : i == 0 || i == 6 || i == 12 ? " " : "";
        text += byte;
    }
    return text;
}

std::ostream& operator<<(std::ostream& out, const TestFrame& frame)
{
    return out << describe(frame);
}

TestFrame raw(vexosim::Frame bytes)
{
    return TestFrame(std::move(bytes));
}

TestFrame ethernet(const MacBytes& to, const MacBytes& from, std::uint16_t ethertype,
                   const Frame& payload)
{
    Frame bytes;
    put(bytes, to);
    put(bytes, from);
    put16(bytes, ethertype);
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    bytes.resize(std::max(bytes.size(), kMinBytes));
    return TestFrame(bytes);
}

TestFrame udp(const Host& from, const Host& to, std::size_t payload_bytes)
{
    return udp_to(from, to.mac, to.ip, payload_bytes);
}

TestFrame multicast(const Host& from, std::uint32_t group)
{
    const auto byte = [group](int shift) { return static_cast<std::uint8_t>(group >> shift); };
    const auto high = static_cast<std::uint8_t>(byte(16) & 0x7F);
    return udp_to(from, {0x01, 0x00, 0x5e, high, byte(8), byte(0)}, group, 18);
}

TestFrame broadcast(const Host& from)
{
    return udp_to(from, broadcast_mac, 0xFFFFFFFFu, 18);
}

TestFrame arp(const Host& from, const Host& to)
{
    return arp_packet(broadcast_mac, 1, from, {}, to.ip);
}

TestFrame arp_reply(const Host& from, const Host& to)
{
    return arp_packet(to.mac, 2, from, to.mac, to.ip);
}

TestFrame bpdu(const Host& from)
{
    Frame payload = {0x42, 0x42, 0x03}; // LLC of the spanning-tree protocol
    payload.resize(38);
    return ethernet({0x01, 0x80, 0xc2, 0, 0, 0}, from.mac, 38, payload);
}

TestFrame lldp(const Host& from)
{
    const Frame payload = {0x02, 0x07, 0x04, 2,    0,    0, 0,   0, 1, 0x04,
                           0x02, 0x07, 0x31, 0x06, 0x02, 0, 120, 0, 0};
    return ethernet({0x01, 0x80, 0xc2, 0, 0, 0x0e}, from.mac, 0x88cc, payload);
}

} // namespace vexokit
