#pragma once

/// Which direction of a port's traffic is copied to its mirror destination.
enum mirror_type_t : int {
    MIRROR_OFF = 0,
    MIRROR_INGRESS = 1,
    MIRROR_EGRESS = 2,
    MIRROR_BOTH = 3,
};
