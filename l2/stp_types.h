#pragma once

/// A port's state in the single common spanning tree.
enum stp_state_t : int {
    STP_BLOCKING = 0,
    STP_LISTENING = 1,
    STP_LEARNING = 2,
    STP_FORWARDING = 3,
    STP_DISABLED = 4,
};

/// A port's state in one spanning-tree group.
enum mstp_state_t : int {
    MSTP_DISCARDING = 0,
    MSTP_LEARNING = 1,
    MSTP_FORWARDING = 2,
    MSTP_DISABLED = 3,
    MSTP_FORWARDING_ALIAS = 4, ///< sets forwarding too; never read back
};
