#include "sim/card/l2_tasks.h"

#include <algorithm>

#include "sim/card/card.h"
#include "sim/chip/chip.h"

namespace vexosim {

void L2Ageing::start()
{
    running_ = true;
    last_us_ = card().clock.now_us();
}

std::uint64_t L2Ageing::due_us()
{
    return running_ ? last_us_ + kPeriodUs : kNever;
}

void L2Ageing::run()
{
    const ChipLock chip;
    last_us_ = chip->now_us;
    chip->macs.age(chip->now_us);
}

int L2Notifier::add_handler(bcmx_l2_notify_f handler, void* user_data)
{
    if (handler == nullptr)
        return BCM_E_PARAM;
    const Handler added(handler, user_data);
    if (std::find(handlers_.begin(), handlers_.end(), added) != handlers_.end())
        return BCM_E_EXISTS;
    handlers_.push_back(added);
    return BCM_E_NONE;
}

void L2Notifier::start()
{
    running_ = true;
    follow_table();
}

void L2Notifier::follow_table()
{
    if (running_)
        card().chip().macs.start_events();
}

std::uint64_t L2Notifier::due_us()
{
    return card().chip().macs.has_events() ? 0 : kNever;
}

void L2Notifier::run()
{
    std::vector<Handler> handlers;
    {
        const ChipLock chip;
        chip->macs.take_events(events_);
        handlers = handlers_;
    }
    for (const MacEvent& event : events_) {
        bcmx_l2_addr_t entry = system_entry(event.entry);
        for (const auto& [handler, user_data] : handlers)
            handler(&entry, event.inserted ? 1 : 0, user_data);
    }
    events_.clear();
}

bcmx_l2_addr_t system_entry(const MacEntry& entry)
{
    bcmx_l2_addr_t addr{};
    addr.flags = entry.flags;
    store_mac(entry.mac(), addr.mac);
    addr.vid = static_cast<bcm_vlan_t>(entry.vid());
    addr.lport = entry.on_trunk() ? BCMX_LPORT_INVALID : card().ports.lport(entry.port);
    addr.tgid = entry.on_trunk() ? entry.trunk : 0;
    addr.rtag = entry.rtag;
    addr.cos_dst = entry.cos_dst;
    addr.cos_src = entry.cos_src;
    addr.l2mc_index = entry.l2mc_index;
    addr.auth = entry.auth;
    return addr;
}

} // namespace vexosim
