#include "tools/vexosh/shell.h"

#include <fstream>
#include <istream>

namespace vexosh {
namespace {

constexpr int kDeepestScript = 16;

std::size_t matching_words(const Command& command, const std::vector<std::string>& words)
{
    const std::vector<std::string> wanted = split_words(command.words);
    const bool matches =
        wanted.size() <= words.size() && std::equal(wanted.begin(), wanted.end(), words.begin());
    return matches ? wanted.size() : 0;
}

/// What may follow the words that were understood.
std::string suggestions(const std::string& first)
{
    std::string result;
    for (const Command* command : all_commands()) {
        const std::vector<std::string> words = split_words(command->words);
        if (words[0] == first && words.size() > 1 &&
            (" " + result + ",").find(" " + words[1] + ",") == std::string::npos) {
            result += (result.empty() ? "" : ", ") + words[1];
        }
    }
    return result;
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
    throw BadInput(problem + "; usage: " + usage_);
}

std::vector<const Command*> all_commands()
{
    std::vector<const Command*> all;
    for (const auto commands : {card_commands(), vlan_commands(), port_commands(), frame_commands(),
                                show_commands(), general_commands()}) {
        for (const Command& command : commands) {
            all.push_back(&command);
        }
    }
    return all;
}

void require(bool done, const std::string& what)
{
    if (!done) {
        throw BadInput(what + ": the driver refused");
    }
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
    const Command* best = nullptr;
    std::size_t length = 0;
    for (const Command* command : all_commands()) {
        if (const std::size_t matched = matching_words(*command, words); matched > length) {
            best = command;
            length = matched;
        }
    }
    if (best == nullptr) {
        const std::string next = suggestions(words[0]);
        throw BadInput(next.empty() ? "unknown command '" + words[0] + "'; try help"
                                    : "'" + words[0] + "' is followed by one of: " + next);
    }
    const std::string usage =
        std::string(best->words) + (*best->usage == '\0' ? "" : " ") + best->usage;
    Words rest(
        std::vector<std::string>(words.begin() + static_cast<std::ptrdiff_t>(length), words.end()),
        usage);
    best->run(*this, rest);
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
