#pragma once

#include <cstdint>

/// The plain-structure twin of `Usp`, for the C-style callbacks.
struct usp_s {
    uint32_t unit;
    uint32_t slot;
    uint32_t port;
};
