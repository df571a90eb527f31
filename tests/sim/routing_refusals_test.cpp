// What routing does not forward, and what it has to say about frames.
#include "tests/sim/routing_path.h"

namespace vexosim {
namespace {

/// Everything has a way out through port 5.
struct Refusals : RoutingPath {
    Refusals()
    {
        route(0, 0, hop(3, 5));
        route(ip6(0, 0), 0, hop(3, 5));
    }
};

IpAddress from_text(std::initializer_list<int> bytes)
{
    std::uint8_t address[16] = {};
    std::size_t i = 0;
    for (int byte : bytes)
        address[i++] = static_cast<std::uint8_t>(byte);
    return IpAddress::from_ip6(address);
}

TEST_F(Refusals, AFrameWithoutAHopLeftIsForTheCpu)
{
    EXPECT_EQ(cpu_reason(to_router4(kFar4, 1)), "hop count");
    EXPECT_EQ(cpu_reason(to_router4(kFar4, 0)), "hop count");
    EXPECT_EQ(send(1, to_router4(kFar4, 2)), "5");
    EXPECT_EQ(cpu_reason(to_router6(ip6(0x20, 1), 1)), "hop count");
    EXPECT_EQ(cpu_reason(to_router6(ip6(0x20, 1), 0)), "hop count");
    EXPECT_EQ(send(1, to_router6(ip6(0x20, 1), 2)), "5");
}

TEST_F(Refusals, TheCpuGetsTheFrameAsReceived)
{
    const Frame frame = to_router4(kFar4, 1);
    ASSERT_EQ(send(1, frame), "cpu");
    const CpuFrame got = take();
    EXPECT_EQ(got.data, TestFrame(frame).tag(10).bytes());
    EXPECT_EQ(got.vid, 10);
    EXPECT_EQ(got.port, 1);
}

TEST_F(Refusals, AFrameWithoutARouteIsForTheCpu)
{
    chip.l3_routes.erase({IpAddress::from_ip4(0), 0});
    EXPECT_EQ(cpu_reason(to_router4(kFar4)), "no route");
    EXPECT_EQ(send(1, to_router6(ip6(0x20, 1))), "5") << "IPv6 has one";
    chip.l3_routes.erase({from_text({}), 0});
    EXPECT_EQ(cpu_reason(to_router6(ip6(0x20, 1))), "no route");
    EXPECT_EQ(cpu_reason(to_router4(kFar4, 1)), "hop count") << "comes first";
}

TEST_F(Refusals, APacketOfTheCpusOwnNeedsNoHop)
{
    host(kFar4, hop(1, kCpuPort));
    EXPECT_EQ(cpu_reason(to_router4(kFar4)), "L3 slow path");
    EXPECT_EQ(cpu_reason(to_router4(kFar4, 1)), "L3 slow path");
    host(ip6(0x20, 1), hop(1, kCpuPort));
    EXPECT_EQ(cpu_reason(to_router6(ip6(0x20, 1), 1)), "L3 slow path");
    EXPECT_EQ(cpu_reason(to_router6(ip6(0x20, 1), 255, from_text({0xfe, 0x80}))), "L3 slow path")
        << "from an address of the link";
}

TEST_F(Refusals, OptionsAreForTheCpu)
{
    Frame frame = to_router4(kFar4);
    frame[14] = 0x46;
    EXPECT_EQ(cpu_reason(checked(frame)), "bad IP header");
    EXPECT_EQ(cpu_reason(with(to_router6(ip6(0x20, 1)), 20, 0)), "bad IP header");
    EXPECT_EQ(send(1, with(to_router6(ip6(0x20, 1)), 20, 60)), "5") << "for the destination alone";
}

TEST_F(Refusals, ABadIpv4HeaderIsForTheCpu)
{
    const Frame good = to_router4(kFar4);
    ASSERT_EQ(send(1, good), "5");
    const Frame bad[] = {
        with(good, 25, good[25] ^ 1),                // checksum
        checked(with(good, 14, 0x55)),               // version
        checked(with(good, 14, 0x44)),               // 16 bytes of header
        checked(with(good, 17, 47)),                 // longer than the frame
        checked(with(with(good, 14, 0x4c), 17, 47)), // header longer than the frame
        checked(with(with(good, 16, 0), 17, 19)),    // shorter than its header
        Frame(good.begin(), good.begin() + 14 + 19), // cut
        Frame(good.begin(), good.begin() + 14),      // no header at all
    };
    for (const Frame& frame : bad)
        EXPECT_EQ(cpu_reason(frame), "bad IP header") << trace(frame);
    EXPECT_EQ(send(1, checked(with(good, 17, 46))), "5");
    EXPECT_EQ(send(1, checked(with(good, 17, 20))), "5") << "the rest is padding";
}

TEST_F(Refusals, ABadIpv6HeaderIsForTheCpu)
{
    const Frame good = to_router6(ip6(0x20, 1));
    ASSERT_EQ(send(1, good), "5");
    EXPECT_EQ(cpu_reason(with(good, 14, 0x40)), "bad IP header");
    EXPECT_EQ(cpu_reason(with(good, 19, 7)), "bad IP header");
    EXPECT_EQ(cpu_reason(with(good, 18, 1)), "bad IP header");
    EXPECT_EQ(cpu_reason(Frame(good.begin(), good.begin() + 14 + 39)), "bad IP header");
    EXPECT_EQ(send(1, with(good, 19, 0)), "5");
}

TEST_F(Refusals, APacketMayEndWithItsHeader)
{
    const Frame v4 = checked(with(to_router4(kFar4), 17, 20)),
                v6 = with(to_router6(ip6(0x20, 1)), 19, 0);
    EXPECT_EQ(send(1, FrameView(v4).first(14 + 20)), "5");
    EXPECT_EQ(send(1, FrameView(v6).first(14 + 40)), "5");
}

TEST_F(Refusals, TheFirstOfTwoRefusalsCounts)
{
    const auto optional = [](const Frame& frame) { return checked(with(frame, 14, 0x46)); };
    const std::uint32_t link = ip4(169, 254, 0, 1), loop = ip4(127, 0, 0, 1);
    host(kFar4, hop(1, kCpuPort));
    EXPECT_EQ(cpu_reason(with(to_router4(link), 25, 1)), "bad IP header");
    EXPECT_EQ(send(1, to_router4(link, 64, loop)), "2");
    EXPECT_EQ(send(1, optional(to_router4(link))), "2");
    EXPECT_EQ(send(1, optional(to_router4(kFar4, 64, loop))), "drop:l3_martian");
    EXPECT_EQ(cpu_reason(optional(to_router4(kFar4))), "bad IP header");
    EXPECT_FALSE(chip.l3_hosts.find(IpAddress::from_ip4(kFar4))->hit) << "it was not asked for";
    EXPECT_EQ(send(1, to_router4(kFar4 + 1, 1, link)), "drop:l3_martian");
    ASSERT_EQ(chip.l3_interfaces.destroy(3), 0);
    EXPECT_EQ(cpu_reason(to_router4(kFar4 + 1, 1)), "hop count");
    chip.l3_routes.erase({IpAddress::from_ip4(0), 0});
    EXPECT_EQ(send(1, to_router4(kFar4 + 1, 64, link)), "drop:l3_martian");
}

TEST_F(Refusals, Ipv4MartiansAreDropped)
{
    for (std::uint32_t address :
         {ip4(0, 0, 0, 0), ip4(0, 255, 255, 255), ip4(127, 0, 0, 1), ip4(127, 255, 255, 255),
          ip4(224, 0, 0, 1), ip4(239, 1, 1, 1), ip4(240, 0, 0, 1), ip4(255, 255, 255, 255)}) {
        EXPECT_EQ(send(1, to_router4(kFar4, 64, address)), "drop:l3_martian") << address;
        EXPECT_EQ(send(1, to_router4(address)), "drop:l3_martian") << address;
    }
    EXPECT_EQ(send(1, to_router4(kFar4, 64, ip4(169, 254, 1, 1))), "drop:l3_martian");
    for (std::uint32_t address : {ip4(1, 0, 0, 0), ip4(126, 255, 255, 255), ip4(128, 0, 0, 0),
                                  ip4(169, 253, 1, 1), ip4(223, 255, 255, 255)}) {
        EXPECT_EQ(send(1, to_router4(kFar4, 64, address)), "5") << address;
        EXPECT_EQ(send(1, to_router4(address)), "5") << address;
    }
}

TEST_F(Refusals, Ipv6MartiansAreDropped)
{
    const IpAddress none = from_text({}), group = from_text({0xff, 2}),
                    loop = from_text({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1});
    for (const IpAddress& address : {none, group, loop}) {
        EXPECT_EQ(send(1, to_router6(ip6(0x20, 1), 64, address)), "drop:l3_martian");
        EXPECT_EQ(send(1, to_router6(address)), "drop:l3_martian");
    }
    EXPECT_EQ(send(1, to_router6(ip6(0x20, 1), 64, from_text({0xfe, 0x80}))), "drop:l3_martian");
    EXPECT_EQ(send(1, to_router6(ip6(0x20, 1), 64, from_text({0xfe, 0xc0}))), "5");
    const IpAddress two = from_text({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2});
    EXPECT_EQ(send(1, to_router6(two)), "5");
}

TEST_F(Refusals, ANextHopWhoseInterfaceIsGoneDropsUntilItIsBack)
{
    ASSERT_EQ(chip.l3_interfaces.destroy(3), 0);
    EXPECT_EQ(send(1, to_router4(kFar4)), "drop:l3_interface_gone");
    EXPECT_EQ(send(1, to_router6(ip6(0x20, 1))), "drop:l3_interface_gone");
    interface(3, kRouter30, 30);
    EXPECT_EQ(send(1, to_router4(kFar4)), "5");
    chip.vlans.destroy(30);
    EXPECT_EQ(send(1, to_router4(kFar4)), "drop:l3_interface_gone");
}

TEST_F(Refusals, WithoutInterfacesNothingIsRouted)
{
    ASSERT_EQ(chip.l3_interfaces.destroy_all(), 0);
    EXPECT_EQ(send(1, to_router4(kFar4)), "2");
}

TEST_F(Refusals, WhatTheCpuSendsIsRoutedButDoesNotComeBack)
{
    chip.vlans.add_ports(10, {kCpuPort}, {});
    EXPECT_EQ(send_from_cpu(TestFrame(to_router4(kFar4)).tag(10)), "5");
    EXPECT_EQ(send_from_cpu(TestFrame(to_router4(kFar4, 1)).tag(10)), "drop:l3_from_cpu");
}

TEST_F(Refusals, AFullCpuQueueIsTheReason)
{
    for (std::size_t i = 0; i < CpuReceive::kQueueDepth; ++i)
        send(1, to_router4(kFar4, 1));
    EXPECT_EQ(send(1, to_router4(kFar4, 1)), "drop:cpu_queue_full");
}

TEST_F(Refusals, AnEntryThatAFrameHasFoundIsHit)
{
    host(kFar4, hop(2, 3));
    const IpAddress far = IpAddress::from_ip4(kFar4);
    const IpPrefix all{IpAddress::from_ip4(0), 0};
    send(1, to_router4(kFar4));
    EXPECT_TRUE(chip.l3_hosts.find(far)->hit);
    EXPECT_FALSE(chip.l3_routes.find(all)->hit);
    send(1, to_router4(kFar4 + 1));
    EXPECT_TRUE(chip.l3_routes.find(all)->hit);
    host(kFar4, hop(2, 3));
    EXPECT_FALSE(chip.l3_hosts.find(far)->hit) << "a new entry";
}

TEST_F(Refusals, WhatIsNotRoutedHitsNothing)
{
    send(1, to_router4(ip4(127, 0, 0, 1)));
    send(1, with(to_router4(kFar4), 25, 1));
    EXPECT_FALSE(chip.l3_routes.find({IpAddress::from_ip4(0), 0})->hit);
}

TEST_F(Refusals, ATraceSaysWhichRouteWonOverHowManyOthers)
{
    route(ip4(10, 0, 0, 0), 8, hop(3, 5));
    route(ip4(10, 0, 20, 0), 24, hop(2, 3));
    const std::string text = trace(to_router4(kFar4));
    EXPECT_NE(
        text.find("routing            02:00:00:00:0a:0a is the router in VLAN 10, interface 1;\n"
                  "                   10.0.10.1 to 10.0.20.1, 64 hops left\n"
                  "                   route 10.0.20.0/24, over 2 shorter\n"
                  "                   to 00:dd:00:00:00:04 at port 3, by interface 2 in VLAN "
                  "20\n"),
        std::string::npos)
        << text;
    host(kFar4, to_trunk());
    EXPECT_NE(trace(to_router4(kFar4)).find("  host 10.0.20.1\n"), std::string::npos);
    EXPECT_NE(trace(to_router4(kFar4)).find("at trunk 9, by interface 3"), std::string::npos);
    chip.l3_hosts.set_usable(IpAddress::from_ip4(kFar4), false);
    EXPECT_NE(
        trace(to_router4(kFar4)).find("host 10.0.20.1 is not valid;\n                   route "),
        std::string::npos);
}

TEST_F(Refusals, ATraceSaysWhyAFrameIsNotRouted)
{
    const auto says = [&](FrameView frame, const char* text) {
        EXPECT_NE(trace(frame).find(text), std::string::npos) << trace(frame);
    };
    says(to_router4(kFar4, 1), "1 hop left");
    says(to_router4(kFar4, 1), "no hop is left: for the CPU");
    says(to_router4(kFar4, 0), "0 hops left");
    says(with(to_router4(kFar4), 25, 1),
         "interface 1\n                   a bad header checksum: for the CPU");
    says(FrameView(to_router4(kFar4)).first(14 + 19), "shorter than an IPv4 header: for the CPU");
    says(checked(with(with(to_router4(kFar4), 14, 0x46), 34, 7)),
         "a header with options: for the CPU");
    says(to_router4(ip4(169, 254, 0, 1)), "for an address of the link: not routed");
    says(TestFrame(kRouter10, kHostA).type(0x0806), "not IP: not routed");
    chip.l3_routes.erase({IpAddress::from_ip4(0), 0});
    says(to_router4(kFar4), "no host or route for 10.0.20.1");
}

} // namespace
} // namespace vexosim
