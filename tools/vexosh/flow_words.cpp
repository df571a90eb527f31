#include "tools/vexosh/flow_words.h"

#include <algorithm>
#include <array>
#include <bit>
#include <span>

#include "tools/vexosh/call_words.h"
#include "tools/vexosh/input.h"

namespace vexosh {
namespace {

std::uint16_t number16(std::string_view word, std::string_view what)
{
    return static_cast<std::uint16_t>(parse_number(word, what, 0, UINT16_MAX));
}

void set_masked(std::string_view word, std::uint32_t& address, std::uint32_t& mask)
{
    const MaskedIp ip = parse_masked_ip(word);
    address = ip.address;
    mask = ip.mask;
}

struct Name {
    std::string_view name;
    std::uint16_t number;
};

constexpr Name kProtocols[] = {{"icmp", 1}, {"igmp", 2}, {"tcp", 6},    {"udp", 17},
                               {"gre", 47}, {"esp", 50}, {"icmp6", 58}, {"ospf", 89}};
constexpr Name kEtherTypes[] = {{"ip", 0x0800}, {"arp", 0x0806}, {"ip6", 0x86dd}};

std::uint16_t named_number(std::span<const Name> names, std::string_view word,
                           std::string_view what, std::int64_t most)
{
    const auto known = std::ranges::find(names, word, &Name::name);
    return known != names.end() ? known->number
                                : static_cast<std::uint16_t>(parse_number(word, what, 0, most));
}

using Flow = of_flow_mp_s;
using Setter = void (*)(Flow&, std::string_view);
using Getter = std::string (*)(const Flow&);
struct Field {
    std::string_view name; ///< as `call` takes it
    std::string_view word; ///< as commands take it
    std::uint32_t flag;
    std::uint16_t most; ///< what frames have at most, 0 for what is no plain number
    Setter set;
    Getter get; ///< as `call` takes it
};

constexpr Field kFields[] = {
    {"in_port", "in-port", 0x0001, 0, [](Flow& f, std::string_view w) { f.port = parse_port(w); },
     [](const Flow& f) { return as_word(f.port, ""); }},
    {"src_mac", "src-mac", 0x0002, 0,
     [](Flow& f, std::string_view w) { std::ranges::copy(parse_mac(w), f.src_mac); },
     [](const Flow& f) { return text(std::to_array(f.src_mac)); }},
    {"dst_mac", "dst-mac", 0x0004, 0,
     [](Flow& f, std::string_view w) { std::ranges::copy(parse_mac(w), f.dst_mac); },
     [](const Flow& f) { return text(std::to_array(f.dst_mac)); }},
    {"ether_type", "ether-type", 0x0008, 0,
     [](Flow& f, std::string_view w) {
         f.ether_type = named_number(kEtherTypes, w, "ether-type", UINT16_MAX);
     },
     [](const Flow& f) { return std::to_string(f.ether_type); }},
    {"vlan", "vlan", 0x0010, 4095,
     [](Flow& f, std::string_view w) { f.vlan_id = number16(w, "vlan"); },
     [](const Flow& f) { return std::to_string(f.vlan_id); }},
    {"pri", "vlan-priority", 0x0020, 7,
     [](Flow& f, std::string_view w) { f.vlan_pri = number16(w, "pri"); },
     [](const Flow& f) { return std::to_string(f.vlan_pri); }},
    {"src_ip", "src-ip", 0x0040, 0,
     [](Flow& f, std::string_view w) { set_masked(w, f.src_ip, f.src_ip_mask); },
     [](const Flow& f) {
         return text(MaskedIp{f.src_ip, f.src_ip_mask});
     }},
    {"dst_ip", "dst-ip", 0x0080, 0,
     [](Flow& f, std::string_view w) { set_masked(w, f.dst_ip, f.dst_ip_mask); },
     [](const Flow& f) {
         return text(MaskedIp{f.dst_ip, f.dst_ip_mask});
     }},
    {"sport", "l4-src", 0x0100, UINT16_MAX,
     [](Flow& f, std::string_view w) { f.l4_src_port = number16(w, "sport"); },
     [](const Flow& f) { return std::to_string(f.l4_src_port); }},
    {"dport", "l4-dst", 0x0200, UINT16_MAX,
     [](Flow& f, std::string_view w) { f.l4_dst_port = number16(w, "dport"); },
     [](const Flow& f) { return std::to_string(f.l4_dst_port); }},
    {"proto", "ip-proto", 0x0400, 0,
     [](Flow& f, std::string_view w) {
         f.ip_protocol = named_number(kProtocols, w, "ip-proto", UINT16_MAX);
     },
     [](const Flow& f) { return std::to_string(f.ip_protocol); }},
    {"tos", "tos", 0x0800, 255, [](Flow& f, std::string_view w) { f.tos = number16(w, "tos"); },
     [](const Flow& f) { return std::to_string(f.tos); }},
    {"udf", "udf", 0x1000, 0, [](Flow&, std::string_view) {},
     [](const Flow&) { return std::string{}; }},
};

} // namespace

MaskedIp parse_masked_ip(std::string_view word)
{
    const std::size_t slash = word.find('/');
    MaskedIp ip{parse_ip4(word.substr(0, slash))};
    if (slash == std::string_view::npos) {
        return ip;
    }
    const std::string_view tail = word.substr(slash + 1);
    if (tail.find('.') != std::string_view::npos) {
        ip.mask = parse_ip4(tail);
        return ip;
    }
    const auto length = parse_number(tail, "prefix length", 0, 32);
    ip.mask = length == 0 ? 0 : UINT32_MAX << (32 - length);
    return ip;
}

std::string text(const MaskedIp& ip)
{
    const int length = std::countl_one(ip.mask);
    const bool prefix = std::popcount(ip.mask) == length;
    return ip4_text(ip.address) + "/" + (prefix ? std::to_string(length) : ip4_text(ip.mask));
}

unsigned parse_ip_protocol(std::string_view word)
{
    return named_number(kProtocols, word, "protocol", UINT8_MAX);
}

bool is_flow_field(std::string_view word)
{
    return std::ranges::find(kFields, word, &Field::word) != std::end(kFields);
}

void set_flow_field(of_flow_mp_s& flow, std::string_view word, std::string_view value)
{
    const auto* field = std::ranges::find(kFields, word, &Field::word);
    if ((flow.flags & field->flag) != 0) {
        throw BadInput(std::string(word) + " is given twice");
    }
    if (word == "ip-proto") {
        parse_ip_protocol(value);
    } else if (field->most != 0) {
        parse_number(value, word, 0, field->most);
    }
    field->set(flow, value);
    flow.flags |= field->flag;
}

std::string flow_field_words()
{
    std::string words;
    for (const Field& field : kFields) {
        words += (words.empty() ? "" : ", ") + std::string(field.word);
    }
    return words;
}

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

std::string text(const of_flow_mp_s& flow)
{
    std::string fields;
    for (const Field& field : kFields) {
        if ((flow.flags & field.flag) != 0) {
            const std::string value = field.get(flow);
            fields += (fields.empty() ? "" : ",") + std::string(field.name) +
                      (value.empty() ? "" : "=" + value);
        }
    }
    return fields.empty() ? "any" : fields;
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
