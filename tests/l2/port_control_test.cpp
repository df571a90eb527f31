// The remaining one-call operations on ports: jamming, pause addresses, storm control, queues,
// BPDUs, unknown unicasts, VLANs by protocol, learning, spanning the same claims as the others.
#include "tests/l2/port_calls.h"

namespace {

using Sdk = VexoBcmSdk;

static_assert(FRAME_ETHERNET_II == 0 && FRAME_802_3 == 1 && FRAME_802_3_LLC == 2 &&
              FRAME_SNAP == 3);

const unsigned char host[6] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};

std::vector<Setter> setters()
{
    return {
        {"bcmx_port_jam_set(5, 1)\n", false,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_jaming(mp, true); }},
        {"bcmx_port_jam_set(5, 0)\n", false,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_jaming(mp, false); }},
        {"bcmx_port_pause_addr_set(5, 00:11:22:33:44:55)\n", false,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_pause_addr(mp, host); }},
        {"bcmx_rate_dlfbc_set(100, 1, 5)\n", false,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_unicast_control(mp, 100); }},
        {"bcmx_rate_mcast_set(200, 2, 5)\n", false,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_multicast_control(mp, 200); }},
        {"bcmx_rate_bcast_set(0, 4, 5)\n", false,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_broadcast_control(mp, 0); }},
        {"bcmx_cosq_port_mapping_set(5, 6, 3)\n", false,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_cos_mapping(mp, 6, 3); }},
        {"bcmx_port_bpdu_enable_set(5, 1)\n", true,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_bpdu_processing(mp, true); }},
        {"bcmx_port_bpdu_enable_set(5, 0)\n", true,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_bpdu_processing(mp, false); }},
        {"bcmx_switch_control_port_set(5, 21, 1)\n", true,
         [](Sdk& sdk, const Mp& mp) {
             return sdk.set_port_switch_unknown_unicast_to_cpu(mp, true);
         }},
        {"bcmx_switch_control_port_set(5, 21, 0)\n", true,
         [](Sdk& sdk, const Mp& mp) {
             return sdk.set_port_switch_unknown_unicast_to_cpu(mp, false);
         }},
        {"bcmx_port_protocol_vlan_add(5, 1, 0x800, 1)\n", true,
         [](Sdk& sdk, const Mp& mp) {
             return sdk.set_port_protocol_vlan(mp, FRAME_ETHERNET_II, 0x800, 0x10001);
         }},
        {"bcmx_port_protocol_vlan_add(5, 2, 0x800, 1)\n", true,
         [](Sdk& sdk, const Mp& mp) {
             return sdk.set_port_protocol_vlan(mp, FRAME_802_3, 0x800, 1);
         }},
        {"bcmx_port_protocol_vlan_add(5, 2, 0x800, 1)\n", true,
         [](Sdk& sdk, const Mp& mp) {
             return sdk.set_port_protocol_vlan(mp, FRAME_802_3_LLC, 0x800, 1);
         }},
        {"bcmx_port_protocol_vlan_add(5, 4, 0xffff, 1)\n", true,
         [](Sdk& sdk, const Mp& mp) {
             return sdk.set_port_protocol_vlan(mp, FRAME_SNAP, 0xffff, 1);
         }},
        {"bcmx_port_protocol_vlan_delete(5, 1, 0x800)\n", true,
         [](Sdk& sdk, const Mp& mp) {
             return sdk.delete_port_protocol_vlan(mp, FRAME_ETHERNET_II, 0x800);
         }},
        {"bcmx_port_protocol_vlan_delete(5, 2, 0x800)\n", true,
         [](Sdk& sdk, const Mp& mp) {
             return sdk.delete_port_protocol_vlan(mp, FRAME_802_3, 0x800);
         }},
        {"bcmx_port_protocol_vlan_delete(5, 2, 0x800)\n", true,
         [](Sdk& sdk, const Mp& mp) {
             return sdk.delete_port_protocol_vlan(mp, FRAME_802_3_LLC, 0x800);
         }},
        {"bcmx_port_protocol_vlan_delete(5, 4, 0x800)\n", true,
         [](Sdk& sdk, const Mp& mp) {
             return sdk.delete_port_protocol_vlan(mp, FRAME_SNAP, 0x800);
         }},
        {"bcmx_port_protocol_vlan_delete_all(5)\n", true,
         [](Sdk& sdk, const Mp& mp) { return sdk.delete_port_protocol_vlan_all(mp); }},
        {"bcmx_port_learn_set(5, 2)\n", false,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_mac_lock(mp, true); }},
        {"bcmx_port_learn_set(5, 5)\n", false,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_mac_lock(mp, false); }},
        {"bcmx_port_learn_set(5, 1)\n", true,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_mac_lock_ext(mp, false, false); }},
        {"bcmx_port_learn_set(5, 1)\n", true,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_mac_lock_ext(mp, false, true); }},
        {"bcmx_port_learn_set(5, 4)\n", true,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_mac_lock_ext(mp, true, true); }},
        {"bcmx_port_learn_set(5, 2)\n", true,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_mac_lock_ext(mp, true, false); }},
        {"bcmx_port_ability_advert_set(5, {half=0, full=2, pause=0, medium=0, flags=0})\n", true,
         [](Sdk& sdk, const Mp& mp) {
             return sdk.set_port_advertising_ability(mp, PORT_ABILITY_100M_FULL);
         }},
        {"bcmx_port_stat_enable_set(5, 1)\n", true,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_stat_enable(mp, true); }},
        {"bcmx_port_stat_enable_set(5, 0)\n", true,
         [](Sdk& sdk, const Mp& mp) { return sdk.set_port_stat_enable(mp, false); }},
        {"bcmx_stat_clear(5)\n", true,
         [](Sdk& sdk, const Mp& mp) { return sdk.clear_port_stat_counter(mp); }},
    };
}

std::vector<Getter> getters()
{
    return {
        {"bcmx_port_jam_get(5, out)\n", false, into(&VexoSdkBase::get_port_jaming)},
        {"bcmx_rate_dlfbc_get(out, out, 5)\n", false, into(&VexoSdkBase::get_port_unicast_control)},
        {"bcmx_rate_mcast_get(out, out, 5)\n", false,
         into(&VexoSdkBase::get_port_multicast_control)},
        {"bcmx_rate_bcast_get(out, out, 5)\n", false,
         into(&VexoSdkBase::get_port_broadcast_control)},
        {"bcmx_cosq_port_mapping_get(5, 6, out)\n", false,
         [](Sdk& sdk, const Mp& mp, long& value) {
             unsigned queue = static_cast<unsigned>(value);
             const bool result = sdk.get_port_cos_mapping(mp, 6, queue);
             value = static_cast<long>(queue);
             return result;
         }},
        {"bcmx_port_pause_addr_get(5, out)\n", false,
         [](Sdk& sdk, const Mp& mp, long&) {
             unsigned char mac[6] = {};
             return sdk.get_port_pause_addr(mp, mac);
         }},
        {"bcmx_port_bpdu_enable_get(5, out)\n", true, into(&VexoSdkBase::get_port_bpdu_processing)},
        {"bcmx_switch_control_port_get(5, 21, out)\n", true,
         into(&VexoSdkBase::get_port_switch_unknown_unicast_to_cpu)},
        {"bcmx_port_learn_get(5, out)\n", false, into(&VexoSdkBase::get_port_mac_lock)},
        {"bcmx_port_learn_get(5, out)\n", true,
         [](Sdk& sdk, const Mp& mp, long& value) {
             bool locked = value != 0;
             bool forward = locked;
             const bool result = sdk.get_port_mac_lock_ext(mp, locked, forward);
             value = result || locked == forward ? long{locked} : -1;
             return result;
         }},
        {"bcmx_port_ability_get(5, out)\n", true, into(&VexoSdkBase::get_port_ability)},
        {"bcmx_port_ability_advert_get(5, out)\n", true,
         into(&VexoSdkBase::get_port_advertising_ability)},
        {"bcmx_port_ability_local_get(5, out)\n", true,
         into(&VexoSdkBase::get_port_current_ability)},
        {"bcmx_port_ability_remote_get(5, out)\n", true,
         [](Sdk& sdk, const Mp& mp, long& value) {
             auto ability = static_cast<port_ability_type_t>(value);
             const bool result = sdk.get_port_peer_ability(mp, ability);
             value = static_cast<long>(ability);
             return result;
         }},
    };
}

} // namespace

TEST(PortControl, ASetterMakesItsCallAndSucceeds)
{
    VexoBcmSdk& sdk = driver_with_log();
    const EveryCallAnswers answer(0);
    expect_calls(sdk, setters());
}

TEST(PortControl, ASetterIsFalseForEveryAnswerButSuccess)
{
    expect_failures(driver_with_log(), setters());
}

TEST(PortControl, ASetterRefusesAPortThatDoesNotExist)
{
    expect_refusals(driver_with_log(), setters());
}

TEST(PortControl, AGetterMakesItsCallAndSucceeds)
{
    VexoBcmSdk& sdk = driver_with_log();
    const EveryCallAnswers answer(0);
    expect_calls(sdk, getters());
}

TEST(PortControl, AGetterThatFailsIsFalseAndLeavesItsOutputAlone)
{
    expect_failures(driver_with_log(), getters());
}

TEST(PortControl, AGetterRefusesAPortThatDoesNotExist)
{
    expect_refusals(driver_with_log(), getters());
}

TEST(PortControl, AFrameTypeThatIsNotListedIsRefusedWithoutACall)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const int type : {-1, 4, 5}) {
        EXPECT_FALSE(sdk.set_port_protocol_vlan(port(5), frame_type_t{type}, 0x800, 1)) << type;
        EXPECT_FALSE(sdk.delete_port_protocol_vlan(port(5), frame_type_t{type}, 0x800)) << type;
    }
    EXPECT_EQ(calls_made(), "");
}

TEST(PortControl, APauseAddressReadsAsItWasSet)
{
    VexoBcmSdk& sdk = driver_with_log();
    unsigned char mac[6] = {};
    EXPECT_TRUE(sdk.set_port_pause_addr(port(5), host));
    EXPECT_TRUE(sdk.get_port_pause_addr(port(5), mac));
    EXPECT_TRUE(std::equal(host, host + 6, mac));
}

TEST(PortControl, AStormRateReadsAsItWasSetForItsClassOnly)
{
    VexoBcmSdk& sdk = driver_with_log();
    unsigned rates[3] = {9, 9, 9};
    EXPECT_TRUE(sdk.set_port_unicast_control(port(5), 100));
    EXPECT_TRUE(sdk.set_port_multicast_control(port(5), 200));
    EXPECT_TRUE(sdk.set_port_broadcast_control(port(5), 300));
    EXPECT_TRUE(sdk.get_port_unicast_control(port(5), rates[0]));
    EXPECT_TRUE(sdk.get_port_multicast_control(port(5), rates[1]));
    EXPECT_TRUE(sdk.get_port_broadcast_control(port(5), rates[2]));
    EXPECT_EQ(rates[0], 100u);
    EXPECT_EQ(rates[1], 200u);
    EXPECT_EQ(rates[2], 300u);
}
