// Captures of what the card does with frames.
#include "tools/vexosh/shell.h"
#include "vexosim/capture.h"

namespace vexosh {
namespace {

std::string packets_text(std::uint64_t packets)
{
    return std::to_string(packets) + (packets == 1 ? " packet" : " packets");
}

vexosim::Captured next_kind(Words& words)
{
    using vexosim::Captured;
    for (auto [name, kind] : {std::pair{"received", Captured::received},
                              {"sent", Captured::sent},
                              {"dropped", Captured::dropped}}) {
        if (words.take(name)) {
            return kind;
        }
    }
    return Captured::all;
}

void start(Shell&, Words& words)
{
    const std::string path = words.next("FILE");
    vexosim::CaptureOptions options;
    options.what = next_kind(words);
    if (!words.empty()) {
        options.ports = parse_user_ports(words.next("PORTS"));
        options.what = options.what == vexosim::Captured::all ? next_kind(words) : options.what;
    }
    words.end();
    if (const std::string why = vexosim::start_capture(path, options); !why.empty()) {
        throw BadInput(why);
    }
}

void stop(Shell& shell, Words& words)
{
    words.end();
    const auto last = vexosim::stop_capture();
    if (!last) {
        throw BadInput("no capture is running");
    }
    if (!last->error.empty()) {
        throw BadInput(last->error + "; the capture ended there");
    }
    shell.out() << packets_text(last->packets) << " in " << last->path << '\n';
}

void status(Shell& shell, Words& words)
{
    words.end();
    const auto now = vexosim::capture_status();
    vexosim::TextTable table{{"file", "packets", "error"}, {}};
    if (now) {
        table.rows.push_back({now->path, std::to_string(now->packets), now->error});
    }
    print(shell, table, "no capture is running");
}

constexpr Command kCommands[] = {
    {"capture start", "FILE [PORTS] [received|sent|dropped]",
     "capture all ports, or some, into a pcapng file: every packet says where it went, or why it "
     "went nowhere",
     start},
    {"capture stop", "", "end the capture", stop},
    {"show capturing", "", "the capture that runs", status},
};

} // namespace

std::span<const Command> capture_commands()
{
    return kCommands;
}

} // namespace vexosh
