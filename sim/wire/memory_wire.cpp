#include <sys/eventfd.h>
#include <unistd.h>

#include <utility>

#include "vexosim/wire.h"

namespace vexosim {

MemoryWire::MemoryWire(std::size_t queue_limit)
    : queue_limit_(queue_limit), event_fd_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
}

MemoryWire::~MemoryWire()
{
    if (event_fd_ >= 0) {
        ::close(event_fd_);
    }
}

void MemoryWire::push(FrameView frame)
{
    const std::lock_guard lock(mutex_);
    if (waiting_.size() >= queue_limit_) {
        count_.overflow++;
        return;
    }
    if (frame.size() > FrameBatch::kMaxFrameBytes) {
        count_.too_long++;
        return;
    }
    waiting_.emplace_back(frame.begin(), frame.end());
    if (waiting_.size() == 1) {
        ::eventfd_write(event_fd_, 1);
    }
}

bool MemoryWire::receive(FrameBatch& batch)
{
    const std::lock_guard lock(mutex_);
    for (; !waiting_.empty() && !batch.full(); waiting_.pop_front()) {
        batch.add(waiting_.front());
        count_.received++;
    }
    if (waiting_.empty()) {
        eventfd_t ignored = 0;
        ::eventfd_read(event_fd_, &ignored);
    }
    return true;
}

void MemoryWire::send(std::span<const FrameView> frames)
{
    count_.sent.fetch_add(frames.size(), std::memory_order_relaxed);
    if (!keep_) {
        return;
    }
    const std::lock_guard lock(mutex_);
    for (const FrameView frame : frames) {
        sent_.emplace_back(frame.begin(), frame.end());
    }
}

std::vector<std::vector<std::uint8_t>> MemoryWire::sent() const
{
    const std::lock_guard lock(mutex_);
    return sent_;
}

std::vector<std::vector<std::uint8_t>> MemoryWire::take_sent()
{
    const std::lock_guard lock(mutex_);
    return std::exchange(sent_, {});
}

} // namespace vexosim
