#pragma once

#include <atomic>
#include <functional>
#include <string>

#include "sim/card/call_log.h"
#include "sim/card/fault_plan.h"

namespace vexosim {

/// Keeps the last call on this thread that reported an error.
void keep_failed_call(const char* name, int code);

/// What looks at every SDK call: the log and the faults. Costs a branch while neither is on.
class Watch {
public:
    /// Whether a call has to go through one of the functions below.
    bool on() const { return on_.load(std::memory_order_relaxed); }

    /// A call with a result code.
    int run(const char* name, CallClass kind, const std::string& arguments,
            const std::function<int()>& body);
    /// A call that returns a pointer; it fails with null.
    void* run_pointer(const char* name, CallClass kind, const std::string& arguments,
                      const std::function<void*()>& body);
    /// A call that cannot fail. Logs it; the caller runs it.
    void note(const char* name, CallClass kind, const std::string& arguments);

    void log_calls(bool on);
    CallLog& log() { return log_; }
    void inject(Fault fault);
    void clear_faults();
    FaultPlan& faults() { return faults_; }

private:
    CallLog::Place add(const char* name, CallClass kind, const std::string& arguments);
    void settle(bool logging);

    std::atomic<bool> on_{false}, logging_{false};
    std::mutex settle_mutex_;
    CallLog log_;
    FaultPlan faults_;
};

} // namespace vexosim
