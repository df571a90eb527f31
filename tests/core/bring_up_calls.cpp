#include "tests/core/bring_up_calls.h"

#include <sstream>

#include "platform/port_map.h"
#include "vexosim/calls.h"

namespace {

constexpr int chip_ports = 54;

const char* const probe = "sal_core_init()\n"
                          "sal_appl_init()\n"
                          "sysconf_debug_vectors_get(out)\n"
                          "soc_cm_init(out)\n"
                          "linux_bde_create({be_pio=1, be_packet=0, be_other=1}, out)\n"
                          "sysconf_chip_override(0, out, out)\n"
                          "soc_cm_device_supported(0x5654, 1)\n"
                          "soc_cm_get_id_driver(0x5654, 1, out, out)\n"
                          "sal_memory_check(pointer)\n"
                          "soc_cm_device_create(0x5654, 1, null)\n"
                          "soc_cm_get_id(0, out, out)\n"
                          "sal_config_set(\"pbmp_xport_xe.0\", \"0x3c000000\")\n";

const char* const attach_unit = "soc_cm_device_init(0, pointer)\n"
                                "soc_reset_init(0)\n"
                                "soc_misc_init(0)\n"
                                "soc_mmu_init(0)\n"
                                "soc_feature(0, 0)\n"
                                "soc_property_get(0, \"l2xmsg_thread_usec\", 3000000)\n"
                                "soc_l2x_start(0, 0, 3000000)\n"
                                "bcm_init(0)\n"
                                "bcm_port_config_get(0, out)\n"
                                "soc_property_get_str(0, \"bcm_linkscan_pbmp\")\n";

const char* const attach_ports =
    "soc_property_get(0, \"bcm_linkscan_interval\", 250000)\n"
    "bcm_linkscan_enable_set(0, 250000)\n"
    "bcm_cosq_config_set(0, 8)\n"
    "bcmx_uport_create_callback_set(vexo_uport_create_cb)\n"
    "bcmx_device_attach(0)\n"
    "soc_ledproc_config(0, 021d2860c0671e021c2860c0671e021b2860c0671e021a2860c0671e3a1012a0f8151a"
    "0075373208d7873200d7873201d787320fd787573208d787320ed787320ed787320ed78757, 72)\n";

const char* const events =
    "bcmx_linkscan_enable_set(-1)\n"
    "bcmx_linkscan_device_add(0)\n"
    "bcmx_linkscan_register(vexo_link_change_handler)\n"
    "bcmx_l2_notify_register(vexo_l2_notify_handler, null)\n"
    "bcmx_l2_notify_start()\n"
    "bcm_rx_init(0)\n"
    "bcmx_rx_device_add(0)\n"
    "bcm_rx_stop(0, out)\n"
    "bcm_rx_register(0, \"vexo_recv_pkt\", vexo_recv_pkt, 255, null, 0xc0ff)\n"
    "bcm_rx_start(0, {pkt_size=13312, pkts_per_chain=4, global_pps=500, max_burst=0, "
    "chan0={chains=0, rate_pps=0, flags=0, cos_bmp=0}, "
    "chan1={chains=4, rate_pps=150, flags=0, cos_bmp=0x77}, "
    "chan2={chains=4, rate_pps=200, flags=0, cos_bmp=0x80}, "
    "chan3={chains=4, rate_pps=150, flags=0, cos_bmp=8}, "
    "rx_alloc=null, rx_free=null, flags=0})\n";

const char* const switch_settings =
    "bcm_rx_cos_rate_set(0, 0, 150)\n"
    "bcm_rx_cos_rate_set(0, 7, 200)\n"
    "bcm_rx_cos_rate_set(0, 3, 150)\n"
    "bcmx_switch_control_set(132, 5)\n"
    "bcmx_switch_control_set(225, 6)\n"
    "bcm_switch_control_set(0, 204, 1)\n"
    "bcm_switch_control_set(0, 21, 0)\n"
    "bcmx_switch_control_set(125, 1)\n"
    "bcmx_switch_control_set(44, 1)\n"
    "bcmx_switch_control_set(35, 3)\n"
    "bcmx_cosq_mapping_set(3, 3)\n"
    "bcm_rx_cosq_mapping_set(0, 0, reasons:[1], reasons:[1], 0, 0, 0, 0, 3)\n"
    "bcm_rx_queue_channel_set(0, 3, 3)\n"
    "bcm_rx_cosq_mapping_set(0, 0, reasons:[2], reasons:[2], 0, 0, 0, 0, 7)\n"
    "bcm_rx_queue_channel_set(0, 7, 2)\n";

const char* const driver_defaults = "bcmx_mirror_init()\n"
                                    "bcmx_mirror_pfmt_set(1)\n"
                                    "bcmx_field_init()\n"
                                    "bcmx_field_control_set(8, 1)\n"
                                    "bcmx_field_group_create_id(qset:[28, 30, 60], 0, -1)\n";

/// The user port of index i of the driver's tables, as the log names it.
std::string user_port(int i)
{
    static const int ports[chip_ports] = {53, 48, 8,  9,  10, 11, 12, 13, 14, 15, 20, 21, 22, 23,
                                          24, 25, 26, 27, 32, 33, 34, 35, 36, 37, 38, 39, 50, 49,
                                          52, 51, 0,  1,  2,  3,  4,  5,  6,  7,  16, 17, 18, 19,
                                          28, 29, 30, 31, 40, 41, 42, 43, 44, 45, 46, 47};
    return std::to_string(ports[i]);
}

} // namespace

std::string bring_up_calls()
{
    std::ostringstream text;
    text << probe << attach_unit;
    for (int port = 1; port < chip_ports; ++port)
        text << "bcm_linkscan_mode_set(0, " << port << ", 1)\n"
             << "bcm_stat_clear(0, " << port << ")\n";
    text << attach_ports << events;
    for (int port = 1; port < chip_ports; ++port)
        text << "bcm_port_flood_block_set(0, " << port << ", 0, 7)\n";
    text << switch_settings;
    for (int i = 1; i < chip_ports; ++i)
        text << "bcmx_port_autoneg_set(" << user_port(i) << ", 1)\n"
             << "bcmx_stg_stp_set(1, " << user_port(i) << ", 4)\n"
             << "bcmx_port_vlan_member_set(" << user_port(i) << ", 3)\n";
    text << driver_defaults;
    return text.str();
}

std::string calls_of_interest(bool with_results)
{
    std::istringstream all(with_results ? vexosim::all_calls_with_results() : vexosim::all_calls());
    std::string kept;
    for (std::string line; std::getline(all, line);) {
        if (line.rfind("bde.", 0) != 0 && line.rfind("sal_config_get(", 0) != 0)
            kept += line + "\n";
    }
    return kept;
}
