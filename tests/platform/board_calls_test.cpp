// What the driver asks of the system for the board's nodes. This program's functions note it and
// hand on to those that would have been called without them.
#include <gtest/gtest.h>

#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include "platform/board_io.h"
#include "vexosim/board.h"

namespace {

bool noting = false;
std::string noted;
void* window = nullptr;

void note(const std::string& call)
{
    if (noting)
        noted += call + "\n";
}

template <class Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

std::string access_of(int flags)
{
    return (flags & O_ACCMODE) == O_RDWR ? "read-write" : "one way";
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    note(std::string("open ") + path + " " + access_of(flags));
    return next<int(const char*, int, ...)>("open")(path, flags, mode);
}

int close(int fd)
{
    note("close");
    return next<int(int)>("close")(fd);
}

int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    note("ioctl " + std::to_string(request) + " " +
         std::to_string(reinterpret_cast<uintptr_t>(argument)));
    return next<int(int, unsigned long, ...)>("ioctl")(fd, request, argument);
}

off_t lseek(int fd, off_t offset, int whence) noexcept
{
    note("seek " + std::to_string(offset) + (whence == SEEK_SET ? " from the start" : ""));
    return next<off_t(int, off_t, int)>("lseek")(fd, offset, whence);
}

void* mmap(void* at, std::size_t size, int access, int flags, int fd, off_t offset) noexcept
{
    note("map " + std::to_string(size) +
         (access == (PROT_READ | PROT_WRITE) ? " read-write" : " one way") +
         (flags == MAP_SHARED ? " shared" : " otherwise") + " at " + std::to_string(offset));
    void* const mapped = next<void*(void*, std::size_t, int, int, int, off_t)>("mmap")(
        at, size, access, flags, fd, offset);
    window = noting ? mapped : window;
    return mapped;
}

int munmap(void* at, std::size_t size) noexcept
{
    note("unmap " + std::to_string(size) + (at == window ? "" : " elsewhere"));
    return next<int(void*, std::size_t)>("munmap")(at, size);
}

} // extern "C"

namespace {

template <class Action>
std::string calls_of(Action action)
{
    vexosim::board::enable();
    noted.clear();
    noting = true;
    action();
    noting = false;
    return noted;
}

TEST(BoardCalls, DetectionMapsTheWindowClosesTheNodeAndUnmaps)
{
    EXPECT_EQ(calls_of([] { DetectDaughterModuleID(); }), "open /dev/cpuDev read-write\n"
                                                          "map 16777216 read-write shared at 0\n"
                                                          "close\n"
                                                          "unmap 16777216\n");
}

TEST(BoardCalls, ATransferSelectsTheDeviceAndThenTheRegister)
{
    const char* const expected = "open /dev/i2cDev read-write\n"
                                 "ioctl 0 7\n"
                                 "seek 3 from the start\n"
                                 "close\n";
    unsigned char byte = 0xff;
    EXPECT_EQ(calls_of([&] { ReadPCA9555(7, &byte, 1, 3, 0); }), expected);
    EXPECT_EQ(calls_of([&] { vexo_i2c_write(7, &byte, 1, 3); }), expected);
}

TEST(BoardCalls, AnEepromIsOpenedBothWaysAndOneAboveSixNotAtAll)
{
    fixed_info_s info;
    EXPECT_EQ(calls_of([&] { vexo_read_dcard_eeprom(6, &info); }),
              "open /dev/wsdcep6 read-write\n"); // none is fitted
    EXPECT_EQ(calls_of([&] { vexo_read_dcard_eeprom(7, &info); }), "");
}

} // namespace
