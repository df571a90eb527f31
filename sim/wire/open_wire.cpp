#include "vexosim/wire.h"

namespace vexosim {

namespace {

const char* const kForms = "expected tap:NAME, veth:NAME, pcap:IN,OUT or mem";

} // namespace

OpenedWire open_wire(const std::string& spec)
{
    if (spec == "mem") {
        return {std::make_unique<MemoryWire>(), {}};
    }
    return {nullptr, "unknown wire \"" + spec + "\"; " + kForms};
}

} // namespace vexosim
