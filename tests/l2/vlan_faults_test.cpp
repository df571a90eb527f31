// VLAN operations with each of their SDK calls failing, with every code, once and from then on.
// Only freeing a list is spared: which of the frees count is checked call by call.
#include "tests/kit/kit.h"

#include <bcm/error.h>

namespace {

struct VlanFaults : CardTest {
    VlanFaults()
    {
        EXPECT_TRUE(sdk().create_vlan(10));
        EXPECT_TRUE(sdk().add_ports_to_vlan(10, mps({3, 4}), mps({5, 6})));
    }
};

TEST_F(VlanFaults, Create)
{
    FaultSweep([&] { return sdk().create_vlan(20); })
        .harmless("bcmx_vlan_create", BCM_E_EXISTS)
        .harmless("bcmx_lplist_add")
        .harmless("bcmx_vlan_port_add")
        .spare("bcmx_lplist_free")
        .run();
}

TEST_F(VlanFaults, Delete)
{
    FaultSweep([&] { return sdk().delete_vlan(10); })
        .harmless("bcmx_l2_addr_delete_by_vlan")
        .harmless("bcmx_vlan_destroy", BCM_E_NOT_FOUND)
        .run();
}

TEST_F(VlanFaults, AddCpuPort)
{
    FaultSweep([&] { return sdk().add_cpu_port_to_vlan(10); }).spare("bcmx_lplist_free").run();
}

TEST_F(VlanFaults, DeleteCpuPort)
{
    FaultSweep([&] { return sdk().delete_cpu_port_from_vlan(10); })
        .harmless("bcmx_vlan_port_remove", BCM_E_NOT_FOUND)
        .spare("bcmx_lplist_free")
        .run();
}

TEST_F(VlanFaults, AddPorts)
{
    FaultSweep([&] {
        return sdk().add_ports_to_vlan(10, mps({5, 7}), mps({3, 8}));
    })
        .harmless("bcmx_lplist_remove", BCM_E_NOT_FOUND)
        .spare("bcmx_lplist_free")
        .run();
}

TEST_F(VlanFaults, DeletePorts)
{
    FaultSweep([&] {
        return sdk().delete_ports_from_vlan(10, mps({3, 5}));
    })
        .spare("bcmx_lplist_free")
        .run();
}

TEST_F(VlanFaults, GetInfo)
{
    std::list<Mp> tagged = {Mp(9, 9)};
    std::list<Mp> untagged = {Mp(8, 8)};
    FaultSweep([&] { return sdk().get_vlan_info(10, tagged, untagged); })
        .output(tagged)
        .output(untagged)
        .harmless("bcmx_lplist_remove", BCM_E_NOT_FOUND)
        .spare("bcmx_lplist_free")
        .run();
}

} // namespace
