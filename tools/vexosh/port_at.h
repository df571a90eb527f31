#pragma once

#include <string>

#include "tools/vexosh/configuration.h"
#include "tools/vexosh/input.h"

namespace vexosh {

/// The port at a place of PortWords.
inline Mp port_at(std::size_t place)
{
    return place == kPorts - 1 ? parse_port("cpu") : parse_port(std::to_string(place));
}

} // namespace vexosh
