/*
 * Switch controls: numbered settings of a chip. Controls without a name here are known by their
 * number only; the chip keeps their value.
 */
#ifndef BCM_SWITCH_H
#define BCM_SWITCH_H

#include <bcm/error.h>
#include <bcm/types.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef int bcm_switch_control_t;
#define bcmSwitchUnknownUcastToCpu 21 /* copy frames of unknown unicast destination to the CPU */
#define bcmSwitchForwardMode 204      /* forwarding mode of the switch */
#define BCM_SWITCH_CONTROL_COUNT 256

/* Sets a control of the unit. PARAM: control outside 0 to 255; UNIT; INIT. */
int bcm_switch_control_set(int unit, bcm_switch_control_t control, int value);

#ifdef __cplusplus
}
#endif
#endif
