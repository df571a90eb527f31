/// @file
/// Faults: SDK calls that fail on request. A call that is made to fail changes nothing.
/// Calls without a result code cannot fail; those that return a pointer fail with null.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace vexosim {

struct Fault {
    std::string call = {};   ///< name of the SDK function; empty: any that can fail
    unsigned nth = 1;        ///< which of the matching calls from now on, 1 is the next
    bool sticky = false;     ///< also every matching call after it
    int code = -1;           ///< what it reports, any value
    bool do_nothing = false; ///< reports success (0, or a larger `code`) without doing anything
    std::set<std::string> spare = {}; ///< with an empty `call`: functions that do not match
};

/// Functions of the SDK that `Fault::call` may name, in alphabetical order. All but a few: those
/// have no result that could tell of a failure.
const std::vector<std::string>& calls_that_can_fail();

/// Adds a fault. Of several that hit the same call the oldest wins; each counts on its own.
void inject(Fault fault);
void clear_faults();

/// A fault, and what it has met so far.
struct ArmedFault {
    Fault fault;
    unsigned seen = 0; ///< calls that matched
    unsigned hits = 0; ///< of which it hit
};
/// Those that were added since clear_faults(), the oldest first.
std::vector<ArmedFault> armed_faults();

/// Calls that could have failed since clear_faults(), counted while there is a fault or a log.
unsigned long gated_calls();
/// Calls that were made to fail since clear_faults().
unsigned long faults_hit();
/// Their names, in order; each name once.
std::vector<std::string> faulted_calls();

} // namespace vexosim
