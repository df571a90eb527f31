/// @file
/// A pcapng file as text, one line for each interface, packet and statistics.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "tests/sim/wire_frames.h"

/// Reads blocks as the format's definition has them, and complains of what is not so.
class PcapngText {
public:
    explicit PcapngText(Bytes file) : file_(std::move(file))
    {
        while (at_ < file_.size())
            block();
    }

    std::string text;          ///< all lines
    std::vector<Bytes> frames; ///< of the packets
    std::vector<std::uint64_t> times;

private:
    struct Option {
        unsigned code;
        std::string value;
    };

    std::uint32_t word(std::size_t at) const
    {
        if (at + 4 > file_.size())
            throw std::runtime_error("the file ends within a block");
        return file_[at] | std::uint32_t{file_[at + 1]} << 8 | std::uint32_t{file_[at + 2]} << 16 |
               std::uint32_t{file_[at + 3]} << 24;
    }
    std::vector<Option> options(std::size_t at, std::size_t end) const
    {
        std::vector<Option> all;
        while (at < end) {
            const std::uint32_t head = word(at), length = head >> 16;
            if ((head & 0xffff) == 0) {
                if (length != 0 || at + 4 != end)
                    throw std::runtime_error("options end too early");
                return all;
            }
            all.push_back({head & 0xffff,
                           {file_.begin() + static_cast<long>(at + 4),
                            file_.begin() + static_cast<long>(at + 4 + length)}});
            at += 4 + (length + 3) / 4 * 4;
        }
        throw std::runtime_error("options without an end");
    }
    static std::uint64_t number(const std::string& value)
    {
        std::uint64_t n = 0;
        for (std::size_t i = value.size(); i-- > 0;)
            n = n << 8 | static_cast<unsigned char>(value[i]);
        return n;
    }

    void block()
    {
        const std::uint32_t type = word(at_), length = word(at_ + 4);
        if (length % 4 != 0 || length < 12 || word(at_ + length - 4) != length)
            throw std::runtime_error("a block whose lengths differ");
        const std::size_t end = at_ + length - 4;
        if (type == 0x0a0d0d0a)
            section(end);
        else if (type == 1)
            interface(end);
        else if (type == 6)
            packet(end);
        else if (type == 5)
            statistics(end);
        else
            throw std::runtime_error("a block of unknown type");
        at_ += length;
    }
    void section(std::size_t end)
    {
        if (at_ != 0 || word(at_ + 8) != 0x1a2b3c4d || word(at_ + 12) != 1)
            throw std::runtime_error("not the head of a section");
        options(at_ + 24, end);
    }
    void interface(std::size_t end)
    {
        std::string line, about;
        if (word(at_ + 8) != 1)
            throw std::runtime_error("not Ethernet");
        for (const Option& option : options(at_ + 16, end)) {
            if (option.code == 2)
                line = option.value;
            if (option.code == 3)
                about = " (" + option.value + ")";
            if (option.code == 9 && option.value != "\x09")
                throw std::runtime_error("not in nanoseconds");
        }
        interfaces_.push_back(line);
        text += "interface " + line + about + "\n";
    }
    void packet(std::size_t end)
    {
        const std::uint32_t kept = word(at_ + 20);
        if (kept != word(at_ + 24))
            throw std::runtime_error("a frame that is cut");
        times.push_back(std::uint64_t{word(at_ + 12)} << 32 | word(at_ + 16));
        const auto data = file_.begin() + static_cast<long>(at_ + 28);
        frames.emplace_back(data, data + kept);
        std::string direction, id, verdict, comment;
        for (const Option& option : options(at_ + 28 + std::size_t{kept + 3} / 4 * 4, end)) {
            if (option.code == 2)
                direction = number(option.value) == 1 ? " received" : " sent";
            if (option.code == 5)
                id = " #" + std::to_string(number(option.value));
            if (option.code == 7)
                verdict = option.value[0] == '\0' ? " [" + option.value.substr(1) + "]" : " [?]";
            if (option.code == 1)
                comment = " " + option.value;
        }
        text += interfaces_.at(word(at_ + 8)) + direction + id + verdict + comment + "\n";
    }
    void statistics(std::size_t end)
    {
        std::string line = "counted " + interfaces_.at(word(at_ + 8)) + ":";
        for (const Option& option : options(at_ + 20, end))
            line += " " + std::to_string(number(option.value));
        text += line + "\n";
    }

    Bytes file_;
    std::size_t at_ = 0;
    std::vector<std::string> interfaces_;
};
