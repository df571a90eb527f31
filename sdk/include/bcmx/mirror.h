/*
 * Port mirroring.
 */
#ifndef BCMX_MIRROR_H
#define BCMX_MIRROR_H

#include <bcmx/types.h>

#ifdef __cplusplus
extern "C" {
#endif

#define BCM_MIRROR_PORT_ENABLE 0x1u
#define BCM_MIRROR_PORT_INGRESS 0x2u
#define BCM_MIRROR_PORT_EGRESS 0x4u
#define BCM_MIRROR_PORT_EGRESS_TRUE 0x8u /* egress copies as they leave, after every change */

/* Turns all mirroring off. INIT. */
int bcmx_mirror_init(void);

/* Format of copies: 0 as the chip chooses, 1 as received. PARAM. */
int bcmx_mirror_pfmt_set(int mode);

/* Copies the traffic of `port` to `dest` as the flags say; 0 stops it. PORT; PARAM: flags, itself.
 */
int bcmx_mirror_port_set(bcmx_lport_t port, bcmx_lport_t dest, uint32_t flags);

/* Destination (-1: none) and flags of `port`. PORT; PARAM. */
int bcmx_mirror_port_get(bcmx_lport_t port, bcmx_lport_t* dest, uint32_t* flags);

#ifdef __cplusplus
}
#endif
#endif
