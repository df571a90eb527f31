// MAC table entry points: what they refuse, and what is read back.
#include <gtest/gtest.h>

#include <bcm/l2.h>
#include <bcmx/l2.h>
#include <bcmx/trunk.h>

#include <cstring>

#include "tests/sim/lport_test.h"

namespace {

struct L2Calls : LportTest {
    bcmx_l2_addr_t entry(int lport, std::uint32_t flags = BCM_L2_STATIC, bcm_vlan_t vid = 10)
    {
        bcmx_l2_addr_t made{};
        std::memcpy(made.mac, mac, sizeof mac);
        made.flags = flags;
        made.vid = vid;
        made.lport = lport;
        return made;
    }
    int add(bcmx_l2_addr_t e) { return bcmx_l2_addr_add(&e, nullptr); }
};

TEST_F(L2Calls, AnAddressIsAddedOnce)
{
    EXPECT_EQ(add(entry(port3)), 0);
    EXPECT_EQ(add(entry(port4)), BCM_E_EXISTS);
    EXPECT_EQ(add(entry(port4, BCM_L2_STATIC | BCM_L2_REPLACE_DYNAMIC)), BCM_E_EXISTS);
    EXPECT_EQ(bcmx_l2_addr_delete(mac, 10), 0);
    EXPECT_EQ(bcmx_l2_addr_delete(mac, 10), BCM_E_NOT_FOUND);
    EXPECT_EQ(add(entry(port3, 0)), 0);
    EXPECT_EQ(add(entry(port4, 0)), BCM_E_EXISTS);
    EXPECT_EQ(add(entry(port4, BCM_L2_REPLACE_DYNAMIC)), 0);
}

TEST_F(L2Calls, AddressesWithoutAPlaceAreRefused)
{
    const std::uint64_t before = chip_digest();
    bcmx_lplist_t bad = list({port3, -1});
    bcmx_l2_addr_t good = entry(port3);
    bcmx_l2_addr_t on_trunk = entry(port3, BCM_L2_TRUNK_MEMBER);
    EXPECT_EQ(bcmx_l2_addr_add(nullptr, nullptr), BCM_E_PARAM);
    EXPECT_EQ(add(entry(kNoPort)), BCM_E_PORT);
    EXPECT_EQ(add(entry(port3, 0, 4096)), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l2_addr_add(&good, &bad), BCM_E_PORT);
    on_trunk.tgid = 5;
    EXPECT_EQ(add(on_trunk), BCM_E_NOT_FOUND);
    on_trunk.tgid = 128;
    EXPECT_EQ(add(on_trunk), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l2_addr_delete(nullptr, 10), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l2_addr_delete(mac, 4096), BCM_E_PARAM);
    EXPECT_EQ(chip_digest(), before);
}

TEST_F(L2Calls, BulkDeletesRemoveLearnedOrAll)
{
    ASSERT_EQ(bcmx_trunk_create_id(5), 0);
    const std::vector<std::pair<std::string, std::function<int(std::uint32_t)>>> deletes = {
        {"by mac", [&](std::uint32_t flags) { return bcmx_l2_addr_delete_by_mac(mac, flags); }},
        {"by vlan", [&](std::uint32_t flags) { return bcmx_l2_addr_delete_by_vlan(10, flags); }},
        {"by port", [&](std::uint32_t flags) { return bcmx_l2_addr_delete_by_port(port3, flags); }},
        {"by trunk", [&](std::uint32_t flags) { return bcmx_l2_addr_delete_by_trunk(5, flags); }},
    };
    for (const auto& [name, make] : deletes) {
        bcmx_l2_addr_t added = entry(port3);
        added.tgid = 5;
        added.flags |= name == "by trunk" ? BCM_L2_TRUNK_MEMBER : 0;
        ASSERT_EQ(add(added), 0);
        EXPECT_EQ(make(2), BCM_E_PARAM) << name;
        EXPECT_EQ(make(0), name == "by mac" ? BCM_E_NOT_FOUND : 0) << name;
        EXPECT_EQ(add(added), BCM_E_EXISTS) << name << " took a static entry";
        EXPECT_EQ(make(BCM_L2_DELETE_STATIC), 0) << name;
        EXPECT_EQ(bcmx_l2_addr_delete(mac, 10), BCM_E_NOT_FOUND) << name;
        EXPECT_EQ(make(BCM_L2_DELETE_STATIC), name == "by mac" ? BCM_E_NOT_FOUND : 0) << name;
    }
}

TEST_F(L2Calls, BulkDeletesOfNothingThatThereIsAreRefused)
{
    EXPECT_EQ(bcmx_l2_addr_delete_by_mac(nullptr, 0), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l2_addr_delete_by_vlan(4096, 0), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l2_addr_delete_by_port(kNoPort, 0), BCM_E_PORT);
    EXPECT_EQ(bcmx_l2_addr_delete_by_trunk(5, 0), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_l2_addr_delete_by_trunk(-1, 0), BCM_E_PARAM);
}

TEST_F(L2Calls, TheAgeIsCheckedAndReadBack)
{
    int age = -5;
    EXPECT_EQ(bcmx_l2_age_timer_set(-1), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l2_age_timer_get(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l2_age_timer_set(77), 0);
    EXPECT_EQ(bcmx_l2_age_timer_get(&age), 0);
    EXPECT_EQ(age, 77);
}

extern "C" int stop_at_the_second(int /*unit*/, bcm_l2_addr_t* info, void* user_data)
{
    std::string& seen = *static_cast<std::string*>(user_data);
    seen += std::to_string(info->mac[5]) + "@" + std::to_string(info->port) + " ";
    bcmx_l2_addr_delete(info->mac, info->vid); // a walk is over what there was at its start
    return seen.size() > 6 ? -5 : 0;
}

TEST_F(L2Calls, AWalkVisitsEveryEntryUntilTheHandlerEndsIt)
{
    std::string seen;
    for (int last = 1; last <= 3; ++last) {
        mac[5] = static_cast<std::uint8_t>(last);
        ASSERT_EQ(add(entry(port3)), 0);
    }
    EXPECT_EQ(bcm_l2_traverse(0, nullptr, &seen), BCM_E_PARAM);
    EXPECT_EQ(bcm_l2_traverse(1, stop_at_the_second, &seen), BCM_E_UNIT);
    EXPECT_EQ(bcm_l2_traverse(0, stop_at_the_second, &seen), -5);
    EXPECT_EQ(seen, "1@33 2@33 ");
    EXPECT_EQ(bcm_l2_traverse(0, stop_at_the_second, &seen), -5);
    EXPECT_EQ(seen, "1@33 2@33 3@33 ");
    EXPECT_EQ(bcm_l2_traverse(0, stop_at_the_second, &seen), 0) << "the table is empty";
}

} // namespace
