#include "sim/chip/port_names.h"

#include <algorithm>

namespace vexosim {

PortNames::PortNames()
{
    for (int port = 0; port < kPortCount; ++port)
        set(port, port);
}

std::string PortNames::name(int chip_port) const
{
    if (chip_port == kCpuPort)
        return "cpu";
    return user(chip_port) < 0 ? "chip:" + std::to_string(chip_port)
                               : std::to_string(user(chip_port));
}

std::vector<int> PortNames::in_order() const
{
    std::vector<int> ports;
    for (int port : PortSet::front())
        ports.push_back(port);
    std::ranges::stable_sort(ports, {},
                             [&](int port) { return user(port) < 0 ? kPortCount : user(port); });
    ports.push_back(kCpuPort);
    return ports;
}

std::string PortNames::names(PortSet ports) const
{
    std::vector<int> numbers;
    std::string text;
    auto append = [&](const std::string& part) { text += (text.empty() ? "" : ",") + part; };
    for (int port : ports) {
        if (port == kCpuPort || user(port) < 0)
            append(name(port));
        else
            numbers.push_back(user(port));
    }
    std::ranges::sort(numbers);
    for (std::size_t i = 0; i < numbers.size();) {
        std::size_t last = i;
        while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1)
            ++last;
        append(std::to_string(numbers[i]) +
               (last == i ? "" : (last == i + 1 ? "," : "-") + std::to_string(numbers[last])));
        i = last + 1;
    }
    return text.empty() ? "none" : text;
}

} // namespace vexosim
