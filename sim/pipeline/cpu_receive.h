/// @file
/// Frames for the CPU, from the chip's queues to the registered handlers.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <bcm/rx.h>

#include "sim/chip/chip.h"
#include "sim/chip/token_bucket.h"
#include "sim/pipeline/packet.h"

namespace vexosim {

/// A frame that waits for the CPU. It always has its VLAN's tag.
struct CpuFrame {
    Frame data;
    ReasonSet reasons = 0;
    int reason = 0;
    int port = 0; ///< chip port
    int vid = 0;
    int priority = 0;
    int queue = 0;
    bool came_untagged = false; ///< the tag in the data was added
};

/// Used under the chip's lock, except deliver(). Times are the chip's, in microseconds.
class CpuReceive {
public:
    /// Frames that wait in a queue at most.
    static constexpr std::size_t kQueueDepth = 512;

    // The SDK's receive calls; `queues` is the chip's.

    /// Forgets handlers, waiting frames and class limits.
    int init(CpuQueues& queues);
    /// Handlers of higher priority are asked first, of equal priority in the order in which they
    /// came. The low 8 bits of `flags` are the queues whose frames the handler gets. EXISTS: the
    /// same handler and cookie at the same priority; PARAM: null; INIT: before init().
    int add_handler(const char* name, bcm_rx_cb_f handler, std::uint8_t priority, void* cookie,
                    std::uint32_t flags);
    /// A null `config` means no limits and all queues through channel 1. BUSY; PARAM.
    int start(CpuQueues& queues, const bcm_rx_cfg_t* config);
    /// Frames wait from now on. `config`, unless null, gets what start() was given.
    int stop(bcm_rx_cfg_t* config);
    bool running() const { return running_; }

    /// Decides about the CPU copy that the stages asked for: its queue, and whether there is room.
    void choose_queue(const Chip& chip, Packet& p) const;
    /// Queues the copy, after choose_queue() found room.
    /// @return the copy, valid until the next call.
    const CpuFrame& enqueue(const Packet& p);

    std::size_t waiting() const;
    /// Takes the next frame that may be delivered now, from the highest queue first.
    /// @return false when there is none.
    bool take(const CpuQueues& queues, std::uint64_t now_us, CpuFrame& frame);
    /// Microseconds until take() may find one: 0 when it would now, none when nothing waits for
    /// the time to pass.
    std::optional<std::uint64_t> wait_us(const CpuQueues& queues, std::uint64_t now_us);

    /// The handlers as they are now.
    struct Handler {
        std::string name;
        bcm_rx_cb_f function;
        void* cookie;
        std::uint32_t flags;
        std::uint8_t priority;
    };
    using Handlers = std::shared_ptr<const std::vector<Handler>>;
    Handlers handlers() const { return handlers_; }
    /// Offers a frame to the handlers until one has handled it. The caller holds no lock.
    static void deliver(const std::vector<Handler>& handlers, CpuFrame& frame);

private:
    /// A ring that keeps the memory of its frames.
    struct Queue {
        std::vector<CpuFrame> ring;
        std::size_t first = 0, count = 0;
    };
    std::uint64_t wait_of(int queue, const CpuQueues& queues, std::uint64_t now_us);
    bool served(std::size_t queue, const CpuQueues& queues) const;
    void charge(int queue, const CpuQueues& queues);

    std::array<Queue, kCpuQueues> queues_;
    std::array<TokenBucket, kCpuQueues> cos_buckets_;
    std::array<TokenBucket, kCpuChannels> channel_buckets_;
    TokenBucket global_bucket_;
    Handlers handlers_ = std::make_shared<std::vector<Handler>>();
    bcm_rx_cfg_t config_{};
    bool initialised_ = false, running_ = false;
};

} // namespace vexosim
