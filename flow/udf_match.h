#pragma once

#include <cstdint>
#include <vector>

#include "flow/flow_types.h"

/// A flow's match on any bytes of the frame, in the 4-byte words that the chip compares.

/// One 4-byte piece of a flow's user-defined match.
struct bcm_udf_s {
    uint32_t udf_id; ///< 0 until a UDF is found or created for the piece
    uint32_t offset; ///< where in the frame it stands, in bytes
    uint8_t data[4]; ///< frame byte order
    uint8_t mask[4]; ///< frame byte order
};

/// Appends the words that `udf` touches, without those whose mask is all zero. The chip's words
/// start 2 bytes before the frame, so the first word may begin before `udf.offset`; its `offset` is
/// `udf.offset` all the same. 0, or BCM_E_PARAM without words: a length of 0, no data, no mask.
int split_qualify_udf(const of_flow_qualify_udf_s& udf, std::vector<bcm_udf_s>& words);

/// A debugging aid: nothing sets it. 1 lets `dump_hex_bytes` print.
extern uint8_t field_dbg;

/// While `field_dbg` is 1, prints bytes as "%02x ", 16 to a line, and an empty line at the end.
void dump_hex_bytes(const uint8_t* data, int length);
