// Packets for the CPU, from the SDK's receive thread to the subscribers. One surprise: the receive
// port of the descriptor is used as a uport.
#include "pktio/receive.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <new>

#include "core/factory.h"
#include "core/trace.h"
#include "pktio/event_records.h"
#include "platform/port_map.h"

namespace {

bool has_data(const bcm_pkt_t* pkt)
{
    return pkt != nullptr && pkt->pkt_data != nullptr && pkt->pkt_data[0].data != nullptr;
}

bool map_uport_to_usp(int uport, Usp& usp)
{
    int lport = -1;
    Mp mp;
    return map_uport_to_lport(uport, lport) && map_lport_to_mp(lport, mp) &&
           vexo_mp_to_usp(mp, usp);
}

/// False when memory runs out, which must not unwind into the SDK.
bool fill(RxPacket& record, const bcm_pkt_t& pkt, const Usp& usp)
try {
    const uint8_t* frame = pkt.pkt_data[0].data;
    record.set_data(std::vector<uint8_t>(frame, frame + pkt.pkt_len));
    record.set_vlan(pkt.vlan);
    record.set_port(usp);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

ctype_rx_packet_s c_record_of(const RxPacket& record, uint8_t* data)
{
    const Usp& usp = record.port();
    return {record.length(), record.type(), data,      record.vlan(),
            usp.unit(),      usp.slot(),    usp.port()};
}

bcm_rx_t deliver(VexoSdkBase& sdk, const bcm_pkt_t& pkt, const Usp& usp, void* cookie)
{
    RxPacket record;
    if (!fill(record, pkt, usp))
        return BCM_RX_NOT_HANDLED;
    if (record.length() == 0)
        return BCM_RX_HANDLED;
    const std::unique_ptr<uint8_t[]> copy(new (std::nothrow) uint8_t[record.length()]);
    if (copy == nullptr)
        return BCM_RX_NOT_HANDLED;
    std::copy_n(pkt.pkt_data[0].data, record.length(), copy.get());
    ctype_rx_packet_s c_record = c_record_of(record, copy.get());
    sdk.rx_packet(&record, cookie);
    sdk.rx_packet_c(&c_record, cookie);
    return BCM_RX_HANDLED;
}

} // namespace

bcm_rx_t vexo_recv_pkt(int, bcm_pkt_t* pkt, void* cookie)
{
    if (hw_util_dbg != 0)
        std::cout << "packet recv" << std::endl;
    VexoSdkBase* sdk = nullptr;
    if (!vexosdk_get_sdk_instance(sdk) || sdk == nullptr)
        return BCM_RX_NOT_HANDLED;
    if (!has_data(pkt)) {
        if (hw_util_dbg != 0)
            std::cout << "packet rx error" << std::endl;
        return BCM_RX_NOT_HANDLED;
    }
    Usp usp;
    if (!map_uport_to_usp(pkt->rx_port, usp))
        return BCM_RX_NOT_HANDLED;
    return deliver(*sdk, *pkt, usp, cookie);
}
