/*
 * The property store: names and text values.
 */
#ifndef SAL_CONFIG_H
#define SAL_CONFIG_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The property's value, valid until it is set again; null when it is not set. */
char* sal_config_get(const char* name);

/* Sets a property; a null value removes it. 0, or negative: no name, no memory. */
int sal_config_set(const char* name, const char* value);

#ifdef __cplusplus
}
#endif
#endif
