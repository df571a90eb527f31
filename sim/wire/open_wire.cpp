#include "sim/wire/packet_wire.h"
#include "sim/wire/pcap_wire.h"
#include "sim/wire/tap_wire.h"
#include "vexosim/wire.h"

namespace vexosim {

OpenedWire open_wire(const std::string& spec)
{
    const auto colon = spec.find(':');
    const std::string kind = spec.substr(0, colon);
    const std::string rest = colon == std::string::npos ? "" : spec.substr(colon + 1);
    if (spec == "mem") {
        return {std::make_unique<MemoryWire>(), {}};
    }
    if (kind == "pcap") {
        return PcapWire::open(rest);
    }
    if (kind == "tap") {
        return TapWire::open(rest);
    }
    if (kind == "veth") {
        return PacketWire::open(rest);
    }
    return {nullptr,
            "unknown wire \"" + spec + "\"; expected tap:NAME, veth:NAME, pcap:IN,OUT or mem"};
}

} // namespace vexosim
