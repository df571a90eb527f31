/*
 * The MAC table of one unit, and the flags that bcmx/l2.h shares.
 */
#ifndef BCM_L2_H
#define BCM_L2_H

#include <bcm/error.h>
#include <bcm/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Flags of an entry. */
#define BCM_L2_PENDING 0x010u         /* learned, not yet confirmed */
#define BCM_L2_STATIC 0x020u          /* never aged, never moved */
#define BCM_L2_TRUNK_MEMBER 0x080u    /* the destination is a trunk */
#define BCM_L2_MCAST 0x100u           /* a multicast address */
#define BCM_L2_REPLACE_DYNAMIC 0x200u /* on add: may take the place of a learned entry */

/* Flags of bulk deletes: 0 removes learned entries only. */
#define BCM_L2_DELETE_STATIC 0x1u

/* An entry as one unit holds it. */
typedef struct bcm_l2_addr_s {
    uint32_t flags; /* BCM_L2_* */
    bcm_mac_t mac;
    bcm_vlan_t vid;
    bcm_port_t port;    /* chip-local, unless BCM_L2_TRUNK_MEMBER */
    bcm_module_t modid; /* module of the port */
    bcm_trunk_t tgid;   /* with BCM_L2_TRUNK_MEMBER */
    int rtag;           /* trunk selection value */
    int cos_dst;        /* class of service by destination */
    int cos_src;        /* class of service by source */
    int l2mc_index;     /* multicast index, with BCM_L2_MCAST */
} bcm_l2_addr_t;

/* Called for each entry; a negative result ends the walk. */
typedef int (*bcm_l2_traverse_cb)(int unit, bcm_l2_addr_t* info, void* user_data);

/*
 * Calls `trav_fn` with every entry of the unit's MAC table, on the caller's thread. The handler may
 * change the table: the walk is over the entries there were at its start. Returns the handler's
 * negative result when it ended the walk. PARAM: null handler; UNIT; INIT.
 */
int bcm_l2_traverse(int unit, bcm_l2_traverse_cb trav_fn, void* user_data);

#ifdef __cplusplus
}
#endif
#endif
