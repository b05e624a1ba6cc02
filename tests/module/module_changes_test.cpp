// State changes that a client asks for and the switch refuses.
#include "simulator/testing/SimSwitch.h"
#include "tests/module/module_test_agent.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace
{

using simulator::SimSwitch;

constexpr std::uint64_t kDisabled = 3, kReset = 11;

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

} // namespace
