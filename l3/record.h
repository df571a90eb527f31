#pragma once

#include <bcmx/l3.h>

#include "core/result.h"

/// What the SDK's host and route records have in common.
namespace vexolc {

inline void set_flag(uint32_t& flags, uint32_t flag, bool set)
{
    flags = set ? flags | flag : flags & ~flag;
}

/// Where packets leave: a port, or the trunk whose id is the number in an `Mp`. Mapped when made,
/// which is before the SDK is asked anything.
class Egress {
public:
    Egress(const Mp& port, bool is_trunk)
        : is_trunk_(is_trunk), trunk_(static_cast<bcm_trunk_t>(port.port())),
          valid_(is_trunk || map_mp_to_lport(port, lport_))
    {
    }

    /// False for a port that does not map.
    bool valid() const { return valid_; }

    /// Fills the fields of a record; of port and trunk, the other is left alone.
    void store(uint32_t& flags, bcmx_lport_t& lport, bcm_trunk_t& trunk) const
    {
        set_flag(flags, BCM_L3_TGID, is_trunk_);
        if (is_trunk_)
            trunk = trunk_;
        else
            lport = lport_;
    }

private:
    bool is_trunk_;
    bcm_trunk_t trunk_;
    bcmx_lport_t lport_ = BCMX_LPORT_INVALID;
    bool valid_;
};

} // namespace vexolc
