#pragma once

#include <array>
#include <chrono>
#include <mutex>

#include "sim/card/l2_tasks.h"
#include "sim/card/link_scan.h"
#include "sim/card/receiver.h"
#include "sim/card/task.h"

namespace vexosim {

/// What the SDK does by itself, in the order in which it is done when several things are due.
class Background {
public:
    LinkScan link_scan;
    L2Ageing l2_ageing;
    L2Notifier l2_notifier;
    Receiver receiver;

    /// Gives the tasks their threads, unless the clock is manual.
    void start();
    /// Has the tasks look again at when they are due.
    void wake() { wake_some(0); }
    /// The same for L2 notification and packet receive alone.
    void wake_for_events() { wake_some(2); }

    /// Manual clock: runs what is due until nothing is.
    void run_due();
    void drain();
    void advance(std::chrono::microseconds duration);

private:
    void wake_some(std::size_t first);
    void stop();
    Task* due_task(std::uint64_t time_us);
    std::uint64_t next_due_us();

    std::array<Task*, 4> tasks_{&link_scan, &l2_ageing, &l2_notifier, &receiver};
    std::array<TaskThread, 4> threads_{TaskThread(link_scan), TaskThread(l2_ageing),
                                       TaskThread(l2_notifier), TaskThread(receiver)};
    std::atomic<bool> started_{false};
};

} // namespace vexosim
