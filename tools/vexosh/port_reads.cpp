#include "tools/vexosh/port_reads.h"

namespace vexosh {

std::string admin_text(VexoSdkBase& sdk, const Mp& port)
{
    bool enabled = false;
    return !sdk.get_port_enabled(port, enabled) ? kUnreadable : enabled ? "up" : "down";
}

std::string pause_text(VexoSdkBase& sdk, const Mp& port)
{
    unsigned rx = 0;
    unsigned tx = 0;
    if (!sdk.get_port_pause(port, rx, tx)) {
        return kUnreadable;
    }
    return rx != 0 ? (tx != 0 ? "both" : "rx") : (tx != 0 ? "tx" : "off");
}

std::string pause_address_text(VexoSdkBase& sdk, const Mp& port)
{
    unsigned char mac[6] = {};
    return sdk.get_port_pause_addr(port, mac) ? text(std::to_array(mac)) : kUnreadable;
}

std::string priority_text(VexoSdkBase& sdk, const Mp& port)
{
    unsigned priority = 0;
    return sdk.get_port_vlan_priority(port, 0, priority) ? std::to_string(priority) : kUnreadable;
}

/// Each of the driver's two operations tells some of the modes apart.
std::string learning_text(VexoSdkBase& sdk, const Mp& port)
{
    bool locked = false;
    bool not_learning = false;
    bool forward = false;
    if (!sdk.get_port_mac_lock(port, locked) ||
        !sdk.get_port_mac_lock_ext(port, not_learning, forward)) {
        return kUnreadable;
    }
    if (!not_learning) {
        return locked ? "learn" : "on";
    }
    return forward ? "forward" : "cpu";
}

std::string limit_text(VexoSdkBase& sdk, const Mp& place, LimitKind kind)
{
    int limit = 0;
    if (!sdk.get_port_mac_limit(place, limit, kind)) {
        return kUnreadable;
    }
    return limit < 0 ? "none" : std::to_string(limit);
}

std::string rate_text(VexoSdkBase& sdk, const Mp& port,
                      bool (VexoSdkBase::*get)(const Mp&, unsigned&))
{
    unsigned rate = 0;
    if (!(sdk.*get)(port, rate)) {
        return kUnreadable;
    }
    return rate == 0 ? "off" : std::to_string(rate);
}

std::vector<unsigned> existing_vlans()
{
    std::vector<unsigned> vids;
    for (const auto& row : vexosim::vlans_table().rows) {
        vids.push_back(static_cast<unsigned>(std::stoul(row[0])));
    }
    return vids;
}

} // namespace vexosh
