// A load that fails reaches the client as an error, never as a shorter list, and the next request recovers.
//
// The real module is loaded through CMPI by the agent's core. Each case starts with empty maps: the end of
// the core before it unloaded the providers.
#include "simulator/testing/sim_switch.h"
#include "tests/module/module_test_agent.h"

#include <cctype>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using simulator::SimSwitch;

constexpr char kNodeWwn[] = "2100026e1a40b7c1";

struct Fault
{
    const char* name;
    const char* className;
    std::function<void(SimSwitch&)> strike;
};

std::ostream& operator<<(std::ostream& out, const Fault& fault)
{
    return out << fault.className << ", " << fault.name;
}

std::vector<Fault> faults()
{
    const auto noBatch = [](SimSwitch& sim) { sim.failNext("xpl_smlGetBatch", 1000); };
    const auto noCacheLock = [](SimSwitch& sim) { sim.refuseCacheLock(1000); };
    const auto noLocalName = [](SimSwitch& sim) { sim.failNext("get_Local_Switch_World_Wide_Name", 1000); };
    const auto noPrincipal = [](SimSwitch& sim)
    { sim.failNext("get_Principal_Switch_World_Wide_Name", 1000); };

    std::vector<Fault> all;
    const auto add = [&](const char* name,
                         const std::function<void(SimSwitch&)>& strike,
                         std::initializer_list<const char*> classes)
    {
        for (const char* className : classes)
            all.push_back({name, className, strike});
    };
    add("batch fails", noBatch, {"VRAX_FCPortStatistics", "VRAX_FCPortRateStatistics", "VRAX_FCSwitch"});
    add("data cache locked",
        noCacheLock,
        {"VRAX_FCPortStatistics",
         "VRAX_FCPortRateStatistics",
         "VRAX_FCSwitch",
         "VRAX_FCPort",
         "VRAX_FCNode",
         "VRAX_ProtocolEndpoint",
         "VRAX_FCSwitchFCPort",
         "VRAX_FabricFCSwitch",
         "VRAX_FabricFCPort",
         "VRAX_FabricFCNode",
         "VRAX_FabricProtocolEndPoint",
         "VRAX_FCSwitchProtocolEndPoint",
         "VRAX_DeviceSAPImplementation",
         "VRAX_MemberOfFCNode",
         "VRAX_MemberOfLogicalNetwork",
         "VRAX_ActiveConnection",
         "VRAX_FCSwitchObjectManager",
         "VRAX_FCSwitchCIMXMLCommMechanism"});
    add("no local switch name",
        noLocalName,
        {"VRAX_Namespace",
         "VRAX_ObjectManager",
         "VRAX_CIMXMLCommunicationMechanism",
         "VRAX_StatisticsCollection",
         "VRAX_NamespaceInManager",
         "VRAX_CIMXMLCommMechanismForManager",
         "VRAX_FCSwitchObjectManager"});
    add("no principal switch",
        noPrincipal,
        {"VRAX_SAN",
         "VRAX_Fabric",
         "VRAX_LogicalNetwork",
         "VRAX_ContainedDomain",
         "VRAX_FabricLogicalNetwork",
         "VRAX_FabricFCSwitch"});
    return all;
}

class ModuleFaults : public testing::TestWithParam<Fault>
{
};

TEST_P(ModuleFaults, AreErrorsAndPass)
{
    SimSwitch sim = SimSwitch::make().ports(4).remote(2, 2).node(1, 3, kNodeWwn);
    Module_Agent agent;
    GetParam().strike(sim);
    for (int attempt = 0; attempt < 2; ++attempt)
    {
        const std::string answer = agent.enumerate(GetParam().className);
        const std::size_t error = answer.find("<ERROR CODE=\"1\" DESCRIPTION=\"");
        ASSERT_NE(error, std::string::npos) << answer;
        EXPECT_NE(answer.find(GetParam().className, error), std::string::npos) << answer;
        EXPECT_EQ(answer.find("<VALUE.NAMEDINSTANCE>"), std::string::npos) << answer;
    }
    sim.restore();
    EXPECT_NE(agent.enumerate(GetParam().className).find("<VALUE.NAMEDINSTANCE>"), std::string::npos)
        << "the next request did not recover";
    EXPECT_EQ(sim.heldCacheLocks(), 0);
    EXPECT_EQ(sim.outstandingBlocks(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Loads,
                         ModuleFaults,
                         testing::ValuesIn(faults()),
                         [](const testing::TestParamInfo<Fault>& fault)
                         {
                             std::string name = std::string(fault.param.className) + "_" + fault.param.name;
                             for (char& c : name)
                                 c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
                             return name;
                         });

} // namespace
