/// pcapng files put together block by block, in either byte order, for tests of what reads them.
#pragma once

#include "tests/sim/wire_captures.h"

/// Bytes of numbers, in either byte order.
class Fields : public FileBytes {
public:
    explicit Fields(bool big_endian) : big_endian_(big_endian) {}

    Fields& half(std::uint32_t value) { return number(value, 2); }
    Fields& word(std::uint32_t value) { return number(value, 4); }
    Fields& append(const Bytes& bytes)
    {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        return *this;
    }
    /// The same, and zeroes up to a whole word.
    Fields& pad(const Bytes& bytes)
    {
        append(bytes);
        bytes_.resize((bytes_.size() + 3) / 4 * 4);
        return *this;
    }

private:
    Fields& number(std::uint32_t value, int size)
    {
        for (int i = 0; i < size; ++i) {
            bytes_.push_back(
                static_cast<std::uint8_t>(value >> 8 * (big_endian_ ? size - 1 - i : i)));
        }
        return *this;
    }

    bool big_endian_;
};

/// A file of one section.
class Blocks : public FileBytes {
public:
    explicit Blocks(bool big_endian = false) : big_endian_(big_endian)
    {
        block(0x0a0d0d0a, fields().word(0x1a2b3c4d).half(1).half(0).word(~0U).word(~0U));
    }

    Fields fields() const { return Fields(big_endian_); }

    Blocks& block(std::uint32_t type, const Fields& body)
    {
        const auto length = static_cast<std::uint32_t>(body.bytes().size() + 12);
        const Fields whole = fields().word(type).word(length).append(body.bytes()).word(length);
        bytes_.insert(bytes_.end(), whole.bytes().begin(), whole.bytes().end());
        return *this;
    }

    Blocks& interface(std::uint32_t link_type = 1, const Bytes& options = {})
    {
        return block(1, fields().half(link_type).half(0).word(0).append(options));
    }

    /// @param missing bytes of the frame that the capture has not kept.
    Blocks& packet(std::uint32_t interface, std::uint64_t ticks, const Bytes& frame,
                   const Bytes& options = {}, std::uint32_t missing = 0)
    {
        const auto size = static_cast<std::uint32_t>(frame.size());
        Fields body = fields();
        body.word(interface).word(static_cast<std::uint32_t>(ticks >> 32));
        body.word(static_cast<std::uint32_t>(ticks)).word(size).word(size + missing);
        return block(6, body.pad(frame).append(options));
    }

    /// One option and their end.
    Bytes option(std::uint32_t code, const Bytes& value) const
    {
        const auto size = static_cast<std::uint32_t>(value.size());
        return fields().half(code).half(size).pad(value).word(0).bytes();
    }
    /// A packet's direction: 1 received, 2 sent.
    Bytes direction(std::uint32_t value) const { return option(2, fields().word(value).bytes()); }

private:
    bool big_endian_;
};
