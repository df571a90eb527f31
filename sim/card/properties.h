#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace vexosim {

/// The SDK's property store. Guards itself.
class Properties {
public:
    /// The value's text, which stays where it is until the property is set again.
    char* find(const std::string& name);
    std::optional<std::string> get(const std::string& name) const;
    void set(const std::string& name, const std::string& value);
    void remove(const std::string& name);

private:
    mutable std::mutex mutex_;
    std::map<std::string, std::string> values_;
};

} // namespace vexosim
