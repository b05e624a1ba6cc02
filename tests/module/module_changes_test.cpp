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
    for (cimd::Instance& instance : agent.enumerate(element.className))
    {
        const cimd::CimValue* number = instance.find(cimd::CimName(element.numberProperty));
        if (number != nullptr && !number->isNull() && number->asUnsigned() == element.number)
            return instance;
    }
    throw std::runtime_error("no such element");
}

std::uint64_t number(const cimd::Instance& instance, const char* property)
{
    const cimd::CimValue& value = *instance.find(cimd::CimName(property));
    return value.isArray() ? value.elements().at(0).asUnsigned() : value.asUnsigned();
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
            const cimd::CimValue result = agent.requestState(find(agent, GetParam()).path(),
                                                             static_cast<std::uint16_t>(step.requested));
            EXPECT_EQ(result, cimd::CimValue::uint32(0));
        }
        Module_Agent agent;
        const cimd::Instance after = find(agent, GetParam());
        EXPECT_EQ(number(after, "EnabledState"), step.enabledState) << step.requested;
        EXPECT_EQ(number(after, "OperationalStatus"), step.operationalStatus) << step.requested;
        EXPECT_EQ(agent.get(after.path()), after);
    }
}

INSTANTIATE_TEST_SUITE_P(Elements,
                         ModuleChanges,
                         testing::Values(kSwitch, kPort),
                         [](const testing::TestParamInfo<Element>& element)
                         { return element.param.className; });

} // namespace
