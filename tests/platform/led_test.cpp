// Port LEDs against SDK functions of this program's own, which note each call and come before the
// simulated card's. No card is brought up, so the units' vectors are empty until a test sets them.

#include "platform/led.h"

#include <array>
#include <bcm/port.h>
#include <cerrno>
#include <cstdio>
#include <gtest/gtest.h>
#include <map>
#include <soc/cm.h>
#include <soc/drv.h>
#include <soc/phy.h>
#include <string>

#include "vexosim/board.h"

namespace board = vexosim::board;

namespace {

std::string noted;
unsigned read_value; // of every PHY register
bool leds_at_160;
int sdk_result;

template <typename... Values>
void note(const char* format, Values... values)
{
    char line[256];
    std::snprintf(line, sizeof line, format, values...);
    noted += line;
}

} // namespace

extern "C" {

uint8_t soc_phy_addr_of_port(int unit, int port)
{
    note("address of %d/%d\n", unit, port);
    return static_cast<uint8_t>(port + 100);
}

int soc_miim_read(int unit, uint8_t phy, uint8_t reg, uint16_t* data)
{
    note("%d/%d read %02x\n", unit, phy, reg);
    *data = static_cast<uint16_t>(read_value);
    return sdk_result;
}

int soc_miim_write(int unit, uint8_t phy, uint8_t reg, uint16_t data)
{
    note("%d/%d write %02x: %04x\n", unit, phy, reg, data);
    return sdk_result;
}

int soc_feature(int, soc_feature_t feature)
{
    return leds_at_160 && feature == soc_feature_led_data_offset_a0 ? 1 : 0;
}

int soc_ledproc_config(int unit, const uint8_t* program, int bytes)
{
    note("unit %d, %d bytes: ", unit, bytes);
    for (int i = 0; i < bytes; ++i) {
        note("%02x", program[i]);
    }
    return sdk_result;
}

} // extern "C"

namespace {

std::map<uint32_t, uint32_t> registers;

uint32_t read_register(soc_cm_dev_t* dev, uint32_t address)
{
    note("%d register read %x\n", dev->dev, address);
    return registers[address];
}

int write_register(soc_cm_dev_t* dev, uint32_t address, uint32_t data)
{
    note("%d register write %x: %x\n", dev->dev, address, data);
    registers[address] = data;
    return 0;
}

void use_register_functions(int unit)
{
    CMDEV(unit).dev.dev = unit;
    CMVEC(unit).read = read_register;
    CMVEC(unit).write = write_register;
}

bcm_port_info_t link(int status, int speed)
{
    bcm_port_info_t info = {};
    info.linkstatus = status;
    info.speed = speed;
    return info;
}

std::string printed_by_set(int unit, int port, bcm_port_info_t info)
{
    testing::internal::CaptureStdout();
    EXPECT_TRUE(vexo_set_port_led(unit, port, &info));
    return testing::internal::GetCapturedStdout();
}

// The calls of one selector for port 3 of unit 0.
std::string selector(const char* shadow, const char* written)
{
    return std::string("address of 0/3\n0/103 write 1c: ") + shadow +
           "\n0/103 read 1c\n0/103 write 1c: " + written + "\n";
}

TEST(Led, SelectorsWriteTheirShadowAndTheirNibble)
{
    struct Case {
        int led;
        int on;
        unsigned read;
        const char* shadow;
        const char* written;
    };
    const Case cases[] = {
        {1, 0, 0x0520, "3400", "852f"}, {1, 1, 0x0520, "3400", "852e"},
        {1, 1, 0x052F, "3400", "852e"}, {2, 0, 0x0502, "3400", "85f2"},
        {2, 1, 0x0502, "3400", "85e2"}, {2, 7, 0x05F2, "3400", "85e2"},
        {3, 0, 0x0520, "3800", "852f"}, {3, -1, 0x0521, "3800", "852e"},
        {4, 0, 0x0502, "3800", "85f2"}, {4, 1, 0x0512, "3800", "85e2"},
        {1, 0, 0xB9FF, "3400", "b9ff"},
    };
    for (const Case& test : cases) {
        noted.clear();
        read_value = test.read;
        EXPECT_TRUE(vexo_phy_led_select(0, 3, test.on, test.led));
        EXPECT_EQ(noted, selector(test.shadow, test.written)) << test.led << " " << test.on;
    }
}

TEST(Led, ASelectorOutside1To4OnlyLooksUpThePhy)
{
    for (const int led : {-1, 0, 5, 6}) {
        noted.clear();
        EXPECT_FALSE(vexo_phy_led_select(2, 9, 1, led));
        EXPECT_EQ(noted, "address of 2/9\n") << led;
    }
}

TEST(Led, ASelectorDoesNotLookAtPhyResults)
{
    sdk_result = -9;
    EXPECT_TRUE(vexo_phy_led_select(0, 3, 1, 1));
}

TEST(Led, LinkUpPreparesThePhyAndShowsTheSpeed)
{
    const std::string prepare = "address of 0/3\n"
                                "0/103 write 1c: 3800\n0/103 read 1c\n0/103 write 1c: 8563\n"
                                "0/103 write 1c: 2400\n0/103 read 1c\n0/103 write 1c: 857c\n"
                                "0/103 read 10\n0/103 write 10: 054c\n";
    struct Case {
        int speed;
        const char* led_1;
        const char* led_2;
    };
    const Case cases[] = {{1000, "856f", "85ec"},
                          {100, "856e", "85fc"},
                          {10, "856e", "85ec"},
                          {0, "856e", "85ec"},
                          {2500, "856e", "85ec"}};
    read_value = 0x056C;
    for (const Case& test : cases) {
        noted.clear();
        EXPECT_EQ(printed_by_set(0, 3, link(1, test.speed)), "");
        EXPECT_EQ(noted, prepare + selector("3400", test.led_1) + selector("3400", test.led_2))
            << test.speed;
    }
}

TEST(Led, LinkDownSetsThreeLedsWhateverTheSpeed)
{
    read_value = 0x0511;
    for (const int speed : {1000, 100, 0}) {
        noted.clear();
        EXPECT_EQ(printed_by_set(0, 3, link(0, speed)), "");
        EXPECT_EQ(noted,
                  selector("3400", "851e") + selector("3400", "85e1") + selector("3800", "851e"));
    }
}

TEST(Led, PhyFailuresDoNotTurnTheResult)
{
    sdk_result = -9;
    bcm_port_info_t info = link(1, 1000);
    EXPECT_TRUE(vexo_set_port_led(0, 3, &info));
}

TEST(Led, TenGigabitSetsTheLinkBitThroughTheRegisterFunctions)
{
    use_register_functions(1);
    registers[0x1C00 + 4 * 154] = 0xFF00FFF0;
    EXPECT_EQ(printed_by_set(1, 26, link(1, 10000)), "cmic_byte_offset = 154(9a)\n");
    EXPECT_EQ(noted, "1 register read 1e68\n1 register write 1e68: ff00ff71\n");
}

TEST(Led, TenGigabitClearsTheLinkBitThroughTheRegisterFunctions)
{
    use_register_functions(0);
    registers[0x1C00 + 4 * 157] = 0x000000FF;
    EXPECT_EQ(printed_by_set(0, 29, link(0, 10000)), "cmic_byte_offset = 157(9d)\n");
    EXPECT_EQ(noted, "0 register read 1e74\n0 register write 1e74: 7e\n");
}

TEST(Led, AMappedDeviceIsAccessedDirectly)
{
    static std::array<uint32_t, 0x1000> mapped{};
    use_register_functions(0);
    CMVEC(0).base_address = reinterpret_cast<uintptr_t>(mapped.data());
    mapped[0x1C00 / 4 + 154] = 0x80;
    printed_by_set(0, 26, link(1, 10000));
    EXPECT_EQ(mapped[0x1C00 / 4 + 154], 0x01U);
    EXPECT_EQ(noted, "");
}

TEST(Led, AChipWithTheOtherLedRamStartsAt160)
{
    use_register_functions(0);
    leds_at_160 = true;
    EXPECT_EQ(printed_by_set(0, 26, link(1, 10000)), "cmic_byte_offset = 186(ba)\n");
    EXPECT_EQ(noted, "0 register read 1ee8\n0 register write 1ee8: 1\n");
}

TEST(Led, AUnitWithoutRegistersIsLeftAlone)
{
    for (const int unit : {-1, 0, SOC_MAX_NUM_DEVICES}) {
        EXPECT_EQ(printed_by_set(unit, 26, link(1, 10000)), "cmic_byte_offset = 154(9a)\n");
    }
    EXPECT_EQ(noted, "");
}

constexpr const char* default_program =
    "unit 0, 72 bytes: "
    "021d2860c0671e021c2860c0671e021b2860c0671e021a2860c0671e3a1012a0f8151a0075373208d7873200d7"
    "873201d787320fd787573208d787320ed787320ed787320ed78757";
constexpr const char* sfp_module_program =
    "unit 0, 72 bytes: "
    "021d2860c0671e021c2860c0671e021b2860c0671e021a2860c0671e3a1012a0f8151a007537320fd7873201d7"
    "873200d7873208d78757320ed787320ed787320ed7873208d78757";

std::string program_for(unsigned daughter_field)
{
    board::reset();
    board::enable();
    board::select_daughter_module(daughter_field);
    noted.clear();
    EXPECT_TRUE(vexo_init_ledproc());
    return noted;
}

TEST(Led, TheProgramFollowsTheDaughterModule)
{
    EXPECT_EQ(program_for(0), default_program);
    EXPECT_EQ(program_for(1), sfp_module_program);
    EXPECT_EQ(program_for(2), default_program);
    EXPECT_EQ(program_for(3), default_program);
}

TEST(Led, WithoutAWindowTheDefaultProgramIsLoaded)
{
    board::reset();
    board::enable();
    board::set_present("/dev/cpuDev", false);
    testing::internal::CaptureStdout();
    EXPECT_TRUE(vexo_init_ledproc());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "/dev/cpuDev Open Error!\n");
    EXPECT_EQ(noted, default_program);
}

TEST(Led, AProgramThatDoesNotLoadIsStillTrue)
{
    sdk_result = -1;
    EXPECT_EQ(program_for(0), default_program);
}

} // namespace
