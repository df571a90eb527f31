// What the kit's own checks notice, and what they let pass.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <bcmx/lplist.h>
#include <bcmx/port.h>
#include <bcmx/vlan.h>
#include <unistd.h>

#include <iostream>

#include "tests/kit/kit.h"

namespace {

using KitOnABareCard = BareCardTest;
using KitOnAQuietCard = QuietCardTest;

struct Kit : CardTest {
    Kit()
    {
        sdk().create_vlan(10);
        sdk().add_ports_to_vlan(10, mps({1, 2}), mps({3}));
        clear_calls();
    }
};

TEST_F(KitOnABareCard, NothingIsUpUntilItIsBroughtUp)
{
    EXPECT_FALSE(attached());
    EXPECT_EQ(bring_up(), "");
    EXPECT_TRUE(attached());
    EXPECT_EQ(all_calls().substr(0, 16), "sal_core_init()\n");
}

TEST_F(KitOnABareCard, ABringUpCanBeMadeToFail)
{
    inject({.call = "bcm_init"});
    bring_up();
    EXPECT_FALSE(attached());
    EXPECT_EQ(calls().substr(calls().size() - 12), "bcm_init(0)\n");
}

TEST_F(KitOnAQuietCard, NoPortHasALinkBeforeTheFirstScan)
{
    EXPECT_EQ(ports_reached(broadcast(host1), 1), "none");
    expect_dropped(broadcast(host1), 1, "port_link_down");
}

TEST_F(Kit, AFrameThatLeavesThroughThePortsNamedIsAsExpected)
{
    expect_forwarded(broadcast(host1).tagged(10), 1, {2, 3});
    expect_copies(broadcast(host1).tagged(10, 3), 1,
                  {{2, broadcast(host1).tagged(10, 3)}, {3, broadcast(host1)}});
}

TEST_F(Kit, AMissingPortAndAnExtraPortAreNoticed)
{
    EXPECT_NONFATAL_FAILURE(expect_forwarded(broadcast(host1).tagged(10), 1, {2}), "2 3");
    EXPECT_NONFATAL_FAILURE(expect_forwarded(broadcast(host1).tagged(10), 1, {2, 3, 4}), "2 3 4");
}

TEST_F(Kit, AWrongTagIsNoticed)
{
    EXPECT_NONFATAL_FAILURE(
        expect_copies(broadcast(host1).tagged(10), 1,
                      {{2, broadcast(host1).tagged(10)}, {3, broadcast(host1).tagged(10)}}),
        "at port 3");
}

TEST_F(Kit, ADropHasOneReason)
{
    expect_dropped(broadcast(host1).tagged(11), 1, "vlan_unknown");
    EXPECT_NONFATAL_FAILURE(expect_dropped(broadcast(host1).tagged(11), 1, "not_member"),
                            "vlan_unknown");
}

TEST_F(Kit, CopiesForTheCpuAreSeen)
{
    expect_to_cpu(bpdu(host1), 1);
    expect_to_cpu(udp(host1, host2).tagged(10), 1, false);
    EXPECT_NONFATAL_FAILURE(expect_to_cpu(bpdu(host1), 1, false), "copies for the CPU");
}

TEST_F(Kit, AFramePushedIntoAWireArrivesWhenTheClockDrains)
{
    take_sent();
    wire(1).push(FrameView(broadcast(host1).tagged(10)));
    EXPECT_TRUE(take_sent().empty());
    drain();
    EXPECT_EQ(take_sent().size(), 2u);
}

TEST_F(Kit, CallsAreThoseSinceTheLastTime)
{
    sdk().delete_vlan(20);
    EXPECT_NE(take_calls(), "");
    EXPECT_EQ(take_calls(), "");
}

TEST_F(Kit, PrintedTextIsCapturedHoweverItIsPrinted)
{
    const std::string text = printed([] {
        std::printf("one\n");
        std::cout << "two" << std::endl;
        std::fflush(stdout);
        EXPECT_EQ(write(STDOUT_FILENO, "three\n", 6), 6);
    });
    EXPECT_EQ(text, "one\ntwo\nthree\n");
    EXPECT_EQ(printed([] {}), "");
}

TEST_F(Kit, TheCardIsTheSameAfterSomethingThatChangesNothing)
{
    const std::uint64_t before = chip_digest();
    EXPECT_EQ(bcmx_vlan_create(10), BCM_E_EXISTS);
    EXPECT_EQ(chip_digest(), before);
    bcmx_vlan_create(20);
    EXPECT_NE(chip_digest(), before);
}

bool read_speed_and_duplex(int& speed, int& duplex)
{
    int s = 0;
    int d = 0;
    if (bcmx_port_speed_get(kFirstLport + 1, &s) != 0 || bcmx_port_duplex_get(kFirstLport + 1, &d))
        return false;
    speed = s;
    duplex = d;
    return true;
}

TEST_F(Kit, ASweepAcceptsAnOperationThatFailsCleanly)
{
    int speed = -5;
    int duplex = -5;
    FaultSweep([&] { return read_speed_and_duplex(speed, duplex); })
        .output(speed)
        .output(duplex)
        .run();
    EXPECT_EQ(speed, 1000);
}

TEST_F(Kit, ASweepNoticesAResultThatHidesAFailure)
{
    EXPECT_NONFATAL_FAILURE(fault_sweep([] {
                                int speed = 0;
                                bcmx_port_speed_get(kFirstLport + 1, &speed);
                                return true;
                            }),
                            "with call 1 answering -1: bcmx_port_speed_get");
}

TEST_F(Kit, ASweepNoticesAnOutputWrittenOnFailure)
{
    int speed = -5;
    FaultSweep sweep([&] {
        bcmx_port_speed_get(kFirstLport + 1, &speed);
        int duplex = 0;
        return bcmx_port_duplex_get(kFirstLport + 1, &duplex) == 0;
    });
    sweep.output(speed).harmless("bcmx_port_speed_get");
    testing::TestPartResultArray failures;
    {
        testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ALL_THREADS, &failures);
        sweep.run();
    }
    EXPECT_GT(failures.size(), 0);
}

bool count_list(bool free_on_failure)
{
    bcmx_lplist_t list;
    if (bcmx_lplist_init(&list, 4, 0) != 0)
        return false;
    const bool added = bcmx_lplist_add(&list, kFirstLport) == 0;
    if (added || free_on_failure)
        bcmx_lplist_free(&list);
    else
        std::free(list.lp_ports); // not a leak of memory, but of a list
    return added;
}

TEST_F(Kit, ASweepNoticesAListThatIsLeft)
{
    FaultSweep([] { return count_list(true); }).spare("bcmx_lplist_free").run();
    EXPECT_EQ(live_lplists(), 0u);
    FaultSweep bad([] { return count_list(false); });
    testing::TestPartResultArray failures;
    {
        testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ALL_THREADS, &failures);
        bad.spare("bcmx_lplist_free").run();
    }
    EXPECT_GT(failures.size(), 0);
}

TEST_F(Kit, ASweepPutsTheChipBack)
{
    const std::uint64_t before = chip_digest();
    FaultSweep([] {
        return bcmx_vlan_create(20) == 0 && bcmx_port_speed_set(kFirstLport + 1, 100) == 0;
    }).run();
    bcmx_vlan_destroy(20);
    bcmx_port_speed_set(kFirstLport + 1, 1000);
    bcmx_port_autoneg_set(kFirstLport + 1, 1);
    EXPECT_EQ(chip_digest(), before);
}

} // namespace
