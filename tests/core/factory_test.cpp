#include "core/factory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <type_traits>

#include "platform/port_map.h"
#include "tests/core/instance.h"

namespace {

bool fail_allocations = false;

VexoSdkBase* const unlikely = reinterpret_cast<VexoSdkBase*>(0x1000);

} // namespace

// For the whole process, the driver included. Not inlined, or the compiler sees malloc and delete.
__attribute__((noinline)) void* operator new(std::size_t size)
{
    void* memory = fail_allocations ? nullptr : std::malloc(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

__attribute__((noinline)) void operator delete(void* memory) noexcept
{
    std::free(memory);
}

__attribute__((noinline)) void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

TEST(Factory, HasNoInstanceAtLoad)
{
    VexoSdkBase* out = unlikely;
    EXPECT_EQ(bcm_sdk, nullptr);
    EXPECT_FALSE(vexosdk_get_sdk_instance(out));
    EXPECT_EQ(out, unlikely);
    EXPECT_EQ(bcm_sdk, nullptr);
}

TEST(Factory, DeletingWithoutAnInstanceSucceeds)
{
    EXPECT_TRUE(vexosdk_delete_sdk_instance(nullptr));
    EXPECT_TRUE(vexosdk_delete_sdk_instance(unlikely));
    EXPECT_EQ(bcm_sdk, nullptr);
}

TEST(Factory, CreatesTheInstanceAndGivesIt)
{
    VexoSdkBase* out = nullptr;
    EXPECT_TRUE(vexosdk_create_sdk_instance());
    ASSERT_NE(bcm_sdk, nullptr);
    EXPECT_TRUE(vexosdk_get_sdk_instance(out));
    EXPECT_EQ(out, bcm_sdk);
}

TEST(Factory, DeletesTheOneInstanceWhateverPointerItIsGiven)
{
    for (VexoSdkBase* given : {static_cast<VexoSdkBase*>(nullptr), unlikely}) {
        vexosdk_create_sdk_instance();
        EXPECT_TRUE(vexosdk_delete_sdk_instance(given));
        EXPECT_EQ(bcm_sdk, nullptr);
        EXPECT_TRUE(vexosdk_delete_sdk_instance(given));
    }
}

TEST(Factory, ASecondCreateReplacesTheInstance)
{
    VexoBcmSdk& first = new_instance();
    first.sdk_name = "first";
    EXPECT_TRUE(vexosdk_create_sdk_instance());
    ASSERT_NE(bcm_sdk, nullptr);
    EXPECT_EQ(bcm_sdk->sdk_name, "VexoBcmSdk");
}

TEST(Factory, AnExceptionLeavesNoInstanceNotEvenTheOldOne)
{
    VexoSdkBase* out = unlikely;
    vexosdk_create_sdk_instance();
    fail_allocations = true;
    bool thrown = false;
    try {
        vexosdk_create_sdk_instance();
    } catch (const std::bad_alloc&) {
        thrown = true;
    }
    fail_allocations = false;
    EXPECT_TRUE(thrown);
    EXPECT_EQ(bcm_sdk, nullptr);
    EXPECT_FALSE(vexosdk_get_sdk_instance(out));
    EXPECT_EQ(out, unlikely);
}

TEST(Instance, StartsWithItsNameItsPortsAndNoCallbacks)
{
    const VexoBcmSdk& sdk = new_instance();
    EXPECT_EQ(sdk.sdk_name, "VexoBcmSdk");
    EXPECT_EQ(sdk.port_count, 54);
    for (const auto* list :
         {&sdk.mac_update_callbacks, &sdk.mac_update_c_callbacks, &sdk.link_change_callbacks,
          &sdk.link_change_c_callbacks, &sdk.rx_packet_callbacks, &sdk.rx_packet_c_callbacks})
        EXPECT_TRUE(list->empty());
}

TEST(Instance, SetsTheHighestPhysicalPortWhenItIsMade)
{
    EXPECT_EQ(vexo_max_physical_port_per_slot, 0);
    new_instance();
    EXPECT_EQ(vexo_max_physical_port_per_slot, 53);
}

TEST(Instance, NamesTheCpuPortByUnitSlotAndUserPort)
{
    VexoBcmSdk& sdk = new_instance();
    Usp usp(9, 9, 9);
    EXPECT_TRUE(sdk.get_line_card_usp(usp));
    EXPECT_EQ(usp, Usp(1, 0, 53));
    self_slot_id = 1;
    EXPECT_TRUE(sdk.get_line_card_usp(usp));
    EXPECT_EQ(usp, Usp(1, 1, 53));
}

TEST(Instance, NamesTheCpuPortByItsOwnUnitAndPortCount)
{
    VexoBcmSdk& sdk = new_instance();
    Usp usp;
    vexo_bcm_unit = 4;
    sdk.port_count = 30;
    sdk.get_line_card_usp(usp);
    EXPECT_EQ(usp, Usp(5, 0, 29));
}

TEST(Instance, TheFreeCallDoesNothingAndSucceeds)
{
    VexoBcmSdk& sdk = new_instance();
    EXPECT_TRUE(sdk.free_call(0));
    EXPECT_TRUE(sdk.free_call(-1));
}

TEST(Instance, OperationsWithAFixedResultLeaveTheirOutputsAlone)
{
    VexoBcmSdk& sdk = new_instance();
    unsigned vid = 77;
    bool enabled = true;
    EXPECT_TRUE(sdk.set_port_default_vlan(Mp(9, 9), 5000));
    EXPECT_TRUE(sdk.get_port_default_vlan(Mp(9, 9), vid));
    EXPECT_EQ(vid, 77u);
    EXPECT_TRUE(sdk.set_port_phy_state(Mp(9, 9), PHY_LINK_DOWN));
    EXPECT_FALSE(sdk.get_port_stat_enabled(Mp(9, 9), enabled));
    EXPECT_TRUE(enabled);
    EXPECT_FALSE(sdk.add_of_flow_with_id(of_flow_mp_s{}, 1));
}
