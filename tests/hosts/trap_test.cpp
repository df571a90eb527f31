// Frames of Linux hosts that trap filters hand to the CPU's subscribers, untagged and tagged.

#include <set>

#include "tests/hosts/flow_lab.h"

namespace {

class TrapsBetweenHosts : public FlowLab {
protected:
    /// VLAN 10 is hosts a and b, untagged; VLAN 20 is hosts 198.51.100.3 and 198.51.100.4 in ports
    /// 3 and 4, the former tagged.
    void build() override
    {
        TwoHosts::build();
        c = std::make_unique<TaggedHost>(host(3), 3, 20, "198.51.100.3/24");
        d = &host(4, "198.51.100.4/24");
        sh("vlan access 10 1,2; vlan access 20 4; vlan add 20 tagged 3; vlan remove 1 3");
        wait_for_ports("1-4");
    }

    void TearDown() override
    {
        c.reset();
        Lab::TearDown();
    }

    static std::uint32_t load(const std::vector<std::uint8_t>& bytes, std::size_t at, int count)
    {
        std::uint32_t value = 0;
        for (int i = 0; i < count; ++i) {
            value = value << 8 | (at + static_cast<std::size_t>(i) < bytes.size()
                                      ? bytes[at + static_cast<std::size_t>(i)]
                                      : 0u);
        }
        return value;
    }
    /// "port/VLAN" of all that the subscriber has got and that `wanted` takes, each once; it is
    /// asked about what follows the tag, if there is one, from the type on.
    template <typename Wanted>
    std::string heard(Wanted wanted)
    {
        std::set<std::string> places;
        for (const vexosh::CpuPacket& packet : session().cpu_packets()) {
            const std::size_t type_at = load(packet.frame, 12, 2) == 0x8100 ? 16 : 12;
            if (wanted(packet.frame, type_at)) {
                places.insert(std::to_string(packet.user_port) + "/" + std::to_string(packet.vid));
            }
        }
        std::string text;
        for (const std::string& place : places) {
            text += (text.empty() ? "" : " ") + place;
        }
        return text;
    }
    /// Questions for a host's address.
    std::string heard_arp_for(std::uint32_t target)
    {
        return heard([target](const auto& frame, std::size_t type_at) {
            return load(frame, type_at, 2) == 0x0806 && load(frame, type_at + 8, 2) == 1 &&
                   load(frame, type_at + 26, 4) == target;
        });
    }
    /// Pings.
    std::string heard_pings_to(std::uint32_t target)
    {
        return heard([target](const auto& frame, std::size_t type_at) {
            return load(frame, type_at, 2) == 0x0800 && load(frame, type_at + 11, 1) == 1 &&
                   load(frame, type_at + 18, 4) == target && load(frame, type_at + 22, 1) == 8;
        });
    }

    std::unique_ptr<TaggedHost> c;
    Host* d = nullptr;
};

} // namespace

TEST_F(TrapsBetweenHosts, ArpForAnAddressGoesToTheCpuAndNowhereElse)
{
    EXPECT_TRUE(session().driver()->add_arp_filter(in_net_a(2), 0xffffffff));
    EXPECT_TRUE(session().driver()->add_arp_filter(in_net_b(0), 0xffffff00));
    EXPECT_TRUE(is_cut_off(*a, "192.0.2.2"));
    EXPECT_TRUE(is_cut_off(**c, "198.51.100.4"));
    EXPECT_TRUE(comes_true([&] { return !heard_arp_for(in_net_a(2)).empty(); }));
    EXPECT_TRUE(comes_true([&] { return !heard_arp_for(in_net_b(4)).empty(); }));
    EXPECT_EQ(heard_arp_for(in_net_a(2)), "1/10");
    EXPECT_EQ(heard_arp_for(in_net_b(4)), "3/20");

    EXPECT_TRUE(session().driver()->delete_arp_filter(in_net_a(2), 0xffffffff));
    EXPECT_TRUE(reaches(*a, "192.0.2.2"));
    EXPECT_TRUE(is_cut_off(**c, "198.51.100.4"));
    EXPECT_TRUE(session().driver()->delete_arp_filter_all());
    EXPECT_TRUE(reaches(**c, "198.51.100.4"));
}

TEST_F(TrapsBetweenHosts, IcmpGoesToTheCpuAndNowhereElse)
{
    ASSERT_TRUE(reaches(*a, "192.0.2.2"));
    ASSERT_TRUE(reaches(**c, "198.51.100.4"));
    EXPECT_EQ(heard_pings_to(in_net_a(2)), "");
    EXPECT_EQ(heard_pings_to(in_net_b(4)), "");
    EXPECT_TRUE(session().driver()->add_ip_protocol_filter(1));
    EXPECT_TRUE(is_cut_off(*a, "192.0.2.2"));
    EXPECT_TRUE(is_cut_off(**c, "198.51.100.4"));
    EXPECT_TRUE(comes_true([&] { return !heard_pings_to(in_net_a(2)).empty(); }));
    EXPECT_TRUE(comes_true([&] { return !heard_pings_to(in_net_b(4)).empty(); }));
    EXPECT_EQ(heard_pings_to(in_net_a(2)), "1/10");
    EXPECT_EQ(heard_pings_to(in_net_b(4)), "3/20");

    EXPECT_TRUE(session().driver()->delete_ip_protocol_filter(1));
    EXPECT_TRUE(reaches(*a, "192.0.2.2"));
    EXPECT_TRUE(reaches(**c, "198.51.100.4"));
}
