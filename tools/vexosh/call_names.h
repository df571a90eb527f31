#pragma once

#include <span>
#include <typeinfo>

namespace vexosh {

/// A value of an enum of the driver's interface, as the shell spells it.
struct NamedValue {
    const char* name;
    int value;
};

/// The names of an enum's values; empty for an enum that has none.
std::span<const NamedValue> enum_names(const std::type_info& type);

} // namespace vexosh
