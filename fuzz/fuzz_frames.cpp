// Frames through a card that does everything at once: VLANs, a LAG, mirrors, routes, flows with
// UDFs, traps and storm control. Input: for each frame its port, its length in two bytes, and its
// bytes; ports from 53 on mean that time passes instead.
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "fuzz/quiet_console.h"
#include "tools/vexosh/shell.h"
#include "vexosim/clock.h"
#include "vexosim/ports.h"
#include "vexosim/state.h"
#include "vexosim/trace.h"
#include "vexosim/wire.h"

namespace {

constexpr const char* kSetUp = R"(
vlan access 10 1,2
vlan access 20 3,4
vlan add 10 tagged 5
vlan add 20 tagged 5
vlan mac 02:00:00:00:00:0a 20 3
vlan subnet 10.1.0.0/16 20
vlan protocol 1 ethernet 0x86dd 20
lag create
lag add 0 6-8
vlan add 10 tagged 6-8
lag criterion 0 src-dst-ip
mirror enable
mirror from 1 to 9 both
mirror from 5 to 10 egress
l3 interface add 02:00:00:00:01:00 10
l3 interface add 02:00:00:00:01:00 20
l3 host add 192.0.2.7 02:00:00:00:00:07 0 1
l3 host add 192.0.2.8 02:00:00:00:00:08 1 lag 0
l3 route add 10.0.0.0/8 02:00:00:00:00:09 1 3 via 198.51.100.1
l3 route add 0.0.0.0/0 02:00:00:00:00:0b 0 2 via 198.51.100.2
l3 route add 2001:db8::/32 02:00:00:00:00:09 1 4
trap add arp 192.0.2.0/24
flow add match in-port 3 vlan 20 ip-proto tcp l4-dst 80 action redirect 4
flow add match src-ip 192.0.2.0/24 priority 5 action drop
flow add match udf 14:0102/ff0f action vlan 20 vlan-priority 3
flow add match dst-mac 02:00:00:00:00:0c action output 1 src-mac 02:00:00:00:00:0d tos 8
flow add match vlan 10 ether-type 0x8100 action delete-inner-tag
flow add match any
trap add protocol 89
trap add l4-port 179
)";

struct Card {
    Card()
    {
        vexosim::use_manual_clock();
        for (int port = 1; port <= 12; ++port) {
            auto wire = std::make_unique<vexosim::MemoryWire>();
            wire->count_only();
            vexosim::attach(port, std::move(wire));
        }
        session.emplace();
        session->settle();
        vexosh::Shell shell(*session, console);
        std::istringstream script(kSetUp);
        shell.run_script(script, "set-up");
    }

    QuietConsole console;
    std::optional<vexosh::Session> session;
};

void play(const std::uint8_t* data, std::size_t size)
{
    while (size >= 3) {
        const int port = data[0] % 56;
        std::size_t length = data[1] * std::size_t{256} + data[2];
        data += 3;
        size -= 3;
        if (port >= 53) {
            vexosim::advance(std::chrono::milliseconds(length));
            continue;
        }
        length = std::min(length, size);
        const vexosim::FrameView frame(data, length);
        vexosim::what_if(port, frame);
        vexosim::receive(port, frame);
        data += length;
        size -= length;
    }
    vexosim::drain();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Card card;
    play(data, size);
    card.session->clear_cpu_packets();
    if (const std::string problem = vexosim::check_conservation(); !problem.empty()) {
        std::fprintf(stderr, "%s\n", problem.c_str());
        std::abort();
    }
    return 0;
}
