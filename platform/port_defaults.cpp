// Events, receive and switch-wide settings of the card. Switch controls without a name in the SDK's
// headers are given by number.
#include <bcm/port.h>
#include <bcm/rx.h>
#include <bcm/switch.h>
#include <bcmx/cosq.h>
#include <bcmx/l2.h>
#include <bcmx/link.h>
#include <bcmx/rx.h>
#include <bcmx/switch.h>

#include <iostream>

#include "core/result.h"
#include "pktio/receive.h"
#include "platform/hwutil.h"
#include "platform/port_map.h"

using namespace vexolc;

namespace {

constexpr int arp_queue = 3;
constexpr int bpdu_queue = 7;

constexpr bcm_rx_chan_cfg_t channel(int chains, int rate_pps, uint32_t cos_bmp)
{
    bcm_rx_chan_cfg_t config = {};
    config.chains = chains;
    config.rate_pps = rate_pps;
    config.cos_bmp = cos_bmp;
    return config;
}

bcm_rx_cfg_t receive_config()
{
    bcm_rx_cfg_t config = {};
    config.pkt_size = 13312;
    config.pkts_per_chain = 4;
    config.global_pps = 500;
    config.max_burst = 0;
    config.chan_cfg[0] = channel(0, 0, 0);
    config.chan_cfg[1] = channel(4, 150, 0x77);
    config.chan_cfg[2] = channel(4, 200, 1u << bpdu_queue);
    config.chan_cfg[3] = channel(4, 150, 1u << arp_queue);
    return config;
}

bool start_linkscan(int unit)
{
    constexpr int own_period = -1;
    return ok(bcmx_linkscan_enable_set(own_period)) && ok(bcmx_linkscan_device_add(unit)) &&
           ok(bcmx_linkscan_register(vexo_link_change_handler));
}

bool start_l2_notify()
{
    return ok(bcmx_l2_notify_register(vexo_l2_notify_handler, nullptr)) &&
           ok(bcmx_l2_notify_start());
}

bool start_receive(int unit)
{
    constexpr uint8_t priority = 255;
    constexpr uint32_t flags = 0xC0FF; // all classes of service
    bcm_rx_cfg_t previous = {};        // not used further
    bcm_rx_cfg_t config = receive_config();
    return ok(bcm_rx_init(unit)) && ok(bcmx_rx_device_add(unit)) &&
           ok(bcm_rx_stop(unit, &previous)) &&
           ok(bcm_rx_register(unit, "vexo_recv_pkt", vexo_recv_pkt, priority, nullptr, flags)) &&
           ok(bcm_rx_start(unit, &config));
}

bool block_flooding_to_cpu(int unit)
{
    constexpr bcm_port_t cpu = 0;
    constexpr uint32_t flags = BCM_PORT_FLOOD_BLOCK_UNKNOWN_UCAST |
                               BCM_PORT_FLOOD_BLOCK_KNOWN_MCAST | BCM_PORT_FLOOD_BLOCK_BCAST;
    for (bcm_port_t port = 1; port < vexo_port_rows; ++port) {
        if (!ok(bcm_port_flood_block_set(unit, port, cpu, flags)))
            return false;
    }
    return true;
}

bool limit_receive_rates(int unit)
{
    return ok(bcm_rx_cos_rate_set(unit, 0, 150)) &&
           ok(bcm_rx_cos_rate_set(unit, bpdu_queue, 200)) &&
           ok(bcm_rx_cos_rate_set(unit, arp_queue, 150));
}

bool set_switch_controls(int unit)
{
    if (!ok(bcmx_switch_control_set(132, 5)))
        return false;
    // These three are deliberately unchecked: not every chip has them.
    bcmx_switch_control_set(225, 6);
    bcm_switch_control_set(unit, bcmSwitchForwardMode, 1);
    bcm_switch_control_set(unit, bcmSwitchUnknownUcastToCpu, 0);
    return ok(bcmx_switch_control_set(125, 1)) && ok(bcmx_switch_control_set(44, 1)) &&
           ok(bcmx_switch_control_set(35, 3));
}

// Both mappings deliberately use this entry: the one that is set last replaces the other.
constexpr int shared_mapping_entry = 0;

bool map_reason_to_queue(int unit, bcm_rx_reason_t reason, bcm_cos_queue_t queue)
{
    bcm_rx_reasons_t reasons = {};
    BCM_RX_REASON_SET(reasons, reason);
    return ok(
        bcm_rx_cosq_mapping_set(unit, shared_mapping_entry, reasons, reasons, 0, 0, 0, 0, queue));
}

bool send_to_channel(int unit, bcm_rx_reason_t reason, bcm_cos_queue_t queue, int channel,
                     const char* failure)
{
    if (!map_reason_to_queue(unit, reason, queue)) {
        std::cout << failure << '\n';
        return false;
    }
    bcm_rx_queue_channel_set(unit, queue, channel); // deliberately unchecked
    return true;
}

bool map_receive_queues(int unit)
{
    constexpr int arp_channel = 3;
    constexpr int bpdu_channel = 2;
    return ok(bcmx_cosq_mapping_set(3, arp_queue)) &&
           send_to_channel(unit, bcmRxReasonArp, arp_queue, arp_channel,
                           "set arp packet rx cos map failed") &&
           send_to_channel(unit, bcmRxReasonBpdu, bpdu_queue, bpdu_channel,
                           "set bpdu rx cos map failed");
}

} // namespace

bool vexo_hwutil_default_port_config_init()
{
    const int unit = vexo_bcm_unit;
    return start_linkscan(unit) && start_l2_notify() && start_receive(unit) &&
           block_flooding_to_cpu(unit) && limit_receive_rates(unit) && set_switch_controls(unit) &&
           map_receive_queues(unit);
}
