#pragma once

/// From a freshly loaded library to a running chip with the card's default port set-up. Bring-up
/// only, one thread. Each returns true when done and stops at the first step that fails; what was
/// done before stays done. Nothing undoes them.

/// Starts the SDK, finds and initialises the chip, and fills the port tables (platform/port_map.h).
/// Needs nothing before it; succeeds at most once per process.
bool vexo_hwutil_init();

/// `vexo_hwutil_default_port_config_init`, then for every port but user port index 0:
/// autonegotiation on, spanning-tree group 1 forwarding, VLAN member filtering both ways.
bool vexo_hwutil_card_insert();

/// Link scan, L2 notification and packet receive with their handlers (pktio/receive.h), no
/// flooding to the CPU port, receive rates and queues, switch controls. From here on the SDK's
/// threads may call the handlers. Prints a line to standard output when a receive mapping fails.
bool vexo_hwutil_default_port_config_init();
