// A session on the system's clock, and how it ends.
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

#include "tools/vexosh/session.h"
#include "vexosim/wire.h"

TEST(LiveSession, EndsWhenHandlersHaveReturned)
{
    std::promise<void> called;
    std::atomic<bool> returned{false};
    {
        vexosh::Session session;
        const int follower = session.follow([&](const vexosh::Event&) {
            called.set_value();
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
            returned = true;
        });
        session.follow_all(follower, true);
        ASSERT_EQ(vexosim::attach(1, "mem"), ""); // the link comes up
        called.get_future().wait();
    }
    EXPECT_TRUE(returned);
}
