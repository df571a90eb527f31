#include <bcmx/trunk.h>

#include "tests/sim/card_that_is_up.h"

namespace {

struct SdkTrunk : CardThatIsUp {
    SdkTrunk() { bcmx_trunk_create_id(5); }

    /// Programs trunk 5 with ports of the front panel and these designated ports.
    static int set(std::initializer_list<int> lports, int psc = 3, int dlf = -1, int mc = -1,
                   int ipmc = -1)
    {
        bcmx_trunk_add_info_t info{psc, {}, dlf, mc, ipmc};
        bcmx_lplist_init(&info.ports, 0, 0);
        for (int lport : lports)
            bcmx_lplist_add(&info.ports, lport);
        const int rc = bcmx_trunk_set(5, &info);
        bcmx_lplist_free(&info.ports);
        return rc;
    }
};

TEST(SdkTrunkBeforeBringUp, IsNotInitialised)
{
    bcm_trunk_t id = -1;
    int psc = 0;
    bcmx_trunk_add_info_t info = {};
    EXPECT_EQ(bcmx_trunk_create(&id), BCM_E_INIT);
    EXPECT_EQ(bcmx_trunk_create_id(1), BCM_E_INIT);
    EXPECT_EQ(bcmx_trunk_destroy(1), BCM_E_INIT);
    EXPECT_EQ(bcmx_trunk_set(1, &info), BCM_E_INIT);
    EXPECT_EQ(bcmx_trunk_get(1, &info), BCM_E_INIT);
    EXPECT_EQ(bcmx_trunk_psc_set(1, 1), BCM_E_INIT);
    EXPECT_EQ(bcmx_trunk_psc_get(1, &psc), BCM_E_INIT);
}

TEST_F(SdkTrunk, GivesBackWhatWasSet)
{
    ASSERT_EQ(set({lport(7), lport(3)}, 6, lport(3), lport(7)), 0);
    bcmx_trunk_add_info_t info = {};
    ASSERT_EQ(bcmx_trunk_get(5, &info), 0);
    EXPECT_EQ(info.psc, 6);
    ASSERT_EQ(bcmx_lplist_count(&info.ports), 2);
    EXPECT_EQ(info.ports.lp_ports[0], lport(7));
    EXPECT_EQ(info.ports.lp_ports[1], lport(3));
    EXPECT_EQ(info.dlf_port, lport(3));
    EXPECT_EQ(info.mc_port, lport(7));
    EXPECT_EQ(info.ipmc_port, -1);
    bcmx_lplist_free(&info.ports);
}

TEST_F(SdkTrunk, RefusesPortsThatAreNone)
{
    EXPECT_EQ(set({lport(1), 1}), BCM_E_PORT);
    EXPECT_EQ(set({lport(1), -1}), BCM_E_PORT);
    EXPECT_EQ(set({lport(1), lport(53)}), BCM_E_PORT); // the CPU port
    EXPECT_EQ(set({lport(1)}, 3, 1), BCM_E_PORT);
    EXPECT_EQ(set({lport(1)}, 3, -1, 1), BCM_E_PORT);
    EXPECT_EQ(set({lport(1)}, 3, -1, -1, 1), BCM_E_PORT);
}

TEST_F(SdkTrunk, RefusesNullAndTrunksThatAreNone)
{
    int psc = -3;
    bcmx_trunk_add_info_t info = {};
    EXPECT_EQ(bcmx_trunk_create(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_trunk_set(5, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_trunk_get(5, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_trunk_psc_get(5, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_trunk_get(6, &info), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_trunk_get(128, &info), BCM_E_PARAM);
    EXPECT_EQ(bcmx_trunk_psc_get(6, &psc), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_trunk_psc_set(5, 7), BCM_E_PARAM);
    EXPECT_EQ(psc, -3);
    EXPECT_EQ(info.ports.lp_ports, nullptr);
}

TEST_F(SdkTrunk, ReadsTheCriterionThatWasSet)
{
    int psc = 0;
    ASSERT_EQ(bcmx_trunk_psc_set(5, 4), 0);
    EXPECT_EQ(bcmx_trunk_psc_get(5, &psc), 0);
    EXPECT_EQ(psc, 4);
}

} // namespace
