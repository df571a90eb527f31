#pragma once

#include <bcmx/lport.h>

#include <atomic>
#include <memory>
#include <mutex>

#include "sim/card/background.h"
#include "sim/card/clock.h"
#include "sim/card/next_traces.h"
#include "sim/card/phys.h"
#include "sim/card/port_map.h"
#include "sim/card/properties.h"
#include "sim/card/registers.h"
#include "sim/card/watch.h"
#include "sim/pipeline/observer.h"
#include "vexosim/profile.h"

namespace vexosim {

struct Chip;

/// How far unit 0, the switch chip, has been brought up. Each step needs the one before.
enum class Stage {
    absent,      ///< no unit has been created
    created,     ///< by soc_cm_device_create
    reachable,   ///< has its vectors: soc_cm_device_init
    reset,       ///< soc_reset_init
    misc,        ///< soc_misc_init
    mmu,         ///< soc_mmu_init
    initialised, ///< bcm_init: the chip's tables can be used
    attached     ///< bcmx_device_attach: logical ports can be used
};

/// The simulated card: one chip and everything around it. Parts that are used by several threads
/// guard themselves, or are used under the chip's lock (see ChipLock).
class Card {
public:
    Card();
    Card(const Card&) = delete;
    Card& operator=(const Card&) = delete;
    ~Card();

    Watch watch;
    Profile profile;
    CardClock clock;
    PortMap ports;
    Properties properties;
    Registers registers;
    std::atomic<std::size_t> lplists{0}, dma_buffers{0};
    std::atomic<bool> core_started{false}, manager_started{false};
    std::atomic<bcmx_uport_create_callback_t> uport_create{nullptr};

    /// The chip's lock. What follows is used under it.
    std::mutex chip_mutex;
    Chip& chip() { return *chip_; }
    Phys phys;
    Stage stage = Stage::absent;
    Background background;
    FrameObservers observers; ///< of all frames
    NextTraces next_traces;   ///< one of them while it has something to trace

    /// Notes that the chip is at least this far up.
    void reach(Stage reached) { stage = std::max(stage, reached); }
    /// Puts the chip's tables to their defaults.
    void reset_chip();
    /// Unit 0 is gone, and its ports with it.
    void lose_chip();

private:
    std::unique_ptr<Chip> chip_;
};

/// The one card. It is never destroyed: SDK calls may come until the very end of the process.
Card& card();

/// The chip, locked and with its time set. When it ends, the SDK's threads are told of what was
/// left for them to do.
class ChipLock {
public:
    ChipLock();
    ChipLock(const ChipLock&) = delete;
    ChipLock& operator=(const ChipLock&) = delete;
    ~ChipLock();

    Chip& operator*() const { return card().chip(); }
    Chip* operator->() const { return &card().chip(); }
};

} // namespace vexosim
