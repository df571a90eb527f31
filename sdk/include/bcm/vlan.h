/*
 * VLAN records that bcmx/vlan.h shares.
 */
#ifndef BCM_VLAN_H
#define BCM_VLAN_H

#include <bcm/error.h>
#include <bcm/types.h>

#ifdef __cplusplus
extern "C" {
#endif

#define BCM_VLAN_DEFAULT 1
#define BCM_VLAN_MAX 4094

/* A VLAN by source subnet. */
typedef struct bcm_vlan_ip_s {
    uint32_t flags; /* BCM_VLAN_SUBNET_IP6 */
    bcm_ip_t ip4;
    bcm_ip_t mask;
    bcm_ip6_t ip6;
    int prefix; /* prefix length in bits, with BCM_VLAN_SUBNET_IP6 */
    bcm_vlan_t vid;
    int prio; /* 0 to 7 */
} bcm_vlan_ip_t;
#define BCM_VLAN_SUBNET_IP6 0x4000u

#ifdef __cplusplus
}
#endif
#endif
