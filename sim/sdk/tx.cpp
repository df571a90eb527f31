// Packet transmit. Sending to wires happens without the chip's lock, so these calls take it
// themselves.
#include <bcmx/tx.h>

#include <vector>

#include "sim/card/traffic.h"
#include "sim/pipeline/forward.h"
#include "sim/sdk/gate.h"
#include "sim/sdk/port_lists.h"

namespace {

using namespace vexosim;

constexpr std::size_t kMinFrame = 64;

/// The descriptor's blocks as one frame; empty when there is none, or it is too short.
Frame frame_of(const bcm_pkt_t* pkt)
{
    Frame frame;
    if (pkt == nullptr || pkt->pkt_data == nullptr)
        return frame;
    for (int i = 0; i < pkt->blk_count; ++i) {
        const bcm_pkt_blk_t& block = pkt->pkt_data[i];
        if (block.data == nullptr || block.len < 0)
            return {};
        frame.insert(frame.end(), block.data, block.data + block.len);
    }
    return frame.size() < kMinFrame ? Frame{} : frame;
}

CpuReceive& cpu()
{
    return card().background.receiver.queues;
}

void finish(bcm_pkt_t* pkt)
{
    if (pkt->call_back != nullptr)
        pkt->call_back(pkt->unit, pkt, pkt->cookie);
}

/// Has `body` send the frame.
template <class Body>
int transmit(bcm_pkt_t* pkt, Body&& body)
{
    const Frame frame = frame_of(pkt);
    const int rc = forward([&](Chip& chip, Outputs& outputs) -> int {
        if (card().stage < Stage::attached)
            return BCM_E_INIT;
        return frame.empty() ? int{BCM_E_PARAM} : body(chip, frame, outputs);
    });
    if (rc == BCM_E_NONE)
        finish(pkt);
    return rc;
}

int switch_frame(bcm_pkt_t* pkt, uint32_t flags)
{
    return transmit(pkt, [&](Chip& chip, const Frame& frame, Outputs& outputs) -> int {
        if ((flags & ~(BCMX_TX_F_UNICAST | BCMX_TX_F_FLOOD)) != 0)
            return BCM_E_PARAM;
        forward_from_cpu(chip, cpu(), frame, outputs);
        return BCM_E_NONE;
    });
}

int send_frame(bcm_pkt_t* pkt, const bcmx_lplist_t* tx_ports, const bcmx_lplist_t* untagged,
               uint32_t flags)
{
    return transmit(pkt, [&](Chip& chip, const Frame& frame, Outputs& outputs) -> int {
        if (tx_ports == nullptr || (flags & ~BCMX_TX_F_PORT_LIST) != 0)
            return BCM_E_PARAM;
        const auto ports = port_set(*tx_ports);
        const auto plain = untagged == nullptr ? PortSet{} : port_set(*untagged);
        if (!ports || !plain)
            return BCM_E_PORT;
        send_to_ports(chip, cpu(), frame, *ports, *plain, outputs);
        return BCM_E_NONE;
    });
}

} // namespace

extern "C" int bcmx_tx(bcm_pkt_t* pkt, uint32_t flags)
{
    return gated("bcmx_tx", CallClass::chip, args(pkt, Flags{flags}),
                 [&] { return switch_frame(pkt, flags); });
}

extern "C" int bcmx_tx_lplist(bcm_pkt_t* pkt, bcmx_lplist_t* tx_ports, bcmx_lplist_t* untagged,
                              uint32_t flags)
{
    return gated("bcmx_tx_lplist", CallClass::chip,
                 args(pkt, Ports{tx_ports}, Ports{untagged}, Flags{flags}),
                 [&] { return send_frame(pkt, tx_ports, untagged, flags); });
}
