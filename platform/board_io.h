#pragma once

/// The board around the switch chip, reached through its device nodes: the I2C port expander (a
/// PCA9555) that drives the reset lines of the SFP PHYs, the CPU's register window, which tells the
/// type of daughter module, and the identification EEPROMs of the daughter cards. Failures on the
/// I2C bus print one line on standard output and release what was opened.

/// A daughter card's identification record, the bytes of its EEPROM as they are.
struct fixed_info_s {
    unsigned char bytes[71];
};

/// The EEPROMs' nodes are this and an index: "/dev/wsdcep0" and so on.
extern const char* dev_wsdcep;

/// The node of the port LEDs. Nothing in the driver opens it.
extern const char* dev_wspled;

/// Reads `len` bytes from register `reg` of the I2C device `dev` into `buf`, which is zeroed first,
/// also when the read fails. Returns 0, or -1 after a message. The last argument means nothing. A
/// read that gives fewer bytes than asked for counts as done.
int ReadPCA9555(int dev, unsigned char* buf, int len, unsigned reg, int unused);

/// Writes `len` bytes to register `reg` of the I2C device `dev`. Returns 0, or -1 after a message.
int vexo_i2c_write(int dev, const void* buf, int len, unsigned reg);

/// Makes the eight lines of the expander's second port outputs. Returns the write's result.
int BoardInitPCA9555_SFP(int dev);

/// Pulses the SFP PHY reset on line `bit` of the expander's second port: low for one second, then
/// high. The caller waits meanwhile. Returns 0, or -1 when a transfer fails, with the line left as
/// it is then. Bits that are none of the port's lines write the register back as it was, twice.
int ResetSFPPHYOnBoard(int dev, unsigned char bit);

/// The type of daughter module: 2 (SFP ports), 1, 15 (none or unknown), or 255 when the register
/// window cannot be opened, which prints a line, or cannot be mapped, which does not.
int DetectDaughterModuleID();

/// Reads the identification record of daughter card `index`. False, with `info` as it was, for an
/// index above 6 (nothing is opened), an EEPROM that does not open, and a record that is not whole.
/// Prints nothing.
bool vexo_read_dcard_eeprom(int index, fixed_info_s* info);
