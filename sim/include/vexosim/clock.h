/// @file
/// The card's time. Normally it is the system's, and the SDK has threads of its own for link scan,
/// L2 messages, L2 notification and packet receive. With the manual clock there are no threads:
/// time stands still until it is advanced, and handlers run on the caller's thread.
#pragma once

#include <chrono>

namespace vexosim {

/// Stops the clock at 0. To be called before the card is brought up.
void use_manual_clock();
bool manual_clock();

/// Ends the SDK's threads, for good: when it returns, no handler runs and none will. A manager does
/// this before it deletes the driver's instance, and holds nothing meanwhile that its callbacks
/// lock. Also done at exit.
void stop_threads();

/// Time since the card was powered.
std::chrono::microseconds now();

/// Manual clock: moves time on, doing everything that falls due meanwhile, in order.
void advance(std::chrono::microseconds duration);

/// Manual clock: does what is pending now, until nothing is: a link scan, frames that wait at live
/// wires, L2 notifications, packets for the CPU as far as rate limits let them through. With
/// threads: does nothing.
void drain();

} // namespace vexosim
