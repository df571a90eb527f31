/*
 * Trunks (link aggregation groups), 128 of up to 8 members.
 */
#ifndef BCMX_TRUNK_H
#define BCMX_TRUNK_H

#include <bcmx/lplist.h>

#ifdef __cplusplus
extern "C" {
#endif

/* How a trunk spreads frames over its members. */
#define BCM_TRUNK_PSC_SRCMAC 1
#define BCM_TRUNK_PSC_DSTMAC 2
#define BCM_TRUNK_PSC_SRCDSTMAC 3
#define BCM_TRUNK_PSC_SRCIP 4
#define BCM_TRUNK_PSC_DSTIP 5
#define BCM_TRUNK_PSC_SRCDSTIP 6
#define BCM_TRUNK_MAX_PORTCNT 8

typedef struct bcmx_trunk_add_info_s {
    int psc;                /* BCM_TRUNK_PSC_* */
    bcmx_lplist_t ports;    /* all members; the caller frees it, also after a get */
    bcmx_lport_t dlf_port;  /* member for frames of unknown destination; -1: the first */
    bcmx_lport_t mc_port;   /* member for multicast and broadcast; -1: the first */
    bcmx_lport_t ipmc_port; /* member for IP multicast; -1: the first */
} bcmx_trunk_add_info_t;

/* Makes an empty trunk under a free id, stored in `tid`. FULL; PARAM. */
int bcmx_trunk_create(bcm_trunk_t* tid);

/* Makes an empty trunk under `tid`. EXISTS; PARAM: id outside 0 to 127. */
int bcmx_trunk_create_id(bcm_trunk_t tid);

/* Removes a trunk; its members become single ports. NOT_FOUND; PARAM. */
int bcmx_trunk_destroy(bcm_trunk_t tid);

/*
 * Replaces members, criterion and designated ports. NOT_FOUND; PARAM: no member or more than 8, a
 * criterion outside 1 to 6; PORT: no such port, the CPU port; RESOURCE: a port of another trunk.
 */
int bcmx_trunk_set(bcm_trunk_t tid, bcmx_trunk_add_info_t* info);

/* Fills `info`; its list is made anew and is the caller's to free. NOT_FOUND; PARAM. */
int bcmx_trunk_get(bcm_trunk_t tid, bcmx_trunk_add_info_t* info);

/* Sets how frames are spread. NOT_FOUND; PARAM. */
int bcmx_trunk_psc_set(bcm_trunk_t tid, int psc);

/* Reads how frames are spread. NOT_FOUND; PARAM. */
int bcmx_trunk_psc_get(bcm_trunk_t tid, int* psc);

#ifdef __cplusplus
}
#endif
#endif
