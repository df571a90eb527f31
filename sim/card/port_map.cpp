#include "sim/card/port_map.h"

#include <algorithm>

namespace vexosim {

int PortMap::chip_port_of_user(int user_port) const
{
    if (user_port < 0)
        return -1;
    for (int port = 0; port < kPorts; ++port)
        if (row(port) == user_port)
            return port;
    return -1;
}

bool PortMap::any() const
{
    return std::any_of(stored_.begin(), stored_.end(), [](const auto& row) { return row != 0; });
}

void PortMap::create(int chip_port, int user_port)
{
    const bool known = user_port >= 0 && user_port < kPorts && chip_port_of_user(user_port) < 0;
    stored_[static_cast<std::size_t>(chip_port)] = (known ? user_port : kNoUserPort) - kNoLport;
}

void PortMap::clear()
{
    for (auto& row : stored_)
        row = 0;
}

} // namespace vexosim
