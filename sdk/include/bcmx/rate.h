/*
 * Storm control: packets per second that a port accepts of each class; 0 is no limit.
 */
#ifndef BCMX_RATE_H
#define BCMX_RATE_H

#include <bcmx/types.h>

#ifdef __cplusplus
extern "C" {
#endif

#define BCM_RATE_DLF 0x1   /* unknown unicast */
#define BCM_RATE_MCAST 0x2 /* multicast */
#define BCM_RATE_BCAST 0x4 /* broadcast */

/* `flags` names the class being limited. PORT; PARAM: negative rate, other flags. */
int bcmx_rate_dlfbc_set(int limit, int flags, bcmx_lport_t port);
int bcmx_rate_mcast_set(int limit, int flags, bcmx_lport_t port);
int bcmx_rate_bcast_set(int limit, int flags, bcmx_lport_t port);

/* The limit, and the classes that are limited. PORT; PARAM. */
int bcmx_rate_dlfbc_get(int* limit, int* flags, bcmx_lport_t port);
int bcmx_rate_mcast_get(int* limit, int* flags, bcmx_lport_t port);
int bcmx_rate_bcast_get(int* limit, int* flags, bcmx_lport_t port);

#ifdef __cplusplus
}
#endif
#endif
