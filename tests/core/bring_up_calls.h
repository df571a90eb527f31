#pragma once

#include <string>

/// The SDK calls of a bring-up that succeeds, in order, as the call log has them. Left out are what
/// the bus driver is asked and the look-ups in the property store.
std::string bring_up_calls();

/// The log of SDK calls without the same.
std::string calls_of_interest(bool with_results = false);
