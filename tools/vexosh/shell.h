#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/vexosh/grammar.h"
#include "tools/vexosh/input.h"
#include "tools/vexosh/session.h"
#include "vexosim/state.h"

namespace vexosh {

/// The words behind a command, taken one by one. Errors carry the command's usage.
class Words {
public:
    Words(std::vector<std::string> words, const Command& command)
        : words_(std::move(words)), command_(&command)
    {
    }

    /// What the command begins with.
    std::string command() const { return command_->words; }

    bool empty() const { return next_ == words_.size(); }
    std::size_t size() const { return words_.size() - next_; }
    /// The next word; `what` is what is missing if there is none.
    const std::string& next(const char* what);
    /// The next word without taking it; empty if there is none.
    std::string peek() const { return empty() ? std::string{} : words_[next_]; }
    /// Takes the next word if it is this one.
    bool take(std::string_view word);
    /// The next word as a number within limits.
    unsigned number(const char* what, std::int64_t least, std::int64_t most);
    /// All words that are left.
    std::vector<std::string> rest();
    /// Complains if a word is left.
    void end() const;
    [[noreturn]] void usage_error(const std::string& problem) const;

private:
    std::vector<std::string> words_;
    const Command* command_;
    std::size_t next_ = 0;
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

/// Throws unless the driver did what it was asked.
void require(bool done, const std::string& what);

/// Prints a table, or a line in its place when it has no rows.
void print(Shell& shell, const vexosim::TextTable& table, const char* when_empty);

} // namespace vexosh
