#pragma once

#include <array>
#include <memory>

#include "sim/capture/block_writer.h"
#include "sim/capture/verdict.h"
#include "sim/pipeline/observer.h"
#include "vexosim/capture.h"

namespace vexosim {

/// Writes frames to a file as it is told of them.
class Capture : public FrameObserver {
public:
    /// What to capture, and what its interfaces are called.
    struct Plan {
        PortSet ports; ///< chip ports
        Captured what = Captured::all;
        PortNames names;
        std::array<std::string, kPortCount> descriptions;
    };

    explicit Capture(const Plan& plan);
    ~Capture() override;

    /// @return empty, or why the file cannot be written.
    std::string open(const std::string& path);
    /// Writes what is left; the observer must not be told of frames any more.
    /// @return empty, or why the file does not hold all.
    std::string close();

    std::uint64_t packets() const { return packets_; }
    std::string error() const { return writer_.error(); }

    void decided(const Packet& p) override;
    void leaves(const Packet& p, PortSet ports, FrameView form) override;
    void is_lost(const Packet& p, PortSet ports, FrameView form, DropReason why) override;
    void batch_ends() override;

private:
    struct Interface {
        std::uint32_t number = 0;
        std::uint64_t packets = 0, dropped = 0;
    };

    bool wants(Captured what) const { return what_ == Captured::all || what_ == what; }
    void put(int port, pcapng::Direction direction, FrameView frame, std::string_view options);
    void put_statistics();
    std::uint64_t time_ns();

    PortSet ports_;
    Captured what_;
    std::array<Interface, kPortCount> interfaces_{}; // by chip port
    Verdicts verdicts_;
    BlockBuffer blocks_;
    BlockWriter writer_;
    std::uint64_t frame_id_ = 0, packets_ = 0;
    std::uint64_t time_ns_ = 0; // of the batch; 0 between batches
};

} // namespace vexosim
