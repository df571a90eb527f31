#pragma once

#include <cstdint>
#include <vector>

#include "platform/usp.h"

/// A frame, starting at the destination MAC address and without FCS.
class Packet {
public:
    Packet() = default;
    Packet(const Packet&) = default;
    Packet& operator=(const Packet&) = default;

    /// Bytes in `data`.
    unsigned length() { return length_; }
    unsigned length() const { return length_; }

    /// A code of the sender's; 0 by default and in every received packet.
    unsigned type() { return type_; }
    unsigned type() const { return type_; }
    void set_type(unsigned type) { type_ = type; }

    const std::vector<uint8_t>& data() const { return data_; }

    /// Replaces the frame by a copy of `data` and returns its length in bytes.
    int set_data(const std::vector<uint8_t>& data)
    {
        data_ = data;
        return keep_length();
    }

    /// The same, taking over the argument's storage.
    int set_data(std::vector<uint8_t>&& data)
    {
        data_ = std::move(data);
        return keep_length();
    }

    /// Replaces the contents of `out` by a copy of the frame. Always true.
    bool get_pkt_data(std::vector<uint8_t>& out) const
    {
        out = data_;
        return true;
    }

private:
    int keep_length()
    {
        length_ = static_cast<uint32_t>(data_.size());
        return static_cast<int>(length_);
    }

    uint32_t length_ = 0;
    uint32_t type_ = 0;
    std::vector<uint8_t> data_;
};

/// A packet received for the CPU.
class RxPacket : public Packet {
public:
    /// Replaces the frame and its type.
    void set_packet(const Packet& packet) { Packet::operator=(packet); }

    /// The VLAN that the chip received the frame in.
    unsigned vlan() { return vlan_; }
    unsigned vlan() const { return vlan_; }
    void set_vlan(unsigned vlan) { vlan_ = vlan; }

    /// The ingress port, always a physical one.
    Usp port() { return port_; }
    const Usp& port() const { return port_; }
    void set_port(Usp port) { port_ = port; }

private:
    uint32_t vlan_ = 0;
    Usp port_;
};

/// `RxPacket` for the C-style callbacks.
struct ctype_rx_packet_s {
    uint32_t length; ///< bytes in `data`
    uint32_t type;
    uint8_t* data; ///< the driver's, valid during the callback: copy what you keep
    uint32_t vlan;
    uint32_t unit; ///< the ingress port, as in `usp_s`
    uint32_t slot;
    uint32_t port;
};
