// A unit's properties, read through the lookup that was registered for the unit.
#include <soc/cm.h>
#include <soc/property.h>

#include <cctype>
#include <cstdlib>
#include <string>

#include "sim/sdk/gate.h"
#include "sim/sdk/property.h"

namespace {

uint32_t number(const char* text, uint32_t default_value)
{
    if (text == nullptr || std::isdigit(static_cast<unsigned char>(*text)) == 0)
        return default_value;
    char* end = nullptr;
    const bool hexadecimal = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const unsigned long long value = std::strtoull(text, &end, hexadecimal ? 16 : 10);
    return *end == '\0' && value <= 0xFFFFFFFFul ? static_cast<uint32_t>(value) : default_value;
}

int hex_digit(char c)
{
    const char text[] = {c, '\0'};
    return std::isxdigit(static_cast<unsigned char>(c)) == 0
               ? -1
               : static_cast<int>(std::strtol(text, nullptr, 16));
}

/// @return false, with `ports` half-filled, when the text is no bit map of at most 96 bits.
bool parse(std::string text, bcm_pbmp_t& ports)
{
    if (text.starts_with("0x") || text.starts_with("0X"))
        text.erase(0, 2);
    if (text.empty() || text.size() > BCM_PBMP_PORT_MAX / 4)
        return false;
    for (const char c : text) {
        const int digit = hex_digit(c);
        if (digit < 0)
            return false;
        ports.pbits[2] = ports.pbits[2] << 4 | ports.pbits[1] >> 28;
        ports.pbits[1] = ports.pbits[1] << 4 | ports.pbits[0] >> 28;
        ports.pbits[0] = ports.pbits[0] << 4 | static_cast<uint32_t>(digit);
    }
    return true;
}

} // namespace

namespace vexosim {

char* unit_property(int unit, const char* name)
{
    if (unit < 0 || unit >= SOC_MAX_NUM_DEVICES || CMDEV(unit).initialised == 0 || name == nullptr)
        return nullptr;
    const std::string of_unit = std::string(name) + "." + std::to_string(unit);
    char* const value = CMVEC(unit).config_var_get(&CMDEV(unit).dev, of_unit.c_str());
    return value != nullptr ? value : CMVEC(unit).config_var_get(&CMDEV(unit).dev, name);
}

bcm_pbmp_t unit_port_property(int unit, const char* name, bool default_all)
{
    const char* const text = unit_property(unit, name);
    bcm_pbmp_t ports = {};
    if (text != nullptr && parse(text, ports))
        return ports;
    ports = {};
    for (int port = 0; default_all && port < kPorts; ++port)
        BCM_PBMP_PORT_ADD(ports, port);
    return ports;
}

} // namespace vexosim

using namespace vexosim;

extern "C" char* soc_property_get_str(int unit, const char* name)
{
    return pointer_call("soc_property_get_str", args(unit, name),
                        [&] { return unit_property(unit, name); });
}

extern "C" uint32_t soc_property_get(int unit, const char* name, uint32_t default_value)
{
    return sure_call("soc_property_get", CallClass::local, args(unit, name, default_value),
                     [&] { return number(unit_property(unit, name), default_value); });
}

extern "C" bcm_pbmp_t soc_property_get_pbmp(int unit, const char* name, int default_all)
{
    return sure_call("soc_property_get_pbmp", CallClass::local, args(unit, name, default_all),
                     [&] { return unit_port_property(unit, name, default_all != 0); });
}
