#include "tools/vexosh/shell.h"

#include <algorithm>
#include <array>
#include <thread>

#include "tools/vexosh/json_table.h"
#include "tools/vexosh/nearest.h"
#include "tools/vexosh/refusal.h"

namespace vexosh {
namespace {

std::string joined(const std::vector<std::string>& words, const char* separator)
{
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : separator) + word;
    }
    return text;
}

std::string trimmed(const std::string& text)
{
    const std::size_t start = text.find_first_not_of(" \t");
    return text.substr(start, text.find_last_not_of(" \t") + 1 - start);
}

/// Why words begin no command: as far as they are understood, and what may come then.
std::string unknown_command(const std::vector<std::string>& words)
{
    std::vector<std::string> known = words;
    std::vector<std::string> next;
    while (!known.empty() && (next = next_command_words(known)).empty()) {
        known.pop_back();
    }
    const std::string before = joined(known, " ") + (known.empty() ? "" : " ");
    if (known.size() < words.size()) {
        const std::string& typed = words[known.size()];
        next = next_command_words(known);
        if (const std::string name = meant(typed, next); !name.empty()) {
            return "unknown command '" + before + typed + "'; did you mean '" + before + name +
                   "'?";
        }
    }
    return known.empty()
               ? "unknown command '" + words[0] + "'; try help"
               : "'" + joined(known, " ") + "' is followed by one of: " + joined(next, ", ");
}

} // namespace

const std::string& Words::next(const char* what)
{
    if (empty()) {
        usage_error(std::string("missing ") + what);
    }
    return words_[next_++];
}

bool Words::take(std::string_view word)
{
    const bool taken = !empty() && words_[next_] == word;
    next_ += taken ? 1 : 0;
    return taken;
}

unsigned Words::number(const char* what, std::int64_t least, std::int64_t most)
{
    return static_cast<unsigned>(parse_number(next(what), what, least, most));
}

std::vector<std::string> Words::rest()
{
    std::vector<std::string> words(words_.begin() + static_cast<std::ptrdiff_t>(next_),
                                   words_.end());
    next_ = words_.size();
    return words;
}

void Words::end() const
{
    if (!empty()) {
        usage_error("unexpected '" + words_[next_] + "'");
    }
}

void Words::usage_error(const std::string& problem) const
{
    constexpr std::size_t kLongest = 160;
    const std::string usage = synopsis(*command_);
    throw BadInput(problem + (usage.size() <= kLongest ? "; usage: " + usage
                                                       : "; `help " + command() + "` says more"));
}

void require(bool done, const std::string& what)
{
    if (!done) {
        throw Refused(what + ": the driver refused");
    }
}

namespace {

void print_text(Shell& shell, const vexosim::TextTable& table)
{
    const std::string text = table.text();
    const std::size_t head = text.find('\n');
    shell.out() << (shell.colour()
                        ? "\033[1m" + text.substr(0, head) + "\033[0m" + text.substr(head)
                        : text);
}

} // namespace

void print(Shell& shell, const vexosim::TextTable& table, const char* when_empty)
{
    if (table.rows.empty() && !shell.json()) {
        shell.out() << when_empty << '\n';
    } else {
        print(shell, table);
    }
}

void print(Shell& shell, const vexosim::TextTable& table)
{
    if (shell.json()) {
        shell.out() << json_of(shell.command(), table).dump() << '\n';
    } else {
        print_text(shell, table);
    }
}

void print(Shell& shell, const vexosim::TextTable& table, const nlohmann::ordered_json& more,
           const std::string& text)
{
    if (!shell.json()) {
        shell.out() << text;
        return;
    }
    auto json = json_of(shell.command(), table);
    json.update(more);
    shell.out() << json.dump() << '\n';
}

void print_properties(Shell& shell, const vexosim::TextTable& table)
{
    if (shell.json()) {
        shell.out() << json_of_properties(shell.command(), table).dump() << '\n';
    } else {
        print_text(shell, table);
    }
}

/// A command's turn on the session; commands that it runs are part of it.
class Shell::Turn {
public:
    explicit Turn(Shell& shell) : shell_(shell)
    {
        if (shell_.depth_++ == 0) {
            shell_.turn_.lock();
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn()
    {
        shell_.out_.flush();
        if (--shell_.depth_ == 0) {
            shell_.turn_.unlock();
        }
    }

private:
    Shell& shell_;
};

Shell::Shell(Session& session, Console& console)
    : session_(session), out_(console), turn_(session.turn())
{
    follower_ = session_.follow([&console](const Event& event) { console.tell(event); });
}

Shell::~Shell()
{
    session_.unfollow(follower_);
}

void Shell::run_command(const std::string& text)
{
    const std::vector<std::string> words = split_words(text);
    std::size_t length = 0;
    const Command* command = find_command(words, length);
    if (command == nullptr) {
        throw BadInput(unknown_command(words));
    }
    const std::vector<std::string> arguments(words.begin() + static_cast<std::ptrdiff_t>(length),
                                             words.end());
    Words rest(arguments, *command);
    const Turn turn(*this);
    command_ = command->words;
    record(text);
    forget_refusal();
    try {
        command->run(*this, rest);
    } catch (const Refused& refused) {
        keep(words, "try " + text);
        throw BadInput(refused.what() + (": " + why_refused(*command, arguments)));
    } catch (const BadInput&) {
        const auto driver = session_.driver();
        session_.record().failed(trimmed(text));
        throw;
    }
    keep(words, text);
    session_.settle();
}

/// Notes what happens to the card other than by driver calls, while these are recorded.
void Shell::record(const std::string& text)
{
    constexpr std::array kSurroundings = {"attach", "detach", "link", "partner",   "impair",
                                          "wait",   "fault",  "send", "send-file", "replay"};
    const auto driver = session_.driver();
    if (session_.record().on() &&
        std::ranges::find(kSurroundings, command_) != kSurroundings.end()) {
        session_.record().line(trimmed(text));
    }
}

/// Has the session keep a command that has changed flows or traps.
void Shell::keep(const std::vector<std::string>& words, const std::string& text)
{
    const auto is = [&words](std::size_t at, std::string_view word) {
        return words.size() > at && words[at] == word;
    };
    const bool called = is(0, "call") && words.size() > 1 && !words[1].starts_with("get_") &&
                        (words[1].find("_of_flow") != std::string::npos ||
                         words[1].find("_filter") != std::string::npos);
    if (is(0, "flow") || is(0, "trap") || called) {
        session_.keep_field_command(trimmed(text));
    }
}

bool Shell::pause(std::chrono::microseconds duration)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds kLook{50};
    turn_.unlock();
    const auto end = Clock::now() + duration;
    auto left = end - Clock::now();
    for (; left > Clock::duration::zero() && !ending(); left = end - Clock::now()) {
        std::this_thread::sleep_for(std::min<Clock::duration>(left, kLook));
    }
    turn_.lock();
    return left <= Clock::duration::zero();
}

bool Shell::ending() const
{
    return stopped_ || Interpreter::ending();
}

} // namespace vexosh
