// What libvexoboard stands in front of leaves every file alone that is not a board node.

#include "vexosim/board.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace board = vexosim::board;

namespace {

using Open = int(const char*, int, ...);
using CheckedOpen = int(const char*, int);
using CheckedRead = ssize_t(int, void*, std::size_t, std::size_t);
using Ioctl = int(int, unsigned long, ...);

// The functions behind the names, whatever the headers make of a call.
template <typename Function>
Function* libc(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, name));
}

Open* const plain_open = libc<Open>("open");
Open* const large_open = libc<Open>("open64");
CheckedOpen* const checked_open = libc<CheckedOpen>("__open_2");
CheckedOpen* const checked_large_open = libc<CheckedOpen>("__open64_2");
CheckedRead* const checked_read = libc<CheckedRead>("__read_chk");

struct Interpose : testing::Test {
    Interpose()
    {
        board::reset();
        board::enable();
        char name[] = "/tmp/vexoboardXXXXXX";
        directory = mkdtemp(name);
        file = directory + "/file";
        std::ofstream(file) << "hello";
    }
    ~Interpose() override
    {
        (void)unlink(file.c_str());
        (void)unlink((directory + "/new").c_str());
        (void)rmdir(directory.c_str());
    }
    Interpose(const Interpose&) = delete;
    Interpose& operator=(const Interpose&) = delete;

    std::string directory;
    std::string file;
};

std::string read_all(int fd)
{
    char bytes[64];
    const ssize_t count = read(fd, bytes, sizeof bytes);
    close(fd);
    return count < 0 ? "error" : std::string(bytes, static_cast<std::size_t>(count));
}

TEST_F(Interpose, FilesOpenAndReadAsEver)
{
    EXPECT_EQ(read_all(open(file.c_str(), O_RDONLY)), "hello");
    EXPECT_EQ(read_all(plain_open(file.c_str(), O_RDONLY)), "hello");
    EXPECT_EQ(read_all(large_open(file.c_str(), O_RDONLY)), "hello");
    EXPECT_EQ(read_all(checked_open(file.c_str(), O_RDONLY)), "hello");
    EXPECT_EQ(read_all(checked_large_open(file.c_str(), O_RDONLY)), "hello");
}

TEST_F(Interpose, StandardStreamsReadFiles)
{
    std::string text;
    std::ifstream(file) >> text;
    EXPECT_EQ(text, "hello");
    FILE* const stream = std::fopen(file.c_str(), "r+");
    char bytes[6] = {};
    EXPECT_EQ(std::fread(bytes, 1, 5, stream), 5U);
    EXPECT_STREQ(bytes, "hello");
    std::fclose(stream);
}

TEST_F(Interpose, FortifiedReadStopsOnlyAnOverrun)
{
    char bytes[8] = {};
    const int fd = open(file.c_str(), O_RDONLY);
    EXPECT_EQ(checked_read(fd, bytes, 5, sizeof bytes), 5);
    EXPECT_STREQ(bytes, "hello");
    close(fd);
    EXPECT_DEATH((void)checked_read(0, bytes, 9, 8), "buffer overflow");
}

TEST_F(Interpose, CreatedFilesGetTheirMode)
{
    umask(0);
    const std::string path = directory + "/new";
    struct stat status {};
    for (Open* const create : {plain_open, large_open}) {
        const int fd = create(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0615);
        ASSERT_GE(fd, 0);
        EXPECT_EQ(write(fd, "abc", 3), 3);
        EXPECT_EQ(fstat(fd, &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0615U);
        EXPECT_EQ(status.st_size, 3);
        close(fd);
        unlink(path.c_str());
    }
}

TEST_F(Interpose, UnnamedTemporaryFilesGetTheirMode)
{
    const int fd = open(directory.c_str(), O_TMPFILE | O_RDWR, 0640);
    if (fd < 0 && errno == EOPNOTSUPP) {
        GTEST_SKIP() << "the file system of /tmp has no unnamed files";
    }
    ASSERT_GE(fd, 0);
    struct stat status {};
    fstat(fd, &status);
    EXPECT_EQ(status.st_mode & 0777, 0640U & ~umask(0));
    close(fd);
}

TEST_F(Interpose, LargeOffsetsStayLarge)
{
    const int fd = open64(file.c_str(), O_RDWR);
    constexpr off64_t far = 0x123456789LL;
    EXPECT_EQ(lseek64(fd, far, SEEK_SET), far);
    EXPECT_EQ(write(fd, "x", 1), 1);
    EXPECT_EQ(lseek64(fd, 0, SEEK_CUR), far + 1);
    close(fd);
    EXPECT_EQ(read_all(open64(file.c_str(), O_RDONLY)).substr(0, 5), "hello");
}

TEST_F(Interpose, DirectoriesAndDevicesAreTheSystems)
{
    const int folder = open(directory.c_str(), O_RDONLY | O_DIRECTORY);
    EXPECT_GE(folder, 0);
    char byte = 0;
    EXPECT_EQ(read(folder, &byte, 1), -1);
    EXPECT_EQ(errno, EISDIR);
    close(folder);
    const int null = open("/dev/null", O_RDWR);
    EXPECT_EQ(write(null, "abc", 3), 3);
    EXPECT_EQ(read(null, &byte, 1), 0);
    close(null);
    EXPECT_EQ(read_all(open("/dev/zero", O_RDONLY)), std::string(64, '\0'));
}

TEST_F(Interpose, PipesAndTheirIoctlsWork)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    EXPECT_EQ(write(ends[1], "abcd", 4), 4);
    int waiting = 0;
    EXPECT_EQ(ioctl(ends[0], FIONREAD, &waiting), 0);
    EXPECT_EQ(waiting, 4);
    close(ends[1]);
    EXPECT_EQ(read_all(ends[0]), "abcd");
}

TEST_F(Interpose, ErrorsAreTheSystems)
{
    EXPECT_EQ(open((file + "/x").c_str(), O_RDONLY), -1);
    EXPECT_EQ(errno, ENOTDIR);
    EXPECT_EQ(plain_open(nullptr, O_RDONLY), -1);
    EXPECT_EQ(errno, EFAULT);
    char byte = 0;
    for (const int fd : {-1, 1 << 30}) {
        EXPECT_EQ(read(fd, &byte, 1), -1);
        EXPECT_EQ(errno, EBADF);
        EXPECT_EQ(write(fd, &byte, 1), -1);
        EXPECT_EQ(errno, EBADF);
        EXPECT_EQ(ioctl(fd, FIONREAD, nullptr), -1);
        EXPECT_EQ(errno, EBADF);
    }
}

TEST_F(Interpose, SuccessLeavesErrno)
{
    errno = 12345;
    const int fd = open(file.c_str(), O_RDWR);
    char byte = 0;
    EXPECT_EQ(read(fd, &byte, 1), 1);
    EXPECT_EQ(write(fd, &byte, 1), 1);
    EXPECT_EQ(errno, 12345);
    close(fd);
}

TEST_F(Interpose, NamesThatOnlyLookLikeNodesAreTheSystems)
{
    for (const char* path : {"/dev/i2cDev0", "/dev/i2cDe", "/dev/I2CDEV", "/dev/wsdcep",
                             "/dev/wsdcep7", "/dev/wsdcep00", "dev/cpuDev", "/dev/"}) {
        const int fd = open(path, O_RDWR);
        EXPECT_EQ(fd, -1) << path;
    }
}

TEST_F(Interpose, WithoutABoardTheNamesAreTheSystems)
{
    board::disable();
    EXPECT_FALSE(board::enabled());
    for (const char* path : {"/dev/i2cDev", "/dev/cpuDev", "/dev/wspled", "/dev/wsdcep0"}) {
        ASSERT_NE(access(path, F_OK), 0) << "this machine is a card";
        EXPECT_EQ(open(path, O_RDWR), -1) << path;
        EXPECT_EQ(errno, ENOENT);
    }
}

TEST_F(Interpose, EveryFormOfOpenReachesTheNodes)
{
    struct stat status {};
    for (const int fd :
         {plain_open("/dev/cpuDev", O_RDWR), large_open("/dev/cpuDev", O_RDWR),
          checked_open("/dev/cpuDev", O_RDWR), checked_large_open("/dev/cpuDev", O_RDWR)}) {
        ASSERT_GE(fd, 0);
        EXPECT_EQ(fstat(fd, &status), 0);
        EXPECT_EQ(status.st_size, 0x1000000);
        close(fd);
    }
}

TEST_F(Interpose, FortifiedReadReachesTheExpander)
{
    const int fd = open("/dev/i2cDev", O_RDWR);
    EXPECT_EQ(ioctl(fd, 0, 7), 0);
    std::uint8_t bytes[2] = {};
    EXPECT_EQ(checked_read(fd, bytes, 2, 2), 2);
    EXPECT_EQ(bytes[1], 0xFF);
    EXPECT_DEATH((void)checked_read(fd, bytes, 2, 1), "buffer overflow");
    close(fd);
}

TEST_F(Interpose, IoctlForA64BitTimeReachesTheExpander)
{
    auto* const ioctl_time64 = libc<Ioctl>("__ioctl_time64");
    ASSERT_NE(ioctl_time64, nullptr);
    const int fd = open("/dev/i2cDev", O_RDWR);
    EXPECT_EQ(ioctl_time64(fd, 0, 7), 0);
    EXPECT_EQ(ioctl_time64(fd, 1, 7), -1);
    EXPECT_EQ(errno, ENOTTY);
    close(fd);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    int waiting = -1;
    EXPECT_EQ(ioctl_time64(ends[0], FIONREAD, &waiting), 0);
    EXPECT_EQ(waiting, 0);
}

// Neither fclose nor dup2 tells the library that a node's descriptor is gone.
TEST_F(Interpose, ADescriptorNumberThatPassesToAnotherFileIsThatFiles)
{
    const int node = open("/dev/i2cDev", O_RDWR);
    const int fd = open(file.c_str(), O_RDWR);
    ASSERT_EQ(dup2(fd, node), node);
    close(fd);
    board::fail("/dev/i2cDev", board::Op::read, EIO);
    EXPECT_EQ(read_all(node), "hello");
    EXPECT_EQ(board::i2c_log(), "");
}

TEST_F(Interpose, AStreamOnANodesDescriptorClosesIt)
{
    const int node = open("/dev/i2cDev", O_RDWR);
    std::fclose(fdopen(node, "r+"));
    const int fd = open(file.c_str(), O_RDWR);
    ASSERT_EQ(fd, node);
    EXPECT_EQ(read_all(fd), "hello");
}

TEST_F(Interpose, ANumberTooHighToKeepTrackOfIsRefused)
{
    const int wanted = 4096;
    const int null = open("/dev/null", O_RDWR);
    if (fcntl(null, F_DUPFD, wanted) < 0) {
        GTEST_SKIP() << "the limit on open files is too low to get there";
    }
    while (dup(null) < wanted - 1) {
    }
    EXPECT_EQ(open("/dev/i2cDev", O_RDWR), -1);
    EXPECT_EQ(errno, EMFILE);
}

} // namespace
