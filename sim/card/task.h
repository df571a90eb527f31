#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace vexosim {

/// Work that the SDK does by itself: on a thread of its own, or with the manual clock on the thread
/// that moves time. Handlers run inside run(), with no lock held.
class Task {
public:
    static constexpr std::uint64_t kNever = ~std::uint64_t{0};

    Task() = default;
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    virtual ~Task() = default;

    /// When there is something to do next: a time that has come means now. Under the chip's lock.
    virtual std::uint64_t due_us() = 0;
    /// Does what is due.
    virtual void run() = 0;

    /// Notes when the task is due.
    /// @return whether that is earlier than it was. Under the chip's lock.
    bool plan()
    {
        const std::uint64_t due = due_us();
        const bool earlier = due < planned_us_;
        planned_us_ = due;
        return earlier;
    }

private:
    std::uint64_t planned_us_ = kNever;
};

/// Runs a task whenever it is due, until stopped.
class TaskThread {
public:
    explicit TaskThread(Task& task) : task_(task) {}
    TaskThread(const TaskThread&) = delete;
    TaskThread& operator=(const TaskThread&) = delete;

    void start();
    /// Has the thread look again at when the task is due.
    void wake();
    /// Waits until the task has returned, unless called by the task itself.
    void stop();

private:
    void loop();
    /// @return false when the thread is to end.
    bool wait_until_due();

    Task& task_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::thread thread_;
    bool woken_ = false;
    bool stopping_ = false;
};

} // namespace vexosim
