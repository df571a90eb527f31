#include "sim/capture/pcapng.h"

#include <cstring>

namespace vexosim::pcapng {

namespace {

// Block types.
constexpr std::uint32_t kSection = 0x0a0d0d0a, kInterface = 1, kStatistics = 5, kPacket = 6;
// Options, in the blocks in which they stand.
constexpr std::uint16_t kComment = 1;
constexpr std::uint16_t kSectionApplication = 4;
constexpr std::uint16_t kInterfaceName = 2, kInterfaceDescription = 3, kInterfaceResolution = 9;
constexpr std::uint16_t kPacketFlags = 2, kPacketId = 5, kPacketVerdict = 7;
constexpr std::uint16_t kReceived = 4, kDropped = 5;

constexpr std::uint32_t kByteOrder = 0x1a2b3c4d;
constexpr std::uint32_t kVersion = 1; // 1.0, as two 16-bit numbers
constexpr std::uint32_t kEthernet = 1;
constexpr std::size_t kIdBytes = 8;
constexpr char kNanoseconds = 9; // ten to the power of -9
constexpr char kByHardware = 0;  // who decided the verdict

constexpr std::size_t padded(std::size_t bytes)
{
    return (bytes + 3) & ~std::size_t{3};
}

/// Puts numbers and bytes one behind the other.
class Cursor {
public:
    explicit Cursor(std::uint8_t* at) : at_(at) {}

    Cursor& half(std::uint32_t value)
    {
        at_[0] = static_cast<std::uint8_t>(value);
        at_[1] = static_cast<std::uint8_t>(value >> 8);
        at_ += 2;
        return *this;
    }
    Cursor& word(std::uint32_t value)
    {
        at_[0] = static_cast<std::uint8_t>(value);
        at_[1] = static_cast<std::uint8_t>(value >> 8);
        at_[2] = static_cast<std::uint8_t>(value >> 16);
        at_[3] = static_cast<std::uint8_t>(value >> 24);
        at_ += 4;
        return *this;
    }
    Cursor& low_then_high(std::uint64_t value)
    {
        return word(static_cast<std::uint32_t>(value))
            .word(static_cast<std::uint32_t>(value >> 32));
    }
    Cursor& high_then_low(std::uint64_t value)
    {
        return word(static_cast<std::uint32_t>(value >> 32))
            .word(static_cast<std::uint32_t>(value));
    }
    /// Filled up with zeros to whole words.
    Cursor& bytes(const void* from, std::size_t count)
    {
        if (count % 4 != 0)
            std::memset(at_ + count / 4 * 4, 0, 4);
        std::memcpy(at_, from, count);
        at_ += padded(count);
        return *this;
    }

private:
    std::uint8_t* at_;
};

std::string option(std::uint16_t code, std::string_view value)
{
    std::string bytes(4 + padded(value.size()), '\0');
    Cursor(reinterpret_cast<std::uint8_t*>(bytes.data()))
        .half(code)
        .half(static_cast<std::uint32_t>(value.size()))
        .bytes(value.data(), value.size());
    return bytes;
}

std::string number_option(std::uint16_t code, std::uint64_t value)
{
    std::string bytes(8, '\0');
    Cursor(reinterpret_cast<std::uint8_t*>(bytes.data())).low_then_high(value);
    return option(code, bytes);
}

std::string end_of_options()
{
    return std::string(4, '\0');
}

/// Puts a block's frame around its words.
void put_block(BlockBuffer& to, std::uint32_t type, std::string_view body)
{
    const auto length = static_cast<std::uint32_t>(12 + body.size());
    Cursor(to.grow(length)).word(type).word(length).bytes(body.data(), body.size()).word(length);
}

std::string words(std::initializer_list<std::uint32_t> values)
{
    std::string bytes(4 * values.size(), '\0');
    Cursor cursor(reinterpret_cast<std::uint8_t*>(bytes.data()));
    for (const std::uint32_t value : values)
        cursor.word(value);
    return bytes;
}

} // namespace

std::string options_of(Direction direction, std::string_view verdict, std::string_view comment)
{
    std::string options = option(kPacketFlags, words({static_cast<std::uint32_t>(direction)}));
    if (!verdict.empty())
        options += option(kPacketVerdict, kByHardware + std::string(verdict));
    if (!comment.empty())
        options += option(kComment, comment);
    return options + option(kPacketId, std::string(kIdBytes, '\0')).substr(0, 4);
}

void put_section(BlockBuffer& to, std::string_view application)
{
    constexpr std::uint32_t kUnknownLength = 0xffffffff;
    put_block(to, kSection,
              words({kByteOrder, kVersion, kUnknownLength, kUnknownLength}) +
                  option(kSectionApplication, application) + end_of_options());
}

void put_interface(BlockBuffer& to, std::string_view name, std::string_view description)
{
    constexpr std::uint32_t kNoLimit = 0;
    std::string body = words({kEthernet, kNoLimit}) + option(kInterfaceName, name);
    if (!description.empty())
        body += option(kInterfaceDescription, description);
    put_block(to, kInterface,
              body + option(kInterfaceResolution, {&kNanoseconds, 1}) + end_of_options());
}

void put_packet(BlockBuffer& to, const PacketHead& head, FrameView frame, std::string_view options)
{
    constexpr std::size_t kFixed = 32, kEndOfOptions = 4;
    const auto size = static_cast<std::uint32_t>(frame.size());
    const auto length = static_cast<std::uint32_t>(kFixed + padded(size) + options.size() +
                                                   kIdBytes + kEndOfOptions);
    Cursor(to.grow(length))
        .word(kPacket)
        .word(length)
        .word(head.interface)
        .high_then_low(head.time_ns)
        .word(size)
        .word(size)
        .bytes(frame.data(), size)
        .bytes(options.data(), options.size())
        .low_then_high(head.id)
        .word(0)
        .word(length);
}

void put_statistics(BlockBuffer& to, std::uint32_t interface, std::uint64_t time_ns,
                    std::uint64_t received, std::uint64_t dropped)
{
    const auto high = static_cast<std::uint32_t>(time_ns >> 32);
    put_block(to, kStatistics,
              words({interface, high, static_cast<std::uint32_t>(time_ns)}) +
                  number_option(kReceived, received) + number_option(kDropped, dropped) +
                  end_of_options());
}

} // namespace vexosim::pcapng
