#pragma once

#include <array>
#include <string>

#include "sim/capture/note_writer.h"
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
        /// Bytes that may wait for a slow file before the traffic waits.
        std::size_t memory = std::size_t{256} * 1024 * 1024;
    };

    explicit Capture(const Plan& plan);
    ~Capture() override;

    /// @return empty, or why the file cannot be written.
    std::string open(const std::string& path) { return writer_.open(path); }
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
    bool wants(Captured what) const { return what_ == Captured::all || what_ == what; }
    std::uint8_t* note(const Verdict& verdict, PortSet ports, const Packet& p, FrameView form);

    PortSet ports_;
    Captured what_;
    NoteWriter writer_;
    BlockBuffer* notes_ = nullptr; ///< of the batch
    std::uint64_t frame_id_ = 0, packets_ = 0;
    std::uint64_t noted_id_ = 0;      ///< of the last frame whose bytes are noted as received
    std::uint8_t* arrival_ = nullptr; ///< the last note, if it is that this frame was received
};

} // namespace vexosim
