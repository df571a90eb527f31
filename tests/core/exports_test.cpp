#include <dlfcn.h>
#include <gtest/gtest.h>

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

TEST(Exports, TheTraceSwitchIsTheLibrarysOwn)
{
    EXPECT_FALSE(is_exported("sdk_trace_enabled"));
    EXPECT_FALSE(is_exported("_ZN6vexolc17sdk_trace_enabledE"));
}
