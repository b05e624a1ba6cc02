// State changes that a client asks for: they reach the switch and show when the class is next loaded.
#include "simulator/testing/SimSwitch.h"
#include "tests/module/module_test_agent.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace
{

using simulator::SimSwitch;

constexpr std::uint64_t kEnabled = 2, kDisabled = 3, kTest = 7, kReset = 11;
constexpr std::uint64_t kOk = 2, kStopped = 10, kInService = 11;

struct Element
{
    const char* className;
    const char* numberProperty; // that tells the element from the others of its class
    std::uint64_t number;
    std::uint64_t linkResets; // that port 2 has sent after the reset, when there were 41 before
};

// The switch's reset starts the counters again; the port's is a link reset.
constexpr Element kSwitch = {"VRAX_FCSwitch", "RequestedState", 5, 0};
constexpr Element kPort = {"VRAX_FCPort", "PortNumber", 2, 42};

cimd::Instance find(Module_Agent& agent, const Element& element)
{
    for (cimd::Instance& instance : agent.instances(element.className))
    {
        const cimd::CimValue* number = instance.find(cimd::CimName(element.numberProperty));
        if (number != nullptr && !number->isNull() && number->asUnsigned() == element.number)
            return instance;
    }
    throw std::runtime_error("no such element");
}

// The property as CIM-XML writes it.
std::string scalar(const char* name, std::uint64_t value)
{
    return std::string("<PROPERTY NAME=\"") + name + "\" TYPE=\"uint16\"><VALUE>" + std::to_string(value) +
           "</VALUE>";
}
std::string firstOfArray(const char* name, std::uint64_t value)
{
    return std::string("<PROPERTY.ARRAY NAME=\"") + name + "\" TYPE=\"uint16\"><VALUE.ARRAY><VALUE>" +
           std::to_string(value) + "</VALUE>";
}

class ModuleChanges : public testing::TestWithParam<Element>
{
};

TEST_P(ModuleChanges, ShowAtTheNextLoad)
{
    SimSwitch sim = SimSwitch::make().ports(4);
    sim.setCounter(2, "TxLinkResets", 41);
    struct Step
    {
        std::uint64_t requested;
        std::uint64_t enabledState;
        std::uint64_t operationalStatus;
    };
    for (const Step& step : {Step{kDisabled, kDisabled, kStopped},
                             Step{kTest, kTest, kInService},
                             Step{kEnabled, kEnabled, kOk},
                             Step{kReset, kEnabled, kOk}})
    {
        {
            Module_Agent agent;
            const std::string answer =
                agent.requestState(find(agent, GetParam()).path(), static_cast<unsigned>(step.requested));
            EXPECT_NE(answer.find("<RETURNVALUE PARAMTYPE=\"uint32\"><VALUE>0</VALUE>"), std::string::npos)
                << answer;
        }
        Module_Agent agent;
        const std::string after = agent.get(find(agent, GetParam()).path());
        EXPECT_NE(after.find(scalar("EnabledState", step.enabledState)), std::string::npos) << after;
        EXPECT_NE(after.find(firstOfArray("OperationalStatus", step.operationalStatus)), std::string::npos)
            << after;
    }
    Module_Agent agent;
    std::string statistics = agent.enumerate("VRAX_FCPortStatistics");
    statistics.erase(0, statistics.find(":200202a5c0de0001</VALUE>"));
    statistics.resize(statistics.find("</INSTANCE>"));
    EXPECT_NE(statistics.find("<PROPERTY NAME=\"LinkResetsTransmitted\" TYPE=\"uint64\"><VALUE>" +
                              std::to_string(GetParam().linkResets) + "</VALUE>"),
              std::string::npos)
        << statistics;
}

// The switch class tells of a refusal by an error with the reason, the port class by the method's result.
TEST(ModuleChangesRefused, ReachTheClient)
{
    SimSwitch sim = SimSwitch::make().ports(4);
    Module_Agent agent;
    struct Row
    {
        Element element;
        std::uint64_t requested;
        const char* failing;
        const char* answer;
    };
    const Row rows[] = {
        {kSwitch, kDisabled, "xpl_swSwitchGetConfig", "GetConfig Failed with error 5"},
        {kSwitch, kDisabled, "xpl_swSwitchSetConfig", "SetConfig Failed with error 5"},
        {kSwitch, kReset, "xpl_swSwitchForceReset", "Switch Reset failed"},
        {kPort, kDisabled, "xpl_swPortGetConfig", "<RETURNVALUE PARAMTYPE=\"uint32\"><VALUE>1</VALUE>"},
        {kPort, kReset, "xpl_swPortSetConfig", "<RETURNVALUE PARAMTYPE=\"uint32\"><VALUE>1</VALUE>"},
    };
    for (const Row& row : rows)
    {
        const cimd::ObjectPath path = find(agent, row.element).path();
        sim.failNext(row.failing, 1, XPL_UNREACHABLE);
        const std::string answer = agent.requestState(path, static_cast<unsigned>(row.requested));
        EXPECT_NE(answer.find(row.answer), std::string::npos) << row.failing << "\n" << answer;
        EXPECT_EQ(answer.find("<ERROR CODE=\"1\" DESCRIPTION=\"VRAX_FCSwitch: method RequestStateChange") !=
                      std::string::npos,
                  row.element.className == kSwitch.className)
            << answer;
    }
}

INSTANTIATE_TEST_SUITE_P(Elements,
                         ModuleChanges,
                         testing::Values(kSwitch, kPort),
                         [](const testing::TestParamInfo<Element>& element)
                         { return element.param.className; });

} // namespace
