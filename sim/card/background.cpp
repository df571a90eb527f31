#include "sim/card/background.h"

#include <algorithm>
#include <cstdlib>

#include "sim/card/card.h"
#include "vexosim/wire.h"

namespace vexosim {

void Background::start()
{
    if (card().clock.manual() || started_.exchange(true))
        return;
    for (TaskThread& thread : threads_)
        thread.start();
    std::atexit([] { card().background.stop(); });
}

Background::TaskSet Background::find_work()
{
    TaskSet found;
    if (!started_.load(std::memory_order_relaxed))
        return found;
    for (std::size_t i = 0; i < kTasks; ++i)
        found[i] = tasks_[i]->plan();
    return found;
}

void Background::wake(TaskSet tasks)
{
    for (std::size_t i = 0; i < kTasks; ++i)
        if (tasks[i])
            threads_[i].wake();
}

void Background::stop()
{
    for (TaskThread& thread : threads_)
        thread.stop();
}

Task* Background::due_task()
{
    const ChipLock chip;
    const auto due = [&](Task* task) { return task->due_us() <= chip->now_us; };
    const auto found = std::find_if(tasks_.begin(), tasks_.end(), due);
    return found == tasks_.end() ? nullptr : *found;
}

std::uint64_t Background::next_due_us()
{
    const ChipLock chip;
    std::uint64_t next = Task::kNever;
    for (Task* const task : tasks_)
        next = std::min(next, task->due_us());
    return next;
}

void Background::run_due()
{
    while (Task* const task = due_task())
        task->run();
}

void Background::drain()
{
    if (!card().clock.manual())
        return;
    link_scan.run();
    poll_wires();
    run_due();
}

void Background::advance(std::chrono::microseconds duration)
{
    if (!card().clock.manual() || duration.count() < 0)
        return;
    const std::uint64_t until =
        card().clock.now_us() + static_cast<std::uint64_t>(duration.count());
    run_due();
    for (std::uint64_t due = next_due_us(); due <= until; due = next_due_us()) {
        card().clock.move_to(due);
        run_due();
    }
    card().clock.move_to(until);
}

} // namespace vexosim
