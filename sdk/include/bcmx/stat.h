/*
 * Port counters.
 */
#ifndef BCMX_STAT_H
#define BCMX_STAT_H

#include <bcm/stat.h>
#include <bcmx/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* One counter, 64 bits or its low 32 bits. PORT; PARAM: no such counter, null output. */
int bcmx_stat_get(bcmx_lport_t port, bcm_stat_val_t type, uint64_t* value);
int bcmx_stat_get32(bcmx_lport_t port, bcm_stat_val_t type, uint32_t* value);

/* Sets every counter of the port to 0. PORT. */
int bcmx_stat_clear(bcmx_lport_t port);

#ifdef __cplusplus
}
#endif
#endif
