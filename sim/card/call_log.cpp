#include "sim/card/call_log.h"

#include <utility>

namespace vexosim {

CallLog::Place CallLog::add(CallClass kind, std::string text)
{
    const std::lock_guard lock(mutex_);
    lines_.push_back({kind, std::move(text), {}});
    return {lines_.size() - 1, generation_};
}

void CallLog::result(Place place, std::string text)
{
    const std::lock_guard lock(mutex_);
    if (place.generation == generation_)
        lines_[place.index].result = std::move(text);
}

std::string CallLog::text(bool local_too, bool results) const
{
    const std::lock_guard lock(mutex_);
    std::string all;
    for (const Line& line : lines_) {
        if (line.kind == CallClass::local && !local_too)
            continue;
        all += line.call;
        if (results && !line.result.empty())
            all += " = " + line.result;
        all += '\n';
    }
    return all;
}

void CallLog::clear()
{
    const std::lock_guard lock(mutex_);
    lines_.clear();
    ++generation_;
}

} // namespace vexosim
