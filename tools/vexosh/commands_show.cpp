#include <sstream>

#include "tools/vexosh/frame_words.h"
#include "tools/vexosh/kind_counts.h"
#include "tools/vexosh/shell.h"
#include "vexosim/calls.h"
#include "vexosim/state.h"
#include "vexosim/wire.h"

namespace vexosh {
namespace {

void show_drops(Shell& shell, Words& words)
{
    words.end();
    print(shell, vexosim::drops_table());
}

void show_cpu(Shell& shell, Words& words)
{
    words.end();
    KindCounts kinds;
    for (const CpuPacket& packet : shell.session().cpu_packets()) {
        kinds.count("port " + std::to_string(packet.user_port) + ": " +
                    describe_frame(packet.frame));
    }
    const std::size_t all = shell.session().cpu_packet_count();
    print(shell, kinds.table("packet"), {{"packets", all}},
          kinds.text() + std::to_string(all) + " packets reached the CPU\n");
}

void show_wires(Shell& shell, Words& words)
{
    words.end();
    vexosim::TextTable table{{"port", "carrier", "in", "out", "lost", "wire"}, {}};
    for (const vexosim::Attachment& attachment : vexosim::attachments()) {
        const vexosim::WireCounters& count = attachment.counters;
        const auto lost =
            count.receive_overflow + count.receive_too_long + count.receive_cut + count.send_drops;
        table.rows.push_back(
            {std::to_string(attachment.user_port), attachment.carrier ? "up" : "down",
             std::to_string(count.received), std::to_string(count.sent), std::to_string(lost),
             attachment.wire + (attachment.notice.empty() ? "" : " (" + attachment.notice + ")")});
    }
    print(shell, table, "nothing is plugged in");
}

void show_calls(Shell& shell, Words& words)
{
    const bool all = words.take("all");
    words.end();
    const std::string calls =
        all ? vexosim::all_calls_with_results() : vexosim::calls_with_results();
    vexosim::TextTable table{{"call"}, {}};
    std::istringstream lines(calls);
    for (std::string line; std::getline(lines, line);) {
        table.rows.push_back({line});
    }
    print(shell, table, nlohmann::ordered_json::object(),
          calls.empty() ? "no call is logged; `calls on` logs those that follow\n" : calls);
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
