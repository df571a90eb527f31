#pragma once

#include <array>
#include <atomic>
#include <bitset>
#include <chrono>

#include "sim/card/cable_task.h"
#include "sim/card/l2_tasks.h"
#include "sim/card/link_scan.h"
#include "sim/card/receiver.h"
#include "sim/card/task.h"

namespace vexosim {

/// What the SDK and cables do by themselves, in the order in which it is done when several things
/// are due.
class Background {
public:
    static constexpr std::size_t kTasks = 5;
    using TaskSet = std::bitset<kTasks>;

    CableTask cables;
    LinkScan link_scan;
    L2Ageing l2_ageing;
    L2Notifier l2_notifier;
    Receiver receiver;

    /// Gives the tasks their threads, unless the clock is manual.
    void start();
    /// Ends the threads; none runs a task any more when it returns.
    void stop();
    /// Tasks that are due earlier than their threads know. Under the chip's lock.
    TaskSet find_work();
    /// Has their threads look again. Without the chip's lock.
    void wake(TaskSet tasks);

    /// Manual clock: does a link scan, and runs what is due until nothing is.
    void drain();
    /// Manual clock: moves time on, running what falls due.
    void advance(std::chrono::microseconds duration);

private:
    void run_due();
    Task* due_task();
    std::uint64_t next_due_us();

    std::array<Task*, kTasks> tasks_{&cables, &link_scan, &l2_ageing, &l2_notifier, &receiver};
    std::array<TaskThread, kTasks> threads_{TaskThread(cables), TaskThread(link_scan),
                                            TaskThread(l2_ageing), TaskThread(l2_notifier),
                                            TaskThread(receiver)};
    std::atomic<bool> started_{false};
};

} // namespace vexosim
