#pragma once

#include <array>
#include <list>
#include <string>
#include <string_view>
#include <type_traits>

#include "core/sdk_base.h"
#include "pktio/event_records.h"
#include "tools/vexosh/event_printers.h"
#include "tools/vexosh/input.h"

/// How each type of argument that operations take is read from a word, held during the call, and
/// shown afterwards if it is an output. Arg<T> has `kInput` (whether a word is read for it),
/// `read(word, name)` if so, `get()` for the call, and `show(name)` with an output's text.
namespace vexosh {

/// A VLAN bitmap (VLAN v is bit v mod 8 of byte v div 8) from a list like 1,4-6; - is none.
Bytes vlan_bitmap(std::string_view word);

/// Values from words. `name` is the argument's name as the usage shows it.
void read_value(std::string_view word, std::string_view name, bool& value);
void read_value(std::string_view word, std::string_view name, int& value);
void read_value(std::string_view word, std::string_view name, unsigned& value);
void read_value(std::string_view word, std::string_view name, unsigned short& value);
void read_value(std::string_view word, std::string_view name, Mp& value);
void read_value(std::string_view word, std::string_view name, std::list<Mp>& value);
void read_value(std::string_view word, std::string_view name, std::string& value);
void read_value(std::string_view word, std::string_view name, Packet& value);
void read_value(std::string_view word, std::string_view name, of_flow_mp_s& value);
void read_value(std::string_view word, std::string_view name, of_action_param_s& value);
/// Enums, by the name in call_names.cpp or by number.
int read_enum(std::string_view word, std::string_view name, const std::type_info& type);
template <class T, class = std::enable_if_t<std::is_enum_v<T>>>
void read_value(std::string_view word, std::string_view name, T& value)
{
    value = static_cast<T>(read_enum(word, name, typeid(T)));
}

std::string show_value(bool value);
std::string show_value(int value);
std::string show_value(unsigned value);
std::string show_value(unsigned long long value);
std::string show_value(const Mp& value);
std::string show_value(const Usp& value);
std::string show_value(const std::list<Mp>& value);
std::string show_enum(int value, const std::type_info& type);
template <class T, class = std::enable_if_t<std::is_enum_v<T>>>
std::string show_value(T value)
{
    return show_enum(static_cast<int>(value), typeid(T));
}
template <class Counter, class = decltype(Counter::type)>
std::string show_value(const Counter& counter)
{
    return show_value(counter.type) + "=" + show_value(counter.value);
}
template <class Counter, class = decltype(Counter::type)>
std::string show_value(const std::list<Counter>& counters)
{
    std::string result;
    for (const Counter& counter : counters) {
        result += "\n  " + show_value(counter);
    }
    return result;
}

/// Inputs by value or const reference.
template <class T>
struct Arg {
    static constexpr bool kInput = true;
    std::remove_cv_t<std::remove_reference_t<T>> value{};
    void read(std::string_view word, std::string_view name) { read_value(word, name, value); }
    T get() { return value; }
    std::string show() const { return {}; }
};

/// Outputs by reference.
template <class T>
requires(!std::is_const_v<T>) struct Arg<T&> {
    static constexpr bool kInput = false;
    T value{};
    T& get() { return value; }
    std::string show() const { return show_value(value); }
};

/// A number that goes both ways: the capacity of the array before it.
struct Capacity {};
template <>
struct Arg<Capacity> {
    static constexpr bool kInput = true;
    unsigned value = 0;
    void read(std::string_view word, std::string_view name)
    {
        value = static_cast<unsigned>(parse_number(word, name, 0, 4096));
    }
    unsigned& get() { return value; }
    std::string show() const { return std::to_string(value); }
};

/// An IPv4 address out.
struct Ip4Out {};
template <>
struct Arg<Ip4Out> {
    static constexpr bool kInput = false;
    unsigned value = 0;
    unsigned& get() { return value; }
    std::string show() const { return ip4_text(value); }
};

/// An array of counters of which the operation fills as many as there are, or none.
template <class Counter>
struct CounterArrayArg {
    static constexpr bool kInput = false;
    std::vector<Counter> values = std::vector<Counter>(4096);
    Counter* get() { return values.data(); }
    std::string show() const
    {
        std::string result;
        for (const Counter& counter : values) {
            result += counter.type != 0 ? "\n  " + show_value(counter) : "";
        }
        return result;
    }
};
template <>
struct Arg<StatCounter64*> : CounterArrayArg<StatCounter64> {
};
template <>
struct Arg<StatCounter32*> : CounterArrayArg<StatCounter32> {
};

/// Bytes in: a MAC address, an IPv6 address or a VLAN bitmap, as the argument's name says.
template <>
struct Arg<const unsigned char*> {
    static constexpr bool kInput = true;
    Bytes bytes;
    void read(std::string_view word, std::string_view name);
    const unsigned char* get() { return bytes.data(); }
    std::string show() const { return {}; }
};

/// A MAC address out.
template <>
struct Arg<unsigned char*> {
    static constexpr bool kInput = false;
    Mac mac{};
    unsigned char* get() { return mac.data(); }
    std::string show() const { return text(mac); }
};
template <>
struct Arg<unsigned char (&)[6]> {
    static constexpr bool kInput = false;
    unsigned char mac[6] = {};
    unsigned char (&get())[6] { return mac; }
    std::string show() const { return text(std::to_array(mac)); }
};

/// A byte match of a flow: OFFSET:DATA/MASK in hexadecimal, OFFSET:DATA for an exact one, or - for
/// none.
template <>
struct Arg<const of_flow_qualify_udf_s&> {
    static constexpr bool kInput = true;
    Bytes data, mask;
    of_flow_qualify_udf_s value{};
    void read(std::string_view word, std::string_view name);
    const of_flow_qualify_udf_s& get() { return value; }
    std::string show() const { return {}; }
};

/// Callbacks: the shell's own, which print the event. Cookies are null.
template <class... A>
struct Arg<void (*)(A...)> {
    static constexpr bool kInput = false;
    void (*get())(A...) { return &print_event; }
    std::string show() const { return {}; }
};
/// The shell's own callback to deregister: mac, mac_c, link, link_c, rx or rx_c; or, as a cookie or
/// unused argument, nothing.
struct CallbackName {};
template <>
struct Arg<CallbackName> {
    static constexpr bool kInput = true;
    void* value = nullptr;
    void read(std::string_view word, std::string_view name);
    void* get() { return value; }
    std::string show() const { return {}; }
};
template <>
struct Arg<void*> {
    static constexpr bool kInput = false;
    void* get() { return nullptr; }
    std::string show() const { return {}; }
};

/// Event records: empty ones.
template <class Record>
requires std::is_class_v<Record>
struct Arg<Record*> {
    static constexpr bool kInput = false;
    Record record{};
    Record* get() { return &record; }
    std::string show() const { return {}; }
};

} // namespace vexosh
