#include "sim/card/fault_plan.h"

#include <algorithm>
#include <utility>

namespace vexosim {

bool FaultPlan::Armed::fires(std::string_view name)
{
    const bool matches =
        fault.call.empty() ? !fault.spare.contains(std::string(name)) : fault.call == name;
    if (!matches)
        return false;
    ++seen;
    return seen == fault.nth || (fault.sticky && seen > fault.nth);
}

void FaultPlan::add(Fault fault)
{
    const std::lock_guard lock(mutex_);
    armed_.push_back({{std::move(fault)}});
}

void FaultPlan::clear()
{
    const std::lock_guard lock(mutex_);
    armed_.clear();
    calls_ = 0;
    hits_ = 0;
    hit_calls_.clear();
}

bool FaultPlan::empty() const
{
    const std::lock_guard lock(mutex_);
    return armed_.empty();
}

std::vector<ArmedFault> FaultPlan::armed() const
{
    const std::lock_guard lock(mutex_);
    return {armed_.begin(), armed_.end()};
}

std::optional<int> FaultPlan::on_call(std::string_view name)
{
    const std::lock_guard lock(mutex_);
    ++calls_;
    std::optional<int> code;
    for (Armed& armed : armed_) {
        const Fault& fault = armed.fault;
        if (armed.fires(name) && !code) {
            code = fault.do_nothing ? std::max(fault.code, 0) : fault.code;
            ++armed.hits;
        }
    }
    if (!code)
        return code;
    ++hits_;
    if (std::find(hit_calls_.begin(), hit_calls_.end(), name) == hit_calls_.end())
        hit_calls_.emplace_back(name);
    return code;
}

unsigned long FaultPlan::calls() const
{
    const std::lock_guard lock(mutex_);
    return calls_;
}

unsigned long FaultPlan::hits() const
{
    const std::lock_guard lock(mutex_);
    return hits_;
}

std::vector<std::string> FaultPlan::hit_calls() const
{
    const std::lock_guard lock(mutex_);
    return hit_calls_;
}

} // namespace vexosim
