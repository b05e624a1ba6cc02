// State changes that a client asks for: they reach the switch and show when the class is next loaded.
#include "simulator/testing/sim_switch.h"
#include "tests/module/module_test_agent.h"

#include <functional>

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
};

constexpr Element kSwitch = {"VRAX_FCSwitch", "RequestedState", 5};
constexpr Element kPort = {"VRAX_FCPort", "PortNumber", 2};

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
    const SimSwitch sim = SimSwitch::make().ports(4);
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
}

INSTANTIATE_TEST_SUITE_P(Elements,
                         ModuleChanges,
                         testing::Values(kSwitch, kPort),
                         [](const testing::TestParamInfo<Element>& element)
                         { return element.param.className; });

} // namespace
