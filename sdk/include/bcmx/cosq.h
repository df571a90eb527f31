/*
 * Priority to queue.
 */
#ifndef BCMX_COSQ_H
#define BCMX_COSQ_H

#include <bcm/cosq.h>
#include <bcmx/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Packets of priority `prio` (0 to 7) use queue `cosq` on every port. PARAM. */
int bcmx_cosq_mapping_set(int prio, bcm_cos_queue_t cosq);

/* The same for one ingress port. PORT; PARAM. */
int bcmx_cosq_port_mapping_set(bcmx_lport_t port, int prio, bcm_cos_queue_t cosq);
int bcmx_cosq_port_mapping_get(bcmx_lport_t port, int prio, bcm_cos_queue_t* cosq);

#ifdef __cplusplus
}
#endif
#endif
