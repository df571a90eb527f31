#pragma once

#include <atomic>
#include <bcmx/lport.h>

#include <memory>
#include <mutex>

#include "sim/card/phys.h"
#include "sim/card/port_map.h"
#include "sim/card/properties.h"
#include "sim/card/registers.h"
#include "sim/card/watch.h"
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

    Chip& chip() { return *chip_; } ///< only under the chip's lock

    Watch watch;
    Profile profile;
    PortMap ports;
    Properties properties;
    Registers registers;
    Phys phys; ///< under the chip's lock
    std::atomic<std::size_t> lplists{0}, dma_buffers{0};
    std::atomic<bcmx_uport_create_callback_t> uport_create{nullptr};
    std::mutex chip_mutex;
    Stage stage = Stage::absent; ///< under the chip's lock

private:
    std::unique_ptr<Chip> chip_;
};

/// The one card. It is never destroyed: SDK calls may come until the very end of the process.
Card& card();

/// Locks the chip. What was left for the SDK's threads to do is noticed when it ends.
class ChipLock {
public:
    ChipLock() { card().chip_mutex.lock(); }
    ChipLock(const ChipLock&) = delete;
    ChipLock& operator=(const ChipLock&) = delete;
    ~ChipLock();

    Chip& operator*() const { return card().chip(); }
    Chip* operator->() const { return &card().chip(); }
};

} // namespace vexosim
