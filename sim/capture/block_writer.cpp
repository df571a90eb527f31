#include "sim/capture/block_writer.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

namespace vexosim {

namespace {

/// So many bytes are worth waiting for: about what a processor's cache keeps.
constexpr std::size_t kMany = std::size_t{256} * 1024;

std::string why_not(const std::string& path)
{
    return "cannot write " + path + ": " + std::strerror(errno);
}

std::string make_empty(int fd, const std::string& path)
{
    struct stat info {};
    if (::fstat(fd, &info) != 0)
        return why_not(path);
    if (S_ISREG(info.st_mode)) {
        if (::flock(fd, LOCK_EX | LOCK_NB) != 0)
            return path + " is being written already; name another file";
        if (::ftruncate(fd, 0) != 0)
            return why_not(path);
    }
    const int flags = ::fcntl(fd, F_GETFL);
    return flags < 0 || ::fcntl(fd, F_SETFL, flags & ~O_NONBLOCK) < 0 ? why_not(path)
                                                                      : std::string{};
}

/// A reader that goes away is an error of write(), not the end of the program.
void block_sigpipe()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

} // namespace

BlockWriter::~BlockWriter()
{
    stop();
}

std::string BlockWriter::open(const std::string& path)
{
    // Without O_NONBLOCK, a pipe that nobody reads would hold the caller.
    Fd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666));
    if (!file)
        return errno == ENXIO ? path + " is a pipe that nobody reads" : why_not(path);
    if (std::string why = make_empty(file.get(), path); !why.empty())
        return why;
    path_ = path;
    file_ = std::move(file);
    thread_ = std::thread([this] { run(); });
    return {};
}

void BlockWriter::take(BlockBuffer& blocks)
{
    if (blocks.empty())
        return;
    std::unique_lock lock(mutex_);
    if (!busy_ || blocks.size() >= kMany)
        hand_over(lock, blocks);
}

void BlockWriter::hand_over(std::unique_lock<std::mutex>& lock, BlockBuffer& blocks)
{
    changed_.wait(lock, [this] { return !busy_; });
    std::swap(blocks, writing_);
    blocks.clear();
    busy_ = true;
    changed_.notify_all();
}

std::string BlockWriter::close(BlockBuffer& last)
{
    if (thread_.joinable()) {
        std::unique_lock lock(mutex_);
        hand_over(lock, last);
    }
    stop();
    file_ = Fd();
    return error_;
}

void BlockWriter::stop()
{
    if (!thread_.joinable())
        return;
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        changed_.notify_all();
    }
    thread_.join();
}

std::string BlockWriter::error() const
{
    const std::lock_guard lock(mutex_);
    return error_;
}

void BlockWriter::run()
{
    block_sigpipe();
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return busy_ || stopping_; });
        if (!busy_)
            return;
        lock.unlock();
        const bool failed = !error_.empty() || !write_all(writing_.bytes());
        std::string why = failed && error_.empty() ? why_not(path_) : std::string{};
        lock.lock();
        if (!why.empty())
            error_ = std::move(why);
        busy_ = false;
        changed_.notify_all();
    }
}

/// All of it or none of it.
bool BlockWriter::write_all(std::span<const std::uint8_t> bytes)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t put = ::write(file_.get(), bytes.data() + done, bytes.size() - done);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0) {
            const int why = errno;
            const bool cut = ::ftruncate(file_.get(), size_) == 0;
            (void)cut; // a pipe, or a device, keeps what it got
            errno = why;
            return false;
        }
        done += static_cast<std::size_t>(put);
    }
    size_ += static_cast<off_t>(done);
    return true;
}

} // namespace vexosim
