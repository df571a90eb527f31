#include "sim/card/port_map.h"

#include <algorithm>

namespace vexosim {

bool PortMap::any() const
{
    return std::any_of(stored_.begin(), stored_.end(), [](const auto& row) { return row != 0; });
}

void PortMap::create(int chip_port, int user_port)
{
    const bool known = is_chip_port(user_port) && chip_port_of_user(user_port) < 0;
    stored_[static_cast<std::size_t>(chip_port)] = (known ? user_port : kNoUserPort) - kNoLport;
    if (known)
        chip_port_of_[static_cast<std::size_t>(user_port)] = chip_port + 1;
}

void PortMap::clear()
{
    for (auto& row : stored_)
        row = 0;
    for (auto& row : chip_port_of_)
        row = 0;
}

} // namespace vexosim
