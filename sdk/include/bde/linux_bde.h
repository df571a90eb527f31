/*
 * Creation of the bus driver.
 */
#ifndef BDE_LINUX_BDE_H
#define BDE_LINUX_BDE_H

#include <bde/ibde.h>

#ifdef __cplusplus
extern "C" {
#endif

/* How the bus orders bytes; each 1 for big-endian. */
typedef struct linux_bde_bus_s {
    int be_pio;
    int be_packet;
    int be_other;
} linux_bde_bus_t;

/* Stores the bus driver's operations in `bde`; 0, or negative on failure. */
int linux_bde_create(linux_bde_bus_t* bus, ibde_t** bde);

#ifdef __cplusplus
}
#endif
#endif
