#include <bcmx/field.h>

#include "tests/sim/card_that_is_up.h"

namespace {

bcm_mac_t some_mac = {2, 0, 0, 0, 0, 1};
bcm_mac_t mac_mask = {0xff, 0xff, 0xff, 0xff, 0xff, 0xff};
const uint8_t word[4] = {1, 2, 3, 4};

bcm_field_qset_t qset_of(std::initializer_list<int> fields)
{
    bcm_field_qset_t qset;
    BCM_FIELD_QSET_INIT(qset);
    for (int field : fields)
        BCM_FIELD_QSET_ADD(qset, field);
    return qset;
}

const std::initializer_list<int> every_field = {
    bcmFieldQualifyInPort,    bcmFieldQualifySrcMac,      bcmFieldQualifyDstMac,
    bcmFieldQualifyEtherType, bcmFieldQualifyOuterVlanId, bcmFieldQualifyOuterVlanPri,
    bcmFieldQualifySrcIp,     bcmFieldQualifyDstIp,       bcmFieldQualifyL4SrcPort,
    bcmFieldQualifyL4DstPort, bcmFieldQualifyIpProtocol,  bcmFieldQualifyTos,
    bcmFieldQualifyIpType};

/// What the qualifiers answer for an entry, one after the other.
std::vector<int> qualify_everything(int entry, int lport)
{
    return {bcmx_field_qualify_InPort(entry, lport),
            bcmx_field_qualify_SrcMac(entry, some_mac, mac_mask),
            bcmx_field_qualify_DstMac(entry, some_mac, mac_mask),
            bcmx_field_qualify_EtherType(entry, 0x800, 0xffff),
            bcmx_field_qualify_OuterVlanId(entry, 5, 0xfff),
            bcmx_field_qualify_OuterVlanPri(entry, 5, 7),
            bcmx_field_qualify_SrcIp(entry, 0x0a000001, 0xffffff00),
            bcmx_field_qualify_DstIp(entry, 0x0a000001, 0xffffff00),
            bcmx_field_qualify_L4SrcPort(entry, 80, 0xffff),
            bcmx_field_qualify_L4DstPort(entry, 80, 0xffff),
            bcmx_field_qualify_IpProtocol(entry, 6, 0xff),
            bcmx_field_qualify_Tos(entry, 0x10, 0xff),
            bcmx_field_qualify_IpType(entry, BCM_FIELD_IP_TYPE_ARP)};
}

/// A group with every field, user-defined field 3, and one entry.
struct SdkField : CardThatIsUp {
    SdkField()
    {
        bcm_field_udf_spec_t spec;
        bcm_field_udf_spec_t_init(&spec);
        bcmx_field_udf_spec_set(&spec, 0x380, 10);
        bcmx_field_udf_create_id(&spec, 3);
        bcm_field_qset_t qset = qset_of(every_field);
        bcmx_field_qset_add_udf(&qset, 3);
        bcmx_field_group_create(qset, 0, &group);
        bcmx_field_entry_create(group, &entry);
    }

    int group = 0;
    int entry = 0;
};

TEST(SdkFieldBeforeBringUp, IsNotInitialised)
{
    int id = 0;
    EXPECT_EQ(bcmx_field_init(), BCM_E_INIT);
    EXPECT_EQ(bcmx_field_group_create(qset_of({}), 0, &id), BCM_E_INIT);
    EXPECT_EQ(bcmx_field_entry_create(1, &id), BCM_E_INIT);
    EXPECT_EQ(bcmx_field_udf_destroy(1), BCM_E_INIT);
    for (int rc : qualify_everything(1, 257))
        EXPECT_EQ(rc, BCM_E_INIT);
}

TEST_F(SdkField, TakesEveryQualifierOfTheGroup)
{
    EXPECT_EQ(qualify_everything(entry, lport(1)), std::vector<int>(13, 0));
    EXPECT_EQ(bcmx_field_qualify_UserDefined(entry, 3, word, word), 0);
    EXPECT_EQ(bcmx_field_entry_install(entry), 0);
}

TEST_F(SdkField, RefusesEveryQualifierThatTheGroupLacks)
{
    int bare_group = 0;
    int bare_entry = 0;
    bcmx_field_group_create(qset_of({}), 0, &bare_group);
    bcmx_field_entry_create(bare_group, &bare_entry);
    EXPECT_EQ(qualify_everything(bare_entry, lport(1)), std::vector<int>(13, BCM_E_PARAM));
    EXPECT_EQ(bcmx_field_qualify_UserDefined(bare_entry, 3, word, word), BCM_E_PARAM);
}

TEST_F(SdkField, KnowsNoEntry0)
{
    EXPECT_EQ(qualify_everything(0, lport(1)), std::vector<int>(13, BCM_E_NOT_FOUND));
    EXPECT_EQ(bcmx_field_qualify_UserDefined(0, 3, word, word), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_entry_install(0), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_entry_reinstall(0), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_entry_remove(0), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_entry_destroy(0), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_action_add(0, bcmFieldActionDrop, 0, 0), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_action_delete(0, bcmFieldActionDrop, 0, 0), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_action_mac_add(0, bcmFieldActionSrcMacNew, some_mac), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_counter_create(0), BCM_E_NOT_FOUND);
}

TEST_F(SdkField, RefusesQualifiersWithBadValues)
{
    EXPECT_EQ(bcmx_field_qualify_InPort(entry, 1), BCM_E_PORT);
    EXPECT_EQ(bcmx_field_qualify_SrcMac(entry, nullptr, mac_mask), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_qualify_DstMac(entry, some_mac, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_qualify_OuterVlanId(entry, 5, 0xffff), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_qualify_OuterVlanPri(entry, 8, 7), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_qualify_IpType(entry, 7), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_qualify_IpType(entry, -1), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_qualify_UserDefined(entry, 3, nullptr, word), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_qualify_UserDefined(entry, -1, word, word), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_qualify_UserDefined(entry, 96, word, word), BCM_E_PARAM);
}

TEST_F(SdkField, KeepsThePriorityOfAnEntry)
{
    int prio = 0;
    ASSERT_EQ(bcmx_field_entry_prio_set(entry, -7), 0);
    EXPECT_EQ(bcmx_field_entry_prio_get(entry, &prio), 0);
    EXPECT_EQ(prio, -7);
    EXPECT_EQ(bcmx_field_entry_prio_get(entry, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_entry_prio_get(0, &prio), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_entry_prio_set(0, 1), BCM_E_NOT_FOUND);
}

TEST_F(SdkField, GivesBackThePortsOfAnAction)
{
    bcmx_lplist_t ports;
    bcmx_lplist_init(&ports, 0, 0);
    bcmx_lplist_add(&ports, lport(8));
    bcmx_lplist_add(&ports, lport(48));
    ASSERT_EQ(bcmx_field_action_ports_add(entry, bcmFieldActionRedirectPbmp, ports), 0);
    EXPECT_EQ(bcmx_field_action_ports_add(entry, bcmFieldActionRedirectPbmp, ports), BCM_E_EXISTS);
    bcmx_lplist_free(&ports);
    ASSERT_EQ(bcmx_field_action_ports_get(entry, bcmFieldActionRedirectPbmp, &ports), 0);
    ASSERT_EQ(bcmx_lplist_count(&ports), 2);
    EXPECT_EQ(ports.lp_ports[0], lport(48)); // in the order of the chip's ports
    EXPECT_EQ(ports.lp_ports[1], lport(8));
    bcmx_lplist_free(&ports);
}

TEST_F(SdkField, PortActionsTakePortsAndOthersDoNot)
{
    bcmx_lplist_t ports;
    bcmx_lplist_init(&ports, 0, 0);
    bcmx_lplist_add(&ports, 1);
    EXPECT_EQ(bcmx_field_action_ports_add(entry, bcmFieldActionRedirectPbmp, ports), BCM_E_PORT);
    ports.lp_ports[0] = lport(1);
    EXPECT_EQ(bcmx_field_action_ports_add(entry, bcmFieldActionDrop, ports), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_action_ports_add(0, bcmFieldActionRedirectPbmp, ports), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_action_ports_get(entry, bcmFieldActionEgressMask, &ports),
              BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_action_ports_get(entry, bcmFieldActionDrop, &ports), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_action_ports_get(entry, bcmFieldActionEgressMask, nullptr), BCM_E_PARAM);
    bcmx_lplist_free(&ports);
}

TEST_F(SdkField, ActionsAreAddedByTheCallForTheirKind)
{
    EXPECT_EQ(bcmx_field_action_add(entry, bcmFieldActionTrapToCpu, 0, 0), 0);
    EXPECT_EQ(bcmx_field_action_add(entry, bcmFieldActionTrapToCpu, 0, 0), BCM_E_EXISTS);
    EXPECT_EQ(bcmx_field_action_add(entry, bcmFieldActionSrcMacNew, 0, 0), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_action_add(entry, static_cast<bcm_field_action_t>(1), 0, 0), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_action_mac_add(entry, bcmFieldActionDstMacNew, some_mac), 0);
    EXPECT_EQ(bcmx_field_action_mac_add(entry, bcmFieldActionDstMacNew, some_mac), BCM_E_EXISTS);
    EXPECT_EQ(bcmx_field_action_mac_add(entry, bcmFieldActionSrcMacNew, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_action_mac_add(entry, bcmFieldActionDrop, some_mac), BCM_E_PARAM);
}

TEST_F(SdkField, ActionsGoOneByOneOrAllTogether)
{
    bcmx_field_action_add(entry, bcmFieldActionTrapToCpu, 0, 0);
    bcmx_field_action_add(entry, bcmFieldActionDrop, 0, 0);
    EXPECT_EQ(bcmx_field_action_delete(entry, bcmFieldActionDrop, 0, 0), 0);
    EXPECT_EQ(bcmx_field_action_delete(entry, bcmFieldActionDrop, 0, 0), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_action_remove_all(entry), 0);
    EXPECT_EQ(bcmx_field_action_delete(entry, bcmFieldActionTrapToCpu, 0, 0), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_action_remove_all(0), BCM_E_NOT_FOUND);
}

TEST_F(SdkField, ReadsCountersInBothWidths)
{
    uint64_t wide = 7;
    uint32_t narrow = 7;
    EXPECT_EQ(bcmx_field_counter_get(entry, 0, &wide), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_counter_get32(entry, 0, &narrow), BCM_E_NOT_FOUND);
    ASSERT_EQ(bcmx_field_counter_create(entry), 0);
    EXPECT_EQ(bcmx_field_counter_get32(entry, 1, &narrow), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_counter_get32(entry, 0, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_counter_get(entry, 0, nullptr), BCM_E_PARAM);
    EXPECT_EQ(wide, 7u);
    EXPECT_EQ(narrow, 7u);
    EXPECT_EQ(bcmx_field_counter_get(entry, 0, &wide), 0);
    EXPECT_EQ(bcmx_field_counter_get32(entry, 0, &narrow), 0);
    EXPECT_EQ(wide, 0u);
    EXPECT_EQ(narrow, 0u);
    EXPECT_EQ(bcmx_field_counter_destroy(entry), 0);
    EXPECT_EQ(bcmx_field_counter_destroy(entry), BCM_E_NOT_FOUND);
}

TEST_F(SdkField, UserDefinedFieldsAreRecordsUntilTheyAreCreated)
{
    bcm_field_udf_spec_t spec;
    bcm_field_udf_spec_t_init(&spec);
    EXPECT_EQ(spec.flags, 0u);
    EXPECT_EQ(spec.udf_offset, 0u);
    EXPECT_EQ(bcmx_field_udf_spec_set(&spec, 0x388, 11), 0);
    EXPECT_EQ(spec.flags, 0x388u);
    EXPECT_EQ(spec.udf_offset, 11u);
    EXPECT_EQ(bcmx_field_udf_spec_set(nullptr, 0, 0), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_udf_create_id(&spec, 3), BCM_E_EXISTS);
    EXPECT_EQ(bcmx_field_udf_create_id(&spec, 93), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_udf_create_id(nullptr, 4), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_udf_create_id(&spec, 92), 0);
    EXPECT_EQ(bcmx_field_udf_destroy(3), BCM_E_BUSY);
    EXPECT_EQ(bcmx_field_udf_destroy(92), 0);
    EXPECT_EQ(bcmx_field_udf_destroy(92), BCM_E_NOT_FOUND);
}

TEST_F(SdkField, ASetTakesUserDefinedFieldsThatExist)
{
    bcm_field_qset_t qset = qset_of({});
    EXPECT_EQ(bcmx_field_qset_add_udf(&qset, 4), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_qset_add_udf(&qset, 93), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_qset_add_udf(&qset, -1), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_qset_add_udf(nullptr, 3), BCM_E_PARAM);
    EXPECT_EQ(qset.udf_map[0], 0u);
    EXPECT_EQ(bcmx_field_qset_add_udf(&qset, 3), 0);
    EXPECT_EQ(qset.udf_map[0], 8u);
}

TEST_F(SdkField, GroupsComeAndGo)
{
    int id = 7;
    EXPECT_EQ(bcmx_field_group_create_id(qset_of({}), 0, -1), BCM_E_EXISTS); // the trap filters'
    EXPECT_EQ(bcmx_field_group_create_id(qset_of({}), 0, 40), 0);
    EXPECT_EQ(bcmx_field_group_create(qset_of({5}), 0, &id), BCM_E_PARAM);
    EXPECT_EQ(bcmx_field_group_create(qset_of({}), 0, nullptr), BCM_E_PARAM);
    EXPECT_EQ(id, 7);
    EXPECT_EQ(bcmx_field_group_destroy(group), BCM_E_BUSY);
    EXPECT_EQ(bcmx_field_group_destroy(41), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_field_group_destroy(40), 0);
}

} // namespace
