/// @file
/// The log of SDK calls. Each line reads `name(argument, argument)`:
/// - a logical port as its user port, `cpu`, or `lport:N` when it names no port; a list of them as
///   `[cpu, 3, 5]`; a chip-local port as the plain number;
/// - flags in hexadecimal from 10 on, other numbers in decimal; MAC addresses as 00:11:22:33:44:55;
/// - text in quotes, records as `{field=value, ...}`, handlers by their exported name or `handler`;
/// - `out` for an output, `null` for any null pointer.
///
/// *Chip calls* reach the chip; *local calls* are bookkeeping (`bcmx_lplist_*`, `sal_*`,
/// `soc_property_get*`, `*_t_init`, and the bus driver's operations as `bde.NAME`).
#pragma once

#include <string>

namespace vexosim {

/// Switches the log on or off; off at first. What was logged stays.
void log_calls(bool on);

/// The chip calls since the last clear_calls(), one per line.
std::string calls();
/// Like calls(), each line ending in ` = RESULT` (nothing for calls without one).
std::string calls_with_results();
/// Chip calls and local calls.
std::string all_calls();
std::string all_calls_with_results();

/// Forgets what was logged.
void clear_calls();

/// A call that reported an error. Kept whether or not the log is on.
struct FailedCall {
    const char* name = nullptr; ///< null: there was none
    int code = 0;               ///< below 0

    /// What the SDK calls the error, e.g. "Entry not found".
    const char* text() const;
};

/// The last call on this thread that reported an error since forget_failed_call().
FailedCall failed_call();
void forget_failed_call();

} // namespace vexosim
