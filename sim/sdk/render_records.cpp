#include <algorithm>

#include "sim/sdk/render.h"

namespace vexosim {

namespace {

/// Writes `{name=value, ...}`.
class Record {
public:
    explicit Record(std::string& text) : text_(text) { text_ += '{'; }
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;
    ~Record() { text_ += '}'; }

    template <class T>
    Record& field(const char* name, const T& value)
    {
        if (text_.back() != '{')
            text_ += ", ";
        text_ += name;
        text_ += '=';
        render_value(text_, value);
        return *this;
    }
    template <class T>
    Record& field_if(bool present, const char* name, const T& value)
    {
        return present ? field(name, value) : *this;
    }

private:
    std::string& text_;
};

/// Whether there is a record; writes `null` when there is none.
bool present(std::string& text, const void* record)
{
    if (record == nullptr)
        text += "null";
    return record != nullptr;
}

struct BitList {
    const std::uint32_t* words;
    unsigned bits;
};

void render(std::string& text, BitList list)
{
    const char* separator = "";
    text += '[';
    for (unsigned bit = 0; bit < list.bits; ++bit) {
        if ((list.words[bit / 32] >> (bit % 32) & 1u) == 0)
            continue;
        text += separator + std::to_string(bit);
        separator = ", ";
    }
    text += ']';
}

} // namespace

void render(std::string& text, const linux_bde_bus_t* bus)
{
    if (present(text, bus))
        Record(text)
            .field("be_pio", bus->be_pio)
            .field("be_packet", bus->be_packet)
            .field("be_other", bus->be_other);
}

void render(std::string& text, const bcm_rx_reasons_t& reasons)
{
    text += "reasons:";
    render(text, BitList{reasons.pbits, 64});
}

void render(std::string& text, const bcm_rx_chan_cfg_t& channel)
{
    Record(text)
        .field("chains", channel.chains)
        .field("rate_pps", channel.rate_pps)
        .field("flags", Flags{channel.flags})
        .field("cos_bmp", Flags{channel.cos_bmp});
}

void render(std::string& text, const bcm_rx_cfg_t* config)
{
    if (!present(text, config))
        return;
    Record record(text);
    record.field("pkt_size", config->pkt_size)
        .field("pkts_per_chain", config->pkts_per_chain)
        .field("global_pps", config->global_pps)
        .field("max_burst", config->max_burst);
    for (const bcm_rx_chan_cfg_t& channel : config->chan_cfg)
        record.field(("chan" + std::to_string(&channel - config->chan_cfg)).c_str(), channel);
    record.field("rx_alloc", Handler{config->rx_alloc})
        .field("rx_free", Handler{config->rx_free})
        .field("flags", Flags{config->flags});
}

void render(std::string& text, const bcm_pkt_t* packet)
{
    if (!present(text, packet))
        return;
    constexpr int kShown = 64; // enough for every header, and for whole minimal frames
    const bcm_pkt_blk_t* const block = packet->pkt_data;
    const int shown = block == nullptr ? 0 : std::clamp(block->len, 0, kShown);
    Record record(text);
    record.field("pkt_len", packet->pkt_len)
        .field("blk_count", packet->blk_count)
        .field("cos", packet->cos)
        .field("flags", Flags{packet->flags});
    if (block != nullptr)
        record.field("len", block->len)
            .field("data", Bytes{block->data, static_cast<std::size_t>(shown)});
}

void render(std::string& text, const bcmx_l2_addr_t* entry)
{
    if (!present(text, entry))
        return;
    const bool trunk = (entry->flags & BCM_L2_TRUNK_MEMBER) != 0;
    Record(text)
        .field("flags", Flags{entry->flags})
        .field("mac", Mac{entry->mac})
        .field("vid", entry->vid)
        .field_if(!trunk, "port", Lport{entry->lport})
        .field_if(trunk, "trunk", entry->tgid)
        .field_if(entry->rtag != 0, "rtag", entry->rtag)
        .field_if(entry->cos_dst != 0, "cos_dst", entry->cos_dst)
        .field_if(entry->cos_src != 0, "cos_src", entry->cos_src)
        .field_if(entry->l2mc_index != 0, "l2mc_index", entry->l2mc_index)
        .field_if(entry->auth != 0, "auth", entry->auth);
}

void render(std::string& text, const bcm_l2_learn_limit_t* limit)
{
    if (!present(text, limit))
        return;
    const std::uint32_t flags = limit->flags;
    Record(text)
        .field("flags", Flags{flags})
        .field_if((flags & BCM_L2_LEARN_LIMIT_VLAN) != 0, "vlan", limit->vlan)
        .field_if((flags & BCM_L2_LEARN_LIMIT_PORT) != 0, "port", Lport{limit->port})
        .field_if((flags & BCM_L2_LEARN_LIMIT_TRUNK) != 0, "trunk", limit->trunk)
        .field("limit", limit->limit);
}

void render(std::string& text, const bcm_vlan_ip_t* subnet)
{
    if (!present(text, subnet))
        return;
    const bool ip6 = (subnet->flags & BCM_VLAN_SUBNET_IP6) != 0;
    Record(text)
        .field("flags", Flags{subnet->flags})
        .field_if(!ip6, "ip", Ip4{subnet->ip4})
        .field_if(!ip6, "mask", Ip4{subnet->mask})
        .field_if(ip6, "ip6", Bytes{subnet->ip6, 16})
        .field_if(ip6, "prefix", subnet->prefix)
        .field("vid", subnet->vid)
        .field("prio", subnet->prio);
}

void render(std::string& text, const bcm_port_ability_t* ability)
{
    if (!present(text, ability))
        return;
    Record(text)
        .field("half", Flags{ability->speed_half_duplex})
        .field("full", Flags{ability->speed_full_duplex})
        .field("pause", Flags{ability->pause})
        .field("medium", Flags{ability->medium})
        .field("flags", Flags{ability->flags});
}

void render(std::string& text, const bcmx_trunk_add_info_t* trunk)
{
    if (!present(text, trunk))
        return;
    Record(text)
        .field("psc", trunk->psc)
        .field("ports", Ports{&trunk->ports})
        .field("dlf_port", Lport{trunk->dlf_port})
        .field("mc_port", Lport{trunk->mc_port})
        .field("ipmc_port", Lport{trunk->ipmc_port});
}

void render(std::string& text, const bcm_field_qset_t& set)
{
    text += "qset:";
    render(text, BitList{set.w, bcmFieldQualifyCount});
    if (std::any_of(std::begin(set.udf_map), std::end(set.udf_map),
                    [](std::uint32_t word) { return word != 0; })) {
        text += "+udf:";
        render(text, BitList{set.udf_map, BCM_FIELD_USER_NUM_UDFS});
    }
}

void render(std::string& text, const bcm_field_qset_t* set)
{
    if (present(text, set))
        render(text, *set);
}

void render(std::string& text, const bcm_field_udf_spec_t* udf)
{
    if (present(text, udf))
        Record(text).field("flags", Flags{udf->flags}).field("offset", udf->udf_offset);
}

} // namespace vexosim
