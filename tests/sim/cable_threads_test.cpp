// Cables on the system's clock.
#include <gtest/gtest.h>

#include <condition_variable>

#include "core/factory.h"
#include "tests/sim/wire_frames.h"
#include "vexosim/cable.h"
#include "vexosim/clock.h"
#include "vexosim/ports.h"

using namespace vexosim;
using namespace std::chrono_literals;

TEST(CablesOfALiveCard, FlapAndDeliverInTime)
{
    vexosdk_create_sdk_instance();
    connect_wires();
    std::mutex mutex;
    std::condition_variable changed;
    int arrived = 0;
    on_wire_receive([&](int, std::span<const FrameView> frames) {
        const std::lock_guard lock(mutex);
        arrived += static_cast<int>(frames.size());
        changed.notify_all();
    });
    auto memory = std::make_unique<MemoryWire>();
    MemoryWire& far_end = *memory;
    ASSERT_EQ(attach(3, std::move(memory)), "");
    start_wires();
    ASSERT_EQ(impair_cable(3, CableWay::in, {0, 30ms}), "");
    const auto start = now();
    for (int mark = 0; mark < 10; ++mark) {
        far_end.push(frame(mark));
    }
    {
        std::unique_lock lock(mutex);
        EXPECT_TRUE(changed.wait_for(lock, 20s, [&] { return arrived == 10; }));
    }
    EXPECT_GE(now() - start, 30ms);

    ASSERT_EQ(flap_cable(3, 20ms), "");
    for (const bool wanted : {true, false, true}) {
        const auto end = now() + 20s;
        while (wire_carrier(3) != wanted && now() < end) {
            std::this_thread::yield();
        }
        EXPECT_EQ(wire_carrier(3), wanted);
    }
    plug_cable(3, true);
    stop_wires();
    on_wire_receive({});
}
