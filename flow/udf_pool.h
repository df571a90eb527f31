#pragma once

#include <cstdint>
#include <vector>

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

/// Takes the `count` lowest free ids and appends them to `ids`. When fewer are free, takes none but
/// deliberately appends them all the same and answers 0: look at `ids`. BCM_E_PARAM: a count of 0;
/// BCM_E_RESOURCE: more than `vexo_udf_available`.
int alloc_udf_ids(unsigned count, std::vector<unsigned>& ids);

namespace vexolc {

/// Frees every id but 0. Bring-up only: chip UDFs are not touched.
void reset_udf_pool();

} // namespace vexolc
