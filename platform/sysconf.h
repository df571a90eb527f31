#pragma once

#include <bde/ibde.h>

/// Finding the switch chip on the bus, handing it to the SDK, and initialising it. Bring-up only,
/// in the order of `vexo_hwutil_init`; one thread. Results are SDK codes: 0 or above is success.

/// The bus driver's operations; null until `bde_create` has succeeded.
extern ibde_t* bde;

/// Makes the bus driver and stores it in `bde`. Returns what the SDK returns.
int bde_create();

/// Starts the SDK's configuration manager. 0 or -1.
int vexo_sysconf_init();

/// Makes an SDK unit of every device on the bus, 18 at most; a device that is not supported or does
/// not answer ends the walk without failing it. Deliberately once per process: every later call
/// returns -1 and touches nothing. 0, -1, or what `bde_create` returned.
int vexo_sysconf_probe();

/// Gives the SDK the routines by which it reaches `unit`. 0, or -1 also for a unit that is not on
/// the bus.
int vexo_sysconf_attach(int unit);

/// Deliberately always null, also for a property that is set. The SDK reads its properties through
/// the routines that `vexo_sysconf_attach` gives it.
char const* vexo_sysconf_get_property(char const* name);

/// Makes the SDK forget `unit`. The SDK's result, or -1 for a unit that is not on the bus.
int vexo_sysconf_detach(int unit);

/// Initialises the chip and starts the SDK's L2 message thread, where the chip keeps an L2 shadow
/// table, and its link-scan thread. Stops at the first step that fails and returns its code.
/// Properties read: "l2xmsg_thread_usec", "bcm_linkscan_pbmp", "bcm_linkscan_interval".
int vexo_bcm_sdk_system_init(int unit);
