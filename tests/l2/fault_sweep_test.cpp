// Every operation of LAGs and the MAC table with each of its SDK calls failing.
#include "tests/l2/fault_sweep.h"

#include <array>

namespace {

const std::array<unsigned char, 512> vlans_1_and_2 = {0x06};

std::vector<Operation> lag_operations()
{
    return {
        {"create_lag",
         [](Sdk& sdk, Outputs& out) { return sdk.create_lag(out.number); },
         {},
         [](Sdk&) {},
         true},
        {"delete_lag",
         [](Sdk& sdk, Outputs&) { return sdk.delete_lag(1); },
         {{"bcmx_l2_addr_delete_by_trunk"}}},
        {"add_ports_to_lag",
         [](Sdk& sdk, Outputs&) {
             return sdk.add_ports_to_lag(0, ports({3, 4}));
         },
         {{"bcmx_port_link_status_get"}, {"bcmx_lplist_add"}, {"bcmx_l2_addr_delete_by_port"}}},
        {"delete_ports_from_lag",
         [](Sdk& sdk, Outputs&) { return sdk.delete_ports_from_lag(0, ports({4})); },
         {{"bcmx_lplist_add"}, {"bcmx_port_stp_set"}, {"bcmx_lplist_port_remove"}}},
        {"delete_ports_from_lag, the last",
         [](Sdk& sdk, Outputs&) {
             return sdk.delete_ports_from_lag(0, ports({3, 4}));
         },
         {{"bcmx_lplist_add"}, {"bcmx_port_stp_set"}, {"bcmx_lplist_port_remove"}}},
        {"set_lag_psc", [](Sdk& sdk, Outputs&) { return sdk.set_lag_psc(0, LAG_PSC_SRC_IP); }},
        {"get_lag_psc",
         [](Sdk& sdk, Outputs& out) {
             auto psc = static_cast<lag_psc_t>(out.integer);
             const bool done = sdk.get_lag_psc(0, psc);
             out.integer = psc;
             return done;
         }},
        {"port_remove_from_egress_list",
         [](Sdk& sdk, Outputs&) { return sdk.port_remove_from_egress_list(p3); },
         {{"bcmx_lplist_remove", -7}}},
        {"port_add_to_egress_list",
         [](Sdk& sdk, Outputs&) { return sdk.port_add_to_egress_list(p3); },
         {{"bcmx_l2_addr_delete_by_port"}}},
    };
}

std::vector<Operation> fdb_operations()
{
    using Base = VexoSdkBase;
    return {
        {"add_mac_to_port",
         [](Sdk& sdk, Outputs&) { return sdk.add_mac_to_port(p5, host, 1, false); },
         {{"bcmx_l2_addr_add", -8}}},
        {"add_system_mac",
         [](Sdk& sdk, Outputs&) { return sdk.add_system_mac(host, 1); },
         {{"bcmx_l2_addr_add", -8}}},
        {"add_system_mac_vlan_bitmap",
         [](Sdk& sdk, Outputs&) {
             return sdk.add_system_mac_vlan_bitmap(host, vlans_1_and_2.data());
         },
         {{"bcmx_l2_addr_add", -8}}},
        {"delete_mac_vlan_bitmap",
         [](Sdk& sdk, Outputs&) { return sdk.delete_mac_vlan_bitmap(host, vlans_1_and_2.data()); },
         {{"bcmx_l2_addr_delete", -8}},
         [](Sdk& sdk) { sdk.add_system_mac_vlan_bitmap(host, vlans_1_and_2.data()); }},
        {"delete_mac",
         [](Sdk& sdk, Outputs&) { return sdk.delete_mac(host, 1); },
         {{"bcmx_l2_addr_delete", -7}}},
        {"delete_mac_by_mac",
         [](Sdk& sdk, Outputs&) { return sdk.delete_mac_by_mac(host); },
         {{"bcmx_l2_addr_delete_by_mac", -7}}},
        {"clear_mac_by_port",
         [](Sdk& sdk, Outputs&) { return sdk.clear_mac_by_port(p5, false, true); }},
        {"clear_mac_by_port of a LAG",
         [](Sdk& sdk, Outputs&) { return sdk.clear_mac_by_port(Mp(0, 0), true, true); }},
        {"clear_mac_by_vlan", [](Sdk& sdk, Outputs&) { return sdk.clear_mac_by_vlan(1, true); }},
        {"clear_fdb_table",
         [](Sdk& sdk, Outputs&) { return sdk.clear_fdb_table(false); },
         {{"bcmx_l2_addr_delete_by_port"}}},
        {"set_fdb_aging_time", [](Sdk& sdk, Outputs&) { return sdk.set_fdb_aging_time(300); }},
        {"get_fdb_aging_time",
         [](Sdk& sdk, Outputs& out) { return sdk.get_fdb_aging_time(out.integer); }},
        {"set_port_mac_lock", setting(&Base::set_port_mac_lock, true)},
        {"get_port_mac_lock", reading(&Base::get_port_mac_lock, &Outputs::flag)},
        {"set_port_mac_lock_ext",
         [](Sdk& sdk, Outputs&) { return sdk.set_port_mac_lock_ext(p5, true, true); }},
        {"get_port_mac_lock_ext",
         [](Sdk& sdk, Outputs& out) { return sdk.get_port_mac_lock_ext(p5, out.flag, out.flag); }},
        {"set_port_mac_limit",
         [](Sdk& sdk, Outputs&) { return sdk.set_port_mac_limit(p5, 10, 1); },
         {{"bcmx_l2_learn_limit_set", -16}}},
        {"get_port_mac_limit",
         [](Sdk& sdk, Outputs& out) { return sdk.get_port_mac_limit(p5, out.integer, 1); }},
        {"traverse_mac_table",
         [](Sdk& sdk, Outputs&) {
             sdk.traverse_mac_table(nullptr);
             return true;
         },
         {{"bcm_l2_traverse"}}},
    };
}

/// LAG 0 of ports 3 and 4 with link, LAG 1 empty.
struct LagSweep : Sweep {
    LagSweep()
    {
        give_link({3, 4});
        make_lag({3, 4});
        make_lag({});
    }
};

TEST_F(LagSweep, LagOperations)
{
    sweep(lag_operations());
}

TEST_F(LagSweep, MacTableOperations)
{
    sweep(fdb_operations());
}

} // namespace
