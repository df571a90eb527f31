#pragma once

#include "core/factory.h"

/// A new instance, whether or not its card came up: for tests that ask nothing of the chip.
inline VexoBcmSdk& new_instance()
{
    vexosdk_create_sdk_instance();
    return *bcm_sdk;
}
