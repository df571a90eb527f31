#pragma once

#include <array>
#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>
#include <vector>

#include "sim/wire/cable.h"
#include "sim/wire/io_loop.h"
#include "vexosim/partner.h"
#include "vexosim/wire.h"

namespace vexosim {

/// The card's front panel: which port has which wire.
class Panel {
public:
    static constexpr int kPorts = 53;

    Panel();

    std::string attach(int user_port, std::unique_ptr<Wire> wire);
    std::string detach(int user_port);
    /// Why the port cannot take a wire; empty when it can.
    std::string refusal(int user_port) const;
    std::vector<Attachment> attachments() const;

    void send(int user_port, std::span<const FrameView> frames);
    bool carrier(int user_port) const;
    void set_carrier(int user_port, bool up);
    std::string set_partner(int user_port, const LinkPartner& partner);
    /// Empty: one that can do what the port can.
    std::optional<LinkPartner> partner(int user_port) const;
    void on_receive(ReceiveFn receiver);

    void start();
    void stop() { loop_.stop(); }
    std::size_t poll();
    Replay replay(const std::function<void(std::chrono::nanoseconds)>& elapsed);

    std::string plug_cable(int user_port, bool plugged);
    std::string flap_cable(int user_port, std::chrono::microseconds period);
    std::string impair_cable(int user_port, CableWay way, const Impairment& impairment);
    std::vector<CableStatus> impaired_cables() const;
    /// When a cable flaps next or a slow frame arrives; SlowFrames::kNever if neither.
    std::uint64_t next_due_us() const;
    /// Does what is due with cables.
    void run_due(std::uint64_t now_us);
    /// Calls a function, with no lock held, whenever something becomes due earlier.
    void on_due_earlier(void (*function)()) { on_due_earlier_ = function; }

private:
    // A user of the wire holds the mutex shared, so that detaching waits for it.
    struct Slot {
        mutable std::shared_mutex mutex;
        std::unique_ptr<Wire> wire;
        std::optional<LinkPartner> partner;
        bool link = true;
        Cable cable;

        void tell_carrier() const { wire->set_carrier(link && cable.plugged); }
    };
    struct Flapping {
        std::uint64_t half_period_us = 0; // 0: does not flap
        std::uint64_t next_us = SlowFrames::kNever;
    };

    static bool exists(int user_port) { return user_port >= 0 && user_port < kPorts; }
    Slot& slot(int user_port) { return slots_[static_cast<std::size_t>(user_port)]; }
    const Slot& slot(int user_port) const { return slots_[static_cast<std::size_t>(user_port)]; }
    std::string without_wire(int user_port) const;
    std::string place(int user_port, std::unique_ptr<Wire>& wire);
    int holder_of(const std::string& description) const;
    std::size_t read_burst(int user_port, FrameBatch& batch, bool live);
    void arrive(int user_port, std::span<const FrameView> frames);
    void deliver(int user_port, std::span<const FrameView> frames);
    std::vector<FrameView> through(Lane& lane, std::span<const FrameView> frames);
    void set_plugged(int user_port, bool plugged);
    void set_flapping(int user_port, const Flapping& flapping);
    void new_cable(int user_port);
    int take_flap(std::uint64_t now_us);
    void flap_due(std::uint64_t now_us);
    CableStatus cable_status(int user_port) const;
    void tell_earlier() const;
    int next_capture(std::chrono::nanoseconds& at);

    std::array<Slot, kPorts> slots_;
    std::mutex attach_mutex_; // one attach or detach at a time
    std::mutex receiver_mutex_;
    std::shared_ptr<const ReceiveFn> receiver_;
    std::mutex replay_mutex_;
    SlowFrames slow_;
    std::mutex cable_mutex_; // one change of which cables are plugged at a time
    mutable std::mutex flapping_mutex_;
    std::array<Flapping, kPorts> flapping_;
    std::atomic<bool> timed_{false}; // whether anything has ever been due
    std::atomic<void (*)()> on_due_earlier_{nullptr};
    FrameBatch batch_; // of the loop, or of poll() while the loop is stopped
    IoLoop loop_;
};

/// The one panel; never destroyed, its thread is stopped at exit.
Panel& panel();

} // namespace vexosim
