// Command lines of vexosh, on a card of its own, with driver calls recorded. Input: the lines.
// Commands that touch files or interfaces, let much time pass, or run commands of the system or
// other cards are looked up and completed, but not run.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string_view>

#include "fuzz/quiet_console.h"
#include "tools/vexosh/shell.h"
#include "vexosim/calls.h"
#include "vexosim/clock.h"
#include "vexosim/faults.h"

/// In place of the system's: none of its commands may be run.
extern "C" FILE* popen(const char* command, const char*)
{
    std::fprintf(stderr, "a command of the system: %s\n", command);
    std::abort();
}

namespace {

bool stays_inside(std::vector<std::string> words)
{
    constexpr std::array<std::string_view, 4> outside = {"FILE", "WIRE", "DURATION", "COMMAND..."};
    while (!words.empty() && (words[0] == "json" || words[0] == "try"))
        words.erase(words.begin());
    std::size_t length = 0;
    const vexosh::Command* found = vexosh::find_command(words, length);
    if (found == nullptr || words == std::vector<std::string>{"save"})
        return true;
    return std::ranges::none_of(outside, [found](std::string_view word) {
        return std::string_view(found->usage).find(word) != std::string_view::npos;
    });
}

void run(vexosh::Shell& shell, const std::string& line)
{
    try {
        vexosh::completions(vexosh::split_words(line), line.substr(0, line.size() / 2));
        const std::vector<std::string> commands = vexosh::split_commands(line);
        if (std::ranges::all_of(commands, [](const std::string& command) {
                return stays_inside(vexosh::split_words(command));
            }))
            shell.run_line(line);
    } catch (const vexosh::BadInput&) { // what a user would see
    }
}

/// Nothing that an earlier input has begun goes on.
void start_afresh(vexosh::Shell& shell)
{
    vexosim::clear_faults();
    vexosim::log_calls(false);
    vexosim::clear_calls();
    run(shell, "record stop");
    shell.run_line("record start /dev/null");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static QuietConsole console;
    static vexosh::Session& session = *[] {
        vexosim::use_manual_clock();
        return new vexosh::Session;
    }();
    vexosh::Shell shell(session, console);
    start_afresh(shell);
    std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
    for (std::string line; std::getline(lines, line);)
        run(shell, line);
    return 0;
}
