// Starting the SDK step by step: what is refused out of order, and what each step gives.
#include <gtest/gtest.h>

#include <bcm/init.h>
#include <bcm/port.h>
#include <bcmx/l2.h>
#include <bcmx/lport.h>
#include <bcmx/trunk.h>
#include <sal/config.h>
#include <sal/core.h>
#include <soc/cm.h>
#include <soc/drv.h>

#include "tests/kit/kit.h"

namespace {

constexpr std::uint16_t kSwitch = BusDevice::kSwitchId;

extern "C" char* from_store(soc_cm_dev_t* /*dev*/, const char* name)
{
    return sal_config_get(name);
}
extern "C" std::uint32_t read_word(soc_cm_dev_t* /*dev*/, std::uint32_t /*address*/)
{
    return 0;
}
extern "C" int write_word(soc_cm_dev_t* /*dev*/, std::uint32_t /*address*/, std::uint32_t /*data*/)
{
    return 0;
}

soc_cm_device_vectors_t vectors()
{
    soc_cm_device_vectors_t made{};
    made.config_var_get = from_store;
    made.read = read_word;
    made.write = write_word;
    return made;
}

struct StartUp : BareCardTest {
    void start_manager()
    {
        soc_cm_init_t init{};
        ASSERT_EQ(soc_cm_init(&init), 0);
    }
    void make_unit()
    {
        start_manager();
        soc_cm_device_vectors_t v = vectors();
        ASSERT_EQ(soc_cm_device_create(kSwitch, 1, nullptr), 0);
        ASSERT_EQ(soc_cm_device_init(0, &v), 0);
    }
    void initialise()
    {
        make_unit();
        ASSERT_EQ(soc_reset_init(0) | soc_misc_init(0) | soc_mmu_init(0) | bcm_init(0), 0);
    }
};

TEST_F(StartUp, TheApplicationHalfNeedsTheCore)
{
    EXPECT_LT(sal_appl_init(), 0);
    EXPECT_EQ(sal_core_init(), 0);
    EXPECT_EQ(sal_appl_init(), 0);
}

TEST_F(StartUp, NoUnitIsMadeBeforeTheManagerIsStarted)
{
    EXPECT_EQ(soc_cm_device_create(kSwitch, 1, nullptr), BCM_E_INIT);
    EXPECT_EQ(soc_cm_init(nullptr), BCM_E_PARAM);
    EXPECT_EQ(soc_cm_device_create(kSwitch, 1, nullptr), BCM_E_INIT);
}

TEST_F(StartUp, UnitsAreNumberedFromZeroUpToTheirLimit)
{
    start_manager();
    for (int unit = 0; unit < SOC_MAX_NUM_DEVICES; ++unit)
        EXPECT_EQ(soc_cm_device_create(kSwitch, 1, nullptr), unit);
    EXPECT_EQ(soc_cm_device_create(kSwitch, 1, nullptr), BCM_E_RESOURCE);
    EXPECT_EQ(soc_cm_device_destroy(3), 0);
    EXPECT_EQ(soc_cm_device_create(kSwitch, 1, nullptr), 3);
}

TEST_F(StartUp, OnlyTheSwitchIsSupported)
{
    start_manager();
    std::uint16_t device = 7;
    std::uint8_t revision = 7;
    EXPECT_EQ(soc_cm_device_supported(kSwitch, 1), 0);
    EXPECT_EQ(soc_cm_device_supported(kSwitch + 1, 1), BCM_E_UNAVAIL);
    EXPECT_EQ(soc_cm_device_create(kSwitch + 1, 1, nullptr), BCM_E_UNAVAIL);
    EXPECT_EQ(soc_cm_get_id_driver(kSwitch + 1, 1, &device, &revision), BCM_E_UNAVAIL);
    EXPECT_EQ(soc_cm_get_id_driver(kSwitch, 2, nullptr, &revision), BCM_E_PARAM);
    EXPECT_EQ(device, 7);
    EXPECT_EQ(soc_cm_get_id_driver(kSwitch, 2, &device, &revision), 0);
    EXPECT_EQ(device, kSwitch);
    EXPECT_EQ(revision, 2);
}

TEST_F(StartUp, AUnitKnowsItsIdsAndVectors)
{
    std::uint16_t device = 7;
    std::uint8_t revision = 7;
    EXPECT_EQ(soc_cm_get_id(0, &device, &revision), BCM_E_UNIT);
    make_unit();
    EXPECT_EQ(soc_cm_get_id(0, &device, nullptr), BCM_E_PARAM);
    EXPECT_EQ(device, 7);
    EXPECT_EQ(soc_cm_get_id(0, &device, &revision), 0);
    EXPECT_EQ(device, kSwitch);
    EXPECT_EQ(revision, 1);
    EXPECT_EQ(CMVEC(0).read, read_word);
    EXPECT_EQ(soc_cm_get_id(1, &device, &revision), BCM_E_UNIT);
    EXPECT_EQ(soc_cm_get_id(-1, &device, &revision), BCM_E_UNIT);
}

TEST_F(StartUp, VectorsMustReachTheDevice)
{
    start_manager();
    soc_cm_device_vectors_t v = vectors();
    EXPECT_EQ(soc_cm_device_init(0, &v), BCM_E_UNIT);
    ASSERT_EQ(soc_cm_device_create(kSwitch, 1, nullptr), 0);
    EXPECT_EQ(soc_cm_device_init(0, nullptr), BCM_E_PARAM);
    v.read = nullptr;
    EXPECT_EQ(soc_cm_device_init(0, &v), BCM_E_PARAM);
}

TEST_F(StartUp, TheChipComesUpInItsOrder)
{
    start_manager();
    ASSERT_EQ(soc_cm_device_create(kSwitch, 1, nullptr), 0);
    EXPECT_EQ(soc_reset_init(0), BCM_E_UNIT) << "has no vectors";
    soc_cm_device_vectors_t v = vectors();
    ASSERT_EQ(soc_cm_device_init(0, &v), 0);
    EXPECT_EQ(soc_misc_init(0), BCM_E_INIT);
    EXPECT_EQ(soc_reset_init(0), 0);
    EXPECT_EQ(soc_mmu_init(0), BCM_E_INIT);
    EXPECT_EQ(soc_misc_init(0), 0);
    EXPECT_EQ(bcm_init(0), BCM_E_INIT);
    EXPECT_EQ(soc_l2x_start(0, 0, 1000), BCM_E_INIT);
    EXPECT_EQ(soc_mmu_init(0), 0);
    EXPECT_EQ(soc_l2x_start(0, 0, -1), BCM_E_PARAM);
    EXPECT_EQ(soc_l2x_start(0, 0, 1000), 0);
    EXPECT_EQ(bcmx_device_attach(0), BCM_E_INIT);
    EXPECT_EQ(bcm_init(1), BCM_E_UNIT);
    EXPECT_EQ(bcm_init(0), 0);
    EXPECT_EQ(bcmx_device_attach(1), BCM_E_UNIT);
    EXPECT_EQ(bcmx_device_attach(0), 0);
    EXPECT_EQ(bcmx_device_attach(0), BCM_E_EXISTS);
}

TEST_F(StartUp, ALostUnitTakesItsPortsWithIt)
{
    initialise();
    ASSERT_EQ(bcmx_device_attach(0), 0);
    EXPECT_EQ(soc_cm_device_destroy(0), 0);
    EXPECT_FALSE(attached());
    EXPECT_EQ(bcmx_lport_bcm_port(kFirstLport), BCM_E_PORT);
    EXPECT_EQ(bcm_init(0), BCM_E_UNIT);
    EXPECT_EQ(soc_cm_device_destroy(0), BCM_E_UNIT);
}

TEST_F(StartUp, PortsAreOfferedInRisingOrderWithTheirKinds)
{
    static std::string offers;
    set_property("pbmp_xport_xe.0", "0x3c000000");
    initialise();
    bcmx_uport_create_callback_set(
        [](bcmx_lport_t lport, int unit, bcm_port_t port, uint32_t flags) {
            EXPECT_EQ(unit, 0);
            EXPECT_EQ(lport, kFirstLport + port);
            offers += std::to_string(port) + ":" + std::to_string(flags) + " ";
            return port == 2 ? -1 : port == 0 ? kCpuUserPort : port - 1;
        });
    ASSERT_EQ(bcmx_device_attach(0), 0);
    EXPECT_EQ(offers.substr(0, 15), "0:9 1:33 2:33 3");
    EXPECT_NE(offers.find(" 25:33 26:65 27:65 28:65 29:65 30:33 "), std::string::npos);
    EXPECT_EQ(offers.substr(offers.size() - 6), "53:33 ");
    EXPECT_EQ(bcmx_lport_bcm_port(kFirstLport + 2), BCM_E_PORT) << "a refused port";
    EXPECT_EQ(bcmx_modid_port_to_lport(0, 2), BCMX_LPORT_INVALID);
    EXPECT_EQ(bcmx_modid_port_to_lport(0, 3), kFirstLport + 3);
    EXPECT_EQ(bcmx_modid_port_to_lport(1, 3), BCMX_LPORT_INVALID);
    EXPECT_EQ(user_port_of(3), 2);
    EXPECT_EQ(chip_port_of(kCpuUserPort), 0);
    EXPECT_EQ(chip_port_of(1), -1);
}

TEST_F(StartUp, WithoutACallbackEveryPortIsAccepted)
{
    initialise();
    bcmx_uport_create_callback_set(nullptr);
    ASSERT_EQ(bcmx_device_attach(0), 0);
    EXPECT_EQ(bcmx_lport_bcm_unit(kFirstLport + 53), 0);
    EXPECT_EQ(chip_port_of(0), 1);
}

TEST_F(StartUp, TheUnitsPortsAreByKind)
{
    set_property("pbmp_xport_xe", "0x3c000000");
    initialise();
    bcm_port_config_t config{};
    EXPECT_EQ(bcm_port_config_get(0, nullptr), BCM_E_PARAM);
    ASSERT_EQ(bcm_port_config_get(0, &config), 0);
    EXPECT_EQ(config.xe.pbits[0], 0x3c000000u);
    EXPECT_EQ(config.ge.pbits[0], 0xc3fffffeu);
    EXPECT_EQ(config.port.pbits[0], 0xfffffffeu);
    EXPECT_EQ(config.port.pbits[1], 0x003fffffu);
    EXPECT_EQ(config.all.pbits[0], 0xffffffffu);
    EXPECT_EQ(config.cpu.pbits[0], 1u);
    EXPECT_EQ(config.fe.pbits[0], 0u);
}

TEST_F(StartUp, FeaturesAreThoseOfTheProfile)
{
    EXPECT_NE(soc_feature(0, soc_feature_arl_hashed), 0);
    EXPECT_EQ(soc_feature(0, soc_feature_led_data_offset_a0), 0);
    EXPECT_EQ(soc_feature(1, soc_feature_arl_hashed), 0);
    Profile profile;
    profile.l2_shadow = false;
    profile.led_ram_at_160 = true;
    set_profile(profile);
    EXPECT_EQ(soc_feature(0, soc_feature_arl_hashed), 0);
    EXPECT_NE(soc_feature(0, soc_feature_led_data_offset_a0), 0);
}

TEST_F(StartUp, AProfileIsForACardThatIsDown)
{
    start_manager();
    ASSERT_EQ(soc_cm_device_create(kSwitch, 1, nullptr), 0);
    EXPECT_FALSE(set_profile(Profile{}));
}

TEST_F(StartUp, TablesHaveTheCapacitiesOfTheProfile)
{
    Profile profile;
    profile.macs = 1;
    profile.trunks = 2;
    set_profile(profile);
    bring_up();
    bcmx_l2_addr_t entry{};
    entry.lport = kFirstLport;
    EXPECT_EQ(bcmx_l2_addr_add(&entry, nullptr), 0);
    entry.mac[5] = 2;
    EXPECT_EQ(bcmx_l2_addr_add(&entry, nullptr), BCM_E_FULL);
    EXPECT_EQ(bcmx_trunk_create_id(1), 0);
    EXPECT_EQ(bcmx_trunk_create_id(2), BCM_E_PARAM);
}

} // namespace
