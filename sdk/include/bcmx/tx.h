/*
 * Packet transmit from the CPU; synchronous while the descriptor has no callback.
 */
#ifndef BCMX_TX_H
#define BCMX_TX_H

#include <bcm/pkt.h>
#include <bcmx/lplist.h>

#ifdef __cplusplus
extern "C" {
#endif

#define BCMX_TX_F_UNICAST 0x01u   /* one destination */
#define BCMX_TX_F_FLOOD 0x04u     /* broadcast or multicast */
#define BCMX_TX_F_PORT_LIST 0x20u /* out of the given ports, whatever the tables say */

/*
 * Lets the chip forward the (tagged) frame as if it had come in at the CPU port, in the VLAN of its
 * tag. PARAM: no data, shorter than 64 bytes or than its tag, flags; INIT.
 */
int bcmx_tx(bcm_pkt_t* pkt, uint32_t flags);

/*
 * Sends the (tagged) frame out of each port of `tx_ports`, without its tag where the port is in
 * `untagged` too. A port named twice sends it once. PORT: nothing is sent; PARAM; INIT.
 */
int bcmx_tx_lplist(bcm_pkt_t* pkt, bcmx_lplist_t* tx_ports, bcmx_lplist_t* untagged,
                   uint32_t flags);

#ifdef __cplusplus
}
#endif
#endif
