#pragma once

#include <atomic>
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

    /// When there is something to do next: a time that has come means now.
    virtual std::uint64_t due_us() = 0;
    /// Does what is due.
    virtual void run() = 0;
};

/// Runs a task whenever it is due, until stopped.
class TaskThread {
public:
    explicit TaskThread(Task& task) : task_(task) {}
    TaskThread(const TaskThread&) = delete;
    TaskThread& operator=(const TaskThread&) = delete;

    /// Does nothing when it runs already, or was stopped.
    void start();
    /// Has the task look again at when it is due. Cheap while it has not run since.
    void wake();
    /// Waits until the task has returned, unless called by the task itself.
    void stop();

private:
    void loop();
    void wait_until_due();

    Task& task_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::thread thread_;
    bool woken_ = false;
    bool stopping_ = false;
};

} // namespace vexosim
