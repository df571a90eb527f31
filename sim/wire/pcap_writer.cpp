#include "sim/wire/pcap_writer.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

namespace vexosim {

namespace {

constexpr std::uint32_t kMicroseconds = 0xa1b2c3d4;
constexpr std::uint32_t kVersion = 2 | 4 << 16; // 2.4, as two 16-bit numbers
constexpr std::uint32_t kSnapLength = 262144;
constexpr std::uint32_t kEthernet = 1;

void put(std::vector<std::uint8_t>& to, std::uint32_t value)
{
    for (int shift = 0; shift < 32; shift += 8) {
        to.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

void put_record(std::vector<std::uint8_t>& to, FrameView frame, std::chrono::nanoseconds time)
{
    const auto us = std::chrono::duration_cast<std::chrono::microseconds>(time).count();
    const auto length = static_cast<std::uint32_t>(frame.size());
    put(to, static_cast<std::uint32_t>(us / 1000000));
    put(to, static_cast<std::uint32_t>(us % 1000000));
    put(to, length);
    put(to, length);
    to.insert(to.end(), frame.begin(), frame.end());
}

// Why an open file cannot become a capture.
std::string refusal(int fd, const std::string& path)
{
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        return path + " is not a regular file";
    }
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        return path + " is in use by a port; name another file to write";
    }
    if (::ftruncate(fd, 0) != 0) {
        return "cannot write " + path + ": " + std::strerror(errno);
    }
    return {};
}

} // namespace

std::string PcapWriter::open(const std::string& path)
{
    path_ = path;
    Fd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666));
    if (!file) {
        return "cannot write " + path + ": " + std::strerror(errno);
    }
    if (std::string why = refusal(file.get(), path); !why.empty()) {
        return why;
    }
    file_ = std::move(file);
    buffer_.clear();
    for (const std::uint32_t word : {kMicroseconds, kVersion, 0U, 0U, kSnapLength, kEthernet}) {
        put(buffer_, word);
    }
    if (!append()) {
        file_ = Fd();
        return "cannot write " + path + ": " + std::strerror(errno);
    }
    return {};
}

std::size_t PcapWriter::write(std::span<const FrameView> frames, std::chrono::nanoseconds time)
{
    if (!file_) {
        return 0;
    }
    buffer_.clear();
    for (const FrameView frame : frames) {
        put_record(buffer_, frame, time);
    }
    if (append()) {
        return frames.size();
    }
    // No room for all of them: one by one, up to the first that does not fit.
    std::size_t written = 0;
    for (const FrameView frame : frames) {
        buffer_.clear();
        put_record(buffer_, frame, time);
        if (!append()) {
            break;
        }
        ++written;
    }
    return written;
}

// All of the buffer or none of it.
bool PcapWriter::append()
{
    std::size_t done = 0;
    while (done < buffer_.size()) {
        const ssize_t put = ::write(file_.get(), buffer_.data() + done, buffer_.size() - done);
        if (put <= 0) {
            const int why = errno;
            const bool back = ::ftruncate(file_.get(), size_) == 0 &&
                              ::lseek(file_.get(), size_, SEEK_SET) == size_;
            errno = why;
            (void)back; // a file that can neither grow nor shrink stays as it is
            return false;
        }
        done += static_cast<std::size_t>(put);
    }
    size_ += static_cast<off_t>(done);
    return true;
}

} // namespace vexosim
