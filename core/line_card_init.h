#pragma once

/// Sets the card's identity (platform/port_map.h: one chip, 24 ports, slot 1) and writes the slot.
/// For the host to call after bring-up; events carry slot 0 until then. Always true.
bool vexo_init_line_card(int& slot);
