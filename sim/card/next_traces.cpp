#include "sim/card/next_traces.h"

#include "sim/chip/text.h"
#include "sim/pipeline/trace.h"

namespace vexosim {

namespace {

/// The bytes of a frame, as a shell reads them again.
std::string bytes_text(FrameView frame)
{
    std::string text;
    for (const std::uint8_t byte : frame)
        text += hex_text(byte, 2);
    return text;
}

} // namespace

void NextTraces::start(unsigned count, int port, const PortNames& names)
{
    left_ = count;
    port_ = port;
    names_ = names;
}

void NextTraces::arrives(const Chip& chip, const CpuReceive& cpu, int port, FrameView frame)
{
    if (left_ == 0 || (port_ >= 0 && port != port_))
        return;
    --left_;
    texts_.push_back("port " + names_.name(port) + " hex:" + bytes_text(frame) + "\n" +
                     trace_frame(chip, cpu, port, frame, names_).text);
}

} // namespace vexosim
