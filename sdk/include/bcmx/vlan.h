/*
 * VLANs: membership, and VLAN assignment by MAC address and subnet.
 */
#ifndef BCMX_VLAN_H
#define BCMX_VLAN_H

#include <bcm/vlan.h>
#include <bcmx/lplist.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Makes an empty VLAN. EXISTS; PARAM: outside 1 to 4094; FULL. */
int bcmx_vlan_create(bcm_vlan_t vid);

/* Removes a VLAN. NOT_FOUND; BADID: the default VLAN; PARAM. */
int bcmx_vlan_destroy(bcm_vlan_t vid);

/*
 * Makes `ports` members; those in `untagged` too leave without a tag. A port that is a member
 * already stays one, and an untagged member is not made a tagged one by it: remove it first.
 * NOT_FOUND: no such VLAN; PORT: a port of either list, nothing is changed then.
 */
int bcmx_vlan_port_add(bcm_vlan_t vid, bcmx_lplist_t ports, bcmx_lplist_t untagged);

/* Takes `ports` out of the VLAN; ports that are not in it are no error. NOT_FOUND; PORT. */
int bcmx_vlan_port_remove(bcm_vlan_t vid, bcmx_lplist_t ports);

/* Replaces the lists' content by all members and by the untagged ones, rising. NOT_FOUND; PARAM. */
int bcmx_vlan_port_get(bcm_vlan_t vid, bcmx_lplist_t* ports, bcmx_lplist_t* untagged);

/* Untagged frames from `mac` belong to `vid` with priority `prio`, 0 to 7. PARAM; FULL. */
int bcmx_vlan_mac_add(bcm_mac_t mac, bcm_vlan_t vid, int prio);

/* Untagged IPv4 frames from the subnet belong to `vid`. PARAM: bad mask, VLAN, priority; FULL. */
int bcmx_vlan_ip4_add(bcm_ip_t ip, bcm_ip_t mask, bcm_vlan_t vid, int prio);

/* The same for a subnet given as a record, IPv4 or IPv6 by its flags. PARAM; FULL. */
int bcmx_vlan_ip_add(bcm_vlan_ip_t* vlan_ip);

#ifdef __cplusplus
}
#endif
#endif
