// Start of the switch layer.
#include <bcm/init.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

using namespace vexosim;

extern "C" int bcm_init(int unit)
{
    return unit_call("bcm_init", unit, Stage::mmu, args(unit), [](Chip&) {
        card().reset_chip();
        card().reach(Stage::initialised);
        card().background.l2_ageing.start();
        card().background.start();
        return BCM_E_NONE;
    });
}
