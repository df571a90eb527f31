#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sim/wire/fd.h"
#include "vexosim/wire.h"

namespace vexosim {

/// Reads a classic capture file: either byte order, micro- or nanoseconds, Ethernet.
class PcapReader {
public:
    struct Record {
        std::chrono::nanoseconds time{};
        FrameView frame;  ///< valid until the next next()
        bool cut = false; ///< the capture kept only the beginning
    };

    /// @return empty, or why the file cannot be read; the file is then closed.
    std::string open(const std::string& path);
    bool is_open() const { return static_cast<bool>(file_); }
    const std::string& path() const { return path_; }

    /// The next record, empty at the end or where the file is damaged.
    std::optional<Record> next();
    /// One line about the damage that ended the reading; empty while there is none.
    const std::string& damage() const { return damage_; }

private:
    std::string read_header();
    std::string use_magic(const std::uint8_t* header);
    std::string use_link_type(std::uint32_t field);
    std::size_t read(std::uint8_t* to, std::size_t size);
    std::uint32_t number(const std::uint8_t* from) const;
    std::nullopt_t damaged(const std::string& what);

    std::string path_;
    Fd file_;
    bool big_endian_ = false;
    bool nanoseconds_ = false;
    std::size_t fcs_bytes_ = 0;
    std::uint64_t records_ = 0;
    std::string damage_;
    std::vector<std::uint8_t> buffer_, record_;
    std::size_t begin_ = 0, end_ = 0; // what buffer_ holds
};

} // namespace vexosim
