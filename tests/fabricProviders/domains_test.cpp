// Tests of the classes that the principal switch names: the storage area network, the fabric, its network and
// their containment.
#include "fabricProviders/VRAX_ContainedDomain_Provider.h"
#include "fabricProviders/VRAX_LogicalNetwork_Provider.h"
#include "tests/common/testing/Switch_Test.h"

namespace cimple
{
namespace
{

constexpr const char* kWwn = "100002A5c0de00ff"; // of the local switch
constexpr int kRemoteDomain = 7;

class Domains : public Switch_Test
{
  protected:
    void SetUp() override { sim.open(setup().scenario()); }
    static simulator::SimSwitchSetup setup()
    {
        return simulator::SimSwitch::make().wwn(kWwn).remote(kRemoteDomain, 1);
    }
    static VRAX_Maps& maps() { return *VRAX_Maps::getInstance(); }
};

TEST_F(Domains, PublishTheListedPropertiesAndNoOthers)
{
    sim.setPrincipal(1);
    const std::string remoteWwn = sim.scenario().switches.at(1).wwn;
    for (const std::string& wwn : {std::string(kWwn), remoteWwn})
    {
        EXPECT_EQ(instances<VRAX_SAN_Provider>(),
                  (std::vector<Description>{
                      {{"CreationClassName", "VRAX_SAN"}, {"Name", wwn}, {"NameFormat", "WWN"}}}));
        EXPECT_EQ(instances<VRAX_Fabric_Provider>(),
                  (std::vector<Description>{
                      {{"CreationClassName", "VRAX_Fabric"}, {"Name", wwn}, {"NameFormat", "WWN"}}}));
        EXPECT_EQ(instances<VRAX_LogicalNetwork_Provider>(),
                  (std::vector<Description>{{{"InstanceID", wwn}, {"ElementName", wwn}}}));
        EXPECT_EQ(instances<VRAX_ContainedDomain_Provider>(),
                  (std::vector<Description>{
                      {{"GroupComponent", "-> VRAX_SAN"}, {"PartComponent", "-> VRAX_Fabric"}}}));
        sim.setPrincipal(kRemoteDomain);
        clock.outlive();
    }
}

TEST_F(Domains, AskTheSwitchOnceForEachClassAndNotAgainWhileFresh)
{
    instances<VRAX_ContainedDomain_Provider>();
    instances<VRAX_LogicalNetwork_Provider>();
    EXPECT_EQ(sim.calls("get_Principal_Switch_World_Wide_Name"), 3u);
    EXPECT_EQ(sim.platformCalls(), 3u);
    instances<VRAX_SAN_Provider>();
    instances<VRAX_Fabric_Provider>();
    instances<VRAX_LogicalNetwork_Provider>();
    instances<VRAX_ContainedDomain_Provider>();
    EXPECT_EQ(sim.platformCalls(), 3u);
}

// What a step of a load logs when it fails.
TEST_F(Domains, FailuresOfTheLoadsAndTheirMessages)
{
    const std::string san = "CRIT:fabricProviders/VRAX_SAN_Provider:load[] ";
    const std::string fabric = "CRIT:fabricProviders/VRAX_Fabric_Provider:load[] ";
    const std::string network = "Exception[CRIT]:fabricProviders/VRAX_LogicalNetwork_Provider:load[] ";
    expectStepsFail<VRAX_SAN_Provider>(san,
                                       {"Failed to create VRAX_SAN instance",
                                        "VRAX_SAN:: One or More Key properties are not populated",
                                        "Failed to insert instance in map"});
    expectStepsFail<VRAX_Fabric_Provider>(fabric,
                                          {"VRAX_Fabric instance creation failed",
                                           "VRAX_Fabric::One or More Key Properties not populated",
                                           "Failed to insert instance into map"});
    expectStepsFail<VRAX_LogicalNetwork_Provider>(
        network,
        {"Unable to create instance of VRAX_LogicalNetwork",
         "VRAX_LogicalNetwork::One or More Key Properties are not populated",
         "Failed to insert instance in map"});
    sim.setPrincipal(0);
    expectLoadFails<VRAX_SAN_Provider>(san + "Failed to get principal switch wwn");
    expectLoadFails<VRAX_Fabric_Provider>(fabric + "Failed to get principal switch wwn");
    expectLoadFails<VRAX_LogicalNetwork_Provider>("");

    // The next request recovers.
    sim.setPrincipal(1);
    EXPECT_EQ(instances<VRAX_SAN_Provider>().size(), 1u);
    EXPECT_EQ(instances<VRAX_Fabric_Provider>().size(), 1u);
    EXPECT_EQ(instances<VRAX_LogicalNetwork_Provider>().size(), 1u);
}

TEST_F(Domains, TheContainmentFollowsWhicheverEndIsLoadedAgain)
{
    const std::string remoteWwn = sim.scenario().switches.at(1).wwn;
    struct Row
    {
        const char* what;
        providerEnum_t stale;
        std::string san, fabric;
    };
    const Row rows[] = {
        {"the fabric went stale", VRAX_Fabric_Idx, kWwn, remoteWwn},
        {"the network went stale", VRAX_SAN_Idx, remoteWwn, kWwn},
        {"both ends are fresh", VRAX_ContainedDomain_Idx, kWwn, kWwn},
    };
    for (const Row& row : rows)
    {
        sim.setPrincipal(1);
        clock.outlive();
        ASSERT_EQ(instances<VRAX_ContainedDomain_Provider>().size(), 1u);
        sim.setPrincipal(kRemoteDomain);
        maps().InstMapForceUnload(row.stale);
        std::size_t pairs = 0;
        serve<VRAX_ContainedDomain_Provider>(
            [&](const VRAX_ContainedDomain& containment)
            {
                ++pairs;
                EXPECT_EQ(containment.GroupComponent->Name.value, row.san.c_str()) << row.what;
                EXPECT_EQ(containment.PartComponent->Name.value, row.fabric.c_str()) << row.what;
                EXPECT_EQ(containment.PartComponent->NameFormat.value, "WWN") << "not only the keys";
            });
        EXPECT_EQ(pairs, 1u) << row.what;
    }
}

TEST_F(Domains, FailuresOfTheContainment)
{
    const std::string origin = "Exception[CRIT]:fabricProviders/VRAX_ContainedDomain_Provider:load[] ";
    // The first end fails, then the second.
    const std::string noWwn = "Failed to get principal switch wwn";
    for (const auto& [skipped, line] :
         {std::pair(0, "CRIT:fabricProviders/VRAX_SAN_Provider:load[] " + noWwn),
          std::pair(1, "CRIT:fabricProviders/VRAX_Fabric_Provider:load[] " + noWwn)})
    {
        clock.outlive();
        sim.failNext("get_Principal_Switch_World_Wide_Name", 1, XPL_UNREACHABLE, skipped);
        expectLoadFails<VRAX_ContainedDomain_Provider>(line);
    }
    expectStepsFail<VRAX_ContainedDomain_Provider>(
        origin,
        {"Failed to Create the instance",
         "VRAX_ContainedDomain::One or more Key Properties not populated",
         "Failed to insert instance in map"});
    EXPECT_EQ(instances<VRAX_ContainedDomain_Provider>().size(), 1u);
}

} // namespace
} // namespace cimple
