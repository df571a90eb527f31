/*
 * The MAC table, ageing, learning limits and notification.
 */
#ifndef BCMX_L2_H
#define BCMX_L2_H

#include <bcm/l2.h>
#include <bcmx/lplist.h>

#ifdef __cplusplus
extern "C" {
#endif

/* An entry of the MAC table, system-wide. */
typedef struct bcmx_l2_addr_s {
    uint32_t flags; /* BCM_L2_* */
    bcm_mac_t mac;
    bcm_vlan_t vid;
    bcmx_lport_t lport; /* destination, unless BCM_L2_TRUNK_MEMBER */
    bcm_trunk_t tgid;   /* destination, with BCM_L2_TRUNK_MEMBER */
    int rtag;           /* trunk selection value */
    int cos_dst;        /* class of service by destination */
    int cos_src;        /* class of service by source */
    int l2mc_index;     /* multicast index, with BCM_L2_MCAST */
    int auth;           /* authentication value of the entry */
} bcmx_l2_addr_t;

/*
 * Adds an entry; frames to the address do not leave through the ports of `port_block` (may be
 * null). EXISTS: the address is in the VLAN already, and not as a learned entry that
 * BCM_L2_REPLACE_DYNAMIC lets go; FULL; PORT; NOT_FOUND: no such trunk; PARAM: VLAN above 4095.
 */
int bcmx_l2_addr_add(bcmx_l2_addr_t* addr, bcmx_lplist_t* port_block);

/* Removes one entry, static or not. NOT_FOUND; PARAM. */
int bcmx_l2_addr_delete(bcm_mac_t mac, bcm_vlan_t vid);

/*
 * Bulk deletes. `flags` 0 removes learned entries only, BCM_L2_DELETE_STATIC all. To find nothing
 * to remove is success, except by MAC: NOT_FOUND. PORT: no such port; NOT_FOUND: no such trunk;
 * PARAM: VLAN above 4095, other flags.
 */
int bcmx_l2_addr_delete_by_mac(bcm_mac_t mac, uint32_t flags);
int bcmx_l2_addr_delete_by_vlan(bcm_vlan_t vid, uint32_t flags);
int bcmx_l2_addr_delete_by_port(bcmx_lport_t port, uint32_t flags);
int bcmx_l2_addr_delete_by_trunk(bcm_trunk_t tid, uint32_t flags);

/* Seconds after which an address that is not heard is forgotten; 0: never. PARAM: negative. */
int bcmx_l2_age_timer_set(int age_seconds);
int bcmx_l2_age_timer_get(int* age_seconds);

/* A limit on learned addresses. The flags choose the scope; the others' fields are ignored. */
typedef struct bcm_l2_learn_limit_s {
    uint32_t flags; /* BCM_L2_LEARN_LIMIT_* */
    bcm_vlan_t vlan;
    bcmx_lport_t port;
    bcm_trunk_t trunk;
    int limit; /* addresses; -1: no limit */
} bcm_l2_learn_limit_t;
#define BCM_L2_LEARN_LIMIT_SYSTEM 0x1u
#define BCM_L2_LEARN_LIMIT_VLAN 0x2u
#define BCM_L2_LEARN_LIMIT_PORT 0x4u
#define BCM_L2_LEARN_LIMIT_TRUNK 0x8u

/* Clears a limit record: no scope, no limit. */
void bcmx_l2_learn_limit_t_init(bcm_l2_learn_limit_t* limit);

/* UNAVAIL: the chip has no such limit; PARAM: scope or value; PORT; NOT_FOUND: no such VLAN, trunk.
 */
int bcmx_l2_learn_limit_set(bcm_l2_learn_limit_t* limit);

/* Fills in the limit of the scope; a record without scope reads the system's. Codes as above. */
int bcmx_l2_learn_limit_get(bcm_l2_learn_limit_t* limit);

/* Told of every entry that came (`insert` 1) or went (0), on the notification thread, in order. */
typedef void (*bcmx_l2_notify_f)(bcmx_l2_addr_t* addr, int insert, void* user_data);

/* Adds a handler. EXISTS: the same pair again; PARAM: null. */
int bcmx_l2_notify_register(bcmx_l2_notify_f handler, void* user_data);

/* Starts the notification thread; a second start is no error. INIT. */
int bcmx_l2_notify_start(void);

#ifdef __cplusplus
}
#endif
#endif
