/*
 * Logical ports and what they stand for.
 */
#ifndef BCMX_LPORT_H
#define BCMX_LPORT_H

#include <bcmx/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Unit of `port`, or PORT when it names no port. */
int bcmx_lport_bcm_unit(bcmx_lport_t port);

/* Chip-local port of `port`, or PORT when it names no port. */
bcm_port_t bcmx_lport_bcm_port(bcmx_lport_t port);

/* Logical port of `port` of module `modid`; BCMX_LPORT_INVALID when there is none. */
bcmx_lport_t bcmx_modid_port_to_lport(bcm_module_t modid, bcm_port_t port);

/* Kinds of port, as the callback below gets them (bit set). */
#define BCMX_PORT_F_VALID 0x01u
#define BCMX_PORT_F_CPU 0x08u
#define BCMX_PORT_F_FE 0x10u
#define BCMX_PORT_F_GE 0x20u
#define BCMX_PORT_F_XE 0x40u
#define BCMX_PORT_F_HG 0x80u

/*
 * Decides about a port of a unit that is being attached: returns the user port to be used for
 * `lport`, or -1 to refuse the port, which then has no logical port. Runs on the thread that calls
 * bcmx_device_attach, ports in rising order.
 */
typedef int (*bcmx_uport_create_callback_t)(bcmx_lport_t lport, int unit, bcm_port_t port,
                                            uint32_t flags);

/* Sets the callback for later attaches; null removes it: every port is then accepted. */
int bcmx_uport_create_callback_set(bcmx_uport_create_callback_t callback);

/* Makes the unit's ports logical ports, asking the callback. UNIT; INIT: before bcm_init; EXISTS.
 */
int bcmx_device_attach(int unit);

#ifdef __cplusplus
}
#endif
#endif
