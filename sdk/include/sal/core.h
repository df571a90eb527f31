/*
 * System layer: start, and memory.
 */
#ifndef SAL_CORE_H
#define SAL_CORE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Start the system layer and its application half; 0, or negative on failure. */
int sal_core_init(void);
int sal_appl_init(void);

/* Memory that the chip can reach, or null; `description` names it in diagnostics. */
void* sal_dma_alloc(size_t size, const char* description);
void sal_dma_free(void* memory);

/* Negative when nothing answers at the address. */
int sal_memory_check(uintptr_t address);

#ifdef __cplusplus
}
#endif
#endif
