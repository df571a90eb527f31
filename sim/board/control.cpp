// The board's control interface.

#include "vexosim/board.h"

#include "sim/board/board_state.h"

namespace vexosim::board {

using vexoboard::LockedBoard;
using vexoboard::serving;

static_assert(expander_address == vexoboard::I2cBus::expander_address);

void enable()
{
    serving = true;
}

void disable()
{
    serving = false;
}

bool enabled()
{
    return serving;
}

void reset()
{
    const LockedBoard board;
    *board = {};
}

bool select_daughter_module(unsigned field)
{
    if (field > 3) {
        return false;
    }
    const LockedBoard board;
    board->daughter_field = field;
    return true;
}

bool set_present(const std::string& path, bool present)
{
    const int node = vexoboard::find_node(path.c_str());
    if (node == vexoboard::no_node) {
        return false;
    }
    const LockedBoard board;
    board->nodes[static_cast<std::size_t>(node)].present = present;
    return true;
}

bool fail(const std::string& path, Op op, int error, unsigned skip)
{
    const int node = vexoboard::find_node(path.c_str());
    if (node == vexoboard::no_node || error <= 0) {
        return false;
    }
    const LockedBoard board;
    auto& faults = board->nodes[static_cast<std::size_t>(node)].faults;
    faults[static_cast<std::size_t>(op)] = {error, skip};
    return true;
}

void clear_faults()
{
    const LockedBoard board;
    for (vexoboard::NodeState& node : board->nodes) {
        node.faults = {};
    }
}

bool set_eeprom(unsigned index, std::span<const std::uint8_t> bytes)
{
    if (index >= vexoboard::eeprom_count) {
        return false;
    }
    const LockedBoard board;
    board->eeproms[index].emplace(bytes.begin(), bytes.end());
    return true;
}

bool remove_eeprom(unsigned index)
{
    if (index >= vexoboard::eeprom_count) {
        return false;
    }
    const LockedBoard board;
    board->eeproms[index].reset();
    return true;
}

std::uint8_t expander_register(unsigned reg)
{
    const LockedBoard board;
    return reg < vexoboard::Expander::register_count ? board->bus.expander.read(reg)
                                                     : std::uint8_t{0};
}

bool set_expander_inputs(unsigned port, std::uint8_t levels)
{
    if (port > 1) {
        return false;
    }
    const LockedBoard board;
    board->bus.expander.set_inputs(port, levels);
    return true;
}

std::uint8_t expander_lines(unsigned port)
{
    const LockedBoard board;
    return port > 1 ? std::uint8_t{0} : board->bus.expander.lines(port);
}

std::string i2c_log()
{
    const LockedBoard board;
    return board->bus.log;
}

void clear_i2c_log()
{
    const LockedBoard board;
    board->bus.log.clear();
}

} // namespace vexosim::board
