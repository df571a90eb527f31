#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <list>
#include <string>
#include <type_traits>
#include <utility>

#include "core/factory.h"
#include "core/trace.h"
#include "l2/lag.h"
#include "platform/port_map.h"

namespace {

// A data member's place in the object.
template <class Member>
std::size_t offset(Member VexoBcmSdk::*member)
{
    std::ptrdiff_t place = 0;
    static_assert(sizeof member == sizeof place);
    std::memcpy(&place, &member, sizeof place);
    return static_cast<std::size_t>(place);
}

using CallbackList = std::list<std::pair<void*, void*>>;

} // namespace

TEST(Layout, TheInterfaceHasNoDataAndNoVirtualDestructor)
{
    EXPECT_EQ(sizeof(VexoSdkBase), sizeof(void*));
    EXPECT_TRUE(std::is_abstract_v<VexoSdkBase>);
    EXPECT_FALSE(std::has_virtual_destructor_v<VexoSdkBase>);
}

TEST(Layout, AnInstanceCannotBeDeletedThroughTheInterface)
{
    EXPECT_FALSE(std::is_destructible_v<VexoSdkBase>);
    EXPECT_TRUE(std::is_destructible_v<VexoBcmSdk>);
    EXPECT_FALSE(std::has_virtual_destructor_v<VexoBcmSdk>);
}

TEST(Layout, TheImplementationHoldsItsMembersInOrder)
{
    const std::size_t offsets[] = {offset(&VexoBcmSdk::sdk_name),
                                   offset(&VexoBcmSdk::port_count),
                                   offset(&VexoBcmSdk::mac_update_callbacks),
                                   offset(&VexoBcmSdk::mac_update_c_callbacks),
                                   offset(&VexoBcmSdk::link_change_callbacks),
                                   offset(&VexoBcmSdk::link_change_c_callbacks),
                                   offset(&VexoBcmSdk::rx_packet_callbacks),
                                   offset(&VexoBcmSdk::rx_packet_c_callbacks)};
    EXPECT_EQ(offsets[0], sizeof(void*));
    EXPECT_EQ(offsets[1], offsets[0] + sizeof(std::string));
    EXPECT_EQ(offsets[2], (offsets[1] + sizeof(int32_t) + alignof(CallbackList) - 1) /
                              alignof(CallbackList) * alignof(CallbackList));
    for (std::size_t i = 3; i < 8; ++i)
        EXPECT_EQ(offsets[i], offsets[i - 1] + sizeof(CallbackList)) << i;
    EXPECT_EQ(sizeof(VexoBcmSdk), offsets[7] + sizeof(CallbackList));
}

TEST(Layout, ThePortCountIsASigned32BitNumber)
{
    EXPECT_TRUE((std::is_same_v<decltype(VexoBcmSdk::port_count), int32_t>));
}

TEST(Layout, EveryCallbackListHoldsPairsOfFunctionAndCookie)
{
    EXPECT_TRUE((std::is_same_v<decltype(VexoBcmSdk::mac_update_callbacks), CallbackList>));
    EXPECT_TRUE((std::is_same_v<decltype(VexoBcmSdk::mac_update_c_callbacks), CallbackList>));
    EXPECT_TRUE((std::is_same_v<decltype(VexoBcmSdk::link_change_callbacks), CallbackList>));
    EXPECT_TRUE((std::is_same_v<decltype(VexoBcmSdk::link_change_c_callbacks), CallbackList>));
    EXPECT_TRUE((std::is_same_v<decltype(VexoBcmSdk::rx_packet_callbacks), CallbackList>));
    EXPECT_TRUE((std::is_same_v<decltype(VexoBcmSdk::rx_packet_c_callbacks), CallbackList>));
}

TEST(Layout, TheInstanceIsKeptByItsConcreteType)
{
    EXPECT_TRUE((std::is_same_v<decltype(bcm_sdk), VexoBcmSdk*>));
    EXPECT_TRUE((std::is_base_of_v<VexoSdkBase, VexoBcmSdk>));
}

TEST(Layout, PortTablesHave54RowsOfSigned32BitNumbersOrModulePortPairs)
{
    EXPECT_TRUE((std::is_same_v<decltype(vexo_uport_to_bcmport), int32_t[54]>));
    EXPECT_TRUE((std::is_same_v<decltype(vexo_bcmport_to_user_port), int32_t[54]>));
    EXPECT_TRUE((std::is_same_v<decltype(vexo_uport_to_user_port), int32_t[54]>));
    EXPECT_TRUE((std::is_same_v<decltype(vexo_user_port_to_lport), int32_t[54]>));
    EXPECT_TRUE((std::is_same_v<decltype(vexo_user_port_to_module_port), Mp[54]>));
}

TEST(Layout, AModulePortPairIsItsTwoNumbers)
{
    const Mp mp(2, 50);
    uint32_t words[2] = {};
    static_assert(sizeof mp == sizeof words && std::is_trivially_copyable_v<Mp>);
    std::memcpy(words, &mp, sizeof words);
    EXPECT_EQ(words[0], 2u);
    EXPECT_EQ(words[1], 50u);
    EXPECT_FALSE(std::is_polymorphic_v<Mp>);
    EXPECT_TRUE(std::is_trivially_destructible_v<Mp>);
}

TEST(Layout, AUnitSlotPortTripleIsItsThreeNumbersAndSoIsItsTwin)
{
    const Usp usp(1, 2, 7);
    usp_s twin = {};
    static_assert(sizeof usp == sizeof twin && std::is_trivially_copyable_v<Usp>);
    std::memcpy(&twin, &usp, sizeof twin);
    EXPECT_EQ(twin.unit, 1u);
    EXPECT_EQ(twin.slot, 2u);
    EXPECT_EQ(twin.port, 7u);
    EXPECT_EQ(offsetof(usp_s, unit), 0u);
    EXPECT_EQ(offsetof(usp_s, slot), 4u);
    EXPECT_EQ(offsetof(usp_s, port), 8u);
    EXPECT_TRUE(std::is_trivially_destructible_v<Usp>);
}

TEST(Layout, ALagNodeIsItsIdAndThenItsMembers)
{
    struct Fields {
        unsigned id;
        std::list<Mp> members;
    };
    const LagNode node(7);
    unsigned id = 0;
    static_assert(sizeof node == sizeof(Fields));
    std::memcpy(&id, static_cast<const void*>(&node), sizeof id);
    EXPECT_EQ(id, 7u);
    EXPECT_TRUE((std::is_same_v<decltype(lag_list), std::list<LagNode>>));
    EXPECT_TRUE((std::is_same_v<decltype(lag_id_usp_map), std::map<unsigned, Usp>>));
}

TEST(Layout, AFlowMatchHoldsItsFieldsInOrder)
{
    const std::size_t offsets[] = {
        offsetof(of_flow_mp_s, port),        offsetof(of_flow_mp_s, src_mac),
        offsetof(of_flow_mp_s, dst_mac),     offsetof(of_flow_mp_s, ether_type),
        offsetof(of_flow_mp_s, vlan_id),     offsetof(of_flow_mp_s, vlan_pri),
        offsetof(of_flow_mp_s, src_ip),      offsetof(of_flow_mp_s, src_ip_mask),
        offsetof(of_flow_mp_s, dst_ip),      offsetof(of_flow_mp_s, dst_ip_mask),
        offsetof(of_flow_mp_s, l4_src_port), offsetof(of_flow_mp_s, l4_dst_port),
        offsetof(of_flow_mp_s, ip_protocol), offsetof(of_flow_mp_s, tos),
        offsetof(of_flow_mp_s, flags)};
    const std::size_t expected[] = {0, 8, 14, 20, 22, 24, 28, 32, 36, 40, 44, 46, 48, 50, 52};
    for (std::size_t i = 0; i < sizeof expected / sizeof expected[0]; ++i)
        EXPECT_EQ(offsets[i], expected[i]) << i;
}

TEST(Layout, AnActionParameterHoldsItsNumberAndItsMacInTheSamePlace)
{
    EXPECT_EQ(offsetof(of_action_param_s, type), 0u);
    EXPECT_EQ(offsetof(of_action_param_s, value.number), 4u);
    EXPECT_EQ(offsetof(of_action_param_s, value.mac), 4u);
}

TEST(Layout, CounterRecordsHoldTypeThenValue)
{
    EXPECT_EQ(offsetof(StatCounter64, type), 0u);
    EXPECT_EQ(offsetof(StatCounter64, value), 8u);
    EXPECT_EQ(offsetof(StatCounter32, value), 4u);
    EXPECT_EQ(offsetof(BriefStatCounter64, value), 8u);
    EXPECT_EQ(offsetof(BriefStatCounter32, value), 4u);
}

TEST(Layout, TheDebugFlagIsOneByteAndOff)
{
    EXPECT_EQ(sizeof hw_util_dbg, 1u);
    EXPECT_EQ(hw_util_dbg, 0);
}
