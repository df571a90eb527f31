// Flows between Linux hosts: where their frames go, and what becomes of them.

#include "tests/hosts/flow_lab.h"
#include "tests/hosts/transfer.h"

namespace {

constexpr std::uint64_t kMegabyte = 1 << 20;

class FlowsBetweenHosts : public FlowLab {
protected:
    /// Whatever host a sends in one IP protocol.
    static of_flow_mp_s from_a(std::uint16_t protocol)
    {
        of_flow_mp_s match = {};
        match.src_ip = in_net_a(1);
        match.src_ip_mask = 0xffffffff;
        match.ip_protocol = protocol;
        match.flags = OF_QUALIFY_SRC_IP | OF_QUALIFY_IP_PROTOCOL;
        return match;
    }

    /// Five pings that nobody answers.
    void pings_in_vain(const std::string& more = {})
    {
        const std::string output =
            a->run("ping -q -c 5 -i 0.1 -W 0.3 " + more + " 192.0.2.2").output;
        EXPECT_NE(output.find("5 packets transmitted, 0 received"), std::string::npos) << output;
    }
    static std::size_t lines_with(const std::string& text, const std::string& part)
    {
        std::size_t count = 0;
        for (std::size_t at = text.find(part); at != std::string::npos;
             at = text.find(part, at + 1)) {
            ++count;
        }
        return count;
    }
};

} // namespace

TEST_F(FlowsBetweenHosts, RedirectOneHostsTcpPortToAThirdHost)
{
    Host& c = host(3, "192.0.2.3/24");
    // The third host answers for the second one, but does not say that it has the address.
    c.run("sysctl -qw net.ipv4.conf.all.arp_ignore=1; ip addr add 192.0.2.2/32 dev lo");
    c.run("ip neigh replace 192.0.2.1 lladdr " + mac_of(1) + " dev h3");
    a->run("ip neigh replace 192.0.2.2 lladdr " + mac_of(2) + " dev h1");
    wait_for_ports("1-3");
    ASSERT_TRUE(reaches(*a, "192.0.2.2"));
    of_flow_mp_s match = from_a(6);
    match.l4_dst_port = Transfer::kPort;
    match.flags |= OF_QUALIFY_L4_DST_PORT;
    const unsigned flow = add(match);
    send_to_mac_of(flow, 3);
    output(flow, 3);

    const std::uint64_t to_b = out_octets(2);
    Transfer transfer(*a, c, "192.0.2.2");
    EXPECT_TRUE(comes_true([&] { return transfer.received() > kMegabyte; }));
    EXPECT_TRUE(reaches(*a, "192.0.2.2"));
    b->run("ip link set h2 down");
    EXPECT_TRUE(is_cut_off(*a, "192.0.2.2")) << "pings are not redirected";
    EXPECT_TRUE(transfer.finish());
    EXPECT_LT(out_octets(2) - to_b, kMegabyte / 2);
    EXPECT_GT(counted(flow), kMegabyte / 1500);

    b->run("ip link set h2 up");
    wait_for_ports("2");
    remove(flow);
    ASSERT_TRUE(reaches(*a, "192.0.2.2"));
    const Ran refused = a->run("bash -c \"exec 3<>/dev/tcp/192.0.2.2/7000\"");
    EXPECT_NE(refused.output.find("Connection refused"), std::string::npos) << refused.output;
}

TEST_F(FlowsBetweenHosts, DropAPingAndCountWhatTcpdumpSaw)
{
    wait_for_ports("1,2");
    ASSERT_TRUE(reaches(*a, "192.0.2.2"));
    const unsigned flow = add(from_a(1));
    act(flow, OF_ACTION_DROP);
    const int sent = a->start("tcpdump -l -n --immediate-mode -i h1 icmp");
    const int arrived = b->start("tcpdump -n -c 1 --immediate-mode -i h2 icmp");
    read_until(sent, "listening on");
    read_until(arrived, "listening on");
    pings_in_vain();
    const std::string seen = read_until(sent, "seq 5,");
    const std::size_t frames = lines_with(seen, "ICMP");
    EXPECT_EQ(frames, 5u) << seen;
    EXPECT_TRUE(comes_true([&] { return counted(flow) >= frames; }));
    EXPECT_EQ(counted(flow), frames);

    remove(flow);
    EXPECT_EQ(a->run("ping -q -c 1 -s 100 -W 20 192.0.2.2").status, 0);
    const std::string first = read_until(arrived, "1 packet captured");
    EXPECT_NE(first.find("length 108\n"), std::string::npos) << first;
}

TEST_F(FlowsBetweenHosts, RewriteTheVlanInBothDirections)
{
    TaggedHost c(host(3), 3, 20, "192.0.2.3/24");
    sh("vlan access 10 1; vlan add 10 tagged 3; vlan create 20; vlan add 20 tagged 3");
    wait_for_ports("1,3");
    EXPECT_TRUE(is_cut_off(*a, "192.0.2.3"));
    of_flow_mp_s match = {};
    match.port = Mp(0, 1);
    match.flags = OF_QUALIFY_IN_PORT;
    const unsigned there = add(match);
    set_vlan(there, 20);
    match.port = Mp(0, 3);
    match.vlan_id = 20;
    match.flags = OF_QUALIFY_IN_PORT | OF_QUALIFY_VLAN_ID;
    const unsigned back = add(match);
    set_vlan(back, 10);
    output(back, 1);
    EXPECT_TRUE(reaches(*a, "192.0.2.3"));
    const int on_wire = c->start("tcpdump -n -c 2 --immediate-mode -i h3 vlan 20 and icmp");
    read_until(on_wire, "listening on");
    EXPECT_EQ(a->run("ping -q -c 1 -s 100 -W 20 192.0.2.3").status, 0);
    const std::string seen = read_until(on_wire, "2 packets captured");
    EXPECT_EQ(lines_with(seen, "length 108\n"), 2u) << seen;

    remove(there);
    EXPECT_TRUE(is_cut_off(*a, "192.0.2.3"));
}

TEST_F(FlowsBetweenHosts, MatchBytesOfThePayload)
{
    wait_for_ports("1,2");
    ASSERT_TRUE(reaches(*a, "192.0.2.2"));
    // A ping's pattern is in step with its first data byte, 42; 16 bytes of time come first.
    const std::vector<std::uint8_t> pattern = {0xfe, 0x00, 0x42, 0xca, 0xfe}, all(5, 0xff);
    of_flow_mp_s match = {};
    match.flags = OF_QUALIFY_UDF;
    const unsigned flow = add(match, {59, 5, pattern.data(), all.data()});
    act(flow, OF_ACTION_DROP);
    pings_in_vain("-p cafe0042");
    EXPECT_TRUE(comes_true([&] { return counted(flow) >= 5; }));
    EXPECT_EQ(counted(flow), 5u);
    EXPECT_EQ(a->run("ping -q -c 1 -W 20 -p cafe0043 192.0.2.2").status, 0);
    EXPECT_EQ(a->run("ping -q -c 1 -W 20 -p 00cafe42 192.0.2.2").status, 0);
    EXPECT_EQ(counted(flow), 5u);
    remove(flow);
    EXPECT_EQ(a->run("ping -q -c 1 -W 20 -p cafe0042 192.0.2.2").status, 0);
}
