// The control interface's view of the card.
#include <soc/drv.h>

#include "sim/card/card.h"
#include "vexosim/calls.h"
#include "vexosim/card.h"
#include "vexosim/clock.h"
#include "vexosim/faults.h"
#include "vexosim/profile.h"

namespace vexosim {

void log_calls(bool on)
{
    card().watch.log_calls(on);
}

std::string calls()
{
    return card().watch.log().text(false, false);
}

std::string calls_with_results()
{
    return card().watch.log().text(false, true);
}

std::string all_calls()
{
    return card().watch.log().text(true, false);
}

std::string all_calls_with_results()
{
    return card().watch.log().text(true, true);
}

void clear_calls()
{
    card().watch.log().clear();
}

void inject(Fault fault)
{
    card().watch.inject(std::move(fault));
}

void clear_faults()
{
    card().watch.clear_faults();
}

std::vector<ArmedFault> armed_faults()
{
    return card().watch.faults().armed();
}

unsigned long gated_calls()
{
    return card().watch.faults().calls();
}

unsigned long faults_hit()
{
    return card().watch.faults().hits();
}

std::vector<std::string> faulted_calls()
{
    return card().watch.faults().hit_calls();
}

bool set_profile(const Profile& profile)
{
    const ChipLock lock;
    if (card().stage != Stage::absent)
        return false;
    card().profile = profile;
    return true;
}

const Profile& profile()
{
    return card().profile;
}

void use_manual_clock()
{
    card().clock.make_manual();
}

bool manual_clock()
{
    return card().clock.manual();
}

void stop_threads()
{
    card().background.stop();
}

std::chrono::microseconds now()
{
    return std::chrono::microseconds(card().clock.now_us());
}

void advance(std::chrono::microseconds duration)
{
    card().background.advance(duration);
}

void drain()
{
    card().background.drain();
}

bool attached()
{
    return card().ports.any();
}

int chip_port_of(int user_port)
{
    return card().ports.chip_port_of_user(user_port);
}

int user_port_of(int chip_port)
{
    return card().ports.user_port(chip_port);
}

std::string port_name(int chip_port)
{
    if (chip_port == 0)
        return "cpu";
    const int user_port = user_port_of(chip_port);
    return user_port < 0 ? "chip:" + std::to_string(chip_port) : std::to_string(user_port);
}

std::size_t live_lplists()
{
    return card().lplists;
}

std::size_t live_dma_buffers()
{
    return card().dma_buffers;
}

std::uint32_t chip_register(std::uint32_t byte_offset)
{
    return card().registers.read(byte_offset);
}

std::uint8_t led_data(unsigned index)
{
    return static_cast<std::uint8_t>(chip_register(SOC_LED_DATA_RAM_OFFSET + 4 * index));
}

std::vector<std::uint8_t> led_program()
{
    const ChipLock lock;
    return card().registers.led_program;
}

std::uint16_t phy_register(int chip_port, unsigned reg)
{
    const ChipLock lock;
    const std::uint8_t address = Phys::address_of(chip_port);
    return Phys::answers(address) && reg < Phys::kRegisters ? card().phys.read(address, reg) : 0;
}

std::uint16_t phy_shadow_register(int chip_port, unsigned selector)
{
    const ChipLock lock;
    const std::uint8_t address = Phys::address_of(chip_port);
    return Phys::answers(address) ? card().phys.shadow(address, selector) : 0;
}

std::optional<std::string> property(const std::string& name)
{
    return card().properties.get(name);
}

void set_property(const std::string& name, const std::string& value)
{
    card().properties.set(name, value);
}

} // namespace vexosim
