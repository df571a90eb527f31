// Calls an operation of the driver once for every port, to be counted by callgrind: see
// wrapper_cost.sh.
//
//     wrapper_cost            names the operations
//     wrapper_cost OPERATION  calls it inside `measured_region`
#include <cstdio>
#include <cstring>

#include "core/factory.h"
#include "platform/port_map.h"
#include "vexosim/clock.h"

namespace {

using Sdk = VexoSdkBase;

struct Operation {
    const char* name;
    bool (*call)(Sdk& sdk, const Mp& port);
};

const unsigned char mac[6] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
bool flag = false;
unsigned number = 0;
speed_type_t speed = SPEED_1G;
duplex_type_t duplex = DUPLEX_FULL;
stp_state_t stp_state = STP_FORWARDING;
mstp_state_t mstp_state = MSTP_FORWARDING;
ingress_discard_type_t discard = INGRESS_DISCARD_NONE;

const Operation operations[] = {
    {"set_port_enable", [](Sdk& s, const Mp& p) { return s.set_port_enable(p, true); }},
    {"get_port_enabled", [](Sdk& s, const Mp& p) { return s.get_port_enabled(p, flag); }},
    {"get_port_autoneg", [](Sdk& s, const Mp& p) { return s.get_port_autoneg(p, flag); }},
    {"get_port_speed", [](Sdk& s, const Mp& p) { return s.get_port_speed(p, speed); }},
    {"get_port_duplex", [](Sdk& s, const Mp& p) { return s.get_port_duplex(p, duplex); }},
    {"set_port_pause", [](Sdk& s, const Mp& p) { return s.set_port_pause(p, 0, 0); }},
    {"set_port_mtu", [](Sdk& s, const Mp& p) { return s.set_port_mtu(p, 1518); }},
    {"get_port_mtu", [](Sdk& s, const Mp& p) { return s.get_port_mtu(p, number); }},
    {"set_port_stp_state",
     [](Sdk& s, const Mp& p) { return s.set_port_stp_state(p, STP_FORWARDING); }},
    {"get_port_stp_state", [](Sdk& s, const Mp& p) { return s.get_port_stp_state(p, stp_state); }},
    {"set_stg_stp_state",
     [](Sdk& s, const Mp& p) { return s.set_stg_stp_state(1, p, MSTP_FORWARDING); }},
    {"get_stg_stp_state",
     [](Sdk& s, const Mp& p) { return s.get_stg_stp_state(1, p, mstp_state); }},
    {"set_port_ingress_discarding",
     [](Sdk& s, const Mp& p) { return s.set_port_ingress_discarding(p, INGRESS_DISCARD_NONE); }},
    {"get_port_ingress_discarding",
     [](Sdk& s, const Mp& p) { return s.get_port_ingress_discarding(p, discard); }},
    {"set_port_vlan_pvid", [](Sdk& s, const Mp& p) { return s.set_port_vlan_pvid(p, 1); }},
    {"get_port_vlan_pvid", [](Sdk& s, const Mp& p) { return s.get_port_vlan_pvid(p, number); }},
    {"add_mac_to_port", [](Sdk& s, const Mp& p) { return s.add_mac_to_port(p, mac, 1, false); }},
};

const Operation* find(const char* name)
{
    for (const Operation& operation : operations) {
        if (std::strcmp(operation.name, name) == 0)
            return &operation;
    }
    return nullptr;
}

} // namespace

// Seen by callgrind under this name. Returns how many ports the operation succeeded for.
extern "C" __attribute__((noinline)) int measured_region(Sdk& sdk, const Operation& operation)
{
    int done = 0;
    for (const Mp& port : vexo_user_port_to_module_port)
        done += operation.call(sdk, port);
    return done;
}

int main(int argc, char** argv)
{
    if (argc < 2) {
        for (const Operation& operation : operations)
            std::puts(operation.name);
        return 0;
    }
    const Operation* const operation = find(argv[1]);
    if (operation == nullptr) {
        std::fprintf(stderr, "wrapper_cost: no operation %s\n", argv[1]);
        return 2;
    }
    vexosim::use_manual_clock();
    vexosdk_create_sdk_instance();
    const int done = measured_region(*bcm_sdk, *operation);
    if (done < vexo_port_rows - 1) { // the chip refuses some settings of the CPU port
        std::fprintf(stderr, "wrapper_cost: %s failed: is the card up?\n", argv[1]);
        return 1;
    }
    return 0;
}
