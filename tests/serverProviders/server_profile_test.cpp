// Tests of the object manager, its namespace, its communication mechanism and the associations between them.
#include "serverProviders/VRAX_CIMXMLCommMechanismForManager_Provider.h"
#include "serverProviders/VRAX_FCSwitchCIMXMLCommMechanism_Provider.h"
#include "serverProviders/VRAX_FCSwitchObjectManager_Provider.h"
#include "serverProviders/VRAX_NamespaceInManager_Provider.h"
#include "tests/common/testing/Switch_Test.h"

namespace cimple
{
namespace
{

constexpr const char* kWwn = "100002A5c0de00ff";

class ServerProfile : public Switch_Test
{
  protected:
    void SetUp() override { sim.open(simulator::SimSwitch::make().wwn(kWwn).scenario()); }
};

TEST_F(ServerProfile, PublishesTheListedPropertiesAndNoOthers)
{
    EXPECT_EQ(instances<VRAX_Namespace_Provider>(),
              (std::vector<Description>{{
                  {"Caption", "VRAX_Namespace class instance"},
                  {"Description", "VRAX_Namespace class instance"},
                  {"ElementName", "VRAX_Namespace"},
                  {"SystemCreationClassName", "VRAX_FCSwitch"},
                  {"SystemName", kWwn},
                  {"ObjectManagerCreationClassName", "VRAX_ObjectManager"},
                  {"ObjectManagerName", kWwn},
                  {"CreationClassName", "VRAX_Namespace"},
                  {"Name", "root/interop"},
                  {"ClassInfo", "11"},
                  {"ClassType", "2"},
                  {"ClassTypeVersion", "2.15.0"},
              }}));
    EXPECT_EQ(instances<VRAX_ObjectManager_Provider>(),
              (std::vector<Description>{{
                  {"Caption", "VRAX_ObjectManager instance"},
                  {"Description", "Embedded CIMAgent"},
                  {"ElementName", "Tarvel CIMAgent"},
                  {"Name", kWwn},
                  {"OperationalStatus", "[2]"},
                  {"StatusDescriptions", "[OK]"},
                  {"SystemCreationClassName", "VRAX_FCSwitch"},
                  {"SystemName", kWwn},
                  {"CreationClassName", "VRAX_ObjectManager"},
                  {"Started", "true"},
              }}));
    EXPECT_EQ(instances<VRAX_CIMXMLCommunicationMechanism_Provider>(),
              (std::vector<Description>{{
                  {"ElementName", "CIMXML Communications Mechanism"},
                  {"Name", "CIMXML Communications Mechanism"},
                  {"OperationalStatus", "[2]"},
                  {"SystemCreationClassName", "VRAX_FCSwitch"},
                  {"SystemName", kWwn},
                  {"CreationClassName", "VRAX_CIMXMLCommunicationMechanism"},
                  {"CommunicationMechanism", "2"},
                  {"FunctionalProfilesSupported", "[2, 3, 5, 6, 9]"},
                  {"MultipleOperationsSupported", "false"},
                  {"AuthenticationMechanismsSupported", "[3]"},
                  {"Version", "1.1"},
                  {"CIMValidated", "false"},
                  // Defaults of the class.
                  {"EnabledState", "5"},
                  {"RequestedState", "12"},
                  {"EnabledDefault", "2"},
              }}));
}

TEST_F(ServerProfile, AssociationsLoadTheirEndsAndReferToWholeInstances)
{
    EXPECT_EQ(instances<VRAX_NamespaceInManager_Provider>(),
              (std::vector<Description>{
                  {{"Antecedent", "-> VRAX_ObjectManager"}, {"Dependent", "-> VRAX_Namespace"}}}));
    serve<VRAX_NamespaceInManager_Provider>(
        [&](const VRAX_NamespaceInManager& association)
        {
            EXPECT_EQ(described(*association.Antecedent), instances<VRAX_ObjectManager_Provider>().at(0));
            EXPECT_EQ(described(*association.Dependent), instances<VRAX_Namespace_Provider>().at(0));
        });
    EXPECT_EQ(instances<VRAX_CIMXMLCommMechanismForManager_Provider>(),
              (std::vector<Description>{{{"Antecedent", "-> VRAX_ObjectManager"},
                                         {"Dependent", "-> VRAX_CIMXMLCommunicationMechanism"}}}));
    // Each of the three ends was read from the switch once.
    EXPECT_EQ(sim.calls("get_Local_Switch_World_Wide_Name"), 3u);
    EXPECT_EQ(sim.platformCalls(), 3u);
}

TEST_F(ServerProfile, TheFirstSwitchOfTheFabricHostsTheManagerAndItsMechanism)
{
    // Not the local one: that has the higher domain.
    sim.open(simulator::SimSwitch::make().wwn(kWwn).domain(9).remote(2, 1).scenario());
    EXPECT_EQ(instances<VRAX_FCSwitchObjectManager_Provider>(),
              (std::vector<Description>{
                  {{"Antecedent", "-> VRAX_FCSwitch"}, {"Dependent", "-> VRAX_ObjectManager"}}}));
    EXPECT_EQ(instances<VRAX_FCSwitchCIMXMLCommMechanism_Provider>(),
              (std::vector<Description>{{{"Antecedent", "-> VRAX_FCSwitch"},
                                         {"Dependent", "-> VRAX_CIMXMLCommunicationMechanism"}}}));
    const Description first = instances<VRAX_FCSwitch_Provider>().at(0);
    serve<VRAX_FCSwitchObjectManager_Provider>(
        [&](const VRAX_FCSwitchObjectManager& association)
        {
            EXPECT_EQ(described(*association.Antecedent), first);
            EXPECT_EQ(described(*association.Dependent), instances<VRAX_ObjectManager_Provider>().at(0));
        });
    serve<VRAX_FCSwitchCIMXMLCommMechanism_Provider>(
        [&](const VRAX_FCSwitchCIMXMLCommMechanism& association)
        { EXPECT_EQ(described(*association.Antecedent), first); });

    // Without a switch there is nothing to associate, which is no failure.
    clock.outlive();
    sim.failNext("DataCache::getFabric");
    EXPECT_EQ(instances<VRAX_FCSwitchObjectManager_Provider>().size(), 0u);
    EXPECT_EQ(instances<VRAX_FCSwitchCIMXMLCommMechanism_Provider>().size(), 0u);
    clock.outlive();
    EXPECT_EQ(instances<VRAX_FCSwitchCIMXMLCommMechanism_Provider>().size(), 1u);
}

TEST_F(ServerProfile, FailuresOfTheLoadsAndTheirMessages)
{
    const std::string critical = "CRIT:serverProviders/";
    const std::string exception = "Exception[CRIT]:serverProviders/";
    expectStepsFail<VRAX_Namespace_Provider>(
        exception + "VRAX_Namespace_Provider:load[] ",
        {nullptr, "VRAX_Namespace::One or more Key Properties are not Populated", nullptr});
    expectStepsFail<VRAX_ObjectManager_Provider>(critical + "VRAX_ObjectManager_Provider:load[] ",
                                                 {"Unable to create VRAX_ObjectManager", nullptr, nullptr});
    expectStepsFail<VRAX_CIMXMLCommunicationMechanism_Provider>(
        critical + "VRAX_CIMXMLCommunicationMechanism_Provider:load[] ",
        {"Unable to create VRAX_CIMXMLCommunicationMechanism", nullptr, nullptr});
    expectStepsFail<VRAX_NamespaceInManager_Provider>(
        exception + "VRAX_NamespaceInManager_Provider:load[] ",
        {"Unable to create instance of VRAX_NamespaceInManager", nullptr, nullptr});
    expectStepsFail<VRAX_CIMXMLCommMechanismForManager_Provider>(
        exception + "VRAX_CIMXMLCommMechanismForManager_Provider:load[] ",
        {"Unable to create instance of VRAX_CIMXMLCommMechanismForManager", nullptr, nullptr});
    expectStepsFail<VRAX_FCSwitchObjectManager_Provider>(
        exception + "VRAX_FCSwitchObjectManager_Provider:load[] ",
        {"Unable to create instance of VRAX_FCSwitchObjectManager", nullptr, nullptr});
    expectStepsFail<VRAX_FCSwitchCIMXMLCommMechanism_Provider>(
        exception + "VRAX_FCSwitchCIMXMLCommMechanism_Provider:load[] ",
        {"Unable to create instance of VRAX_FCSwitchCIMXMLCommMechanism", nullptr, nullptr});
    {
        const Create_Failures failures("VRAX_Namespace");
        expectLoadFails<VRAX_Namespace_Provider>("");
    }
    sim.failNext("get_Local_Switch_World_Wide_Name");
    expectLoadFails<VRAX_ObjectManager_Provider>(
        exception + "VRAX_ObjectManager_Provider:load[] Unable to retrieve localWWN");

    // A failing end fails its associations.
    clock.outlive();
    sim.failNext("xpl_smlGetBatch", 2);
    const std::string switchFails =
        "Exception[CRIT]:fabricProviders/VRAX_FCSwitch_Provider:load[] Unable to obtain FCSwitch attributes";
    expectLoadFails<VRAX_FCSwitchObjectManager_Provider>(switchFails);
    expectLoadFails<VRAX_FCSwitchCIMXMLCommMechanism_Provider>(switchFails);
    EXPECT_EQ(instances<VRAX_FCSwitchObjectManager_Provider>().size(), 1u);
    EXPECT_EQ(instances<VRAX_FCSwitchCIMXMLCommMechanism_Provider>().size(), 1u);
}

} // namespace
} // namespace cimple
