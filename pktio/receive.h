#pragma once

#include <bcm/l2.h>
#include <bcm/port.h>
#include <bcm/rx.h>
#include <bcmx/l2.h>
#include <bcmx/types.h>

/// The handlers that the driver gives to the SDK. Each finds the driver's instance, translates the
/// event, and hands it to the registered callbacks, class form first. An event on a port that does
/// not translate is dropped silently. They run on the SDK's threads and take no locks.
extern "C" {

/// A packet for the CPU. Handled (2) when it reached the callbacks or is empty; not handled (1)
/// without an instance, without data, or when the port does not translate. `pkt` stays the SDK's.
/// While `hw_util_dbg` is on, prints "packet recv", and "packet rx error" when there is no data.
bcm_rx_t vexo_recv_pkt(int unit, bcm_pkt_t* pkt, void* cookie);

/// A change of a port's link. Applies `vexo_link_side_effects`, whatever comes of them, before the
/// callbacks are told. While `hw_util_dbg` is on, prints a line.
void vexo_link_change_handler(bcmx_lport_t lport, bcm_port_info_t* info);

/// What the card does on a link change: sets the port's LED; on link down forgets the addresses
/// learned on the port; on link up sets the port blocking in every spanning-tree group. False, with
/// nothing else done, when the LED cannot be set.
bool vexo_link_side_effects(bcmx_lport_t lport, bcm_port_info_t* info);

/// A MAC table entry that came (`insert` 1), went (0) or is being listed (2). Entries that are
/// multicast, pending or on the CPU port are not reported. Callbacks are handed `insert` and
/// `data`.
void vexo_l2_notify_handler(bcmx_l2_addr_t* entry, int insert, void* data);

/// An entry met on a walk of one unit's MAC table: reported as listed (2). Always 0: go on.
int vexo_mac_traverse_callback(int unit, bcm_l2_addr_t* entry, void* user_data);
}

namespace vexolc {

/// MAC table entries reported as added or listed, less those removed, modulo 2^32.
uint32_t mac_entry_count();

} // namespace vexolc
