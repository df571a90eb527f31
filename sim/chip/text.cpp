#include "sim/chip/text.h"

namespace vexosim {

std::string mac_text(MacAddress mac)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (int shift = 40; shift >= 0; shift -= 8) {
        text += kDigits[mac >> (shift + 4) & 15];
        text += kDigits[mac >> shift & 15];
        if (shift > 0)
            text += ':';
    }
    return text;
}

std::string place_text(const MacEntry& entry, const std::string& port_name)
{
    if (entry.on_trunk())
        return "trunk " + std::to_string(entry.trunk);
    return entry.port == kCpuPort ? "the CPU" : "port " + port_name;
}

} // namespace vexosim
