#include "pktio/event_records.h"
#include "tools/vexosh/capture_file.h"
#include "tools/vexosh/frame_words.h"
#include "tools/vexosh/kind_counts.h"
#include "tools/vexosh/shell.h"
#include "vexosim/clock.h"
#include "vexosim/ports.h"
#include "vexosim/trace.h"

namespace vexosh {
namespace {

int front_port(const std::string& word)
{
    const int port = parse_user_port(word);
    if (port >= 53) {
        throw BadInput(
            "a frame arrives at one of the ports 0 to 52; the CPU sends with `transmit`");
    }
    return port;
}

void inject(Shell&, Words& words)
{
    const int port = front_port(words.next("PORT"));
    const Bytes frame = frame_from_words(words.rest());
    vexosim::receive(port, vexosim::FrameView(frame));
}

void inject_capture(Shell& shell, Words& words)
{
    const int port = front_port(words.next("PORT"));
    const Capture capture = read_capture(words.next("FILE"));
    words.end();
    for (const Bytes& frame : capture.frames) {
        vexosim::receive(port, vexosim::FrameView(frame));
        shell.session().settle();
    }
    shell.out() << capture.frames.size() << " frames arrived at port " << port << '\n';
    if (!capture.notice.empty()) {
        shell.out() << capture.notice << '\n';
    }
}

void transmit(Shell& shell, Words& words)
{
    std::list<Mp> tagged;
    std::list<Mp> untagged;
    bool by_ports = false;
    for (bool more = true; more;) {
        more = false;
        for (auto [name, ports] :
             {std::pair{"tagged", &tagged}, std::pair{"untagged", &untagged}}) {
            if (words.take(name)) {
                ports->splice(ports->end(), parse_ports(words.next("PORTS")));
                by_ports = more = true;
            }
        }
    }
    Packet packet;
    packet.set_data(frame_from_words(words.rest()));
    auto driver = shell.session().driver();
    require(by_ports ? driver->send_packet_by_ports(tagged, untagged, packet)
                     : driver->send_packet_from_cpu(packet),
            "transmit");
}

void trace(Shell& shell, Words& words)
{
    const int port = front_port(words.next("PORT"));
    shell.out() << vexosim::what_if(port, frame_from_words(words.rest()));
}

void trace_capture(Shell& shell, Words& words)
{
    const int port = front_port(words.next("PORT"));
    const std::string path = words.next("FILE");
    const unsigned number = words.empty() ? 1 : words.number("N", 1, INT32_MAX);
    words.end();
    const Capture capture = read_capture(path);
    if (number > capture.frames.size()) {
        throw BadInput("no frame " + std::to_string(number) + " in '" + path + "': there are " +
                       std::to_string(capture.frames.size()));
    }
    shell.out() << vexosim::what_if(port, vexosim::FrameView(capture.frames[number - 1]));
}

/// Prints what has been traced.
/// @return how many frames that was.
unsigned print_traces(Shell& shell)
{
    const std::vector<std::string> traces = vexosim::take_traces();
    for (const std::string& text : traces) {
        shell.out() << text << '\n';
    }
    shell.out().flush();
    return static_cast<unsigned>(traces.size());
}

void trace_next(Shell& shell, Words& words)
{
    constexpr std::chrono::milliseconds kLook{50};
    unsigned left = words.number("N", 1, 1'000'000);
    const int port = words.take("on") ? front_port(words.next("PORT")) : -1;
    words.end();
    if (vexosim::manual_clock()) {
        throw BadInput("with the manual clock frames come by commands only; `trace PORT FRAME` "
                       "tells their way");
    }
    if (const std::string why = vexosim::trace_next(left, port); !why.empty()) {
        throw BadInput(why);
    }
    shell.tell_waiting("waiting for frames");
    for (bool more = true; left > 0 && more;) {
        more = shell.pause(kLook);
        left -= std::min(left, print_traces(shell));
    }
    vexosim::trace_next(0);
}

void show_capture(Shell& shell, Words& words)
{
    const Capture capture = read_capture(words.next("FILE"));
    words.end();
    KindCounts kinds;
    for (const Bytes& frame : capture.frames) {
        kinds.count(describe_frame(frame));
    }
    const std::size_t all = capture.frames.size();
    print(shell, kinds.table("frame"), {{"frames", all}, {"notice", capture.notice}},
          kinds.text() + std::to_string(all) + (all == 1 ? " frame\n" : " frames\n") +
              (capture.notice.empty() ? "" : capture.notice + "\n"));
}

constexpr Command kCommands[] = {
    {"send", "PORT FRAME", "a frame arrives at a port; `help send` tells how frames are written",
     inject},
    {"send-file", "PORT FILE", "the frames of a capture arrive at a port", inject_capture},
    {"transmit", "[tagged PORTS] [untagged PORTS] FRAME",
     "the CPU sends a frame: to where the tables say, or out of the given ports", transmit},
    {"trace", "PORT FRAME", "what would happen to a frame, stage by stage; nothing changes", trace},
    {"trace capture", "PORT FILE [N]", "the same for the first frame of a capture, or the N-th",
     trace_capture},
    {"trace next", "N [on PORT]",
     "the way of the next frames that arrive at a port, or at any; Ctrl-C ends it", trace_next},
    {"show capture", "FILE", "what is in a capture file, alike frames together", show_capture},
};

} // namespace

std::span<const Command> frame_commands()
{
    return kCommands;
}

} // namespace vexosh
