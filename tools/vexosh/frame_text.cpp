#include <arpa/inet.h>

#include <algorithm>

#include "tools/vexosh/frame_words.h"

namespace vexosh {
namespace {

/// The rest of a frame, read from the front; reading past the end yields zeroes.
struct Reader {
    const Bytes& frame;
    std::size_t at = 0;

    unsigned u8() { return at < frame.size() ? frame[at++] : (++at, 0u); }
    unsigned u16()
    {
        const unsigned high = u8();
        return high << 8 | u8();
    }
    bool has(std::size_t count) const { return at + count <= frame.size(); }
    std::string address(int family)
    {
        std::uint8_t raw[16] = {};
        const std::size_t size = family == AF_INET ? 4 : 16;
        std::ranges::generate_n(raw, static_cast<std::ptrdiff_t>(size),
                                [this] { return static_cast<std::uint8_t>(u8()); });
        char result[INET6_ADDRSTRLEN];
        return inet_ntop(family, raw, result, sizeof result);
    }
};

std::string describe_arp(Reader reader)
{
    reader.at += 6;
    const unsigned operation = reader.u16();
    reader.at += 6;
    const std::string sender = reader.address(AF_INET);
    reader.at += 6;
    const std::string target = reader.address(AF_INET);
    return operation == 1 ? "ARP who has " + target + "? tell " + sender
                          : "ARP " + sender + " is here, to " + target;
}

std::string describe_tcp_flags(unsigned flags)
{
    std::string result;
    const std::pair<unsigned, const char*> names[] = {
        {2, " syn"}, {1, " fin"}, {4, " rst"}, {8, " push"}, {16, " ack"}};
    for (const auto& [bit, name] : names) {
        result += (flags & bit) != 0 ? name : "";
    }
    return result;
}

std::string describe_l4(Reader reader, unsigned protocol, const std::string& from,
                        const std::string& to)
{
    const std::string ends = from + " > " + to;
    if (protocol == 6 || protocol == 17) {
        const unsigned source = reader.u16();
        const unsigned destination = reader.u16();
        const std::string ports =
            from + ":" + std::to_string(source) + " > " + to + ":" + std::to_string(destination);
        if (protocol == 17) {
            return "UDP " + ports;
        }
        reader.at += 9;
        return "TCP " + ports + describe_tcp_flags(reader.u8());
    }
    if (protocol == 1 || protocol == 58) {
        const unsigned type = reader.u8();
        const bool request = type == 8 || type == 128;
        const bool reply = type == 0 || type == 129;
        const std::string kind = request ? " echo request " : reply ? " echo reply " : " ";
        const bool discovery = protocol == 58 && type >= 133 && type <= 137;
        return (protocol == 1 ? "ICMP" : "ICMPv6") + (discovery ? " neighbour discovery " : kind) +
               ends;
    }
    return (protocol == 2 ? "IGMP " : "IP protocol " + std::to_string(protocol) + " ") + ends;
}

std::string describe_ip4(Reader reader)
{
    const unsigned header = (reader.u8() & 0xf) * 4;
    const std::size_t start = reader.at - 1;
    reader.at = start + 9;
    const unsigned protocol = reader.u8();
    reader.at += 2;
    const std::string from = reader.address(AF_INET);
    const std::string to = reader.address(AF_INET);
    reader.at = start + header;
    return describe_l4(reader, protocol, from, to);
}

std::string describe_ip6(Reader reader)
{
    reader.at += 6;
    unsigned protocol = reader.u8();
    reader.at += 1;
    const std::string from = reader.address(AF_INET6);
    const std::string to = reader.address(AF_INET6);
    if (protocol == 0) { // hop-by-hop options
        protocol = reader.u8();
        reader.at += reader.u8() * 8 + 6;
    }
    return describe_l4(reader, protocol, from, to);
}

std::string describe_payload(Reader reader, unsigned type)
{
    char number[24];
    switch (type) {
    case 0x0806:
        return describe_arp(reader);
    case 0x0800:
        return describe_ip4(reader);
    case 0x86dd:
        return describe_ip6(reader);
    case 0x88cc:
        return "LLDP";
    case 0x8809:
        return "LACP";
    default:
        std::snprintf(number, sizeof number, type < 0x600 ? "802.3, %u bytes" : "EtherType 0x%04x",
                      type);
        return number;
    }
}

} // namespace

std::string describe_frame(const Bytes& frame)
{
    if (frame.size() < 14) {
        return "a piece of " + std::to_string(frame.size()) + " bytes";
    }
    Reader reader{frame, 12};
    std::string result;
    unsigned type = reader.u16();
    while (type == 0x8100 && reader.has(4)) {
        result += "vlan " + std::to_string(reader.u16() & 0xfff) + " ";
        type = reader.u16();
    }
    return result + describe_payload(reader, type);
}

} // namespace vexosh
