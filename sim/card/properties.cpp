#include "sim/card/properties.h"

namespace vexosim {

char* Properties::find(const std::string& name)
{
    const std::lock_guard lock(mutex_);
    const auto found = values_.find(name);
    return found == values_.end() ? nullptr : found->second.data();
}

std::optional<std::string> Properties::get(const std::string& name) const
{
    const std::lock_guard lock(mutex_);
    const auto found = values_.find(name);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void Properties::set(const std::string& name, const std::string& value)
{
    const std::lock_guard lock(mutex_);
    values_[name] = value;
}

void Properties::remove(const std::string& name)
{
    const std::lock_guard lock(mutex_);
    values_.erase(name);
}

} // namespace vexosim
