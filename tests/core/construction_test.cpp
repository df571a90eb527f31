// An instance while it is being made and unmade. This program's start of the SDK is used for the
// card's, so that a test sees the moment of bring-up, and its allocation for the library's.
#include <gtest/gtest.h>
#include <sal/core.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <string>

#include "core/factory.h"
#include "platform/port_map.h"
#include "vexosim/clock.h"

namespace {

std::function<void()> at_bring_up;

long live_allocations = 0;
void* newest_instance = nullptr; // the newest memory of an instance's size
void* watched = nullptr;
bool watched_is_gone = false;

void watch(void* memory)
{
    watched = memory;
    watched_is_gone = false;
}

/// The instance that is being made, which nobody has been given yet.
VexoBcmSdk& unfinished()
{
    return *static_cast<VexoBcmSdk*>(newest_instance);
}

} // namespace

extern "C" int sal_core_init()
{
    if (at_bring_up)
        at_bring_up();
    return -1; // the bring-up ends here
}

// For the whole process, the driver included. Not inlined, or the compiler sees malloc and delete.
__attribute__((noinline)) void* operator new(std::size_t size)
{
    void* memory = std::malloc(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    ++live_allocations;
    if (size == sizeof(VexoBcmSdk))
        newest_instance = memory;
    return memory;
}

__attribute__((noinline)) void operator delete(void* memory) noexcept
{
    live_allocations -= memory != nullptr ? 1 : 0;
    watched_is_gone = watched_is_gone || memory == watched;
    std::free(memory);
}

__attribute__((noinline)) void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}

namespace {

struct Construction : testing::Test {
    Construction() { vexosim::use_manual_clock(); }
    ~Construction() override { at_bring_up = nullptr; }
    Construction(const Construction&) = delete;
    Construction& operator=(const Construction&) = delete;
};

/// Gives an instance a name and callbacks that need memory of their own.
void fill(VexoBcmSdk& sdk)
{
    sdk.sdk_name.assign(100, 'n');
    int there = 0;
    for (auto* list :
         {&sdk.mac_update_callbacks, &sdk.mac_update_c_callbacks, &sdk.link_change_callbacks,
          &sdk.link_change_c_callbacks, &sdk.rx_packet_callbacks, &sdk.rx_packet_c_callbacks})
        list->emplace_back(nullptr, &there);
}

/// Creates an instance whose bring-up throws `thrown`, and gives what came out.
int thrown_by_create(int thrown)
{
    at_bring_up = [thrown] {
        watch(newest_instance);
        fill(unfinished());
        throw thrown;
    };
    int caught = 0;
    try {
        vexosdk_create_sdk_instance();
    } catch (int value) {
        caught = value;
    }
    at_bring_up = nullptr;
    return caught;
}

TEST_F(Construction, HasSetEverythingWhenTheCardComesUpButIsNotGivenOutYet)
{
    int brought_up = 0;
    at_bring_up = [&] {
        VexoSdkBase* out = nullptr;
        EXPECT_FALSE(vexosdk_get_sdk_instance(out));
        EXPECT_EQ(unfinished().sdk_name, "VexoBcmSdk");
        EXPECT_EQ(unfinished().port_count, 54);
        EXPECT_EQ(vexo_max_physical_port_per_slot, 53);
        ++brought_up;
    };
    EXPECT_TRUE(vexosdk_create_sdk_instance());
    EXPECT_EQ(brought_up, 1);
    EXPECT_EQ(bcm_sdk, newest_instance);
}

TEST_F(Construction, BeginsWhenTheOldInstanceIsGone)
{
    vexosdk_create_sdk_instance();
    watch(bcm_sdk);
    at_bring_up = [] {
        EXPECT_EQ(bcm_sdk, nullptr);
        EXPECT_TRUE(watched_is_gone);
    };
    EXPECT_FALSE(watched_is_gone);
    vexosdk_create_sdk_instance();
    EXPECT_TRUE(watched_is_gone);
}

TEST_F(Construction, AnExceptionPassesThroughAndLeavesNothingBehind)
{
    thrown_by_create(1); // what is allocated once
    const long before = live_allocations;
    EXPECT_EQ(thrown_by_create(42), 42);
    EXPECT_EQ(live_allocations, before);
    EXPECT_TRUE(watched_is_gone);
    EXPECT_EQ(bcm_sdk, nullptr);
}

TEST_F(Construction, AnExceptionTakesTheOldInstanceToo)
{
    vexosdk_create_sdk_instance();
    EXPECT_EQ(thrown_by_create(42), 42);
    VexoSdkBase* out = nullptr;
    EXPECT_FALSE(vexosdk_get_sdk_instance(out));
    EXPECT_EQ(bcm_sdk, nullptr);
    EXPECT_TRUE(vexosdk_delete_sdk_instance(nullptr));
}

TEST_F(Construction, CanBeTriedAgainAfterAnException)
{
    thrown_by_create(42);
    EXPECT_TRUE(vexosdk_create_sdk_instance());
    EXPECT_EQ(bcm_sdk, newest_instance);
    EXPECT_EQ(bcm_sdk->sdk_name, "VexoBcmSdk");
    EXPECT_TRUE(bcm_sdk->rx_packet_callbacks.empty());
}

TEST_F(Construction, DeletingReleasesTheInstanceItsNameAndItsCallbacks)
{
    vexosdk_create_sdk_instance();
    vexosdk_delete_sdk_instance(nullptr);
    const long before = live_allocations;
    vexosdk_create_sdk_instance();
    fill(*bcm_sdk);
    EXPECT_GT(live_allocations, before + 1);
    vexosdk_delete_sdk_instance(nullptr);
    EXPECT_EQ(live_allocations, before);
}

} // namespace
