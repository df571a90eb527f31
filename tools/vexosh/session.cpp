#include "tools/vexosh/session.h"

#include <stdexcept>

#include "core/factory.h"
#include "core/line_card_init.h"
#include "pktio/event_records.h"
#include "platform/port_map.h"
#include "tools/vexosh/event_printers.h"
#include "tools/vexosh/frame_words.h"
#include "tools/vexosh/recording_sdk.h"
#include "vexosim/board.h"
#include "vexosim/clock.h"
#include "vexosim/ports.h"

namespace vexosh {
namespace {

constexpr std::size_t kPacketsKept = 4096;
constexpr int kListed = 2; // MAC entries of a table walk

// Link callbacks get no cookie, so there is one session a process.
Session* the_session = nullptr;

int user_port_of(const Usp& port)
{
    return static_cast<int>(port.port()) - 1;
}

} // namespace

Session::Session()
{
    vexosim::board::enable();
    vexosdk_create_sdk_instance();
    if (!vexosdk_get_sdk_instance(sdk_)) {
        throw std::runtime_error("the driver has no instance");
    }
    recording_sdk_ = std::make_unique<RecordingSdk>(*sdk_, record_);
    int slot = 0;
    vexo_init_line_card(slot);
    fresh_ = read_configuration(*sdk_);
    vexosim::connect_wires();
    the_session = this;
    set_event_sink([this](const Event& event) { tell(event, true); });
    sdk_->register_rx_packet_callback(on_packet, this);
    sdk_->register_link_change_callback(on_link, nullptr);
    sdk_->register_mac_update_callback(on_mac, nullptr);
    if (!vexosim::manual_clock()) {
        manager_ = std::thread([this] { manage(); });
    }
}

Session::~Session()
{
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    if (manager_.joinable()) {
        manager_.join();
    }
    vexosim::stop_threads();
    vexosdk_delete_sdk_instance(sdk_);
    set_event_sink({});
    the_session = nullptr;
}

Session::Driver Session::driver()
{
    return {driver_mutex_, recording_sdk_.get()};
}

void Session::on_packet(RxPacket* packet, void* cookie)
{
    Session& session = *static_cast<Session*>(cookie);
    CpuPacket kept{user_port_of(packet->port()), packet->vlan(), {}};
    packet->get_pkt_data(kept.frame);
    if (session.listening_to_all_ > 0) {
        session.tell(event_of(packet), false);
    }
    const std::lock_guard lock(session.mutex_);
    ++session.packet_count_;
    session.packets_.push_back(std::move(kept));
    if (session.packets_.size() > kPacketsKept) {
        session.packets_.pop_front();
    }
}

void Session::on_link(LinkStatus* status, Usp* port)
{
    Session& session = *the_session;
    if (session.listening_to_all_ > 0) {
        session.tell(event_of(status, port), false);
    }
    {
        const std::lock_guard lock(session.mutex_);
        session.link_events_.push_back({user_port_of(*port), status->status() == 1});
    }
    session.wake_.notify_all();
}

void Session::on_mac(L2Addr* addr, int type, void*)
{
    if (type == kListed || the_session->listening_to_all_ > 0) {
        the_session->tell(event_of(addr, type), type == kListed);
    }
}

void Session::walk_mac_table()
{
    driver()->traverse_mac_table(nullptr);
}

/// One more than are kept tells that some are missing.
void Session::keep_field_command(const std::string& command)
{
    if (field_commands_.size() <= kMostFieldCommands) {
        field_commands_.push_back(command);
    }
}

void Session::manage()
{
    std::unique_lock lock(mutex_);
    while (!stopping_) {
        if (link_events_.empty()) {
            wake_.wait(lock);
            continue;
        }
        const LinkEvent event = link_events_.front();
        link_events_.pop_front();
        lock.unlock();
        handle(event);
        lock.lock();
    }
}

void Session::handle(const LinkEvent& event)
{
    Mp port(0, 0);
    if (!managing_links_ || !map_user_port_to_mp(event.user_port, port)) {
        return;
    }
    auto sdk = driver();
    // A member joins its LAG first: until then it must not forward on its own.
    if (!lags_.link_changed(*sdk, port, event.up)) {
        tell({"port " + text(port) + ": the driver refused to change the members of its lag",
              {{"event", "refused"}, {"port", text(port)}}},
             true);
    }
    if (event.up && auto_forwarding_) {
        sdk->set_port_stp_state(port, STP_FORWARDING);
    }
}

void Session::settle()
{
    if (!vexosim::manual_clock()) {
        return;
    }
    vexosim::drain();
    for (;;) {
        std::deque<LinkEvent> events;
        {
            const std::lock_guard lock(mutex_);
            events.swap(link_events_);
        }
        if (events.empty()) {
            return;
        }
        for (const LinkEvent& event : events) {
            handle(event);
        }
        vexosim::drain();
    }
}

int Session::follow(Follower follower)
{
    const std::lock_guard lock(listeners_mutex_);
    listeners_[++last_listener_].follower = std::move(follower);
    return last_listener_;
}

void Session::unfollow(int id)
{
    follow_all(id, false);
    const std::lock_guard lock(listeners_mutex_);
    listeners_.erase(id);
}

void Session::follow_all(int id, bool all)
{
    const std::lock_guard lock(listeners_mutex_);
    bool& before = listeners_.at(id).all;
    listening_to_all_ += static_cast<int>(all) - static_cast<int>(before);
    before = all;
}

void Session::tell(const Event& event, bool everybody)
{
    const std::lock_guard lock(listeners_mutex_);
    for (const auto& [id, listener] : listeners_) {
        if (everybody || listener.all) {
            listener.follower(event);
        }
    }
}

std::vector<CpuPacket> Session::cpu_packets() const
{
    const std::lock_guard lock(mutex_);
    return {packets_.begin(), packets_.end()};
}

std::size_t Session::cpu_packet_count() const
{
    const std::lock_guard lock(mutex_);
    return packet_count_;
}

void Session::clear_cpu_packets()
{
    const std::lock_guard lock(mutex_);
    packets_.clear();
    packet_count_ = 0;
}

} // namespace vexosh
