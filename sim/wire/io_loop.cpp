#include "sim/wire/io_loop.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <utility>

namespace vexosim {

namespace {

constexpr std::uint32_t kWake = 0xffffffff;
constexpr int kEvents = 64;

} // namespace

IoLoop::IoLoop(ReadFn read)
    : read_(std::move(read)), epoll_fd_(::epoll_create1(EPOLL_CLOEXEC)),
      wake_fd_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.u64 = kWake;
    ::epoll_ctl(epoll_fd_, EPOLL_CTL_ADD, wake_fd_, &event);
}

IoLoop::~IoLoop()
{
    stop();
    ::close(wake_fd_);
    ::close(epoll_fd_);
}

bool IoLoop::watch(int user_port, int fd)
{
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.u64 = static_cast<std::uint64_t>(user_port);
    return ::epoll_ctl(epoll_fd_, EPOLL_CTL_ADD, fd, &event) == 0;
}

void IoLoop::unwatch(int fd)
{
    ::epoll_ctl(epoll_fd_, EPOLL_CTL_DEL, fd, nullptr);
}

void IoLoop::start()
{
    if (running()) {
        return;
    }
    stopping_ = false;
    thread_ = std::thread([this] { run(); });
}

void IoLoop::stop()
{
    if (!running() || thread_.get_id() == std::this_thread::get_id()) {
        return;
    }
    stopping_ = true;
    ::eventfd_write(wake_fd_, 1);
    thread_.join();
    eventfd_t ignored = 0;
    ::eventfd_read(wake_fd_, &ignored);
}

void IoLoop::run()
{
    std::array<epoll_event, kEvents> events;
    while (!stopping_) {
        const int ready = ::epoll_wait(epoll_fd_, events.data(), kEvents, -1);
        for (int i = 0; i < ready && !stopping_; ++i) {
            const auto port = events[static_cast<std::size_t>(i)].data.u64;
            if (port != kWake) {
                read_(static_cast<int>(port));
            }
        }
    }
}

} // namespace vexosim
