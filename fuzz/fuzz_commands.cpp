// Command lines of vexosh, on a card of its own. Input: the lines. Commands that touch files or
// interfaces, let much time pass, or run other commands, the system's among them, are looked up and
// completed, but not run.
#include <array>
#include <sstream>
#include <string_view>

#include "fuzz/quiet_console.h"
#include "tools/vexosh/shell.h"
#include "vexosim/clock.h"

namespace {

bool stays_inside(const std::string& line)
{
    constexpr std::array<std::string_view, 4> outside = {"FILE", "WIRE", "DURATION", "COMMAND..."};
    for (const std::string& command : vexosh::split_commands(line)) {
        std::size_t length = 0;
        const vexosh::Command* found = vexosh::find_command(vexosh::split_words(command), length);
        for (const std::string_view word : outside) {
            if (found != nullptr &&
                std::string_view(found->usage).find(word) != std::string_view::npos)
                return false;
        }
    }
    return true;
}

void run(vexosh::Shell& shell, const std::string& line)
{
    try {
        vexosh::completions(vexosh::split_words(line), line.substr(0, line.size() / 2));
        if (stays_inside(line))
            shell.run_line(line);
    } catch (const vexosh::BadInput&) { // what a user would see
    }
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
    std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
    for (std::string line; std::getline(lines, line);)
        run(shell, line);
    return 0;
}
