#include "sim/chip/switch_controls.h"

#include <bcm/error.h>

namespace vexosim {

namespace {

bool takes(int control, int value)
{
    return control != SwitchControls::kUnknownUnicastToCpu || value == 0 || value == 1;
}

} // namespace

int SwitchControls::set(int control, int value)
{
    if (control < 0 || control >= kCount || !takes(control, value))
        return BCM_E_PARAM;
    values_[static_cast<std::size_t>(control)] = value;
    return BCM_E_NONE;
}

int SwitchControls::get(int control, int& value) const
{
    if (control < 0 || control >= kCount)
        return BCM_E_PARAM;
    value = values_[static_cast<std::size_t>(control)];
    return BCM_E_NONE;
}

int SwitchControls::set_port(int port, int control, int value)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (control != kUnknownUnicastToCpu || !takes(control, value))
        return BCM_E_PARAM;
    unknown_unicast_ports_.assign(port, value != 0);
    return BCM_E_NONE;
}

int SwitchControls::get_port(int port, int control, int& value) const
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (control != kUnknownUnicastToCpu)
        return BCM_E_PARAM;
    value = unknown_unicast_ports_.test(port) ? 1 : 0;
    return BCM_E_NONE;
}

} // namespace vexosim
