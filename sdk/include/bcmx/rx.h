/*
 * Packet receive over all units.
 */
#ifndef BCMX_RX_H
#define BCMX_RX_H

#include <bcm/rx.h>
#include <bcmx/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Adds the unit to packet receive; a second time is no error. UNIT; INIT. */
int bcmx_rx_device_add(int unit);

/* Starts receive on every added unit; a null `cfg` means the defaults. BUSY: already running. */
int bcmx_rx_start(bcm_rx_cfg_t* cfg);

#ifdef __cplusplus
}
#endif
#endif
