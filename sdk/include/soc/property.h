/*
 * Properties of a unit, read through the unit's configuration lookup.
 */
#ifndef SOC_PROPERTY_H
#define SOC_PROPERTY_H

#include <bcm/types.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The property's text (NAME.UNIT before NAME), or null. */
char* soc_property_get_str(int unit, const char* name);

/* As a number (decimal, or hexadecimal with 0x); `default_value` when not set or not a number. */
uint32_t soc_property_get(int unit, const char* name, uint32_t default_value);

/* As a port set (a hexadecimal bit map of up to 96 bits); when not set, all ports or none. */
bcm_pbmp_t soc_property_get_pbmp(int unit, const char* name, int default_all);

#ifdef __cplusplus
}
#endif
#endif
