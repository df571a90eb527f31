// The bus driver, and what the chip layer reaches without the switch: registers, LEDs, PHYs.
#include <gtest/gtest.h>

#include <bde/linux_bde.h>
#include <sal/core.h>
#include <soc/cm.h>
#include <soc/drv.h>
#include <soc/phy.h>

#include "tests/kit/kit.h"

namespace {

constexpr std::uint16_t kSwitch = BusDevice::kSwitchId;

struct Bus : BareCardTest {
    ibde_t* bus()
    {
        linux_bde_bus_t order{1, 0, 1};
        ibde_t* made = nullptr;
        EXPECT_EQ(linux_bde_create(&order, &made), 0);
        return made;
    }
};

/// A card whose unit 0 can be reached.
struct Reachable : BareCardTest {
    Reachable()
    {
        inject({.call = "soc_reset_init"});
        bring_up();
        clear_faults();
    }
};

TEST_F(Bus, TheBusShowsTheDevicesOfTheProfile)
{
    Profile profile;
    profile.devices = {{}, {0x1234, 2, false, true}};
    ASSERT_TRUE(set_profile(profile));
    ibde_t* const bde = bus();
    EXPECT_EQ(bde->num_devices(0), 2);
    EXPECT_EQ(bde->get_dev(0)->device, kSwitch);
    EXPECT_EQ(bde->get_dev(1)->device, 0x1234);
    EXPECT_EQ(bde->get_dev(1)->rev, 2);
    EXPECT_EQ(bde->get_dev(1)->base_address, 0u) << "not mapped";
    EXPECT_EQ(bde->get_dev(2), nullptr);
    int pio = 9, packet = 9, other = 9;
    bde->pci_bus_features(0, &pio, &packet, &other);
    EXPECT_EQ(std::to_string(pio) + std::to_string(packet) + std::to_string(other), "101");
}

TEST_F(Bus, MemoryAnswersWhereADeviceIsMapped)
{
    Profile profile;
    profile.devices = {{}, {kSwitch, 1, true, false}};
    set_profile(profile);
    ibde_t* const bde = bus();
    EXPECT_EQ(sal_memory_check(bde->get_dev(0)->base_address), 0);
    EXPECT_LT(sal_memory_check(bde->get_dev(1)->base_address), 0) << "does not answer";
    EXPECT_LT(sal_memory_check(0x10), 0);
}

TEST_F(Bus, ABusDriverMayLackOperations)
{
    EXPECT_NE(bus()->sflush, nullptr);
    Profile profile;
    profile.bus_sflush = profile.bus_sinval = profile.bus_l2p = profile.bus_p2l = false;
    set_profile(profile);
    const ibde_t* const bde = bus();
    EXPECT_EQ(bde->sflush, nullptr);
    EXPECT_EQ(bde->sinval, nullptr);
    EXPECT_EQ(bde->l2p, nullptr);
    EXPECT_EQ(bde->p2l, nullptr);
}

TEST_F(Bus, ABusDriverMayNotComeUp)
{
    Profile profile;
    profile.bus_create_result = -3;
    set_profile(profile);
    linux_bde_bus_t order{1, 0, 1};
    ibde_t* made = nullptr;
    EXPECT_EQ(linux_bde_create(&order, &made), -3);
    EXPECT_EQ(made, nullptr);
}

TEST_F(Bus, RegistersAreTheSameMappedAndNot)
{
    ibde_t* const bde = bus();
    EXPECT_EQ(bde->write(0, 0x1c00, 0x12345678), 0);
    auto* const mapped = reinterpret_cast<volatile std::uint32_t*>(bde->get_dev(0)->base_address);
    EXPECT_EQ(mapped[0x1c00 / 4], 0x12345678u);
    mapped[0x1c04 / 4] = 0x81;
    EXPECT_EQ(bde->read(0, 0x1c04), 0x81u);
    EXPECT_EQ(led_data(1), 0x81);
    EXPECT_EQ(bde->write(0, 0x4000, 1), -1) << "behind the last register";
    EXPECT_EQ(bde->read(0, 0x4000), 0u);
}

TEST_F(Bus, PciConfigurationAndMemoryCanBeReached)
{
    ibde_t* const bde = bus();
    EXPECT_EQ(bde->pci_conf_read(0, 0) >> 16, kSwitch);
    EXPECT_EQ(bde->pci_conf_write(0, 4, 6), 0);
    EXPECT_EQ(bde->pci_conf_read(0, 4), 6u);
    EXPECT_EQ(bde->pci_conf_write(1, 4, 6), -1);
    void* const memory = bde->salloc(0, 32, "test");
    ASSERT_NE(memory, nullptr);
    EXPECT_EQ(bde->p2l(0, bde->l2p(0, memory)), memory);
    EXPECT_EQ(bde->sflush(0, memory, 32) | bde->sinval(0, memory, 32), 0);
    bde->sfree(0, memory);
    EXPECT_EQ(live_dma_buffers(), 0u);
}

TEST_F(Reachable, TheLedProcessorTakesAProgramOfAtMost256Bytes)
{
    std::vector<std::uint8_t> program(257, 0x86);
    EXPECT_EQ(soc_ledproc_config(0, program.data(), 257), BCM_E_PARAM);
    EXPECT_EQ(soc_ledproc_config(0, program.data(), 0), BCM_E_PARAM);
    EXPECT_EQ(soc_ledproc_config(0, nullptr, 4), BCM_E_PARAM);
    EXPECT_EQ(soc_ledproc_config(1, program.data(), 4), BCM_E_UNIT);
    EXPECT_TRUE(led_program().empty());
    EXPECT_EQ(soc_ledproc_config(0, program.data(), 256), 0);
    EXPECT_EQ(led_program().size(), 256u);
}

TEST_F(Reachable, PhysAnswerAtTheirAddresses)
{
    const std::uint8_t address = soc_phy_addr_of_port(0, 7);
    std::uint16_t data = 0;
    EXPECT_EQ(soc_miim_write(0, address, 5, 0xbeef), 0);
    EXPECT_EQ(soc_miim_read(0, address, 5, &data), 0);
    EXPECT_EQ(data, 0xbeef);
    EXPECT_EQ(phy_register(7, 5), 0xbeef);
    EXPECT_EQ(phy_register(8, 5), 0);
    data = 3;
    EXPECT_EQ(soc_miim_read(0, address, 32, &data), BCM_E_PARAM);
    EXPECT_EQ(soc_miim_read(0, address, 5, nullptr), BCM_E_PARAM);
    EXPECT_EQ(soc_miim_read(1, address, 5, &data), BCM_E_UNIT);
    EXPECT_EQ(soc_miim_read(0, soc_phy_addr_of_port(0, 0), 5, &data), BCM_E_TIMEOUT) << "CPU port";
    EXPECT_EQ(soc_miim_read(0, soc_phy_addr_of_port(0, 99), 5, &data), BCM_E_TIMEOUT);
    EXPECT_EQ(data, 3);
}

TEST_F(Reachable, ShadowRegistersOfAPhyAreReachedThroughOneRegister)
{
    const std::uint8_t address = soc_phy_addr_of_port(0, 7);
    std::uint16_t data = 0;
    soc_miim_write(0, address, 0x1c, 0x8000 | 0x3400 | 0x0123);
    soc_miim_write(0, address, 0x1c, 0x8000 | 0x3800 | 0x0001);
    soc_miim_read(0, address, 0x1c, &data);
    EXPECT_EQ(data, 0x3801);
    soc_miim_write(0, address, 0x1c, 0x3400);
    soc_miim_read(0, address, 0x1c, &data);
    EXPECT_EQ(data, 0x3523) << "selecting changes nothing";
    EXPECT_EQ(phy_shadow_register(7, 0x0d), 0x0123);
}

} // namespace
