#pragma once

struct bcm_port_info_s;

/// Port LEDs. Those of the 10 Gb/s ports are driven by the switch chip's LED processor, all others
/// by the LED outputs of the port's external PHY.

/// Loads the LED processor's program for the daughter module that is fitted. Always true, whatever
/// the chip said to it.
bool vexo_init_ledproc();

/// Shows a port's link on its LEDs. `port` is chip-local; `info` gives linkstatus and speed (Mb/s).
/// Prints one line for a 10 Gb/s port. Always true: what the PHY or the chip answers is not looked
/// at.
bool vexo_set_port_led(int unit, int port, bcm_port_info_s* info);

/// Sets LED output `led` (1 to 4) of a port's PHY to its driven (`on` not 0) or dark setting. False
/// for any other `led`, with nothing written.
bool vexo_phy_led_select(int unit, int port, int on, int led);
