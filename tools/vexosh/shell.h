#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "tools/vexosh/console.h"
#include "tools/vexosh/grammar.h"
#include "tools/vexosh/input.h"
#include "tools/vexosh/interpreter.h"
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

/// Runs commands on a session. Several may share one.
class Shell : public Interpreter {
public:
    /// What commands print and what happens meanwhile goes to the console.
    Shell(Session& session, Console& console);
    ~Shell() override;

    Session& session() { return session_; }
    std::ostream& out() { return out_; }

    /// Tables as JSON for programs, or as text.
    void use_json(bool on) { json_ = on; }
    bool json() const { return json_; }
    /// Whether heads of tables stand out.
    void use_colour(bool on) { colour_ = on; }
    bool colour() const { return colour_; }
    /// Whether somebody watches: long work then tells how far it has come, in a line that it wipes
    /// out in the end.
    void use_terminal(bool on) { terminal_ = on; }
    bool terminal() const { return terminal_; }

    /// Tells somebody who watches what a command waits for.
    void tell_waiting(const std::string& what)
    {
        out_ << (terminal_ ? what + "; Ctrl-C ends it\n" : "") << std::flush;
    }

    /// Whether packets for the CPU, link and MAC table changes are told as they come.
    void follow_events(bool on) { session_.follow_all(follower_, on); }

    /// Lets real time pass, and others run commands.
    /// @return false when it is to end before.
    bool pause(std::chrono::microseconds duration);
    /// Lets others run commands, for a moment.
    void give_way() { pause(std::chrono::microseconds(100)); }
    /// While one lives, others run commands.
    class Aside {
    public:
        explicit Aside(Shell& shell) : shell_(shell) { shell_.turn_.unlock(); }
        Aside(const Aside&) = delete;
        Aside& operator=(const Aside&) = delete;
        ~Aside() { shell_.turn_.lock(); }

    private:
        Shell& shell_;
    };
    bool ending() const override;
    /// Ends what runs, from another thread; from then on pauses are none.
    void stop() { stopped_ = true; }
    /// From here on all runs its time again.
    void resume() { stopped_ = false; }

    /// The words of the command that runs.
    const std::string& command() const { return command_; }

private:
    class Turn;
    void run_command(const std::string& command) override;
    void record(const std::string& text);
    void keep(const std::vector<std::string>& words, const std::string& text);

    Session& session_;
    LineStream out_;
    int follower_;
    bool json_ = false, colour_ = false, terminal_ = false;
    std::atomic<bool> stopped_{false};
    std::string command_;
    std::unique_lock<std::mutex> turn_; ///< held while a command runs
    int depth_ = 0;                     ///< commands that run others
};

/// Throws unless the driver did what it was asked.
void require(bool done, const std::string& what);

/// Prints a table, or a line in its place when it has no rows; as JSON, if so wanted, with all rows
/// under the command's words.
void print(Shell& shell, const vexosim::TextTable& table, const char* when_empty);
/// The same where a table without rows has its head, too.
void print(Shell& shell, const vexosim::TextTable& table);
/// Prints a table, or as JSON, with `more` about all of it; `text` is how else that is said.
void print(Shell& shell, const vexosim::TextTable& table, const nlohmann::ordered_json& more,
           const std::string& text);
/// Prints rows of a name and a value; the head says whose they are.
void print_properties(Shell& shell, const vexosim::TextTable& table);

} // namespace vexosh
