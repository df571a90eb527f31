#include "sim/chip/cpu_queues.h"

#include <bcm/error.h>

namespace vexosim {

void CpuMapping::digest(Digest& d) const
{
    d.add(used);
    d.add(reasons);
    d.add(reasons_mask);
    d.add(priority);
    d.add(priority_mask);
    d.add(packet_type);
    d.add(packet_type_mask);
    d.add(queue);
}

CpuQueues::CpuQueues()
{
    queue_channel_.fill(1);
    channels_[1].chains = 4;
}

int CpuQueues::set_mapping(int index, const CpuMapping& mapping)
{
    if (index < 0 || index >= kMappings || mapping.queue < 0 || mapping.queue >= kCpuQueues)
        return BCM_E_PARAM;
    map_[static_cast<std::size_t>(index)] = mapping;
    map_[static_cast<std::size_t>(index)].used = true;
    return BCM_E_NONE;
}

int CpuQueues::set_queue_channel(int queue, int channel)
{
    if (queue < 0 || queue >= kCpuQueues || channel < 0 || channel >= kCpuChannels)
        return BCM_E_PARAM;
    queue_channel_[static_cast<std::size_t>(queue)] = channel;
    return BCM_E_NONE;
}

int CpuQueues::set_cos_rate(int cos, int pps)
{
    if (cos < 0 || cos >= kCpuQueues || pps < 0)
        return BCM_E_PARAM;
    cos_rate_[static_cast<std::size_t>(cos)] = pps;
    return BCM_E_NONE;
}

int CpuQueues::set_channel(int channel, const CpuChannel& settings, std::uint32_t cos_bitmap)
{
    if (channel < 0 || channel >= kCpuChannels || settings.chains < 0 || settings.rate_pps < 0 ||
        cos_bitmap >> kCpuQueues != 0)
        return BCM_E_PARAM;
    channels_[static_cast<std::size_t>(channel)] = settings;
    for (std::size_t queue = 0; queue < kCpuQueues; ++queue) {
        if ((cos_bitmap >> queue & 1) != 0)
            queue_channel_[queue] = channel;
    }
    return BCM_E_NONE;
}

int CpuQueues::set_global_rate(int pps, int burst)
{
    if (pps < 0 || burst < 0)
        return BCM_E_PARAM;
    global_rate_ = pps;
    burst_ = burst;
    return BCM_E_NONE;
}

/// The chip knows one packet type, 0.
int CpuQueues::match(ReasonSet reasons, int priority) const
{
    for (int i = 0; i < kMappings; ++i) {
        const CpuMapping& m = mapping(i);
        if (m.used && ((m.reasons ^ reasons) & m.reasons_mask) == 0 &&
            ((m.priority ^ priority) & m.priority_mask) == 0 &&
            (m.packet_type & m.packet_type_mask) == 0)
            return i;
    }
    return -1;
}

int CpuQueues::queue_of(ReasonSet reasons, int priority, int default_queue) const
{
    int entry = match(reasons, priority);
    return entry < 0 ? default_queue : mapping(entry).queue;
}

void CpuQueues::digest(Digest& d) const
{
    d.add(map_);
    d.add(queue_channel_);
    d.add(cos_rate_);
    for (const CpuChannel& channel : channels_) {
        d.add(channel.chains);
        d.add(channel.rate_pps);
    }
    d.add(global_rate_);
    d.add(burst_);
}

} // namespace vexosim
