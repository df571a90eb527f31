#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <vector>

#include "pktio/event_records.h"

namespace {

using Bytes = std::vector<uint8_t>;

template <class T>
constexpr bool is_plain_value = !std::is_polymorphic_v<T> && std::is_copy_assignable_v<T>;

static_assert(is_plain_value<Packet> && is_plain_value<RxPacket> && is_plain_value<LinkStatus> &&
              is_plain_value<L2Addr>);
static_assert(std::is_base_of_v<Packet, RxPacket>);
static_assert(std::is_same_v<decltype(std::declval<Packet&>().set_data(Bytes())), int>);
static_assert(LCMGR_REPORT_MAC_UPDATE == 0 && LCMGR_REPORT_LINK_CHANGE == 1 &&
              LCMGR_REPORT_RX_PACKET == 2 && sizeof(lcmgr_report_event_t) == 4);

// Both forms are there to be called by name from outside.
template <class Class, class T, T (Class::*)(), T (Class::*)() const>
constexpr bool has_both_forms = true;
static_assert(has_both_forms<Packet, unsigned, &Packet::length, &Packet::length> &&
              has_both_forms<Packet, unsigned, &Packet::type, &Packet::type>);

// The plain structures are laid out for C clients.
static_assert(offsetof(usp_s, unit) == 0 && offsetof(usp_s, slot) == 4 &&
              offsetof(usp_s, port) == 8 && sizeof(usp_s) == 12 && std::is_trivial_v<usp_s>);
static_assert(offsetof(ctype_rx_packet_s, length) == 0 && offsetof(ctype_rx_packet_s, type) == 4 &&
              offsetof(ctype_rx_packet_s, data) == 8 &&
              offsetof(ctype_rx_packet_s, vlan) == 8 + sizeof(void*) &&
              offsetof(ctype_rx_packet_s, unit) == 12 + sizeof(void*) &&
              offsetof(ctype_rx_packet_s, slot) == 16 + sizeof(void*) &&
              offsetof(ctype_rx_packet_s, port) == 20 + sizeof(void*));
static_assert(offsetof(ctype_link_status_s, port) == 0 &&
              offsetof(ctype_link_status_s, status) == 12 &&
              offsetof(ctype_link_status_s, speed) == 16 &&
              offsetof(ctype_link_status_s, duplex) == 20 && sizeof(ctype_link_status_s) == 24);
static_assert(offsetof(ctype_l2_addr_s, flags) == 0 && offsetof(ctype_l2_addr_s, mac) == 4 &&
              offsetof(ctype_l2_addr_s, vlan) == 12 && offsetof(ctype_l2_addr_s, unit) == 16 &&
              offsetof(ctype_l2_addr_s, slot) == 20 && offsetof(ctype_l2_addr_s, port) == 24 &&
              offsetof(ctype_l2_addr_s, trunk) == 28 &&
              offsetof(ctype_l2_addr_s, trunk_sel) == 32 && offsetof(ctype_l2_addr_s, auth) == 36 &&
              offsetof(ctype_l2_addr_s, type) == 40 &&
              offsetof(ctype_l2_addr_s, learn_type) == 44 &&
              offsetof(ctype_l2_addr_s, is_trunk) == 48 && sizeof(ctype_l2_addr_s) == 52);
static_assert(std::is_trivial_v<ctype_rx_packet_s> && std::is_trivial_v<ctype_link_status_s> &&
              std::is_trivial_v<ctype_l2_addr_s>);

TEST(Packet, StartsEmpty)
{
    const Packet packet;
    EXPECT_EQ(packet.length(), 0u);
    EXPECT_EQ(packet.type(), 0u);
    EXPECT_TRUE(packet.data().empty());
}

TEST(Packet, SetDataCopiesTheBytesAndReturnsTheirNumber)
{
    Packet packet;
    Bytes bytes = {1, 2, 3};
    EXPECT_EQ(packet.set_data(bytes), 3);
    bytes[0] = 9;
    EXPECT_EQ(packet.length(), 3u);
    EXPECT_EQ(packet.data(), (Bytes{1, 2, 3}));
    EXPECT_EQ(packet.set_data(Bytes{4, 5}), 2);
    EXPECT_EQ(packet.length(), 2u);
    EXPECT_EQ(packet.data(), (Bytes{4, 5}));
}

TEST(Packet, SetDataWithNothingEmptiesItAndReturnsZero)
{
    Packet packet;
    packet.set_data(Bytes{1, 2, 3});
    const Bytes nothing;
    EXPECT_EQ(packet.set_data(nothing), 0);
    EXPECT_EQ(packet.length(), 0u);
    EXPECT_TRUE(packet.data().empty());
}

TEST(Packet, AssignmentCopiesLengthTypeAndBytes)
{
    Packet from;
    from.set_data(Bytes{1, 2, 3});
    from.set_type(7);
    Packet to;
    to.set_data(Bytes{9, 9, 9, 9});
    EXPECT_EQ(&(to = from), &to);
    from.set_data(Bytes{4});
    from.set_type(8);
    EXPECT_EQ(to.length(), 3u);
    EXPECT_EQ(to.type(), 7u);
    EXPECT_EQ(to.data(), (Bytes{1, 2, 3}));
}

TEST(Packet, AssigningItselfKeepsIt)
{
    Packet packet;
    packet.set_data(Bytes{1, 2, 3});
    const Packet& same = packet;
    packet = same;
    EXPECT_EQ(packet.data(), (Bytes{1, 2, 3}));
}

TEST(Packet, GetPktDataReplacesItsArgument)
{
    Packet packet;
    packet.set_data(Bytes{1, 2, 3});
    Bytes out = {9, 9, 9, 9, 9};
    EXPECT_TRUE(packet.get_pkt_data(out));
    EXPECT_EQ(out, (Bytes{1, 2, 3}));
    EXPECT_TRUE(Packet().get_pkt_data(out));
    EXPECT_TRUE(out.empty());
}

TEST(RxPacket, StartsEmptyOnNoPort)
{
    const RxPacket packet;
    EXPECT_EQ(packet.length(), 0u);
    EXPECT_EQ(packet.type(), 0u);
    EXPECT_EQ(packet.vlan(), 0u);
    EXPECT_EQ(packet.port(), Usp(0, 0, 0));
}

TEST(RxPacket, SetPacketReplacesThePacketPartAlone)
{
    Packet packet;
    packet.set_data(Bytes{1, 2});
    packet.set_type(5);
    RxPacket rx;
    rx.set_vlan(12);
    rx.set_port(Usp(1, 1, 3));
    rx.set_packet(packet);
    EXPECT_EQ(rx.length(), 2u);
    EXPECT_EQ(rx.type(), 5u);
    EXPECT_EQ(rx.data(), (Bytes{1, 2}));
    EXPECT_EQ(rx.vlan(), 12u);
    EXPECT_EQ(rx.port(), Usp(1, 1, 3));
}

TEST(LinkStatus, StartsDownOnNoPort)
{
    const LinkStatus status;
    EXPECT_EQ(status.port(), Usp(0, 0, 0));
    EXPECT_EQ(status.status(), 0);
    EXPECT_EQ(status.speed(), 0u);
    EXPECT_EQ(status.duplex(), 0u);
}

TEST(LinkStatus, HoldsWhatIsSet)
{
    LinkStatus status;
    status.set_port(Usp(1, 1, 7));
    status.set_status(-1);
    status.set_speed(4);
    status.set_duplex(2);
    EXPECT_EQ(status.port(), Usp(1, 1, 7));
    EXPECT_EQ(status.status(), -1);
    EXPECT_EQ(status.speed(), 4u);
    EXPECT_EQ(status.duplex(), 2u);
}

TEST(L2Addr, StartsLearnedAndNotOnATrunk)
{
    const L2Addr addr;
    const uint8_t zero[6] = {};
    EXPECT_EQ(addr.flags(), 0u);
    EXPECT_EQ(std::memcmp(addr.mac(), zero, 6), 0);
    EXPECT_EQ(addr.vlan(), 0u);
    EXPECT_EQ(addr.port(), Usp(0, 0, 0));
    EXPECT_EQ(addr.trunk_sel(), 0);
    EXPECT_EQ(addr.auth(), 0);
    EXPECT_EQ(addr.type(), 0);
    EXPECT_TRUE(addr.learn_type());
    EXPECT_FALSE(addr.is_trunk());
}

TEST(L2Addr, HoldsWhatIsSet)
{
    const uint8_t mac[] = {1, 2, 3, 4, 5, 6, 7};
    L2Addr addr;
    addr.set_flags(0xffffffffu);
    addr.set_mac(mac);
    addr.set_vlan(4094);
    addr.set_port(Usp(1, 1, 2));
    addr.set_trunk(-3);
    addr.set_trunk_sel(-4);
    addr.set_auth(-5);
    addr.set_type(2);
    addr.set_learn_type(false);
    addr.set_is_trunk(true);
    EXPECT_EQ(addr.flags(), 0xffffffffu);
    EXPECT_EQ(std::memcmp(addr.mac(), mac, 6), 0);
    EXPECT_EQ(addr.vlan(), 4094u);
    EXPECT_EQ(addr.port(), Usp(1, 1, 2));
    EXPECT_EQ(addr.trunk(), -3);
    EXPECT_EQ(addr.trunk_sel(), -4);
    EXPECT_EQ(addr.auth(), -5);
    EXPECT_EQ(addr.type(), 2);
    EXPECT_FALSE(addr.learn_type());
    EXPECT_TRUE(addr.is_trunk());
}

} // namespace
