// Trap filters for ARP: two field entries each, because the target address lies elsewhere in frames
// with a tag. What was made before a failure deliberately stays.
#include <bcmx/field.h>

#include <cstdio>

#include "core/bcm_sdk.h"
#include "core/result.h"
#include "flow/trap_filter.h"

using namespace vexolc;

using Filters = std::map<uint32_t, int32_t>;

Filters arp_fps;
Filters arp_fps_one_vlan;
int32_t arp_group = -1;
int32_t arp_group_one_vlan = -1;
int32_t arp_udf_id = -1;
int32_t arp_udf_id_one_vlan = -1;

namespace {

constexpr uint32_t target_word = 10;          ///< frame bytes 38 to 41
constexpr uint32_t target_word_one_vlan = 11; ///< frame bytes 42 to 45

bool make_udf(uint32_t flags, uint32_t word, int id, int32_t& udf_id)
{
    bcm_field_udf_spec_t spec;
    bcm_field_udf_spec_t_init(&spec);
    if (!ok(bcmx_field_udf_spec_set(&spec, flags, word)))
        return false;
    udf_id = id; // deliberately first: a UDF that cannot be made is not tried again
    return ok(bcmx_field_udf_create_id(&spec, id));
}

bool make_udfs()
{
    constexpr uint32_t one_tag = BCM_FIELD_USER_L3_ALL | BCM_FIELD_USER_VLAN_ONE_TAG;
    return make_udf(BCM_FIELD_USER_L3_ALL, target_word, 0, arp_udf_id) &&
           make_udf(one_tag, target_word_one_vlan, arp_udf_id + 1, arp_udf_id_one_vlan);
}

bool make_group(int udf_id, int32_t& group)
{
    constexpr int priority = 0;
    bcm_field_qset_t qset;
    BCM_FIELD_QSET_INIT(qset);
    BCM_FIELD_QSET_ADD(qset, bcmFieldQualifyIpType);
    return ok(bcmx_field_qset_add_udf(&qset, udf_id)) &&
           ok(bcmx_field_group_create(qset, priority, &group));
}

bool make_shared()
{
    return (arp_udf_id != -1 || make_udfs()) &&
           (arp_group != -1 || (make_group(arp_udf_id, arp_group) &&
                                make_group(arp_udf_id_one_vlan, arp_group_one_vlan)));
}

struct Word {
    explicit Word(uint32_t value)
    {
        for (int i = 0; i < 4; ++i)
            bytes[i] = static_cast<uint8_t>(value >> (24 - 8 * i));
    }
    uint8_t bytes[4];
};

/// A new entry for target addresses.
bool add_entry(int group, int udf_id, uint32_t ip, uint32_t mask, int& entry)
{
    return ok(bcmx_field_entry_create(group, &entry)) &&
           ok(bcmx_field_qualify_UserDefined(entry, udf_id, Word(ip & mask).bytes,
                                             Word(mask).bytes)) &&
           ok(bcmx_field_qualify_IpType(entry, BCM_FIELD_IP_TYPE_ARP)) && trap_to_cpu(entry);
}

bool succeeds(int rc, const char* otherwise)
{
    if (ok(rc, BCM_E_NOT_FOUND))
        return true;
    std::puts(otherwise);
    return false;
}

void delete_filter(Filters& filters, uint32_t key)
{
    const int entry = filters[key]; // deliberately 0, an entry like any other, for an absent key
    if (entry != -1) {
        succeeds(bcmx_field_entry_remove(entry), "failed to remove field entry.");
        succeeds(bcmx_field_entry_destroy(entry), "failed to destroy field entry.");
    }
    filters.erase(key);
}

bool delete_filters(Filters& filters)
{
    bool done = true;
    for (const auto& [key, entry] : filters) {
        done = succeeds(bcmx_field_entry_remove(entry), "failed to remove field entry") && done;
        done = succeeds(bcmx_field_entry_destroy(entry), "failed to destroy field entry.") && done;
    }
    filters.clear();
    return done;
}

} // namespace

bool VexoBcmSdk::add_arp_filter(unsigned ip, unsigned mask)
{
    return arp_fps.count(ip & mask) != 0 ||
           (do_add_arp_filter(ip, mask, false) && do_add_arp_filter(ip, mask, true));
}

bool VexoBcmSdk::do_add_arp_filter(unsigned ip, unsigned mask, bool one_vlan)
{
    int entry = -1;
    if (!make_shared() || !add_entry(one_vlan ? arp_group_one_vlan : arp_group,
                                     one_vlan ? arp_udf_id_one_vlan : arp_udf_id, ip, mask, entry))
        return false;
    (one_vlan ? arp_fps_one_vlan : arp_fps)[ip & mask] = entry;
    return true;
}

bool VexoBcmSdk::delete_arp_filter(unsigned ip, unsigned mask)
{
    delete_filter(arp_fps, ip & mask);
    delete_filter(arp_fps_one_vlan, ip & mask);
    return true;
}

bool VexoBcmSdk::delete_arp_filter_all()
{
    const bool untagged = delete_filters(arp_fps);
    return delete_filters(arp_fps_one_vlan) && untagged;
}
