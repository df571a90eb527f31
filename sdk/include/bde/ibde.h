/*
 * The bus driver's operation table. A unit is addressed by its bus device number.
 */
#ifndef BDE_IBDE_H
#define BDE_IBDE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* A device on the bus. */
typedef struct ibde_dev_s {
    uint16_t device; /* device id */
    uint8_t rev;     /* revision id */
    uint32_t dev_state;
    uintptr_t base_address; /* of the mapped registers; 0 when they are not mapped */
} ibde_dev_t;

/* Operations by position; sflush, sinval, l2p and p2l may be null. */
typedef struct ibde_s {
    const char* (*name)(void);
    int (*num_devices)(int type); /* 0: all */
    const ibde_dev_t* (*get_dev)(int dev);
    uint32_t (*get_dev_type)(int dev);
    uint32_t (*pci_conf_read)(int dev, uint32_t address);
    int (*pci_conf_write)(int dev, uint32_t address, uint32_t data);
    void (*pci_bus_features)(int dev, int* be_pio, int* be_packet, int* be_other);
    uint32_t (*read)(int dev, uint32_t address);
    int (*write)(int dev, uint32_t address, uint32_t data);
    void* (*salloc)(int dev, int size, const char* name);
    void (*sfree)(int dev, void* memory);
    int (*sflush)(int dev, void* address, int length);
    int (*sinval)(int dev, void* address, int length);
    int (*interrupt_connect)(int dev, void (*handler)(void*), void* data);
    int (*interrupt_disconnect)(int dev);
    uintptr_t (*l2p)(int dev, void* logical);
    void* (*p2l)(int dev, uintptr_t physical);
} ibde_t;

#ifdef __cplusplus
}
#endif
#endif
