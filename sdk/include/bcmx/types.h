/*
 * Logical ports: the cross-unit interface's name for a port.
 */
#ifndef BCMX_TYPES_H
#define BCMX_TYPES_H

#include <bcm/error.h>
#include <bcm/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* A port of any unit. The numbers are the interface's own; -1 names no port. */
typedef int bcmx_lport_t;
#define BCMX_LPORT_INVALID (-1)

#ifdef __cplusplus
}
#endif
#endif
