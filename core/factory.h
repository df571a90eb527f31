#pragma once

#include "core/bcm_sdk.h"

/// The three entry points of the library, with C linkage, and the one instance. Not guarded: the
/// caller creates, uses and deletes the instance from one thread.

/// The instance, or null.
extern VexoBcmSdk* bcm_sdk;

extern "C" {

/// Makes the instance, in place of an existing one, and brings the card up before it returns.
/// Always true: a card that does not come up does not fail it, and one process can bring the card
/// up only once. When construction throws, the exception passes through and there is no instance.
bool vexosdk_create_sdk_instance();

/// Gives the instance. False, with `out` untouched, when there is none; never makes one.
bool vexosdk_get_sdk_instance(VexoSdkBase*& out);

/// Deletes the one instance, deliberately whatever pointer is given; the chip stays programmed.
/// Always true, also when there is none.
bool vexosdk_delete_sdk_instance(VexoSdkBase* instance);
}
