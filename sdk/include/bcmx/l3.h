/*
 * Layer 3: interfaces, hosts and routes.
 */
#ifndef BCMX_L3_H
#define BCMX_L3_H

#include <bcmx/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Flags of interfaces, hosts and routes. */
#define BCM_L3_HIT 0x00008u        /* in a record that was found: frames have found the entry */
#define BCM_L3_ADD_TO_ARL 0x00020u /* interface: the router MAC has a static entry at the CPU */
#define BCM_L3_WITH_ID 0x00040u    /* interface: under the id in the record */
#define BCM_L3_NEGATE 0x00080u     /* delete by interface: those of every other interface */
#define BCM_L3_REPLACE 0x00100u    /* take the place of what exists */
#define BCM_L3_TGID 0x00200u       /* the egress is a trunk */
#define BCM_L3_IP6 0x20000u        /* IPv6 */

typedef struct bcmx_l3_intf_s {
    uint32_t l3i_flags;
    unsigned l3i_intf_id; /* 0 to 511 */
    bcm_mac_t l3i_mac_addr;
    bcm_vlan_t l3i_vid;
} bcmx_l3_intf_t;

typedef struct bcmx_l3_host_s {
    uint32_t l3a_flags;
    bcm_ip_t l3a_ip_addr;
    bcm_ip6_t l3a_ip6_addr;
    unsigned l3a_intf;
    bcm_mac_t l3a_nexthop_mac;
    bcmx_lport_t l3a_lport;   /* egress, unless BCM_L3_TGID */
    bcm_trunk_t l3a_trunk_id; /* egress, with BCM_L3_TGID */
} bcmx_l3_host_t;

typedef struct bcmx_l3_route_s {
    uint32_t l3r_flags;
    bcm_ip_t l3r_ip_addr;
    bcm_ip_t l3r_ip_mask;
    bcm_ip6_t l3r_ip6_net;
    bcm_ip6_t l3r_ip6_mask;
    unsigned l3r_intf;
    bcm_mac_t l3r_nexthop_mac;
    bcm_ip_t l3r_nexthop_ip;
    bcmx_lport_t l3r_lport;   /* egress, unless BCM_L3_TGID */
    bcm_trunk_t l3r_trunk_id; /* egress, with BCM_L3_TGID */
} bcmx_l3_route_t;

/* Clear a record. Return 0; PARAM: null. */
int bcmx_l3_intf_t_init(bcmx_l3_intf_t* intf);
int bcmx_l3_host_t_init(bcmx_l3_host_t* host);
int bcmx_l3_route_t_init(bcmx_l3_route_t* route);

/*
 * Interfaces. create stores the chosen id in the record, and on EXISTS (same MAC and VLAN, or same
 * id without BCM_L3_REPLACE) the id of the existing one; FULL, also of the MAC table; PARAM:
 * multicast MAC, VLAN, id. Hosts and routes may name an interface that has been deleted: their
 * frames are dropped until it is there again.
 * get (by id) and find (by MAC and VLAN) fill the record; NOT_FOUND. delete is by id.
 */
int bcmx_l3_intf_create(bcmx_l3_intf_t* intf);
int bcmx_l3_intf_get(bcmx_l3_intf_t* intf);
int bcmx_l3_intf_find(bcmx_l3_intf_t* intf);
int bcmx_l3_intf_delete(bcmx_l3_intf_t* intf);
int bcmx_l3_intf_delete_all(void);

/*
 * Hosts, by address. EXISTS; NOT_FOUND, also of interface and trunk; FULL; PARAM; PORT. find fills
 * the record; delete_by_network removes the hosts inside the route's network. To find nothing to
 * remove is success, except by address.
 */
int bcmx_l3_host_add(bcmx_l3_host_t* host);
int bcmx_l3_host_find(bcmx_l3_host_t* host);
int bcmx_l3_host_delete(bcmx_l3_host_t* host);
int bcmx_l3_host_delete_by_network(bcmx_l3_route_t* route);
int bcmx_l3_host_delete_by_interface(bcmx_l3_host_t* host);
int bcmx_l3_host_delete_all(void);

/* Routes, by network and mask. Codes as for hosts; PARAM: a mask with holes, host bits set. */
int bcmx_l3_route_add(bcmx_l3_route_t* route);
int bcmx_l3_route_get(bcmx_l3_route_t* route);
int bcmx_l3_route_delete(bcmx_l3_route_t* route);
int bcmx_l3_route_delete_by_interface(bcmx_l3_route_t* route);
int bcmx_l3_route_delete_all(void);

/*
 * Marks the IPv4 host entry of `ip` usable, or not: then its frames go by the routes. NOT_FOUND.
 */
int bcmx_l3_validate_entry(bcm_ip_t ip);
int bcmx_l3_invalidate_entry(bcm_ip_t ip);

#ifdef __cplusplus
}
#endif
#endif
