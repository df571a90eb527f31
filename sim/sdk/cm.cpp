// The configuration manager: units, and the routines that reach them. The SDK's own table of
// devices is the state.
#include <soc/cm.h>
#include <sysconf/sysconf.h>

#include "sim/sdk/gate.h"

extern "C" {
soc_cm_device_t soc_cm_devices[SOC_MAX_NUM_DEVICES] = {};
}

namespace {

using namespace vexosim;

bool is_unit(int unit)
{
    return unit >= 0 && unit < SOC_MAX_NUM_DEVICES && CMDEV(unit).valid != 0;
}

bool supported(uint16_t device_id)
{
    return device_id == BusDevice::kSwitchId;
}

int create(uint16_t device_id, uint8_t revision_id, void* cookie)
{
    if (!card().manager_started)
        return BCM_E_INIT;
    if (!supported(device_id))
        return BCM_E_UNAVAIL;
    const ChipLock chip;
    int unit = 0;
    while (is_unit(unit))
        ++unit;
    if (unit == SOC_MAX_NUM_DEVICES)
        return BCM_E_RESOURCE;
    soc_cm_device_t& device = CMDEV(unit) = {};
    device.dev.dev = unit;
    device.dev.cookie = cookie;
    device.dev_id = device_id;
    device.rev_id = revision_id;
    device.valid = 1;
    if (unit == 0)
        card().stage = Stage::created;
    return unit;
}

bool complete(const soc_cm_device_vectors_t* vectors)
{
    return vectors != nullptr && vectors->config_var_get != nullptr && vectors->read != nullptr &&
           vectors->write != nullptr;
}

int set_vectors(int unit, const soc_cm_device_vectors_t* vectors)
{
    const ChipLock chip;
    if (!is_unit(unit))
        return BCM_E_UNIT;
    if (!complete(vectors))
        return BCM_E_PARAM;
    CMVEC(unit) = *vectors;
    CMDEV(unit).initialised = 1;
    if (unit == 0)
        card().reach(Stage::reachable);
    return BCM_E_NONE;
}

int destroy(int unit)
{
    const ChipLock chip;
    if (!is_unit(unit))
        return BCM_E_UNIT;
    CMDEV(unit) = {};
    if (unit == 0)
        card().lose_chip();
    return BCM_E_NONE;
}

int driver_ids(uint16_t device_id, uint8_t revision_id, uint16_t* driver_device_id,
               uint8_t* driver_revision_id)
{
    if (driver_device_id == nullptr || driver_revision_id == nullptr)
        return BCM_E_PARAM;
    if (!supported(device_id))
        return BCM_E_UNAVAIL;
    *driver_device_id = device_id;
    *driver_revision_id = revision_id;
    return BCM_E_NONE;
}

int ids(int unit, uint16_t* device_id, uint8_t* revision_id)
{
    if (!is_unit(unit))
        return BCM_E_UNIT;
    if (device_id == nullptr || revision_id == nullptr)
        return BCM_E_PARAM;
    *device_id = CMDEV(unit).dev_id;
    *revision_id = CMDEV(unit).rev_id;
    return BCM_E_NONE;
}

} // namespace

extern "C" int sysconf_debug_vectors_get(soc_cm_init_t* vectors)
{
    return gated("sysconf_debug_vectors_get", CallClass::chip, args(Out{vectors}), [&]() -> int {
        if (vectors == nullptr)
            return BCM_E_PARAM;
        *vectors = {};
        return BCM_E_NONE;
    });
}

extern "C" int sysconf_chip_override(int dev, uint16_t* device_id, uint8_t* revision_id)
{
    return gated("sysconf_chip_override", CallClass::chip,
                 args(dev, Out{device_id}, Out{revision_id}), [] { return int{BCM_E_NONE}; });
}

extern "C" int soc_cm_init(soc_cm_init_t* init_data)
{
    return gated("soc_cm_init", CallClass::chip, args(Out{init_data}), [&]() -> int {
        if (init_data == nullptr)
            return BCM_E_PARAM;
        card().manager_started = true;
        return BCM_E_NONE;
    });
}

extern "C" int soc_cm_device_supported(uint16_t device_id, uint8_t revision_id)
{
    return gated("soc_cm_device_supported", CallClass::chip, args(Flags{device_id}, revision_id),
                 [&]() -> int { return supported(device_id) ? BCM_E_NONE : BCM_E_UNAVAIL; });
}

extern "C" int soc_cm_get_id_driver(uint16_t device_id, uint8_t revision_id,
                                    uint16_t* driver_device_id, uint8_t* driver_revision_id)
{
    return gated(
        "soc_cm_get_id_driver", CallClass::chip,
        args(Flags{device_id}, revision_id, Out{driver_device_id}, Out{driver_revision_id}),
        [&] { return driver_ids(device_id, revision_id, driver_device_id, driver_revision_id); });
}

extern "C" int soc_cm_device_create(uint16_t device_id, uint8_t revision_id, void* cookie)
{
    return gated("soc_cm_device_create", CallClass::chip,
                 args(Flags{device_id}, revision_id, cookie),
                 [&] { return create(device_id, revision_id, cookie); });
}

extern "C" int soc_cm_device_init(int unit, soc_cm_device_vectors_t* vectors)
{
    return gated("soc_cm_device_init", CallClass::chip, args(unit, vectors),
                 [&] { return set_vectors(unit, vectors); });
}

extern "C" int soc_cm_device_destroy(int unit)
{
    return gated("soc_cm_device_destroy", CallClass::chip, args(unit),
                 [&] { return destroy(unit); });
}

extern "C" int soc_cm_get_id(int unit, uint16_t* device_id, uint8_t* revision_id)
{
    return gated("soc_cm_get_id", CallClass::chip, args(unit, Out{device_id}, Out{revision_id}),
                 [&] { return ids(unit, device_id, revision_id); });
}
