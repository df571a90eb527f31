#include "sim/card/watch.h"

#include <bcm/error.h>

#include <utility>

#include "vexosim/calls.h"

namespace vexosim {

namespace {

thread_local FailedCall last_failed;

} // namespace

void keep_failed_call(const char* name, int code)
{
    last_failed = {name, code};
}

FailedCall failed_call()
{
    return last_failed;
}

void forget_failed_call()
{
    last_failed = {};
}

const char* FailedCall::text() const
{
    const bool known = code <= 0 && code > -(BCM_ERRMSG_COUNT - 1);
    return _shr_errmsg[known ? -code : BCM_ERRMSG_COUNT - 1];
}

CallLog::Place Watch::add(const char* name, CallClass kind, const std::string& arguments)
{
    if (!logging_.load(std::memory_order_relaxed))
        return {0, ~0ul};
    return log_.add(kind, std::string(name) + "(" + arguments + ")");
}

int Watch::run(const char* name, CallClass kind, const std::string& arguments,
               const std::function<int()>& body)
{
    const CallLog::Place place = add(name, kind, arguments);
    const std::optional<int> fault = faults_.on_call(name);
    const int result = fault ? *fault : body();
    log_.result(place, std::to_string(result));
    return result;
}

void* Watch::run_pointer(const char* name, CallClass kind, const std::string& arguments,
                         const std::function<void*()>& body)
{
    const CallLog::Place place = add(name, kind, arguments);
    const std::optional<int> fault = faults_.on_call(name);
    void* const result = fault ? nullptr : body();
    log_.result(place, result == nullptr ? "null" : "pointer");
    return result;
}

void Watch::note(const char* name, CallClass kind, const std::string& arguments)
{
    add(name, kind, arguments);
}

void Watch::settle(bool logging)
{
    logging_ = logging;
    on_ = logging || !faults_.empty();
}

void Watch::log_calls(bool on)
{
    const std::lock_guard lock(settle_mutex_);
    settle(on);
}

void Watch::inject(Fault fault)
{
    const std::lock_guard lock(settle_mutex_);
    faults_.add(std::move(fault));
    settle(logging_);
}

void Watch::clear_faults()
{
    const std::lock_guard lock(settle_mutex_);
    faults_.clear();
    settle(logging_);
}

} // namespace vexosim
