#pragma once

#include <chrono>
#include <iosfwd>
#include <string>

#include "tools/vexosh/interrupt.h"

namespace vexosh {

/// Reads lines and scripts, and has their commands run one by one. What fails says why in one line,
/// by a BadInput.
class Interpreter {
public:
    Interpreter() = default;
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;
    virtual ~Interpreter() = default;

    /// Runs a line of commands, up to the first that fails.
    void run_line(const std::string& line);
    /// Runs the lines of a script; errors name the script and the line.
    void run_script(std::istream& script, const std::string& name);
    void run_script_file(const std::string& path);

    /// Whether a script goes on behind a line that fails; the error is then printed at once.
    void keep_going(bool on) { keep_going_ = on; }
    /// Lines that failed and were gone on behind.
    int failures() const { return failures_; }

    bool finished() const { return finished_; }
    /// Whether what runs is to end before its time: what is left of its line or script, too.
    virtual bool ending() const { return heeds_ctrl_c_ && Interruptible::interrupted(); }
    /// Ctrl-C ends what runs here. Of the one at the terminal.
    void heed_ctrl_c() { heeds_ctrl_c_ = true; }
    void finish() { finished_ = true; }

protected:
    /// @param command not empty, without separators outside quotes.
    virtual void run_command(const std::string& command) = 0;

private:
    void run_script_line(const std::string& line, const std::string& place);

    bool finished_ = false, keep_going_ = false, heeds_ctrl_c_ = false;
    int nesting_ = 0, failures_ = 0;
};

} // namespace vexosh
