// What the handlers hand on. Where they hand it to is this file's own, in place of the driver's.
#include <bcmx/lport.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "core/factory.h"
#include "pktio/event_records.h"
#include "pktio/receive.h"
#include "tests/platform/port_tables.h"
#include "vexosim/clock.h"

namespace {

std::vector<void*> packet_arguments;

struct Notified {
    bcmx_l2_addr_t entry;
    int insert;
    void* data;
};
std::vector<Notified> notified;

} // namespace

bool VexoBcmSdk::rx_packet(RxPacket*, void* argument)
{
    packet_arguments.push_back(argument);
    return false; // means nothing to the handler
}

bool VexoBcmSdk::rx_packet_c(ctype_rx_packet_s*, void* argument)
{
    packet_arguments.push_back(argument);
    return false;
}

extern "C" {

void vexo_l2_notify_handler(bcmx_l2_addr_t* entry, int insert, void* data)
{
    notified.push_back({*entry, insert, data});
}

bcmx_lport_t bcmx_modid_port_to_lport(bcm_module_t modid, bcm_port_t port)
{
    return 1000 * modid + port;
}

} // extern "C"

TEST(HandedOn, DispatchGetsTheCookieOfTheSdkAndItsResultMeansNothing)
{
    vexosim::use_manual_clock();
    vexosdk_create_sdk_instance();
    build_port_tables();
    uint8_t frame[64] = {};
    bcm_pkt_blk_t block = {frame, 64};
    bcm_pkt_t pkt = {};
    pkt.pkt_data = &block;
    pkt.blk_count = 1;
    pkt.pkt_len = 64;
    pkt.rx_port = 2;
    int cookie = 0;
    EXPECT_EQ(vexo_recv_pkt(0, &pkt, &cookie), 2);
    EXPECT_EQ(packet_arguments, (std::vector<void*>{&cookie, &cookie}));
    vexosdk_delete_sdk_instance(nullptr);
}

TEST(HandedOn, AWalkHandsOnEveryFieldOfAnEntryButItsSelection)
{
    bcm_l2_addr_t entry = {0x1c0, {1, 2, 3, 4, 5, 6}, 0xffee, 5, 3, 77, 11, 12, 13, 14};
    int data = 0;
    EXPECT_EQ(vexo_mac_traverse_callback(0, &entry, &data), 0);
    ASSERT_EQ(notified.size(), 1u);
    const bcmx_l2_addr_t& wide = notified[0].entry;
    EXPECT_EQ(wide.flags, 0x1c0u);
    EXPECT_TRUE(std::equal(entry.mac, entry.mac + 6, wide.mac));
    EXPECT_EQ(wide.vid, 0xffee);
    EXPECT_EQ(wide.lport, 3005);
    EXPECT_EQ(wide.tgid, 77);
    EXPECT_EQ(wide.rtag, 0);
    EXPECT_EQ(wide.cos_dst, 12);
    EXPECT_EQ(wide.cos_src, 13);
    EXPECT_EQ(wide.l2mc_index, 14);
    EXPECT_EQ(wide.auth, 0);
    EXPECT_EQ(notified[0].insert, 2);
    EXPECT_EQ(notified[0].data, &data);
}
