#pragma once

#include "core/trace_keywords.h"

/// Switches on the driver's messages about receive and link events. Any value but 0 is on. The
/// host writes it; the library never does.
extern unsigned char hw_util_dbg;

namespace vexolc {

/// Switches on the driver's other messages. Written by `set_trace` only; outlives the instance.
extern bool sdk_trace_enabled __attribute__((visibility("hidden")));

/// Prints bytes as "%02x ", 16 to a line, and an empty line at the end.
void print_bytes(const unsigned char* bytes, unsigned length);

} // namespace vexolc
