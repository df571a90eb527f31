// Port LEDs. The PHYs keep their LED selectors in shadow registers behind register 0x1C: write the
// shadow's selector, read, and write the new value with bit 0x8000 set.

#include "platform/led.h"

#include <array>
#include <bcm/port.h>
#include <cstdint>
#include <cstdio>
#include <soc/cm.h>
#include <soc/drv.h>
#include <soc/phy.h>

#include "platform/board_io.h"

namespace {

using LedProgram = std::array<std::uint8_t, 72>;

constexpr LedProgram default_program = {
    0x02, 0x1d, 0x28, 0x60, 0xc0, 0x67, 0x1e, 0x02, 0x1c, 0x28, 0x60, 0xc0, 0x67, 0x1e, 0x02,
    0x1b, 0x28, 0x60, 0xc0, 0x67, 0x1e, 0x02, 0x1a, 0x28, 0x60, 0xc0, 0x67, 0x1e, 0x3a, 0x10,
    0x12, 0xa0, 0xf8, 0x15, 0x1a, 0x00, 0x75, 0x37, 0x32, 0x08, 0xd7, 0x87, 0x32, 0x00, 0xd7,
    0x87, 0x32, 0x01, 0xd7, 0x87, 0x32, 0x0f, 0xd7, 0x87, 0x57, 0x32, 0x08, 0xd7, 0x87, 0x32,
    0x0e, 0xd7, 0x87, 0x32, 0x0e, 0xd7, 0x87, 0x32, 0x0e, 0xd7, 0x87, 0x57,
};

// The same with other port output groups.
constexpr LedProgram sfp_module_program = {
    0x02, 0x1d, 0x28, 0x60, 0xc0, 0x67, 0x1e, 0x02, 0x1c, 0x28, 0x60, 0xc0, 0x67, 0x1e, 0x02,
    0x1b, 0x28, 0x60, 0xc0, 0x67, 0x1e, 0x02, 0x1a, 0x28, 0x60, 0xc0, 0x67, 0x1e, 0x3a, 0x10,
    0x12, 0xa0, 0xf8, 0x15, 0x1a, 0x00, 0x75, 0x37, 0x32, 0x0f, 0xd7, 0x87, 0x32, 0x01, 0xd7,
    0x87, 0x32, 0x00, 0xd7, 0x87, 0x32, 0x08, 0xd7, 0x87, 0x57, 0x32, 0x0e, 0xd7, 0x87, 0x32,
    0x0e, 0xd7, 0x87, 0x32, 0x0e, 0xd7, 0x87, 0x32, 0x08, 0xd7, 0x87, 0x57,
};

constexpr int sfp_module = 2;
constexpr int led_processor_speed = 10000;

constexpr std::uint8_t phy_extended_control = 0x10;
constexpr std::uint8_t phy_shadow = 0x1C;
constexpr unsigned shadow_write = 0x8000;
constexpr unsigned shadow_led_control = 0x2400;
constexpr unsigned shadow_leds_1_2 = 0x3400;
constexpr unsigned shadow_leds_3_4 = 0x3800;

std::uint16_t phy_read(int unit, std::uint8_t phy, std::uint8_t reg)
{
    std::uint16_t value = 0;
    (void)soc_miim_read(unit, phy, reg, &value); // a PHY that does not answer reads as 0
    return value;
}

void phy_write(int unit, std::uint8_t phy, std::uint8_t reg, unsigned value)
{
    (void)soc_miim_write(unit, phy, reg, static_cast<std::uint16_t>(value));
}

unsigned read_shadow(int unit, std::uint8_t phy, unsigned selector)
{
    phy_write(unit, phy, phy_shadow, selector);
    return phy_read(unit, phy, phy_shadow);
}

void write_shadow(int unit, std::uint8_t phy, unsigned value)
{
    phy_write(unit, phy, phy_shadow, value | shadow_write);
}

void prepare_leds(int unit, int port)
{
    const std::uint8_t phy = soc_phy_addr_of_port(unit, port);
    write_shadow(unit, phy, (read_shadow(unit, phy, shadow_leds_3_4) & ~0xFU) | 0x3U);
    write_shadow(unit, phy, read_shadow(unit, phy, shadow_led_control) | 0x10U);
    phy_write(unit, phy, phy_extended_control, phy_read(unit, phy, phy_extended_control) & ~0x20U);
}

bool show_speed(int unit, int port, int speed)
{
    const int led_1_on = speed != 1000;
    const int led_2_on = speed != 100;
    bool done = vexo_phy_led_select(unit, port, led_1_on, 1);
    done |= vexo_phy_led_select(unit, port, led_2_on, 2);
    return done;
}

// The results are collected by OR into one that starts true, deliberately: a caller never hears of
// a selector that failed.
bool set_phy_leds(int unit, int port, const bcm_port_info_t& info)
{
    bool done = true;
    if (info.linkstatus == BCM_PORT_LINK_STATUS_UP) {
        prepare_leds(unit, port);
        done |= show_speed(unit, port, info.speed);
        return done;
    }
    for (const int led : {1, 2, 3}) {
        done |= vexo_phy_led_select(unit, port, 1, led);
    }
    return done;
}

volatile std::uint32_t* mapped_word(std::uintptr_t base, std::uint32_t offset)
{
    return reinterpret_cast<volatile std::uint32_t*>(base + offset); // NOLINT(performance-*)
}

std::uint32_t read_chip_word(int unit, std::uint32_t offset)
{
    const soc_cm_device_vectors_t& device = CMVEC(unit);
    if (device.base_address != 0) {
        return *mapped_word(device.base_address, offset);
    }
    return device.read(&CMDEV(unit).dev, offset);
}

void write_chip_word(int unit, std::uint32_t offset, std::uint32_t value)
{
    const soc_cm_device_vectors_t& device = CMVEC(unit);
    if (device.base_address != 0) {
        *mapped_word(device.base_address, offset) = value;
    } else {
        (void)device.write(&CMDEV(unit).dev, offset, value);
    }
}

// A unit that was never attached has no way to its registers.
bool has_registers(int unit)
{
    if (unit < 0 || unit >= SOC_MAX_NUM_DEVICES) {
        return false;
    }
    const soc_cm_device_vectors_t& device = CMVEC(unit);
    return device.base_address != 0 || (device.read != nullptr && device.write != nullptr);
}

void set_led_ram(int unit, int index, bool link_up)
{
    const std::uint32_t offset = SOC_LED_DATA_RAM_OFFSET + 4 * static_cast<std::uint32_t>(index);
    std::uint32_t word = read_chip_word(unit, offset);
    word = link_up ? word | 0x1U : word & ~0x1U;
    write_chip_word(unit, offset, word & ~0x80U);
}

int led_ram_index(int unit, int port)
{
    return port + (soc_feature(unit, soc_feature_led_data_offset_a0) != 0 ? 160 : 128);
}

} // namespace

bool vexo_init_ledproc()
{
    const LedProgram& program =
        DetectDaughterModuleID() == sfp_module ? sfp_module_program : default_program;
    (void)soc_ledproc_config(0, program.data(), static_cast<int>(program.size()));
    return true; // deliberately: dark LEDs do not stop a card
}

bool vexo_set_port_led(int unit, int port, bcm_port_info_s* info)
{
    const int index = led_ram_index(unit, port);
    if (info->speed != led_processor_speed) {
        return set_phy_leds(unit, port, *info);
    }
    std::printf("cmic_byte_offset = %d(%x)\n", index, static_cast<unsigned>(index));
    if (has_registers(unit)) {
        set_led_ram(unit, index, info->linkstatus == BCM_PORT_LINK_STATUS_UP);
    }
    return true;
}

bool vexo_phy_led_select(int unit, int port, int on, int led)
{
    const std::uint8_t phy = soc_phy_addr_of_port(unit, port);
    if (led < 1 || led > 4) {
        return false;
    }
    const unsigned shift = led % 2 == 0 ? 4 : 0;
    unsigned value = read_shadow(unit, phy, led <= 2 ? shadow_leds_1_2 : shadow_leds_3_4);
    value |= 0xFU << shift;
    if (on != 0) {
        value &= ~(0x1U << shift);
    }
    write_shadow(unit, phy, value);
    return true;
}
