#include "tools/vexosh/frame_words.h"

#include <algorithm>
#include <map>

namespace vexosh {
namespace {

constexpr std::size_t kShortestFrame = 60;
constexpr std::uint8_t kIcmp = 1, kTcp = 6, kUdp = 17, kIcmp6 = 58;

using Words = std::map<std::string, std::string, std::less<>>;

void put8(Bytes& bytes, unsigned value)
{
    bytes.push_back(static_cast<std::uint8_t>(value));
}

void put16(Bytes& bytes, unsigned value)
{
    put8(bytes, value >> 8);
    put8(bytes, value & 0xff);
}

void put32(Bytes& bytes, std::uint32_t value)
{
    put16(bytes, value >> 16);
    put16(bytes, value & 0xffff);
}

template <class Range>
void put(Bytes& bytes, const Range& range)
{
    bytes.insert(bytes.end(), std::begin(range), std::end(range));
}

unsigned checksum(const Bytes& bytes, std::uint32_t sum = 0)
{
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        sum += bytes[i] * 256u + (i + 1 < bytes.size() ? bytes[i + 1] : 0u);
    }
    while (sum > 0xffff) {
        sum = (sum & 0xffff) + (sum >> 16);
    }
    return ~sum & 0xffff;
}

/// Splits A>B.
std::pair<std::string, std::string> both_ends(const std::string& name, const std::string& value)
{
    const std::size_t arrow = value.find('>');
    if (arrow == std::string::npos) {
        throw BadInput("bad " + name + " '" + value + "': FROM>TO is wanted");
    }
    return {value.substr(0, arrow), value.substr(arrow + 1)};
}

unsigned l4_port(std::string_view word)
{
    return static_cast<unsigned>(parse_number(word, "L4 port", 0, 65535));
}

struct Segment {
    std::uint8_t protocol = 253; // for experiments
    Bytes bytes;
    std::size_t checksum_at = 0; // 0: none
};

Segment l4_segment(const Words& words, const Bytes& data, bool ip6)
{
    Segment segment;
    if (const auto udp = words.find("udp"); udp != words.end()) {
        const auto [from, to] = both_ends("udp", udp->second);
        segment = {kUdp, {}, 6};
        put16(segment.bytes, l4_port(from));
        put16(segment.bytes, l4_port(to));
        put16(segment.bytes, static_cast<unsigned>(8 + data.size()));
        put16(segment.bytes, 0);
    } else if (const auto tcp = words.find("tcp"); tcp != words.end()) {
        const auto [from, to] = both_ends("tcp", tcp->second);
        segment = {kTcp, {}, 16};
        put16(segment.bytes, l4_port(from));
        put16(segment.bytes, l4_port(to));
        put(segment.bytes, Bytes{0, 0, 0, 1, 0, 0, 0, 0, 0x50, 0x02, 0x40, 0, 0, 0, 0, 0});
    } else if (words.contains("icmp")) {
        segment = {ip6 ? kIcmp6 : kIcmp, {}, 2};
        put(segment.bytes, Bytes{std::uint8_t(ip6 ? 128 : 8), 0, 0, 0, 0, 1, 0, 1});
    }
    put(segment.bytes, data);
    return segment;
}

void finish_checksum(Segment& segment, const Bytes& pseudo_header)
{
    if (segment.checksum_at == 0) {
        return;
    }
    const unsigned sum =
        checksum(segment.bytes, segment.protocol == kIcmp ? 0 : ~checksum(pseudo_header) & 0xffff);
    segment.bytes[segment.checksum_at] = static_cast<std::uint8_t>(sum >> 8);
    segment.bytes[segment.checksum_at + 1] = static_cast<std::uint8_t>(sum);
}

void put_ip4(Bytes& frame, const std::string& from, const std::string& to, Segment segment)
{
    Bytes addresses;
    put32(addresses, parse_ip4(from));
    put32(addresses, parse_ip4(to));
    Bytes pseudo = addresses;
    put16(pseudo, segment.protocol);
    put16(pseudo, static_cast<unsigned>(segment.bytes.size()));
    finish_checksum(segment, pseudo);

    Bytes header{0x45, 0};
    put16(header, static_cast<unsigned>(20 + segment.bytes.size()));
    put(header, Bytes{0, 1, 0, 0, 64, segment.protocol});
    put16(header, 0);
    put(header, addresses);
    const unsigned sum = checksum(header);
    header[10] = static_cast<std::uint8_t>(sum >> 8);
    header[11] = static_cast<std::uint8_t>(sum);
    put16(frame, 0x0800);
    put(frame, header);
    put(frame, segment.bytes);
}

void put_ip6(Bytes& frame, const std::string& from, const std::string& to, Segment segment)
{
    Bytes addresses;
    put(addresses, parse_ip6(from));
    put(addresses, parse_ip6(to));
    Bytes pseudo = addresses;
    put32(pseudo, static_cast<std::uint32_t>(segment.bytes.size()));
    put32(pseudo, segment.protocol);
    finish_checksum(segment, pseudo);

    put16(frame, 0x86dd);
    put32(frame, 0x60000000);
    put16(frame, static_cast<unsigned>(segment.bytes.size()));
    put(frame, Bytes{segment.protocol, 64});
    put(frame, addresses);
    put(frame, segment.bytes);
}

void put_arp(Bytes& frame, const Mac& sender, const std::string& value)
{
    const auto [from, to] = both_ends("arp", value);
    put16(frame, 0x0806);
    put(frame, Bytes{0, 1, 8, 0, 6, 4, 0, 1});
    put(frame, sender);
    put32(frame, parse_ip4(from));
    put(frame, Mac{});
    put32(frame, parse_ip4(to));
}

void put_tag(Bytes& frame, const Words& words, const char* name)
{
    const auto vid = words.find(name);
    if (vid == words.end()) {
        return;
    }
    const auto prio = words.find("prio");
    const auto priority = prio == words.end() ? 0 : parse_number(prio->second, "priority", 0, 7);
    put16(frame, 0x8100);
    put16(frame,
          static_cast<unsigned>(priority << 13 | parse_number(vid->second, "VLAN", 0, 4095)));
}

void put_payload(Bytes& frame, const Words& words, const Mac& source)
{
    const auto data_word = words.find("data");
    const Bytes data = data_word == words.end() ? Bytes{} : parse_hex(data_word->second);
    if (const auto arp = words.find("arp"); arp != words.end()) {
        put_arp(frame, source, arp->second);
    } else if (const auto ip = words.find("ip"); ip != words.end()) {
        const auto [from, to] = both_ends("ip", ip->second);
        const bool ip6 = from.find(':') != std::string::npos;
        (ip6 ? put_ip6 : put_ip4)(frame, from, to, l4_segment(words, data, ip6));
    } else {
        const auto type = words.find("type");
        put16(frame, type == words.end() ? 0x88b5 // for local experiments
                                         : static_cast<unsigned>(
                                               parse_number(type->second, "EtherType", 0, 65535)));
        put(frame, data);
    }
}

Words name_values(const std::vector<std::string>& words)
{
    static const char* const names[] = {"src", "dst", "vlan", "prio", "inner", "arp", "ip",
                                        "udp", "tcp", "icmp", "type", "data",  "len"};
    Words result;
    for (const std::string& word : words) {
        const std::size_t equals = word.find('=');
        const std::string name = word.substr(0, equals);
        if (std::ranges::find(names, name) == std::end(names)) {
            throw BadInput("unknown word '" + word + "' in a frame; try " + kFrameUsage);
        }
        if (equals == std::string::npos && name != "icmp") {
            throw BadInput("'" + name + "' wants a value, as in " + name + "=...");
        }
        if (!result.emplace(name, equals == std::string::npos ? "" : word.substr(equals + 1))
                 .second) {
            throw BadInput("'" + name + "' stands twice in a frame");
        }
    }
    return result;
}

Mac mac_or(const Words& words, const char* name, const char* otherwise)
{
    const auto found = words.find(name);
    return parse_mac(found == words.end() ? otherwise : found->second);
}

} // namespace

const char* const kFrameUsage = "src=MAC dst=MAC vlan=VID prio=N inner=VID "
                                "arp=A>B|ip=A>B [udp=S>D|tcp=S>D|icmp]|type=N data=HEX len=N, "
                                "or hex:BYTES";

Bytes frame_from_words(const std::vector<std::string>& words)
{
    if (words.empty()) {
        throw BadInput(std::string("a frame is wanted: ") + kFrameUsage);
    }
    if (words.size() == 1 && words[0].starts_with("hex:")) {
        return parse_hex(std::string_view(words[0]).substr(4));
    }
    const Words values = name_values(words);
    const Mac source = mac_or(values, "src", "02:00:00:00:00:01");
    Bytes frame;
    put(frame, mac_or(values, "dst", "ff:ff:ff:ff:ff:ff"));
    put(frame, source);
    put_tag(frame, values, "vlan");
    put_tag(frame, values, "inner");
    put_payload(frame, values, source);
    const auto length = values.find("len");
    frame.resize(length == values.end()
                     ? std::max(frame.size(), kShortestFrame)
                     : static_cast<std::size_t>(parse_number(length->second, "length", 0, 16384)));
    return frame;
}

} // namespace vexosh
