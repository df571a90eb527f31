#pragma once

#include <string>
#include <vector>

namespace vexosh {

struct Command;

/// Notes an operation of the driver that has just come back on this thread, if it was refused; and
/// the SDK call that failed in it, if one did.
/// @return done.
bool keep_refusal(const char* operation, bool done);
void forget_refusal();

/// Why the driver refused the last operation on this thread, as far as that can be told: the SDK
/// call that failed, or what a command's arguments name that there is not.
/// @param arguments the words behind the command's own.
std::string why_refused(const Command& command, const std::vector<std::string>& arguments);

} // namespace vexosh
