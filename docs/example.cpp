// The smallest manager: brings the card up, makes a VLAN of two ports, and prints what reaches the
// CPU. The README shows it.
#include <cstdio>

#include "core/factory.h"
#include "pktio/event_records.h"

static void on_packet(RxPacket* received, void*)
{
    std::printf("%u bytes in VLAN %u\n", received->length(), received->vlan());
}

int main()
{
    VexoSdkBase* sdk = nullptr;
    vexosdk_create_sdk_instance(); // brings the card up
    vexosdk_get_sdk_instance(sdk);
    sdk->register_rx_packet_callback(on_packet, nullptr);
    bool done = sdk->create_vlan(10) && sdk->add_ports_to_vlan(10, {}, {Mp(0, 2), Mp(0, 3)});
    return done ? 0 : 1;
}
