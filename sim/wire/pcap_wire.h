#pragma once

#include <mutex>

#include "sim/wire/pcap_reader.h"
#include "sim/wire/pcap_writer.h"

namespace vexosim {

/// A far end made of capture files: one is what it sends, the other keeps what it is sent.
class PcapWire : public Wire {
public:
    /// @param files IN,OUT; either may be empty, not both.
    static OpenedWire open(const std::string& files);

    void send(std::span<const FrameView> frames) override;
    bool receive(FrameBatch& batch) override;
    bool carrier() const override { return true; }
    void set_carrier(bool) override {}
    std::string describe() const override;
    std::optional<std::chrono::nanoseconds> next_time() override;
    std::string notice() const override;

private:
    bool fetch();

    mutable std::mutex read_mutex_;
    PcapReader in_;
    std::optional<PcapReader::Record> waiting_;
    std::mutex write_mutex_;
    PcapWriter out_;
};

} // namespace vexosim
