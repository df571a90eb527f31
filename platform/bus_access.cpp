// The SDK's way to the chip: each routine hands its arguments to the bus driver, with the unit in
// place of the device, because a unit has the number of its bus device.
#include "platform/bus_access.h"

#include <sal/config.h>

#include "platform/sysconf.h"

extern "C" {

static char* config_var_get(soc_cm_dev_t*, const char* property)
{
    return sal_config_get(property);
}

static int interrupt_connect(soc_cm_dev_t* dev, soc_cm_isr_func_t handler, void* data)
{
    return bde->interrupt_connect(dev->dev, handler, data);
}

// Interrupts deliberately stay connected.
static int interrupt_disconnect(soc_cm_dev_t*)
{
    return 0;
}

static uint32_t register_read(soc_cm_dev_t* dev, uint32_t address)
{
    return bde->read(dev->dev, address);
}

static int register_write(soc_cm_dev_t* dev, uint32_t address, uint32_t data)
{
    return bde->write(dev->dev, address, data);
}

static uint32_t pci_conf_read(soc_cm_dev_t* dev, uint32_t address)
{
    return bde->pci_conf_read(dev->dev, address);
}

static int pci_conf_write(soc_cm_dev_t* dev, uint32_t address, uint32_t data)
{
    return bde->pci_conf_write(dev->dev, address, data);
}

static void* shared_alloc(soc_cm_dev_t* dev, int size, const char* name)
{
    return bde->salloc(dev->dev, size, name);
}

static void shared_free(soc_cm_dev_t* dev, void* memory)
{
    bde->sfree(dev->dev, memory);
}

static int cache_flush(soc_cm_dev_t* dev, void* address, int length)
{
    return bde->sflush != nullptr ? bde->sflush(dev->dev, address, length) : 0;
}

static int cache_invalidate(soc_cm_dev_t* dev, void* address, int length)
{
    return bde->sinval != nullptr ? bde->sinval(dev->dev, address, length) : 0;
}

static uintptr_t logical_to_physical(soc_cm_dev_t* dev, void* logical)
{
    return bde->l2p != nullptr ? bde->l2p(dev->dev, logical) : 0;
}

static void* physical_to_logical(soc_cm_dev_t* dev, uintptr_t physical)
{
    return bde->p2l != nullptr ? bde->p2l(dev->dev, physical) : nullptr;
}

} // extern "C"

soc_cm_device_vectors_t vexolc::bus_access_vectors(int unit)
{
    soc_cm_device_vectors_t vectors = {};
    vectors.config_var_get = config_var_get;
    vectors.interrupt_connect = interrupt_connect;
    vectors.interrupt_disconnect = interrupt_disconnect;
    vectors.base_address = bde->get_dev(unit)->base_address;
    vectors.read = register_read;
    vectors.write = register_write;
    vectors.pci_conf_read = pci_conf_read;
    vectors.pci_conf_write = pci_conf_write;
    vectors.salloc = shared_alloc;
    vectors.sfree = shared_free;
    vectors.sflush = cache_flush;
    vectors.sinval = cache_invalidate;
    vectors.l2p = logical_to_physical;
    vectors.p2l = physical_to_logical;
    return vectors;
}
