#include "sim/board/nodes.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <span>
#include <sys/mman.h>
#include <unistd.h>

#include "sim/board/board_state.h"
#include "sim/board/descriptors.h"

namespace vexoboard {

namespace {

constexpr off64_t window_size = 0x1000000;
constexpr off64_t daughter_register = 0x90D30;
constexpr unsigned daughter_shift = 12;
constexpr unsigned other_bits = 0xFFFFCFFF; // set, so that reading the wrong bits or bytes shows

int failed(int error)
{
    errno = error;
    return -1;
}

int close_failed(int fd)
{
    const int error = errno;
    close(fd);
    return failed(error);
}

const char* short_name(int node)
{
    return node_paths[static_cast<std::size_t>(node)] + std::strlen("/dev/");
}

int make_memory(int node, int flags)
{
    const unsigned close_on_exec = (flags & O_CLOEXEC) != 0 ? MFD_CLOEXEC : 0U;
    return memfd_create(short_name(node), MFD_ALLOW_SEALING | close_on_exec);
}

// What cannot be positioned and cannot be mapped.
int make_pipe_end(int flags)
{
    int ends[2];
    if (pipe2(ends, flags & O_CLOEXEC) != 0) {
        return -1;
    }
    close(ends[1]);
    return ends[0];
}

bool put(int fd, std::span<const std::uint8_t> bytes, off64_t offset)
{
    return pwrite64(fd, bytes.data(), bytes.size(), offset) == static_cast<ssize_t>(bytes.size());
}

int make_window(int flags, unsigned daughter_field)
{
    const int fd = make_memory(cpu, flags);
    const unsigned value = other_bits | daughter_field << daughter_shift;
    const std::uint8_t big_endian[] = {
        static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
        static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
    if (fd >= 0 && (ftruncate64(fd, window_size) != 0 || !put(fd, big_endian, daughter_register))) {
        return close_failed(fd);
    }
    return fd;
}

int make_protected(int node, int flags, std::span<const std::uint8_t> bytes)
{
    const int fd = make_memory(node, flags);
    if (fd >= 0 && (!put(fd, bytes, 0) ||
                    fcntl(fd, F_ADD_SEALS, F_SEAL_WRITE | F_SEAL_GROW | F_SEAL_SHRINK) != 0)) {
        return close_failed(fd);
    }
    return fd;
}

int make_object(const BoardState& board, int node, int flags)
{
    switch (node) {
    case i2c:
        return make_memory(node, flags); // holds nothing: it lends us its file offset
    case cpu:
        return make_window(flags, board.daughter_field);
    case led:
        return make_protected(node, flags, {});
    default:
        return make_protected(node, flags, *board.eeproms[static_cast<std::size_t>(node - eeprom)]);
    }
}

bool present(const BoardState& board, int node)
{
    return board.nodes[static_cast<std::size_t>(node)].present &&
           (node < eeprom || board.eeproms[static_cast<std::size_t>(node - eeprom)].has_value());
}

// A memory file is open for both; a second opening narrows it to what was asked for.
int narrow_access(int fd, int flags)
{
    if (fd < 0 || (flags & O_ACCMODE) == O_RDWR) {
        return fd;
    }
    char path[32];
    std::snprintf(path, sizeof path, "/proc/self/fd/%d", fd);
    const int narrow = open(path, flags & (O_ACCMODE | O_CLOEXEC));
    if (narrow >= 0) {
        close(fd);
        return narrow;
    }
    return close_failed(fd);
}

int open_present(BoardState& board, int node, int flags)
{
    NodeState& state = board.nodes[static_cast<std::size_t>(node)];
    if (const int error = state.take_fault(Op::open)) {
        return failed(error);
    }
    const bool no_seek = state.take_fault(Op::seek) != 0;
    const bool no_map = state.take_fault(Op::map) != 0;
    if (no_seek || no_map) {
        return make_pipe_end(flags);
    }
    return narrow_access(make_object(board, node, flags), flags);
}

} // namespace

int find_node(const char* path) noexcept
{
    if (path == nullptr || std::strncmp(path, "/dev/", 5) != 0) {
        return no_node;
    }
    for (std::size_t node = 0; node < node_count; ++node) {
        if (std::strcmp(path, node_paths[node]) == 0) {
            return static_cast<int>(node);
        }
    }
    return no_node;
}

int open_node(int node, int flags)
{
    const LockedBoard board;
    if (!present(*board, node)) {
        return failed(ENOENT);
    }
    const int fd = open_present(*board, node, flags);
    if (fd >= 0 && !mark_descriptor(fd, node)) {
        errno = EMFILE;
        return close_failed(fd);
    }
    return fd;
}

} // namespace vexoboard
