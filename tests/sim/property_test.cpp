// Properties: the store, and reading them for a unit.
#include <gtest/gtest.h>

#include <sal/config.h>
#include <soc/property.h>

#include "tests/kit/kit.h"

namespace {

/// A card whose unit 0 has its lookup.
struct UnitProperties : BareCardTest {
    UnitProperties()
    {
        inject({.call = "soc_reset_init"});
        bring_up();
        clear_faults();
    }
};

TEST_F(UnitProperties, PropertiesOfTheUnitComeFirst)
{
    EXPECT_EQ(soc_property_get_str(0, "size"), nullptr);
    EXPECT_EQ(soc_property_get(0, "size", 5), 5u);
    sal_config_set("size", "7");
    EXPECT_EQ(soc_property_get(0, "size", 5), 7u);
    sal_config_set("size.0", "0x10");
    EXPECT_EQ(soc_property_get(0, "size", 5), 16u);
    EXPECT_STREQ(soc_property_get_str(0, "size"), "0x10");
    EXPECT_EQ(soc_property_get(1, "size", 5), 5u) << "no such unit";
    sal_config_set("size.0", nullptr);
    EXPECT_EQ(soc_property_get(0, "size", 5), 7u);
}

TEST_F(UnitProperties, APropertyThatIsNoNumberCountsAsNotSet)
{
    for (const char* const text : {"", "ten", "-1", "0x", "12k", "4294967296"}) {
        set_property("size", text);
        EXPECT_EQ(soc_property_get(0, "size", 5), 5u) << text;
    }
}

TEST_F(UnitProperties, APortSetPropertyIsABitMap)
{
    set_property("ports", "0x800000000000000100000003");
    const bcm_pbmp_t ports = soc_property_get_pbmp(0, "ports", 0);
    EXPECT_EQ(ports.pbits[0], 3u);
    EXPECT_EQ(ports.pbits[1], 1u);
    EXPECT_EQ(ports.pbits[2], 0x80000000u);
    set_property("ports", "0x1800000000000000100000003");
    EXPECT_EQ(soc_property_get_pbmp(0, "ports", 0).pbits[0], 0u) << "longer than 96 bits";
    EXPECT_EQ(soc_property_get_pbmp(0, "others", 1).pbits[1], 0x003fffffu);
}

TEST_F(UnitProperties, ASettingOfThePropertyStoreNeedsAName)
{
    EXPECT_LT(sal_config_set("", "x"), 0);
    EXPECT_LT(sal_config_set(nullptr, "x"), 0);
    EXPECT_EQ(sal_config_get(nullptr), nullptr);
}

} // namespace
