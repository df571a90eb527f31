// Tests of what one's own manager makes the card do: with the test kit, and without it.
#include <bcm/error.h>
#include <vexokit/kit.h>
#include <vexosim/board.h>
#include <vexosim/drops.h>
#include <vexosim/state.h>
#include <vexosim/trace.h>

namespace {

// What a manager does. Yours comes from its own library.
bool join(VexoSdkBase& card, unsigned vid, const std::list<Mp>& ports)
{
    return card.create_vlan(vid) && card.add_ports_to_vlan(vid, ports, {});
}

struct WithTheKit : CardTest {}; // a card that is up, with memory at every port

TEST_F(WithTheKit, AFrameStaysInItsVlan)
{
    ASSERT_TRUE(join(sdk(), 10, mps({1, 2, 3})));
    expect_forwarded(udp(host1, host2).tagged(10), 1, {2, 3});
    expect_dropped(udp(host1, host2).tagged(10), 4, "not_member");
}

TEST_F(WithTheKit, AManagerIsToldThatTheChipRefuses)
{
    inject({.call = "bcmx_vlan_port_add", .nth = 2, .code = BCM_E_FULL}); // the first is the CPU's
    EXPECT_FALSE(join(sdk(), 10, mps({1, 2})));
}

TEST(WithoutTheKit, AFrameStaysInItsVlan)
{
    use_manual_clock();
    board::enable();
    auto wire = std::make_unique<MemoryWire>();
    MemoryWire& port2 = *wire; // the card owns it until detach()
    ASSERT_EQ(attach(1, "mem"), "");
    ASSERT_EQ(attach(2, std::move(wire)), "");
    vexosdk_create_sdk_instance();
    drain(); // link scan finds the wires
    ASSERT_TRUE(join(*bcm_sdk, 10, {Mp(0, 1), Mp(0, 2)}));
    for (const Mp& port : {Mp(0, 1), Mp(0, 2)})
        ASSERT_TRUE(bcm_sdk->set_port_stp_state(port, STP_FORWARDING));

    const Frame frame = udp(host1, host2).tagged(10).bytes();
    EXPECT_NE(what_if(1, frame).find("tagged to 2"), std::string::npos) << what_if(1, frame);
    receive(1, frame);
    EXPECT_EQ(port2.sent(), std::vector<Frame>{frame});
    EXPECT_EQ(drop_counters().frame_drops(), 0u);
    EXPECT_EQ(check_conservation(), "");
}

} // namespace
