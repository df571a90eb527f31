#include "tools/vexosh/grammar.h"

#include <algorithm>
#include <cctype>

#include "tools/vexosh/input.h"

namespace vexosh {
namespace {

constexpr std::size_t kColumns = 80;

bool begins_with(const std::vector<std::string>& words, const std::vector<std::string>& start)
{
    return start.size() <= words.size() && std::equal(start.begin(), start.end(), words.begin());
}

void add_once(std::vector<std::string>& words, const std::string& word)
{
    if (std::ranges::find(words, word) == words.end()) {
        words.push_back(word);
    }
}

/// The words of a piece of usage that stand for themselves: `half` and `full` of "half|full".
std::vector<std::string> literals(std::string_view piece)
{
    std::vector<std::string> found;
    std::string word;
    for (char c : std::string(piece) + "|") {
        if (c != '|' && c != '[' && c != ']') {
            word += c;
            continue;
        }
        const bool literal = !word.empty() && word.find("...") == std::string::npos &&
                             std::ranges::none_of(word, [](unsigned char letter) {
                                 return std::isupper(letter) != 0;
                             });
        if (literal) {
            found.push_back(word);
        }
        word.clear();
    }
    return found;
}

/// Literals that may be the `index`-th word after a command. Positions are known as far as nothing
/// is optional; beyond, every literal may come.
std::vector<std::string> usage_words(const Command& command, std::size_t index)
{
    const std::vector<std::string> pieces = split_words(command.usage);
    auto loose = std::ranges::find_if(pieces, [](const std::string& piece) {
        return piece.find('[') != std::string::npos || piece == "...";
    });
    if (index < static_cast<std::size_t>(loose - pieces.begin())) {
        return literals(pieces[index]);
    }
    if (loose != pieces.end() && *loose == "...") {
        loose = pieces.begin(); // from some word on, all may come again
    }
    std::vector<std::string> all;
    for (auto piece = loose; piece != pieces.end(); ++piece) {
        for (const std::string& word : literals(*piece)) {
            add_once(all, word);
        }
    }
    return all;
}

/// Where a text longer than `room` can be broken: at a blank or behind a |, with `room` characters
/// at most before it and `least` at least; or else at the first blank; or else nowhere.
std::size_t break_at(std::string_view text, std::size_t room, std::size_t least)
{
    for (std::size_t end = room; end > 0 && end >= least; --end) {
        if (text[end] == ' ' || text[end - 1] == '|') {
            return end;
        }
    }
    return text.find(' ', room);
}

} // namespace

const std::vector<const Command*>& all_commands()
{
    static const std::vector<const Command*> all = [] {
        std::vector<const Command*> list;
        for (const auto commands :
             {card_commands(),      trouble_commands(),      vlan_commands(),
              port_commands(),      traffic_commands(),      lag_commands(),
              fdb_commands(),       stp_commands(),          flow_commands(),
              trap_commands(),      l3_commands(),           route_commands(),
              counter_commands(),   frame_commands(),        replay_commands(),
              capture_commands(),   save_commands(),         record_commands(),
              show_port_commands(), show_counter_commands(), show_l2_commands(),
              show_flow_commands(), show_l3_commands(),      show_commands(),
              general_commands()}) {
            for (const Command& command : commands) {
                list.push_back(&command);
            }
        }
        return list;
    }();
    return all;
}

std::string synopsis(const Command& command)
{
    return std::string(command.words) + (*command.usage == '\0' ? "" : " ") + command.usage;
}

const Command* find_command(const std::vector<std::string>& words, std::size_t& length)
{
    const Command* best = nullptr;
    length = 0;
    for (const Command* command : all_commands()) {
        const std::vector<std::string> wanted = split_words(command->words);
        if (wanted.size() > length && begins_with(words, wanted)) {
            best = command;
            length = wanted.size();
        }
    }
    return best;
}

std::vector<std::string> next_command_words(const std::vector<std::string>& words)
{
    std::vector<std::string> next;
    for (const Command* command : all_commands()) {
        const std::vector<std::string> all = split_words(command->words);
        if (all.size() > words.size() && begins_with(all, words)) {
            add_once(next, all[words.size()]);
        }
    }
    return next;
}

std::vector<std::string> completions(const std::vector<std::string>& words, std::string_view start)
{
    std::vector<std::string> found = next_command_words(words);
    std::size_t length = 0;
    if (const Command* command = find_command(words, length)) {
        for (const std::string& word : usage_words(*command, words.size() - length)) {
            add_once(found, word);
        }
    }
    std::erase_if(found, [&](const std::string& word) { return !word.starts_with(start); });
    return found;
}

std::string in_columns(const std::vector<std::string>& words)
{
    constexpr std::size_t kGap = 2;
    std::size_t width = 0;
    for (const std::string& word : words) {
        width = std::max(width, word.size() + kGap);
    }
    std::string text;
    std::size_t column = 0;
    for (const std::string& word : words) {
        if (column > 0 && column + word.size() > kColumns) {
            text.erase(text.find_last_not_of(' ') + 1);
            text += '\n';
            column = 0;
        }
        text += word + std::string(width - word.size(), ' ');
        column += width;
    }
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string folded(const std::string& text, std::size_t indent)
{
    std::string result;
    std::string_view rest = text;
    for (std::size_t room = kColumns; rest.size() > room; room = kColumns - indent) {
        const std::size_t end = break_at(rest, room, indent);
        if (end == std::string_view::npos) {
            break;
        }
        result += std::string(rest.substr(0, end)) + "\n" + std::string(indent, ' ');
        rest.remove_prefix(end + (rest[end] == ' ' ? 1 : 0));
    }
    return result + std::string(rest);
}

} // namespace vexosh
