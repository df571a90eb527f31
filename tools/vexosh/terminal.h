#pragma once

#include "tools/vexosh/interpreter.h"

namespace vexosh {

/// Prompts for lines until the end of input or `quit`; errors are printed and forgotten. Ctrl-C
/// ends what a line waits for.
void run_terminal(Interpreter& shell);

/// Whether a stream is a terminal whose user does not say NO_COLOR.
bool wants_colour(int stream);

} // namespace vexosh
