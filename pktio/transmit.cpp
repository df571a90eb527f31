// Sending frames from the CPU: forwarded by the chip, or out of given ports. One surprise: the
// port lists are freed only when the frame was sent.
#include <algorithm>
#include <cstring>

#include <bcmx/lplist.h>
#include <bcmx/tx.h>
#include <sal/core.h>

#include "companion/vector_to_array.h"
#include "core/bcm_sdk.h"
#include "core/result.h"
#include "pktio/packet.h"
#include "platform/mac.h"

using vexolc::ok;

namespace {

constexpr unsigned buffer_bytes = 16384;
constexpr unsigned min_input = 16;
constexpr unsigned min_frame = 64;
constexpr unsigned ethertype_offset = 12;
constexpr uint8_t default_tag[] = {0x81, 0x00, 0x00, 0x01}; // priority 0, VLAN 1
constexpr unsigned tag_bytes = sizeof default_tag;
constexpr uint8_t transmit_cos = 7;

/// Memory that the chip reads a frame from.
class DmaBuffer {
public:
    DmaBuffer()
    {
        char description[] = "VEXON BCMSDK"; // a local copy, for an SDK that writes to it
        bytes_ = static_cast<uint8_t*>(sal_dma_alloc(buffer_bytes, description));
    }
    ~DmaBuffer()
    {
        if (bytes_ != nullptr)
            sal_dma_free(bytes_);
    }
    DmaBuffer(const DmaBuffer&) = delete;
    DmaBuffer& operator=(const DmaBuffer&) = delete;

    uint8_t* bytes() const { return bytes_; }

private:
    uint8_t* bytes_;
};

bool is_tagged(const uint8_t* frame)
{
    return std::equal(default_tag, default_tag + 2, frame + ethertype_offset);
}

void insert_tag(uint8_t* frame, unsigned length)
{
    uint8_t* tag = frame + ethertype_offset;
    std::memmove(tag + tag_bytes, tag, length - ethertype_offset);
    std::copy_n(default_tag, tag_bytes, tag);
}

/// Tags and pads the `length` bytes at `frame`, in a buffer of `buffer_bytes`.
bool make_sendable(uint8_t* frame, unsigned& length)
{
    if (length < min_input)
        return false;
    if (!is_tagged(frame)) {
        if (length + tag_bytes > buffer_bytes)
            return false;
        insert_tag(frame, length);
        length += tag_bytes;
    }
    if (length < min_frame) {
        std::fill(frame + length, frame + min_frame, uint8_t{0});
        length = min_frame;
    }
    return true;
}

/// A descriptor with `frame` as its one block; `block` must outlive it.
bcm_pkt_t describe(bcm_pkt_blk_t& block, uint8_t* frame, unsigned length)
{
    block.data = frame;
    block.len = static_cast<int>(length);
    bcm_pkt_t pkt = {};
    pkt.pkt_data = &block;
    pkt.blk_count = 1;
    pkt.cos = transmit_cos;
    pkt.call_back = nullptr; // synchronous
    pkt.pkt_len = static_cast<uint16_t>(length);
    return pkt;
}

uint32_t destination_kind(const uint8_t* mac)
{
    return is_mac_t_broadcast(mac) || is_mac_t_multicast(mac) ? BCMX_TX_F_FLOOD : BCMX_TX_F_UNICAST;
}

void add_ports(const std::list<Mp>& ports, int& lport, bcmx_lplist_t& all, bcmx_lplist_t* untagged)
{
    for (const Mp& mp : ports) {
        map_mp_to_lport(mp, lport); // deliberate: an unmapped port repeats the one before it
        bcmx_lplist_add(&all, lport);
        if (untagged != nullptr)
            bcmx_lplist_add(untagged, lport);
    }
}

bool send_to_ports(bcm_pkt_t& pkt, const std::list<Mp>& tagged, const std::list<Mp>& untagged,
                   int capacity)
{
    // Deliberately without an owner: until the frame is sent, nothing frees these lists.
    bcmx_lplist_t all = {};
    bcmx_lplist_t without_tag = {};
    if (!ok(bcmx_lplist_init(&all, capacity, 0)) ||
        !ok(bcmx_lplist_init(&without_tag, capacity, 0)))
        return false;
    int lport = BCMX_LPORT_INVALID;
    add_ports(tagged, lport, all, nullptr);
    add_ports(untagged, lport, all, &without_tag);
    if (!ok(bcmx_tx_lplist(&pkt, &all, &without_tag, BCMX_TX_F_PORT_LIST)) ||
        !ok(bcmx_lplist_free(&all)))
        return false;
    bcmx_lplist_free(&without_tag); // result ignored on purpose
    return true;
}

} // namespace

bool VexoBcmSdk::send_packet_from_cpu(const Packet& packet)
{
    unsigned length = packet.length();
    if (length > buffer_bytes)
        return false;
    std::vector<uint8_t> frame;
    packet.get_pkt_data(frame);
    const DmaBuffer buffer;
    if (buffer.bytes() == nullptr || !vexo_vector_to_array(frame, buffer.bytes(), length) ||
        !make_sendable(buffer.bytes(), length))
        return false;
    bcm_pkt_blk_t block = {};
    bcm_pkt_t pkt = describe(block, buffer.bytes(), length);
    pkt.flags |= BCM_PKT_F_SWITCHED;
    return bcmx_tx(&pkt, destination_kind(buffer.bytes())) >= 0;
}

bool VexoBcmSdk::send_packet_by_ports(const std::list<Mp>& tagged, const std::list<Mp>& untagged,
                                      const Packet& packet)
{
    if (packet.length() > buffer_bytes)
        return false;
    const DmaBuffer buffer;
    if (buffer.bytes() == nullptr)
        return false;
    std::vector<uint8_t> frame;
    packet.get_pkt_data(frame);
    std::copy(frame.begin(), frame.end(), buffer.bytes());
    unsigned length = static_cast<unsigned>(frame.size());
    if (!make_sendable(buffer.bytes(), length))
        return false;
    bcm_pkt_blk_t block = {};
    bcm_pkt_t pkt = describe(block, buffer.bytes(), length); // flags 0, deliberately
    return send_to_ports(pkt, tagged, untagged, port_count);
}
