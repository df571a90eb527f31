// Layer 2 between Linux hosts: VLANs, moves, mirrors, discovery.

#include "tests/hosts/lab.h"

namespace {

class LayerTwo : public Lab {};

bool contains_line(const std::string& text, const std::string& middle, const std::string& end)
{
    const std::size_t at = text.find(middle);
    for (std::size_t line = at; line != std::string::npos; line = text.find(middle, line + 1)) {
        if (text.substr(line, text.find('\n', line) + 1 - line).ends_with(end)) {
            return true;
        }
    }
    return false;
}

} // namespace

TEST_F(LayerTwo, TwoVlansShareATaggedPortAndStayApart)
{
    Host& a = host(1, "192.0.2.1/24");
    Host& b = host(2, "192.0.2.2/24");
    b.run("ip addr add 198.51.100.2/24 dev h2");
    Host& trunk = host(3);
    OpenSwitch interfaces(trunk); // with an interface in each VLAN, tagged on the wire
    interfaces.set("add-port br0 h3 trunks=10,20"
                   " -- add-port br0 v10 tag=10 -- set interface v10 type=internal"
                   " -- add-port br0 v20 tag=20 -- set interface v20 type=internal");
    trunk.run("ip addr add 192.0.2.3/24 dev v10; ip addr add 198.51.100.3/24 dev v20");
    trunk.run("ip link set v10 up; ip link set v20 up");
    sh("vlan access 10 1; vlan access 20 2; vlan add 10 tagged 3; vlan add 20 tagged 3");
    sh("vlan remove 1 3");
    EXPECT_TRUE(reaches(a, "192.0.2.3"));
    EXPECT_TRUE(reaches(b, "198.51.100.3"));
    EXPECT_TRUE(is_cut_off(a, "192.0.2.2"));
    sh("vlan access 10 2; vlan remove 20 2");
    EXPECT_TRUE(reaches(a, "192.0.2.2"));
}

TEST_F(LayerTwo, AHostThatMovesIsReachableAgainAtOnce)
{
    Host& a = host(1, "192.0.2.1/24");
    Host& b = host(2, "192.0.2.2/24");
    plug(b, 3);
    wait_for_ports("1-3");
    EXPECT_TRUE(reaches(a, "192.0.2.2"));
    EXPECT_NE(sh("show fdb port 2").find(mac_of(2)), std::string::npos);
    // The old port keeps its link: only the first frame tells of the move.
    b.run(
        "ip addr flush dev h2; ip link set h2 address 02:00:00:00:00:99; ip link set h3 address " +
        mac_of(2) + "; ip addr add 192.0.2.2/24 dev h3");
    EXPECT_TRUE(reaches_at_once(b, "192.0.2.1"));
    EXPECT_TRUE(reaches_at_once(a, "192.0.2.2"));
    EXPECT_NE(sh("show fdb port 3").find(mac_of(2)), std::string::npos);
    EXPECT_EQ(sh("show fdb port 2").find(mac_of(2)), std::string::npos);
}

TEST_F(LayerTwo, AMirroredPingIsSeenAtTheDestination)
{
    Host& a = host(1, "192.0.2.1/24");
    host(2, "192.0.2.2/24");
    Host& monitor = host(3);
    wait_for_ports("1-3");
    EXPECT_TRUE(reaches(a, "192.0.2.2"));
    const int seen = monitor.start("tcpdump -n -c 4 --immediate-mode -i h3 icmp");
    read_until(seen, "listening on");
    EXPECT_TRUE(reaches_at_once(a, "192.0.2.2")); // not mirrored
    sh("mirror from 1 to 3 both");
    EXPECT_EQ(a.run("ping -q -c 2 -i 0.1 -s 100 192.0.2.2").status, 0);
    const std::string packets = read_until(seen, "4 packets captured");
    for (const char* sequence : {"1", "2"}) {
        const std::string end = std::string(" seq ") + sequence + ", length 108\n";
        EXPECT_TRUE(contains_line(packets, "192.0.2.1 > 192.0.2.2: ICMP echo request", end))
            << packets;
        EXPECT_TRUE(contains_line(packets, "192.0.2.2 > 192.0.2.1: ICMP echo reply", end))
            << packets;
    }
}

TEST_F(LayerTwo, DiscoveryFramesOfAHostReachTheCpusSubscriber)
{
    Host& a = host(1);
    wait_for_ports("1");
    a.start("mount -t tmpfs none /run && mkdir /run/lldpd && lldpd -d -u /run/lldpd.socket "
            "-I h1");
    const auto heard = [&] {
        return sh("show cpu").find("port 1: vlan 1 LLDP") != std::string::npos;
    };
    EXPECT_TRUE(comes_true(heard));
}
