#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <sys/types.h>

namespace vexoboard {

/// What is known of a descriptor that is a node. Nobody tells us of a close, so a mark can be
/// stale; the kernel object's identity shows it.
struct Descriptor {
    std::atomic<int> node_plus_one{0};
    std::atomic<std::uint32_t> device{0};
    std::atomic<std::uint32_t> inode{0};
    std::atomic<int> i2c_address{-1};
};

inline constexpr std::size_t descriptor_limit = 4096;
extern constinit std::array<Descriptor, descriptor_limit> descriptors;

/// Marks an open descriptor as a node. False when the number is beyond what can be marked.
bool mark_descriptor(int fd, int node);

/// The node of a marked descriptor, or `no_node` when the number has passed to another file.
int confirm_descriptor(int fd) noexcept;

/// Whether a descriptor needs a closer look: all that a file which is not ours pays.
inline bool is_marked(int fd) noexcept
{
    const auto index = static_cast<std::size_t>(static_cast<unsigned>(fd));
    return index < descriptor_limit &&
           descriptors[index].node_plus_one.load(std::memory_order_acquire) != 0;
}

/// Each serves one call when `fd` is a node that needs it: true, with the call's result (and errno)
/// set. False: the call is the system's.
bool serve_read(int fd, void* bytes, std::size_t count, ssize_t& result);
bool serve_write(int fd, const void* bytes, std::size_t count, ssize_t& result);
bool serve_ioctl(int fd, unsigned long request, int argument, int& result);

} // namespace vexoboard
