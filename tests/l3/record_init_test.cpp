// An SDK whose fresh records are not empty, and whose answer to the preparation is the test's to
// choose: what operations set, clear and leave alone. The record functions are this file's own.
#include <bcmx/l3.h>

#include "tests/l3/addresses.h"

namespace {

int prepared = 0;

constexpr uint32_t unknown = 0x1000;
constexpr uint32_t left_over = unknown | BCM_L3_TGID | BCM_L3_IP6;

struct L3Records : QuietCardTest {
    L3Records()
    {
        inject({.call = "bcmx_l3_host_add", .sticky = true, .code = 0, .do_nothing = true});
        inject({.call = "bcmx_l3_route_add", .sticky = true, .code = 0, .do_nothing = true});
        clear_calls();
    }

    bool add(bool is_trunk)
    {
        return sdk().add_l3_host_ip4(mp(3), is_trunk, ip4(10, 0, 0, 7), next_hop.data(), 5);
    }
    bool add6(bool is_trunk)
    {
        return sdk().add_l3_host_ip6(mp(3), is_trunk, host6.data(), next_hop.data(), 5);
    }

    /// The flags in the last call, and the call's egress.
    static std::string flags_and_egress()
    {
        const std::string call = take_calls();
        const std::size_t flags = call.rfind("flags=") + 6;
        const std::size_t egress = call.rfind(", ") + 2;
        return call.substr(flags, call.find(',', flags) - flags) + " " +
               call.substr(egress, call.rfind('}') - egress);
    }
};

} // namespace

extern "C" int bcmx_l3_intf_t_init(bcmx_l3_intf_t* intf)
{
    *intf = {};
    intf->l3i_flags = unknown;
    return prepared;
}

extern "C" int bcmx_l3_host_t_init(bcmx_l3_host_t* host)
{
    *host = {};
    host->l3a_flags = left_over;
    return prepared;
}

extern "C" int bcmx_l3_route_t_init(bcmx_l3_route_t* route)
{
    *route = {};
    route->l3r_flags = left_over;
    route->l3r_ip_mask = 0xffffff00;
    route->l3r_ip6_mask[0] = 0xff;
    return prepared;
}

TEST_F(L3Records, AnInterfaceKeepsTheFlagsItHas)
{
    unsigned id = 0;
    sdk().create_l3_interface(router.data(), 10, id);
    EXPECT_EQ(flags_and_egress(), "0x1020 vid=10");
    sdk().create_l3_interface_with_id(router.data(), 10, 5, true);
    EXPECT_EQ(flags_and_egress(), "0x1160 vid=10");
    sdk().create_l3_interface_with_id(router.data(), 10, 5, false);
    EXPECT_EQ(flags_and_egress(), "0x1060 vid=10");
}

TEST_F(L3Records, DeletingAnInterfaceStartsFromAnEmptyRecord)
{
    sdk().delete_l3_interface(router.data(), 10);
    EXPECT_EQ(flags_and_egress(), "0 vid=10");
    sdk().delete_l3_interface_by_id(5);
    EXPECT_EQ(flags_and_egress(), "0 vid=0");
}

TEST_F(L3Records, AHostSaysPortOrTrunkAndItsFamily)
{
    add(false);
    EXPECT_EQ(flags_and_egress(), "0x1000 port=3");
    add(true);
    EXPECT_EQ(flags_and_egress(), "0x1200 trunk=3");
    prepared = 1;
    add6(false);
    EXPECT_EQ(flags_and_egress(), "0x21000 port=3");
    add6(true);
    EXPECT_EQ(flags_and_egress(), "0x21200 trunk=3");
}

TEST_F(L3Records, ARouteSaysPortOrTrunkAndItsFamily)
{
    sdk().add_l3_route_ip4(mp(3), false, 0, 0, next_hop.data(), 5, 0);
    EXPECT_EQ(flags_and_egress(), "0x1000 port=3");
    sdk().add_l3_route_ip4(mp(3), true, 0, 0, next_hop.data(), 5, 0);
    EXPECT_EQ(flags_and_egress(), "0x1200 trunk=3");
    sdk().add_l3_route_ip6(mp(3), false, net6.data(), mask6.data(), next_hop.data(), 5);
    EXPECT_EQ(flags_and_egress(), "0x21000 port=3");
    sdk().add_l3_route_ip6(mp(3), true, net6.data(), mask6.data(), next_hop.data(), 5);
    EXPECT_EQ(flags_and_egress(), "0x21200 trunk=3");
}

TEST_F(L3Records, DeletingByInterfaceAddsAFlagAndTakesNoneAway)
{
    sdk().delete_l3_host_by_interface(5, true);
    EXPECT_EQ(flags_and_egress(), "0x21200 trunk=0");
    sdk().delete_l3_host_by_interface(5, false);
    EXPECT_EQ(flags_and_egress(), "0x21280 trunk=0");
    sdk().delete_l3_route_by_interface(5, true);
    EXPECT_EQ(flags_and_egress(), "0x21200 trunk=0");
    sdk().delete_l3_route_by_interface(5, false);
    EXPECT_EQ(flags_and_egress(), "0x21280 trunk=0");
}

TEST_F(L3Records, DeletingByNetworkLeavesTheMaskAndTheEgressAsTheyAre)
{
    const std::string rest = ", intf=0, nexthop_mac=00:00:00:00:00:00, nexthop_ip=0.0.0.0, "
                             "trunk=0})\n";
    sdk().delete_l3_host_by_network_ip4(ip4(10, 0, 0, 0));
    EXPECT_EQ(take_calls(), "bcmx_l3_host_delete_by_network({flags=0x1200, net=10.0.0.0, "
                            "mask=255.255.255.0" +
                                rest);
    sdk().delete_l3_host_by_network_ip6(net6.data());
    EXPECT_EQ(take_calls(), "bcmx_l3_host_delete_by_network({flags=0x21200, "
                            "net=20010db8000000000000000000000000, "
                            "mask=ff000000000000000000000000000000" +
                                rest);
}

TEST_F(L3Records, AnIpv6HostIsAddedWhen1IsAnsweredAndAnIpv4HostWhen0Is)
{
    for (int answer = -20; answer <= 2; ++answer) {
        prepared = answer;
        EXPECT_EQ(add(false), answer == 0) << answer;
        EXPECT_EQ(add6(false), answer == 1) << answer;
    }
}

TEST_F(L3Records, AddingAnIpv6HostFailsWithItsCallUnlessTheHostExists)
{
    prepared = 1;
    for (int code = -20; code <= 1; ++code) {
        clear_faults();
        inject({.call = "bcmx_l3_host_add", .code = code, .do_nothing = code >= 0});
        EXPECT_EQ(add6(false), code == 0 || code == -8) << code;
    }
}
