#include "sim/sdk/l3_records.h"

#include "sim/card/card.h"

namespace vexosim {

IpAddress address_of(std::uint32_t flags, bcm_ip_t ip, const std::uint8_t* ip6)
{
    return (flags & BCM_L3_IP6) != 0 ? IpAddress::from_ip6(ip6) : IpAddress::from_ip4(ip);
}

std::uint32_t flags_of(const IpAddress& address, const NextHop& hop, bool hit)
{
    return (address.ip6 ? BCM_L3_IP6 : 0u) | (hop.on_trunk ? BCM_L3_TGID : 0u) |
           (hit ? BCM_L3_HIT : 0u);
}

int check_next_hop(const Chip& chip, std::uint32_t flags, bcmx_lport_t lport, bcm_trunk_t trunk,
                   NextHop& hop)
{
    constexpr std::uint32_t known = BCM_L3_REPLACE | BCM_L3_TGID | BCM_L3_IP6 | BCM_L3_HIT;
    if ((flags & ~known) != 0 || is_multicast(hop.mac))
        return BCM_E_PARAM;
    if (chip.l3_interfaces.find(hop.interface) == nullptr)
        return BCM_E_NOT_FOUND;
    hop.on_trunk = (flags & BCM_L3_TGID) != 0;
    hop.egress = hop.on_trunk ? trunk : card().ports.chip_port(lport);
    if (hop.on_trunk)
        return chip.trunks.check(trunk);
    return hop.egress >= 0 ? BCM_E_NONE : BCM_E_PORT;
}

void store_egress(const NextHop& hop, bcmx_lport_t& lport, bcm_trunk_t& trunk)
{
    lport = hop.on_trunk ? BCMX_LPORT_INVALID : card().ports.lport(hop.egress);
    trunk = hop.on_trunk ? hop.egress : -1;
}

bool is_meant(std::uint32_t flags, unsigned record_interface, unsigned interface)
{
    const bool others = (flags & BCM_L3_NEGATE) != 0;
    return (interface == record_interface) != others;
}

} // namespace vexosim
