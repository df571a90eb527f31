#include "sim/card/task.h"

#include "sim/card/card.h"

namespace vexosim {

namespace {

/// Microseconds until the task is due; kNever when nothing is to do.
std::uint64_t wait_us(Task& task)
{
    const ChipLock chip;
    task.plan();
    const std::uint64_t due = task.due_us();
    if (due == Task::kNever)
        return Task::kNever;
    return due > chip->now_us ? due - chip->now_us : 0;
}

} // namespace

void TaskThread::start()
{
    thread_ = std::thread([this] { loop(); });
}

void TaskThread::wake()
{
    {
        const std::lock_guard lock(mutex_);
        woken_ = true;
    }
    changed_.notify_one();
}

void TaskThread::stop()
{
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_one();
    if (thread_.get_id() == std::this_thread::get_id())
        thread_.detach();
    else if (thread_.joinable())
        thread_.join();
}

void TaskThread::loop()
{
    while (wait_until_due())
        task_.run();
}

bool TaskThread::wait_until_due()
{
    for (;;) {
        const std::uint64_t wait = wait_us(task_);
        std::unique_lock lock(mutex_);
        const auto ready = [this] { return woken_ || stopping_; };
        if (wait == Task::kNever)
            changed_.wait(lock, ready);
        else if (wait != 0)
            changed_.wait_for(lock, std::chrono::microseconds(wait), ready);
        woken_ = false;
        if (stopping_ || wait == 0)
            return !stopping_;
    }
}

} // namespace vexosim
