#pragma once

#include <array>
#include <cstddef>

namespace vexoboard {

/// The board's device nodes; the EEPROMs are `eeprom` to `eeprom` + 6.
enum Node : int { no_node = -1, i2c = 0, cpu = 1, led = 2, eeprom = 3 };

inline constexpr std::size_t eeprom_count = 7;
inline constexpr std::size_t node_count = 3 + eeprom_count;

inline constexpr std::array<const char*, node_count> node_paths = {
    "/dev/i2cDev",  "/dev/cpuDev",  "/dev/wspled",  "/dev/wsdcep0", "/dev/wsdcep1",
    "/dev/wsdcep2", "/dev/wsdcep3", "/dev/wsdcep4", "/dev/wsdcep5", "/dev/wsdcep6"};

/// The node of that name, or `no_node`, also for null.
int find_node(const char* path) noexcept;

/// Opens a node with open's flags: a descriptor, or -1 and errno.
int open_node(int node, int flags);

} // namespace vexoboard
