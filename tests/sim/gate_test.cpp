// The gate that SDK calls go through: what the log says, and who is refused.
#include <gtest/gtest.h>

#include <bcm/stat.h>
#include <bcmx/l2.h>
#include <bcmx/link.h>
#include <bcmx/lplist.h>
#include <bcmx/port.h>
#include <bcmx/stg.h>
#include <bcmx/switch.h>
#include <bcmx/tx.h>
#include <bcmx/vlan.h>
#include <sal/config.h>
#include <sal/core.h>
#include <soc/drv.h>

#include <thread>

#include "pktio/receive.h"
#include "tests/kit/kit.h"

extern "C" {
static void hidden_handler(bcmx_lport_t, bcm_port_info_t*) {}
}

namespace {

using GateOfABareCard = BareCardTest;

/// Logical port of a user port.
int lport(int user_port)
{
    return kFirstLport + chip_port_of(user_port);
}

struct Gate : CardTest {
    bcmx_lplist_t list(const std::vector<int>& user_ports)
    {
        bcmx_lplist_t made;
        bcmx_lplist_t_init(&made);
        for (const int port : user_ports)
            bcmx_lplist_add(&made, lport(port));
        return made;
    }
};

TEST_F(Gate, APortIsLoggedAsItsUserPort)
{
    bcmx_port_speed_set(lport(3), 100);
    bcmx_port_speed_set(lport(kCpuUserPort), 100);
    bcmx_port_speed_set(-1, 100);
    bcmx_port_speed_set(kFirstLport + kPorts, 100);
    EXPECT_EQ(calls(), "bcmx_port_speed_set(3, 100)\n"
                       "bcmx_port_speed_set(cpu, 100)\n"
                       "bcmx_port_speed_set(lport:-1, 100)\n"
                       "bcmx_port_speed_set(lport:310, 100)\n");
}

TEST_F(Gate, ListsAreLoggedInTheirOrder)
{
    bcmx_lplist_t ports = list({kCpuUserPort, 5, 3}), untagged = list({});
    clear_calls();
    bcmx_vlan_port_add(1, ports, untagged);
    bcmx_lplist_free(&ports);
    EXPECT_EQ(calls(), "bcmx_vlan_port_add(1, [cpu, 5, 3], [])\n");
}

TEST_F(Gate, AddressesFlagsTextAndNullAreReadable)
{
    bcm_mac_t mac = {0, 0x11, 0x22, 0x33, 0x44, 0xff};
    bcmx_l2_addr_delete(mac, 10);
    bcmx_l2_addr_delete_by_port(lport(3), 9);
    bcmx_l2_addr_delete_by_port(lport(3), 10);
    bcmx_l2_addr_add(nullptr, nullptr);
    bcmx_port_speed_get(lport(3), nullptr);
    int speed = 0;
    bcmx_port_speed_get(lport(3), &speed);
    EXPECT_EQ(calls(), "bcmx_l2_addr_delete(00:11:22:33:44:ff, 10)\n"
                       "bcmx_l2_addr_delete_by_port(3, 9)\n"
                       "bcmx_l2_addr_delete_by_port(3, 0xa)\n"
                       "bcmx_l2_addr_add(null, null)\n"
                       "bcmx_port_speed_get(3, null)\n"
                       "bcmx_port_speed_get(3, out)\n");
}

TEST_F(Gate, RecordsAreLoggedByField)
{
    bcmx_l2_addr_t entry{};
    entry.flags = BCM_L2_STATIC;
    entry.mac[5] = 1;
    entry.vid = 10;
    entry.lport = lport(4);
    bcmx_l2_addr_add(&entry, nullptr);
    entry.flags |= BCM_L2_TRUNK_MEMBER;
    entry.tgid = 7;
    bcmx_l2_addr_add(&entry, nullptr);
    EXPECT_EQ(calls(),
              "bcmx_l2_addr_add({flags=0x20, mac=00:00:00:00:00:01, vid=10, port=4}, null)\n"
              "bcmx_l2_addr_add({flags=0xa0, mac=00:00:00:00:00:01, vid=10, trunk=7}, null)\n");
}

TEST_F(Gate, HandlersAreLoggedByTheirExportedName)
{
    bcmx_linkscan_register(vexo_link_change_handler);
    bcmx_linkscan_register(hidden_handler);
    bcmx_linkscan_register(nullptr);
    EXPECT_EQ(calls(), "bcmx_linkscan_register(vexo_link_change_handler)\n"
                       "bcmx_linkscan_register(handler)\n"
                       "bcmx_linkscan_register(null)\n");
    clear_calls();
    bcmx_l2_notify_register(nullptr, this);
    EXPECT_EQ(calls(), "bcmx_l2_notify_register(null, pointer)\n");
}

TEST_F(Gate, PacketsAreLoggedWithTheirFirstBytes)
{
    Frame data = broadcast(host1).tagged(1).sized(64).bytes();
    bcm_pkt_blk_t block{data.data(), 64};
    bcm_pkt_t packet{};
    packet.pkt_data = &block;
    packet.blk_count = 1;
    packet.pkt_len = 64;
    packet.cos = 7;
    packet.flags = BCM_PKT_F_SWITCHED;
    bcmx_tx(&packet, BCMX_TX_F_FLOOD);
    EXPECT_EQ(calls().substr(0, 98), "bcmx_tx({pkt_len=64, blk_count=1, cos=7, flags=0x100000, "
                                     "len=64, data=ffffffffffff0200000000018100");
    EXPECT_EQ(calls().substr(calls().size() - 6), "}, 4)\n");
}

TEST_F(Gate, LocalCallsAreLoggedApart)
{
    bcmx_lplist_t ports = list({3});
    bcmx_lplist_free(&ports);
    sal_config_get("nothing");
    bcmx_port_enable_set(lport(3), 1);
    EXPECT_EQ(calls(), "bcmx_port_enable_set(3, 1)\n");
    EXPECT_EQ(all_calls_with_results(), "bcmx_lplist_t_init(out)\n"
                                        "bcmx_lplist_add([], 3) = 0\n"
                                        "bcmx_lplist_free([3]) = 0\n"
                                        "sal_config_get(\"nothing\") = null\n"
                                        "bcmx_port_enable_set(3, 1) = 0\n");
}

TEST_F(Gate, ResultsAreLoggedOnRequest)
{
    bcmx_vlan_create(10);
    bcmx_vlan_create(10);
    soc_feature(0, soc_feature_arl_hashed);
    EXPECT_EQ(calls_with_results(),
              "bcmx_vlan_create(10) = 0\nbcmx_vlan_create(10) = -8\nsoc_feature(0, 0)\n");
}

TEST_F(Gate, NothingIsLoggedWhileTheLogIsOff)
{
    log_calls(false);
    bcmx_vlan_create(10);
    inject({.call = "bcmx_vlan_destroy"});
    bcmx_vlan_destroy(10);
    EXPECT_EQ(all_calls(), "");
}

TEST_F(Gate, CallsMadeAtTheSameTimeAreAllLogged)
{
    const auto create = [] {
        for (int i = 0; i < 500; ++i)
            bcmx_switch_control_set(1, i);
    };
    std::thread other(create);
    create();
    other.join();
    const std::string log = calls();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1000);
}

TEST_F(GateOfABareCard, CallsAreRefusedBeforeTheCardIsUp)
{
    bcmx_lplist_t none{nullptr, -1, 0};
    EXPECT_EQ(bcmx_vlan_create(10), BCM_E_INIT);
    EXPECT_EQ(bcmx_vlan_port_add(1, none, none), BCM_E_INIT);
    EXPECT_EQ(bcmx_port_enable_set(kFirstLport + 1, 1), BCM_E_INIT);
    EXPECT_EQ(bcmx_stg_stp_set(1, kFirstLport + 1, 4), BCM_E_INIT);
    EXPECT_EQ(bcmx_tx(nullptr, 0), BCM_E_INIT);
    EXPECT_EQ(bcm_stat_clear(0, 1), BCM_E_UNIT) << "no unit has been created";
    EXPECT_EQ(soc_reset_init(0), BCM_E_UNIT);
}

TEST_F(GateOfABareCard, ALogicalPortHasNoNameBeforeTheCardIsUp)
{
    log_calls(true);
    bcmx_port_enable_set(kFirstLport, 1);
    EXPECT_EQ(calls(), "bcmx_port_enable_set(lport:256, 1)\n");
}

TEST_F(GateOfABareCard, AfterAFailedAttachChipCallsWorkAndPortCallsDoNot)
{
    inject({.call = "bcmx_device_attach"});
    bring_up();
    clear_faults();
    EXPECT_EQ(bcm_stat_clear(0, 1), BCM_E_NONE);
    EXPECT_EQ(bcmx_vlan_create(10), BCM_E_INIT);
    EXPECT_EQ(bcm_stat_clear(1, 1), BCM_E_UNIT);
}

TEST_F(Gate, KeepsTheLastCallThatFailedOnAThread)
{
    forget_failed_call();
    EXPECT_EQ(bcmx_vlan_create(10), BCM_E_NONE);
    EXPECT_EQ(failed_call().name, nullptr);
    EXPECT_EQ(bcmx_vlan_create(10), BCM_E_EXISTS);
    inject({.call = "bcmx_vlan_destroy", .code = -99});
    EXPECT_EQ(bcmx_vlan_destroy(10), -99);
    EXPECT_EQ(bcmx_vlan_create(11), BCM_E_NONE);
    std::thread([] { EXPECT_EQ(failed_call().name, nullptr); }).join();
    const FailedCall failed = failed_call();
    EXPECT_STREQ(failed.name, "bcmx_vlan_destroy");
    EXPECT_EQ(failed.code, -99);
    EXPECT_STREQ(failed.text(), "Unknown error");
    EXPECT_STREQ((FailedCall{"", BCM_E_PORT}.text()), "Invalid port");
    forget_failed_call();
    EXPECT_EQ(failed_call().name, nullptr);
}

} // namespace
