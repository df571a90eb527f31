/*
 * Spanning-tree groups: a port's state in one group.
 */
#ifndef BCMX_STG_H
#define BCMX_STG_H

#include <bcm/stg.h>
#include <bcmx/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* State (BCM_STG_STP_*) of `port` in group `stg`. NOT_FOUND: group outside 1 to 255; PORT; PARAM.
 */
int bcmx_stg_stp_set(bcm_stg_t stg, bcmx_lport_t port, int state);
int bcmx_stg_stp_get(bcm_stg_t stg, bcmx_lport_t port, int* state);

#ifdef __cplusplus
}
#endif
#endif
