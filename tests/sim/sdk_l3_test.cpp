#include <bcm/l2.h>
#include <bcmx/l2.h>
#include <bcmx/l3.h>
#include <bcmx/trunk.h>

#include <cstring>

#include "tests/sim/card_that_is_up.h"
#include "vexosim/state.h"

namespace {

void set_mac(bcm_mac_t mac, int last)
{
    const bcm_mac_t value = {2, 0, 0, 0, 0, static_cast<uint8_t>(last)};
    std::memcpy(mac, value, sizeof value);
}

bcmx_l3_intf_t interface_of(int mac, int vid)
{
    bcmx_l3_intf_t intf;
    bcmx_l3_intf_t_init(&intf);
    set_mac(intf.l3i_mac_addr, mac);
    intf.l3i_vid = static_cast<bcm_vlan_t>(vid);
    return intf;
}

/// Interfaces 0 and 1, in VLANs 10 and 11.
struct SdkL3 : CardThatIsUp {
    SdkL3()
    {
        for (int vid : {10, 11}) {
            bcmx_l3_intf_t intf = interface_of(1, vid);
            bcmx_l3_intf_create(&intf);
        }
    }

    static bcmx_l3_host_t host(bcm_ip_t ip, unsigned intf = 0)
    {
        bcmx_l3_host_t record;
        bcmx_l3_host_t_init(&record);
        record.l3a_ip_addr = ip;
        record.l3a_intf = intf;
        record.l3a_lport = lport(1);
        set_mac(record.l3a_nexthop_mac, 9);
        return record;
    }

    static bcmx_l3_host_t host6(uint8_t last)
    {
        bcmx_l3_host_t record = host(0);
        record.l3a_flags = BCM_L3_IP6;
        record.l3a_ip6_addr[0] = 0x20;
        record.l3a_ip6_addr[15] = last;
        return record;
    }

    static bcmx_l3_route_t route(bcm_ip_t net, bcm_ip_t mask, unsigned intf = 0)
    {
        bcmx_l3_route_t record;
        bcmx_l3_route_t_init(&record);
        record.l3r_ip_addr = net;
        record.l3r_ip_mask = mask;
        record.l3r_intf = intf;
        record.l3r_lport = lport(1);
        record.l3r_nexthop_ip = 0x0a0000fe;
        set_mac(record.l3r_nexthop_mac, 9);
        return record;
    }

    static bcmx_l2_addr_t mac_entry(int mac, int vid, uint32_t flags)
    {
        bcmx_l2_addr_t entry = {};
        set_mac(entry.mac, mac);
        entry.vid = static_cast<bcm_vlan_t>(vid);
        entry.flags = flags;
        return entry;
    }
    static bool fdb_has(const std::string& line)
    {
        return vexosim::fdb_table().text().find(line) != std::string::npos;
    }

    static int find(bcmx_l3_host_t record) { return bcmx_l3_host_find(&record); }
    static int find(bcmx_l3_route_t record) { return bcmx_l3_route_get(&record); }
    static int add(bcmx_l3_host_t record) { return bcmx_l3_host_add(&record); }
    static int add(bcmx_l3_route_t record) { return bcmx_l3_route_add(&record); }
};

TEST(SdkL3BeforeBringUp, IsNotInitialised)
{
    bcmx_l3_intf_t intf = interface_of(1, 1);
    bcmx_l3_host_t host = {};
    bcmx_l3_route_t route = {};
    EXPECT_EQ(bcmx_l3_intf_create(&intf), BCM_E_INIT);
    EXPECT_EQ(bcmx_l3_host_add(&host), BCM_E_INIT);
    EXPECT_EQ(bcmx_l3_route_add(&route), BCM_E_INIT);
    EXPECT_EQ(bcmx_l3_validate_entry(1), BCM_E_INIT);
}

TEST(SdkL3Records, AreClearedAndNullIsRefused)
{
    bcmx_l3_intf_t intf;
    bcmx_l3_host_t host;
    bcmx_l3_route_t route;
    std::memset(&intf, 0xff, sizeof intf);
    std::memset(&host, 0xff, sizeof host);
    std::memset(&route, 0xff, sizeof route);
    EXPECT_EQ(bcmx_l3_intf_t_init(&intf), 0);
    EXPECT_EQ(bcmx_l3_host_t_init(&host), 0);
    EXPECT_EQ(bcmx_l3_route_t_init(&route), 0);
    EXPECT_EQ(intf.l3i_vid, 0);
    EXPECT_EQ(host.l3a_ip6_addr[15], 0);
    EXPECT_EQ(route.l3r_trunk_id, 0);
    EXPECT_EQ(bcmx_l3_intf_t_init(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_host_t_init(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_route_t_init(nullptr), BCM_E_PARAM);
}

TEST_F(SdkL3, InterfacesAreFoundByIdAndByAddress)
{
    bcmx_l3_intf_t intf = {};
    intf.l3i_intf_id = 1;
    ASSERT_EQ(bcmx_l3_intf_get(&intf), 0);
    EXPECT_EQ(intf.l3i_vid, 11);
    EXPECT_EQ(intf.l3i_mac_addr[5], 1);
    bcmx_l3_intf_t wanted = interface_of(1, 11);
    ASSERT_EQ(bcmx_l3_intf_find(&wanted), 0);
    EXPECT_EQ(wanted.l3i_intf_id, 1u);
}

TEST_F(SdkL3, AnInterfaceThatExistsIsNamed)
{
    bcmx_l3_intf_t intf = interface_of(1, 11);
    EXPECT_EQ(bcmx_l3_intf_create(&intf), BCM_E_EXISTS);
    EXPECT_EQ(intf.l3i_intf_id, 1u);
}

TEST_F(SdkL3, AnInterfaceIsReplacedOnRequestOnly)
{
    bcmx_l3_intf_t intf = interface_of(2, 12);
    intf.l3i_intf_id = 1;
    intf.l3i_flags = BCM_L3_WITH_ID | BCM_L3_ADD_TO_ARL;
    EXPECT_EQ(bcmx_l3_intf_create(&intf), BCM_E_EXISTS);
    intf.l3i_flags |= BCM_L3_REPLACE;
    EXPECT_EQ(bcmx_l3_intf_create(&intf), 0);
    bcmx_l3_intf_t old = interface_of(1, 11);
    EXPECT_EQ(bcmx_l3_intf_find(&old), BCM_E_NOT_FOUND);
}

TEST_F(SdkL3, RefusesBadInterfaces)
{
    bcmx_l3_intf_t intf = interface_of(1, 4095);
    EXPECT_EQ(bcmx_l3_intf_create(&intf), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_intf_find(&intf), BCM_E_NOT_FOUND);
    intf = interface_of(1, 20);
    intf.l3i_flags = 1;
    EXPECT_EQ(bcmx_l3_intf_create(&intf), BCM_E_PARAM);
    intf.l3i_flags = 0;
    intf.l3i_mac_addr[0] = 1;
    EXPECT_EQ(bcmx_l3_intf_create(&intf), BCM_E_PARAM);
    intf.l3i_intf_id = 512;
    EXPECT_EQ(bcmx_l3_intf_get(&intf), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_l3_intf_delete(&intf), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_l3_intf_create(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_intf_get(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_intf_find(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_intf_delete(nullptr), BCM_E_PARAM);
}

TEST_F(SdkL3, InterfacesGoOneByOneOrAllTogether)
{
    bcmx_l3_intf_t intf = {};
    EXPECT_EQ(bcmx_l3_intf_delete(&intf), 0);
    EXPECT_EQ(bcmx_l3_intf_delete(&intf), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_l3_intf_delete_all(), 0);
    intf.l3i_intf_id = 1;
    EXPECT_EQ(bcmx_l3_intf_get(&intf), BCM_E_NOT_FOUND);
}

TEST_F(SdkL3, AnInterfaceHasAMacEntryIfItAsksForOne)
{
    EXPECT_FALSE(fdb_has("02:00:00:00:00:01")) << "none has";
    bcmx_l2_addr_t learned = mac_entry(2, 12, 0);
    learned.lport = lport(1);
    ASSERT_EQ(bcmx_l2_addr_add(&learned, nullptr), 0);
    bcmx_l3_intf_t intf = interface_of(2, 12);
    intf.l3i_flags = BCM_L3_ADD_TO_ARL;
    ASSERT_EQ(bcmx_l3_intf_create(&intf), 0);
    EXPECT_TRUE(fdb_has("  12  02:00:00:00:00:02  cpu   static")) << "in the learned one's place";
}

TEST_F(SdkL3, AnInterfaceLeavesMacEntriesThatAreNotItsOwn)
{
    bcmx_trunk_create_id(4);
    bcmx_l2_addr_t on_trunk = mac_entry(2, 12, BCM_L2_STATIC | BCM_L2_TRUNK_MEMBER),
                   learned = mac_entry(3, 12, 0);
    on_trunk.tgid = 4;
    learned.lport = lport(53);
    for (bcmx_l2_addr_t* other : {&on_trunk, &learned}) {
        bcmx_l3_intf_t intf = interface_of(other->mac[5], 12);
        intf.l3i_flags = BCM_L3_ADD_TO_ARL;
        ASSERT_EQ(bcmx_l3_intf_create(&intf), 0);
        ASSERT_EQ(bcmx_l2_addr_delete(other->mac, 12), 0);
        ASSERT_EQ(bcmx_l2_addr_add(other, nullptr), 0);
        ASSERT_EQ(bcmx_l3_intf_delete(&intf), 0);
    }
    EXPECT_TRUE(fdb_has("02:00:00:00:00:02"));
    EXPECT_TRUE(fdb_has("02:00:00:00:00:03"));
}

TEST_F(SdkL3, GivesBackTheHostThatWasAdded)
{
    ASSERT_EQ(add(host(0x0a000001, 1)), 0);
    bcmx_l3_host_t found;
    bcmx_l3_host_t_init(&found);
    found.l3a_ip_addr = 0x0a000001;
    ASSERT_EQ(bcmx_l3_host_find(&found), 0);
    EXPECT_EQ(found.l3a_intf, 1u);
    EXPECT_EQ(found.l3a_nexthop_mac[5], 9);
    EXPECT_EQ(found.l3a_lport, lport(1));
    EXPECT_EQ(found.l3a_trunk_id, -1);
    EXPECT_EQ(found.l3a_flags, 0u);
}

TEST_F(SdkL3, AHostMayBeBehindATrunk)
{
    bcmx_l3_host_t record = host6(7);
    record.l3a_flags |= BCM_L3_TGID;
    record.l3a_trunk_id = 4;
    EXPECT_EQ(add(record), BCM_E_NOT_FOUND);
    record.l3a_trunk_id = 128;
    EXPECT_EQ(add(record), BCM_E_PARAM);
    bcmx_trunk_create_id(4);
    record.l3a_trunk_id = 4;
    EXPECT_EQ(add(record), 0);
    bcmx_l3_host_t found = host6(7);
    ASSERT_EQ(bcmx_l3_host_find(&found), 0);
    EXPECT_EQ(found.l3a_flags, BCM_L3_TGID | BCM_L3_IP6);
    EXPECT_EQ(found.l3a_trunk_id, 4);
    EXPECT_EQ(found.l3a_lport, -1);
}

TEST_F(SdkL3, AHostIsThereOnce)
{
    ASSERT_EQ(add(host(1)), 0);
    bcmx_l3_host_t record = host(1);
    EXPECT_EQ(bcmx_l3_host_add(&record), BCM_E_EXISTS);
    record.l3a_flags = BCM_L3_REPLACE;
    EXPECT_EQ(bcmx_l3_host_add(&record), 0);
    EXPECT_EQ(bcmx_l3_host_delete(&record), 0);
    EXPECT_EQ(bcmx_l3_host_delete(&record), BCM_E_NOT_FOUND);
    EXPECT_EQ(find(host(1)), BCM_E_NOT_FOUND);
}

TEST_F(SdkL3, RefusesBadHosts)
{
    bcmx_l3_host_t record = host(1, 7);
    EXPECT_EQ(add(record), BCM_E_NOT_FOUND); // no such interface
    record = host(1);
    record.l3a_lport = 1;
    EXPECT_EQ(add(record), BCM_E_PORT);
    record = host(1);
    record.l3a_nexthop_mac[0] = 1;
    EXPECT_EQ(add(record), BCM_E_PARAM);
    record = host(1);
    record.l3a_flags = 0x1000;
    EXPECT_EQ(add(record), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_host_add(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_host_find(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_host_delete(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_host_delete_by_network(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_host_delete_by_interface(nullptr), BCM_E_PARAM);
    EXPECT_EQ(find(host(1)), BCM_E_NOT_FOUND);
}

TEST_F(SdkL3, HostsGoByNetworkWithinTheFamily)
{
    add(host(0x0a000001));
    add(host(0x0a000101));
    add(host6(1));
    bcmx_l3_route_t network = route(0x0a000000, 0xffffff00);
    EXPECT_EQ(bcmx_l3_host_delete_by_network(&network), 0);
    EXPECT_EQ(find(host(0x0a000001)), BCM_E_NOT_FOUND);
    EXPECT_EQ(find(host(0x0a000101)), 0);
    EXPECT_EQ(find(host6(1)), 0);
    network = route(0x0a000000, 0xff00ff00);
    EXPECT_EQ(bcmx_l3_host_delete_by_network(&network), BCM_E_PARAM);
}

TEST_F(SdkL3, WithoutAMaskANetworkIsTheWholeFamily)
{
    add(host(0x0a000001));
    add(host6(1));
    bcmx_l3_route_t network = route(0x0b000000, 0);
    EXPECT_EQ(bcmx_l3_host_delete_by_network(&network), 0);
    EXPECT_EQ(find(host(0x0a000001)), BCM_E_NOT_FOUND);
    EXPECT_EQ(find(host6(1)), 0);
}

TEST_F(SdkL3, HostsGoByInterfaceOrByEveryOther)
{
    add(host(1, 0));
    add(host(2, 1));
    bcmx_l3_host_t record = host(0, 0);
    record.l3a_flags = BCM_L3_NEGATE;
    EXPECT_EQ(bcmx_l3_host_delete_by_interface(&record), 0);
    EXPECT_EQ(find(host(1)), 0);
    EXPECT_EQ(find(host(2)), BCM_E_NOT_FOUND);
    record.l3a_flags = 0;
    EXPECT_EQ(bcmx_l3_host_delete_by_interface(&record), 0);
    EXPECT_EQ(find(host(1)), BCM_E_NOT_FOUND);
}

TEST_F(SdkL3, AllHostsGo)
{
    add(host(1));
    add(host6(1));
    EXPECT_EQ(bcmx_l3_host_delete_all(), 0);
    EXPECT_EQ(find(host(1)), BCM_E_NOT_FOUND);
    EXPECT_EQ(find(host6(1)), BCM_E_NOT_FOUND);
}

TEST_F(SdkL3, MarksIpv4HostsOnly)
{
    add(host6(1));
    EXPECT_EQ(bcmx_l3_invalidate_entry(1), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_l3_validate_entry(1), BCM_E_NOT_FOUND);
    add(host(1));
    EXPECT_EQ(bcmx_l3_invalidate_entry(1), 0);
    EXPECT_EQ(bcmx_l3_validate_entry(1), 0);
}

TEST_F(SdkL3, GivesBackTheRouteThatWasAdded)
{
    ASSERT_EQ(add(route(0x0a000000, 0xff000000, 1)), 0);
    bcmx_l3_route_t found;
    bcmx_l3_route_t_init(&found);
    found.l3r_ip_addr = 0x0a000000;
    found.l3r_ip_mask = 0xff000000;
    ASSERT_EQ(bcmx_l3_route_get(&found), 0);
    EXPECT_EQ(found.l3r_intf, 1u);
    EXPECT_EQ(found.l3r_nexthop_ip, 0x0a0000feu);
    EXPECT_EQ(found.l3r_nexthop_mac[5], 9);
    EXPECT_EQ(found.l3r_lport, lport(1));
}

TEST_F(SdkL3, ARouteIsThereOncePerMask)
{
    ASSERT_EQ(add(route(0x0a000000, 0xff000000)), 0);
    EXPECT_EQ(add(route(0x0a000000, 0xffff0000)), 0);
    bcmx_l3_route_t record = route(0x0a000000, 0xff000000);
    EXPECT_EQ(bcmx_l3_route_add(&record), BCM_E_EXISTS);
    record.l3r_flags = BCM_L3_REPLACE;
    EXPECT_EQ(bcmx_l3_route_add(&record), 0);
    EXPECT_EQ(bcmx_l3_route_delete(&record), 0);
    EXPECT_EQ(bcmx_l3_route_delete(&record), BCM_E_NOT_FOUND);
    EXPECT_EQ(find(route(0x0a000000, 0xffff0000)), 0);
}

TEST_F(SdkL3, RefusesBadRoutes)
{
    for (const bcmx_l3_route_t& record :
         {route(0x0a000001, 0xff000000), route(0x0a000000, 0xff00ff00)}) {
        bcmx_l3_route_t copy = record;
        EXPECT_EQ(bcmx_l3_route_add(&copy), BCM_E_PARAM);
        EXPECT_EQ(bcmx_l3_route_get(&copy), BCM_E_PARAM);
        EXPECT_EQ(bcmx_l3_route_delete(&copy), BCM_E_PARAM);
    }
    bcmx_l3_route_t record = route(0, 0);
    record.l3r_lport = -1;
    EXPECT_EQ(add(record), BCM_E_PORT);
    EXPECT_EQ(add(route(0, 0, 7)), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_l3_route_add(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_route_get(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_route_delete(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l3_route_delete_by_interface(nullptr), BCM_E_PARAM);
}

TEST_F(SdkL3, Ipv6RoutesAreOfTheirOwn)
{
    bcmx_l3_route_t record = route(0, 0);
    record.l3r_flags = BCM_L3_IP6;
    record.l3r_ip6_net[0] = 0x20;
    record.l3r_ip6_mask[0] = 0xf0;
    EXPECT_EQ(bcmx_l3_route_add(&record), 0);
    record.l3r_ip6_net[1] = 1;
    EXPECT_EQ(bcmx_l3_route_add(&record), BCM_E_PARAM);
    record.l3r_ip6_net[1] = 0;
    EXPECT_EQ(bcmx_l3_route_get(&record), 0);
    EXPECT_EQ(record.l3r_flags, BCM_L3_IP6);
    EXPECT_EQ(find(route(0, 0)), BCM_E_NOT_FOUND);
}

TEST_F(SdkL3, RoutesGoByInterfaceOrAllTogether)
{
    add(route(0x0a000000, 0xff000000, 0));
    add(route(0x0b000000, 0xff000000, 1));
    bcmx_l3_route_t record = route(0, 0, 1);
    EXPECT_EQ(bcmx_l3_route_delete_by_interface(&record), 0);
    EXPECT_EQ(find(route(0x0a000000, 0xff000000)), 0);
    EXPECT_EQ(find(route(0x0b000000, 0xff000000)), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_l3_route_delete_all(), 0);
    EXPECT_EQ(find(route(0x0a000000, 0xff000000)), BCM_E_NOT_FOUND);
}

} // namespace
