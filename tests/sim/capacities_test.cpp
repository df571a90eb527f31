// The tables' capacities are the profile's.
#include <bcm/l2.h>
#include <bcmx/field.h>
#include <bcmx/l2.h>
#include <bcmx/l3.h>
#include <bcmx/trunk.h>

#include "tests/kit/card_test.h"

namespace {

/// A card with room for little, which is up.
struct SmallCard : vexokit::BareCardTest {
    SmallCard()
    {
        vexosim::Profile profile = vexosim::profile();
        profile.trunks = 1;
        profile.field_groups = 2; // the trap filters' is one
        profile.field_entries = 1;
        profile.udfs = 1;
        profile.l3_interfaces = 1;
        profile.l3_hosts = 1;
        profile.l3_routes = 1;
        vexosim::set_profile(profile);
        bring_up();
    }

    static int create_interface(uint8_t mac)
    {
        bcmx_l3_intf_t intf = {};
        intf.l3i_mac_addr[5] = mac;
        intf.l3i_vid = 1;
        return bcmx_l3_intf_create(&intf);
    }

    static int add_host(bcm_ip_t ip)
    {
        bcmx_l3_host_t host = {};
        host.l3a_ip_addr = ip;
        host.l3a_lport = vexosim::kFirstLport + 1;
        return bcmx_l3_host_add(&host);
    }

    static int add_route(bcm_ip_t net)
    {
        bcmx_l3_route_t route = {};
        route.l3r_ip_addr = net;
        route.l3r_ip_mask = 0xffffffff;
        route.l3r_lport = vexosim::kFirstLport + 1;
        return bcmx_l3_route_add(&route);
    }
};

TEST_F(SmallCard, TakesTrunksUpToItsCapacity)
{
    bcm_trunk_t id = 0;
    EXPECT_EQ(bcmx_trunk_create(&id), 0);
    EXPECT_EQ(bcmx_trunk_create(&id), BCM_E_FULL);
}

TEST_F(SmallCard, TakesFieldGroupsEntriesAndUdfsUpToItsCapacity)
{
    const bcm_field_qset_t qset = {};
    bcm_field_udf_spec_t udf = {};
    int group = 0;
    int entry = 0;
    EXPECT_EQ(bcmx_field_group_create(qset, 0, &group), 0);
    EXPECT_EQ(bcmx_field_group_create_id(qset, 0, 9), BCM_E_FULL);
    EXPECT_EQ(bcmx_field_entry_create(group, &entry), 0);
    EXPECT_EQ(bcmx_field_entry_create(group, &entry), BCM_E_FULL);
    EXPECT_EQ(bcmx_field_udf_create_id(&udf, 0), 0);
    EXPECT_EQ(bcmx_field_udf_create_id(&udf, 1), BCM_E_PARAM);
}

TEST_F(SmallCard, TakesInterfacesHostsAndRoutesUpToItsCapacity)
{
    EXPECT_EQ(create_interface(1), 0);
    EXPECT_EQ(create_interface(2), BCM_E_FULL);
    EXPECT_EQ(add_host(1), 0);
    EXPECT_EQ(add_host(2), BCM_E_FULL);
    EXPECT_EQ(add_route(1), 0);
    EXPECT_EQ(add_route(2), BCM_E_FULL);
}

/// A card with room for one MAC address, which is there.
struct CardWithOneMac : vexokit::BareCardTest {
    CardWithOneMac()
    {
        vexosim::Profile profile = vexosim::profile();
        profile.macs = 1;
        vexosim::set_profile(profile);
        bring_up();
        bcmx_l2_addr_t entry = {};
        entry.mac[5] = 1;
        entry.vid = 1;
        entry.flags = BCM_L2_STATIC;
        entry.lport = vexosim::kFirstLport + 1;
        EXPECT_EQ(bcmx_l2_addr_add(&entry, nullptr), 0);
    }
};

TEST_F(CardWithOneMac, AnInterfacesMacEntryNeedsRoomUnlessItsAddressIsThere)
{
    bcmx_l3_intf_t intf = {};
    intf.l3i_vid = 1;
    intf.l3i_flags = BCM_L3_ADD_TO_ARL;
    intf.l3i_mac_addr[5] = 2;
    EXPECT_EQ(bcmx_l3_intf_create(&intf), BCM_E_FULL);
    EXPECT_EQ(bcmx_l3_intf_find(&intf), BCM_E_NOT_FOUND);
    intf.l3i_flags = 0;
    EXPECT_EQ(bcmx_l3_intf_create(&intf), 0);
    intf.l3i_flags = BCM_L3_ADD_TO_ARL;
    intf.l3i_mac_addr[5] = 1;
    EXPECT_EQ(bcmx_l3_intf_create(&intf), 0);
}

} // namespace
