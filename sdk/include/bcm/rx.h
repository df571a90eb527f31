/*
 * Packet receive: frames for the CPU wait in queues by class of service, pass channels with rate
 * limits, and are handed to the registered handlers on the receive thread, highest priority first.
 */
#ifndef BCM_RX_H
#define BCM_RX_H

#include <bcm/error.h>
#include <bcm/pkt.h>
#include <bcm/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Why a frame is for the CPU. */
typedef enum bcm_rx_reason_e {
    bcmRxReasonInvalid = 0,
    bcmRxReasonArp = 1,            /* an ARP packet */
    bcmRxReasonBpdu = 2,           /* a frame to a reserved bridge group address */
    bcmRxReasonBroadcast = 3,      /* a broadcast of a VLAN that the CPU is in */
    bcmRxReasonCpuLearn = 4,       /* unknown source address on a port that reports them */
    bcmRxReasonDestLookupFail = 5, /* unknown unicast destination */
    bcmRxReasonFilterMatch = 6,    /* a field-processor entry asked for it */
    bcmRxReasonL2Cpu = 7,          /* the MAC table names the CPU port */
    bcmRxReasonMulticast = 8,      /* a multicast of a VLAN that the CPU is in */
    bcmRxReasonL3DestMiss = 9,     /* routed, and no host or route matched */
    bcmRxReasonL3HeaderError = 10, /* routed, and the header was bad or had options */
    bcmRxReasonL3Slowpath = 11,    /* routed, and the next hop is the CPU */
    bcmRxReasonTtl = 12,           /* routed, and the hop count ran out */
    bcmRxReasonCount = 13
} bcm_rx_reason_t;

/* A set of reasons. */
typedef struct bcm_rx_reasons_s {
    uint32_t pbits[2];
} bcm_rx_reasons_t;
#define BCM_RX_REASON_CLEAR_ALL(set) ((set).pbits[0] = (set).pbits[1] = 0)
#define BCM_RX_REASON_SET(set, reason) ((set).pbits[(reason) / 32] |= 1u << ((reason) % 32))
#define BCM_RX_REASON_GET(set, reason) (((set).pbits[(reason) / 32] >> ((reason) % 32) & 1u) != 0)

#define BCM_RX_CHANNELS 4
typedef struct bcm_rx_chan_cfg_s {
    int chains;       /* DMA chains; 0: the channel is not used for receive */
    int rate_pps;     /* packets per second; 0: no limit */
    uint32_t flags;   /* none defined */
    uint32_t cos_bmp; /* classes of service that the channel takes, bit set */
} bcm_rx_chan_cfg_t;

typedef int (*bcm_rx_alloc_f)(int unit, int size, uint32_t flags, void** pkt_data);
typedef int (*bcm_rx_free_f)(int unit, void* pkt_data);

typedef struct bcm_rx_cfg_s {
    int pkt_size;       /* bytes of a packet buffer */
    int pkts_per_chain; /* packets in a DMA chain */
    int global_pps;     /* packets per second over all channels; 0: no limit */
    int max_burst;      /* packets; 0: the receive layer's own choice */
    bcm_rx_chan_cfg_t chan_cfg[BCM_RX_CHANNELS];
    bcm_rx_alloc_f rx_alloc; /* null: the receive layer's own buffers */
    bcm_rx_free_f rx_free;
    uint32_t flags; /* none defined */
} bcm_rx_cfg_t;

/* A handler's verdict. */
typedef enum bcm_rx_e {
    BCM_RX_INVALID = 0,
    BCM_RX_NOT_HANDLED = 1, /* offer the packet to the next handler */
    BCM_RX_HANDLED = 2,     /* done; the receive layer keeps the packet's buffer */
    BCM_RX_HANDLED_OWNED = 3
} bcm_rx_t;

/* Runs on the receive thread. `pkt` is the receive layer's; it is valid during the call only. */
typedef bcm_rx_t (*bcm_rx_cb_f)(int unit, bcm_pkt_t* pkt, void* cookie);

/* Prepares packet receive: no handlers, no rates. UNIT; INIT. */
int bcm_rx_init(int unit);

/* Starts the receive thread; a null `cfg` means the defaults. BUSY: already running; PARAM. */
int bcm_rx_start(int unit, bcm_rx_cfg_t* cfg);

/* Stops the receive thread and, when `cfg` is not null, stores the configuration there. UNIT. */
int bcm_rx_stop(int unit, bcm_rx_cfg_t* cfg);

/*
 * Adds a handler. `flags` selects the classes of service it gets (low 8 bits, one each) and
 * further receive conditions. EXISTS: the same handler at the same priority; PARAM: null handler;
 * INIT: before bcm_rx_init.
 */
int bcm_rx_register(int unit, const char* name, bcm_rx_cb_f handler, uint8_t priority, void* cookie,
                    uint32_t flags);

/* Limits class of service `cos` to `pps` packets per second; 0 lifts the limit. PARAM. */
int bcm_rx_cos_rate_set(int unit, int cos, int pps);

/*
 * Sets entry `index` of the CPU queue mapping: packets whose reasons equal `reasons` under
 * `reasons_mask` (and whose internal priority and packet type match, where their masks are not 0)
 * go to CPU queue `cosq`. The entry's earlier content is replaced; the first matching entry wins.
 * PARAM: index outside 0 to 63, queue outside 0 to 7.
 */
int bcm_rx_cosq_mapping_set(int unit, int index, bcm_rx_reasons_t reasons,
                            bcm_rx_reasons_t reasons_mask, uint8_t int_prio, uint8_t int_prio_mask,
                            uint32_t packet_type, uint32_t packet_type_mask, bcm_cos_queue_t cosq);

/* Delivers CPU queue `queue` through channel `channel`. PARAM: queue above 7, channel above 3. */
int bcm_rx_queue_channel_set(int unit, bcm_cos_queue_t queue, int channel);

#ifdef __cplusplus
}
#endif
#endif
