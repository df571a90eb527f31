#include "tools/vexosh/flow_words.h"

#include <algorithm>
#include <string>

#include "tools/vexosh/input.h"

namespace vexosh {
namespace {

std::uint16_t number16(std::string_view word, std::string_view what)
{
    return static_cast<std::uint16_t>(parse_number(word, what, 0, UINT16_MAX));
}

/// ADDRESS, ADDRESS/LENGTH or ADDRESS/MASK.
void parse_masked_ip(std::string_view word, std::uint32_t& address, std::uint32_t& mask)
{
    const std::size_t slash = word.find('/');
    address = parse_ip4(word.substr(0, slash));
    mask = UINT32_MAX;
    if (slash == std::string_view::npos) {
        return;
    }
    const std::string_view tail = word.substr(slash + 1);
    if (tail.find('.') != std::string_view::npos) {
        mask = parse_ip4(tail);
        return;
    }
    const auto length = parse_number(tail, "prefix length", 0, 32);
    mask = length == 0 ? 0 : UINT32_MAX << (32 - length);
}

using Setter = void (*)(of_flow_mp_s&, std::string_view);
struct Field {
    std::string_view name;
    std::uint32_t flag;
    Setter set;
};

constexpr Field kFields[] = {
    {"in_port", 0x0001, [](of_flow_mp_s& f, std::string_view w) { f.port = parse_port(w); }},
    {"src_mac", 0x0002,
     [](of_flow_mp_s& f, std::string_view w) { std::ranges::copy(parse_mac(w), f.src_mac); }},
    {"dst_mac", 0x0004,
     [](of_flow_mp_s& f, std::string_view w) { std::ranges::copy(parse_mac(w), f.dst_mac); }},
    {"ether_type", 0x0008,
     [](of_flow_mp_s& f, std::string_view w) { f.ether_type = number16(w, "ether_type"); }},
    {"vlan", 0x0010, [](of_flow_mp_s& f, std::string_view w) { f.vlan_id = number16(w, "vlan"); }},
    {"pri", 0x0020, [](of_flow_mp_s& f, std::string_view w) { f.vlan_pri = number16(w, "pri"); }},
    {"src_ip", 0x0040,
     [](of_flow_mp_s& f, std::string_view w) { parse_masked_ip(w, f.src_ip, f.src_ip_mask); }},
    {"dst_ip", 0x0080,
     [](of_flow_mp_s& f, std::string_view w) { parse_masked_ip(w, f.dst_ip, f.dst_ip_mask); }},
    {"sport", 0x0100,
     [](of_flow_mp_s& f, std::string_view w) { f.l4_src_port = number16(w, "sport"); }},
    {"dport", 0x0200,
     [](of_flow_mp_s& f, std::string_view w) { f.l4_dst_port = number16(w, "dport"); }},
    {"proto", 0x0400,
     [](of_flow_mp_s& f, std::string_view w) { f.ip_protocol = number16(w, "proto"); }},
    {"tos", 0x0800, [](of_flow_mp_s& f, std::string_view w) { f.tos = number16(w, "tos"); }},
    {"udf", 0x1000, [](of_flow_mp_s&, std::string_view) {}},
};

} // namespace

of_flow_mp_s parse_flow(std::string_view word)
{
    of_flow_mp_s flow{};
    while (!word.empty() && word != "any") {
        const std::string_view piece = word.substr(0, word.find(','));
        const std::string_view name = piece.substr(0, piece.find('='));
        const auto* field = std::ranges::find(kFields, name, &Field::name);
        if (field == std::end(kFields)) {
            throw BadInput("unknown flow field '" + std::string(name) + "'");
        }
        field->set(flow, piece.substr(std::min(piece.size(), name.size() + 1)));
        flow.flags |= field->flag;
        word.remove_prefix(std::min(word.size(), piece.size() + 1));
    }
    return flow;
}

of_action_param_s parse_action_param(std::string_view word)
{
    of_action_param_s param{};
    const std::size_t colon = word.find(':');
    param.type = static_cast<std::uint32_t>(
        parse_number(word.substr(0, colon), "action parameter", 0, UINT32_MAX));
    if (colon == std::string_view::npos) {
        return param;
    }
    const std::string_view value = word.substr(colon + 1);
    if (value.find(':') != std::string_view::npos) {
        std::ranges::copy(parse_mac(value), param.value.mac);
    } else {
        param.value.number = number16(value, "action value");
    }
    return param;
}

} // namespace vexosh
