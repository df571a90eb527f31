#include "tools/vexosh/shell.h"

#include <fstream>
#include <istream>

namespace vexosh {
namespace {

constexpr int kDeepestScript = 16;

std::string joined(const std::vector<std::string>& words, const char* separator)
{
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : separator) + word;
    }
    return text;
}

/// Why words begin no command: as far as they are understood, and what may come then.
std::string unknown_command(std::vector<std::string> words)
{
    const std::string first = words[0];
    while (!words.empty()) {
        if (const std::vector<std::string> next = next_command_words(words); !next.empty()) {
            return "'" + joined(words, " ") + "' is followed by one of: " + joined(next, ", ");
        }
        words.pop_back();
    }
    return "unknown command '" + first + "'; try help";
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
        throw BadInput(what + ": the driver refused");
    }
}

void print(Shell& shell, const vexosim::TextTable& table, const char* when_empty)
{
    shell.out() << (table.rows.empty() ? std::string(when_empty) + "\n" : table.text());
}

void Shell::run_line(const std::string& line)
{
    for (const std::string& command : split_commands(line)) {
        const std::vector<std::string> words = split_words(command);
        if (!words.empty()) {
            run_command(words);
        }
        if (finished_) {
            return;
        }
    }
}

void Shell::run_command(const std::vector<std::string>& words)
{
    std::size_t length = 0;
    const Command* command = find_command(words, length);
    if (command == nullptr) {
        throw BadInput(unknown_command(words));
    }
    Words rest({words.begin() + static_cast<std::ptrdiff_t>(length), words.end()}, *command);
    command->run(*this, rest);
    session_.settle();
}

void Shell::run_script(std::istream& script, const std::string& name)
{
    if (nesting_ == kDeepestScript) {
        throw BadInput(name + ": scripts are nested too deep");
    }
    ++nesting_;
    std::string line;
    for (int number = 1; !finished_ && std::getline(script, line); ++number) {
        try {
            run_line(line);
        } catch (const BadInput& problem) {
            --nesting_;
            throw BadInput(name + ":" + std::to_string(number) + ": " + problem.what());
        }
    }
    --nesting_;
}

void Shell::run_script_file(const std::string& path)
{
    std::ifstream script(path);
    if (!script) {
        throw BadInput("cannot read script '" + path + "'");
    }
    run_script(script, path);
}

} // namespace vexosh
