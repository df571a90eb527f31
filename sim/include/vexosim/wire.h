/// @file
/// What a front-panel port is plugged into. A wire carries whole Ethernet frames without their FCS.
/// Ports are user ports, 0 to 52; the CPU port has no wire.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "vexosim/frame.h"

namespace vexosim {

/// Frames received together, in order, and the memory they lie in. Reused from burst to burst.
class FrameBatch {
public:
    static constexpr std::size_t kMaxFrames = 64;
    static constexpr std::size_t kMaxFrameBytes = 16384;

    /// @param limit frames after which the batch is full, 1 to kMaxFrames.
    explicit FrameBatch(std::size_t limit = kMaxFrames);

    /// The frames, valid until clear().
    std::span<const FrameView> frames() const { return frames_; }
    std::size_t size() const { return frames_.size(); }
    bool empty() const { return frames_.empty(); }
    bool full() const { return frames_.size() >= limit_; }
    /// How many more frames fit.
    std::size_t free_frames() const { return limit_ - frames_.size(); }
    void clear();

    /// Memory for the n-th frame to come (n < free_frames()): kMaxFrameBytes and kSpare more.
    std::span<std::uint8_t> room(std::size_t n = 0);
    /// Appends a frame that was put into room(); frames of one burst are taken in order.
    void take(FrameView frame);
    /// Appends a copy. False, and nothing appended, when full or longer than kMaxFrameBytes.
    bool add(FrameView frame);

    /// Bytes beyond the longest frame: space for a tag, and to notice a frame that is too long.
    static constexpr std::size_t kSpare = 64;

private:
    std::unique_ptr<std::uint8_t[]> memory_;
    std::size_t used_ = 0;
    std::size_t limit_;
    std::vector<FrameView> frames_;
};

/// What became of the frames at a wire, counted since it was opened.
struct WireCounters {
    std::uint64_t received = 0;         ///< frames handed to the card
    std::uint64_t sent = 0;             ///< frames the far end was given
    std::uint64_t receive_overflow = 0; ///< frames that arrived faster than they were read
    std::uint64_t receive_too_long = 0; ///< frames longer than FrameBatch::kMaxFrameBytes
    std::uint64_t receive_cut = 0;      ///< frames of which a capture kept only the beginning
    std::uint64_t send_drops = 0;       ///< frames the far end did not take
};

/// One end of a cable. send() may be called by several threads at once, receive() by one at a time;
/// neither is ever called with the chip's lock held.
class Wire {
public:
    Wire() = default;
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;
    virtual ~Wire() = default;

    /// Sends frames in order. What the far end does not take is counted, never waited for.
    virtual void send(std::span<const FrameView> frames) = 0;
    /// Appends waiting frames until the batch is full or none waits; never blocks.
    /// @return false when nothing will ever arrive again (a capture has ended, an interface is
    /// gone).
    virtual bool receive(FrameBatch& batch) = 0;
    /// A descriptor that polls readable while frames wait; -1 when there is none.
    virtual int poll_fd() const { return -1; }
    /// Whether the port sees a far end that is up.
    virtual bool carrier() const = 0;
    /// Tells the far end whether the port's link is up.
    virtual void set_carrier(bool up) = 0;
    /// What this is, as open_wire() would be told.
    virtual std::string describe() const = 0;
    virtual WireCounters counters() const;
    /// When the next frame of a capture was recorded; empty for live wires and at the end.
    virtual std::optional<std::chrono::nanoseconds> next_time() { return std::nullopt; }
    /// One line about what was out of order, e.g. a capture that is cut short; empty if nothing.
    virtual std::string notice() const { return {}; }

protected:
    // Machine words: 32-bit targets have no lock-free wider ones, and wrap after 4 billion frames.
    struct {
        std::atomic<std::size_t> received{0}, sent{0}, overflow{0}, too_long{0}, cut{0}, drops{0};
    } count_;
};

/// A wire whose far end is the program itself.
class MemoryWire : public Wire {
public:
    /// @param queue_limit frames that may wait; more are counted as overflow.
    explicit MemoryWire(std::size_t queue_limit = 65536);
    ~MemoryWire() override;

    /// The far end sends a frame to the port.
    void push(FrameView frame);
    /// The far end goes up or down.
    void set_far_end(bool up) { far_end_ = up; }
    /// What set_carrier() said last; false before.
    bool link() const { return link_; }
    /// From now on sent frames are counted but not kept.
    void count_only() { keep_ = false; }
    /// The frames the port sent, in order.
    std::vector<std::vector<std::uint8_t>> sent() const;
    /// Like sent(), and forgets them.
    std::vector<std::vector<std::uint8_t>> take_sent();

    void send(std::span<const FrameView> frames) override;
    bool receive(FrameBatch& batch) override;
    int poll_fd() const override { return event_fd_; }
    bool carrier() const override { return far_end_; }
    void set_carrier(bool up) override { link_ = up; }
    std::string describe() const override { return "mem"; }

private:
    mutable std::mutex mutex_;
    std::deque<std::vector<std::uint8_t>> waiting_;
    std::vector<std::vector<std::uint8_t>> sent_;
    std::size_t queue_limit_;
    std::atomic<bool> keep_{true}, far_end_{true}, link_{false};
    int event_fd_;
};

/// A wire, or one line that says why there is none and what to do about it.
struct OpenedWire {
    std::unique_ptr<Wire> wire;
    std::string error;
};

/// Opens what a text names:
/// - `tap:NAME` a TAP interface, created if missing; carries tags and checksums unchanged and
///   carrier both ways;
/// - `veth:NAME` a packet socket on an existing Ethernet interface. Turn the far end's offloads off
///   (`ethtool -K PEER tx off tso off gso off gro off`), or it leaves checksums and segmentation
///   to hardware that is not there;
/// - `pcap:IN,OUT` capture files to replay and to write, either may be empty;
/// - `mem` nothing but memory.
OpenedWire open_wire(const std::string& spec);

/// Plugs a wire into a port.
/// @return empty, or one line that says why not; the wire is then closed.
std::string attach(int user_port, std::unique_ptr<Wire> wire);
/// The same with open_wire(); nothing is opened when the port cannot take it.
std::string attach(int user_port, const std::string& spec);
/// Unplugs and closes a port's wire; when it returns, nothing is sent to it any more.
/// @return empty, or one line that says why not.
std::string detach(int user_port);
void detach_all();

/// A port with a wire, as it is now.
struct Attachment {
    int user_port = 0;
    std::string wire;
    bool carrier = false;
    WireCounters counters;
    std::string notice;
};
/// All ports with a wire, by port number.
std::vector<Attachment> attachments();

/// Sends frames out of a port, in order. Without a wire they go nowhere.
/// The caller must not hold the chip's lock.
void send_to_wire(int user_port, std::span<const FrameView> frames);
/// Whether the port has a wire with a far end that is up; what a link scan looks at.
bool wire_carrier(int user_port);
/// Tells the far end of the port's link; remembered for wires attached later. Up at first.
void set_wire_carrier(int user_port, bool up);

/// Takes frames that arrived at a port, in order; they are valid only during the call.
using ReceiveFn = std::function<void(int user_port, std::span<const FrameView> frames)>;
/// Sets where arriving frames go. Called with no lock held, on the thread that read the frames.
void on_wire_receive(ReceiveFn receiver);

/// Starts the one thread that reads live wires; does nothing if it runs.
void start_wires();
/// Stops it; frames then wait at the wires. Also done at exit.
void stop_wires();
/// Reads live wires on the caller's thread until none has frames waiting.
/// @return the number of frames that arrived.
std::size_t poll_wires();

struct Replay {
    std::size_t frames = 0;
    std::vector<std::string> notices; ///< one line for each capture that was not in order
};
/// Plays all attached captures to their ends on the caller's thread, in the order in which the
/// frames were recorded. Captures never play by themselves. Meanwhile captures that are written
/// get the time of the frame that is being played.
/// @param elapsed called with the time between two frames, e.g. to advance a manual clock.
Replay replay_captures(const std::function<void(std::chrono::nanoseconds)>& elapsed = {});

} // namespace vexosim
