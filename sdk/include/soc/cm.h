/*
 * Configuration manager: devices, and the routines that reach them.
 */
#ifndef SOC_CM_H
#define SOC_CM_H

#include <bcm/error.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define SOC_MAX_NUM_DEVICES 18

/* The manager's handle for a device. */
typedef struct soc_cm_dev_s {
    int dev; /* unit */
    void* cookie;
} soc_cm_dev_t;

/* Diagnostic routines; null members are not called. */
typedef struct soc_cm_init_s {
    int (*debug_out)(uint32_t flags, const char* format, ...);
    int (*debug_check)(uint32_t flags);
    int (*debug_dump)(soc_cm_dev_t* dev);
} soc_cm_init_t;

typedef void (*soc_cm_isr_func_t)(void* data);

/* How the SDK reaches a device. */
typedef struct soc_cm_device_vectors_s {
    char* (*config_var_get)(soc_cm_dev_t* dev, const char* property);
    int (*interrupt_connect)(soc_cm_dev_t* dev, soc_cm_isr_func_t handler, void* data);
    int (*interrupt_disconnect)(soc_cm_dev_t* dev);
    uintptr_t base_address; /* of the mapped registers; 0: use read and write */
    uint32_t (*read)(soc_cm_dev_t* dev, uint32_t address);
    int (*write)(soc_cm_dev_t* dev, uint32_t address, uint32_t data);
    uint32_t (*pci_conf_read)(soc_cm_dev_t* dev, uint32_t address);
    int (*pci_conf_write)(soc_cm_dev_t* dev, uint32_t address, uint32_t data);
    void* (*salloc)(soc_cm_dev_t* dev, int size, const char* name);
    void (*sfree)(soc_cm_dev_t* dev, void* memory);
    int (*sflush)(soc_cm_dev_t* dev, void* address, int length);
    int (*sinval)(soc_cm_dev_t* dev, void* address, int length);
    uintptr_t (*l2p)(soc_cm_dev_t* dev, void* logical);
    void* (*p2l)(soc_cm_dev_t* dev, uintptr_t physical);
} soc_cm_device_vectors_t;

/* A device as the manager keeps it. CMDEV and CMVEC give a unit's record and its vectors. */
typedef struct soc_cm_device_s {
    soc_cm_dev_t dev;
    uint16_t dev_id;
    uint8_t rev_id;
    int valid;       /* created */
    int initialised; /* its vectors are set */
    soc_cm_device_vectors_t vectors;
} soc_cm_device_t;
extern soc_cm_device_t soc_cm_devices[SOC_MAX_NUM_DEVICES];
#define CMDEV(unit) (soc_cm_devices[(unit)])
#define CMVEC(unit) (CMDEV(unit).vectors)

/* Starts the manager. 0, or negative: PARAM. */
int soc_cm_init(soc_cm_init_t* init_data);

/* 0 when a driver for the ids exists, else a negative code. */
int soc_cm_device_supported(uint16_t device_id, uint8_t revision_id);

/* Driver ids for the ids of a device. 0; UNAVAIL: no driver; PARAM. */
int soc_cm_get_id_driver(uint16_t device_id, uint8_t revision_id, uint16_t* driver_device_id,
                         uint8_t* driver_revision_id);

/* Makes a unit for a device and returns its number; negative: UNAVAIL, RESOURCE, INIT. */
int soc_cm_device_create(uint16_t device_id, uint8_t revision_id, void* cookie);

/* Sets the unit's vectors; they are copied. 0; UNIT; PARAM. */
int soc_cm_device_init(int unit, soc_cm_device_vectors_t* vectors);

/* Forgets a unit. 0; UNIT. */
int soc_cm_device_destroy(int unit);

/* Ids of a unit. 0; UNIT; PARAM. */
int soc_cm_get_id(int unit, uint16_t* device_id, uint8_t* revision_id);

#ifdef __cplusplus
}
#endif
#endif
