#pragma once

#include <bcmx/field.h>

#include <map>

#include "flow/trap_filter.h"
#include "tests/flow/flow_fixture.h"

using Filters = std::map<uint32_t, int32_t>;

constexpr unsigned ip4(unsigned a, unsigned b, unsigned c, unsigned d)
{
    return a << 24 | b << 16 | c << 8 | d;
}

/// The calls that make one filter's entry.
inline std::string trap_calls(int group, int entry, const std::string& match, int ip_type)
{
    const std::string number = std::to_string(entry);
    const std::string type =
        "bcmx_field_qualify_IpType(" + number + ", " + std::to_string(ip_type) + ")\n";
    const std::string qualifiers =
        ip_type == 8 ? type + "bcmx_field_qualify_" + match : "bcmx_field_qualify_" + match + type;
    return "bcmx_field_entry_create(" + std::to_string(group) + ", out)\n" + qualifiers +
           "bcmx_field_action_add(" + number + ", 21, 0, 0)\n" + "bcmx_field_entry_install(" +
           number + ")\n";
}

struct ArpFilter : FlowCard {
    bool add(unsigned ip, unsigned mask = 0xffffffff) { return sdk().add_arp_filter(ip, mask); }
    bool remove(unsigned ip, unsigned mask = 0xffffffff)
    {
        bool done = false;
        text = printed([&] { done = sdk().delete_arp_filter(ip, mask); });
        return done;
    }
    bool remove_all()
    {
        bool done = false;
        text = printed([&] { done = sdk().delete_arp_filter_all(); });
        return done;
    }

    /// What the filters share, as it is before the first.
    void forget()
    {
        bcmx_field_init();
        sdk().init_filter_group_no_udf();
        arp_fps.clear();
        arp_fps_one_vlan.clear();
        arp_group = arp_group_one_vlan = arp_udf_id = arp_udf_id_one_vlan = -1;
        clear_calls();
    }

    static std::string shared()
    {
        return std::to_string(arp_udf_id) + " " + std::to_string(arp_udf_id_one_vlan) + " " +
               std::to_string(arp_group) + " " + std::to_string(arp_group_one_vlan);
    }
};
