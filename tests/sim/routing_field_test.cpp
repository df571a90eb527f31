// Field entries and routing: who has the last word.
#include "tests/sim/field_path.h"
#include "tests/sim/routing_path.h"

namespace vexosim {
namespace {

/// An entry for all that arrives at port 1.
struct RoutingAndField : RoutingPath {
    RoutingAndField() { host(kFar4, hop(2, 3)); }

    void entry(const FieldAction& action)
    {
        FieldSet fields;
        fields.fields.set(bcmFieldQualifyInPort);
        int group = 0, id = 0;
        ASSERT_EQ(chip.field.create_group(fields, 0, &group), 0);
        ASSERT_EQ(chip.field.create_entry(group, &id), 0);
        ASSERT_EQ(chip.field.qualify(id, is(bcmFieldQualifyInPort, 1)), 0);
        ASSERT_EQ(chip.field.add_action(id, action), 0);
        ASSERT_EQ(chip.field.install(id), 0);
    }
    const Frame packet = to_router4(kFar4);
};

TEST_F(RoutingAndField, ADropWins)
{
    entry(kDropIt);
    EXPECT_EQ(send(1, packet), "drop:field_drop");
}

TEST_F(RoutingAndField, ATrapWins)
{
    entry(kTrapIt);
    EXPECT_EQ(cpu_reason(packet), "field entry");
}

TEST_F(RoutingAndField, ARedirectedFrameIsNotRouted)
{
    entry(redirect({2}));
    EXPECT_EQ(sent(packet, 2), packet);
    EXPECT_EQ(send(1, packet), "2");
    EXPECT_FALSE(chip.l3_hosts.find(IpAddress::from_ip4(kFar4))->hit);
}

TEST_F(RoutingAndField, AFrameThatIsLoopedBackIsNotRouted)
{
    entry(act(bcmFieldActionLoopback));
    EXPECT_EQ(sent(packet, 1), packet);
}

TEST_F(RoutingAndField, AMaskHoldsForWhatIsRouted)
{
    entry(act_on(bcmFieldActionEgressMask, {3}));
    EXPECT_EQ(send(1, packet), "drop:field_no_port");
}

TEST_F(RoutingAndField, NewAddressesAndTosComeOnTopOfRouting)
{
    entry(set_mac(bcmFieldActionSrcMacNew, kHostC));
    entry(act(bcmFieldActionTosNew, 0xb8));
    Frame expected = packet;
    store_mac(kNextHop, expected.data());
    store_mac(kHostC, expected.data() + 6);
    expected[15] = 0xb8;
    expected[22] = 63;
    EXPECT_EQ(sent(packet, 3), checked(expected));
}

TEST_F(RoutingAndField, ANewVlanTakesThePlaceOfTheNextHops)
{
    entry(act(bcmFieldActionOuterVlanNew, 30));
    EXPECT_EQ(send(1, packet), "drop:egress_not_member");
    chip.vlans.add_ports(30, {3}, {});
    EXPECT_EQ(send(1, packet), "3:v30");
}

TEST_F(RoutingAndField, ANewPriorityIsSent)
{
    host(kFar4, hop(2, 4));
    entry(act(bcmFieldActionOuterVlanPrioNew, 5));
    EXPECT_EQ(load16(sent(packet, 4), 14), 0xa014u);
}

} // namespace
} // namespace vexosim
