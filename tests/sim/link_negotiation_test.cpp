// What becomes of a link between a port and each kind of partner.
#include <gtest/gtest.h>

#include <bcm/port.h>

#include "sim/chip/negotiation.h"
#include "vexosim/partner.h"

namespace vexosim {
namespace {

constexpr std::uint32_t k10 = BCM_PORT_ABILITY_10MB, k100 = BCM_PORT_ABILITY_100MB,
                        k1000 = BCM_PORT_ABILITY_1000MB, k10G = BCM_PORT_ABILITY_10GB;
constexpr std::uint32_t kTx = BCM_PORT_ABILITY_PAUSE_TX, kRx = BCM_PORT_ABILITY_PAUSE_RX,
                        kAsymm = BCM_PORT_ABILITY_PAUSE_ASYMM;

PortAbility negotiating(std::uint32_t half, std::uint32_t full, std::uint32_t pause = 0)
{
    return {half, full, pause, 0, BCM_PORT_ABILITY_AUTONEG};
}

PortAbility fixed(std::uint32_t half, std::uint32_t full)
{
    return {half, full, 0, 0, 0};
}

PortConfig port_that_advertises(const PortAbility& advert)
{
    PortConfig port;
    port.autoneg = true;
    port.advert = advert;
    return port;
}

PortConfig port_at(int speed, bool full)
{
    PortConfig port;
    port.speed = speed;
    port.duplex_full = full;
    return port;
}

const PortAbility kCopper = PortTable().local_ability(1), kFibre = PortTable().local_ability(26);
const PortConfig kCopperPort = port_that_advertises(kCopper),
                 kFibrePort = port_that_advertises(kFibre);

std::string text(const LinkState& link)
{
    if (!link.up)
        return "down";
    return std::to_string(link.speed) + (link.full_duplex ? " full" : " half") +
           (link.pause_tx ? " tx" : "") + (link.pause_rx ? " rx" : "");
}

struct Case {
    const char* what;
    PortConfig port;
    PortAbility partner;
    const char* link;
};

TEST(Negotiation, FindsTheBestThatBothCan)
{
    const Case cases[] = {
        {"twins", kCopperPort, kCopper, "1000 full tx rx"},
        {"10 Gb/s twins", kFibrePort, kFibre, "10000 full tx rx"},
        {"1 Gb/s at 10 Gb/s", kFibrePort, negotiating(0, k1000), "1000 full"},
        {"100 is the best", kCopperPort, negotiating(k10 | k100, k10 | k100), "100 full"},
        {"full goes before half", kCopperPort, negotiating(k100, k100), "100 full"},
        {"speed goes before duplex", kCopperPort, negotiating(k100, k10), "100 half"},
        {"only half", kCopperPort, negotiating(k10, 0), "10 half"},
        {"the port advertises less", port_that_advertises(negotiating(0, k10)), kCopper, "10 full"},
        {"duplexes do not meet", port_that_advertises(negotiating(0, k100)), negotiating(k100, 0),
         "down"},
        {"no common speed", kCopperPort, negotiating(0, k10G), "down"},
        {"no common speed the other way", kFibrePort, negotiating(0, k100), "down"},
        {"nothing advertised", port_that_advertises({}), kCopper, "down"},
        {"a partner that can nothing", kCopperPort, negotiating(0, 0), "down"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(text(negotiate(c.port, c.partner)), c.link) << c.what;
}

TEST(Negotiation, OfOneThatDoesNotOnlyTheSpeedIsFound)
{
    const Case cases[] = {
        {"100 full is taken for half", kCopperPort, fixed(0, k100), "100 half"},
        {"10 half", kCopperPort, fixed(k10, 0), "10 half"},
        {"1 Gb/s", kCopperPort, fixed(0, k1000), "1000 full"},
        {"10 Gb/s", kFibrePort, fixed(0, k10G), "10000 full"},
        {"a speed that the port lacks", kFibrePort, fixed(0, k100), "down"},
        {"a speed that it does not advertise", port_that_advertises(negotiating(0, k1000)),
         fixed(0, k100), "down"},
        {"none", kCopperPort, fixed(0, 0), "down"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(text(negotiate(c.port, c.partner)), c.link) << c.what;
}

TEST(Negotiation, APortThatDoesNotKeepsItsSpeedAndDuplex)
{
    const Case cases[] = {
        {"a partner that follows", port_at(100, true), kCopper, "100 full"},
        {"half", port_at(10, false), kCopper, "10 half"},
        {"a partner without the speed", port_at(1000, true), negotiating(k100, k100), "down"},
        {"both fixed", port_at(1000, true), fixed(0, k1000), "1000 full"},
        {"both fixed, the duplex is not seen", port_at(100, false), fixed(0, k100), "100 half"},
        {"both fixed, at two speeds", port_at(1000, true), fixed(0, k100), "down"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(text(negotiate(c.port, c.partner)), c.link) << c.what;
}

TEST(Negotiation, PauseFollowsBothAdvertisements)
{
    struct PauseCase {
        std::uint32_t here, there;
        const char* link;
    };
    const PauseCase cases[] = {
        {kTx | kRx, kTx | kRx, "1000 full tx rx"},
        {0, kTx | kRx | kAsymm, "1000 full"},
        {kTx | kRx | kAsymm, 0, "1000 full"},
        {kTx, kTx | kRx | kAsymm, "1000 full tx"},
        {kTx, kRx, "1000 full tx"},
        {kTx, kTx | kRx, "1000 full"},
        {kTx, kTx, "1000 full"},
        {kRx, kTx, "1000 full rx"},
        {kTx | kRx | kAsymm, kTx, "1000 full rx"},
        {kTx | kRx, kTx, "1000 full"},
        {kRx, kRx, "1000 full tx rx"},
    };
    for (const PauseCase& c : cases)
        EXPECT_EQ(text(negotiate(port_that_advertises(negotiating(0, k1000, c.here)),
                                 negotiating(0, k1000, c.there))),
                  c.link)
            << c.here << " with " << c.there;
}

TEST(Negotiation, ThereIsNoPauseInHalfDuplex)
{
    EXPECT_EQ(text(negotiate(kCopperPort, negotiating(k100, 0, kTx | kRx))), "100 half");
}

TEST(Negotiation, PauseByHandIsNotNegotiated)
{
    PortConfig port = kCopperPort;
    port.pause_by_hand = true;
    port.pause_tx = true;
    EXPECT_EQ(text(negotiate(port, kCopper)), "1000 full tx");
}

TEST(Negotiation, ThePortKnowsWhatItsPartnerTellsOrShows)
{
    EXPECT_EQ(negotiate(kCopperPort, kCopper).remote, kCopper);
    EXPECT_EQ(negotiate(kCopperPort, fixed(0, k100)).remote, fixed(k100, 0));
    EXPECT_EQ(negotiate(port_at(100, true), kCopper).remote, PortAbility{});
}

TEST(LinkPartnerOf, AFixedSpeedHasThatSpeedAlone)
{
    EXPECT_EQ(LinkPartner::fixed(100), (LinkPartner{false, 0, k100, 0}));
    EXPECT_EQ(LinkPartner::fixed(10, false), (LinkPartner{false, k10, 0, 0}));
    EXPECT_EQ(LinkPartner::fixed(10000), (LinkPartner{false, 0, k10G, 0}));
    EXPECT_EQ(LinkPartner::fixed(2500), (LinkPartner{false, 0, 0, 0}));
}

TEST(PortTableSpeed, ASpeedOrDuplexByHandEndsAutoNegotiation)
{
    PortTable ports;
    ports.set_autoneg(1, 1);
    EXPECT_EQ(ports.set_speed(1, 100), 0);
    EXPECT_FALSE(ports[1].autoneg);
    ports.set_autoneg(1, 1);
    EXPECT_EQ(ports.set_duplex(1, 0), 0);
    EXPECT_FALSE(ports[1].autoneg);
    ports.set_autoneg(1, 1);
    EXPECT_EQ(ports.set_speed(1, 2500), BCM_E_PARAM);
    EXPECT_EQ(ports.set_duplex(1, 2), BCM_E_PARAM);
    EXPECT_TRUE(ports[1].autoneg);
}

} // namespace
} // namespace vexosim
