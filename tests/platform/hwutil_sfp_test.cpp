// A daughter module with SFP ports. This program's sleep is used for the system's.
#include <gtest/gtest.h>

#include "platform/hwutil.h"
#include "vexosim/board.h"
#include "vexosim/calls.h"
#include "vexosim/clock.h"

namespace {

unsigned slept = 0;
std::string calls_at_first_sleep;

} // namespace

extern "C" unsigned sleep(unsigned seconds)
{
    if (slept == 0)
        calls_at_first_sleep = vexosim::all_calls();
    slept += seconds;
    return 0;
}

namespace {

/// A board with the module, time that stands still, and the calls written down.
struct HwutilSfp : testing::Test {
    HwutilSfp()
    {
        vexosim::board::enable();
        vexosim::board::select_daughter_module(1);
        vexosim::use_manual_clock();
        vexosim::log_calls(true);
    }
};

TEST_F(HwutilSfp, SetsUpTheExpanderAndResetsBothPhys)
{
    EXPECT_TRUE(vexo_hwutil_init());
    EXPECT_EQ(vexosim::board::i2c_log(), "7 write 7: 00\n"
                                         "7 read 3: ff\n"
                                         "7 write 3: fe\n"
                                         "7 write 3: ff\n"
                                         "7 read 3: ff\n"
                                         "7 write 3: fd\n"
                                         "7 write 3: ff\n");
    EXPECT_EQ(slept, 2u);
}

TEST_F(HwutilSfp, DoesSoAfterTheProbeAndBeforeTheXePortsAreNamed)
{
    vexo_hwutil_init();
    const std::string last = "soc_cm_get_id(0, out, out)\n";
    ASSERT_GT(calls_at_first_sleep.size(), last.size());
    EXPECT_EQ(calls_at_first_sleep.substr(calls_at_first_sleep.size() - last.size()), last);
}

TEST_F(HwutilSfp, AModuleThatCannotBePreparedDoesNotFailIt)
{
    vexosim::board::set_present("/dev/i2cDev", false);
    testing::internal::CaptureStdout();
    EXPECT_TRUE(vexo_hwutil_init());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "/dev/i2cDev Open Error!\n"
                                                      "/dev/i2cDev Open Error!\n"
                                                      "/dev/i2cDev Open Error!\n");
    EXPECT_EQ(slept, 0u);
}

} // namespace
