// Packets for the CPU: from the SDK's call of the receive handler to one class-form and one C-style
// subscriber. Each packet comes from another front-panel port.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "core/factory.h"
#include "pktio/event_records.h"
#include "pktio/receive.h"
#include "tests/platform/port_tables.h"
#include "vexosim/clock.h"

namespace {

unsigned long seen = 0;

void on_packet(RxPacket* packet, void*)
{
    seen += packet->length();
}

void on_packet_c(ctype_rx_packet_s* packet, void*)
{
    seen += packet->length;
}

void prepare()
{
    vexosim::use_manual_clock();
    vexosdk_create_sdk_instance();
    build_port_tables();
    bcm_sdk->register_rx_packet_callback(on_packet, nullptr);
    bcm_sdk->register_rx_packet_callback_c(on_packet_c, nullptr);
}

void deliver(benchmark::State& state)
{
    if (bcm_sdk == nullptr)
        prepare();
    std::vector<uint8_t> frame(static_cast<std::size_t>(state.range(0)), 0x55);
    bcm_pkt_blk_t block = {frame.data(), static_cast<int>(frame.size())};
    bcm_pkt_t pkt = {};
    pkt.pkt_data = &block;
    pkt.blk_count = 1;
    pkt.pkt_len = static_cast<uint16_t>(frame.size());
    seen = 0;
    while (state.KeepRunning()) {
        pkt.rx_port = static_cast<uint8_t>(pkt.rx_port % 53 + 1);
        if (vexo_recv_pkt(0, &pkt, nullptr) != BCM_RX_HANDLED)
            state.SkipWithError("a packet was not handled");
    }
    if (seen != 2 * frame.size() * static_cast<unsigned long>(state.iterations()))
        state.SkipWithError("a subscriber missed packets");
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(deliver)->Arg(64)->Arg(1514);

} // namespace
