#pragma once

#include <chrono>
#include <thread>

/// Whether a condition comes true within twenty seconds.
template <typename Condition>
bool comes_true(Condition condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1)); // leave the processor to others
    }
    return true;
}
