#pragma once

#include <cstdint>
#include <vector>

/// Copies the first `count` bytes of `bytes` into `array` and returns true. When `array` is null or
/// `bytes` holds fewer than `count` bytes, returns false and leaves `array` alone.
bool vexo_vector_to_array(const std::vector<uint8_t>& bytes, uint8_t* array, unsigned count);
