// The chip layer: reset in its order, L2 message thread, features, LED processor.
#include <soc/drv.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

constexpr int kLedProgramBytes = 256;

int load(const uint8_t* program, int bytes)
{
    if (program == nullptr || bytes < 1 || bytes > kLedProgramBytes)
        return BCM_E_PARAM;
    card().registers.led_program.assign(program, program + bytes);
    return BCM_E_NONE;
}

int has(soc_feature_t feature)
{
    switch (feature) {
    case soc_feature_arl_hashed:
        return card().profile.l2_shadow ? 1 : 0;
    case soc_feature_led_data_offset_a0:
        return card().profile.led_ram_at_160 ? 1 : 0;
    }
    return 0;
}

} // namespace

extern "C" int soc_reset_init(int unit)
{
    return unit_call("soc_reset_init", unit, Stage::reachable, args(unit), [](Chip&) {
        card().ports.clear();
        card().stage = Stage::reset;
        return BCM_E_NONE;
    });
}

extern "C" int soc_misc_init(int unit)
{
    return unit_call("soc_misc_init", unit, Stage::reset, args(unit), [](Chip&) {
        card().reach(Stage::misc);
        return BCM_E_NONE;
    });
}

extern "C" int soc_mmu_init(int unit)
{
    return unit_call("soc_mmu_init", unit, Stage::misc, args(unit), [](Chip&) {
        card().reach(Stage::mmu);
        return BCM_E_NONE;
    });
}

// The table itself is its shadow here, so there is nothing for the thread to copy.
extern "C" int soc_l2x_start(int unit, uint32_t flags, int interval_us)
{
    return unit_call("soc_l2x_start", unit, Stage::mmu, args(unit, Flags{flags}, interval_us),
                     [&](Chip&) {
                         if (!card().profile.l2_shadow)
                             return BCM_E_UNAVAIL;
                         return interval_us < 0 ? BCM_E_PARAM : BCM_E_NONE;
                     });
}

extern "C" int soc_feature(int unit, soc_feature_t feature)
{
    return sure_call("soc_feature", CallClass::chip, args(unit, feature),
                     [&] { return unit == 0 ? has(feature) : 0; });
}

extern "C" int soc_ledproc_config(int unit, const uint8_t* program, int bytes)
{
    const std::size_t shown = bytes > 0 && bytes <= kLedProgramBytes ? std::size_t(bytes) : 0;
    return unit_call("soc_ledproc_config", unit, Stage::reachable,
                     args(unit, Bytes{program, shown}, bytes),
                     [&](Chip&) { return load(program, bytes); });
}
