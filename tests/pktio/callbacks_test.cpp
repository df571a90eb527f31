// Registration, removal and dispatch, on an instance whose card may be in any state: nothing here
// reaches the chip.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/bcm_sdk.h"
#include "pktio/event_records.h"

namespace {

// What the callbacks were called with, one line each.
std::string heard;
RxPacket packet;
ctype_rx_packet_s c_packet = {};
LinkStatus link_status;
ctype_link_status_s c_link_status = {};
Usp usp(1, 1, 1);
usp_s c_usp = {};
L2Addr addr;
ctype_l2_addr_s c_addr = {};

char cookies[100];

void* cookie(int number)
{
    return &cookies[number];
}

std::string text(const std::string& name, const void* argument)
{
    if (argument == nullptr)
        return name + "null\n";
    return name + std::to_string(static_cast<const char*>(argument) - cookies) + "\n";
}

void on_packet(RxPacket* got, void* own)
{
    EXPECT_EQ(got, &packet);
    heard += text("packet ", own);
}

void on_packet_too(RxPacket*, void* own)
{
    heard += text("packet too ", own);
}

void on_packet_c(ctype_rx_packet_s* got, void* own)
{
    EXPECT_EQ(got, &c_packet);
    heard += text("packet_c ", own);
}

void on_link(LinkStatus* got, Usp* port)
{
    EXPECT_EQ(got, &link_status);
    EXPECT_EQ(port, &usp);
    heard += "link\n";
}

void on_link_too(LinkStatus*, Usp*)
{
    heard += "link too\n";
}

void on_link_c(ctype_link_status_s* got, usp_s* port)
{
    EXPECT_EQ(got, &c_link_status);
    EXPECT_EQ(port, &c_usp);
    heard += "link_c\n";
}

void on_mac(L2Addr* got, int type, void* data)
{
    EXPECT_EQ(got, &addr);
    heard += text("mac " + std::to_string(type) + " ", data);
}

void on_mac_too(L2Addr*, int type, void* data)
{
    heard += text("mac too " + std::to_string(type) + " ", data);
}

void on_mac_c(ctype_l2_addr_s* got, int type, void* data)
{
    EXPECT_EQ(got, &c_addr);
    heard += text("mac_c " + std::to_string(type) + " ", data);
}

template <class Function>
void* any(Function function)
{
    return reinterpret_cast<void*>(function);
}

struct Callbacks : testing::Test {
    VexoBcmSdk sdk;

    // Everything dispatched once: packets with 50, MAC updates with type 2 and data 60.
    std::string dispatch_all()
    {
        heard.clear();
        sdk.rx_packet(&packet, cookie(50));
        sdk.rx_packet_c(&c_packet, cookie(50));
        sdk.link_change(&link_status, &usp);
        sdk.link_change_c(&c_link_status, &c_usp);
        sdk.mac_update(&addr, 2, cookie(60));
        sdk.mac_update_c(&c_addr, 2, cookie(60));
        return heard;
    }

    void register_all(void* own)
    {
        EXPECT_TRUE(sdk.register_mac_update_callback(on_mac, own));
        EXPECT_TRUE(sdk.register_mac_update_callback_c(on_mac_c, own));
        EXPECT_TRUE(sdk.register_link_change_callback(on_link, own));
        EXPECT_TRUE(sdk.register_link_change_callback_c(on_link_c, own));
        EXPECT_TRUE(sdk.register_rx_packet_callback(on_packet, own));
        EXPECT_TRUE(sdk.register_rx_packet_callback_c(on_packet_c, own));
    }

    std::vector<std::size_t> sizes() const
    {
        return {sdk.mac_update_callbacks.size(),  sdk.mac_update_c_callbacks.size(),
                sdk.link_change_callbacks.size(), sdk.link_change_c_callbacks.size(),
                sdk.rx_packet_callbacks.size(),   sdk.rx_packet_c_callbacks.size()};
    }
};

using Sizes = std::vector<std::size_t>;

TEST_F(Callbacks, ListsStartEmptyAndDispatchReachesNobody)
{
    EXPECT_EQ(sizes(), (Sizes{0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(dispatch_all(), "");
}

TEST_F(Callbacks, EachRegistrationGoesIntoItsOwnList)
{
    sdk.register_mac_update_callback(on_mac, cookie(1));
    EXPECT_EQ(sizes(), (Sizes{1, 0, 0, 0, 0, 0}));
    sdk.register_mac_update_callback_c(on_mac_c, cookie(1));
    EXPECT_EQ(sizes(), (Sizes{1, 1, 0, 0, 0, 0}));
    sdk.register_link_change_callback(on_link, cookie(1));
    EXPECT_EQ(sizes(), (Sizes{1, 1, 1, 0, 0, 0}));
    sdk.register_link_change_callback_c(on_link_c, cookie(1));
    EXPECT_EQ(sizes(), (Sizes{1, 1, 1, 1, 0, 0}));
    sdk.register_rx_packet_callback(on_packet, cookie(1));
    EXPECT_EQ(sizes(), (Sizes{1, 1, 1, 1, 1, 0}));
    sdk.register_rx_packet_callback_c(on_packet_c, cookie(1));
    EXPECT_EQ(sizes(), (Sizes{1, 1, 1, 1, 1, 1}));
}

TEST_F(Callbacks, PacketsComeWithTheOwnCookieAndMacUpdatesWithTheDispatchersData)
{
    register_all(cookie(7));
    EXPECT_EQ(dispatch_all(), "packet 7\npacket_c 7\nlink\nlink_c\nmac 2 60\nmac_c 2 60\n");
}

TEST_F(Callbacks, RegisteringTheSamePairTwiceCallsItOnce)
{
    register_all(cookie(7));
    register_all(cookie(7));
    EXPECT_EQ(sizes(), (Sizes{1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(dispatch_all(), "packet 7\npacket_c 7\nlink\nlink_c\nmac 2 60\nmac_c 2 60\n");
}

TEST_F(Callbacks, TheSameFunctionWithTwoCookiesIsCalledTwice)
{
    register_all(cookie(7));
    register_all(cookie(8));
    EXPECT_EQ(sizes(), (Sizes{2, 2, 2, 2, 2, 2}));
    EXPECT_EQ(dispatch_all(), "packet 7\npacket 8\npacket_c 7\npacket_c 8\nlink\nlink\nlink_c\n"
                              "link_c\nmac 2 60\nmac 2 60\nmac_c 2 60\nmac_c 2 60\n");
}

TEST_F(Callbacks, AreCalledInOrderOfRegistration)
{
    sdk.register_rx_packet_callback(on_packet_too, cookie(2));
    sdk.register_rx_packet_callback(on_packet, cookie(1));
    sdk.register_rx_packet_callback(on_packet_too, cookie(2)); // keeps its place
    sdk.register_link_change_callback(on_link_too, nullptr);
    sdk.register_link_change_callback(on_link, nullptr);
    sdk.register_mac_update_callback(on_mac_too, nullptr);
    sdk.register_mac_update_callback(on_mac, nullptr);
    EXPECT_EQ(dispatch_all(), "packet too 2\npacket 1\nlink too\nlink\nmac too 2 60\nmac 2 60\n");
}

TEST_F(Callbacks, ANullCookieIsACookieLikeAnyOther)
{
    sdk.register_rx_packet_callback(on_packet, nullptr);
    sdk.register_rx_packet_callback(on_packet, cookie(1));
    EXPECT_EQ(dispatch_all(), "packet null\npacket 1\n");
}

TEST_F(Callbacks, DeregisteringAMacCallbackTakesItOutOfBothMacLists)
{
    register_all(cookie(7));
    // One function in both lists, which are searched by address alone.
    sdk.mac_update_c_callbacks.emplace_back(any(on_mac), cookie(7));
    EXPECT_TRUE(sdk.deregister_event_callback(LCMGR_REPORT_MAC_UPDATE, any(on_mac), cookie(7)));
    EXPECT_EQ(sizes(), (Sizes{0, 1, 1, 1, 1, 1}));
    EXPECT_TRUE(sdk.deregister_event_callback(LCMGR_REPORT_MAC_UPDATE, any(on_mac_c), cookie(7)));
    EXPECT_EQ(sizes(), (Sizes{0, 0, 1, 1, 1, 1}));
}

TEST_F(Callbacks, DeregisteringALinkCallbackTakesItOutOfBothLinkLists)
{
    register_all(cookie(7));
    sdk.link_change_c_callbacks.emplace_back(any(on_link), cookie(7));
    EXPECT_TRUE(sdk.deregister_event_callback(LCMGR_REPORT_LINK_CHANGE, any(on_link), cookie(7)));
    EXPECT_EQ(sizes(), (Sizes{1, 1, 0, 1, 1, 1}));
    EXPECT_TRUE(sdk.deregister_event_callback(LCMGR_REPORT_LINK_CHANGE, any(on_link_c), cookie(7)));
    EXPECT_EQ(sizes(), (Sizes{1, 1, 0, 0, 1, 1}));
}

TEST_F(Callbacks, DeregisteringAPacketCallbackNeverRemovesACStyleOne)
{
    register_all(cookie(7));
    EXPECT_TRUE(sdk.deregister_event_callback(LCMGR_REPORT_RX_PACKET, any(on_packet_c), cookie(7)));
    EXPECT_EQ(sizes(), (Sizes{1, 1, 1, 1, 1, 1}));
    EXPECT_TRUE(sdk.deregister_event_callback(LCMGR_REPORT_RX_PACKET, any(on_packet), cookie(7)));
    EXPECT_EQ(sizes(), (Sizes{1, 1, 1, 1, 0, 1}));
    EXPECT_EQ(dispatch_all(), "packet_c 7\nlink\nlink_c\nmac 2 60\nmac_c 2 60\n");
}

TEST_F(Callbacks, DeregisteringAPacketCallbackRemovesUpToTwoEqualEntries)
{
    for (int i = 0; i < 3; ++i)
        sdk.rx_packet_callbacks.emplace_back(any(on_packet), cookie(7));
    EXPECT_TRUE(sdk.deregister_event_callback(LCMGR_REPORT_RX_PACKET, any(on_packet), cookie(7)));
    EXPECT_EQ(sdk.rx_packet_callbacks.size(), 1u);
}

TEST_F(Callbacks, DeregisteringOtherEventsRemovesOneEntryOfEachList)
{
    for (int i = 0; i < 2; ++i) {
        sdk.mac_update_callbacks.emplace_back(any(on_mac), cookie(7));
        sdk.link_change_callbacks.emplace_back(any(on_link), cookie(7));
    }
    EXPECT_TRUE(sdk.deregister_event_callback(LCMGR_REPORT_MAC_UPDATE, any(on_mac), cookie(7)));
    EXPECT_TRUE(sdk.deregister_event_callback(LCMGR_REPORT_LINK_CHANGE, any(on_link), cookie(7)));
    EXPECT_EQ(sizes(), (Sizes{1, 0, 1, 0, 0, 0}));
}

TEST_F(Callbacks, DeregisteringTakesFunctionAndCookieTogether)
{
    sdk.register_rx_packet_callback(on_packet, cookie(1));
    sdk.register_rx_packet_callback(on_packet, cookie(2));
    sdk.register_rx_packet_callback(on_packet_too, cookie(2));
    EXPECT_TRUE(sdk.deregister_event_callback(LCMGR_REPORT_RX_PACKET, any(on_packet), cookie(2)));
    EXPECT_EQ(dispatch_all(), "packet 1\npacket too 2\n");
}

TEST_F(Callbacks, DeregisteringWhatIsNotThereSucceeds)
{
    register_all(cookie(7));
    for (const int event : {0, 1, 2}) {
        EXPECT_TRUE(sdk.deregister_event_callback(static_cast<lcmgr_report_event_t>(event),
                                                  any(on_packet_too), cookie(7)));
    }
    EXPECT_EQ(sizes(), (Sizes{1, 1, 1, 1, 1, 1}));
}

TEST_F(Callbacks, DeregisteringLooksOnlyInTheListsOfItsEvent)
{
    register_all(cookie(7));
    sdk.deregister_event_callback(LCMGR_REPORT_LINK_CHANGE, any(on_mac), cookie(7));
    sdk.deregister_event_callback(LCMGR_REPORT_RX_PACKET, any(on_link), cookie(7));
    sdk.deregister_event_callback(LCMGR_REPORT_MAC_UPDATE, any(on_packet), cookie(7));
    EXPECT_EQ(sizes(), (Sizes{1, 1, 1, 1, 1, 1}));
}

TEST_F(Callbacks, DeregisteringAnUnknownEventFailsAndChangesNothing)
{
    register_all(cookie(7));
    for (const int event : {-1, 3, 4}) {
        for (void* function : {any(on_packet), any(on_link), any(on_mac)}) {
            EXPECT_FALSE(sdk.deregister_event_callback(static_cast<lcmgr_report_event_t>(event),
                                                       function, cookie(7)));
        }
    }
    EXPECT_EQ(sizes(), (Sizes{1, 1, 1, 1, 1, 1}));
}

} // namespace
