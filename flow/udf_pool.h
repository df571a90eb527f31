#pragma once

#include <cstdint>

/// The pool of user-defined fields (UDFs: 4-byte slices of a frame) that flows draw from. Callers
/// serialise.

constexpr unsigned vexo_udf_count = 93;

/// By UDF id: 1 = in use, 0 = free. Id 0 is reserved and never handed out.
extern uint8_t vexo_udf_usage[vexo_udf_count];

/// The most UDFs that one request may ask for: 92 once the card is brought up. It is a bound, not
/// the number still free.
extern uint32_t vexo_udf_available;

/// `vexo_udf_available`.
uint32_t vexo_udf_get_available();

namespace vexolc {

/// Frees every id but 0. Bring-up only: chip UDFs are not touched.
void reset_udf_pool();

} // namespace vexolc
