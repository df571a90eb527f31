#pragma once

#include <atomic>
#include <functional>
#include <thread>

namespace vexosim {

/// The one thread that waits for live wires and has them read. Frames go from the read to the
/// card and out again on this thread: no queue, no second thread to wake.
class IoLoop {
public:
    /// Reads one burst from a port's wire and passes it on.
    using ReadFn = std::function<void(int user_port)>;

    explicit IoLoop(ReadFn read);
    IoLoop(const IoLoop&) = delete;
    IoLoop& operator=(const IoLoop&) = delete;
    ~IoLoop();

    /// Watches a descriptor for a port. False if the system refuses.
    bool watch(int user_port, int fd);
    void unwatch(int fd);

    void start();
    void stop();
    bool running() const { return thread_.joinable(); }

private:
    void run();

    ReadFn read_;
    int epoll_fd_;
    int wake_fd_;
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

} // namespace vexosim
