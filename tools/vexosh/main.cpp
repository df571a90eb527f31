#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <iostream>

#include "tools/vexosh/client.h"
#include "tools/vexosh/manual_page.h"
#include "tools/vexosh/server.h"
#include "tools/vexosh/shell.h"
#include "tools/vexosh/terminal.h"
#include "vexosim/clock.h"
#include "vexosim/wire.h"

namespace {

struct Options {
    std::vector<std::string> attach;
    std::vector<std::string> commands;
    std::vector<std::string> scripts;
    std::string listen, connect;
    bool manual_clock = false;
    bool interactive = false;
    bool keep_going = false;
    bool json = false;
    bool manual_page = false;

    bool nothing_to_run() const { return scripts.empty() && commands.empty(); }
};

void run(vexosh::Interpreter& shell, const Options& options)
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
    if (shell.finished() || (!options.nothing_to_run() && !options.interactive)) {
        return;
    }
    if (isatty(STDIN_FILENO) != 0) {
        vexosh::run_terminal(shell);
    } else if (options.listen.empty()) {
        std::istream& commands = std::cin;
        shell.run_script(commands, "standard input");
    }
}

/// Started before any thread, so that none of them takes the signals.
class Termination {
public:
    Termination()
    {
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGINT);
        sigaddset(&signals_, SIGTERM);
        pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
    }
    void wait()
    {
        int signal = 0;
        sigwait(&signals_, &signal);
    }

private:
    sigset_t signals_{};
};

int run_client(const Options& options)
{
    vexosh::StreamConsole console(std::cout);
    console.use_json(options.json);
    vexosh::Client client(options.connect, console);
    client.use_json(options.json);
    client.use_colour(vexosh::wants_colour(STDOUT_FILENO));
    client.use_terminal(isatty(STDOUT_FILENO) != 0);
    client.keep_going(options.keep_going);
    run(client, options);
    return client.failures() == 0 ? 0 : 1;
}

int run_card(const Options& options)
{
    // Without a prompt, a card that is served lives until it is told to end.
    const bool served_alone = !options.listen.empty() && isatty(STDIN_FILENO) == 0;
    std::optional<Termination> termination;
    if (served_alone) {
        termination.emplace();
    }
    if (options.manual_clock) {
        vexosim::use_manual_clock();
    }
    vexosh::StreamConsole console(std::cout);
    console.use_json(options.json);
    vexosh::Session session;
    if (!options.manual_clock) {
        vexosim::start_wires();
    }
    vexosh::Shell shell(session, console);
    shell.use_json(options.json);
    shell.use_colour(vexosh::wants_colour(STDOUT_FILENO));
    shell.use_terminal(isatty(STDOUT_FILENO) != 0);
    shell.keep_going(options.keep_going);
    std::optional<vexosh::Server> server;
    if (!options.listen.empty()) {
        server.emplace(session, options.listen);
    }
    run(shell, options);
    if (served_alone && !shell.finished()) {
        std::cout << "serving the card at " << options.listen << std::endl;
        termination->wait();
    }
    return shell.failures() == 0 ? 0 : 1;
}

std::string manual_page(const CLI::App& app)
{
    std::vector<std::pair<std::string, std::string>> options;
    for (const CLI::Option* option : app.get_options()) {
        options.emplace_back(option->get_name(false, true), option->get_description());
    }
    return vexosh::manual_page(options);
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
    app.add_flag("-k,--keep-going", options.keep_going,
                 "go on behind lines of scripts that fail; the exit code tells");
    app.add_flag("-j,--json", options.json, "tables and events as JSON");
    auto* listen = app.add_option("-l,--listen", options.listen,
                                  "serve the card at this Unix socket, to its owner only");
    app.add_option("-C,--connect", options.connect,
                   "use the card that is served at this socket instead of one of its own")
        ->excludes(listen);
    app.add_flag("--man", options.manual_page, "print the manual page, for troff");
    CLI11_PARSE(app, argc, argv);
    if (options.manual_page) {
        std::cout << manual_page(app);
        return 0;
    }
    return options.connect.empty() ? run_card(options) : run_client(options);
} catch (const std::exception& problem) {
    std::fflush(stdout);
    std::fprintf(stderr, "vexosh: %s\n", problem.what());
    return 1;
}
