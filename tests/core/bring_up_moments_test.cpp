// What holds at single moments of a bring-up. This program's functions look and then hand on to the
// card's.
#include <bcmx/field.h>
#include <bcmx/mirror.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <soc/drv.h>

#include <functional>

#include "core/factory.h"
#include "flow/udf_pool.h"
#include "l2/stat_tables.h"
#include "platform/port_map.h"
#include "vexosim/clock.h"

namespace {

std::function<void()> at_led_program;
std::function<void()> at_mirror_init;
std::function<void()> at_trap_group;

template <class Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

void look(const std::function<void()>& at)
{
    if (at)
        at();
}

} // namespace

extern "C" int soc_ledproc_config(int unit, const uint8_t* program, int bytes)
{
    look(at_led_program);
    return next<int(int, const uint8_t*, int)>("soc_ledproc_config")(unit, program, bytes);
}

extern "C" int bcmx_mirror_init()
{
    look(at_mirror_init);
    return next<int()>("bcmx_mirror_init")();
}

extern "C" int bcmx_field_group_create_id(bcm_field_qset_t qset, int priority,
                                          bcm_field_group_t group)
{
    look(at_trap_group);
    return next<int(bcm_field_qset_t, int, bcm_field_group_t)>("bcmx_field_group_create_id")(
        qset, priority, group);
}

namespace {

int looks = 0;

TEST(BringUpMoments, TheModulePortTableIsFullWhenTheLedProgramIsLoaded)
{
    at_led_program = [] {
        EXPECT_EQ(vexo_user_port_to_module_port[53], Mp(3, 53));
        EXPECT_EQ(vexo_user_port_to_module_port[47], Mp(0, 47));
        ++looks;
    };
    vexosim::use_manual_clock();
    vexosdk_create_sdk_instance();
    EXPECT_EQ(looks, 1);
}

TEST(BringUpMoments, CounterTablesAreFilledBeforeMirroringStartsAndThePoolAfter)
{
    vexo_udf_available = 5;
    at_mirror_init = [] {
        EXPECT_EQ(stat_to_stat_val[76], 77);
        EXPECT_EQ(brief_to_port_stat[4], 3);
        EXPECT_EQ(vexo_udf_available, 5u);
        ++looks;
    };
    vexosim::use_manual_clock();
    vexosdk_create_sdk_instance();
    EXPECT_EQ(looks, 1);
}

TEST(BringUpMoments, ThePoolIsResetWhenTheTrapGroupIsMade)
{
    vexo_udf_available = 5;
    at_trap_group = [] {
        EXPECT_EQ(vexo_udf_available, 92u);
        EXPECT_EQ(vexo_udf_usage[0], 1);
        ++looks;
    };
    vexosim::use_manual_clock();
    vexosdk_create_sdk_instance();
    EXPECT_EQ(looks, 1);
}

} // namespace
