// What port operations do to links, against partners of several kinds.
#include "pktio/event_records.h"
#include "tests/kit/kit.h"
#include "vexosim/partner.h"

namespace {

std::string& told()
{
    static std::string text;
    return text;
}

void on_link(LinkStatus* status, Usp* port)
{
    static const char* const kSpeeds[] = {"?", "10", "100", "1000", "10000"};
    // A `Usp` counts ports from 1.
    told() += std::to_string(port->port() - 1) + (status->status() == 1 ? "+" : "-") +
              kSpeeds[status->speed()] + " ";
}

struct PortLinks : CardTest {
    const int xe = user_port_of(26);

    PortLinks()
    {
        EXPECT_TRUE(sdk().register_link_change_callback(on_link, nullptr));
        told().clear();
    }
    void partner(int port, const LinkPartner& device)
    {
        EXPECT_EQ(set_partner(port, device), "");
        scan();
    }
    static void scan()
    {
        printed([] { drain(); });
    }
    /// "up 1000 full tx rx", as the operations read it.
    std::string link(int port)
    {
        const Mp where = mp(static_cast<unsigned>(port));
        phy_state_t state = PHY_LINK_DOWN;
        speed_type_t speed{};
        duplex_type_t duplex{};
        unsigned rx = 9, tx = 9;
        EXPECT_TRUE(sdk().get_port_phy_state(where, state));
        EXPECT_TRUE(sdk().get_port_speed(where, speed));
        EXPECT_TRUE(sdk().get_port_duplex(where, duplex));
        EXPECT_TRUE(sdk().get_port_pause(where, rx, tx));
        static const char* const kSpeeds[] = {"?", "10", "100", "1000", "10000"};
        return std::string(state == PHY_LINK_UP ? "up " : "down ") + kSpeeds[speed] +
               (duplex == DUPLEX_FULL ? " full" : " half") + (tx != 0 ? " tx" : "") +
               (rx != 0 ? " rx" : "");
    }
    unsigned peer(int port)
    {
        port_ability_type_t ability{};
        EXPECT_TRUE(sdk().get_port_peer_ability(mp(static_cast<unsigned>(port)), ability));
        return ability;
    }
    void advertise(int port, unsigned bits)
    {
        EXPECT_TRUE(sdk().set_port_advertising_ability(mp(static_cast<unsigned>(port)),
                                                       static_cast<port_ability_type_t>(bits)));
        scan();
    }
};

TEST_F(PortLinks, APartnerThatCanAllRunsAtThePortsBest)
{
    EXPECT_EQ(link(3), "up 1000 full tx rx");
    EXPECT_EQ(link(xe), "up 10000 full tx rx");
    partner(3, LinkPartner::able());
    partner(xe, LinkPartner::able());
    EXPECT_EQ(link(3), "up 1000 full tx rx");
    EXPECT_EQ(link(xe), "up 10000 full tx rx");
    EXPECT_EQ(told(), "");
}

TEST_F(PortLinks, DisablingAPortTakesItsLinkDownAndTheCallbackHearsIt)
{
    EXPECT_TRUE(wire(3).link());
    EXPECT_TRUE(sdk().set_port_enable(mp(3), false));
    expect_dropped(udp(host1, host2), 3, "port_disabled");
    EXPECT_EQ(told(), "");
    scan();
    EXPECT_EQ(told(), "3-1000 ");
    EXPECT_EQ(link(3).substr(0, 4), "down");
    EXPECT_FALSE(wire(3).link()) << "the far end";
    EXPECT_TRUE(sdk().set_port_enable(mp(3), true));
    scan();
    EXPECT_EQ(told(), "3-1000 3+1000 ");
    EXPECT_TRUE(wire(3).link());
}

TEST_F(PortLinks, ADisabledPortIsSentNothing)
{
    EXPECT_TRUE(sdk().create_vlan(10));
    EXPECT_TRUE(sdk().add_ports_to_vlan(10, mps({3, 4, 5}), {}));
    const TestFrame frame = udp(host1, host2).tagged(10);
    expect_forwarded(frame, 4, {3, 5});
    EXPECT_TRUE(sdk().set_port_enable(mp(3), false));
    expect_forwarded(frame, 4, {5});
}

TEST_F(PortLinks, AdvertisingLessRunsSlower)
{
    advertise(3, PORT_ABILITY_100M_FULL);
    EXPECT_EQ(link(3), "up 100 full");
    advertise(3, PORT_ABILITY_10M_HALF | PORT_ABILITY_PAUSE_TX | PORT_ABILITY_PAUSE_RX);
    EXPECT_EQ(link(3), "up 10 half");
    EXPECT_EQ(told(), "") << "the link stayed up";
}

TEST_F(PortLinks, WithoutACommonAbilityThereIsNoLink)
{
    partner(3, {true, 0, 0x80, 0});
    EXPECT_EQ(told(), "3-1000 ");
    EXPECT_EQ(link(3), "down 1000 full tx rx") << "the last link's";
    EXPECT_FALSE(wire(3).link());
    expect_dropped(udp(host1, host2), 3, "port_link_down");
    partner(3, {true, 0x1, 0, 0});
    EXPECT_EQ(link(3), "up 10 half");
    EXPECT_EQ(told(), "3-1000 3+10 ");
    EXPECT_TRUE(wire(3).link());
}

TEST_F(PortLinks, APartnerOfFixedSpeedIsFollowedInHalfDuplex)
{
    partner(3, LinkPartner::fixed(100));
    EXPECT_EQ(link(3), "up 100 half");
    EXPECT_EQ(peer(3), unsigned{PORT_ABILITY_100M_HALF});
    partner(3, LinkPartner::fixed(1000));
    EXPECT_EQ(link(3), "up 1000 full");
    partner(xe, LinkPartner::fixed(100));
    EXPECT_EQ(link(xe).substr(0, 4), "down");
}

TEST_F(PortLinks, AFixedSpeedNeedsAPartnerThatHasIt)
{
    EXPECT_TRUE(sdk().set_port_speed(mp(3), SPEED_100M));
    scan();
    EXPECT_EQ(link(3), "up 100 full tx rx");
    bool autoneg = true;
    EXPECT_TRUE(sdk().get_port_autoneg(mp(3), autoneg));
    EXPECT_FALSE(autoneg);
    partner(3, LinkPartner::fixed(1000));
    EXPECT_EQ(link(3).substr(0, 4), "down");
    EXPECT_TRUE(sdk().set_port_speed(mp(3), SPEED_1G));
    scan();
    EXPECT_EQ(link(3).substr(0, 12), "up 1000 full");
}

TEST_F(PortLinks, AutoNegotiationTurnedOnAgainFindsTheBest)
{
    EXPECT_TRUE(sdk().set_port_speed(mp(3), SPEED_10M));
    EXPECT_TRUE(sdk().set_port_duplex(mp(3), DUPLEX_HALF));
    EXPECT_TRUE(sdk().set_port_pause(mp(3), 0, 0));
    scan();
    EXPECT_EQ(link(3), "up 10 half");
    EXPECT_TRUE(sdk().set_port_autoneg(mp(3), true));
    scan();
    EXPECT_EQ(link(3), "up 1000 full tx rx");
}

TEST_F(PortLinks, PauseByHandStaysUntilAutoNegotiationIsTurnedOn)
{
    EXPECT_TRUE(sdk().set_port_pause(mp(3), 1, 0));
    scan();
    EXPECT_EQ(link(3), "up 1000 full rx");
    EXPECT_TRUE(sdk().set_port_autoneg(mp(3), true));
    scan();
    EXPECT_EQ(link(3), "up 1000 full tx rx");
}

TEST_F(PortLinks, ThePeersAbilitiesAreThoseThatItAdvertises)
{
    partner(3, {true, 0, 0x2, 0x3});
    EXPECT_EQ(peer(3), unsigned{PORT_ABILITY_100M_FULL | PORT_ABILITY_AUTONEG |
                                PORT_ABILITY_PAUSE_TX | PORT_ABILITY_PAUSE_RX});
    EXPECT_EQ(link(3), "up 100 full tx rx");
    wire(3).set_far_end(false);
    scan();
    EXPECT_EQ(peer(3), unsigned{PORT_ABILITY_NONE});
}

TEST_F(PortLinks, APartnerNeedsAWireAndLeavesWithIt)
{
    EXPECT_EQ(set_partner(53, LinkPartner::able()), "port 53: no such port; wires go into ports 0 "
                                                    "to 52");
    partner(3, LinkPartner::fixed(10));
    EXPECT_EQ(link(3), "up 10 half");
    EXPECT_EQ(detach(3), "");
    EXPECT_EQ(set_partner(3, LinkPartner::able()), "port 3: nothing is attached");
    EXPECT_EQ(attach(3, "mem"), "");
    scan();
    EXPECT_EQ(link(3), "up 1000 full tx rx");
}

} // namespace
