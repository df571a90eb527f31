#include <algorithm>
#include <climits>
#include <iostream>

#include "tools/vexosh/call.h"
#include "tools/vexosh/frame_words.h"
#include "tools/vexosh/shell.h"
#include "tools/vexosh/system_command.h"
#include "tools/vexosh/time_passes.h"

namespace vexosh {
namespace {

void list_commands(std::ostream& out)
{
    std::size_t width = 0;
    for (const Command* command : all_commands()) {
        width = std::max(width, std::string_view(command->words).size());
    }
    for (const Command* command : all_commands()) {
        std::string words = command->words;
        words.resize(width, ' ');
        out << folded("  " + words + "  " + command->help, width + 4) << '\n';
    }
    out << "Ports are user ports: 0 to 52, and cpu; lists read 1,4-6.\n"
           "`help COMMAND` says more about one, or about all that begin so.\n";
}

void help(Shell& shell, Words& words)
{
    if (words.empty()) {
        list_commands(shell.out());
        return;
    }
    std::string wanted;
    for (const std::string& word : words.rest()) {
        wanted += (wanted.empty() ? "" : " ") + word;
    }
    bool found = false;
    bool takes_frame = false;
    for (const Command* command : all_commands()) {
        const std::string_view begin = command->words;
        if (begin == wanted || begin.starts_with(wanted + " ")) {
            shell.out() << folded(synopsis(*command), 8) << '\n'
                        << folded(std::string("    ") + command->help, 4) << '\n';
            found = true;
            takes_frame |= std::string_view(command->usage).find("FRAME") != std::string_view::npos;
        }
    }
    if (!found) {
        throw BadInput("no command '" + wanted + "'; help lists them all");
    }
    if (takes_frame) {
        shell.out() << folded(std::string("FRAME is ") + kFrameUsage, 4) << '\n';
    }
}

/// A command from its words; those with blanks or separators are quoted.
std::string as_command(const std::vector<std::string>& words)
{
    std::string command;
    for (const std::string& word : words) {
        command += (command.empty() ? "" : " ") + quoted(word);
    }
    return command;
}

/// Compares what an operation answered with what was told: its result, and its outputs' values.
void check_answer(const std::string& name, const CallResult& result,
                  const std::vector<std::string>& expected)
{
    std::vector<std::string> answer = {result.done ? "true" : "false"};
    for (const std::string& output : result.outputs) {
        answer.push_back(output.substr(output.find(" = ") + 3));
    }
    if (answer != expected) {
        throw BadInput(name + " returned " + as_command(answer) + ", not " + as_command(expected));
    }
}

void call(Shell& shell, Words& words)
{
    const std::string name = words.next("OPERATION");
    const Operation* operation = find_operation(name);
    if (operation == nullptr) {
        throw BadInput("no operation '" + name + "'; `operations` lists them all");
    }
    std::vector<std::string> arguments = words.rest();
    const auto equals = std::find(arguments.begin(), arguments.end(), "=");
    const bool expects = equals != arguments.end();
    const std::vector<std::string> expected(expects ? equals + 1 : equals, arguments.end());
    arguments.erase(equals, arguments.end());
    if (arguments.size() != operation->inputs) {
        throw BadInput(name + " takes " + std::to_string(operation->inputs) +
                       (operation->inputs == 1 ? " argument" : " arguments") + ", not " +
                       std::to_string(arguments.size()) + "; usage: call " + name +
                       operation->usage);
    }
    const CallResult result = operation->run(*shell.session().driver(), arguments);
    if (expects) {
        check_answer(name, result, expected);
        return;
    }
    for (const std::string& output : result.outputs) {
        shell.out() << output << '\n';
    }
    if (!result.done) {
        throw Refused(name + " returned false");
    }
}

void list_operations(Shell& shell, Words& words)
{
    const std::string part = words.empty() ? "" : words.next("PART");
    words.end();
    for (const Operation& operation : operations()) {
        if (operation.name.find(part) != std::string::npos) {
            shell.out() << operation.name << operation.usage << '\n';
        }
    }
}

void source(Shell& shell, Words& words)
{
    const std::string path = words.next("FILE");
    words.end();
    shell.run_script_file(path);
}

void try_command(Shell& shell, Words& words)
{
    const std::string command = as_command(words.rest());
    if (command.empty()) {
        words.next("COMMAND");
    }
    try {
        shell.run_line(command);
    } catch (const BadInput& problem) {
        shell.out() << problem.what() << '\n';
    }
}

void json(Shell& shell, Words& words)
{
    const std::string command = as_command(words.rest());
    if (command.empty()) {
        words.next("COMMAND");
    }
    const bool before = shell.json();
    shell.use_json(true);
    try {
        shell.run_line(command);
    } catch (...) {
        shell.use_json(before);
        throw;
    }
    shell.use_json(before);
}

void watch(Shell& shell, Words& words)
{
    auto every = std::chrono::microseconds(std::chrono::seconds(1));
    unsigned times = UINT_MAX;
    for (bool more = true; more;) {
        more = false;
        if (words.take("every")) {
            every = parse_duration(words.next("DURATION"));
            more = true;
        }
        if (words.take("times")) {
            times = words.number("N", 1, INT32_MAX);
            more = true;
        }
    }
    words.peek().empty() ? words.usage_error("missing COMMAND") : void();
    const std::string command = as_command(words.rest());
    for (unsigned round = 0; round < times; ++round) {
        if (round > 0 && !let_time_pass(shell, every)) {
            return;
        }
        // A terminal shows one round at a time.
        shell.out() << (shell.colour() ? "\033[H\033[2J" : round > 0 ? "\n" : "");
        shell.run_line(command);
    }
}

void echo(Shell& shell, Words& words)
{
    std::string line;
    for (const std::string& word : words.rest()) {
        line += (line.empty() ? "" : " ") + word;
    }
    shell.out() << line << '\n';
}

void system_command(Shell& shell, Words& words)
{
    words.peek().empty() ? words.usage_error("missing COMMAND") : void();
    const Shell::Aside meanwhile(shell);
    run_system_command(words.rest(),
                       [&shell](std::string_view line) { shell.out() << line << std::flush; });
}

void quit(Shell& shell, Words& words)
{
    words.end();
    shell.finish();
}

constexpr Command kCommands[] = {
    {"call", "OPERATION ARGUMENTS... [= RESULT...]",
     "call any operation of the driver by its name; with = it fails if the operation answers "
     "something else than true or false and these outputs",
     call},
    {"operations", "[PART]", "list the driver's operations and their arguments", list_operations},
    {"source", "FILE", "run the commands of a script", source},
    {"try", "COMMAND...", "run a command, and go on if it fails; says why", try_command},
    {"json", "COMMAND...", "run a command whose tables are printed as JSON, for programs", json},
    {"watch", "[every DURATION] [times N] COMMAND...",
     "run a command again and again, once a second unless told otherwise; Ctrl-C ends it", watch},
    {"echo", "WORDS...", "print words", echo},
    {"shell", "COMMAND...", "run a command of the system, without input", system_command},
    {"help", "[COMMAND]", "list the commands, or explain one", help},
    {"quit", "", "leave", quit},
};

} // namespace

std::span<const Command> general_commands()
{
    return kCommands;
}

} // namespace vexosh
