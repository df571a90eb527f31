/*
 * Start of the switch layer on one unit.
 */
#ifndef BCM_INIT_H
#define BCM_INIT_H

#include <bcm/error.h>
#include <bcm/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Initialises every table of the unit to its defaults: VLAN 1 with all ports, learning on, ports
 * enabled, spanning tree forwarding. Needs soc_reset_init, soc_misc_init and soc_mmu_init first.
 * UNIT: no such unit or not attached. INIT: the chip layer has not been initialised.
 */
int bcm_init(int unit);

#ifdef __cplusplus
}
#endif
#endif
