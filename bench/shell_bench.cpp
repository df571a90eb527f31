// What a person or a program that uses the shell waits for.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <sstream>

#include "tools/vexosh/client.h"
#include "tools/vexosh/server.h"
#include "tools/vexosh/shell.h"
#include "vexosim/clock.h"

using namespace vexosh;

namespace {

constexpr unsigned kEntries = 32'768;

/// A card with a shell, and another one that is connected to it.
struct Card {
    Card()
    {
        vexosim::use_manual_clock();
        session.emplace();
        shell.emplace(*session, console);
        path = "/tmp/shell_bench_" + std::to_string(::getpid());
        server.emplace(*session, path);
        client.emplace(path, client_console);
        auto driver = session->driver();
        for (unsigned i = 0; i < kEntries; ++i) {
            const Mac mac = {0x02,
                             0,
                             0,
                             static_cast<unsigned char>(i >> 16),
                             static_cast<unsigned char>(i >> 8),
                             static_cast<unsigned char>(i)};
            full = driver->add_mac_to_port(parse_port("1"), mac.data(), 1, false) && full;
        }
    }

    std::ostringstream out, client_out;
    StreamConsole console{out}, client_console{client_out};
    std::optional<Session> session;
    std::optional<Shell> shell;
    std::string path;
    std::optional<Server> server;
    std::optional<Client> client;
    bool full = true;
};

Card& card()
{
    static Card the_card;
    return the_card;
}

/// How often a text has a character.
std::size_t count(const std::string& text, char wanted)
{
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), wanted));
}

/// Runs a line that is to print at least `least` lines.
void run(benchmark::State& state, Interpreter& shell, std::ostringstream& out,
         const std::string& line, std::size_t least)
{
    for (auto _ : state) {
        out.str("");
        shell.run_line(line);
        if (count(out.str(), '\n') < least)
            state.SkipWithError("not everything was printed");
    }
}

void Complete(benchmark::State& state)
{
    for (auto _ : state) {
        if (completions({"port", "block", "1", "2"}, "").empty() || completions({}, "").empty())
            state.SkipWithError("there was nothing to complete");
    }
}
BENCHMARK(Complete)->Unit(benchmark::kMillisecond);

void Help(benchmark::State& state)
{
    run(state, *card().shell, card().out, "help", all_commands().size());
}
BENCHMARK(Help)->Unit(benchmark::kMillisecond);

void ShowFullMacTable(benchmark::State& state)
{
    if (!card().full)
        state.SkipWithError("the table could not be filled");
    run(state, *card().shell, card().out, "show fdb", kEntries);
}
BENCHMARK(ShowFullMacTable)->Unit(benchmark::kMillisecond);

void ShowFullMacTableAsJson(benchmark::State& state)
{
    run(state, *card().shell, card().out, "json show fdb", 1);
}
BENCHMARK(ShowFullMacTableAsJson)->Unit(benchmark::kMillisecond);

void SaveFullMacTable(benchmark::State& state)
{
    run(state, *card().shell, card().out, "save", kEntries);
}
BENCHMARK(SaveFullMacTable)->Unit(benchmark::kMillisecond);

void RoundTrip(benchmark::State& state)
{
    run(state, *card().client, card().client_out, "show switch", 3);
}
BENCHMARK(RoundTrip)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
