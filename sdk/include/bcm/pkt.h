/*
 * The packet descriptor, used both for packets received by the CPU and for packets it sends.
 */
#ifndef BCM_PKT_H
#define BCM_PKT_H

#include <bcm/types.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct bcm_pkt_blk_s {
    uint8_t* data;
    int len; /* bytes */
} bcm_pkt_blk_t;

struct bcm_pkt_s;
typedef void (*bcm_pkt_cb_f)(int unit, struct bcm_pkt_s* pkt, void* cookie);

typedef struct bcm_pkt_s {
    bcm_pkt_blk_t* pkt_data; /* data blocks; the frame starts at the destination MAC address */
    uint8_t blk_count;       /* number of data blocks */
    uint8_t unit;
    uint8_t cos;            /* class of service, 0 to 7 */
    uint8_t prio_int;       /* internal priority, 0 to 7 */
    bcm_vlan_t vlan;        /* VLAN that the frame was received in */
    uint8_t rx_port;        /* chip-local port that the frame came in at */
    uint8_t rx_untagged;    /* 1: the frame came in without a tag; the one in the data was added */
    uint16_t pkt_len;       /* frame length in bytes, without the frame check sequence */
    uint16_t tot_len;       /* length of all blocks in bytes */
    uint32_t rx_reason;     /* why the CPU got the frame: a bcm_rx_reason_t */
    uint32_t flags;         /* BCM_PKT_F_* */
    bcm_pkt_cb_f call_back; /* transmit is synchronous while this is null */
    void* cookie;
} bcm_pkt_t;

/* Transmit: the frame enters the switch as if it had been received at the CPU port. */
#define BCM_PKT_F_SWITCHED 0x00100000u

#ifdef __cplusplus
}
#endif
#endif
