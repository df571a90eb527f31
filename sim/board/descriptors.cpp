#include "sim/board/descriptors.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "sim/board/board_state.h"

namespace vexoboard {

constinit std::array<Descriptor, descriptor_limit> descriptors{};

namespace {

Descriptor& descriptor(int fd)
{
    return descriptors[static_cast<std::size_t>(fd)];
}

ssize_t failed(int error)
{
    errno = error;
    return -1;
}

int marked_node(int fd)
{
    return is_marked(fd) ? confirm_descriptor(fd) : no_node;
}

// The kernel's own checks of a transfer: an errno, or 0.
int refusal(int fd, int refused_mode, std::size_t count)
{
    if ((fcntl(fd, F_GETFL) & O_ACCMODE) == refused_mode) {
        return EBADF;
    }
    return count > static_cast<std::size_t>(SSIZE_MAX) ? EINVAL : 0;
}

ssize_t finish(ssize_t transferred)
{
    return transferred < 0 ? failed(static_cast<int>(-transferred)) : transferred;
}

// The register is the descriptor's file offset, which a transfer leaves where it is.
ssize_t i2c_read(I2cBus& bus, int fd, void* bytes, std::size_t count)
{
    const off64_t reg = lseek64(fd, 0, SEEK_CUR);
    if (reg < 0) {
        return -1;
    }
    if (const int error = refusal(fd, O_WRONLY, count)) {
        return failed(error);
    }
    return finish(bus.read(descriptor(fd).i2c_address, static_cast<std::uint64_t>(reg),
                           static_cast<std::uint8_t*>(bytes), count));
}

ssize_t i2c_write(I2cBus& bus, int fd, const void* bytes, std::size_t count)
{
    const off64_t reg = lseek64(fd, 0, SEEK_CUR);
    if (reg < 0) {
        return -1;
    }
    if (const int error = refusal(fd, O_RDONLY, count)) {
        return failed(error);
    }
    return finish(bus.write(descriptor(fd).i2c_address, static_cast<std::uint64_t>(reg),
                            static_cast<const std::uint8_t*>(bytes), count));
}

// Request 0 selects the device that transfers talk to; there is no other.
int i2c_ioctl(int fd, unsigned long request, int address)
{
    if (request != 0) {
        return static_cast<int>(failed(ENOTTY));
    }
    if (address < 0 || address > 0x7F) {
        return static_cast<int>(failed(EINVAL));
    }
    descriptor(fd).i2c_address = address;
    return 0;
}

} // namespace

bool mark_descriptor(int fd, int node)
{
    struct stat64 status;
    if (static_cast<std::size_t>(fd) >= descriptor_limit || fstat64(fd, &status) != 0) {
        return false;
    }
    Descriptor& mark = descriptor(fd);
    mark.device = static_cast<std::uint32_t>(status.st_dev);
    mark.inode = static_cast<std::uint32_t>(status.st_ino);
    mark.i2c_address = -1;
    mark.node_plus_one = node + 1;
    return true;
}

int confirm_descriptor(int fd) noexcept
{
    const int saved_errno = errno;
    Descriptor& mark = descriptor(fd);
    struct stat64 status;
    const bool same = fstat64(fd, &status) == 0 &&
                      mark.device == static_cast<std::uint32_t>(status.st_dev) &&
                      mark.inode == static_cast<std::uint32_t>(status.st_ino);
    errno = saved_errno;
    if (!same) {
        mark.node_plus_one = 0;
    }
    return mark.node_plus_one - 1;
}

bool serve_read(int fd, void* bytes, std::size_t count, ssize_t& result)
{
    const int node = marked_node(fd);
    if (node == no_node) {
        return false;
    }
    const LockedBoard board;
    if (const int error = board->nodes[static_cast<std::size_t>(node)].take_fault(Op::read)) {
        result = failed(error);
    } else if (node == i2c) {
        result = i2c_read(board->bus, fd, bytes, count);
    } else {
        return false;
    }
    return true;
}

bool serve_write(int fd, const void* bytes, std::size_t count, ssize_t& result)
{
    const int node = marked_node(fd);
    if (node == no_node) {
        return false;
    }
    const LockedBoard board;
    if (const int error = board->nodes[static_cast<std::size_t>(node)].take_fault(Op::write)) {
        result = failed(error);
    } else if (node == i2c) {
        result = i2c_write(board->bus, fd, bytes, count);
    } else {
        return false;
    }
    return true;
}

bool serve_ioctl(int fd, unsigned long request, int argument, int& result)
{
    const int node = marked_node(fd);
    if (node == no_node) {
        return false;
    }
    const LockedBoard board;
    if (const int error = board->nodes[static_cast<std::size_t>(node)].take_fault(Op::ioctl)) {
        result = static_cast<int>(failed(error));
    } else if (node == i2c) {
        result = i2c_ioctl(fd, request, argument);
    } else {
        return false;
    }
    return true;
}

} // namespace vexoboard
