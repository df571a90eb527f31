// The SDK's receive calls, and handing frames to the handlers.
#include <algorithm>

#include <bcm/error.h>

#include "sim/pipeline/cpu_receive.h"

namespace vexosim {

namespace {

constexpr int kDefaultChannel = 1;

bcm_rx_cfg_t default_config()
{
    bcm_rx_cfg_t config{};
    config.pkt_size = 9216;
    config.pkts_per_chain = 4;
    config.chan_cfg[kDefaultChannel].chains = 4;
    config.chan_cfg[kDefaultChannel].cos_bmp = 0xff;
    return config;
}

bool is_valid(const bcm_rx_cfg_t& config)
{
    return config.pkt_size > 0 && config.pkts_per_chain > 0 && config.global_pps >= 0 &&
           config.max_burst >= 0 && std::ranges::all_of(config.chan_cfg, [](const auto& c) {
               return c.chains >= 0 && c.rate_pps >= 0 && c.cos_bmp >> kCpuQueues == 0;
           });
}

bcm_pkt_t describe(CpuFrame& frame, bcm_pkt_blk_t& block)
{
    bcm_pkt_t pkt{};
    block.data = frame.data.data();
    block.len = static_cast<int>(frame.data.size());
    pkt.pkt_data = &block;
    pkt.blk_count = 1;
    pkt.cos = static_cast<std::uint8_t>(frame.queue);
    pkt.prio_int = static_cast<std::uint8_t>(frame.priority);
    pkt.vlan = static_cast<bcm_vlan_t>(frame.vid);
    pkt.rx_port = static_cast<std::uint8_t>(frame.port);
    pkt.rx_untagged = frame.came_untagged ? 1 : 0;
    pkt.pkt_len = pkt.tot_len = static_cast<std::uint16_t>(frame.data.size());
    pkt.rx_reason = static_cast<std::uint32_t>(frame.reason);
    return pkt;
}

} // namespace

int CpuReceive::init(CpuQueues& queues)
{
    for (Queue& queue : queues_)
        queue = Queue{};
    cos_buckets_ = {};
    channel_buckets_ = {};
    global_bucket_ = {};
    queues.clear_cos_rates();
    handlers_ = std::make_shared<std::vector<Handler>>();
    config_ = default_config();
    initialised_ = true;
    return BCM_E_NONE;
}

int CpuReceive::add_handler(const char* name, bcm_rx_cb_f handler, std::uint8_t priority,
                            void* cookie, std::uint32_t flags)
{
    if (!initialised_)
        return BCM_E_INIT;
    if (handler == nullptr)
        return BCM_E_PARAM;
    auto is_same = [&](const Handler& h) {
        return h.function == handler && h.cookie == cookie && h.priority == priority;
    };
    if (std::ranges::any_of(*handlers_, is_same))
        return BCM_E_EXISTS;
    auto changed = std::make_shared<std::vector<Handler>>(*handlers_);
    auto place =
        std::ranges::find_if(*changed, [&](const Handler& h) { return h.priority < priority; });
    changed->insert(place, {name == nullptr ? "" : name, handler, cookie, flags, priority});
    handlers_ = changed;
    return BCM_E_NONE;
}

int CpuReceive::start(CpuQueues& queues, const bcm_rx_cfg_t* config)
{
    if (running_)
        return BCM_E_BUSY;
    bcm_rx_cfg_t wanted = config != nullptr ? *config : default_config();
    if (!is_valid(wanted))
        return BCM_E_PARAM;
    queues.set_global_rate(wanted.global_pps, wanted.max_burst);
    for (int i = 0; i < kCpuChannels; ++i) {
        const bcm_rx_chan_cfg_t& channel = wanted.chan_cfg[i];
        queues.set_channel(i, {channel.chains, channel.rate_pps}, channel.cos_bmp);
    }
    config_ = wanted;
    running_ = true;
    return BCM_E_NONE;
}

int CpuReceive::stop(bcm_rx_cfg_t* config)
{
    if (config != nullptr)
        *config = config_;
    running_ = false;
    return BCM_E_NONE;
}

/// A handler that keeps the buffer (BCM_RX_HANDLED_OWNED) gets no more of it than the others.
void CpuReceive::deliver(const std::vector<Handler>& handlers, CpuFrame& frame)
{
    bcm_pkt_blk_t block{};
    bcm_pkt_t pkt = describe(frame, block);
    for (const Handler& handler : handlers) {
        if ((handler.flags >> frame.queue & 1) == 0)
            continue;
        if (handler.function(0, &pkt, handler.cookie) != BCM_RX_NOT_HANDLED)
            return;
    }
}

} // namespace vexosim
