#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>

#include "tools/vexosh/shell.h"
#include "tools/vexosh/terminal.h"
#include "vexosim/clock.h"
#include "vexosim/wire.h"

namespace {

struct Options {
    std::vector<std::string> attach;
    std::vector<std::string> commands;
    std::vector<std::string> scripts;
    bool manual_clock = false;
    bool interactive = false;
};

void run(vexosh::Shell& shell, const Options& options)
{
    for (const std::string& pair : options.attach) {
        shell.run_line("attach " + pair);
    }
    for (const std::string& path : options.scripts) {
        shell.run_script_file(path);
    }
    for (const std::string& line : options.commands) {
        shell.run_line(line);
    }
    const bool nothing_to_run = options.scripts.empty() && options.commands.empty();
    if (shell.finished() || (!nothing_to_run && !options.interactive)) {
        return;
    }
    if (isatty(STDIN_FILENO) != 0) {
        vexosh::run_terminal(shell);
    } else {
        shell.run_script(std::cin, "standard input");
    }
}

} // namespace

int main(int argc, char** argv)
try {
    CLI::App app{"vexosh: a simulated line card under its driver, at a prompt"};
    Options options;
    app.add_option("-a,--attach", options.attach,
                   "plug a port in: PORT=tap:NAME, veth:NAME, pcap:IN,OUT or mem");
    app.add_option("-c,--command", options.commands, "run commands, separated by ;");
    app.add_option("script", options.scripts, "scripts to run");
    app.add_flag("-m,--manual-clock", options.manual_clock,
                 "time passes only with `wait` and `replay`, the same in every run");
    app.add_flag("-i,--interactive", options.interactive, "prompt after scripts and commands");
    CLI11_PARSE(app, argc, argv);
    if (options.manual_clock) {
        vexosim::use_manual_clock();
    }
    vexosh::Session session(std::cout);
    if (!options.manual_clock) {
        vexosim::start_wires();
    }
    vexosh::Shell shell(session);
    run(shell, options);
    return 0;
} catch (const std::exception& problem) {
    std::fflush(stdout);
    std::fprintf(stderr, "vexosh: %s\n", problem.what());
    return 1;
}
