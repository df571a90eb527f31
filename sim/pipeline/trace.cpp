#include "sim/pipeline/trace.h"

#include <algorithm>
#include <string_view>

#include "sim/pipeline/mirror.h"
#include "sim/pipeline/stages.h"

namespace vexosim {

namespace {

std::string cpu_result(const Packet& p)
{
    std::string text = std::string("to the CPU (") + rx_reason_name(p.cpu_reason) + ", queue " +
                       std::to_string(p.cpu_queue) + ")";
    return p.cpu_full ? "not " + text + ": " + drop_text(DropReason::cpu_queue_full) : text;
}

std::string result(const Packet& p, const PortNames& names)
{
    std::string text;
    auto add = [&](const std::string& part) { text += (text.empty() ? "" : "; ") + part; };
    PortSet untagged = p.out & p.untagged, tagged = p.out - p.untagged;
    if (untagged.any())
        add("untagged to " + names.names(untagged));
    if (tagged.any())
        add("tagged to " + names.names(tagged));
    if (p.cpu != 0)
        add(cpu_result(p));
    bool lost = p.out.empty() && (p.cpu == 0 || p.cpu_full);
    if (lost)
        add(std::string("dropped, ") + drop_name(p.drop) + ": " + drop_text(p.drop));
    return text;
}

std::string describe(const MirrorCopy& copy, const PortNames& names)
{
    std::string text = std::string(copy.egress ? "sent by " : "received by ") +
                       names.name(copy.source) + ": " + mirror_form_name(copy.form) + " to " +
                       names.name(copy.destination);
    return copy.lost == DropReason::kNone ? text : text + ", lost: " + drop_text(copy.lost);
}

/// @return the ports that get a copy.
PortSet explain_mirrors(const Chip& chip, Recorder& recorder, const Packet& p)
{
    PortSet mirrored;
    recorder.enter("mirror");
    for (const MirrorCopy& copy : mirror_copies(chip, p)) {
        recorder.note(describe(copy, recorder.names()));
        if (copy.lost == DropReason::kNone)
            mirrored.set(copy.destination);
    }
    return mirrored;
}

/// The blank at which a text that is longer than `room` goes to the next line: behind a semicolon,
/// if there is one.
std::size_t line_end(std::string_view text, std::size_t room)
{
    const std::string_view fits = text.substr(0, room + 1);
    const std::size_t part = fits.rfind("; ");
    if (part != std::string_view::npos)
        return part + 1;
    const std::size_t word = fits.find_last_of(' ');
    return word != std::string_view::npos ? word : text.find(' ');
}

/// Text in lines of at most 80 columns, of which the first `indent` are blank in all but the first.
std::string in_lines(std::string_view text, std::size_t indent)
{
    const std::size_t room = 80 - indent;
    std::string lines;
    while (text.size() > room) {
        const std::size_t end = line_end(text, room);
        if (end == std::string_view::npos)
            break;
        lines += std::string(text.substr(0, end)) + "\n" + std::string(indent, ' ');
        text.remove_prefix(end + 1);
    }
    return lines + std::string(text);
}

std::string layout(const std::vector<Recorder::Line>& lines)
{
    std::size_t width = 0;
    for (const Recorder::Line& line : lines)
        width = std::max(width, line.stage.size());
    std::string text, before;
    for (const Recorder::Line& line : lines) {
        std::string head = line.stage == before ? "" : line.stage;
        text += head + std::string(width + 2 - head.size(), ' ') + in_lines(line.text, width + 2) +
                "\n";
        before = line.stage;
    }
    return text;
}

} // namespace

const char* rx_reason_name(int reason)
{
    static constexpr std::array<const char*, bcmRxReasonCount> kNames = {
        "none",           "ARP",
        "BPDU",           "broadcast",
        "unknown source", "unknown unicast",
        "field entry",    "CPU's address",
        "multicast",      "no route",
        "bad IP header",  "L3 slow path",
        "hop count"};
    return kNames[static_cast<std::size_t>(reason)];
}

FrameTrace trace_frame(const Chip& chip, const CpuReceive& cpu, int chip_port, FrameView frame,
                       const PortNames& names)
{
    Recorder recorder(names);
    Packet p(frame, chip_port);
    p.recorder = &recorder;
    run_forwarding_stages(chip, p);
    mirror_to_cpu(chip, p);
    cpu.choose_queue(chip, p);
    const PortSet mirrored = explain_mirrors(chip, recorder, p);
    recorder.enter("result");
    recorder.note(result(p, names) +
                  (mirrored.any() ? "; mirrored to " + names.names(mirrored) : ""));

    FrameTrace trace;
    trace.lines = recorder.lines();
    trace.tagged = p.out - p.untagged;
    trace.untagged = p.out & p.untagged;
    trace.too_long = p.too_long;
    trace.mirrored = mirrored;
    trace.to_cpu = p.cpu != 0 && !p.cpu_full;
    trace.drop = p.out.any() || trace.to_cpu ? DropReason::kNone : p.drop;
    trace.text = layout(trace.lines);
    return trace;
}

} // namespace vexosim
