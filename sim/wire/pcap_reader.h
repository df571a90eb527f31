#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sim/wire/fd.h"
#include "vexosim/wire.h"

namespace vexosim {

/// Reads a capture file of an Ethernet in either byte order: classic, of micro- or nanoseconds, or
/// pcapng, whose packets that a port sent are left out.
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
    /// How much of the file has been read, 0 to 1.
    double part_read() const;

    /// The next record, empty at the end or where the file is damaged.
    std::optional<Record> next();
    /// One line about the damage that ended the reading; empty while there is none.
    const std::string& damage() const { return damage_; }

private:
    /// An interface of a pcapng file, and how its times count.
    struct Interface {
        std::size_t fcs_bytes = 0;
        std::uint8_t resolution = 6; // 10^-6 s; with the top bit set, a power of 2
        std::int64_t offset = 0;     // s
    };

    std::string read_header();
    std::optional<Record> next_classic();
    std::string use_magic(const std::uint8_t* header);
    std::string use_link_type(std::uint32_t field);
    std::size_t read(std::uint8_t* to, std::size_t size);
    std::uint32_t number(const std::uint8_t* from) const;
    std::nullopt_t damaged(const std::string& what);

    // Of pcapng files, in pcapng_blocks.cpp.
    std::string open_blocks();
    std::optional<Record> next_packet();
    bool read_block(std::uint32_t& type);
    bool begin_section();
    bool add_interface();
    std::optional<Record> packet(std::uint32_t type);
    std::size_t find_option(std::size_t from, std::uint16_t code, std::size_t size) const;
    std::uint32_t word_at(std::size_t at) const { return number(record_.data() + at); }
    std::uint16_t half_at(std::size_t at) const;

    std::string path_;
    Fd file_;
    bool big_endian_ = false;
    bool nanoseconds_ = false;
    std::size_t fcs_bytes_ = 0;
    std::uint64_t records_ = 0;
    std::string damage_;
    std::vector<std::uint8_t> buffer_, record_;
    std::size_t begin_ = 0, end_ = 0;    // what buffer_ holds
    std::uint64_t size_ = 0, taken_ = 0; // of the file, and how much of it has been in buffer_
    bool blocks_ = false;
    std::vector<Interface> interfaces_;
    std::optional<Record> ahead_; // read to see whether the file can be replayed
};

} // namespace vexosim
