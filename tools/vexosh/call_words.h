#pragma once

#include "tools/vexosh/call_args.h"

/// Arguments of operations as the words that `call` reads them from. `name` is the argument's name
/// as the usage shows it.
namespace vexosh {

std::string as_word(bool value, const std::string& name);
std::string as_word(int value, const std::string& name);
std::string as_word(unsigned value, const std::string& name);
std::string as_word(unsigned short value, const std::string& name);
std::string as_word(const Mp& value, const std::string& name);
std::string as_word(const std::list<Mp>& value, const std::string& name);
std::string as_word(const std::string& value, const std::string& name);
std::string as_word(const Packet& value, const std::string& name);
std::string as_word(const of_flow_mp_s& value, const std::string& name);
std::string as_word(const of_action_param_s& value, const std::string& name);
std::string as_word(const of_flow_qualify_udf_s& value, const std::string& name);
/// A MAC address, an IPv6 address or a VLAN bitmap.
std::string as_word(const unsigned char* value, const std::string& name);
template <class T, class = std::enable_if_t<std::is_enum_v<T>>>
std::string as_word(T value, const std::string&)
{
    return show_value(value);
}

} // namespace vexosh
