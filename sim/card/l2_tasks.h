#pragma once

#include <bcmx/l2.h>

#include <utility>
#include <vector>

#include "sim/card/task.h"
#include "sim/chip/chip.h"

namespace vexosim {

/// The work of the L2 message thread that shows: forgetting addresses that are not heard.
/// Everything but run() is called under the chip's lock.
class L2Ageing : public Task {
public:
    static constexpr std::uint64_t kPeriodUs = 1000000; // ages are in seconds

    void start();
    void stop() { running_ = false; }

    std::uint64_t due_us() override;
    void run() override;

private:
    std::uint64_t last_us_ = 0;
    bool running_ = false;
};

/// Tells the handlers of every address that came or went, in order.
/// Everything but run() is called under the chip's lock.
class L2Notifier : public Task {
public:
    /// EXISTS: the same pair again; PARAM.
    int add_handler(bcmx_l2_notify_f handler, void* user_data);
    void start();
    /// The table is a new one.
    void follow_table();

    std::uint64_t due_us() override;
    void run() override;

private:
    using Handler = std::pair<bcmx_l2_notify_f, void*>;

    std::vector<Handler> handlers_;
    std::vector<MacEvent> events_; // used by run() only
    bool running_ = false;
};

/// An entry as the cross-unit interface shows it.
bcmx_l2_addr_t system_entry(const MacEntry& entry);

} // namespace vexosim
