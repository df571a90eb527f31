#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

/// The board around the chip: the device nodes "/dev/i2cDev", "/dev/cpuDev", "/dev/wsdcep0" to
/// "/dev/wsdcep6" and "/dev/wspled", served to this process alone by libvexoboard. A program that
/// links libvexoboard opens them as it would on a card. Until `enable` is called the names behave
/// as the system has them. All functions may be called from any thread. After fork() the child has
/// a board of its own, a copy of the parent's at that moment.
///
/// The nodes are reached by their full names through open, open64, read, write, lseek, ioctl, mmap
/// and close. fopen, openat and stat see the system's own files, and a descriptor made by dup from
/// an open "/dev/i2cDev" transfers nothing.
namespace vexosim::board {

/// What can be made to fail on a node.
enum class Op { open, ioctl, seek, read, write, map };

/// Starts serving the nodes, with the state that `reset` leaves or earlier calls have set up.
void enable();

/// Stops serving the nodes: the names are the system's again. Descriptors that are open stay
/// usable.
void disable();

bool enabled();

/// Puts the whole board back to power-on: expander registers at their defaults with all lines
/// high, no EEPROM fitted, daughter module field 0, every node present, no faults, log empty.
/// Serving is left on or off as it was.
void reset();

/// Selects the daughter module shown in bits 12 and 13 of the big-endian 32-bit register at byte
/// offset 0x90D30 of "/dev/cpuDev", a window of 16 MiB: 0 to 3. The register's other bits are 1,
/// all other bytes of the window 0. Other values are refused with false and change nothing. Windows
/// that are open already keep what they show.
bool select_daughter_module(unsigned field);

/// Takes a node away (opening it fails with ENOENT) or puts it back. False when `path` is no node
/// of the board. An EEPROM is also absent while none is fitted.
bool set_present(const std::string& path, bool present);

/// Makes `op` fail on the node `path` with errno `error`, after `skip` more that do not, and from
/// then on until `clear_faults`. A later call for the same node and operation replaces the earlier
/// one. `seek` and `map` count openings of the node: a descriptor opened under such a fault can
/// neither be positioned nor mapped, with the system's own ESPIPE and ENODEV whatever `error` says.
/// False, changing nothing, when `path` is no node of the board or `error` is not positive.
bool fail(const std::string& path, Op op, int error, unsigned skip = 0);

/// Every operation works again on every node. Descriptors that were opened under a `seek` or `map`
/// fault keep it.
void clear_faults();

/// Bytes in one EEPROM's record.
inline constexpr std::size_t eeprom_record_size = 71;

/// Fits EEPROM `index` (0 to 6) with these bytes, usually 71 of them; fewer give a short read, none
/// an empty device. The EEPROM is write-protected. False, changing nothing, for any other index.
/// Descriptors that are open keep what they had.
bool set_eeprom(unsigned index, std::span<const std::uint8_t> bytes);

/// Takes EEPROM `index` out. False for an index above 6.
bool remove_eeprom(unsigned index);

/// The expander answers at this I2C device address; no other address answers (ENXIO).
inline constexpr int expander_address = 7;

/// Registers of the expander, each for lines 0-7 and then 8-15: 0, 1 input (level of the line,
/// inverted where the polarity register says so); 2, 3 output (0xFF at power-on); 4, 5 polarity
/// (0x00); 6, 7 configuration (1 = input, 0xFF). Other registers fail with EIO on the bus. Returns
/// what the bus would read, without logging it; 0 for a number above 7.
std::uint8_t expander_register(unsigned reg);

/// The level that outside drives, or the pull-ups hold, on the lines of `port` (0 or 1) that are
/// configured as inputs. False for any other port.
bool set_expander_inputs(unsigned port, std::uint8_t levels);

/// The level on the lines of `port` (0 or 1): the output register where a line is an output, the
/// outside level where it is an input. 0 for any other port.
std::uint8_t expander_lines(unsigned port);

/// Every I2C transfer since the last `reset` or `clear_i2c_log`, one per line and in order:
/// "7 read 3: ff", "7 write 3: fd", "9 read 3: no answer". Transfers made to fail by `fail` do not
/// reach the bus and are not listed.
std::string i2c_log();
void clear_i2c_log();

} // namespace vexosim::board
