// The instance's life and the operations that belong to no family. The constructor brings the whole
// card up; the destructor leaves the chip as it is.
#include "core/bcm_sdk.h"

#include "platform/port_map.h"

VexoBcmSdk::VexoBcmSdk() : sdk_name("VexoBcmSdk"), port_count(0)
{
    port_count = vexo_port_rows;
    vexo_max_physical_port_per_slot = 53;
    initialize(); // a card that does not come up still gets its instance
}

VexoBcmSdk::~VexoBcmSdk() = default;

bool VexoBcmSdk::get_line_card_usp(Usp& usp)
{
    usp = Usp(static_cast<unsigned>(vexo_bcm_unit) + 1, static_cast<unsigned>(self_slot_id),
              static_cast<unsigned>(port_count) - 1);
    return true;
}

bool VexoBcmSdk::free_call(int)
{
    return true;
}
