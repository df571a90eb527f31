#pragma once

#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include "tools/vexosh/input.h"
#include "tools/vexosh/session.h"

namespace vexosh {

/// The words behind a command, taken one by one. Errors carry the command's usage.
class Words {
public:
    Words(std::vector<std::string> words, std::string usage)
        : words_(std::move(words)), usage_(std::move(usage))
    {
    }

    bool empty() const { return next_ == words_.size(); }
    std::size_t size() const { return words_.size() - next_; }
    /// The next word; `what` is what is missing if there is none.
    const std::string& next(const char* what);
    /// The next word without taking it; empty if there is none.
    std::string peek() const { return empty() ? std::string{} : words_[next_]; }
    /// Takes the next word if it is this one.
    bool take(std::string_view word);
    /// All words that are left.
    std::vector<std::string> rest();
    /// Complains if a word is left.
    void end() const;
    [[noreturn]] void usage_error(const std::string& problem) const;

private:
    std::vector<std::string> words_;
    std::string usage_;
    std::size_t next_ = 0;
};

class Shell;

struct Command {
    const char* words; ///< what it begins with, e.g. "vlan add"
    const char* usage; ///< what follows
    const char* help;  ///< one line
    void (*run)(Shell&, Words&);
};

/// Reads commands and runs them on a session. A command that fails says why in one line.
class Shell {
public:
    explicit Shell(Session& session) : session_(session) {}

    Session& session() { return session_; }
    std::ostream& out() { return session_.out(); }

    /// Runs a line of commands. Throws BadInput at the first that fails.
    void run_line(const std::string& line);
    /// Runs the lines of a script; errors name the script and the line.
    void run_script(std::istream& script, const std::string& name);
    void run_script_file(const std::string& path);

    bool finished() const { return finished_; }
    void finish() { finished_ = true; }

private:
    void run_command(const std::vector<std::string>& words);

    Session& session_;
    bool finished_ = false;
    int nesting_ = 0;
};

/// Commands by subject, each list in the order help shows it.
std::span<const Command> general_commands();
std::span<const Command> card_commands();
std::span<const Command> vlan_commands();
std::span<const Command> port_commands();
std::span<const Command> frame_commands();
std::span<const Command> show_commands();
std::vector<const Command*> all_commands();

/// Throws unless the driver did what it was asked.
void require(bool done, const std::string& what);

} // namespace vexosh
