#include "tools/vexosh/call_args.h"

#include <algorithm>

#include "tools/vexosh/call_names.h"
#include "tools/vexosh/flow_words.h"

namespace vexosh {
namespace {

bool starts_with_any(std::string_view name, std::initializer_list<std::string_view> starts)
{
    for (std::string_view start : starts) {
        if (name.starts_with(start)) {
            return true;
        }
    }
    return false;
}

template <class Array>
Bytes bytes_of(const Array& array)
{
    return Bytes(array.begin(), array.end());
}

} // namespace

Bytes vlan_bitmap(std::string_view word)
{
    Bytes bitmap(512);
    while (!word.empty() && word != "-") {
        const std::string_view piece = word.substr(0, word.find(','));
        const std::size_t dash = piece.find('-');
        const auto first = parse_number(piece.substr(0, dash), "VLAN", 0, 4095);
        const auto last = dash == std::string_view::npos
                              ? first
                              : parse_number(piece.substr(dash + 1), "VLAN", first, 4095);
        for (auto vid = first; vid <= last; ++vid) {
            std::uint8_t& byte = bitmap[static_cast<std::size_t>(vid / 8)];
            byte = static_cast<std::uint8_t>(byte | 1u << vid % 8);
        }
        word.remove_prefix(std::min(word.size(), piece.size() + 1));
    }
    return bitmap;
}

void read_value(std::string_view word, std::string_view name, bool& value)
{
    value = parse_switch(word, name);
}

void read_value(std::string_view word, std::string_view name, int& value)
{
    value = static_cast<int>(parse_number(word, name, INT32_MIN, INT32_MAX));
}

void read_value(std::string_view word, std::string_view name, unsigned& value)
{
    value = word.find('.') != std::string_view::npos
                ? parse_ip4(word)
                : static_cast<unsigned>(parse_number(word, name, 0, UINT32_MAX));
}

void read_value(std::string_view word, std::string_view name, unsigned short& value)
{
    value = static_cast<unsigned short>(parse_number(word, name, 0, UINT16_MAX));
}

void read_value(std::string_view word, std::string_view, Mp& value)
{
    value = parse_port(word);
}

void read_value(std::string_view word, std::string_view, std::list<Mp>& value)
{
    value = parse_ports(word);
}

void read_value(std::string_view word, std::string_view, std::string& value)
{
    value = word;
}

void read_value(std::string_view word, std::string_view, Packet& value)
{
    value.set_data(parse_hex(word));
}

void read_value(std::string_view word, std::string_view, of_flow_mp_s& value)
{
    value = parse_flow(word);
}

void read_value(std::string_view word, std::string_view, of_action_param_s& value)
{
    value = parse_action_param(word);
}

int read_enum(std::string_view word, std::string_view name, const std::type_info& type)
{
    const auto names = enum_names(type);
    for (const NamedValue& candidate : names) {
        if (word == candidate.name) {
            return candidate.value;
        }
    }
    if (!word.empty() &&
        (std::isdigit(static_cast<unsigned char>(word[0])) != 0 || word[0] == '-')) {
        return static_cast<int>(parse_number(word, name, INT32_MIN, INT32_MAX));
    }
    std::string wanted = "a number";
    for (const NamedValue& candidate : names) {
        wanted += std::string(", ") + candidate.name;
    }
    throw BadInput("bad " + std::string(name) + " '" + std::string(word) + "': one of " + wanted +
                   " is wanted");
}

std::string show_enum(int value, const std::type_info& type)
{
    for (const NamedValue& candidate : enum_names(type)) {
        if (value == candidate.value) {
            return candidate.name;
        }
    }
    return std::to_string(value);
}

std::string show_value(bool value)
{
    return value ? "on" : "off";
}

std::string show_value(int value)
{
    return std::to_string(value);
}

std::string show_value(unsigned value)
{
    return std::to_string(value);
}

std::string show_value(unsigned long long value)
{
    return std::to_string(value);
}

std::string show_value(const Mp& value)
{
    return text(value);
}

std::string show_value(const Usp& value)
{
    return std::to_string(value.unit()) + "/" + std::to_string(value.slot()) + "/" +
           std::to_string(value.port());
}

std::string show_value(const std::list<Mp>& value)
{
    std::string result;
    for (const Mp& port : value) {
        result += (result.empty() ? "" : ",") + text(port);
    }
    return result.empty() ? "-" : result;
}

void Arg<const unsigned char*>::read(std::string_view word, std::string_view name)
{
    if (name == "BITMAP") {
        bytes = vlan_bitmap(word);
    } else if (starts_with_any(name, {"IP6", "NET6", "MASK6"})) {
        bytes = bytes_of(parse_ip6(word));
    } else {
        bytes = bytes_of(parse_mac(word));
    }
}

void Arg<const of_flow_qualify_udf_s&>::read(std::string_view word, std::string_view name)
{
    if (word == "-") {
        return;
    }
    const std::size_t colon = word.find(':');
    const std::size_t slash = std::min(word.find('/'), word.size());
    if (colon == std::string_view::npos || slash < colon) {
        throw BadInput("bad " + std::string(name) + " '" + std::string(word) +
                       "': OFFSET:DATA/MASK in hexadecimal, OFFSET:DATA or - is wanted");
    }
    value.offset =
        static_cast<std::uint32_t>(parse_number(word.substr(0, colon), "offset", 0, 16384));
    data = parse_hex(word.substr(colon + 1, slash - colon - 1));
    mask = slash == word.size() ? Bytes(data.size(), 0xff) : parse_hex(word.substr(slash + 1));
    if (data.size() != mask.size()) {
        throw BadInput("bad " + std::string(name) + " '" + std::string(word) +
                       "': data and mask differ in length");
    }
    value.length = static_cast<std::uint32_t>(data.size());
    value.data = data.data();
    value.mask = mask.data();
}

void Arg<CallbackName>::read(std::string_view word, std::string_view name)
{
    const auto address = [](auto* function) { return reinterpret_cast<void*>(function); };
    const std::pair<std::string_view, void*> callbacks[] = {
        {"mac", address(static_cast<void (*)(L2Addr*, int, void*)>(print_event))},
        {"mac_c", address(static_cast<void (*)(ctype_l2_addr_s*, int, void*)>(print_event))},
        {"link", address(static_cast<void (*)(LinkStatus*, Usp*)>(print_event))},
        {"link_c", address(static_cast<void (*)(ctype_link_status_s*, usp_s*)>(print_event))},
        {"rx", address(static_cast<void (*)(RxPacket*, void*)>(print_event))},
        {"rx_c", address(static_cast<void (*)(ctype_rx_packet_s*, void*)>(print_event))},
    };
    for (const auto& [callback, function] : callbacks) {
        if (word == callback) {
            value = function;
            return;
        }
    }
    throw BadInput("bad " + std::string(name) + " '" + std::string(word) +
                   "': mac, mac_c, link, link_c, rx or rx_c is wanted");
}

} // namespace vexosh
