#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

namespace vexosim {

/// Bytes that are appended and then written at once. Keeps its memory when it is emptied.
class BlockBuffer {
public:
    BlockBuffer() = default;
    /// With memory for so many bytes that the kernel has given already.
    explicit BlockBuffer(std::size_t capacity)
        : bytes_(std::make_unique_for_overwrite<std::uint8_t[]>(capacity)), capacity_(capacity)
    {
        constexpr std::size_t kPage = 4096;
        for (std::size_t at = 0; at < capacity; at += kPage)
            bytes_[at] = 0;
    }

    /// Appends bytes for the caller to fill.
    std::uint8_t* grow(std::size_t bytes)
    {
        if (size_ + bytes > capacity_) [[unlikely]]
            enlarge(size_ + bytes);
        size_ += bytes;
        return bytes_.get() + size_ - bytes;
    }
    std::span<const std::uint8_t> bytes() const { return {bytes_.get(), size_}; }
    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    void clear() { size_ = 0; }

private:
    void enlarge(std::size_t least)
    {
        const std::size_t capacity = std::max({least, 2 * capacity_, std::size_t{4096}});
        auto bytes = std::make_unique_for_overwrite<std::uint8_t[]>(capacity);
        if (size_ > 0)
            std::memcpy(bytes.get(), bytes_.get(), size_);
        bytes_ = std::move(bytes);
        capacity_ = capacity;
    }

    std::unique_ptr<std::uint8_t[]> bytes_;
    std::size_t size_ = 0, capacity_ = 0;
};

} // namespace vexosim
