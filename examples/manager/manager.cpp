// A line-card manager: ports 1 and 2 are VLAN 10, and ports that come up forward. What main() calls
// of `vexosim` makes the simulated card, its time and its frames; all else is the same on a card.
#include <core/factory.h>
#include <core/line_card_init.h>
#include <pktio/event_records.h>
#include <platform/port_map.h>
#include <vexosim/board.h>
#include <vexosim/clock.h>
#include <vexosim/ports.h>
#include <vexosim/wire.h>

#include <cstdio>

static std::list<Usp> came_up; // callbacks only take notes: operations are for one thread
static void on_link(LinkStatus* link, Usp* port)
{
    if (link->status() == 1)
        came_up.push_back(*port);
}

static void manage(VexoSdkBase& card)
{
    for (Mp port; !came_up.empty(); came_up.pop_front())
        if (vexo_usp_to_mp(came_up.front(), port) && card.set_port_stp_state(port, STP_FORWARDING))
            std::printf("port %u forwards\n", port.port());
}

int main()
{
    vexosim::use_manual_clock(); // nothing happens before drain(), and then on this thread
    vexosim::board::enable();
    for (int port : {1, 2})
        vexosim::attach(port, "mem");

    VexoSdkBase* card = nullptr;
    int slot = 0;
    if (!vexosdk_create_sdk_instance() || !vexosdk_get_sdk_instance(card) ||
        !vexo_init_line_card(slot) || !card->register_link_change_callback(on_link, nullptr) ||
        !card->create_vlan(10) || !card->add_ports_to_vlan(10, {}, {Mp(0, 1), Mp(0, 2)}) ||
        !card->set_port_vlan_pvid(Mp(0, 1), 10) || !card->set_port_vlan_pvid(Mp(0, 2), 10))
        return 1;

    vexosim::drain(); // links come up
    manage(*card);
    vexosim::receive(1, vexosim::Frame(60)); // to nobody whom the card knows
    for (const auto& port : vexosim::attachments())
        std::printf("port %d sent %u frames\n", port.user_port, unsigned(port.counters.sent));
}
