#include "sim/pipeline/routing_header.h"

namespace vexosim {

namespace {

constexpr std::size_t kIp4Bytes = 20, kIp6Bytes = 40;
constexpr int kHopByHop = 0; ///< IPv6's next header

std::uint32_t load16(const std::uint8_t* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) << 8 | bytes[1];
}

std::uint32_t load32(const std::uint8_t* bytes)
{
    return load16(bytes) << 16 | load16(bytes + 2);
}

bool has_right_checksum(FrameView header)
{
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < header.size(); i += 2)
        sum += load16(&header[i]);
    return (sum & 0xffff) + (sum >> 16) == 0xffff; // 30 words: a second carry never comes to that
}

const char* ip4_fault(FrameView ip)
{
    if (ip.size() < kIp4Bytes)
        return "shorter than an IPv4 header";
    const std::size_t header = static_cast<std::size_t>(ip[0] & 15) * 4, total = load16(&ip[2]);
    if (ip[0] >> 4 != 4)
        return "not of version 4";
    if (header < kIp4Bytes || header > total)
        return "a bad header length";
    if (total > ip.size())
        return "shorter than its total length";
    return has_right_checksum(ip.first(header)) ? nullptr : "a bad header checksum";
}

const char* ip6_fault(FrameView ip)
{
    if (ip.size() < kIp6Bytes)
        return "shorter than an IPv6 header";
    if (ip[0] >> 4 != 6)
        return "not of version 6";
    return load16(&ip[4]) > ip.size() - kIp6Bytes ? "shorter than its payload length" : nullptr;
}

} // namespace

RoutingHeader read_ip4_header(FrameView ip)
{
    RoutingHeader h;
    h.fault = ip4_fault(ip);
    if (h.fault != nullptr)
        return h;
    h.src = IpAddress::from_ip4(load32(&ip[12]));
    h.dst = IpAddress::from_ip4(load32(&ip[16]));
    h.hops = ip[8];
    h.options = (ip[0] & 15) > 5;
    return h;
}

RoutingHeader read_ip6_header(FrameView ip)
{
    RoutingHeader h;
    h.fault = ip6_fault(ip);
    if (h.fault != nullptr)
        return h;
    h.src = IpAddress::from_ip6(&ip[8]);
    h.dst = IpAddress::from_ip6(&ip[24]);
    h.hops = ip[7];
    h.options = ip[6] == kHopByHop;
    return h;
}

bool is_link_local(const IpAddress& address)
{
    const auto& b = address.bytes;
    return address.ip6 ? b[0] == 0xfe && (b[1] & 0xc0) == 0x80 : b[0] == 169 && b[1] == 254;
}

bool is_martian(const IpAddress& address)
{
    const int first = address.bytes[0];
    if (address.ip6) // :: and ::1 among them
        return first == 0xff || (address.high() == 0 && address.low() <= 1);
    return first == 0 || first == 127 || first >= 224;
}

} // namespace vexosim
