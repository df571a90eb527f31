#include "sim/chip/text.h"

#include <arpa/inet.h>

namespace vexosim {

std::string mac_text(MacAddress mac)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (int shift = 40; shift >= 0; shift -= 8) {
        text += kDigits[mac >> (shift + 4) & 15];
        text += kDigits[mac >> shift & 15];
        if (shift > 0)
            text += ':';
    }
    return text;
}

std::string ip4_text(const std::uint8_t* address)
{
    char text[INET_ADDRSTRLEN] = {};
    return ::inet_ntop(AF_INET, address, text, sizeof text);
}

std::string ip6_text(const std::uint8_t* address)
{
    char text[INET6_ADDRSTRLEN] = {};
    return ::inet_ntop(AF_INET6, address, text, sizeof text);
}

std::string ip_text(const IpAddress& address)
{
    return (address.ip6 ? ip6_text : ip4_text)(address.bytes.data());
}

std::string prefix_text(const IpPrefix& prefix)
{
    return ip_text(prefix.net) + "/" + std::to_string(prefix.length);
}

std::string hex_text(std::uint64_t value, int digits)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text(static_cast<std::size_t>(digits), '0');
    for (std::size_t i = text.size(); i-- > 0; value >>= 4)
        text[i] = kDigits[value & 15];
    return text;
}

std::string place_text(const MacEntry& entry, const std::string& port_name)
{
    if (entry.on_trunk())
        return "trunk " + std::to_string(entry.trunk);
    return entry.port == kCpuPort ? "the CPU" : "port " + port_name;
}

} // namespace vexosim
