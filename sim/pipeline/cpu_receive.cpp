#include "sim/pipeline/cpu_receive.h"

#include <algorithm>

#include <bcm/error.h>

#include "sim/pipeline/rewrite.h"

namespace vexosim {

void CpuReceive::choose_queue(const Chip& chip, Packet& p) const
{
    if (p.cpu == 0)
        return;
    if (p.ethertype == kArpType)
        p.cpu |= reason_bit(bcmRxReasonArp);
    int by_priority = chip.ports[p.in_port].cos[static_cast<std::size_t>(p.priority)];
    p.cpu_queue = chip.cpu.queue_of(p.cpu, p.priority, by_priority);
    p.cpu_full = queues_[static_cast<std::size_t>(p.cpu_queue)].count == kQueueDepth;
    if (p.cpu_full && p.drop == DropReason::kNone && p.out.empty())
        p.drop = DropReason::cpu_queue_full;
}

const CpuFrame& CpuReceive::enqueue(const Packet& p)
{
    Queue& q = queues_[static_cast<std::size_t>(p.cpu_queue)];
    if (q.ring.empty())
        q.ring.resize(kQueueDepth);
    CpuFrame& frame = q.ring[(q.first + q.count++) % kQueueDepth];
    frame.data.resize(tagged_bytes(p));
    write_tagged(p, frame.data.data());
    frame.reasons = p.cpu;
    frame.reason = p.cpu_reason;
    frame.port = p.in_port;
    frame.vid = p.vid;
    frame.priority = p.priority;
    frame.queue = p.cpu_queue;
    frame.came_untagged = !p.tagged;
    return frame;
}

std::size_t CpuReceive::waiting() const
{
    std::size_t n = 0;
    for (const Queue& queue : queues_)
        n += queue.count;
    return n;
}

bool CpuReceive::served(std::size_t queue, const CpuQueues& queues) const
{
    return queues_[queue].count > 0 &&
           queues.channel(queues.channel_of(static_cast<int>(queue))).chains > 0;
}

std::uint64_t CpuReceive::wait_of(int queue, const CpuQueues& queues, std::uint64_t now_us)
{
    int channel = queues.channel_of(queue), burst = queues.burst();
    TokenBucket& by_cos = cos_buckets_[static_cast<std::size_t>(queue)];
    TokenBucket& by_channel = channel_buckets_[static_cast<std::size_t>(channel)];
    return std::max({by_cos.wait_us(queues.cos_rate(queue), burst, now_us),
                     by_channel.wait_us(queues.channel(channel).rate_pps, burst, now_us),
                     global_bucket_.wait_us(queues.global_rate(), burst, now_us)});
}

void CpuReceive::charge(int queue, const CpuQueues& queues)
{
    int channel = queues.channel_of(queue);
    cos_buckets_[static_cast<std::size_t>(queue)].take(queues.cos_rate(queue));
    channel_buckets_[static_cast<std::size_t>(channel)].take(queues.channel(channel).rate_pps);
    global_bucket_.take(queues.global_rate());
}

bool CpuReceive::take(const CpuQueues& queues, std::uint64_t now_us, CpuFrame& frame)
{
    if (!running_)
        return false;
    for (std::size_t i = kCpuQueues; i-- > 0;) {
        if (!served(i, queues) || wait_of(static_cast<int>(i), queues, now_us) != 0)
            continue;
        Queue& q = queues_[i];
        std::swap(frame, q.ring[q.first]);
        q.first = (q.first + 1) % kQueueDepth;
        --q.count;
        charge(static_cast<int>(i), queues);
        return true;
    }
    return false;
}

std::optional<std::uint64_t> CpuReceive::wait_us(const CpuQueues& queues, std::uint64_t now_us)
{
    std::optional<std::uint64_t> shortest;
    for (std::size_t i = 0; running_ && i < kCpuQueues; ++i) {
        if (!served(i, queues))
            continue;
        std::uint64_t wait = wait_of(static_cast<int>(i), queues, now_us);
        shortest = std::min(shortest.value_or(wait), wait);
    }
    return shortest;
}

} // namespace vexosim
