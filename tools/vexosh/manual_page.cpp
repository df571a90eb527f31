#include "tools/vexosh/manual_page.h"

#include "tools/vexosh/frame_words.h"
#include "tools/vexosh/grammar.h"

namespace vexosh {
namespace {

/// Text that troff shows as it stands.
std::string plain(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        result += c == '\\' ? "\\e" : c == '-' ? "\\-" : std::string(1, c);
    }
    const bool request = result.starts_with('.') || result.starts_with('\'');
    return request ? "\\&" + result : result;
}

/// A paragraph that hangs from a head in bold.
std::string entry(const std::string& head, const std::string& text)
{
    return ".TP\n\\fB" + plain(head) + "\\fR\n" + plain(text) + "\n";
}

constexpr const char* kHead = R"(.TH VEXOSH 1 "" "vexolc" "User Commands"
.SH NAME
vexosh \- a simulated line card under its driver, at a prompt
.SH SYNOPSIS
.B vexosh
.RI [ OPTIONS ]
.RI [ SCRIPT " ...]"
.SH DESCRIPTION
Brings a simulated line card up under the driver and takes commands: at a prompt, from scripts, from
standard input, with
.B \-c
or from other shells on a socket.
A script stops at the first command that fails.
)";

constexpr const char* kTail = R"(.SH EXIT STATUS
0 when every command succeeded, 1 when one failed.
.SH ENVIRONMENT
.TP
.B NO_COLOR
When it is set and not empty, nothing is coloured; nor is anything that does not go to a terminal.
)";

} // namespace

std::string manual_page(const std::vector<std::pair<std::string, std::string>>& options)
{
    std::string page = kHead;
    page += ".SH OPTIONS\n";
    for (const auto& [names, text] : options) {
        page += entry(names, text);
    }
    page += ".SH COMMANDS\nPorts are user ports: 0 to 52, and cpu; lists read 1,4\\-6.\n";
    for (const Command* command : all_commands()) {
        page += entry(synopsis(*command), command->help);
    }
    return page + ".SH FRAMES\nFRAME is " + plain(kFrameUsage) + "\n" + kTail;
}

} // namespace vexosh
