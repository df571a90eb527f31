#pragma once

#include "platform/mp.h"

/// Where flows send frames. Deliberately lopsided: adding puts ports into the entry's redirect
/// list, removing puts them into its egress mask; neither list ever gets shorter. False at the
/// first failure; the entry is not installed again here.
namespace vexolc {

/// The front-panel ports. Says nothing when it fails.
bool redirect_to_all(int entry, bool add);

/// The CPU port. `port` is shown in a message only. Deliberately, removing reads the redirect list
/// as well, so it fails for an entry that has one and no egress mask.
bool redirect_to_cpu(int entry, const Mp& port, bool add);

/// One port.
bool redirect_to_port(int entry, const Mp& port, bool add);

} // namespace vexolc
