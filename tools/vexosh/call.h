#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/sdk_base.h"

/// `call`: every operation of the driver by its name, with typed arguments and outputs.
namespace vexosh {

/// What a called operation answered.
struct CallResult {
    bool done = true;                 ///< what it returned; true for one that returns nothing
    std::vector<std::string> outputs; ///< "name = value", only when done
};

/// One operation as the shell can call it.
struct Operation {
    std::string name;
    std::string usage; ///< its inputs, "VID TAGGED UNTAGGED"
    std::size_t inputs;
    std::function<CallResult(VexoSdkBase&, const std::vector<std::string>&)> run;
};

/// All 179, in slot order.
const std::vector<Operation>& operations();
/// The operation of that name, or null.
const Operation* find_operation(const std::string& name);

} // namespace vexosh
