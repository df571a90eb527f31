#include "platform/sysconf.h"

#include <bcm/error.h>
#include <gtest/gtest.h>
#include <sal/config.h>
#include <soc/cm.h>

#include <functional>

#include "vexosim/calls.h"
#include "vexosim/card.h"
#include "vexosim/clock.h"
#include "vexosim/faults.h"
#include "vexosim/profile.h"

namespace {

using vexosim::BusDevice;
using vexosim::Profile;

std::size_t count(const std::string& text, const std::string& part)
{
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

const char* const device_0 = "sysconf_chip_override(0, out, out)\n"
                             "soc_cm_device_supported(0x5654, 1)\n"
                             "soc_cm_get_id_driver(0x5654, 1, out, out)\n";

/// An SDK whose configuration manager runs, and the calls written down.
struct Sysconf : testing::Test {
    Sysconf()
    {
        vexosim::use_manual_clock();
        vexosim::log_calls(true);
        vexo_sysconf_init();
        vexosim::clear_calls();
    }

    static void set_devices(std::vector<BusDevice> devices)
    {
        Profile profile = vexosim::profile();
        profile.devices = std::move(devices);
        vexosim::set_profile(profile);
    }

    /// The whole way to an attached unit 0.
    static void attach()
    {
        vexo_sysconf_probe();
        vexo_sysconf_attach(0);
        vexosim::clear_calls();
    }
};

TEST_F(Sysconf, StartsTheManagerWithTheSdksOwnDiagnostics)
{
    EXPECT_EQ(vexo_sysconf_init(), 0);
    EXPECT_EQ(vexosim::calls(), "sysconf_debug_vectors_get(out)\nsoc_cm_init(out)\n");
}

TEST_F(Sysconf, AnyFailureToStartTheManagerIsMinusOne)
{
    for (const char* call : {"sysconf_debug_vectors_get", "soc_cm_init"}) {
        for (int code : {-4, 4}) {
            vexosim::inject({.call = call, .code = code});
            EXPECT_EQ(vexo_sysconf_init(), -1) << call;
            vexosim::clear_faults();
        }
    }
}

TEST_F(Sysconf, MakesTheBusDriverForTheCardsByteOrder)
{
    EXPECT_EQ(bde, nullptr);
    EXPECT_EQ(bde_create(), 0);
    EXPECT_NE(bde, nullptr);
    EXPECT_EQ(vexosim::calls(), "linux_bde_create({be_pio=1, be_packet=0, be_other=1}, out)\n");
}

TEST_F(Sysconf, HandsOnWhatTheBusDriversCreationReturns)
{
    for (int code : {-3, 3}) {
        vexosim::inject({.call = "linux_bde_create", .code = code});
        EXPECT_EQ(bde_create(), code);
    }
}

TEST_F(Sysconf, ProbesTheOneDevice)
{
    EXPECT_EQ(vexo_sysconf_probe(), 0);
    EXPECT_EQ(vexosim::all_calls(),
              std::string("linux_bde_create({be_pio=1, be_packet=0, be_other=1}, out)\n"
                          "bde.num_devices(0)\n"
                          "bde.get_dev(0)\n") +
                  "sysconf_chip_override(0, out, out)\n"
                  "soc_cm_device_supported(0x5654, 1)\n"
                  "bde.get_dev(0)\n"
                  "soc_cm_get_id_driver(0x5654, 1, out, out)\n"
                  "sal_memory_check(pointer)\n"
                  "soc_cm_device_create(0x5654, 1, null)\n"
                  "bde.num_devices(0)\n");
}

TEST_F(Sysconf, ASecondProbeTouchesNothing)
{
    vexo_sysconf_probe();
    vexosim::clear_calls();
    EXPECT_EQ(vexo_sysconf_probe(), -1);
    EXPECT_EQ(vexosim::all_calls(), "");
}

TEST_F(Sysconf, AProbeThatFailedIsTheOnlyOneToo)
{
    vexosim::inject({.call = "linux_bde_create", .code = -9});
    EXPECT_EQ(vexo_sysconf_probe(), -9);
    EXPECT_EQ(vexo_sysconf_probe(), -1);
}

TEST_F(Sysconf, AProbeReturnsWhateverElseThanZeroTheBusDriverGave)
{
    vexosim::inject({.call = "linux_bde_create", .code = 9});
    EXPECT_EQ(vexo_sysconf_probe(), 9);
    EXPECT_EQ(count(vexosim::all_calls(), "\n"), 1u);
}

TEST_F(Sysconf, ProbesTheFirst18DevicesOfMore)
{
    set_devices(std::vector<BusDevice>(20));
    EXPECT_EQ(vexo_sysconf_probe(), 0);
    EXPECT_EQ(count(vexosim::calls(), "soc_cm_device_create("), 18u);
    EXPECT_EQ(count(vexosim::all_calls(), "bde.get_dev(18)"), 0u);
}

TEST_F(Sysconf, AnEmptyBusIsNoFailure)
{
    set_devices({});
    EXPECT_EQ(vexo_sysconf_probe(), 0);
    EXPECT_EQ(count(vexosim::calls(), "\n"), 1u);
    EXPECT_EQ(vexo_sysconf_attach(0), -1);
}

TEST_F(Sysconf, StopsAtADeviceThatTheSdkDoesNotSupport)
{
    BusDevice other;
    other.id = 0x1234;
    set_devices({BusDevice{}, other, BusDevice{}});
    EXPECT_EQ(vexo_sysconf_probe(), 0);
    EXPECT_EQ(vexosim::calls().substr(vexosim::calls().find("soc_cm_device_create")),
              "soc_cm_device_create(0x5654, 1, null)\n"
              "sysconf_chip_override(1, out, out)\n"
              "soc_cm_device_supported(0x1234, 1)\n");
}

TEST_F(Sysconf, StopsAtADeviceThatDoesNotAnswer)
{
    BusDevice silent;
    silent.answers = false;
    set_devices({silent, BusDevice{}});
    EXPECT_EQ(vexo_sysconf_probe(), 0);
    EXPECT_EQ(vexosim::calls(),
              std::string("linux_bde_create({be_pio=1, be_packet=0, be_other=1}, out)\n") +
                  device_0);
    EXPECT_EQ(vexo_sysconf_attach(0), -1); // no unit was made
}

TEST_F(Sysconf, ADeviceWithoutMappedRegistersIsNotAsked)
{
    BusDevice unmapped;
    unmapped.registers_mapped = false;
    unmapped.answers = false;
    set_devices({unmapped});
    EXPECT_EQ(vexo_sysconf_probe(), 0);
    EXPECT_EQ(count(vexosim::all_calls(), "sal_memory_check"), 0u);
    EXPECT_EQ(count(vexosim::calls(), "soc_cm_device_create(0x5654, 1, null)"), 1u);
}

TEST_F(Sysconf, ADeviceWhoseDriverIdsAreUnknownIsTakenAllTheSame)
{
    vexosim::inject({.call = "soc_cm_get_id_driver"});
    EXPECT_EQ(vexo_sysconf_probe(), 0);
    EXPECT_EQ(count(vexosim::calls(), "soc_cm_device_create(0x5654, 1, null)"), 1u);
}

TEST_F(Sysconf, AUnitMustHaveTheNumberOfItsDevice)
{
    set_devices(std::vector<BusDevice>(3));
    vexosim::inject({.call = "soc_cm_device_create", .nth = 2, .code = 2});
    EXPECT_EQ(vexo_sysconf_probe(), -1);
    EXPECT_EQ(count(vexosim::calls(), "soc_cm_device_create("), 2u);
}

TEST_F(Sysconf, AUnitThatCannotBeMadeFailsTheProbe)
{
    vexosim::inject({.call = "soc_cm_device_create", .code = -14});
    EXPECT_EQ(vexo_sysconf_probe(), -1);
}

TEST_F(Sysconf, AUnitThatIsNotOnTheBusIsNeitherAttachedNorForgotten)
{
    vexo_sysconf_probe();
    vexosim::clear_calls();
    for (int unit : {-1, 1, 99}) {
        EXPECT_EQ(vexo_sysconf_attach(unit), -1);
        EXPECT_EQ(vexo_sysconf_detach(unit), -1);
    }
    EXPECT_EQ(vexosim::calls(), "");
}

TEST_F(Sysconf, NothingIsOnTheBusBeforeTheProbe)
{
    EXPECT_EQ(vexo_sysconf_attach(0), -1);
    EXPECT_EQ(vexo_sysconf_detach(0), -1);
    EXPECT_EQ(vexosim::all_calls(), "");
}

TEST_F(Sysconf, AttachAsksForTheBusFeaturesAndGivesTheVectors)
{
    vexo_sysconf_probe();
    vexosim::clear_calls();
    EXPECT_EQ(vexo_sysconf_attach(0), 0);
    EXPECT_EQ(vexosim::all_calls(), "bde.num_devices(0)\n"
                                    "bde.pci_bus_features(0, out, out, out)\n"
                                    "bde.get_dev(0)\n"
                                    "soc_cm_device_init(0, pointer)\n");
}

TEST_F(Sysconf, OnlyANegativeResultFailsTheAttach)
{
    vexo_sysconf_probe();
    vexosim::inject({.call = "soc_cm_device_init", .code = -17});
    EXPECT_EQ(vexo_sysconf_attach(0), -1);
    vexosim::clear_faults();
    vexosim::inject({.call = "soc_cm_device_init", .code = 17});
    EXPECT_EQ(vexo_sysconf_attach(0), 0);
}

TEST_F(Sysconf, DetachReturnsWhatTheSdkReturns)
{
    attach();
    vexosim::inject({.call = "soc_cm_device_destroy", .code = 5});
    EXPECT_EQ(vexo_sysconf_detach(0), 5);
    EXPECT_EQ(vexosim::calls(), "soc_cm_device_destroy(0)\n");
    vexosim::clear_faults();
    EXPECT_EQ(vexo_sysconf_detach(0), 0);
    EXPECT_EQ(vexo_sysconf_detach(0), BCM_E_UNIT);
}

TEST_F(Sysconf, ThePropertyLookUpFindsNothingButTheSdksDoes)
{
    attach();
    vexosim::set_property("colour", "blue");
    EXPECT_EQ(vexo_sysconf_get_property("colour"), nullptr);
    EXPECT_EQ(vexosim::all_calls(), "sal_config_get(\"colour\")\n");
    EXPECT_STREQ(CMVEC(0).config_var_get(&CMDEV(0).dev, "colour"), "blue");
    EXPECT_EQ(CMVEC(0).config_var_get(&CMDEV(0).dev, "shape"), nullptr);
}

/// The routines of an attached unit 0, and what they ask of the bus driver.
struct Vectors : Sysconf {
    Vectors()
    {
        attach();
        dev = &CMDEV(0).dev;
    }

    static void expect_call(const std::string& line, const std::function<void()>& act)
    {
        vexosim::clear_calls();
        act();
        EXPECT_EQ(vexosim::all_calls(), line);
    }

    const soc_cm_device_vectors_t& vec = CMVEC(0);
    soc_cm_dev_t* dev;
};

void on_interrupt(void*) {}

TEST_F(Vectors, HaveTheBaseAddressOfTheBusDriver)
{
    EXPECT_NE(vec.base_address, 0u);
    EXPECT_EQ(vec.base_address, bde->get_dev(0)->base_address);
}

TEST_F(Vectors, ReadAndWriteRegisters)
{
    EXPECT_EQ(vec.write(dev, 0x1C00, 0x5A), 0);
    EXPECT_EQ(vec.read(dev, 0x1C00), 0x5Au);
    expect_call("bde.read(0, 0x1c04)\n", [&] { vec.read(dev, 0x1C04); });
    expect_call("bde.write(0, 0x1c04, 0x11)\n", [&] { vec.write(dev, 0x1C04, 0x11); });
    vexosim::inject({.call = "bde.write", .code = -6});
    EXPECT_EQ(vec.write(dev, 0x1C00, 1), -6);
}

TEST_F(Vectors, ReadAndWritePciConfiguration)
{
    EXPECT_EQ(vec.pci_conf_write(dev, 0x40, 0x77), 0);
    EXPECT_EQ(vec.pci_conf_read(dev, 0x40), 0x77u);
    expect_call("bde.pci_conf_read(0, 0x44)\n", [&] { vec.pci_conf_read(dev, 0x44); });
    expect_call("bde.pci_conf_write(0, 0x44, 0x11)\n", [&] { vec.pci_conf_write(dev, 0x44, 17); });
}

TEST_F(Vectors, ConnectInterruptsAndLeaveThemConnected)
{
    expect_call("bde.interrupt_connect(0, handler, null)\n",
                [&] { EXPECT_EQ(vec.interrupt_connect(dev, on_interrupt, nullptr), 0); });
    expect_call("", [&] { EXPECT_EQ(vec.interrupt_disconnect(dev), 0); });
}

TEST_F(Vectors, AllocateAndFreeSharedMemory)
{
    void* memory = vec.salloc(dev, 100, "test");
    EXPECT_NE(memory, nullptr);
    EXPECT_EQ(vexosim::live_dma_buffers(), 1u);
    vec.sfree(dev, memory);
    EXPECT_EQ(vexosim::live_dma_buffers(), 0u);
    expect_call("bde.salloc(0, 0, \"none\")\n",
                [&] { EXPECT_EQ(vec.salloc(dev, 0, "none"), nullptr); });
}

TEST_F(Vectors, FlushAndInvalidateTheCache)
{
    vexosim::inject({.call = "bde.sflush", .code = 3});
    vexosim::inject({.call = "bde.sinval", .code = 4});
    expect_call("bde.sflush(0, null, 8)\n", [&] { EXPECT_EQ(vec.sflush(dev, nullptr, 8), 3); });
    expect_call("bde.sinval(0, null, 9)\n", [&] { EXPECT_EQ(vec.sinval(dev, nullptr, 9), 4); });
}

TEST_F(Vectors, TranslateAddresses)
{
    int here = 0;
    const uintptr_t physical = vec.l2p(dev, &here);
    EXPECT_EQ(physical, bde->l2p(0, &here));
    EXPECT_EQ(vec.p2l(dev, physical), &here);
    EXPECT_EQ(count(vexosim::all_calls(), "bde.l2p(0,"), 2u);
    EXPECT_EQ(count(vexosim::all_calls(), "bde.p2l(0,"), 1u);
}

TEST_F(Vectors, UseTheNumberOfTheirOwnUnit)
{
    soc_cm_dev_t third = {3, nullptr};
    expect_call("bde.read(3, 8)\n", [&] { vec.read(&third, 8); });
    expect_call("bde.pci_conf_read(3, 8)\n", [&] { vec.pci_conf_read(&third, 8); });
}

TEST_F(Sysconf, WhatTheBusDriverLacksAnswersZero)
{
    Profile profile = vexosim::profile();
    profile.bus_sflush = profile.bus_sinval = profile.bus_l2p = profile.bus_p2l = false;
    vexosim::set_profile(profile);
    attach();
    soc_cm_dev_t* dev = &CMDEV(0).dev;
    int here = 0;
    EXPECT_EQ(CMVEC(0).sflush(dev, &here, 4), 0);
    EXPECT_EQ(CMVEC(0).sinval(dev, &here, 4), 0);
    EXPECT_EQ(CMVEC(0).l2p(dev, &here), 0u);
    EXPECT_EQ(CMVEC(0).p2l(dev, 4), nullptr);
    EXPECT_EQ(vexosim::all_calls(), "");
}

} // namespace
