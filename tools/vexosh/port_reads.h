#pragma once

#include <string>
#include <vector>

#include "core/sdk_base.h"
#include "tools/vexosh/abilities.h"
#include "tools/vexosh/verbs.h"

/// Properties as text, read through the driver.
namespace vexosh {

/// What stands for a value that the driver could not read.
inline const std::string kUnreadable = "?";

/// Scopes of learning limits.
enum LimitKind { kPortLimit = 1, kLagLimit = 2, kVlanLimit = 3, kSystemLimit = 4 };

inline std::string show_value(port_ability_type_t abilities)
{
    return text(abilities);
}

/// A property by its operation.
template <class T>
std::string read(VexoSdkBase& sdk, const Mp& port, bool (VexoSdkBase::*get)(const Mp&, T&))
{
    T value{};
    return (sdk.*get)(port, value) ? show_value(value) : kUnreadable;
}

std::string admin_text(VexoSdkBase& sdk, const Mp& port);
/// off, rx, tx or both, as `port pause` takes them.
std::string pause_text(VexoSdkBase& sdk, const Mp& port);
std::string pause_address_text(VexoSdkBase& sdk, const Mp& port);
std::string priority_text(VexoSdkBase& sdk, const Mp& port);
/// on, learn, forward or cpu, as `port learn` takes them.
std::string learning_text(VexoSdkBase& sdk, const Mp& port);
/// A learning limit; the place of LAGs and VLANs is their number as an `Mp`'s port.
std::string limit_text(VexoSdkBase& sdk, const Mp& place, LimitKind kind);
/// A storm-control rate, "off" for none.
std::string rate_text(VexoSdkBase& sdk, const Mp& port,
                      bool (VexoSdkBase::*get)(const Mp&, unsigned&));
/// The VLANs that exist, for which the driver has no operation.
std::vector<unsigned> existing_vlans();

} // namespace vexosh
