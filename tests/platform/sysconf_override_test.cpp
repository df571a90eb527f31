// A configuration that replaces the ids of a device: this program's hook is used for the SDK's.
#include <gtest/gtest.h>
#include <sysconf/sysconf.h>

#include "platform/sysconf.h"
#include "vexosim/calls.h"
#include "vexosim/clock.h"

extern "C" int sysconf_chip_override(int dev, uint16_t* device_id, uint8_t* revision_id)
{
    EXPECT_EQ(dev, 0);
    EXPECT_EQ(*device_id, 0x5654);
    EXPECT_EQ(*revision_id, 1);
    *revision_id = 9;
    return -1; // deliberately of no consequence
}

TEST(SysconfOverride, TheProbeUsesTheIdsOfTheConfiguration)
{
    vexosim::use_manual_clock();
    vexosim::log_calls(true);
    vexo_sysconf_init();
    vexosim::clear_calls();
    EXPECT_EQ(vexo_sysconf_probe(), 0);
    EXPECT_EQ(vexosim::calls(), "linux_bde_create({be_pio=1, be_packet=0, be_other=1}, out)\n"
                                "soc_cm_device_supported(0x5654, 9)\n"
                                "soc_cm_get_id_driver(0x5654, 9, out, out)\n"
                                "soc_cm_device_create(0x5654, 9, null)\n");
}
