#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vexosim {

/// Why a name cannot be an interface's; empty when it can.
std::string interface_name_error(const std::string& name);

/// An interface's flags (IFF_...), asked through any socket of its namespace; empty when gone.
std::optional<unsigned> interface_flags(int socket, const std::string& name);
/// Whether an interface is up and sees its far end.
bool interface_has_link(int socket, const std::string& name);
/// Sets IFF_UP. False, with errno, when the system refuses.
bool bring_interface_up(int socket, const std::string& name);

/// Frames the kernel dropped on their way out of an interface, 0 when that cannot be known.
/// @param net_namespace a descriptor of the interface's namespace, -1 for the caller's own.
std::uint64_t interface_transmit_drops(const std::string& name, int net_namespace);

} // namespace vexosim
