// The field group that the IP-protocol and L4-port trap filters share, and what all filters do.
#include <bcmx/field.h>

#include "core/bcm_sdk.h"
#include "core/result.h"
#include "flow/trap_filter.h"

const int32_t filter_group_no_udf = -1;

bool VexoBcmSdk::init_filter_group_no_udf()
{
    constexpr int priority = 0;
    bcm_field_qset_t qset;
    BCM_FIELD_QSET_INIT(qset);
    BCM_FIELD_QSET_ADD(qset, bcmFieldQualifyIpType);
    BCM_FIELD_QSET_ADD(qset, bcmFieldQualifyL4DstPort);
    BCM_FIELD_QSET_ADD(qset, bcmFieldQualifyIpProtocol);
    return vexolc::ok(bcmx_field_group_create_id(qset, priority, filter_group_no_udf));
}

bool vexolc::trap_to_cpu(int entry)
{
    return ok(bcmx_field_action_add(entry, bcmFieldActionTrapToCpu, 0, 0)) &&
           ok(bcmx_field_entry_install(entry));
}
