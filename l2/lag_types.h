#pragma once

/// How a LAG spreads traffic over its members: by which addresses of the frame.
enum lag_psc_t : int {
    LAG_PSC_SRC_MAC = 1,
    LAG_PSC_DST_MAC = 2,
    LAG_PSC_SRC_DST_MAC = 3,
    LAG_PSC_SRC_IP = 4,
    LAG_PSC_DST_IP = 5,
    LAG_PSC_SRC_DST_IP = 6,
};
