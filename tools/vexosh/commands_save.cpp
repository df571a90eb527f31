// The configuration as commands: saved, and compared.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tools/vexosh/configuration.h"
#include "tools/vexosh/differences.h"
#include "tools/vexosh/shell.h"
#include "vexosim/wire.h"

namespace vexosh {
namespace {

void add_field_commands(Lines& lines, const Lines& commands)
{
    if (commands.size() > Session::kMostFieldCommands) {
        lines.push_back("# left out: flows and traps, which were changed more than " +
                        std::to_string(Session::kMostFieldCommands) + " times");
        return;
    }
    lines.insert(lines.end(), commands.begin(), commands.end());
}

/// The commands that make the card what it is, with what they cannot make as comments.
Lines configuration(Session& session)
{
    auto driver = session.driver();
    Lines lines = commands_for(read_configuration(*driver), session.fresh());
    add_field_commands(lines, session.field_commands());
    if (!session.auto_forwarding()) {
        lines.emplace_back("forwarding off");
    }
    return lines;
}

Lines head()
{
    Lines lines = {"# vexosh configuration, for `source` on a card that has just come up"};
    for (const vexosim::Attachment& wire : vexosim::attachments()) {
        lines.push_back("# was plugged in: " + std::to_string(wire.user_port) + " " + wire.wire);
    }
    return lines;
}

void print_lines(std::ostream& out, const Lines& lines)
{
    for (const std::string& line : lines) {
        out << line << '\n';
    }
}

/// All of it, or nothing: a file that is there is replaced when the new one is complete. What is no
/// file, such as a terminal or a pipe, is written to.
void write_file(const std::string& path, const Lines& lines)
{
    std::error_code none;
    const bool replaces =
        std::filesystem::is_regular_file(path, none) || !std::filesystem::exists(path, none);
    const std::string fresh = replaces ? path + ".new" : path;
    std::ofstream file(fresh);
    print_lines(file, lines);
    file.close();
    if (!file || (replaces && std::rename(fresh.c_str(), path.c_str()) != 0)) {
        replaces ? void(std::remove(fresh.c_str())) : void();
        throw BadInput("cannot write '" + path + "'");
    }
}

void save(Shell& shell, Words& words)
{
    const std::string path = words.empty() ? "" : words.next("FILE");
    words.end();
    Lines lines = head();
    const Lines commands = configuration(shell.session());
    lines.insert(lines.end(), commands.begin(), commands.end());
    if (path.empty()) {
        print_lines(shell.out(), lines);
    } else {
        write_file(path, lines);
    }
}

void diff(Shell& shell, Words& words)
{
    const std::string path = words.next("FILE");
    words.end();
    const Lines found = differences(saved_by_script(path), configuration(shell.session()));
    print_lines(shell.out(), found);
    if (!found.empty()) {
        throw BadInput("the card differs from " + path + " by " + std::to_string(found.size()) +
                       (found.size() == 1 ? " command" : " commands"));
    }
}

void digest(Shell& shell, Words& words)
{
    words.end();
    const std::string now = vexosim::state_digest();
    print(shell, {{"digest"}, {{now}}}, nlohmann::ordered_json::object(), now + "\n");
}

constexpr Command kCommands[] = {
    {"save", "[FILE]",
     "the configuration as commands that make it anew on a fresh card; what they cannot make is "
     "named in comments",
     save},
    {"diff", "FILE",
     "what the card does (+) and a saved configuration does not, and the other way round (-); "
     "fails if there is anything",
     diff},
    {"show digest", "", "a number for the chip's whole state: equal for equal states", digest},
};

} // namespace

std::span<const Command> save_commands()
{
    return kCommands;
}

} // namespace vexosh
