/*
 * Switch controls over all units, and per port.
 */
#ifndef BCMX_SWITCH_H
#define BCMX_SWITCH_H

#include <bcm/switch.h>
#include <bcmx/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* PARAM: control outside 0 to 255, null output. */
int bcmx_switch_control_set(bcm_switch_control_t control, int value);
int bcmx_switch_control_get(bcm_switch_control_t control, int* value);

/* The same for one port, for controls that a port has. PORT; PARAM. */
int bcmx_switch_control_port_set(bcmx_lport_t port, bcm_switch_control_t control, int value);
int bcmx_switch_control_port_get(bcmx_lport_t port, bcm_switch_control_t control, int* value);

#ifdef __cplusplus
}
#endif
#endif
