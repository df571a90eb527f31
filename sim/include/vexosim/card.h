/// @file
/// The card around the switch chip: port numberings, register space, LED processor, PHYs, and what
/// the driver has borrowed from the SDK and not returned.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vexosim {

inline constexpr int kPorts = 54;       ///< chip-local ports 0 to 53, and as many user ports
inline constexpr int kCpuUserPort = 53; ///< user port of the CPU
inline constexpr int kFirstLport = 256; ///< lport of chip-local port 0, the CPU port

/// Whether the device has been attached, and its ports have logical ports.
bool attached();

/// Chip-local port of a user port, -1 when there is none. The driver chooses the user ports while
/// the device is attached.
int chip_port_of(int user_port);
/// User port of a chip-local port, -1 when it has none.
int user_port_of(int chip_port);
/// How logs name a chip-local port: its user port, or `cpu`.
std::string port_name(int chip_port);

/// Port lists that have storage and were not freed.
std::size_t live_lplists();
/// Buffers from `sal_dma_alloc` that were not freed.
std::size_t live_dma_buffers();

/// The 32-bit word at a byte offset of the register space; 0 outside of it.
std::uint32_t chip_register(std::uint32_t byte_offset);
/// A byte of the LED processor's data RAM.
std::uint8_t led_data(unsigned index);
/// The program that runs in the LED processor; empty before one is loaded.
std::vector<std::uint8_t> led_program();
/// A register of a port's PHY, or of the shadow set behind its register 0x1C.
std::uint16_t phy_register(int chip_port, unsigned reg);
std::uint16_t phy_shadow_register(int chip_port, unsigned selector);

/// A property of the SDK's store.
std::optional<std::string> property(const std::string& name);
void set_property(const std::string& name, const std::string& value);

} // namespace vexosim
