#include "sim/card/task.h"

#include "sim/card/card.h"

namespace vexosim {

void TaskThread::start()
{
    const std::lock_guard lock(mutex_);
    if (!stopping_ && !thread_.joinable())
        thread_ = std::thread([this] { loop(); });
}

void TaskThread::wake()
{
    {
        const std::lock_guard lock(mutex_);
        if (woken_)
            return;
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
    if (!thread_.joinable())
        return;
    if (thread_.get_id() == std::this_thread::get_id())
        thread_.detach();
    else
        thread_.join();
}

void TaskThread::loop()
{
    for (;;) {
        wait_until_due();
        {
            const std::lock_guard lock(mutex_);
            if (stopping_)
                return;
        }
        task_.run();
    }
}

void TaskThread::wait_until_due()
{
    for (;;) {
        const std::uint64_t due = task_.due_us();
        const std::uint64_t now = card().clock.now_us();
        if (due <= now)
            return;
        std::unique_lock lock(mutex_);
        const auto ready = [this] { return woken_ || stopping_; };
        if (due == Task::kNever)
            changed_.wait(lock, ready);
        else
            changed_.wait_for(lock, std::chrono::microseconds(due - now), ready);
        woken_ = false;
        if (stopping_)
            return;
    }
}

} // namespace vexosim
