#pragma once

#include "tools/vexosh/shell.h"

namespace vexosh {

/// Reads commands at a prompt until `quit` or the end of input, with history and completion of
/// command words. Errors are printed and the prompt comes back.
void run_terminal(Shell& shell);

} // namespace vexosh
