/*
 * Class-of-service queues of one unit.
 */
#ifndef BCM_COSQ_H
#define BCM_COSQ_H

#include <bcm/error.h>
#include <bcm/types.h>

#ifdef __cplusplus
extern "C" {
#endif

#define BCM_COS_COUNT 8
#define BCM_PRIO_MAX 7

/* Sets the number of queues of every port, 1 to 8, and spreads the priorities over them. PARAM. */
int bcm_cosq_config_set(int unit, int numq);

#ifdef __cplusplus
}
#endif
#endif
