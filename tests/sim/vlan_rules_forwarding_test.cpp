// The VLAN of frames whose tag names none: by source address, source subnet, protocol, port. Port 1
// hears; each VLAN n has port n alone besides, and port 1 is a member everywhere.
#include <bcm/port.h>

#include "path.h"

namespace vexosim {
namespace {

constexpr std::uint8_t kIp6Source[] = {0x20, 0x01, 0x0d, 0xb8, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7};

Frame with_payload(int type, const std::vector<int>& payload)
{
    Frame frame = TestFrame(kHostB, kHostA, 80).type(type).bytes();
    for (std::size_t i = 0; i < payload.size(); ++i)
        frame[14 + i] = static_cast<std::uint8_t>(payload[i]);
    return frame;
}

Frame ip4_from(int a, int b, int c, int d)
{
    return with_payload(0x0800, {0x45, 0, 0, 40, 0, 0, 0, 0, 64, 17, 0, 0, a, b, c, d});
}

Frame ip6_from(const std::uint8_t* source)
{
    Frame frame = with_payload(0x86dd, {0x60});
    std::copy_n(source, 16, frame.begin() + 22);
    return frame;
}

Frame snap(int type)
{
    return with_payload(40, {0xaa, 0xaa, 3, 0, 0, 0, type >> 8, type & 0xff});
}

Frame with_tag(Frame frame, int vid, int priority)
{
    const std::uint8_t tag[] = {0x81, 0, static_cast<std::uint8_t>(priority << 5 | vid >> 8),
                                static_cast<std::uint8_t>(vid)};
    frame.insert(frame.begin() + 12, std::begin(tag), std::end(tag));
    return frame;
}

Ip6Address ip6_address()
{
    Ip6Address address{};
    std::copy_n(kIp6Source, 16, address.begin());
    return address;
}

struct VlansByRule : ::testing::Test, Path {
    VlanRules& rules = chip.vlan_rules;

    VlansByRule()
    {
        only({1, 2});
        for (int vid = 10; vid < 30; ++vid)
            vlan(vid, {1, vid});
    }
    void by_mac(int vid) { EXPECT_EQ(rules.add_mac(kHostA, {vid, 5}), 0); }
    void by_ip4(std::uint32_t address, int prefix, int vid)
    {
        const std::uint32_t mask = prefix == 0 ? 0 : ~std::uint32_t{0} << (32 - prefix);
        EXPECT_EQ(rules.add_ip4(address, mask, {vid, 4}), 0);
    }
    void by_ip6(int prefix, int vid)
    {
        EXPECT_EQ(rules.add_ip6(ip6_address(), prefix, {vid, 3}), 0);
    }
    void by_protocol(int frame_type, int type, int vid)
    {
        EXPECT_EQ(rules.add_protocol(1, {frame_type, static_cast<std::uint16_t>(type), vid}), 0);
    }
    /// The tag that the frame leaves with: "12p5".
    std::string tag_of(FrameView frame, int port = 1)
    {
        send(port, frame);
        for (const int out : outputs.used()) {
            const FrameView copy = outputs.frames(out).front();
            if (copy[12] == 0x81)
                return std::to_string((copy[14] & 15) << 8 | copy[15]) + "p" +
                       std::to_string(copy[14] >> 5);
        }
        return "none";
    }
    std::string vlan_line(FrameView frame)
    {
        for (const Recorder::Line& line : trace_frame(chip, cpu, 1, frame, names).lines) {
            if (line.stage == "VLAN")
                return line.text;
        }
        return "";
    }
};

TEST_F(VlansByRule, TheSourceAddressDecides)
{
    EXPECT_EQ(send(1, TestFrame(kHostB, kHostA)), "2");
    by_mac(10);
    EXPECT_EQ(send(1, TestFrame(kHostB, kHostA)), "10:v10");
    EXPECT_EQ(send(1, TestFrame(kHostB, kHostC)), "2") << "another address";
}

TEST_F(VlansByRule, RulesByAddressApplyAtEveryPort)
{
    by_mac(10);
    EXPECT_EQ(send(10, TestFrame(kHostB, kHostA)), "1:v10");
}

TEST_F(VlansByRule, ATaggedFrameKeepsItsVlan)
{
    by_mac(10);
    by_ip4(0x0a000000, 8, 11);
    by_protocol(BCM_PORT_FRAMETYPE_ETHER2, 0x0800, 12);
    EXPECT_EQ(tag_of(with_tag(ip4_from(10, 0, 0, 1), 20, 2)), "20p2");
}

TEST_F(VlansByRule, APriorityTaggedFrameGetsTheVlanAndKeepsItsPriority)
{
    by_mac(10);
    EXPECT_EQ(tag_of(with_tag(ip4_from(10, 0, 0, 1), 0, 2)), "10p2");
    EXPECT_EQ(tag_of(ip4_from(10, 0, 0, 1)), "10p5");
}

TEST_F(VlansByRule, SubnetAndProtocolAreFoundBehindAPriorityTag)
{
    by_ip4(0x0a000000, 8, 11);
    by_protocol(BCM_PORT_FRAMETYPE_SNAP, 0x809b, 12);
    EXPECT_EQ(tag_of(with_tag(ip4_from(10, 0, 0, 1), 0, 1)), "11p1");
    EXPECT_EQ(tag_of(with_tag(snap(0x809b), 0, 1)), "12p1");
}

TEST_F(VlansByRule, AddressGoesBeforeSubnetBeforeProtocolBeforePort)
{
    const Frame frame = ip4_from(10, 0, 0, 1);
    chip.ports.set_untagged_vlan(1, 13);
    EXPECT_EQ(tag_of(frame), "13p0");
    by_protocol(BCM_PORT_FRAMETYPE_ETHER2, 0x0800, 12);
    EXPECT_EQ(tag_of(frame), "12p0");
    by_ip4(0x0a000000, 8, 11);
    EXPECT_EQ(tag_of(frame), "11p4");
    by_mac(10);
    EXPECT_EQ(tag_of(frame), "10p5");
}

TEST_F(VlansByRule, TheLongestIpv4SubnetWins)
{
    by_ip4(0x0a010200, 24, 12);
    by_ip4(0x0a000000, 8, 10);
    by_ip4(0x0a010000, 16, 11);
    by_ip4(0x0a010203, 32, 13);
    EXPECT_EQ(tag_of(ip4_from(10, 1, 2, 3)), "13p4");
    EXPECT_EQ(tag_of(ip4_from(10, 1, 2, 4)), "12p4");
    EXPECT_EQ(tag_of(ip4_from(10, 1, 3, 3)), "11p4");
    EXPECT_EQ(tag_of(ip4_from(10, 2, 2, 3)), "10p4");
    EXPECT_EQ(tag_of(ip4_from(11, 1, 2, 3)), "none");
    by_ip4(0, 0, 14);
    EXPECT_EQ(tag_of(ip4_from(11, 1, 2, 3)), "14p4") << "a prefix of 0 has every address";
}

TEST_F(VlansByRule, TheBitsOfAPrefixCountOneByOne)
{
    by_ip4(0x0a0102a0, 27, 10); // .160 to .191
    EXPECT_EQ(tag_of(ip4_from(10, 1, 2, 160)), "10p4");
    EXPECT_EQ(tag_of(ip4_from(10, 1, 2, 191)), "10p4");
    EXPECT_EQ(tag_of(ip4_from(10, 1, 2, 192)), "none");
    EXPECT_EQ(tag_of(ip4_from(10, 1, 2, 159)), "none");
}

TEST_F(VlansByRule, TheLongestIpv6SubnetWins)
{
    const Frame frame = ip6_from(kIp6Source);
    EXPECT_EQ(tag_of(frame), "none");
    by_ip6(0, 10);
    EXPECT_EQ(tag_of(frame), "10p3");
    by_ip6(128, 13);
    by_ip6(47, 11);
    EXPECT_EQ(tag_of(frame), "13p3");
    std::uint8_t neighbour[16];
    std::copy_n(kIp6Source, 16, neighbour);
    neighbour[15] = 8;
    EXPECT_EQ(tag_of(ip6_from(neighbour)), "11p3");
    neighbour[5] = 2; // bit 46 differs
    EXPECT_EQ(tag_of(ip6_from(neighbour)), "10p3");
}

TEST_F(VlansByRule, Ipv4SubnetsDoNotMeetIpv6PacketsNorTheOtherWayRound)
{
    by_ip4(0, 0, 10);
    EXPECT_EQ(tag_of(ip6_from(kIp6Source)), "none");
    by_ip6(0, 11);
    EXPECT_EQ(tag_of(ip4_from(10, 0, 0, 1)), "10p4");
    EXPECT_EQ(tag_of(with_payload(0x0806, {})), "none") << "ARP is no IP packet";
}

TEST_F(VlansByRule, APacketWithoutAWholeHeaderHasNoSubnet)
{
    by_ip4(0, 0, 10);
    by_ip6(0, 11);
    Frame ip4 = ip4_from(10, 0, 0, 1), ip6 = ip6_from(kIp6Source);
    ip4.resize(34);
    ip6.resize(54);
    EXPECT_EQ(tag_of(ip4), "10p4");
    EXPECT_EQ(tag_of(ip6), "11p3");
    ip4.resize(33);
    ip6.resize(53);
    EXPECT_EQ(tag_of(ip4), "none");
    EXPECT_EQ(tag_of(ip6), "none");
}

TEST_F(VlansByRule, TheFrameTypeIsPartOfTheProtocol)
{
    const Frame ether = with_payload(0x809b, {});
    const Frame llc = with_payload(40, {0x80, 0x9b, 3});
    by_protocol(BCM_PORT_FRAMETYPE_ETHER2, 0x809b, 10);
    by_protocol(BCM_PORT_FRAMETYPE_SNAP, 0x809b, 11);
    by_protocol(BCM_PORT_FRAMETYPE_8023, 0x809b, 12);
    EXPECT_EQ(tag_of(ether), "10p0");
    EXPECT_EQ(tag_of(snap(0x809b)), "11p0");
    EXPECT_EQ(tag_of(llc), "12p0");
    EXPECT_EQ(rules.delete_protocol(1, BCM_PORT_FRAMETYPE_SNAP, 0x809b), 0);
    EXPECT_EQ(tag_of(snap(0x809b)), "none");
    EXPECT_EQ(tag_of(ether), "10p0");
}

TEST_F(VlansByRule, SnapOfAnotherOrganisationIsAnLlcFrame)
{
    by_protocol(BCM_PORT_FRAMETYPE_SNAP, 0x2000, 10);
    by_protocol(BCM_PORT_FRAMETYPE_8023, 0xaaaa, 11);
    EXPECT_EQ(tag_of(with_payload(40, {0xaa, 0xaa, 3, 0, 0, 0x0c, 0x20, 0})), "11p0");
    EXPECT_EQ(tag_of(snap(0x2000)), "10p0");
}

TEST_F(VlansByRule, TypesBeginAt0x600)
{
    by_protocol(BCM_PORT_FRAMETYPE_ETHER2, 0x0600, 10);
    by_protocol(BCM_PORT_FRAMETYPE_ETHER2, 0x05ff, 11);
    EXPECT_EQ(tag_of(with_payload(0x0600, {})), "10p0");
    EXPECT_EQ(tag_of(with_payload(0x05ff, {})), "none");
}

TEST_F(VlansByRule, AFrameThatEndsBeforeItsProtocolHasNone)
{
    by_protocol(BCM_PORT_FRAMETYPE_8023, 0x4242, 10);
    Frame frame = with_payload(3, {0x42, 0x42});
    frame.resize(16);
    EXPECT_EQ(tag_of(frame), "10p0");
    frame.resize(15);
    EXPECT_EQ(tag_of(frame), "none");
    frame.resize(14);
    EXPECT_EQ(tag_of(frame), "none");
}

TEST_F(VlansByRule, AProtocolBelongsToItsPort)
{
    by_protocol(BCM_PORT_FRAMETYPE_ETHER2, 0x0800, 10);
    chip.ports.set_untagged_vlan(20, 20);
    EXPECT_EQ(tag_of(ip4_from(10, 0, 0, 1), 20), "20p0");
    EXPECT_EQ(tag_of(ip4_from(10, 0, 0, 1), 1), "10p0");
}

TEST_F(VlansByRule, AProtocolsFramesHaveThePortsPriority)
{
    chip.ports.set_untagged_priority(1, 6);
    by_protocol(BCM_PORT_FRAMETYPE_ETHER2, 0x0800, 10);
    EXPECT_EQ(tag_of(ip4_from(10, 0, 0, 1)), "10p6");
}

TEST_F(VlansByRule, WhenAllProtocolsAreGoneThePortsOwnVlanIsBack)
{
    by_protocol(BCM_PORT_FRAMETYPE_ETHER2, 0x0800, 10);
    by_protocol(BCM_PORT_FRAMETYPE_ETHER2, 0x0806, 10);
    EXPECT_EQ(chip.vlan_rules.ports(), PortSet{1});
    EXPECT_EQ(rules.delete_all_protocols(1), 0);
    EXPECT_EQ(tag_of(ip4_from(10, 0, 0, 1)), "none");
    EXPECT_EQ(chip.vlan_rules.ports(), PortSet{}) << "frames pass without looking for rules";
}

TEST_F(VlansByRule, RulesByAddressStayWhenProtocolsGo)
{
    by_mac(10);
    by_protocol(BCM_PORT_FRAMETYPE_ETHER2, 0x0800, 11);
    EXPECT_EQ(rules.delete_protocol(1, BCM_PORT_FRAMETYPE_ETHER2, 0x0800), 0);
    EXPECT_EQ(tag_of(ip4_from(10, 0, 0, 1)), "10p5");
}

TEST_F(VlansByRule, ThePortMustBeInTheVlanOfTheRule)
{
    by_mac(10);
    chip.vlans.remove_ports(10, {1});
    EXPECT_EQ(send(1, TestFrame(kHostB, kHostA)), "drop:not_member");
    EXPECT_EQ(rules.add_mac(kHostA, {99, 0}), 0);
    EXPECT_EQ(send(1, TestFrame(kHostB, kHostA)), "drop:vlan_unknown");
}

TEST_F(VlansByRule, AddressesAreLearnedInTheVlanOfTheRule)
{
    by_mac(10);
    send(1, TestFrame(kHostB, kHostA));
    EXPECT_NE(chip.macs.find(mac_key(kHostA, 10)), nullptr);
    EXPECT_EQ(chip.macs.find(mac_key(kHostA, 1)), nullptr);
}

TEST_F(VlansByRule, ATraceNamesTheRule)
{
    const Frame frame = ip4_from(10, 1, 2, 3);
    EXPECT_EQ(vlan_line(frame), "VLAN 1, the port's own, priority 0");
    by_protocol(BCM_PORT_FRAMETYPE_ETHER2, 0x0800, 12);
    by_protocol(BCM_PORT_FRAMETYPE_8023, 0x4242, 14);
    EXPECT_EQ(vlan_line(frame), "VLAN 12, by its protocol, Ethernet II 0x0800, priority 0");
    EXPECT_EQ(vlan_line(with_payload(3, {0x42, 0x42})),
              "VLAN 14, by its protocol, 802.3 0x4242, priority 0");
    by_ip4(0x0a010000, 16, 11);
    by_ip6(48, 13);
    EXPECT_EQ(vlan_line(frame), "VLAN 11, by its source subnet 10.1.0.0/16, priority 4");
    EXPECT_EQ(vlan_line(ip6_from(kIp6Source)),
              "VLAN 13, by its source subnet 2001:db8:1::/48, priority 3");
    by_mac(10);
    EXPECT_EQ(vlan_line(frame), "VLAN 10, by its source address 00:aa:00:00:00:01, priority 5");
    EXPECT_EQ(vlan_line(with_tag(frame, 20, 7)), "VLAN 20, by its tag, priority 7");
}

} // namespace
} // namespace vexosim
