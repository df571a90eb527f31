#pragma once

#include "core/factory.h"
#include "vexosim/clock.h"

/// A new instance, whether or not its card came up, without threads of the SDK's: for tests that
/// ask nothing of the chip.
inline VexoBcmSdk& new_instance()
{
    vexosim::use_manual_clock();
    vexosdk_create_sdk_instance();
    return *bcm_sdk;
}
