// What ports count of the packets that come for the router, and of those that leave as its.
#include <bcm/stat.h>

#include <map>

#include "tests/sim/routing_path.h"

namespace vexosim {
namespace {

using Values = std::map<std::string, std::uint64_t>;

/// Everything has a way out through port 5.
struct RoutingCounters : RoutingPath {
    const Frame good4 = to_router4(kFar4), good6 = to_router6(ip6(0x20, 1));

    RoutingCounters()
    {
        route(0, 0, hop(3, 5));
        route(ip6(0, 0), 0, hop(3, 5));
    }
    /// The counters of routers, but for those that are 0.
    Values of(int port) const
    {
        Values values;
        for (const int counter :
             {snmpIpInHdrErrors, snmpIpForwDatagrams, snmpIpInDiscards, ipv6IfStatsInHdrErrors,
              ipv6IfStatsInAddrErrors, ipv6IfStatsInDiscards, ipv6IfStatsOutForwDatagrams,
              ipv6IfStatsOutDiscards}) {
            std::uint64_t value = 0;
            EXPECT_EQ(chip.counters.get(port, counter, value), 0);
            if (value != 0)
                values[stat_name(counter)] = value;
        }
        return values;
    }
};

TEST_F(RoutingCounters, Ip4CountsWhatIsSentOnWhereItCameInAndIp6WhereItLeaves)
{
    for (const Frame& frame : {good4, good4, good6})
        EXPECT_EQ(send(1, frame), "5");
    EXPECT_EQ(of(1), (Values{{"snmpIpForwDatagrams", 2}}));
    EXPECT_EQ(of(5), (Values{{"ipv6IfStatsOutForwDatagrams", 1}}));
}

TEST_F(RoutingCounters, BadHeadersAndHopsThatAreUsedUpAreHeaderErrors)
{
    for (const Frame& frame :
         {with(good4, 25, good4[25] ^ 1), to_router4(kFar4, 1), to_router6(ip6(0x20, 1), 1),
          with(good6, 14, 0x50), to_router6(ip6(0x20, 1), 0)})
        EXPECT_EQ(send(1, frame), "cpu");
    EXPECT_EQ(of(1), (Values{{"snmpIpInHdrErrors", 2}, {"ipv6IfStatsInHdrErrors", 3}}));
}

TEST_F(RoutingCounters, WhatTheCpuGetsWithNothingWrongIsNotCounted)
{
    EXPECT_EQ(send(1, checked(with(good4, 14, 0x46))), "cpu") << "options";
    EXPECT_EQ(send(1, with(good6, 20, 0)), "cpu") << "options";
    host(kFar4, hop(1, kCpuPort));
    EXPECT_EQ(send(1, good4), "cpu");
    chip.l3_routes.erase({ip6(0, 0).masked(0), 0});
    EXPECT_EQ(send(1, good6), "cpu") << "no route";
    EXPECT_EQ(of(1), Values{});
}

TEST_F(RoutingCounters, AddressesThatAreNoneToRouteAreErrorsOfIp6AndDiscardsOfIp4)
{
    EXPECT_EQ(send(1, to_router4(ip4(127, 0, 0, 1))), "drop:l3_martian");
    EXPECT_EQ(send(1, to_router4(kFar4, 64, ip4(169, 254, 1, 1))), "drop:l3_martian");
    EXPECT_EQ(send(1, to_router6(IpAddress{})), "drop:l3_martian");
    const std::uint8_t of_the_link[16] = {0xfe, 0x80};
    EXPECT_EQ(send(1, to_router6(ip6(0x20, 1), 64, IpAddress::from_ip6(of_the_link))),
              "drop:l3_martian");
    EXPECT_EQ(of(1), (Values{{"snmpIpInDiscards", 2}, {"ipv6IfStatsInAddrErrors", 2}}));
}

TEST_F(RoutingCounters, WhatGetsNowhereIsDiscardedWhereItCameIn)
{
    chip.ports.set_link(5, false);
    EXPECT_EQ(send(1, good4), "drop:egress_down");
    chip.l3_interfaces.destroy(3);
    EXPECT_EQ(send(1, good4), "drop:l3_interface_gone");
    EXPECT_EQ(send(1, good6), "drop:l3_interface_gone");
    EXPECT_EQ(of(1), (Values{{"snmpIpInDiscards", 2}, {"ipv6IfStatsInDiscards", 1}}));
}

TEST_F(RoutingCounters, WhatTheCpuHasNoRoomForIsDiscarded)
{
    host(kFar4, hop(1, kCpuPort));
    for (std::size_t i = 0; i < CpuReceive::kQueueDepth + 3; ++i)
        send(1, good4);
    EXPECT_EQ(of(1), (Values{{"snmpIpInDiscards", 3}}));
}

TEST_F(RoutingCounters, WhatIsTooLongForItsPortIsDiscardedThereByIp6Too)
{
    EXPECT_EQ(chip.ports.set_frame_max(5, 64), 0);
    EXPECT_EQ(send(1, good6), "5");
    Frame longer = good6;
    longer.resize(61);
    EXPECT_EQ(send(1, longer), "drop:egress_too_long");
    EXPECT_EQ(of(1), (Values{{"ipv6IfStatsInDiscards", 1}}));
    EXPECT_EQ(of(5), (Values{{"ipv6IfStatsOutForwDatagrams", 1}, {"ipv6IfStatsOutDiscards", 1}}));
}

TEST_F(RoutingCounters, WhatIsNotForTheRouterIsNotCounted)
{
    EXPECT_EQ(send(1, with(good4, 5, 0x0b)), "2") << "another address";
    EXPECT_EQ(send(1, with(good6, 5, 0x0b)), "2");
    EXPECT_EQ(send(1, to_router4(ip4(169, 254, 1, 1))), "2") << "of the link";
    for (const int port : {1, 2, 5})
        EXPECT_EQ(of(port), Values{}) << port;
}

TEST_F(RoutingCounters, AreClearedWithTheOthers)
{
    send(1, to_router4(kFar4, 1));
    EXPECT_NE(of(1), Values{});
    EXPECT_EQ(chip.counters.clear(1), 0);
    EXPECT_EQ(of(1), Values{});
}

TEST(RoutingCountersOfAPort, EachTellsChipsApart)
{
    Chip chip;
    for (RouterCounters PortCounters::*family : {&PortCounters::router4, &PortCounters::router6}) {
        RouterCounters& c = chip.counters[1].*family;
        for (std::uint64_t* value : {&c.in_header_errors, &c.in_address_errors, &c.in_discards,
                                     &c.in_forwarded, &c.out_forwarded, &c.out_discards}) {
            const std::uint64_t before = chip.digest();
            ++*value;
            EXPECT_NE(chip.digest(), before);
        }
    }
}

} // namespace
} // namespace vexosim
