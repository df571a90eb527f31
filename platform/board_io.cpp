// The board's device nodes. Each call opens the node it needs and closes it again.

#include "platform/board_io.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

static_assert(sizeof(fixed_info_s) == 71);

const char* dev_wsdcep = "/dev/wsdcep";
const char* dev_wspled = "/dev/wspled";

namespace {

constexpr unsigned long i2c_select_device = 0;
constexpr unsigned second_port_output = 3;
constexpr unsigned second_port_configuration = 7;

constexpr std::size_t window_size = 0x1000000;
constexpr std::size_t daughter_register = 0x90D30;
constexpr std::uint32_t daughter_mask = 0x3000;
constexpr unsigned daughter_shift = 12;
constexpr int no_window = 255;

constexpr int last_daughter_card = 6;

class OpenNode {
public:
    explicit OpenNode(const char* path) : fd_(open(path, O_RDWR)) {}
    ~OpenNode()
    {
        if (is_open()) {
            close(fd_);
        }
    }
    OpenNode(const OpenNode&) = delete;
    OpenNode& operator=(const OpenNode&) = delete;

    bool is_open() const { return fd_ >= 0; }
    int fd() const { return fd_; }

private:
    int fd_;
};

int i2c_failed(const char* step)
{
    std::printf("/dev/i2cDev %s Error!\n", step);
    return -1;
}

// 0 when transfers on the node now go to that register of that device, else -1 after a message.
int select_register(const OpenNode& node, int dev, unsigned reg)
{
    if (!node.is_open()) {
        return i2c_failed("Open");
    }
    if (ioctl(node.fd(), i2c_select_device, dev) < 0) {
        return i2c_failed("ioctl");
    }
    if (lseek(node.fd(), static_cast<off_t>(reg), SEEK_SET) < 0) {
        return i2c_failed("seek");
    }
    return 0;
}

// Bits count modulo 64; the upper half of them, and all beyond the port's eight lines, are no line.
unsigned char line_mask(unsigned char bit)
{
    const unsigned position = bit % 64U;
    return static_cast<unsigned char>(position < 32 ? 1U << position : 0U);
}

// One access of the register's width, then its bytes in the order of the bus: big-endian.
std::uint32_t window_register(const void* window, std::size_t offset)
{
    const auto* base = static_cast<const unsigned char*>(window);
    const std::uint32_t word = *reinterpret_cast<const volatile std::uint32_t*>(base + offset);
    const auto* byte = reinterpret_cast<const unsigned char*>(&word);
    return std::uint32_t{byte[0]} << 24 | std::uint32_t{byte[1]} << 16 |
           std::uint32_t{byte[2]} << 8 | byte[3];
}

void* map_window()
{
    const OpenNode node("/dev/cpuDev");
    if (!node.is_open()) {
        std::printf("/dev/cpuDev Open Error!\n");
        return MAP_FAILED;
    }
    return mmap(nullptr, window_size, PROT_READ | PROT_WRITE, MAP_SHARED, node.fd(), 0);
}

int module_type(std::uint32_t field)
{
    switch (field) {
    case 1:
        return 2;
    case 3:
        return 1;
    default:
        return 15;
    }
}

} // namespace

int ReadPCA9555(int dev, unsigned char* buf, int len, unsigned reg, int /*unused*/)
{
    std::fill_n(buf, len, static_cast<unsigned char>(0));
    const OpenNode node("/dev/i2cDev");
    if (select_register(node, dev, reg) != 0) {
        return -1;
    }
    return read(node.fd(), buf, static_cast<std::size_t>(len)) < 0 ? i2c_failed("read") : 0;
}

int vexo_i2c_write(int dev, const void* buf, int len, unsigned reg)
{
    const OpenNode node("/dev/i2cDev");
    if (select_register(node, dev, reg) != 0) {
        return -1;
    }
    return write(node.fd(), buf, static_cast<std::size_t>(len)) < 0 ? i2c_failed("write") : 0;
}

int BoardInitPCA9555_SFP(int dev)
{
    const unsigned char all_outputs = 0x00;
    return vexo_i2c_write(dev, &all_outputs, 1, second_port_configuration);
}

int ResetSFPPHYOnBoard(int dev, unsigned char bit)
{
    const unsigned char mask = line_mask(bit);
    unsigned char lines = 0;
    if (ReadPCA9555(dev, &lines, 1, second_port_output, 0) != 0) {
        return -1;
    }
    lines = static_cast<unsigned char>(lines & ~mask);
    if (vexo_i2c_write(dev, &lines, 1, second_port_output) != 0) {
        return -1;
    }
    sleep(1);
    lines = static_cast<unsigned char>(lines | mask);
    return vexo_i2c_write(dev, &lines, 1, second_port_output);
}

int DetectDaughterModuleID()
{
    void* const window = map_window();
    if (window == MAP_FAILED) {
        return no_window;
    }
    const std::uint32_t value = window_register(window, daughter_register);
    munmap(window, window_size);
    return module_type((value & daughter_mask) >> daughter_shift);
}

bool vexo_read_dcard_eeprom(int index, fixed_info_s* info)
{
    char path[64];
    std::snprintf(path, sizeof path, "%s%d", dev_wsdcep, index);
    if (index > last_daughter_card) {
        return false;
    }
    const OpenNode node(path);
    if (!node.is_open()) {
        return false;
    }
    fixed_info_s record;
    const ssize_t count = read(node.fd(), &record, sizeof record);
    if (count != static_cast<ssize_t>(sizeof record)) {
        return false;
    }
    *info = record;
    return true;
}
