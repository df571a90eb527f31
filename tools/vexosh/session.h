#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <iosfwd>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "core/sdk_base.h"
#include "tools/vexosh/lags.h"

namespace vexosh {

/// A packet that reached the CPU's subscriber.
struct CpuPacket {
    int user_port = 0;
    unsigned vid = 0;
    std::vector<std::uint8_t> frame;
};

/// One card with the driver on it, and what a manager does for it: bring-up through the driver's
/// entry points, callbacks, ports that come up put into forwarding, LAGs kept in step with links,
/// and one driver call at a time.
class Session {
public:
    /// Brings the card up. Throws std::runtime_error when the driver gives no instance.
    explicit Session(std::ostream& out);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    std::ostream& out() { return out_; }

    /// The driver, for one caller at a time: the reference lives as long as the lock.
    class Driver {
    public:
        VexoSdkBase* operator->() { return sdk_; }
        VexoSdkBase& operator*() { return *sdk_; }

    private:
        friend class Session;
        Driver(std::recursive_mutex& mutex, VexoSdkBase* sdk) : lock_(mutex), sdk_(sdk) {}
        std::unique_lock<std::recursive_mutex> lock_;
        VexoSdkBase* sdk_;
    };
    Driver driver() { return Driver(driver_mutex_, sdk_); }

    /// The LAGs; to be used with the driver held.
    Lags& lags() { return lags_; }

    /// Prints the MAC table as the driver lists it to its subscribers.
    void walk_mac_table();

    /// Lets everything that is due happen: on the manual clock all pending events, including what
    /// the manager does about them.
    void settle();

    /// Whether ports that come up are put into forwarding; on at first.
    void set_auto_forwarding(bool on) { auto_forwarding_ = on; }
    /// Whether events are printed as they come; off at first.
    void set_print_events(bool on);

    /// Packets for the CPU since the start or the last clear, the last few thousand of them.
    std::vector<CpuPacket> cpu_packets() const;
    std::size_t cpu_packet_count() const;
    void clear_cpu_packets();

private:
    struct LinkEvent {
        int user_port;
        bool up;
    };
    static void on_packet(class RxPacket* packet, void* cookie);
    static void on_link(class LinkStatus* status, class Usp* port);
    static void on_mac(class L2Addr* addr, int type, void* data);
    void print(const std::string& line);
    void manage();
    void handle(const LinkEvent& event);

    std::ostream& out_;
    VexoSdkBase* sdk_ = nullptr;
    std::recursive_mutex driver_mutex_;
    Lags lags_; // of the driver's mutex, too

    mutable std::mutex mutex_; // of everything below
    std::condition_variable wake_;
    std::deque<LinkEvent> link_events_;
    std::deque<CpuPacket> packets_;
    std::size_t packet_count_ = 0;
    std::atomic<bool> auto_forwarding_{true};
    std::atomic<bool> print_events_{false};
    bool stopping_ = false;
    std::thread manager_; // not with the manual clock
};

} // namespace vexosh
