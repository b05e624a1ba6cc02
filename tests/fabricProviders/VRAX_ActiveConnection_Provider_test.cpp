// Tests of the connections between endpoints: direction, what is left out, failures of the fabric services.
#include "fabricProviders/VRAX_ActiveConnection_Provider.h"
#include "tests/fabricProviders/small_fabric.h"

#include <thread>

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;

class Connections : public Switch_Test
{
  protected:
    void SetUp() override { sim.open(small_fabric::scenario()); }

    // The ends of each, sorted; a failed load fails the test.
    Texts connections()
    {
        VRAX_Maps::getInstance()->InstMapForceUnload(VRAX_ActiveConnection_Provider::kIndex);
        Texts pairs;
        const Served served = serve<VRAX_ActiveConnection_Provider>(
            [&](const VRAX_ActiveConnection& one) { pairs.push_back(small_fabric::pairOf(one)); });
        EXPECT_EQ(served.status, 0);
        std::sort(pairs.begin(), pairs.end());
        return pairs;
    }
};

TEST_F(Connections, LeadFromSwitchPortsToNodesAndAreOnceBetweenSwitches)
{
    EXPECT_EQ(connections(), (Texts{"P10-P21", "P13-N1", "P13-N2", "P22-N3"}));
    EXPECT_EQ(
        instances<VRAX_ActiveConnection_Provider>().at(0),
        (Description{{"Antecedent", "-> VRAX_ProtocolEndpoint"}, {"Dependent", "-> VRAX_ProtocolEndpoint"}}));
    EXPECT_EQ(sim.calls("xpl_fcsGetSwitchList"), 1u);
    EXPECT_EQ(sim.calls("xpl_fcsGetPortList"), 2u);
    EXPECT_EQ(sim.calls("xpl_fcsGetPortTopology"), 6u)
        << "a port without an endpoint has no links to ask for";
}

TEST_F(Connections, BetweenSwitchesBeginAtTheLowerNameWhateverItsLetterCase)
{
    // Compared by bytes the second switch would come first in the first link.
    simulator::Scenario scenario = simulator::SimSwitch::make()
                                       .wwn("100002a5c0de0001")
                                       .remote(2, 4)
                                       .isl({1, 1, 2, 1, false})
                                       .isl({1, 2, 2, 0, false})
                                       .scenario();
    scenario.switches[1].wwn = "100002A5C0DE1002";
    sim.open(scenario);
    EXPECT_EQ(connections(), (Texts{"P11-P21", "P20-P12"}));
}

TEST_F(Connections, NeedBothEndpoints)
{
    sim.failKey("Oper.UserPort.0.0.OperState");
    sim.failKey("Oper.NameServerAll.1.Entry.010301.PortWwn");
    EXPECT_EQ(connections(), (Texts{"P13-N1", "P22-N3"}));
    sim.open(simulator::SimSwitch::make().ports(0).scenario());
    VRAX_Maps::getInstance()->InstMapForceUnload(VRAX_ProtocolEndpoint_Provider::kIndex);
    EXPECT_EQ(connections(), Texts());
    EXPECT_EQ(sim.calls("xpl_fcsGetSwitchList"), 0u) << "nothing to link";
}

TEST_F(Connections, LeaveOutAPortWhoseTopologyCannotBeRead)
{
    sim.failNext("xpl_fcsGetPortTopology", 1, 5, 2); // after P10 and P11
    EXPECT_EQ(connections(), (Texts{"P10-P21", "P22-N3"}));
    sim.failNext("xpl_fcsGetPortTopology");
    EXPECT_EQ(connections(), (Texts{"P10-P21", "P13-N1", "P13-N2", "P22-N3"})) << "P21 reports it too";
}

TEST_F(Connections, LeaveOutASwitchThatLeavesMeanwhile)
{
    connections();
    sim.onCall("xpl_fcsGetPortList",
               [this, left = false]() mutable
               {
                   if (!left)
                   {
                       left = true;
                       sim.removeSwitch(2);
                   }
               });
    EXPECT_EQ(connections(), (Texts{"P13-N1", "P13-N2"}));
}

TEST_F(Connections, FailWithTheListsOfTheFabric)
{
    const std::string source = "Exception[CRIT]:fabricProviders/VRAX_ActiveConnection_Provider:load[] ";
    sim.failNext("xpl_fcsGetSwitchList");
    expectLoadFails<VRAX_ActiveConnection_Provider>(source + "Unable to get fabric switch list");
    sim.failNext("xpl_fcsGetPortList", 1, 5, 1);
    expectLoadFails<VRAX_ActiveConnection_Provider>(source + "Unable to get fabric port list");
    {
        const Create_Failures failures("VRAX_ActiveConnection", 2);
        expectLoadFails<VRAX_ActiveConnection_Provider>(source +
                                                        "Unable to create instance of VRAX_ActiveConnection");
    }
    EXPECT_EQ(connections().size(), 4u);
}

TEST_F(Connections, DoNotHoldUpOtherAssociationsWhileTheSwitchIsRead)
{
    // Fails by not returning when the load keeps the mutex.
    sim.onCall("xpl_fcsGetSwitchList", [] { std::thread([] { Association_Load_Lock lock; }).join(); });
    EXPECT_EQ(connections().size(), 4u);
}

TEST_F(Connections, AreRebuiltWhenTheEndpointsWentStale)
{
    connections();
    sim.portDown(3);
    VRAX_Maps::getInstance()->InstMapForceUnload(VRAX_ProtocolEndpoint_Provider::kIndex);
    EXPECT_EQ(instances<VRAX_ActiveConnection_Provider>().size(), 2u);
}

} // namespace
} // namespace cimple
