#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "core/sdk_base.h"
#include "tools/vexosh/call_record.h"
#include "tools/vexosh/configuration.h"
#include "tools/vexosh/event.h"
#include "tools/vexosh/lags.h"

namespace vexosh {

class RecordingSdk;

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
    Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

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
    Driver driver();

    /// Where driver calls are recorded; to be used with the driver held.
    CallRecord& record() { return record_; }

    /// The LAGs; to be used with the driver held.
    Lags& lags() { return lags_; }

    /// What the driver and the chip were like after bring-up.
    const Configuration& fresh() const { return fresh_; }

    /// Commands that changed flows and traps, from bring-up on: their numbers are history. Used by
    /// the one who has the turn.
    static constexpr std::size_t kMostFieldCommands = 100'000;
    void keep_field_command(const std::string& command);
    const Lines& field_commands() const { return field_commands_; }

    /// To be locked while a command runs: one at a time, of whichever shell.
    std::unique_lock<std::mutex> turn() { return {command_mutex_, std::defer_lock}; }

    /// Has the driver list the MAC table to its subscribers; the followers are told.
    void walk_mac_table();

    /// Lets everything that is due happen: on the manual clock all pending events, including what
    /// the manager does about them.
    void settle();

    /// Whether ports that come up are put into forwarding; on at first.
    void set_auto_forwarding(bool on) { auto_forwarding_ = on; }
    bool auto_forwarding() const { return auto_forwarding_; }
    /// Whether anything is done about links; not while recorded calls do it.
    void manage_links(bool on) { managing_links_ = on; }

    /// Somebody who is told what happens, on the thread on which it does.
    using Follower = std::function<void(const Event&)>;
    /// @return what unfollow() and follow_all() are told.
    int follow(Follower follower);
    /// When it returns, the follower is told nothing any more.
    void unfollow(int id);
    /// Whether a follower is told of packets for the CPU, link and MAC table changes, too, and not
    /// only of what was asked for by a command or cannot wait; off at first.
    void follow_all(int id, bool all);

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
    struct Listener {
        Follower follower;
        bool all = false;
    };
    void tell(const Event& event, bool everybody);
    void manage();
    void handle(const LinkEvent& event);

    VexoSdkBase* sdk_ = nullptr;
    CallRecord record_; // of the driver's mutex
    std::unique_ptr<RecordingSdk> recording_sdk_;
    std::mutex command_mutex_;
    std::recursive_mutex driver_mutex_;
    Lags lags_; // of the driver's mutex, too
    Configuration fresh_;
    Lines field_commands_; // of the command mutex

    mutable std::mutex mutex_; // of everything below
    std::condition_variable wake_;
    std::deque<LinkEvent> link_events_;
    std::deque<CpuPacket> packets_;
    std::size_t packet_count_ = 0;
    std::atomic<bool> auto_forwarding_{true}, managing_links_{true};
    bool stopping_ = false;
    std::thread manager_; // not with the manual clock

    std::mutex listeners_mutex_; // of what follows
    std::map<int, Listener> listeners_;
    int last_listener_ = 0;
    std::atomic<int> listening_to_all_{0};
};

} // namespace vexosh
