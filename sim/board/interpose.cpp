// Stands in front of the C library for the board's device nodes. Everything else goes on to the
// function that would have been called without us, with the same arguments and errno.

// The plain functions are defined here, so none may be renamed or made inline by the headers.
#undef _FORTIFY_SOURCE
#undef _FILE_OFFSET_BITS
#undef _TIME_BITS

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "sim/board/board_state.h"
#include "sim/board/descriptors.h"
#include "sim/board/next_call.h"
#include "sim/board/nodes.h"

namespace {

using vexoboard::NextCall;
using Open = int(const char*, int, ...);
using CheckedOpen = int(const char*, int);
using Ioctl = int(int, unsigned long, ...);

constinit NextCall<Open> next_open{"open"};
constinit NextCall<Open> next_open64{"open64"};
constinit NextCall<CheckedOpen> next_open_2{"__open_2"};
constinit NextCall<CheckedOpen> next_open64_2{"__open64_2"};
constinit NextCall<Ioctl> next_ioctl{"ioctl"};
constinit NextCall<Ioctl> next_ioctl_time64{"__ioctl_time64"};
constinit NextCall<ssize_t(int, void*, std::size_t)> next_read{"read"};
constinit NextCall<ssize_t(int, void*, std::size_t, std::size_t)> next_read_chk{"__read_chk"};
constinit NextCall<ssize_t(int, const void*, std::size_t)> next_write{"write"};

bool serve_open(const char* path, int flags, int& fd)
{
    if (!vexoboard::serving.load(std::memory_order_relaxed)) {
        return false;
    }
    const int node = vexoboard::find_node(path);
    if (node == vexoboard::no_node) {
        return false;
    }
    fd = vexoboard::open_node(node, flags);
    return true;
}

bool has_mode(int flags)
{
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

int open_with(NextCall<Open>& next, const char* path, int flags, mode_t mode)
{
    int fd = -1;
    return serve_open(path, flags, fd) ? fd : next.get()(path, flags, mode);
}

int ioctl_with(NextCall<Ioctl>& next, int fd, unsigned long request, void* argument)
{
    const auto number = static_cast<int>(reinterpret_cast<std::uintptr_t>(argument));
    int result = -1;
    if (vexoboard::is_marked(fd) && vexoboard::serve_ioctl(fd, request, number, result)) {
        return result;
    }
    return next.get()(fd, request, argument);
}

} // namespace

// These are the C library's names, and the analyzer does not see that va_start has run.
// NOLINTBEGIN(bugprone-reserved-identifier,clang-analyzer-valist.Uninitialized)
extern "C" {

int open(const char* path, int flags, ...)
{
    mode_t mode = 0;
    if (has_mode(flags)) {
        va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    return open_with(next_open, path, flags, mode);
}

int open64(const char* path, int flags, ...)
{
    mode_t mode = 0;
    if (has_mode(flags)) {
        va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    return open_with(next_open64, path, flags, mode);
}

// What fortified callers use when there is no mode.
int __open_2(const char* path, int flags)
{
    int fd = -1;
    return serve_open(path, flags, fd) ? fd : next_open_2.get()(path, flags);
}

int __open64_2(const char* path, int flags)
{
    int fd = -1;
    return serve_open(path, flags, fd) ? fd : next_open64_2.get()(path, flags);
}

int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    return ioctl_with(next_ioctl, fd, request, argument);
}

// ioctl for 32-bit callers with a 64-bit time_t; nobody calls it where it does not exist.
int __ioctl_time64(int fd, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    NextCall<Ioctl>& next = next_ioctl_time64.get() != nullptr ? next_ioctl_time64 : next_ioctl;
    return ioctl_with(next, fd, request, argument);
}

ssize_t read(int fd, void* bytes, std::size_t count)
{
    ssize_t result = -1;
    return vexoboard::is_marked(fd) && vexoboard::serve_read(fd, bytes, count, result)
               ? result
               : next_read.get()(fd, bytes, count);
}

// An overrun is the C library's to punish.
ssize_t __read_chk(int fd, void* bytes, std::size_t count, std::size_t size)
{
    ssize_t result = -1;
    return count <= size && vexoboard::is_marked(fd) &&
                   vexoboard::serve_read(fd, bytes, count, result)
               ? result
               : next_read_chk.get()(fd, bytes, count, size);
}

ssize_t write(int fd, const void* bytes, std::size_t count)
{
    ssize_t result = -1;
    return vexoboard::is_marked(fd) && vexoboard::serve_write(fd, bytes, count, result)
               ? result
               : next_write.get()(fd, bytes, count);
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier,clang-analyzer-valist.Uninitialized)
