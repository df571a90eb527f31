// Routing between Linux hosts in subnets of their own. The card is their gateway and answers
// nothing: hosts are told its MAC address, and the card theirs.
#include <arpa/inet.h>

#include <array>

#include "tests/hosts/lab.h"
#include "tests/hosts/transfer.h"

namespace {

constexpr std::uint64_t kMegabyte = 1 << 20;
using Bytes16 = std::array<unsigned char, 16>;

unsigned ip4(const std::string& text)
{
    in_addr address{};
    EXPECT_EQ(::inet_pton(AF_INET, text.c_str(), &address), 1) << text;
    return ntohl(address.s_addr);
}

Bytes16 ip6(const std::string& text)
{
    Bytes16 address{};
    EXPECT_EQ(::inet_pton(AF_INET6, text.c_str(), address.data()), 1) << text;
    return address;
}

/// Three subnets: 192.0.2.0/25 with hosts a and b at ports 1 and 2, 198.51.100.0/25 with c at port
/// 3, 203.0.113.0/25 with d; and 2001:db8:10::/64, :20:: and :30::. Of each the gateway is the
/// last, fe.
class RoutedHosts : public Lab {
protected:
    void build() override
    {
        a = &host(1);
        b = &host(2);
        c = &host(3);
        sh("vlan access 10 1-2; vlan access 20 3");
        make_router(10);
        make_router(20);
        make_router(30);
        join(*a, "h1", 10, "192.0.2.1/25", "192.0.2.126");
        join(*b, "h2", 10, "192.0.2.2/25", "192.0.2.126");
        join(*c, "h3", 20, "198.51.100.3/25", "198.51.100.126");
        wait_for_ports("1-3");
        add_host("192.0.2.1", 1, 10);
        add_host("192.0.2.2", 2, 10);
        add_host("198.51.100.3", 3, 20);
        add_route6("2001:db8:10::1/128", 1, 10);
        add_route6("2001:db8:10::2/128", 2, 10);
        add_route6("2001:db8:20::3/128", 3, 20);
    }

    VexoSdkBase& sdk() { return *session().driver(); }
    static std::array<unsigned char, 6> mac(int last)
    {
        return {2, 0, 0, 0, 0, static_cast<unsigned char>(last)};
    }
    /// The router in a VLAN is interface VLAN with the MAC address 02:00:00:00:00:VLAN.
    void make_router(int vid)
    {
        const auto id = static_cast<unsigned>(vid);
        EXPECT_TRUE(sdk().create_l3_interface_with_id(mac(vid).data(), id, id, false));
    }
    /// A host's addresses, and the gateway of its subnets.
    static void join(Host& host, const std::string& interface, int vid, const std::string& address,
                     const std::string& gateway)
    {
        const std::string on = " dev " + interface;
        const std::string net6 = "2001:db8:" + std::to_string(vid) + "::";
        const std::string last = address.substr(address.rfind('.') + 1, 1);
        const std::string router = " lladdr " + vexosh::text(vexosh::Mac(mac(vid))) + on;
        const std::vector<std::string> commands = {
            "sysctl -q -w net.ipv6.conf.all.disable_ipv6=0",
            "sysctl -q -w net.ipv6.conf." + interface + ".disable_ipv6=0",
            "ip addr add " + address + on,
            "ip -6 addr add " + net6 + last + "/64" + on + " nodad",
            "ip neigh replace " + gateway + router,
            "ip -6 neigh replace " + net6 + "fe" + router,
            "ip route add default via " + gateway,
            "ip -6 route add default via " + net6 + "fe"};
        for (const std::string& command : commands) {
            const Ran ran = host.run(command);
            EXPECT_EQ(ran.status, 0) << command << ": " << ran.output;
        }
    }
    /// Hosts have the MAC address 02:00:00:00:00:PORT.
    void add_host(const std::string& address, unsigned port, unsigned interface)
    {
        EXPECT_TRUE(sdk().add_l3_host_ip4(vexosh::parse_port(std::to_string(port)), false,
                                          ip4(address), mac(static_cast<int>(port)).data(),
                                          interface));
    }
    void add_route(const std::string& net, unsigned length, unsigned port, unsigned interface)
    {
        const unsigned mask = length == 0 ? 0 : ~0u << (32 - length);
        EXPECT_TRUE(sdk().add_l3_route_ip4(vexosh::parse_port(std::to_string(port)), false,
                                           ip4(net), mask, mac(static_cast<int>(port)).data(),
                                           interface, 0));
    }
    void add_route6(const std::string& prefix, unsigned port, unsigned interface)
    {
        const std::size_t slash = prefix.find('/');
        const unsigned long length = std::stoul(prefix.substr(slash + 1));
        Bytes16 mask{};
        for (std::size_t bit = 0; bit < length; ++bit) {
            mask[bit / 8] = static_cast<unsigned char>(mask[bit / 8] | 0x80 >> bit % 8);
        }
        EXPECT_TRUE(sdk().add_l3_route_ip6(vexosh::parse_port(std::to_string(port)), false,
                                           ip6(prefix.substr(0, slash)).data(), mask.data(),
                                           mac(static_cast<int>(port)).data(), interface));
    }
    std::string state()
    {
        std::string text;
        for (const vexosim::TextTable& table :
             {vexosim::l3_interfaces_table(), vexosim::l3_hosts_table(), vexosim::l3_routes_table(),
              vexosim::drops_table()}) {
            text += table.text();
        }
        return text + sh("show cpu; show fdb; show counters") +
               a->run("ip -s addr; ip neigh").output;
    }

    Host *a = nullptr, *b = nullptr, *c = nullptr;
};

} // namespace

TEST_F(RoutedHosts, HostsOfDifferentSubnetsReachEachOther)
{
    EXPECT_TRUE(reaches(*a, "198.51.100.3")) << state();
    EXPECT_TRUE(reaches_at_once(*b, "198.51.100.3"));
    EXPECT_TRUE(reaches_at_once(*c, "192.0.2.1"));
    EXPECT_TRUE(reaches(*a, "192.0.2.2")) << "in its own subnet";
    EXPECT_TRUE(is_cut_off(*a, "198.51.100.4"));
}

TEST_F(RoutedHosts, AlsoByIpv6)
{
    EXPECT_TRUE(reaches(*a, "2001:db8:20::3")) << state();
    EXPECT_TRUE(reaches_at_once(*b, "2001:db8:20::3"));
    EXPECT_TRUE(reaches_at_once(*c, "2001:db8:10::2"));
    EXPECT_TRUE(is_cut_off(*a, "2001:db8:20::4"));
}

TEST_F(RoutedHosts, WhatRunsOutOfHopsReachesTheCpuAndIsNotAnswered)
{
    ASSERT_TRUE(reaches(*a, "198.51.100.3")) << state();
    const Ran expired = a->run("ping -n -c 2 -i 0.1 -W 0.3 -t 1 198.51.100.3");
    EXPECT_NE(expired.output.find(" 0 received"), std::string::npos) << expired.output;
    EXPECT_EQ(expired.output.find("exceeded"), std::string::npos) << expired.output;
    const auto on_cpu = [&](const char* packet) {
        return comes_true([&] { return sh("show cpu").find(packet) != std::string::npos; });
    };
    EXPECT_TRUE(on_cpu("port 1: vlan 10 ICMP echo request 192.0.2.1 > 198.51.100.3")) << state();
    EXPECT_EQ(a->run("ping -n -c 1 -W 1 -t 2 198.51.100.3").status, 0) << "the next hop answers";
    a->run("ping -n -c 1 -W 0.3 -t 1 2001:db8:20::3");
    EXPECT_TRUE(on_cpu("ICMPv6 echo request 2001:db8:10::1 > 2001:db8:20::3")) << state();
}

TEST_F(RoutedHosts, ADefaultRouteIsForWhatMoreSpecificOnesLeave)
{
    // What is not in a subnet of the others is beyond host d; but a part of it is c's.
    Host& d = host(4);
    sh("vlan access 30 4");
    join(d, "h4", 30, "203.0.113.4/25", "203.0.113.126");
    c->run("ip addr add 203.0.113.129/32 dev lo");
    d.run("ip addr add 203.0.113.193/32 dev lo");
    wait_for_ports("4");
    add_route("203.0.113.128", 26, 3, 20);
    EXPECT_TRUE(is_cut_off(*a, "203.0.113.193"));
    add_route("0.0.0.0", 0, 4, 30);
    EXPECT_TRUE(reaches(*a, "203.0.113.4")) << state();
    EXPECT_TRUE(reaches_at_once(*a, "203.0.113.193"));
    EXPECT_TRUE(reaches_at_once(*a, "203.0.113.129")) << "c's";
    EXPECT_TRUE(
        sdk().delete_l3_route_by_subnet_ip4(ip4("203.0.113.128"), ~0u << 6, Mp(0, 3), false));
    EXPECT_TRUE(is_cut_off(*a, "203.0.113.129")) << "d does not have it";
    add_route6("2001:db8:30::/64", 4, 30);
    EXPECT_TRUE(reaches(*c, "2001:db8:30::4")) << state();
}

TEST_F(RoutedHosts, ATransferCrossesARoutedLag)
{
    Host& d = host(5);
    plug(d, 6);
    OpenSwitch bond(d);
    bond.set("add-bond br0 bond0 h5 h6 bond_mode=balance-slb -- set bridge br0 "
             "other-config:hwaddr=\\\"02:00:00:00:00:b0\\\"");
    d.run("ip link set br0 up");
    join(d, "br0", 30, "203.0.113.4/25", "203.0.113.126");
    sh("vlan access 30 5-6; lag create; lag add 0 5-6");
    wait_for_ports("5-6");
    EXPECT_TRUE(sdk().add_l3_host_ip4(Mp(0, 0), true, ip4("203.0.113.4"), mac(0xb0).data(), 30));
    ASSERT_TRUE(reaches(*a, "203.0.113.4")) << state() << bond.ask("bond/show");
    Transfer transfer(*a, d, "203.0.113.4");
    EXPECT_TRUE(comes_true([&] { return transfer.received() > kMegabyte; })) << state();
    EXPECT_TRUE(transfer.finish());
    EXPECT_TRUE(transfer.intact());
    EXPECT_GT(out_octets(5) + out_octets(6), kMegabyte);
    EXPECT_TRUE(reaches_at_once(*c, "203.0.113.4"));
}
