#include "vexosim/faults.h"

namespace vexosim {

const std::vector<std::string>& calls_that_can_fail()
{
    static const std::vector<std::string> names = {
#include "sim/sdk/call_names.inc"
    };
    return names;
}

} // namespace vexosim
