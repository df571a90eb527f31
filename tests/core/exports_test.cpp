#include <dlfcn.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/core/elf_file.h"
#include "tests/core/wording.h"

namespace {

bool is_exported(const char* name)
{
    void* library = dlopen("libvexolc.so.0", RTLD_NOW | RTLD_NOLOAD);
    return library != nullptr && dlsym(library, name) != nullptr;
}

} // namespace

TEST(Exports, EntryPointsHaveTheirPlainNames)
{
    for (const char* name :
         {"vexosdk_create_sdk_instance", "vexosdk_get_sdk_instance", "vexosdk_delete_sdk_instance"})
        EXPECT_TRUE(is_exported(name)) << name;
}

TEST(Exports, HandlersGivenToTheSdkHaveTheirPlainNames)
{
    for (const char* name : {"vexo_uport_create_cb", "vexo_recv_pkt", "vexo_link_change_handler",
                             "vexo_l2_notify_handler", "vexo_mac_traverse_callback"})
        EXPECT_TRUE(is_exported(name)) << name;
}

TEST(Exports, GlobalsHaveTheirPlainNames)
{
    for (const char* name : {"bcm_sdk",
                             "vexo_bcm_unit",
                             "self_slot_id",
                             "number_lc_chips",
                             "number_lc_ports",
                             "number_lc_ppm",
                             "vexo_max_physical_port_per_slot",
                             "hw_util_dbg",
                             "vexo_uport_to_bcmport",
                             "vexo_bcmport_to_user_port",
                             "vexo_uport_to_user_port",
                             "vexo_user_port_to_lport",
                             "vexo_user_port_to_module_port",
                             "bde",
                             "dev_wsdcep",
                             "stat_to_stat_val",
                             "brief_to_port_stat",
                             "lag_id_usp_map",
                             "vexo_udf_usage",
                             "vexo_udf_available",
                             "filter_group_no_udf",
                             "fid_fe_map",
                             "next_flow_id",
                             "arp_fps",
                             "arp_fps_one_vlan",
                             "ip_proto_fps",
                             "l4_dport_fps",
                             "arp_group",
                             "arp_group_one_vlan",
                             "arp_udf_id",
                             "arp_udf_id_one_vlan"})
        EXPECT_TRUE(is_exported(name)) << name;
}

TEST(Exports, GlobalListsHaveTheNamesThatTheCompilerGivesThem)
{
    for (const char* name :
         {"_Z8lag_listB5cxx11", "_Z21vlan_port_member_listB5cxx11", "_Z7fg_listB5cxx11"})
        EXPECT_TRUE(is_exported(name)) << name;
}

// Kept by hand and apart from the headers, like the slot table.
TEST(Exports, FreeFunctionsAreThoseThatClientsCall)
{
    std::set<std::string> exported;
    for (const std::string& symbol : ElfFile::of_loaded("libvexolc.so.0").exports())
        exported.insert(wording(symbol));
    for (const char* function : {
             "vexo_init_line_card(int&)",
             "vexo_hwutil_init()",
             "vexo_hwutil_card_insert()",
             "vexo_hwutil_default_port_config_init()",
             "bde_create()",
             "vexo_sysconf_init()",
             "vexo_sysconf_probe()",
             "vexo_sysconf_attach(int)",
             "vexo_sysconf_get_property(char const*)",
             "vexo_sysconf_detach(int)",
             "vexo_bcm_sdk_system_init(int)",
             "is_port_physical(Usp const&)",
             "is_port_logical_lag(Usp const&)",
             "is_port_logical_vlan(Usp const&)",
             "map_mp_to_user_port(Mp const&, int&)",
             "map_user_port_to_mp(int, Mp&)",
             "map_mp_to_lport(Mp const&, int&)",
             "map_lport_to_mp(int, Mp&)",
             "map_uport_to_lport(int, int&)",
             "map_build_uport_to_user_port()",
             "map_build_user_port_to_module_port()",
             "vexo_bcm_sdk_get_cpu_lport(int&)",
             "vexo_mp_to_usp(Mp const&, Usp&)",
             "vexo_usp_to_mp(Usp const&, Mp&)",
             "vexo_mp_list_to_usp_list(list<Mp> const&, list<Usp>&)",
             "vexo_usp_to_mp_list(Usp const&, list<Mp>&)",
             "vexo_usp_list_to_mp_list(list<Usp> const&, list<Mp>&)",
             "mac_t_same(unsigned char const*, unsigned char const*)",
             "is_mac_t_broadcast(unsigned char const*)",
             "is_mac_t_multicast(unsigned char const*)",
             "ReadPCA9555(int, unsigned char*, int, unsigned int, int)",
             "vexo_i2c_write(int, void const*, int, unsigned int)",
             "BoardInitPCA9555_SFP(int)",
             "ResetSFPPHYOnBoard(int, unsigned char)",
             "DetectDaughterModuleID()",
             "vexo_read_dcard_eeprom(int, fixed_info_s*)",
             "vexo_init_ledproc()",
             "vexo_set_port_led(int, int, bcm_port_info_s*)",
             "vexo_phy_led_select(int, int, int, int)",
             "get_vlan_port_member(unsigned int, list<Mp>&)",
             "is_lag_exist(unsigned int, list<LagNode>)",
             "add_lag_to_list(unsigned int, list<LagNode>&)",
             "delete_lag_from_list(unsigned int, list<LagNode>&)",
             "add_lag_member(unsigned int, list<LagNode>&, list<Mp>&)",
             "delete_lag_member(unsigned int, list<LagNode>&, list<Mp>&)",
             "get_lag_member(unsigned int, list<Mp>&)",
             "vexosdk_add_lag_mapping(Usp const&, unsigned int)",
             "vexosdk_delete_lag_mapping(Usp const&, unsigned int)",
             "vexosdk_lag_id_to_lag_usp(unsigned int, Usp&)",
             "vexosdk_lag_usp_to_lag_id(Usp const&, unsigned int&)",
             "VexoBcmSdk::line_card_default_config_init()",
             "VexoBcmSdk::initialize()",
             "VexoBcmSdk::init_line_card()",
         })
        EXPECT_EQ(exported.count(function), 1u) << function;
}

TEST(Exports, TheTraceSwitchIsTheLibrarysOwn)
{
    EXPECT_FALSE(is_exported("sdk_trace_enabled"));
    EXPECT_FALSE(is_exported("_ZN6vexolc17sdk_trace_enabledE"));
}
