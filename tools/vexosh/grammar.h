#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vexosh {

class Shell;
class Words;

/// A command. Help, errors and completion are all made from the table of these.
struct Command {
    const char* words; ///< what it begins with, e.g. "vlan add"
    /// What follows: NAMES stand for values, other words for themselves; a|b is either, [a] may be
    /// left out, ... repeats what is before it.
    const char* usage;
    const char* help; ///< what it does
    void (*run)(Shell&, Words&);
};

/// Commands by subject, each list in the order help shows it.
std::span<const Command> card_commands();
std::span<const Command> trouble_commands();
std::span<const Command> vlan_commands();
std::span<const Command> port_commands();
std::span<const Command> traffic_commands();
std::span<const Command> lag_commands();
std::span<const Command> fdb_commands();
std::span<const Command> stp_commands();
std::span<const Command> flow_commands();
std::span<const Command> trap_commands();
std::span<const Command> l3_commands();
std::span<const Command> route_commands();
std::span<const Command> counter_commands();
std::span<const Command> frame_commands();
std::span<const Command> replay_commands();
std::span<const Command> capture_commands();
std::span<const Command> save_commands();
std::span<const Command> record_commands();
std::span<const Command> show_port_commands();
std::span<const Command> show_counter_commands();
std::span<const Command> show_l2_commands();
std::span<const Command> show_flow_commands();
std::span<const Command> show_l3_commands();
std::span<const Command> show_commands();
std::span<const Command> general_commands();
const std::vector<const Command*>& all_commands();

/// "vlan add VID PORTS": the command's words and what follows them.
std::string synopsis(const Command& command);

/// The command that words begin with, the longest of several; null if there is none.
/// @param length out: how many words are the command's own.
const Command* find_command(const std::vector<std::string>& words, std::size_t& length);

/// How commands go on after `words`, in the order of the table, without repetition.
std::vector<std::string> next_command_words(const std::vector<std::string>& words);

/// Every word that may follow `words` and begins with `start`: of commands, or one that a command's
/// usage spells out.
std::vector<std::string> completions(const std::vector<std::string>& words, std::string_view start);

/// Words in columns of equal width, in lines of at most 80 characters.
std::string in_columns(const std::vector<std::string>& words);

/// Text in lines of at most 80 columns, broken at blanks or behind |; all but the first line are
/// indented.
std::string folded(const std::string& text, std::size_t indent);

} // namespace vexosh
