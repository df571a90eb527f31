// Of a PcapReader, what it does with the blocks of a pcapng file.
#include <algorithm>
#include <array>
#include <cstring>

#include "sim/wire/pcap_reader.h"

namespace vexosim {

namespace {

constexpr std::uint32_t kSection = 0x0a0d0d0a, kInterface = 1, kObsoletePacket = 2, kSimple = 3,
                        kPacket = 6;
constexpr std::uint32_t kByteOrder = 0x1a2b3c4d, kOtherOrder = 0x4d3c2b1a;
constexpr std::uint32_t kMaxBlock = 16U << 20;
constexpr std::size_t kBlockEnds = 12; // type, length, and the length again
constexpr std::uint16_t kFlags = 2, kResolution = 9, kFcsBytes = 13, kOffset = 14;
constexpr std::uint32_t kDirection = 3, kOutbound = 2;

constexpr std::size_t padded(std::size_t size)
{
    return (size + 3) / 4 * 4;
}

std::uint64_t power_of_10(unsigned exponent)
{
    std::uint64_t power = 1;
    for (; exponent > 0; --exponent) {
        power *= 10;
    }
    return power;
}

// Nanoseconds of a count whose unit is 10^-n s or, with the top bit set, 2^-n s. No file that is in
// order counts so far that a sum here wraps.
std::uint64_t nanoseconds_of(std::uint64_t ticks, std::uint8_t resolution)
{
    unsigned digits = resolution & 0x7f;
    if (resolution < 0x80) {
        return digits <= 9    ? ticks * power_of_10(9 - digits)
               : digits <= 28 ? ticks / power_of_10(digits - 9)
                              : 0;
    }
    constexpr unsigned kMost = 32; // what is finer than that is cut off
    if (digits > kMost) {
        ticks = digits - kMost < 64 ? ticks >> (digits - kMost) : 0;
        digits = kMost;
    }
    const std::uint64_t fraction = ticks & ((std::uint64_t{1} << digits) - 1);
    return (ticks >> digits) * 1'000'000'000 + (fraction * 1'000'000'000 >> digits);
}

} // namespace

// Reads as far as the first packet, to know of a link type that cannot be replayed.
std::string PcapReader::open_blocks()
{
    ahead_ = next_packet();
    return !ahead_ && !damage_.empty() && interfaces_.empty() ? damage_ : "";
}

std::optional<PcapReader::Record> PcapReader::next_packet()
{
    for (std::uint32_t type = 0; read_block(type);) {
        if (type == kInterface && !add_interface()) {
            return std::nullopt;
        }
        if (type != kPacket && type != kObsoletePacket && type != kSimple) {
            continue;
        }
        auto record = packet(type);
        if (record || !damage_.empty()) {
            return record;
        }
    }
    return std::nullopt;
}

// The next block; record_ is then what lies between its lengths. False at the end or after damage.
bool PcapReader::read_block(std::uint32_t& type)
{
    std::array<std::uint8_t, 8> head{};
    const std::size_t size = file_ && damage_.empty() ? read(head.data(), head.size()) : 0;
    if (size == 0) {
        return false;
    }
    record_.resize(4);
    type = number(head.data());
    const bool section = type == kSection;
    if (size < head.size() || (section && read(record_.data(), 4) < 4)) {
        damaged("is cut short in the header of the block with record ");
        return false;
    }
    if (section && !begin_section()) {
        return false;
    }
    const std::uint32_t length = number(head.data() + 4);
    if (length % 4 != 0 || length < kBlockEnds + (section ? 4 : 0) || length > kMaxBlock) {
        damaged("claims " + std::to_string(length) + " bytes for the block with record ");
        return false;
    }
    const std::size_t before = section ? 4 : 0;
    record_.resize(length - kBlockEnds + 4);
    if (read(record_.data() + before, record_.size() - before) < record_.size() - before) {
        damaged("is cut short in the block with record ");
        return false;
    }
    record_.resize(length - kBlockEnds);
    return true;
}

// By its first four bytes, which are in record_. Interfaces are numbered anew in each section.
bool PcapReader::begin_section()
{
    const bool same = word_at(0) == kByteOrder;
    if (!same && word_at(0) != kOtherOrder) {
        damaged("is not a capture file: no byte order in front of record ");
        return false;
    }
    big_endian_ = same ? big_endian_ : !big_endian_;
    interfaces_.clear();
    return true;
}

bool PcapReader::add_interface()
{
    if (record_.size() < 8) {
        damaged("has an interface without a link type in front of record ");
        return false;
    }
    if (std::string why = use_link_type(half_at(0)); !why.empty()) {
        damage_ = std::move(why);
        return false;
    }
    Interface added;
    if (const std::size_t at = find_option(8, kResolution, 1); at != 0) {
        added.resolution = record_[at];
    }
    if (const std::size_t at = find_option(8, kFcsBytes, 1); at != 0) {
        added.fcs_bytes = record_[at];
    }
    if (const std::size_t at = find_option(8, kOffset, 8); at != 0) {
        const std::uint64_t high = word_at(big_endian_ ? at : at + 4);
        added.offset = static_cast<std::int64_t>(high << 32 | word_at(big_endian_ ? at + 4 : at));
    }
    interfaces_.push_back(added);
    return true;
}

// Empty for a packet that a port sent, and for one that cannot be.
std::optional<PcapReader::Record> PcapReader::packet(std::uint32_t type)
{
    const bool simple = type == kSimple;
    const std::size_t fixed = simple ? 4 : 20;
    if (record_.size() < fixed) {
        return damaged("has too short a block for record ");
    }
    const std::uint32_t from = simple ? 0 : type == kPacket ? word_at(0) : half_at(0);
    const std::uint32_t original = word_at(simple ? 0 : 16);
    const std::size_t room = record_.size() - fixed;
    const std::size_t length =
        simple ? std::min<std::size_t>(original, room) : std::size_t{word_at(12)};
    if (length > room) {
        return damaged("claims " + std::to_string(length) + " bytes for record ");
    }
    if (from >= interfaces_.size()) {
        return damaged("names no interface for record ");
    }
    ++records_;
    const std::size_t flags = type == kPacket ? find_option(fixed + padded(length), kFlags, 4) : 0;
    if (flags != 0 && (word_at(flags) & kDirection) == kOutbound) {
        return std::nullopt;
    }
    const Interface& interface = interfaces_[from];
    Record record;
    if (!simple) {
        const std::uint64_t ticks = std::uint64_t{word_at(4)} << 32 | word_at(8);
        record.time = std::chrono::nanoseconds(static_cast<std::int64_t>(
            nanoseconds_of(ticks, interface.resolution) +
            static_cast<std::uint64_t>(interface.offset) * 1'000'000'000));
    }
    record.cut = length < original;
    record.frame = FrameView(record_)
                       .subspan(fixed, length)
                       .first(length - std::min(length, interface.fcs_bytes));
    return record;
}

// Where the value of an option of this size begins; 0 when there is none.
std::size_t PcapReader::find_option(std::size_t from, std::uint16_t code, std::size_t size) const
{
    while (from + 4 <= record_.size() && half_at(from) != 0) {
        const std::size_t length = half_at(from + 2);
        if (length > record_.size() - from - 4) {
            break;
        }
        if (half_at(from) == code && length == size) {
            return from + 4;
        }
        from += 4 + padded(length);
    }
    return 0;
}

std::uint16_t PcapReader::half_at(std::size_t at) const
{
    const std::uint16_t first = record_[at], second = record_[at + 1];
    return static_cast<std::uint16_t>(big_endian_ ? first << 8 | second : second << 8 | first);
}

} // namespace vexosim
