#include "sim/chip/counters.h"

#include <bcm/error.h>
#include <bcm/stat.h>

namespace vexosim {

namespace {

constexpr std::size_t kSmall = 0, k127 = 1, k255 = 2, k511 = 3, k1023 = 4, k1518 = 5, k1522 = 6,
                      k2047 = 7, k4095 = 8, k9216 = 9;

std::uint64_t interface_stat(const PortCounters& c, int counter)
{
    const FrameCounters &in = c.in, &out = c.out;
    switch (counter) {
    case snmpIfInOctets:
    case snmpIfHCInOctets:
        return in.octets;
    case snmpIfInUcastPkts:
    case snmpIfHCInUcastPkts:
        return in.cast[0];
    case snmpIfInNUcastPkts:
        return in.not_unicast();
    case snmpIfInMulticastPkts:
    case snmpIfHCInMulticastPkts:
        return in.cast[1];
    case snmpIfInBroadcastPkts:
    case snmpIfHCInBroadcastPkts:
        return in.cast[2];
    case snmpIfInDiscards:
        return c.in_discards;
    case snmpIfInErrors:
        return c.in_undersize + c.in_oversize;
    case snmpIfOutOctets:
    case snmpIfHCOutOctets:
        return out.octets;
    case snmpIfOutUcastPkts:
    case snmpIfHCOutUcastPkts:
        return out.cast[0];
    case snmpIfOutNUcastPkts:
        return out.not_unicast();
    case snmpIfHCOutMulticastPkts:
        return out.cast[1];
    case snmpIfHCOutBroadcastPkts:
        return out.cast[2];
    case snmpIfOutDiscards:
        return c.out_discards;
    default:
        return 0;
    }
}

/// These count both directions, and frames that are not good: they describe the cable.
std::uint64_t ether_stat(const PortCounters& c, int counter)
{
    const FrameCounters &in = c.in, &out = c.out;
    auto size = [&](std::size_t i) { return in.size[i] + out.size[i] + c.in_bad_size[i]; };
    switch (counter) {
    case snmpEtherStatsDropEvents:
        return c.in_drop_events;
    case snmpEtherStatsMulticastPkts:
        return in.cast[1] + out.cast[1];
    case snmpEtherStatsBroadcastPkts:
        return in.cast[2] + out.cast[2];
    case snmpEtherStatsUndersizePkts:
        return c.in_undersize;
    case snmpEtherStatsPkts64Octets:
        return size(kSmall);
    case snmpEtherStatsPkts65to127Octets:
        return size(k127);
    case snmpEtherStatsPkts128to255Octets:
        return size(k255);
    case snmpEtherStatsPkts256to511Octets:
        return size(k511);
    case snmpEtherStatsPkts512to1023Octets:
        return size(k1023);
    case snmpEtherStatsPkts1024to1518Octets:
        return size(k1518);
    case snmpEtherStatsPkts1519to1522Octets:
        return size(k1522);
    case snmpEtherStatsPkts1523to2047Octets:
        return size(k2047);
    case snmpEtherStatsPkts2048to4095Octets:
        return size(k4095);
    case snmpEtherStatsPkts4096to9216Octets:
        return size(k9216);
    case snmpEtherStatsOversizePkts:
        return c.in_oversize;
    case snmpEtherStatsOctets:
        return in.octets + out.octets + c.in_bad_octets;
    case snmpEtherStatsPkts:
        return in.frames() + out.frames() + c.in_undersize + c.in_oversize;
    case snmpEtherStatsTXNoErrors:
        return out.frames();
    case snmpEtherStatsRXNoErrors:
        return in.frames();
    default:
        return 0;
    }
}

std::uint64_t bridge_stat(const PortCounters& c, int counter)
{
    switch (counter) {
    case snmpDot1dBasePortMtuExceededDiscards:
        return c.out_too_long;
    case snmpDot1dTpPortInFrames:
        return c.in.frames();
    case snmpDot1dTpPortOutFrames:
        return c.out.frames();
    case snmpDot1dPortInDiscards:
        return c.in_discards;
    case snmpDot3StatsFrameTooLongs:
        return c.in_oversize;
    case snmpDot3ControlInUnknownOpcodes:
        return c.in_control;
    case snmpDot3InPauseFrames:
        return c.in_pause;
    default:
        return 0;
    }
}

/// IPv4 has no counter of addresses that are none to route: they are discards like others.
std::uint64_t ip_stat(const PortCounters& c, int counter)
{
    switch (counter) {
    case snmpIpInReceives:
        return c.in_ip4;
    case snmpIpInHdrErrors:
        return c.router4.in_header_errors;
    case snmpIpForwDatagrams:
        return c.router4.in_forwarded;
    case snmpIpInDiscards:
        return c.router4.in_address_errors + c.router4.in_discards;
    case ipv6IfStatsInReceives:
        return c.in_ip6;
    case ipv6IfStatsInHdrErrors:
        return c.router6.in_header_errors;
    case ipv6IfStatsInAddrErrors:
        return c.router6.in_address_errors;
    case ipv6IfStatsInDiscards:
        return c.router6.in_discards;
    case ipv6IfStatsOutForwDatagrams:
        return c.router6.out_forwarded;
    case ipv6IfStatsOutDiscards:
        return c.router6.out_discards;
    case ipv6IfStatsInMcastPkts:
        return c.in_ip6_multicast;
    case ipv6IfStatsOutMcastPkts:
        return c.out_ip6_multicast;
    default:
        return 0;
    }
}

} // namespace

void FrameCounters::digest(Digest& d) const
{
    d.add(octets);
    d.add(cast);
    d.add(size);
}

void RouterCounters::digest(Digest& d) const
{
    for (std::uint64_t value : {in_header_errors, in_address_errors, in_discards, in_forwarded,
                                out_forwarded, out_discards})
        d.add(value);
}

void PortCounters::digest(Digest& d) const
{
    d.add(in);
    d.add(out);
    d.add(out_queue);
    d.add(in_bad_size);
    for (std::uint64_t value : {in_discards, in_undersize, in_oversize, in_bad_octets, in_pause,
                                in_control, in_drop_events, out_discards, out_too_long, in_ip4,
                                in_ip6, in_ip6_multicast, out_ip6_multicast})
        d.add(value);
    d.add(router4);
    d.add(router6);
}

/// Each counter belongs to one of the groups; the others answer 0 for it.
std::uint64_t PortCounters::stat(int counter) const
{
    return interface_stat(*this, counter) + ether_stat(*this, counter) +
           bridge_stat(*this, counter) + ip_stat(*this, counter);
}

int CounterTable::get(int port, int counter, std::uint64_t& value) const
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (counter < 0 || counter >= snmpValCount)
        return BCM_E_PARAM;
    value = (*this)[port].stat(counter);
    return BCM_E_NONE;
}

CounterTable::Short CounterTable::running(int port) const
{
    static_assert(bcmPortStatIngressPackets == 0 && bcmPortStatIngressBytes == 1 &&
                  bcmPortStatEgressPackets == 2 && bcmPortStatEgressBytes == 3);
    const PortCounters& c = (*this)[port];
    return {c.in.frames(), c.in.octets, c.out.frames(), c.out.octets};
}

int CounterTable::get_short(int port, int counter, std::uint64_t& value) const
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (counter < 0 || counter >= bcmPortStatCount)
        return BCM_E_PARAM;
    auto p = static_cast<std::size_t>(port), i = static_cast<std::size_t>(counter);
    value = (stopped_.test(port) ? stopped_at_[p][i] : running(port)[i]) - missed_[p][i];
    return BCM_E_NONE;
}

int CounterTable::set_short_enable(int port, int enable)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (enable != 0 && enable != 1)
        return BCM_E_PARAM;
    if (stopped_.test(port) == (enable == 0))
        return BCM_E_NONE;
    auto p = static_cast<std::size_t>(port);
    Short now = running(port);
    for (std::size_t i = 0; enable == 1 && i < now.size(); ++i)
        missed_[p][i] += now[i] - stopped_at_[p][i];
    stopped_at_[p] = now;
    stopped_.assign(port, enable == 0);
    return BCM_E_NONE;
}

int CounterTable::clear(int port)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    (*this)[port] = PortCounters{};
    stopped_at_[static_cast<std::size_t>(port)] = {};
    missed_[static_cast<std::size_t>(port)] = {};
    return BCM_E_NONE;
}

void CounterTable::digest(Digest& d) const
{
    d.add(ports_);
    d.add(stopped_);
    d.add(stopped_at_);
    d.add(missed_);
}

} // namespace vexosim
