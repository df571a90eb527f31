// SDK calls that are made to fail.
#include <gtest/gtest.h>

#include <bcmx/lplist.h>
#include <bcmx/vlan.h>
#include <sal/config.h>
#include <sal/core.h>
#include <soc/cm.h>
#include <soc/property.h>

#include <algorithm>
#include <set>

#include "tests/core/elf_file.h"
#include "tests/kit/kit.h"

namespace {

struct Faults : CardTest {
    /// Results of creating VLANs 11, 12, ... in turn.
    std::string create(int count)
    {
        std::string results;
        for (int i = 0; i < count; ++i)
            results += (i == 0 ? "" : " ") +
                       std::to_string(bcmx_vlan_create(static_cast<bcm_vlan_t>(next_++)));
        return results;
    }

private:
    int next_ = 11;
};

TEST_F(Faults, TheNextCallFailsAndOnlyThat)
{
    inject({.call = "bcmx_vlan_create", .code = -6});
    EXPECT_EQ(create(3), "-6 0 0");
}

TEST_F(Faults, TheNthCallFailsCountedFromNowOn)
{
    create(2);
    inject({.call = "bcmx_vlan_create", .nth = 3});
    EXPECT_EQ(create(4), "0 0 -1 0");
}

TEST_F(Faults, AStickyFaultStays)
{
    inject({.call = "bcmx_vlan_create", .nth = 2, .sticky = true});
    EXPECT_EQ(create(4), "0 -1 -1 -1");
    clear_faults();
    EXPECT_EQ(create(1), "0");
}

TEST_F(Faults, OtherCallsAreSpared)
{
    inject({.call = "bcmx_vlan_create", .sticky = true});
    EXPECT_EQ(bcmx_vlan_destroy(11), BCM_E_NOT_FOUND);
}

TEST_F(Faults, WithoutANameAnyCallThatCanFailIsMeant)
{
    inject({.nth = 2, .code = -9});
    bcmx_lplist_t list{nullptr, -1, 0};
    bcmx_lplist_t_init(&list);              // cannot fail
    EXPECT_EQ(bcmx_lplist_count(&list), 0); // cannot fail
    EXPECT_EQ(create(1), "0");
    EXPECT_EQ(bcmx_lplist_init(&list, 4, 0), -9) << "local calls count too";
    EXPECT_EQ(create(1), "0");
}

TEST_F(Faults, WhatIsSparedNeitherFailsNorCounts)
{
    inject({.nth = 2, .spare = {"bcmx_vlan_destroy"}});
    EXPECT_EQ(create(1), "0");
    EXPECT_EQ(bcmx_vlan_destroy(11), 0);
    EXPECT_EQ(create(1), "-1");
}

TEST_F(Faults, AFailedCallChangesNothing)
{
    const auto before = chip_digest();
    inject({.call = "bcmx_vlan_create"});
    create(1);
    EXPECT_EQ(chip_digest(), before);
}

TEST_F(Faults, ACallThatDoesNothingReportsSuccess)
{
    const auto before = chip_digest();
    inject({.call = "bcmx_vlan_create", .do_nothing = true});
    EXPECT_EQ(create(1), "0");
    EXPECT_EQ(chip_digest(), before);
    EXPECT_EQ(create(1), "0");
    EXPECT_NE(chip_digest(), before);
}

TEST_F(Faults, ACallMayReportAPositiveCode)
{
    inject({.call = "bcmx_vlan_create", .code = 3});
    EXPECT_EQ(create(2), "3 0");
}

TEST_F(Faults, OfTwoFaultsOnOneCallTheOlderAnswersAndBothCount)
{
    inject({.call = "bcmx_vlan_create", .code = -2});
    inject({.call = "bcmx_vlan_create", .sticky = true, .code = -3});
    EXPECT_EQ(create(3), "-2 -3 -3");
}

TEST_F(Faults, AFailedAllocationIsNull)
{
    inject({.call = "sal_dma_alloc"});
    EXPECT_EQ(sal_dma_alloc(64, "test"), nullptr);
    EXPECT_EQ(live_dma_buffers(), 0u);
    void* const memory = sal_dma_alloc(64, "test");
    EXPECT_NE(memory, nullptr);
    EXPECT_EQ(live_dma_buffers(), 1u);
    sal_dma_free(memory);
    EXPECT_EQ(live_dma_buffers(), 0u);
}

TEST_F(Faults, AFailedLookUpFindsNothing)
{
    sal_config_set("colour", "red");
    inject({.call = "sal_config_get"});
    EXPECT_EQ(sal_config_get("colour"), nullptr);
    EXPECT_STREQ(sal_config_get("colour"), "red");
}

TEST_F(Faults, HitsAreCountedAndNamed)
{
    inject({.call = "bcmx_vlan_create", .nth = 2, .sticky = true});
    EXPECT_EQ(faults_hit(), 0u);
    create(3);
    bcmx_vlan_destroy(11);
    EXPECT_EQ(gated_calls(), 4u);
    EXPECT_EQ(faults_hit(), 2u);
    EXPECT_EQ(faulted_calls(), std::vector<std::string>{"bcmx_vlan_create"});
    clear_faults();
    EXPECT_EQ(gated_calls(), 0u);
    EXPECT_EQ(faults_hit(), 0u);
}

TEST(FaultNames, AreTheFunctionsOfTheSdkWithAResultThatCanTell)
{
    std::set<std::string> others;
    for (const std::string& name : ElfFile::of_loaded("libvexosim.so.0").exports()) {
        if (!name.empty() && !name.starts_with("_"))
            others.insert(name);
    }
    const std::vector<std::string>& names = calls_that_can_fail();
    EXPECT_TRUE(std::ranges::is_sorted(names));
    for (const std::string& name : names)
        EXPECT_EQ(others.erase(name), 1u) << name;
    EXPECT_EQ(others, (std::set<std::string>{
                          "bcm_field_udf_spec_t_init", "bcmx_l2_learn_limit_t_init",
                          "bcmx_lplist_count", "bcmx_lplist_t_init", "bcmx_modid_port_to_lport",
                          "sal_dma_free", "soc_cm_devices", "soc_feature", "soc_phy_addr_of_port",
                          "soc_property_get", "soc_property_get_pbmp"}));
}

TEST_F(Faults, BusOperationsCanFail)
{
    inject({.call = "bde.write", .code = -5});
    EXPECT_EQ(CMVEC(0).write(&CMDEV(0).dev, 0x40, 1), -5);
    EXPECT_EQ(chip_register(0x40), 0u);
    EXPECT_EQ(CMVEC(0).write(&CMDEV(0).dev, 0x40, 1), 0);
    EXPECT_EQ(chip_register(0x40), 1u);
}

} // namespace
