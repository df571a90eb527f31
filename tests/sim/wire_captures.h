/// Capture files put together byte by byte, for tests of what reads them.
#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

#include "tests/sim/wire_frames.h"

/// What a file is to hold.
class FileBytes {
public:
    const Bytes& bytes() const { return bytes_; }
    /// Without its last bytes.
    Bytes cut_by(std::size_t count) const
    {
        return {bytes_.begin(), bytes_.end() - static_cast<std::ptrdiff_t>(count)};
    }

protected:
    Bytes bytes_;
};

/// Builds a capture in either byte order.
class Capture : public FileBytes {
public:
    explicit Capture(std::uint32_t magic = 0xa1b2c3d4, bool big_endian = false,
                     std::uint32_t link_type = 1)
        : big_endian_(big_endian)
    {
        word(magic);
        half(2).half(4);
        word(0).word(0).word(65535).word(link_type);
    }

    Capture& record(std::uint32_t seconds, std::uint32_t fraction, const Bytes& bytes)
    {
        const auto size = static_cast<std::uint32_t>(bytes.size());
        return header(seconds, fraction, size, size).append(bytes);
    }

    Capture& header(std::uint32_t seconds, std::uint32_t fraction, std::uint32_t kept,
                    std::uint32_t original)
    {
        return word(seconds).word(fraction).word(kept).word(original);
    }

    Capture& append(const Bytes& bytes)
    {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        return *this;
    }

    Capture& word(std::uint32_t value)
    {
        return big_endian_ ? half(value >> 16).half(value) : half(value).half(value >> 16);
    }

    Capture& half(std::uint32_t value)
    {
        const auto low = static_cast<std::uint8_t>(value),
                   high = static_cast<std::uint8_t>(value >> 8);
        bytes_.push_back(big_endian_ ? high : low);
        bytes_.push_back(big_endian_ ? low : high);
        return *this;
    }

private:
    bool big_endian_;
};

/// A directory of its own for a test, removed with it.
class TempDir {
public:
    TempDir()
        : path_(std::filesystem::temp_directory_path() /
                ("vexo_wire_" + std::to_string(::getpid())))
    {
        std::filesystem::create_directory(path_);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    ~TempDir() { std::filesystem::remove_all(path_); }

    std::string path(const std::string& name) const { return path_ / name; }

    std::string write(const std::string& name, const Bytes& bytes) const
    {
        std::ofstream(path(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        return path(name);
    }

    Bytes read(const std::string& name) const
    {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    std::filesystem::path path_;
};
