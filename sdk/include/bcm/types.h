/*
 * Basic types of the unit interface. A port here is chip-local (0 is the CPU port); the
 * cross-unit interface in bcmx/ names ports by logical port instead.
 */
#ifndef BCM_TYPES_H
#define BCM_TYPES_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef int bcm_port_t;         /* chip-local port; 0 is the CPU port */
typedef int bcm_module_t;       /* module id of a chip in a system */
typedef int bcm_trunk_t;        /* trunk (link aggregation group) id */
typedef int bcm_cos_queue_t;    /* queue, 0 is the lowest */
typedef int bcm_stg_t;          /* spanning-tree group; 1 is the default group */
typedef uint16_t bcm_vlan_t;    /* VLAN id, 1 to 4094 */
typedef uint8_t bcm_mac_t[6];   /* MAC address in wire order */
typedef uint32_t bcm_ip_t;      /* IPv4 address in host order */
typedef uint8_t bcm_ip6_t[16];  /* IPv6 address in wire order */
typedef uint16_t bcm_l4_port_t; /* TCP or UDP port in host order */

/* A set of chip-local ports, 0 to 95. */
#define BCM_PBMP_PORT_MAX 96
typedef struct bcm_pbmp_s {
    uint32_t pbits[BCM_PBMP_PORT_MAX / 32];
} bcm_pbmp_t;

#define BCM_PBMP_CLEAR(pbm) ((pbm).pbits[0] = (pbm).pbits[1] = (pbm).pbits[2] = 0)
#define BCM_PBMP_PORT_ADD(pbm, port) ((pbm).pbits[(port) / 32] |= 1u << ((port) % 32))
#define BCM_PBMP_PORT_REMOVE(pbm, port) ((pbm).pbits[(port) / 32] &= ~(1u << ((port) % 32)))
#define BCM_PBMP_MEMBER(pbm, port) (((pbm).pbits[(port) / 32] >> ((port) % 32) & 1u) != 0)

#ifdef __cplusplus
}
#endif
#endif
