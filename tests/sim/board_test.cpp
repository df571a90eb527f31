// The board's device nodes as a program sees them.

#include "vexosim/board.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace board = vexosim::board;
using board::Op;

namespace {

constexpr std::size_t window_size = 0x1000000;
constexpr std::size_t daughter_register = 0x90D30;

struct Board : testing::Test {
    Board()
    {
        board::reset();
        board::enable();
    }
};

// An open I2C node with a device and a register selected.
int i2c_at(int device, off_t reg, int flags = O_RDWR)
{
    const int fd = open("/dev/i2cDev", flags);
    EXPECT_GE(fd, 0);
    EXPECT_EQ(ioctl(fd, 0, device), 0);
    EXPECT_EQ(lseek(fd, reg, SEEK_SET), reg);
    return fd;
}

std::vector<int> read_expander(off_t reg, std::size_t count)
{
    std::vector<std::uint8_t> bytes(count, 0xAA);
    const int fd = i2c_at(7, reg);
    EXPECT_EQ(read(fd, bytes.data(), count), static_cast<ssize_t>(count));
    close(fd);
    return {bytes.begin(), bytes.end()};
}

void write_expander(off_t reg, const std::vector<std::uint8_t>& bytes)
{
    const int fd = i2c_at(7, reg);
    EXPECT_EQ(write(fd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    close(fd);
}

int open_errno(const char* path)
{
    errno = 0;
    const int fd = open(path, O_RDWR);
    const int error = errno;
    if (fd >= 0) {
        close(fd);
        return 0;
    }
    return error;
}

std::array<unsigned, 4> window_bytes()
{
    const int fd = open("/dev/cpuDev", O_RDWR);
    void* const window = mmap(nullptr, window_size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    close(fd);
    if (window == MAP_FAILED) {
        ADD_FAILURE() << "the window does not map";
        return {};
    }
    const auto* at = static_cast<const volatile std::uint8_t*>(window) + daughter_register;
    const std::array<unsigned, 4> bytes = {at[0], at[1], at[2], at[3]};
    munmap(window, window_size);
    return bytes;
}

using Bytes = std::array<unsigned, 4>;
using Registers = std::vector<int>;

TEST_F(Board, ExpanderStartsAtItsPowerOnDefaults)
{
    EXPECT_EQ(read_expander(0, 2), (Registers{0xFF, 0xFF}));
    EXPECT_EQ(read_expander(2, 2), (Registers{0xFF, 0xFF}));
    EXPECT_EQ(read_expander(4, 2), (Registers{0x00, 0x00}));
    EXPECT_EQ(read_expander(6, 2), (Registers{0xFF, 0xFF}));
}

TEST_F(Board, ExpanderTransfersAlternateWithinARegisterPair)
{
    write_expander(3, {0x11, 0x22, 0x33});
    EXPECT_EQ(read_expander(2, 3), (Registers{0x22, 0x33, 0x22}));
}

TEST_F(Board, ExpanderInputShowsOutputLinesAndOutsideLevels)
{
    write_expander(2, {0x5A});
    write_expander(6, {0x0F});
    board::set_expander_inputs(0, 0x03);
    EXPECT_EQ(read_expander(0, 1), (Registers{0x53}));
    EXPECT_EQ(board::expander_lines(0), 0x53);
}

TEST_F(Board, ExpanderPolarityInvertsOnlyTheInputRegister)
{
    write_expander(5, {0x81});
    EXPECT_EQ(read_expander(1, 1), (Registers{0x7E}));
    EXPECT_EQ(read_expander(3, 1), (Registers{0xFF}));
    EXPECT_EQ(board::expander_lines(1), 0xFF);
}

TEST_F(Board, ExpanderInputRegistersCannotBeWritten)
{
    write_expander(0, {0x00, 0x00});
    EXPECT_EQ(read_expander(0, 2), (Registers{0xFF, 0xFF}));
}

TEST_F(Board, ExpanderOutputRegisterKeepsItsValueWhileTheLineIsAnInput)
{
    write_expander(3, {0x00});
    EXPECT_EQ(board::expander_register(3), 0x00);
    EXPECT_EQ(board::expander_lines(1), 0xFF);
    write_expander(7, {0x00});
    EXPECT_EQ(board::expander_lines(1), 0x00);
}

TEST_F(Board, TransfersLeaveTheSelectedRegister)
{
    const int fd = i2c_at(7, 6);
    std::uint8_t byte = 0x12;
    EXPECT_EQ(write(fd, &byte, 1), 1);
    byte = 0;
    EXPECT_EQ(read(fd, &byte, 1), 1);
    EXPECT_EQ(byte, 0x12);
    EXPECT_EQ(lseek(fd, 0, SEEK_CUR), 6);
    close(fd);
}

TEST_F(Board, OnlyDeviceSevenAnswers)
{
    for (const int device : {0, 6, 8, 127}) {
        const int fd = i2c_at(device, 3);
        std::uint8_t byte = 0x55;
        EXPECT_EQ(read(fd, &byte, 1), -1);
        EXPECT_EQ(errno, ENXIO);
        EXPECT_EQ(write(fd, &byte, 1), -1);
        EXPECT_EQ(errno, ENXIO);
        EXPECT_EQ(byte, 0x55);
        close(fd);
    }
    EXPECT_EQ(board::expander_register(3), 0xFF);
}

TEST_F(Board, NothingAnswersBeforeADeviceIsSelected)
{
    const int fd = open("/dev/i2cDev", O_RDWR);
    std::uint8_t byte = 0;
    EXPECT_EQ(read(fd, &byte, 1), -1);
    EXPECT_EQ(errno, ENXIO);
    close(fd);
}

TEST_F(Board, I2cRefusesOtherRequestsAddressesAndRegisters)
{
    const int fd = i2c_at(7, 8);
    std::uint8_t byte = 0;
    EXPECT_EQ(read(fd, &byte, 1), -1);
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(write(fd, &byte, 1), -1);
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(ioctl(fd, 0, 128), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(ioctl(fd, 0, -1), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(ioctl(fd, 1, 7), -1);
    EXPECT_EQ(errno, ENOTTY);
    EXPECT_EQ(lseek(fd, -1, SEEK_SET), -1);
    close(fd);
}

TEST_F(Board, TransfersOfANegativeLengthAreRefused)
{
    using Read = ssize_t(int, void*, std::size_t);
    Read* const any_read = reinterpret_cast<Read*>(dlsym(RTLD_DEFAULT, "read"));
    const int fd = i2c_at(7, 3);
    std::uint8_t byte = 0;
    EXPECT_EQ(any_read(fd, &byte, static_cast<std::size_t>(-1)), -1);
    EXPECT_EQ(errno, EINVAL);
    close(fd);
}

TEST_F(Board, DescriptorsSelectDevicesAndRegistersOfTheirOwn)
{
    const int one = i2c_at(7, 2);
    const int other = i2c_at(9, 3);
    const std::uint8_t byte = 0x77;
    EXPECT_EQ(write(one, &byte, 1), 1);
    EXPECT_EQ(write(other, &byte, 1), -1);
    EXPECT_EQ(board::expander_register(2), 0x77);
    EXPECT_EQ(board::expander_register(3), 0xFF);
    close(one);
    close(other);
}

TEST_F(Board, AccessModeOfTheOpeningHolds)
{
    std::uint8_t byte = 0x42;
    const int reader = i2c_at(7, 3, O_RDONLY);
    EXPECT_EQ(write(reader, &byte, 1), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(read(reader, &byte, 1), 1);
    const int writer = i2c_at(7, 3, O_WRONLY);
    EXPECT_EQ(read(writer, &byte, 1), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(write(writer, &byte, 1), 1);
    close(reader);
    close(writer);
}

TEST_F(Board, CloseOnExecFollowsTheOpening)
{
    for (const char* path : {"/dev/i2cDev", "/dev/cpuDev", "/dev/wspled"}) {
        for (const int flags : {O_RDWR, O_RDONLY}) {
            const int kept = open(path, flags);
            const int closed = open(path, flags | O_CLOEXEC);
            EXPECT_EQ(fcntl(kept, F_GETFD), 0) << path;
            EXPECT_EQ(fcntl(closed, F_GETFD), FD_CLOEXEC) << path;
            close(kept);
            close(closed);
        }
    }
}

TEST_F(Board, LogListsTransfersInOrder)
{
    write_expander(7, {0x00});
    read_expander(2, 2);
    const int fd = i2c_at(9, 3);
    std::uint8_t byte = 0;
    EXPECT_EQ(read(fd, &byte, 1), -1);
    close(fd);
    EXPECT_EQ(board::i2c_log(), "7 write 7: 00\n7 read 2: ff ff\n9 read 3: no answer\n");
    board::clear_i2c_log();
    EXPECT_EQ(board::i2c_log(), "");
}

TEST_F(Board, WindowShowsTheDaughterModuleBigEndian)
{
    EXPECT_EQ(window_bytes(), (Bytes{0xFF, 0xFF, 0xCF, 0xFF}));
    EXPECT_TRUE(board::select_daughter_module(1));
    EXPECT_EQ(window_bytes(), (Bytes{0xFF, 0xFF, 0xDF, 0xFF}));
    EXPECT_TRUE(board::select_daughter_module(2));
    EXPECT_EQ(window_bytes(), (Bytes{0xFF, 0xFF, 0xEF, 0xFF}));
    EXPECT_TRUE(board::select_daughter_module(3));
    EXPECT_EQ(window_bytes(), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST_F(Board, DaughterModuleFieldHasTwoBits)
{
    board::select_daughter_module(3);
    EXPECT_FALSE(board::select_daughter_module(4));
    EXPECT_EQ(window_bytes(), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST_F(Board, WindowEndsAfter16MiB)
{
    const int fd = open("/dev/cpuDev", O_RDWR);
    EXPECT_EQ(lseek(fd, 0, SEEK_END), static_cast<off_t>(window_size));
    close(fd);
}

TEST_F(Board, WindowOpenedForReadingDoesNotMapWritable)
{
    const int fd = open("/dev/cpuDev", O_RDONLY);
    EXPECT_EQ(mmap(nullptr, window_size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0), MAP_FAILED);
    EXPECT_EQ(errno, EACCES);
    close(fd);
}

TEST_F(Board, EepromsAreAbsentUntilFitted)
{
    EXPECT_EQ(open_errno("/dev/wsdcep0"), ENOENT);
    const std::vector<std::uint8_t> bytes = {1, 2, 3};
    EXPECT_TRUE(board::set_eeprom(0, bytes));
    EXPECT_EQ(open_errno("/dev/wsdcep0"), 0);
    EXPECT_EQ(open_errno("/dev/wsdcep1"), ENOENT);
    EXPECT_TRUE(board::remove_eeprom(0));
    EXPECT_EQ(open_errno("/dev/wsdcep0"), ENOENT);
}

TEST_F(Board, EepromsGiveTheirBytesAndThenEnd)
{
    for (unsigned index = 0; index < 7; ++index) {
        std::vector<std::uint8_t> record(board::eeprom_record_size, static_cast<uint8_t>(index));
        ASSERT_TRUE(board::set_eeprom(index, record));
        const int fd = open(("/dev/wsdcep" + std::to_string(index)).c_str(), O_RDWR);
        std::array<std::uint8_t, 100> bytes{};
        EXPECT_EQ(read(fd, bytes.data(), bytes.size()), 71);
        EXPECT_EQ(std::memcmp(bytes.data(), record.data(), record.size()), 0);
        EXPECT_EQ(read(fd, bytes.data(), bytes.size()), 0);
        close(fd);
    }
}

TEST_F(Board, EepromsAreWriteProtected)
{
    const std::vector<std::uint8_t> bytes = {1, 2, 3};
    board::set_eeprom(6, bytes);
    const int fd = open("/dev/wsdcep6", O_RDWR);
    EXPECT_EQ(write(fd, "x", 1), -1);
    EXPECT_EQ(errno, EPERM);
    close(fd);
}

TEST_F(Board, ThereAreSevenEeproms)
{
    const std::vector<std::uint8_t> bytes = {1};
    EXPECT_FALSE(board::set_eeprom(7, bytes));
    EXPECT_FALSE(board::remove_eeprom(7));
    EXPECT_EQ(open_errno("/dev/wsdcep7"), ENOENT);
}

TEST_F(Board, LedNodeOpensAndHoldsNothing)
{
    const int fd = open("/dev/wspled", O_RDWR);
    ASSERT_GE(fd, 0);
    std::uint8_t byte = 0;
    EXPECT_EQ(read(fd, &byte, 1), 0);
    EXPECT_EQ(write(fd, &byte, 1), -1);
    close(fd);
}

TEST_F(Board, EveryNodeCanBeAbsentOrFailToOpen)
{
    const std::vector<std::uint8_t> bytes = {1};
    board::set_eeprom(3, bytes);
    for (const char* path : {"/dev/i2cDev", "/dev/cpuDev", "/dev/wspled", "/dev/wsdcep3"}) {
        EXPECT_EQ(open_errno(path), 0) << path;
        EXPECT_TRUE(board::set_present(path, false));
        EXPECT_EQ(open_errno(path), ENOENT) << path;
        EXPECT_TRUE(board::set_present(path, true));
        EXPECT_TRUE(board::fail(path, Op::open, EACCES));
        EXPECT_EQ(open_errno(path), EACCES) << path;
        board::clear_faults();
        EXPECT_EQ(open_errno(path), 0) << path;
    }
}

TEST_F(Board, FaultsOfI2cOperations)
{
    const int fd = i2c_at(7, 3);
    std::uint8_t byte = 0;
    board::fail("/dev/i2cDev", Op::ioctl, EBUSY);
    EXPECT_EQ(ioctl(fd, 0, 7), -1);
    EXPECT_EQ(errno, EBUSY);
    board::fail("/dev/i2cDev", Op::read, EIO);
    EXPECT_EQ(read(fd, &byte, 1), -1);
    EXPECT_EQ(errno, EIO);
    board::fail("/dev/i2cDev", Op::write, ETIMEDOUT);
    EXPECT_EQ(write(fd, &byte, 1), -1);
    EXPECT_EQ(errno, ETIMEDOUT);
    EXPECT_EQ(board::i2c_log(), "");
    close(fd);
}

TEST_F(Board, AFaultWaitsForItsTurnAndThenStays)
{
    const int fd = i2c_at(7, 3);
    const std::uint8_t byte = 0;
    board::fail("/dev/i2cDev", Op::write, EIO, 2);
    EXPECT_EQ(write(fd, &byte, 1), 1);
    EXPECT_EQ(write(fd, &byte, 1), 1);
    EXPECT_EQ(write(fd, &byte, 1), -1);
    EXPECT_EQ(write(fd, &byte, 1), -1);
    board::clear_faults();
    EXPECT_EQ(write(fd, &byte, 1), 1);
    close(fd);
}

TEST_F(Board, ASeekFaultMakesADescriptorThatCannotBePositioned)
{
    board::fail("/dev/i2cDev", Op::seek, EIO);
    const int fd = open("/dev/i2cDev", O_RDWR);
    EXPECT_EQ(ioctl(fd, 0, 7), 0);
    EXPECT_EQ(lseek(fd, 3, SEEK_SET), -1);
    EXPECT_EQ(errno, ESPIPE);
    close(fd);
}

TEST_F(Board, AMapFaultMakesADescriptorThatCannotBeMapped)
{
    board::fail("/dev/cpuDev", Op::map, EIO);
    const int fd = open("/dev/cpuDev", O_RDWR);
    EXPECT_GE(fd, 0);
    EXPECT_EQ(mmap(nullptr, window_size, PROT_READ, MAP_SHARED, fd, 0), MAP_FAILED);
    EXPECT_EQ(errno, ENODEV);
    close(fd);
}

TEST_F(Board, AReadFaultOfAnEepromLastsUntilCleared)
{
    const std::vector<std::uint8_t> bytes = {9};
    board::set_eeprom(2, bytes);
    const int fd = open("/dev/wsdcep2", O_RDWR);
    board::fail("/dev/wsdcep2", Op::read, EIO);
    std::uint8_t byte = 0;
    EXPECT_EQ(read(fd, &byte, 1), -1);
    EXPECT_EQ(errno, EIO);
    board::clear_faults();
    EXPECT_EQ(read(fd, &byte, 1), 1);
    EXPECT_EQ(byte, 9);
    close(fd);
}

TEST_F(Board, ControlRefusesWhatTheBoardDoesNotHave)
{
    EXPECT_FALSE(board::set_present("/dev/null", false));
    EXPECT_FALSE(board::fail("/dev/wsdcep7", Op::open, EIO));
    EXPECT_FALSE(board::fail("/dev/i2cDev", Op::open, 0));
    EXPECT_EQ(open_errno("/dev/i2cDev"), 0);
    EXPECT_FALSE(board::set_expander_inputs(2, 0));
    EXPECT_EQ(board::expander_lines(2), 0);
    EXPECT_EQ(board::expander_register(8), 0);
}

TEST_F(Board, ResetIsPowerOn)
{
    const std::vector<std::uint8_t> bytes = {1};
    board::set_eeprom(0, bytes);
    board::select_daughter_module(3);
    board::set_present("/dev/wspled", false);
    write_expander(2, {0x00, 0x00});
    board::set_expander_inputs(1, 0x00);
    board::fail("/dev/i2cDev", Op::open, EIO);
    board::reset();
    EXPECT_TRUE(board::enabled());
    EXPECT_EQ(board::i2c_log(), "");
    EXPECT_EQ(read_expander(2, 2), (Registers{0xFF, 0xFF}));
    EXPECT_EQ(read_expander(0, 2), (Registers{0xFF, 0xFF}));
    EXPECT_EQ(window_bytes(), (Bytes{0xFF, 0xFF, 0xCF, 0xFF}));
    EXPECT_EQ(open_errno("/dev/wsdcep0"), ENOENT);
    EXPECT_EQ(open_errno("/dev/wspled"), 0);
}

TEST_F(Board, AForkedChildHasABoardOfItsOwn)
{
    std::atomic<bool> stop{false};
    std::thread busy([&] {
        while (!stop) {
            (void)board::i2c_log();
        }
    });
    for (int round = 0; round < 20; ++round) {
        const pid_t child = fork();
        if (child == 0) {
            write_expander(2, {0x00});
            _exit(board::expander_register(2) == 0x00 ? 0 : 1);
        }
        int status = -1;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    stop = true;
    busy.join();
    EXPECT_EQ(board::expander_register(2), 0xFF);
}

TEST_F(Board, ThreadsShareTheBoardWithoutTearing)
{
    const auto work = [] {
        for (int round = 0; round < 200; ++round) {
            write_expander(2, {0x55, 0x55});
            const Registers seen = read_expander(2, 2);
            EXPECT_EQ(seen, (Registers{0x55, 0x55}));
        }
    };
    std::thread other(work);
    work();
    other.join();
}

} // namespace
