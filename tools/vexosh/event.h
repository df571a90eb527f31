#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace vexosh {

/// Something that the driver told a callback.
struct Event {
    std::string text;            ///< one line
    nlohmann::ordered_json data; ///< the same by name, for programs
};

} // namespace vexosh
