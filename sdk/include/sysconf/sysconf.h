/*
 * Hooks of the SDK's device configuration.
 */
#ifndef SYSCONF_SYSCONF_H
#define SYSCONF_SYSCONF_H

#include <soc/cm.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Fills the configuration manager's debug routines; 0, or another value on failure. */
int sysconf_debug_vectors_get(soc_cm_init_t* vectors);

/* Lets the configuration replace the ids of bus device `dev`; 0. */
int sysconf_chip_override(int dev, uint16_t* device_id, uint8_t* revision_id);

#ifdef __cplusplus
}
#endif
#endif
