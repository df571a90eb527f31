#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vexosim/faults.h"

namespace vexosim {

/// The faults to come. Guards itself.
class FaultPlan {
public:
    void add(Fault fault);
    void clear();
    bool empty() const;
    std::vector<ArmedFault> armed() const;

    /// Counts a call that can fail.
    /// @return what it is to report instead of doing anything; nothing when it is to run.
    std::optional<int> on_call(std::string_view name);

    unsigned long calls() const;
    unsigned long hits() const;
    /// Names of the calls that were hit, each once.
    std::vector<std::string> hit_calls() const;

private:
    struct Armed : ArmedFault {
        bool fires(std::string_view name);
    };

    mutable std::mutex mutex_;
    std::vector<Armed> armed_;
    unsigned long calls_ = 0;
    unsigned long hits_ = 0;
    std::vector<std::string> hit_calls_;
};

} // namespace vexosim
