#pragma once

#include <bcm/l2.h>
#include <bcm/pkt.h>
#include <bcm/port.h>
#include <bcm/rx.h>
#include <bcm/vlan.h>
#include <bcmx/field.h>
#include <bcmx/l2.h>
#include <bcmx/l3.h>
#include <bcmx/lplist.h>
#include <bcmx/trunk.h>
#include <bde/linux_bde.h>

#include <concepts>
#include <cstdint>
#include <string>
#include <tuple>
#include <type_traits>

/// How arguments of SDK calls read in the log. An entry point wraps what its C type does not tell.
namespace vexosim {

/// A logical port.
struct Lport {
    bcmx_lport_t lport;
};
/// A list of logical ports; may be null.
struct Ports {
    const bcmx_lplist_t* list;
};
/// Six bytes; may be null.
struct Mac {
    const std::uint8_t* bytes;
};
/// Bytes; may be null.
struct Bytes {
    const std::uint8_t* data;
    std::size_t size;
};
/// A bit set.
struct Flags {
    std::uint32_t bits;
};
/// A place in memory, which differs from run to run.
struct Address {
    std::uintptr_t address;
};
/// An IPv4 address.
struct Ip4 {
    bcm_ip_t address;
};
/// A function; may be null.
struct Handler {
    void (*function)();

    template <class R, class... A>
    Handler(R (*f)(A...)) : function(reinterpret_cast<void (*)()>(f))
    {
    }
};
/// Where the call writes; may be null.
struct Out {
    const void* pointer;
};

void render(std::string& text, long long number);
void render(std::string& text, Lport port);
void render(std::string& text, Ports ports);
void render(std::string& text, Mac mac);
void render(std::string& text, Bytes bytes);
void render(std::string& text, Flags flags);
void render(std::string& text, Address address);
void render(std::string& text, Ip4 ip);
void render(std::string& text, Handler handler);
void render(std::string& text, Out out);
void render(std::string& text, const char* string);
void render(std::string& text, const void* cookie);
void render(std::string& text, const linux_bde_bus_t* bus);
void render(std::string& text, const bcm_rx_reasons_t& reasons);
void render(std::string& text, const bcm_rx_chan_cfg_t& channel);
void render(std::string& text, const bcm_rx_cfg_t* config);
void render(std::string& text, const bcm_pkt_t* packet);
void render(std::string& text, const bcmx_l2_addr_t* entry);
void render(std::string& text, const bcm_l2_learn_limit_t* limit);
void render(std::string& text, const bcm_vlan_ip_t* subnet);
void render(std::string& text, const bcm_port_ability_t* ability);
void render(std::string& text, const bcmx_trunk_add_info_t* trunk);
void render(std::string& text, const bcm_field_qset_t& set);
void render(std::string& text, const bcm_field_qset_t* set);
void render(std::string& text, const bcm_field_udf_spec_t* udf);
void render(std::string& text, const bcmx_l3_intf_t* interface);
void render(std::string& text, const bcmx_l3_host_t* host);
void render(std::string& text, const bcmx_l3_route_t* route);

template <class T>
void render_value(std::string& text, const T& value)
{
    if constexpr (std::is_integral_v<T> || std::is_enum_v<T>)
        render(text, static_cast<long long>(value));
    else
        render(text, value);
}

/// The arguments of a call, rendered only when somebody looks. Holds no copies: for use within the
/// statement that makes it.
template <class... T>
struct Arguments {
    std::tuple<const T&...> values;

    std::string text() const
    {
        std::string all;
        const auto add = [&all](const auto& value) {
            if (!all.empty())
                all += ", ";
            render_value(all, value);
        };
        std::apply([&](const auto&... value) { (add(value), ...); }, values);
        return all;
    }
};

template <class... T>
Arguments<T...> args(const T&... values)
{
    return {{values...}};
}

} // namespace vexosim
