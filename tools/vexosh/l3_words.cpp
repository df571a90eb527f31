#include "tools/vexosh/l3_words.h"

#include <arpa/inet.h>

#include <algorithm>
#include <bit>

#include "tools/vexosh/flow_words.h"

namespace vexosh {
namespace {

[[noreturn]] void reject(std::string_view word, const std::string& why)
{
    throw BadInput("bad network '" + std::string(word) + "': " + why);
}

std::string ip6_text(const Ip6& ip)
{
    char result[INET6_ADDRSTRLEN] = {};
    inet_ntop(AF_INET6, ip.data(), result, sizeof result);
    return result;
}

Ip6 ip6_mask(std::int64_t length)
{
    Ip6 mask{};
    for (std::int64_t bit = 0; bit < length; ++bit) {
        std::uint8_t& byte = mask[static_cast<std::size_t>(bit / 8)];
        byte = static_cast<std::uint8_t>(byte | 0x80u >> bit % 8);
    }
    return mask;
}

Network ip4_network(std::string_view word)
{
    const MaskedIp ip = parse_masked_ip(word);
    if (std::popcount(ip.mask) != std::countl_one(ip.mask)) {
        reject(word, "the mask has holes");
    }
    if ((ip.address & ~ip.mask) != 0) {
        reject(word, "it has bits behind its prefix; " +
                         text(MaskedIp{ip.address & ip.mask, ip.mask}) + " is the network");
    }
    return {{false, ip.address, {}}, {false, ip.mask, {}}};
}

Network ip6_network(std::string_view word, std::size_t slash)
{
    const Ip6 net = parse_ip6(word.substr(0, slash));
    const auto length = parse_number(word.substr(slash + 1), "prefix length", 0, 128);
    const Ip6 mask = ip6_mask(length);
    Ip6 masked{};
    std::ranges::transform(net, mask, masked.begin(), [](unsigned a, unsigned b) {
        return static_cast<unsigned char>(a & b);
    });
    if (masked != net) {
        reject(word, "it has bits behind its prefix; " + ip6_text(masked) + "/" +
                         std::to_string(length) + " is the network");
    }
    return {{true, 0, net}, {true, 0, mask}};
}

} // namespace

Address parse_address(std::string_view word)
{
    if (word.find(':') != std::string_view::npos) {
        return {true, 0, parse_ip6(word)};
    }
    return {false, parse_ip4(word), {}};
}

Network parse_network(std::string_view word)
{
    if (word == "default") {
        return {};
    }
    const std::size_t slash = word.find('/');
    if (slash == std::string_view::npos) {
        reject(word, "a prefix like 10.0.0.0/8 or 2001:db8::/32 is wanted");
    }
    return word.find(':') == std::string_view::npos ? ip4_network(word) : ip6_network(word, slash);
}

} // namespace vexosh
