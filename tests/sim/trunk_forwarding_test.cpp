// What trunks do to frames. Trunk 7 is ports 4, 5 and 6; ports 1, 2 and 3 are single.
#include <set>

#include <bcm/l2.h>
#include <bcmx/trunk.h>

#include "path.h"

namespace vexosim {
namespace {

const TestFrame kAToB(kHostB, kHostA), kBToA(kHostA, kHostB), kToAll(kBroadcastMac, kHostA);
constexpr int kTrunk = 7;

struct Trunks : ::testing::Test, Path {
    Trunks()
    {
        only({1, 2, 3, 4, 5, 6});
        chip.trunks.create_id(kTrunk);
        members({4, 5, 6});
    }
    void members(std::vector<int> ports, int criterion = BCM_TRUNK_PSC_SRCDSTMAC, int dlf = -1,
                 int mc = -1, int ipmc = -1)
    {
        ASSERT_EQ(chip.trunks.set(kTrunk, {true, criterion, std::move(ports), dlf, mc, ipmc}), 0);
    }
    void place_on_trunk(MacAddress mac, int trunk = kTrunk, PortSet block = {})
    {
        MacEntry e;
        e.key = mac_key(mac, 1);
        e.trunk = static_cast<std::uint8_t>(trunk);
        e.flags = BCM_L2_STATIC | BCM_L2_TRUNK_MEMBER;
        e.block = block;
        ASSERT_EQ(chip.macs.add(e, false, 0), 0);
    }
    void place(MacAddress mac, int port, std::uint16_t flags = BCM_L2_STATIC)
    {
        MacEntry e;
        e.key = mac_key(mac, 1);
        e.port = static_cast<std::uint8_t>(port);
        e.flags = flags;
        ASSERT_EQ(chip.macs.add(e, false, 0), 0);
    }
    /// Where the address is: "trunk 7", "port 3", or "unknown".
    std::string at(MacAddress mac) const
    {
        const MacEntry* e = chip.macs.find(mac_key(mac, 1));
        if (e == nullptr)
            return "unknown";
        return e->on_trunk() ? "trunk " + std::to_string(e->trunk)
                             : "port " + std::to_string(e->port);
    }
};

TEST_F(Trunks, ASourceIsLearnedOnTheTrunk)
{
    send(4, kAToB);
    EXPECT_EQ(at(kHostA), "trunk 7");
    EXPECT_EQ(chip.macs.count_trunk(kTrunk), 1u);
    std::string member = send(1, kBToA);
    EXPECT_TRUE(member == "4" || member == "5" || member == "6") << member;
}

TEST_F(Trunks, AnotherMemberIsNoMove)
{
    send(4, kAToB);
    chip.macs.start_events();
    chip.ports.set_learn(5, 0);
    EXPECT_EQ(send(5, kAToB), "1 2 3") << "the source is known here";
    EXPECT_FALSE(chip.macs.has_events());
}

TEST_F(Trunks, StationsMoveBetweenTrunksAndPorts)
{
    send(4, kAToB);
    send(1, kAToB);
    EXPECT_EQ(at(kHostA), "port 1");
    send(6, kAToB);
    EXPECT_EQ(at(kHostA), "trunk 7");
    chip.ports.set_learn(1, 0);
    EXPECT_EQ(send(1, kAToB), "drop:source_unknown") << "a stranger until it has moved";
}

TEST_F(Trunks, WhatAPortLearnedBeforeItJoinedMovesToTheTrunk)
{
    place(kHostA, 4, 0);
    send(4, kAToB);
    EXPECT_EQ(at(kHostA), "trunk 7");
    place(kHostC, 4);
    chip.ports.set_learn(4, 0);
    EXPECT_EQ(send(4, TestFrame(kHostB, kHostC)), "1 2 3") << "a static entry of the port stays";
    EXPECT_EQ(at(kHostC), "port 4");
}

TEST_F(Trunks, TrunkZeroIsOneLikeAnyOther)
{
    chip.trunks.create_id(0);
    ASSERT_EQ(chip.trunks.set(0, {true, 3, {2, 3}, -1, -1, -1}), 0);
    place(kHostA, 2, 0);
    std::string text = trace_frame(chip, cpu, 2, kAToB, names).text;
    EXPECT_NE(text.find(";\n                   moves here, on trunk 0\n"), std::string::npos)
        << text;
    send(2, kAToB);
    EXPECT_EQ(at(kHostA), "trunk 0");
    chip.learn_limits.by_trunk[0] = 1;
    send(3, TestFrame(kHostB, kHostC));
    EXPECT_EQ(at(kHostC), "unknown");
}

TEST_F(Trunks, VlanDiscardAndSpanningTreeAreThoseOfThePort)
{
    chip.ports.set_discard(5, 1);
    EXPECT_EQ(send(5, kAToB), "drop:discard_all");
    chip.stgs.set(1, 6, 1);
    EXPECT_EQ(send(6, kAToB), "drop:stp_blocking");
    chip.vlans.remove_ports(1, {4});
    EXPECT_EQ(send(4, kAToB), "drop:not_member");
    EXPECT_EQ(at(kHostA), "unknown");
}

/// Frames of 64 flows that differ in everything; `fixed` makes some of it equal.
struct Flow {
    MacAddress dst, src;
    std::uint32_t ip_dst, ip_src;
};
using Fix = void (*)(Flow&);

struct Criterion {
    const char* description;
    int criterion;
    Fix others; ///< makes equal what the criterion does not look at
    Fix own;    ///< makes equal what it looks at
    int type;
};

void PrintTo(const Criterion& c, std::ostream* out)
{
    *out << c.description;
}

class Criteria : public ::testing::TestWithParam<Criterion> {
protected:
    /// The members that send frames of many flows.
    static std::set<std::string> used(Fix fix)
    {
        Trunks_ path;
        std::set<std::string> members;
        for (std::uint32_t n = 0; n < 64; ++n) {
            Flow flow{MacAddress{0x020000000100} + n,
                      MacAddress{0x020000001000} + MacAddress{2} * n, 0x0a000000 + n,
                      0x0b000000 + n};
            fix(flow);
            members.insert(path.member(flow));
        }
        return members;
    }

private:
    struct Trunks_ : Path {
        Trunks_()
        {
            chip.trunks.create_id(kTrunk);
            chip.trunks.set(kTrunk, {true, GetParam().criterion, {4, 5, 6}, -1, -1, -1});
        }
        std::string member(const Flow& flow)
        {
            MacEntry e;
            e.key = mac_key(flow.dst, 1);
            e.trunk = kTrunk;
            e.flags = BCM_L2_STATIC | BCM_L2_TRUNK_MEMBER;
            chip.macs.add(e, false, 0);
            TestFrame frame(flow.dst, flow.src);
            frame.type(GetParam().type);
            return send(1, GetParam().type == 0x88b5 ? frame : frame.ip(flow.ip_dst, flow.ip_src));
        }
    };
};

TEST_P(Criteria, ManyFlowsUseAllMembers)
{
    EXPECT_EQ(used([](Flow&) {}), (std::set<std::string>{"4", "5", "6"}));
    EXPECT_EQ(used(GetParam().others), (std::set<std::string>{"4", "5", "6"}));
}

TEST_P(Criteria, WhatIsNotLookedAtDoesNotMatter)
{
    EXPECT_EQ(used(GetParam().own).size(), 1u);
}

void same_src_mac(Flow& f)
{
    f.src = kHostA;
}
void same_dst_mac(Flow& f)
{
    f.dst = kHostB;
}
void same_src_ip(Flow& f)
{
    f.ip_src = 0x0a010203;
}
void same_dst_ip(Flow& f)
{
    f.ip_dst = 0x0a010204;
}
void same_macs(Flow& f)
{
    same_src_mac(f);
    same_dst_mac(f);
}
void same_ips(Flow& f)
{
    same_src_ip(f);
    same_dst_ip(f);
}
template <Fix... kFixes>
void all_of(Flow& f)
{
    (kFixes(f), ...);
}

INSTANTIATE_TEST_SUITE_P(
    All, Criteria,
    ::testing::Values(
        Criterion{"source MAC", 1, all_of<same_dst_mac, same_ips>, same_src_mac, 0x0800},
        Criterion{"destination MAC", 2, all_of<same_src_mac, same_ips>, same_dst_mac, 0x0800},
        Criterion{"both MACs by source", 3, all_of<same_dst_mac, same_ips>, same_macs, 0x0800},
        Criterion{"both MACs by destination", 3, all_of<same_src_mac, same_ips>, same_macs, 0x0800},
        Criterion{"source IPv4", 4, all_of<same_macs, same_dst_ip>, same_src_ip, 0x0800},
        Criterion{"destination IPv4", 5, all_of<same_macs, same_src_ip>, same_dst_ip, 0x0800},
        Criterion{"both IPv4 by source", 6, all_of<same_macs, same_dst_ip>, same_ips, 0x0800},
        Criterion{"both IPv4 by destination", 6, all_of<same_macs, same_src_ip>, same_ips, 0x0800},
        Criterion{"source IPv6", 4, all_of<same_macs, same_dst_ip>, same_src_ip, 0x86dd},
        Criterion{"destination IPv6", 5, all_of<same_macs, same_src_ip>, same_dst_ip, 0x86dd},
        Criterion{"both IPv6", 6, all_of<same_macs, same_dst_ip>, same_ips, 0x86dd},
        Criterion{"source IP without IP", 4, same_dst_mac, same_src_mac, 0x88b5},
        Criterion{"destination IP without IP", 5, same_src_mac, same_dst_mac, 0x88b5},
        Criterion{"both IPs without IP", 6, same_src_mac, same_macs, 0x88b5}),
    [](const auto& test) {
        std::string name = test.param.description;
        std::replace(name.begin(), name.end(), ' ', '_');
        return name;
    });

TEST_F(Trunks, HostsThatTalkToTheirNeighbourSpread)
{
    std::set<std::string> used;
    for (MacAddress n = 0; n < 64; n += 2) {
        place_on_trunk(kHostB + n);
        used.insert(send(1, TestFrame(kHostB + n, kHostB + n + 1)));
    }
    EXPECT_EQ(used.size(), 3u);
}

TEST_F(Trunks, TheTagDoesNotMoveAFlow)
{
    vlan(10, {1, 4, 5, 6});
    members({4, 5, 6}, BCM_TRUNK_PSC_SRCDSTIP);
    place_on_trunk(kHostB);
    chip.macs.add(
        [] {
            MacEntry e;
            e.key = mac_key(kHostB, 10);
            e.trunk = kTrunk;
            e.flags = BCM_L2_STATIC | BCM_L2_TRUNK_MEMBER;
            return e;
        }(),
        false, 0);
    for (std::uint32_t n = 0; n < 32; ++n)
        EXPECT_EQ(send(1, kAToB.tag(10).ip(n, 77)), send(1, kAToB.ip(n, 77)) + ":v10");
}

TEST_F(Trunks, APacketCutInItsIpHeaderGoesByItsMacs)
{
    place_on_trunk(kHostB);
    members({4, 5, 6}, BCM_TRUNK_PSC_DSTIP);
    std::set<std::string> used;
    for (std::uint32_t n = 0; n < 64; ++n)
        used.insert(send(1, FrameView(kAToB.ip(n << 24, 1)).first(14 + 19)));
    EXPECT_EQ(used.size(), 1u);
}

TEST_F(Trunks, AStaticEntryOnTheTrunkLeavesThroughOneMember)
{
    place_on_trunk(kHostB);
    std::string member = send(1, kAToB);
    EXPECT_EQ(member.size(), 1u);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(send(1, kAToB), member);
}

TEST_F(Trunks, NoFrameGoesBackIntoItsTrunk)
{
    place_on_trunk(kHostB);
    place(kHostC, 5);
    for (int port : {4, 5, 6}) {
        EXPECT_EQ(send(port, kAToB), "drop:same_trunk");
        EXPECT_EQ(send(port, kToAll), "1 2 3");
        EXPECT_EQ(send(port, TestFrame(kGroup, kHostA)), "1 2 3");
        EXPECT_EQ(send(port, TestFrame(kHostA + 9, kHostA)), "1 2 3");
    }
    EXPECT_EQ(send(4, TestFrame(kHostC, kHostA)), "drop:same_trunk") << "a port of the trunk";
    EXPECT_EQ(send(5, TestFrame(kHostC, kHostA)), "drop:same_port");
    EXPECT_EQ(send(1, TestFrame(kHostC, kHostB + 5)), "5");
}

TEST_F(Trunks, FloodsGetOneCopyThroughTheDesignatedPortOfTheirClass)
{
    const TestFrame unknown(kHostC, kHostA), group(0x030000000001, kHostA),
        ip_group(kGroup, kHostA);
    const TestFrame ip6_group = TestFrame(0x333300000001, kHostA).type(0x86dd);
    members({4, 5, 6}, 3, 4, 5, 6);
    EXPECT_EQ(send(1, unknown), "2 3 4");
    EXPECT_EQ(send(1, kToAll), "2 3 5");
    EXPECT_EQ(send(1, group), "2 3 5");
    EXPECT_EQ(send(1, ip_group), "2 3 6");
    EXPECT_EQ(send(1, ip6_group), "2 3 6");
    EXPECT_EQ(send(1, TestFrame(kGroup, kHostA).type(0x0806)), "2 3 5") << "no IP";
    members({5, 4, 6});
    for (const TestFrame& frame : {unknown, kToAll, group, ip_group, ip6_group})
        EXPECT_EQ(send(1, frame), "2 3 5") << "none designated: the first member";
}

TEST_F(Trunks, EachTrunkGetsACopyAndNoneItsOwn)
{
    chip.trunks.create_id(8);
    ASSERT_EQ(chip.trunks.set(8, {true, 3, {2, 3}, 3, 3, 3}), 0);
    EXPECT_EQ(send(1, kToAll), "3 4");
    EXPECT_EQ(send(2, kToAll), "1 4");
    EXPECT_EQ(send(6, kToAll), "1 3");
    chip.trunks.destroy(8);
    EXPECT_EQ(send(1, kToAll), "2 3 4");
}

TEST_F(Trunks, AMulticastEntryOnTheTrunkLeavesThroughTheDesignatedPort)
{
    place_on_trunk(kGroup);
    place_on_trunk(0x030000000001);
    members({4, 5, 6}, 3, 4, 5, 6);
    EXPECT_EQ(send(1, TestFrame(kGroup, kHostA)), "6");
    EXPECT_EQ(send(1, TestFrame(0x030000000001, kHostA)), "5");
    EXPECT_EQ(send(5, TestFrame(kGroup, kHostA)), "drop:same_trunk");
    chip.flood_block.set(1, 6, 4);
    EXPECT_EQ(send(1, TestFrame(kGroup, kHostA)), "drop:flood_blocked");
}

TEST_F(Trunks, AMulticastEntryAtAMemberIsForThatPortAlone)
{
    place(kGroup, 5, BCM_L2_STATIC | BCM_L2_MCAST);
    members({4, 5, 6}, 3, 4, 4, 4);
    EXPECT_EQ(send(1, TestFrame(kGroup, kHostA)), "5");
    EXPECT_EQ(send(6, TestFrame(kGroup, kHostA)), "drop:same_trunk");
}

TEST_F(Trunks, ATrunkWithoutMembersDrops)
{
    place_on_trunk(kHostB);
    chip.trunks.destroy(kTrunk);
    EXPECT_EQ(send(1, kAToB), "drop:trunk_empty");
    chip.trunks.create_id(kTrunk);
    EXPECT_EQ(send(1, kAToB), "drop:trunk_empty");
    EXPECT_EQ(send(1, kToAll), "2 3 4 5 6") << "its members are single ports again";
    members({5});
    EXPECT_EQ(send(1, kAToB), "5");
}

TEST_F(Trunks, TheChipDoesNotChooseAnotherMemberForOneThatIsDown)
{
    place_on_trunk(kHostB);
    members({5});
    chip.ports.set_link(5, false);
    EXPECT_EQ(send(1, kAToB), "drop:egress_down");
    members({4, 5});
    chip.ports.set_link(4, false);
    EXPECT_EQ(send(1, kToAll), "2 3 6");
    members({5, 6});
    EXPECT_EQ(send(1, kToAll), "2 3");
    members({6});
    EXPECT_EQ(send(1, kAToB), "6");
}

TEST_F(Trunks, MembershipSpanningTreeAndTagAreThoseOfTheMember)
{
    place_on_trunk(kHostB);
    members({5});
    chip.vlans.remove_ports(1, {5});
    EXPECT_EQ(send(1, kAToB), "drop:egress_not_member");
    EXPECT_EQ(send(1, kToAll), "2 3 4 6");
    chip.vlans.add_ports(1, {5}, {});
    EXPECT_EQ(send(1, kAToB), "5:v1");
    chip.stgs.set(1, 5, 1);
    EXPECT_EQ(send(1, kAToB), "drop:egress_stp");
}

TEST_F(Trunks, AnEntryMayBlockTheMember)
{
    members({5});
    place_on_trunk(kHostB, kTrunk, {5});
    EXPECT_EQ(send(1, kAToB), "drop:entry_blocked");
    members({6});
    EXPECT_EQ(send(1, kAToB), "6");
}

TEST_F(Trunks, ATraceTellsWhichMemberAndWhy)
{
    place_on_trunk(kHostB);
    members({5, 6}, BCM_TRUNK_PSC_SRCIP, 6);
    chip.trunks.set_criterion(kTrunk, BCM_TRUNK_PSC_SRCIP);
    std::string text = trace_frame(chip, cpu, 1, kAToB.ip(1, 2), names).text;
    EXPECT_NE(text.find("of 5,6, by source IP\n"), std::string::npos) << text;
    text = trace_frame(chip, cpu, 1, TestFrame(kHostC, kHostA), names).text;
    EXPECT_NE(text.find("another port sends for the trunks of 5\n"), std::string::npos) << text;
    text = trace_frame(chip, cpu, 5, TestFrame(kHostC, kHostA), names).text;
    EXPECT_NE(text.find("is unknown; learned here, on trunk 7\n"), std::string::npos) << text;
}

} // namespace
} // namespace vexosim
