// The MAC table: walks and notification.
#include <bcm/l2.h>
#include <bcmx/l2.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

bcm_l2_addr_t unit_entry(const MacEntry& entry)
{
    const bcmx_l2_addr_t wide = system_entry(entry);
    bcm_l2_addr_t addr{};
    addr.flags = wide.flags;
    store_mac(entry.mac(), addr.mac);
    addr.vid = wide.vid;
    addr.port = entry.on_trunk() ? 0 : entry.port;
    addr.tgid = wide.tgid;
    addr.rtag = wide.rtag;
    addr.cos_dst = wide.cos_dst;
    addr.cos_src = wide.cos_src;
    addr.l2mc_index = wide.l2mc_index;
    return addr;
}

/// The handler may call the SDK, so it is called without the chip's lock.
int walk(int unit, bcm_l2_traverse_cb handler, void* user_data)
{
    std::vector<MacEntry> entries;
    {
        const ChipLock chip;
        if (const int rc = check_unit(unit, Stage::initialised); rc != BCM_E_NONE)
            return rc;
        if (handler == nullptr)
            return BCM_E_PARAM;
        entries = chip->macs.snapshot();
    }
    for (const MacEntry& entry : entries) {
        bcm_l2_addr_t addr = unit_entry(entry);
        if (const int rc = handler(unit, &addr, user_data); rc < 0)
            return rc;
    }
    return BCM_E_NONE;
}

} // namespace

extern "C" int bcm_l2_traverse(int unit, bcm_l2_traverse_cb trav_fn, void* user_data)
{
    return gated("bcm_l2_traverse", CallClass::chip, args(unit, Handler{trav_fn}, user_data),
                 [&] { return walk(unit, trav_fn, user_data); });
}

extern "C" int bcmx_l2_notify_register(bcmx_l2_notify_f handler, void* user_data)
{
    return sdk_call("bcmx_l2_notify_register", args(Handler{handler}, user_data), [&](Chip&) {
        return card().background.l2_notifier.add_handler(handler, user_data);
    });
}

extern "C" int bcmx_l2_notify_start(void)
{
    return sdk_call("bcmx_l2_notify_start", args(), [](Chip&) {
        card().background.l2_notifier.start();
        return BCM_E_NONE;
    });
}
