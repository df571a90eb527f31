/*
 * Link scan of one unit: who finds link changes, and how often.
 */
#ifndef BCM_LINK_H
#define BCM_LINK_H

#include <bcm/error.h>
#include <bcm/types.h>

#ifdef __cplusplus
extern "C" {
#endif

#define BCM_LINKSCAN_MODE_NONE 0
#define BCM_LINKSCAN_MODE_SW 1 /* the link-scan thread polls the PHY */
#define BCM_LINKSCAN_MODE_HW 2 /* the chip polls the PHY */

/* Sets how link changes of `port` are found. PORT; PARAM: unknown mode; UNIT; INIT. */
int bcm_linkscan_mode_set(int unit, bcm_port_t port, int mode);

/*
 * Starts the unit's link-scan thread with a period of `interval_us` microseconds; 0 stops it; a
 * negative value keeps the period and starts it. Handlers run on that thread. UNIT; INIT.
 */
int bcm_linkscan_enable_set(int unit, int interval_us);

#ifdef __cplusplus
}
#endif
#endif
