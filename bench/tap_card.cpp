// tap_card TAP TAP: brings the card up through the driver and switches between two TAPs, in VLAN 1,
// until it is killed.
#include <unistd.h>

#include <condition_variable>
#include <cstdio>
#include <mutex>

#include "core/factory.h"
#include "core/line_card_init.h"
#include "pktio/event_records.h"
#include "vexosim/board.h"
#include "vexosim/ports.h"
#include "vexosim/wire.h"

namespace {

std::mutex mutex;
std::condition_variable wake;
bool link_changed = false;

void on_link(LinkStatus*, Usp*)
{
    const std::lock_guard lock(mutex);
    link_changed = true;
    wake.notify_one();
}

// The driver leaves ports that come up blocking; a manager lets them forward.
[[noreturn]] void manage(VexoSdkBase& sdk)
{
    for (std::unique_lock lock(mutex);;) {
        wake.wait(lock, [] { return link_changed; });
        link_changed = false;
        lock.unlock();
        for (const unsigned port : {1U, 2U}) {
            sdk.set_port_stp_state(Mp(0, port), STP_FORWARDING);
        }
        lock.lock();
    }
}

bool plug(int port, const std::string& name)
{
    const std::string why = vexosim::attach(port, "tap:" + name);
    if (!why.empty()) {
        std::fprintf(stderr, "tap_card: %s\n", why.c_str());
    }
    return why.empty();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: tap_card TAP TAP\n");
        return 2;
    }
    vexosim::board::enable();
    vexosdk_create_sdk_instance();
    VexoSdkBase* sdk = nullptr;
    int slot = 0;
    if (!vexosdk_get_sdk_instance(sdk) || !vexo_init_line_card(slot)) {
        std::fprintf(stderr, "tap_card: the card did not come up\n");
        return 1;
    }
    vexosim::connect_wires();
    sdk->register_link_change_callback(on_link, nullptr);
    if (!plug(1, argv[1]) || !plug(2, argv[2])) {
        return 1;
    }
    vexosim::start_wires();
    manage(*sdk);
}
