// Device probe and attach. The chip's own initialisation is in system_init.cpp.
#include "platform/sysconf.h"

#include <bde/linux_bde.h>
#include <sal/config.h>
#include <sal/core.h>
#include <soc/cm.h>
#include <sysconf/sysconf.h>

#include "platform/bus_access.h"

ibde_t* bde = nullptr;

namespace {

constexpr int max_devices = 18;

bool sysconf_probed = false;

int bus_device_count()
{
    constexpr int all_types = 0;
    return bde != nullptr ? bde->num_devices(all_types) : 0;
}

bool is_on_bus(int unit)
{
    return unit >= 0 && unit < bus_device_count();
}

struct DeviceIds {
    uint16_t device;
    uint8_t revision;
};

DeviceIds device_ids(int dev)
{
    const ibde_dev_t* record = bde->get_dev(dev);
    DeviceIds ids = {record->device, record->rev};
    sysconf_chip_override(dev, &ids.device, &ids.revision);
    return ids;
}

// The driver ids are asked for and not used.
bool device_answers(int dev, DeviceIds ids)
{
    const ibde_dev_t* record = bde->get_dev(dev);
    uint16_t driver_device = 0;
    uint8_t driver_revision = 0;
    soc_cm_get_id_driver(ids.device, ids.revision, &driver_device, &driver_revision);
    return record->base_address == 0 || sal_memory_check(record->base_address) >= 0;
}

bool can_be_used(int dev, DeviceIds ids)
{
    return soc_cm_device_supported(ids.device, ids.revision) == 0 && device_answers(dev, ids);
}

} // namespace

int bde_create()
{
    linux_bde_bus_t bus = {};
    bus.be_pio = 1;
    bus.be_packet = 0;
    bus.be_other = 1;
    return linux_bde_create(&bus, &bde);
}

int vexo_sysconf_init()
{
    soc_cm_init_t vectors = {};
    if (sysconf_debug_vectors_get(&vectors) != 0)
        return -1;
    return soc_cm_init(&vectors) == 0 ? 0 : -1;
}

int vexo_sysconf_probe()
{
    if (sysconf_probed)
        return -1;
    sysconf_probed = true;
    if (const int rc = bde_create(); rc != 0)
        return rc;
    for (int dev = 0; dev < bus_device_count() && dev < max_devices; ++dev) {
        const DeviceIds ids = device_ids(dev);
        if (!can_be_used(dev, ids))
            break;
        // Negative, or a unit that is not its bus device: the access routines would reach another.
        if (soc_cm_device_create(ids.device, ids.revision, nullptr) != dev)
            return -1;
    }
    return 0;
}

int vexo_sysconf_attach(int unit)
{
    if (!is_on_bus(unit))
        return -1;
    int be_pio = 0;
    int be_packet = 0;
    int be_other = 0;
    bde->pci_bus_features(unit, &be_pio, &be_packet, &be_other);
    soc_cm_device_vectors_t vectors = vexolc::bus_access_vectors(unit);
    return soc_cm_device_init(unit, &vectors) >= 0 ? 0 : -1;
}

char const* vexo_sysconf_get_property(char const* name)
{
    sal_config_get(name); // what it finds is deliberately not handed out
    return nullptr;
}

int vexo_sysconf_detach(int unit)
{
    return is_on_bus(unit) ? soc_cm_device_destroy(unit) : -1;
}
