#include "tools/vexosh/terminal.h"

#include <histedit.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <set>
#include <utility>

#include "tools/vexosh/grammar.h"
#include "tools/vexosh/input.h"
#include "tools/vexosh/interrupt.h"

namespace vexosh {
namespace {

char* prompt(EditLine*)
{
    static char text[] = "vexosh> ";
    return text;
}

/// What may stand at the cursor, after the text before its word.
std::set<std::string> candidates(std::string_view before, const std::string& begin)
try {
    const std::vector<std::string> all =
        completions(split_words(split_commands(before).back()), begin);
    return {all.begin(), all.end()};
} catch (const BadInput&) {
    return {}; // inside quotes
}

std::string common_start(const std::set<std::string>& words)
{
    const std::string& first = *words.begin();
    const std::string& last = *words.rbegin();
    const auto differs = std::ranges::mismatch(first, last).in1;
    return {first.begin(), differs};
}

/// Says how a command goes on where a value is to come.
bool show_usage(std::string_view before)
try {
    std::size_t length = 0;
    const Command* command = find_command(split_words(split_commands(before).back()), length);
    if (command != nullptr) {
        std::cout << '\n' << folded(synopsis(*command), 8) << std::endl;
    }
    return command != nullptr;
} catch (const BadInput&) {
    return false; // inside quotes
}

unsigned char complete(EditLine* line, wint_t)
{
    const LineInfo* info = el_line(line);
    const std::string_view typed(info->buffer,
                                 static_cast<std::size_t>(info->cursor - info->buffer));
    const std::size_t start = typed.find_last_of(' ') + 1; // 0 when there is no blank
    const std::string begin(typed.substr(start));
    const std::set<std::string> found = candidates(typed.substr(0, start), begin);
    if (found.empty()) {
        return show_usage(typed.substr(0, start)) ? CC_REDISPLAY : CC_ERROR;
    }
    const std::string insert =
        common_start(found).substr(begin.size()) + (found.size() == 1 ? " " : "");
    if (!insert.empty()) {
        return el_insertstr(line, insert.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
    }
    std::cout << '\n' << in_columns({found.begin(), found.end()}) << std::endl;
    return CC_REDISPLAY;
}

/// In wide characters, of which libedit keeps no copies that it forgets.
void add_function(EditLine* line, const wchar_t* name, const wchar_t* help,
                  unsigned char (*function)(EditLine*, wint_t))
{
    el_wset(line, EL_ADDFN, name, help, function);
}

bool discarded = false;

/// Ctrl-C at the prompt: the line goes, and the card stays.
unsigned char discard(EditLine* line, wint_t)
{
    discarded = true;
    std::cout << "^C" << std::endl;
    return el_insertstr(line, "\n") == 0 ? CC_NEWLINE : CC_ERROR; // an empty line would be the end
}

/// Has Ctrl-C come as a key while a line is edited, and as a signal while one runs.
void take_ctrl_c_as_a_key(EditLine* line)
{
    el_set(line, EL_SETTY, "-d", "-isig", nullptr);
    el_set(line, EL_SETTY, "-x", "-echoctl", nullptr); // and is not seen within what is printed
    add_function(line, L"discard-line", L"begins a new line", discard);
    el_set(line, EL_BIND, "^C", "discard-line", nullptr);
}

/// @return null when there is none.
const char* next_line(EditLine* line)
{
    int length = 0;
    Interruptible::forget();
    return el_gets(line, &length);
}

} // namespace

bool wants_colour(int stream)
{
    const char* no_colour = std::getenv("NO_COLOR");
    return isatty(stream) != 0 && (no_colour == nullptr || *no_colour == '\0');
}

void run_terminal(Interpreter& shell)
{
    const std::unique_ptr<EditLine, void (*)(EditLine*)> line(
        el_init("vexosh", stdin, stdout, stderr), el_end);
    const std::unique_ptr<History, void (*)(History*)> past(history_init(), history_end);
    if (!line || !past) {
        shell.run_script(std::cin, "standard input");
        return;
    }
    HistEvent event;
    history(past.get(), &event, H_SETSIZE, 1000);
    el_set(line.get(), EL_PROMPT, prompt);
    el_set(line.get(), EL_EDITOR, "emacs");
    el_set(line.get(), EL_HIST, ::history, past.get());
    add_function(line.get(), L"complete-command", L"completes command words", complete);
    el_set(line.get(), EL_BIND, "^I", "complete-command", nullptr);
    take_ctrl_c_as_a_key(line.get());
    shell.heed_ctrl_c();
    std::cout << "`help` lists the commands, the tab key completes them, `quit` leaves."
              << std::endl;
    const Interruptible commands;
    for (const char* text; !shell.finished() && (text = next_line(line.get())) != nullptr;) {
        if (std::exchange(discarded, false)) {
            continue;
        }
        if (*text != '\n') {
            ::history(past.get(), &event, H_ENTER, text);
        }
        try {
            shell.run_line(text);
        } catch (const BadInput& problem) {
            const std::string said = folded(problem.what(), 4);
            std::cerr << (wants_colour(STDERR_FILENO) ? "\033[31m" + said + "\033[0m" : said)
                      << std::endl;
        }
    }
    std::cout << (shell.finished() ? "" : "\n");
}

} // namespace vexosh
