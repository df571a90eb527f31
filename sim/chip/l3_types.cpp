#include "sim/chip/l3_types.h"

#include <algorithm>

namespace vexosim {

IpAddress IpAddress::from_ip4(std::uint32_t ip)
{
    IpAddress address;
    for (std::size_t i = 0; i < 4; ++i)
        address.bytes[i] = static_cast<std::uint8_t>(ip >> (24 - 8 * i));
    return address;
}

IpAddress IpAddress::from_ip6(const std::uint8_t* ip6)
{
    IpAddress address;
    address.ip6 = true;
    std::copy_n(ip6, address.bytes.size(), address.bytes.begin());
    return address;
}

std::uint32_t IpAddress::ip4() const
{
    std::uint32_t ip = 0;
    for (std::size_t i = 0; i < 4; ++i)
        ip = ip << 8 | bytes[i];
    return ip;
}

IpAddress IpAddress::masked(int length) const
{
    IpAddress net = *this;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const int kept = std::clamp(length - 8 * static_cast<int>(i), 0, 8);
        net.bytes[i] = static_cast<std::uint8_t>(bytes[i] & (0xff00 >> kept));
    }
    return net;
}

int prefix_length(const IpAddress& mask)
{
    int length = 0;
    for (std::uint8_t byte : mask.bytes)
        length += std::countl_one(byte);
    IpAddress ones;
    ones.ip6 = mask.ip6;
    ones.bytes.fill(0xff);
    return ones.masked(length) == mask ? length : -1;
}

std::uint64_t IpHash::operator()(const IpAddress& address) const
{
    const std::uint64_t low = (address.low() + (address.ip6 ? 1 : 0)) * 0x9e3779b97f4a7c15u;
    return Digest::mix(address.high() ^ (low ^ low >> 32));
}

std::uint64_t IpHash::operator()(const IpPrefix& prefix) const
{
    const auto length = static_cast<std::uint64_t>(prefix.length);
    return (*this)(prefix.net) + length * 0xff51afd7ed558ccdu;
}

void NextHop::digest(Digest& d) const
{
    d.add(interface);
    d.add(mac);
    d.add(on_trunk);
    d.add(egress);
    d.add(ip4);
}

} // namespace vexosim
