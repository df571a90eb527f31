#include "sim/wire/packet_burst.h"

#include <linux/if_ether.h>
#include <linux/if_packet.h>

#include <cerrno>
#include <cstring>
#include <optional>

namespace vexosim {

namespace {

constexpr std::size_t kTag = 4;
constexpr std::size_t kAddresses = std::size_t{2} * ETH_ALEN;

std::optional<tpacket_auxdata> auxiliary(msghdr& message)
{
    for (cmsghdr* item = CMSG_FIRSTHDR(&message); item != nullptr;
         item = CMSG_NXTHDR(&message, item)) {
        if (item->cmsg_level == SOL_PACKET && item->cmsg_type == PACKET_AUXDATA) {
            tpacket_auxdata data{};
            std::memcpy(&data, CMSG_DATA(item), sizeof data);
            return data;
        }
    }
    return std::nullopt;
}

// Moves the addresses into the spare bytes before the frame and writes the tag behind them.
FrameView put_tag_back(std::uint8_t* frame, std::size_t size, const tpacket_auxdata& data)
{
    const bool has_type = (data.tp_status & TP_STATUS_VLAN_TPID_VALID) != 0;
    const unsigned type = has_type ? data.tp_vlan_tpid : ETH_P_8021Q;
    std::uint8_t* const begin = frame - kTag;
    std::memmove(begin, frame, kAddresses);
    begin[kAddresses] = static_cast<std::uint8_t>(type >> 8);
    begin[kAddresses + 1] = static_cast<std::uint8_t>(type);
    begin[kAddresses + 2] = static_cast<std::uint8_t>(data.tp_vlan_tci >> 8);
    begin[kAddresses + 3] = static_cast<std::uint8_t>(data.tp_vlan_tci);
    return {begin, size + kTag};
}

} // namespace

void PacketBurst::prepare(FrameBatch& batch)
{
    for (std::size_t i = 0; i < batch.free_frames(); ++i) {
        const auto room = batch.room(i).subspan(kTag);
        parts_[i] = {room.data(), FrameBatch::kMaxFrameBytes + 1};
        msghdr& header = messages_[i].msg_hdr;
        header = {};
        header.msg_iov = &parts_[i];
        header.msg_iovlen = 1;
        header.msg_control = control_[i].bytes.data();
        header.msg_controllen = sizeof(Control);
        header.msg_name = from_[i].bytes.data();
        header.msg_namelen = sizeof(Address);
    }
}

PacketBurst::Result PacketBurst::receive(int fd, FrameBatch& batch)
{
    Result result;
    if (batch.full()) {
        return result;
    }
    prepare(batch);
    const auto wanted = static_cast<unsigned>(batch.free_frames());
    const int got = ::recvmmsg(fd, messages_.data(), wanted, MSG_DONTWAIT, nullptr);
    if (got < 0) {
        result.error = errno == EAGAIN || errno == EINTR ? 0 : errno;
        return result;
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(got); ++i) {
        keep(i, batch, result);
    }
    return result;
}

void PacketBurst::keep(std::size_t index, FrameBatch& batch, Result& result)
{
    sockaddr_ll from{};
    std::memcpy(&from, from_[index].bytes.data(), sizeof from);
    if (from.sll_pkttype == PACKET_OUTGOING) {
        return;
    }
    auto* const bytes = static_cast<std::uint8_t*>(parts_[index].iov_base);
    FrameView frame(bytes, messages_[index].msg_len);
    const auto data = auxiliary(messages_[index].msg_hdr);
    if (data && (data->tp_status & TP_STATUS_VLAN_VALID) != 0 && frame.size() >= kAddresses) {
        frame = put_tag_back(bytes, frame.size(), *data);
    }
    if (frame.size() > FrameBatch::kMaxFrameBytes) {
        ++result.too_long;
        return;
    }
    batch.take(frame);
    ++result.frames;
}

std::size_t PacketBurst::send(int fd, std::span<const FrameView> frames)
{
    for (std::size_t i = 0; i < frames.size(); ++i) {
        parts_[i] = {const_cast<std::uint8_t*>(frames[i].data()), frames[i].size()};
        messages_[i].msg_hdr = {};
        messages_[i].msg_hdr.msg_iov = &parts_[i];
        messages_[i].msg_hdr.msg_iovlen = 1;
    }
    std::size_t sent = 0;
    // An interface that was down in the meantime has left an error that the first call only
    // fetches.
    bool fetched = false;
    for (std::size_t at = 0; at < frames.size();) {
        const auto left = static_cast<unsigned>(frames.size() - at);
        const int taken = ::sendmmsg(fd, &messages_[at], left, MSG_DONTWAIT);
        if (taken < 0 && errno == ENETDOWN && !fetched) {
            fetched = true;
            continue;
        }
        sent += taken > 0 ? static_cast<std::size_t>(taken) : 0;
        at += taken > 0 ? static_cast<std::size_t>(taken) : 1; // the one that was refused
    }
    return sent;
}

} // namespace vexosim
