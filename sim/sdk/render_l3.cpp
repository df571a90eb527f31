#include "sim/sdk/render.h"

namespace vexosim {

namespace {

std::string address(bool ip6, bcm_ip_t ip, const std::uint8_t* wide)
{
    std::string text;
    if (ip6)
        render(text, Bytes{wide, 16});
    else
        render(text, Ip4{ip});
    return text;
}

std::string egress(std::uint32_t flags, bcmx_lport_t lport, bcm_trunk_t trunk)
{
    std::string text;
    if ((flags & BCM_L3_TGID) != 0)
        return "trunk=" + std::to_string(trunk);
    render(text, Lport{lport});
    return "port=" + text;
}

std::string flags_and(const char* name, std::uint32_t flags)
{
    std::string text = "{flags=";
    render(text, Flags{flags});
    return text + ", " + name + "=";
}

} // namespace

void render(std::string& text, const bcmx_l3_intf_t* interface)
{
    if (interface == nullptr) {
        text += "null";
        return;
    }
    text += flags_and("id", interface->l3i_flags) + std::to_string(interface->l3i_intf_id);
    text += ", mac=";
    render(text, Mac{interface->l3i_mac_addr});
    text += ", vid=" + std::to_string(interface->l3i_vid) + "}";
}

void render(std::string& text, const bcmx_l3_host_t* host)
{
    if (host == nullptr) {
        text += "null";
        return;
    }
    const bool ip6 = (host->l3a_flags & BCM_L3_IP6) != 0;
    text += flags_and("ip", host->l3a_flags) + address(ip6, host->l3a_ip_addr, host->l3a_ip6_addr);
    text += ", intf=" + std::to_string(host->l3a_intf) + ", nexthop_mac=";
    render(text, Mac{host->l3a_nexthop_mac});
    text += ", " + egress(host->l3a_flags, host->l3a_lport, host->l3a_trunk_id) + "}";
}

void render(std::string& text, const bcmx_l3_route_t* route)
{
    if (route == nullptr) {
        text += "null";
        return;
    }
    const bool ip6 = (route->l3r_flags & BCM_L3_IP6) != 0;
    text +=
        flags_and("net", route->l3r_flags) + address(ip6, route->l3r_ip_addr, route->l3r_ip6_net);
    text += ", mask=" + address(ip6, route->l3r_ip_mask, route->l3r_ip6_mask);
    text += ", intf=" + std::to_string(route->l3r_intf) + ", nexthop_mac=";
    render(text, Mac{route->l3r_nexthop_mac});
    text += ", nexthop_ip=" + address(false, route->l3r_nexthop_ip, nullptr);
    text += ", " + egress(route->l3r_flags, route->l3r_lport, route->l3r_trunk_id) + "}";
}

} // namespace vexosim
