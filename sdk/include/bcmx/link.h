/*
 * Link scan over all units.
 */
#ifndef BCMX_LINK_H
#define BCMX_LINK_H

#include <bcm/link.h>
#include <bcm/port.h>
#include <bcmx/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Told of every link change, on the link-scan thread. `info` is valid during the call. */
typedef void (*bcmx_linkscan_handler_t)(bcmx_lport_t port, bcm_port_info_t* info);

/* Sets the period in microseconds; 0 stops scanning, -1 keeps each unit's own period. INIT. */
int bcmx_linkscan_enable_set(int interval_us);

/* Adds the unit's ports to link scan; a second time is no error. UNIT; INIT. */
int bcmx_linkscan_device_add(int unit);

/* Adds a handler. EXISTS; PARAM: null. */
int bcmx_linkscan_register(bcmx_linkscan_handler_t handler);

#ifdef __cplusplus
}
#endif
#endif
