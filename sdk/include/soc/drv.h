/*
 * Chip layer: reset, memory management, the L2 shadow table, features, the LED processor.
 */
#ifndef SOC_DRV_H
#define SOC_DRV_H

#include <bcm/error.h>
#include <bcm/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Reset and basic set-up of a chip, in this order. 0; UNIT; INIT: out of order. */
int soc_reset_init(int unit);
int soc_misc_init(int unit);
int soc_mmu_init(int unit);

/* Starts the L2 message thread, which keeps the shadow table, every `interval_us` microseconds. */
int soc_l2x_start(int unit, uint32_t flags, int interval_us);

/* What a chip has; soc_feature is not 0 when the unit's control record says so. */
typedef enum soc_feature_e {
    soc_feature_arl_hashed,        /* an L2 table with a shadow kept by software */
    soc_feature_led_data_offset_a0 /* LED RAM for port data starts at 160, else at 128 */
} soc_feature_t;
int soc_feature(int unit, soc_feature_t feature);

/* Loads a program of `bytes` bytes (at most 256) into the LED processor and starts it. PARAM; UNIT.
 */
int soc_ledproc_config(int unit, const uint8_t* program, int bytes);

/* Byte offset of the LED processor's data RAM in the register space; a word holds one byte. */
#define SOC_LED_DATA_RAM_OFFSET 0x1C00u

#ifdef __cplusplus
}
#endif
#endif
