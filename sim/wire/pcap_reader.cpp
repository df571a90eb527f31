#include "sim/wire/pcap_reader.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace vexosim {

namespace {

constexpr std::size_t kFileHeader = 24;
constexpr std::size_t kRecordHeader = 16;
constexpr std::size_t kBuffer = 65536;
constexpr std::uint32_t kMaxRecord = 262144; // what capture programs allow
constexpr std::uint32_t kMicroseconds = 0xa1b2c3d4, kNanoseconds = 0xa1b23c4d;
constexpr std::uint32_t kNextGeneration = 0x0a0d0d0a;
constexpr std::uint32_t kEthernet = 1;

std::uint32_t big(const std::uint8_t* from)
{
    return std::uint32_t{from[0]} << 24 | std::uint32_t{from[1]} << 16 |
           std::uint32_t{from[2]} << 8 | from[3];
}

std::uint32_t little(const std::uint8_t* from)
{
    return std::uint32_t{from[3]} << 24 | std::uint32_t{from[2]} << 16 |
           std::uint32_t{from[1]} << 8 | from[0];
}

} // namespace

std::string PcapReader::open(const std::string& path)
{
    path_ = path;
    Fd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file) {
        return "cannot read " + path + ": " + std::strerror(errno);
    }
    struct stat info {};
    if (::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) {
        return path + " is not a regular file";
    }
    size_ = static_cast<std::uint64_t>(info.st_size);
    if (::flock(file.get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        return path + " is being written by a port; name another file";
    }
    file_ = std::move(file);
    buffer_.resize(kBuffer);
    std::string why = read_header();
    if (!why.empty()) {
        file_ = Fd();
    }
    return why;
}

std::string PcapReader::read_header()
{
    std::array<std::uint8_t, kFileHeader> header{};
    const std::size_t size = read(header.data(), header.size());
    if (size == 0) {
        return path_ + " is empty, not a capture";
    }
    if (size >= 4) {
        if (std::string why = use_magic(header.data()); !why.empty()) {
            return why;
        }
    }
    if (blocks_) {
        begin_ -= size; // still there: it was the first that was read
        return open_blocks();
    }
    if (size < header.size()) {
        return path_ + " is not a capture, or cut short: it has " + std::to_string(size) +
               " of the 24 bytes of a header";
    }
    return use_link_type(number(header.data() + 20));
}

std::string PcapReader::use_magic(const std::uint8_t* header)
{
    for (const bool is_big : {false, true}) {
        const std::uint32_t magic = is_big ? big(header) : little(header);
        if (magic == kMicroseconds || magic == kNanoseconds) {
            big_endian_ = is_big;
            nanoseconds_ = magic == kNanoseconds;
            return {};
        }
    }
    blocks_ = big(header) == kNextGeneration;
    return blocks_ ? "" : path_ + " is not a capture file";
}

// The field's upper bits may say that frames end with an FCS, and how long it is in 16-bit words.
std::string PcapReader::use_link_type(std::uint32_t field)
{
    const std::uint32_t type = field & 0xffff;
    if (type != kEthernet) {
        return path_ + " is a capture of link type " + std::to_string(type) +
               "; only Ethernet, type 1, can be replayed";
    }
    fcs_bytes_ = (field & 0x04000000) != 0 ? (field >> 28) * 2 : 0;
    return {};
}

std::optional<PcapReader::Record> PcapReader::next()
{
    if (ahead_) {
        return std::exchange(ahead_, std::nullopt);
    }
    return blocks_ ? next_packet() : next_classic();
}

std::optional<PcapReader::Record> PcapReader::next_classic()
{
    std::array<std::uint8_t, kRecordHeader> header{};
    const std::size_t size = file_ && damage_.empty() ? read(header.data(), header.size()) : 0;
    if (size == 0) {
        return std::nullopt;
    }
    if (size < header.size()) {
        return damaged("is cut short in the header of record ");
    }
    const std::uint32_t length = number(header.data() + 8);
    if (length > kMaxRecord) {
        return damaged("claims " + std::to_string(length) + " bytes for record ");
    }
    record_.resize(length);
    if (read(record_.data(), length) < length) {
        return damaged("is cut short in record ");
    }
    ++records_;
    const std::uint32_t fraction = number(header.data() + 4);
    Record record;
    record.time = std::chrono::seconds(number(header.data())) +
                  std::chrono::nanoseconds(nanoseconds_ ? fraction : fraction * std::int64_t{1000});
    record.cut = length < number(header.data() + 12);
    record.frame = FrameView(record_).first(length - std::min<std::size_t>(length, fcs_bytes_));
    return record;
}

std::nullopt_t PcapReader::damaged(const std::string& what)
{
    damage_ = path_ + " " + what + std::to_string(records_ + 1) + "; " + std::to_string(records_) +
              " records before it were read";
    return std::nullopt;
}

double PcapReader::part_read() const
{
    const auto done = static_cast<double>(taken_ - (end_ - begin_));
    return size_ == 0 ? 1 : done / static_cast<double>(size_);
}

std::size_t PcapReader::read(std::uint8_t* to, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        if (begin_ == end_) {
            const ssize_t got = ::read(file_.get(), buffer_.data(), buffer_.size());
            if (got <= 0) {
                break;
            }
            begin_ = 0;
            end_ = static_cast<std::size_t>(got);
            taken_ += end_;
        }
        const std::size_t some = std::min(size - done, end_ - begin_);
        std::copy_n(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_), some, to + done);
        begin_ += some;
        done += some;
    }
    return done;
}

std::uint32_t PcapReader::number(const std::uint8_t* from) const
{
    return big_endian_ ? big(from) : little(from);
}

} // namespace vexosim
