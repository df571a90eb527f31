#pragma once

#include <string>
#include <utility>
#include <vector>

#include "flow/field_group.h"
#include "flow/flow_entry.h"
#include "flow/udf_pool.h"
#include "tests/kit/kit.h"

/// A flow that matches what comes in at user port 5 to 02:00:00:00:00:0b, as far as flags say.
inline of_flow_mp_s flow_of(unsigned flags)
{
    of_flow_mp_s flow = {};
    flow.port = mp(5);
    flow.dst_mac[0] = 2;
    flow.dst_mac[5] = 0xb;
    flow.flags = flags;
    return flow;
}

/// A match of every bit of some bytes.
struct Udf {
    Udf(uint32_t offset, const std::vector<uint8_t>& data)
        : Udf(offset, data, every_bit(data.size()))
    {
    }
    Udf(uint32_t offset, std::vector<uint8_t> data, std::vector<uint8_t> mask)
        : data_(std::move(data)),
          mask_(std::move(mask)), match_{offset, static_cast<uint32_t>(data_.size()), data_.data(),
                                         mask_.data()}
    {
    }
    Udf(const Udf&) = delete;
    Udf& operator=(const Udf&) = delete;

    operator const of_flow_qualify_udf_s&() const { return match_; } // NOLINT: as the driver takes

private:
    static std::vector<uint8_t> every_bit(std::size_t length)
    {
        return std::vector<uint8_t>(length, 0xff);
    }

    std::vector<uint8_t> data_;
    std::vector<uint8_t> mask_;
    of_flow_qualify_udf_s match_;
};

inline constexpr of_flow_qualify_udf_s no_udf = {};

/// A card that is up, with the call log on and empty, and without flows.
struct FlowCard : QuietCardTest {
    ~FlowCard() override { EXPECT_EQ(live_lplists(), 0u); }

    /// Adds a flow, and keeps what that printed in `text`.
    bool add_flow(const of_flow_mp_s& flow, const of_flow_qualify_udf_s& udf = no_udf)
    {
        bool done = false;
        text = printed([&] { done = sdk().add_of_flow(flow, flow_id, udf); });
        return done;
    }

    /// "flow:entry" of each flow.
    static std::string flows()
    {
        std::string list;
        for (const auto& [flow, entry] : fid_fe_map)
            list += std::to_string(flow) + ":" + std::to_string(entry) + " ";
        return list;
    }

    static void fail(const std::string& call, int code = -1, unsigned nth = 1)
    {
        clear_faults();
        inject({.call = call, .nth = nth, .code = code});
    }

    /// The UDF ids in use, 0 left out.
    static std::vector<unsigned> udfs_in_use()
    {
        std::vector<unsigned> ids;
        for (unsigned id = 1; id < vexo_udf_count; ++id) {
            if (vexo_udf_usage[id] != 0)
                ids.push_back(id);
        }
        return ids;
    }

    /// "id/flags/members[ udf@offset...]" of each group, in order.
    static std::string groups()
    {
        std::string text;
        for (const FieldGroupNode& group : fg_list) {
            text += std::to_string(group.id()) + "/" + std::to_string(group.flags()) + "/" +
                    std::to_string(group.member_count());
            for (const auto& [id, offset] : group.udf_ids())
                text += " " + std::to_string(id) + "@" + std::to_string(offset);
            text += "\n";
        }
        return text;
    }

    unsigned flow_id = 77; ///< of the last flow
    std::string text;      ///< what the last operation printed
};
