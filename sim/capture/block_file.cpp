#include "sim/capture/block_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace vexosim {

namespace {

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
        if (info.st_size != 0 && ::ftruncate(fd, 0) != 0)
            return why_not(path);
    }
    const int flags = ::fcntl(fd, F_GETFL);
    return flags < 0 || ::fcntl(fd, F_SETFL, flags & ~O_NONBLOCK) < 0 ? why_not(path)
                                                                      : std::string{};
}

} // namespace

std::string BlockFile::open(const std::string& path)
{
    // Without O_NONBLOCK, a pipe that nobody reads would hold the caller.
    Fd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666));
    if (!file)
        return errno == ENXIO ? path + " is a pipe that nobody reads" : why_not(path);
    if (std::string why = make_empty(file.get(), path); !why.empty())
        return why;
    path_ = path;
    file_ = std::move(file);
    size_ = 0;
    return {};
}

std::string BlockFile::write(std::span<const std::uint8_t> blocks)
{
    std::size_t done = 0;
    while (done < blocks.size()) {
        const ssize_t put = ::write(file_.get(), blocks.data() + done, blocks.size() - done);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0) {
            std::string why = why_not(path_);
            const bool cut = ::ftruncate(file_.get(), size_) == 0;
            (void)cut; // a pipe, or a device, keeps what it got
            return why;
        }
        done += static_cast<std::size_t>(put);
    }
    size_ += static_cast<off_t>(done);
    return {};
}

} // namespace vexosim
