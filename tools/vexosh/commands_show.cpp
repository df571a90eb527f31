#include <iomanip>
#include <map>

#include "tools/vexosh/frame_words.h"
#include "tools/vexosh/shell.h"
#include "vexosim/calls.h"
#include "vexosim/state.h"
#include "vexosim/wire.h"

namespace vexosh {
namespace {

void show_drops(Shell& shell, Words& words)
{
    words.end();
    shell.out() << vexosim::drops_table().text();
}

void show_cpu(Shell& shell, Words& words)
{
    words.end();
    std::map<std::string, std::size_t> kinds;
    std::vector<std::string> order;
    for (const CpuPacket& packet : shell.session().cpu_packets()) {
        const std::string kind =
            "port " + std::to_string(packet.user_port) + ": " + describe_frame(packet.frame);
        if (kinds[kind]++ == 0) {
            order.push_back(kind);
        }
    }
    for (const std::string& kind : order) {
        shell.out() << std::setw(6) << kinds[kind] << "  " << kind << '\n';
    }
    shell.out() << shell.session().cpu_packet_count() << " packets reached the CPU\n";
}

void show_wires(Shell& shell, Words& words)
{
    words.end();
    shell.out() << "port  carrier      in     out  lost  wire\n";
    for (const vexosim::Attachment& attachment : vexosim::attachments()) {
        const vexosim::WireCounters& count = attachment.counters;
        shell.out() << std::setw(4) << attachment.user_port << "  " << std::left << std::setw(7)
                    << (attachment.carrier ? "up" : "down") << std::right << std::setw(8)
                    << count.received << std::setw(8) << count.sent << std::setw(6)
                    << count.receive_overflow + count.receive_too_long + count.receive_cut +
                           count.send_drops
                    << "  " << attachment.wire
                    << (attachment.notice.empty() ? "" : " (" + attachment.notice + ")") << '\n';
    }
}

void show_calls(Shell& shell, Words& words)
{
    const bool all = words.take("all");
    words.end();
    shell.out() << (all ? vexosim::all_calls_with_results() : vexosim::calls_with_results());
}

constexpr Command kCommands[] = {
    {"show drops", "", "frames that were not forwarded, by reason", show_drops},
    {"show cpu", "", "packets that reached the CPU, alike ones together", show_cpu},
    {"show wires", "", "what ports are plugged into", show_wires},
    {"show calls", "[all]", "the logged SDK calls; all: with those that touch no chip", show_calls},
};

} // namespace

std::span<const Command> show_commands()
{
    return kCommands;
}

} // namespace vexosh
