// Whatever fails in a load reaches the client as an error with the provider's reason, never as a shorter
// list, and the next request recovers.
//
// One case for each class that the module serves. Every step of the class's load, and every call that it
// makes to the switch, fails in turn, at each place where it happens; what a class does without are traits of
// its provider. The ends of an association stay loaded meanwhile: their loads are their own classes' cases.
// The module is loaded through CMPI by the agent's core and spoken to in CIM-XML.
#include "simulator/testing/SimSwitch.h"
#include "tests/common/testing/failures.h"
#include "tests/module/module_test_agent.h"

#include "agent/log/log.h"
#include "providers_includes.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using simulator::SimSwitch;

// A class and what its provider says of it.
struct Served_Class
{
    const char* name;
    bool hasMap;
    bool checksKeys;
    bool dropsDuplicates;
    bool getsFromMap;
    std::vector<std::string> doesWithout;

    bool needs(const std::string& call) const
    {
        return std::find(doesWithout.begin(), doesWithout.end(), call) == doesWithout.end();
    }
};
std::ostream& operator<<(std::ostream& out, const Served_Class& one)
{
    return out << one.name;
}

template <class PROVIDER>
Served_Class servedBy(const char* className)
{
    return {className,
            PROVIDER::kHasMap,
            PROVIDER::kChecksKeys,
            PROVIDER::kInsertionFailed.text == nullptr,
            PROVIDER::kGetsFromMap,
            {PROVIDER::kDoesWithout.begin(), PROVIDER::kDoesWithout.end()}};
}

// Nobody asks for the instances of an indication.
#define SERVED_INSTANCE(cls) servedBy<cimple::cls##_Provider>(#cls),
#define SERVED_ASSOCIATION(cls) SERVED_INSTANCE(cls)
#define SERVED_INDICATION(cls)
#define VRAX_PROVIDER(kind, folder, cls) SERVED_##kind(cls)
const Served_Class kServed[] = {
#include "common/providers.def"
};
#undef VRAX_PROVIDER

// --- Requests

std::size_t count(const std::string& text, const std::string& part)
{
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++found;
    return found;
}

// The instances in an answer.
std::size_t size(const std::string& answer)
{
    return count(answer, "</INSTANCE>");
}

// A request that the class answers, repeated with the same outcome as long as nothing fails.
struct Request
{
    const char* operation;
    std::function<std::string()> send;
    std::size_t size; // instances in the answer
};

// A switch in transparent mode with an entry in each list of a port.
simulator::SimSwitchSetup transparentSwitch()
{
    using simulator::PortScenario;
    return SimSwitch::make()
        .switchFacts([](simulator::SwitchScenario& facts) { facts.transparent = true; })
        .port(1, [](PortScenario& port) { port.type = simulator::PortType::tf; })
        .port(2,
              [](PortScenario& port)
              {
                  port.type = simulator::PortType::th;
                  port.primaryTfPorts = port.backupTfPorts = {1};
              });
}

// A fabric in which the class has instances.
simulator::SimSwitchSetup fabricFor(const std::string& className)
{
    if (className == "VRAX_PassThroughMapEntry")
        return transparentSwitch();
    return SimSwitch::make()
        .blades(2, 2)
        .supplies(2)
        .temperature("Air intake", 25)
        .temperature("Switch chip", 40)
        .voltage("3.3 V", 3.3)
        .voltage("12 V", 12)
        .remote(2, 2)
        .isl({1, 0, 2, 1, false})
        .node(1, 2, "2100026e1a40b7c1")
        .node(2, 0, "2100026e1a40b7c2")
        .listener("one", "http://one", true)
        .listener("two", "http://two")
        .subscription("alerts", "CQL:Alert:All", {"one", "two"})
        .subscription("ports", "Create:FCPort", {"one"})
        .zoning(simulator::ZoningSetup()
                    .alias("host", {"2100026E1A40B7C1"})
                    .zone("zone", {"host", "2100026E1A40B7C2"})
                    .zoneSet("set", {"zone"})
                    .active("set"))
        .switchFacts(
            [](simulator::SwitchScenario& facts)
            {
                facts.userLog = {"[1][Tue Mar 04 10:22:31.123456 UTC 2008][m]",
                                 "[2][Tue Mar 04 10:22:32.123456 UTC 2008][m]"};
                facts.alarmLog = facts.userLog;
            });
}

constexpr char kFailingModule[] = "vraxproviders_failing";

class ModuleFaults : public testing::TestWithParam<Served_Class>
{
  protected:
    ModuleFaults() : sim(fabricFor(GetParam().name)), agent(kFailingModule), className(GetParam().name)
    {
        // Nobody reads the thousands of lines; the last reason is compared with what the client gets.
        cimd::setLogLevel(cimd::LogLevel::Error);
        cimd::setLogWriter([this](cimd::LogLevel, std::string_view line) { lastLine = line; });
        makeMapsStale();
        collectRequests();
    }
    ~ModuleFaults() override
    {
        cimd::setLogWriter({});
        cimd::setLogLevel(cimd::LogLevel::Info);
    }

    // Sends the request with the class's map stale, and those of its ends fresh.
    std::string ask(const Request& request)
    {
        makeMapStale(className.c_str());
        lastLine.clear();
        return request.send();
    }

    // The answer to a request that has met a failure.
    void expectError(const std::string& answer)
    {
        const std::size_t error = answer.find("<ERROR CODE=\"1\" DESCRIPTION=\"" + className + ": ");
        EXPECT_NE(error, std::string::npos) << answer;
        EXPECT_EQ(size(answer), 0U) << answer;
        // "<time> error module: <origin>:<function>[<line>] <reason>"; some loads fail without a reason.
        const std::size_t reason = lastLine.find("] ");
        if (reason != std::string::npos)
        {
            // The client may be told more than the last line says.
            EXPECT_NE(answer.find(xmlText(lastLine.substr(reason + 2)), error), std::string::npos)
                << answer << "\nshould give the reason in\n"
                << lastLine;
        }
    }

    // The answer to a request that goes on without what failed. Then a single instance may not be found.
    void expectNoFailure(const std::string& answer) const
    {
        EXPECT_EQ(answer.find("<ERROR CODE=\"1\""), std::string::npos) << answer;
        makeMapStale(className.c_str());
    }

    void expectRecovery(const Request& request)
    {
        EXPECT_EQ(size(request.send()), request.size) << "the next request did not recover";
        EXPECT_EQ(sim.heldCacheLocks(), 0);
        EXPECT_EQ(sim.outstandingBlocks(), 0U);
    }

    SimSwitch sim;
    Module_Agent agent;
    const std::string className;
    std::string lastLine;       // of the log, since the last request
    std::set<std::string> ends; // of an association
    std::vector<Request> requests;

  private:
    void collectRequests()
    {
        const std::vector<cimd::Instance> instances = agent.instances(className.c_str());
        if (!GetParam().hasMap && instances.empty())
            return;
        ASSERT_FALSE(instances.empty()) << "the fabric of this test has none";
        const cimd::ObjectPath last = instances.back().path();
        requests = {{"EnumerateInstances", [this] { return agent.enumerate(className); }, 0},
                    {"GetInstance", [this, last] { return agent.get(last); }, 1}};
        for (const cimd::Instance& instance : instances)
        {
            for (const cimd::Property& property : instance.properties())
            {
                if (property.value.type() != cimd::CimType::Reference)
                    continue;
                const cimd::ObjectPath source = property.value.asReference();
                if (ends.insert(source.className().str()).second)
                {
                    requests.push_back(
                        {"Associators", [this, source] { return agent.associators(source, className); }, 0});
                }
            }
        }
        for (Request& request : requests)
        {
            request.size = size(request.send());
            EXPECT_GT(request.size, 0U) << request.operation;
        }
    }
    static std::string xmlText(const std::string& text)
    {
        std::string escaped;
        cimd::appendEscaped(escaped, text);
        // The log shows a line feed at the end of a text, the client does not get it.
        while (!escaped.empty() && std::isspace(static_cast<unsigned char>(escaped.back())) != 0)
            escaped.pop_back();
        return escaped;
    }
};

// --- Failures of the steps of a load

struct Step
{
    const char* name;
    std::unique_ptr<Step_Failures> (*fail)(const char* className, int successes);
    bool happens;
    bool matters;
};

template <Create_Failures::Kind KIND>
std::unique_ptr<Step_Failures> failCreation(const char* className, int successes)
{
    return std::make_unique<Create_Failures>(className, successes, KIND);
}
template <class FAILURES>
std::unique_ptr<Step_Failures> fail(const char* className, int successes)
{
    return std::make_unique<FAILURES>(className, successes);
}

TEST_P(ModuleFaults, OfCreationsKeysAndInsertions)
{
    const Step steps[] = {
        {"creation", &failCreation<Create_Failures::Kind::ReturnsNull>, true, true},
        {"creation without memory", &failCreation<Create_Failures::Kind::Throws>, true, true},
        {"key check", &fail<Key_Failures>, GetParam().checksKeys, true},
        {"insertion", &fail<Insert_Failures>, true, !GetParam().dropsDuplicates},
    };
    for (const Request& request : requests)
    {
        const bool maps =
            GetParam().hasMap && (GetParam().getsFromMap || request.operation != std::string("GetInstance"));
        for (const Step& step : steps)
        {
            for (int place = 0;; ++place)
            {
                SCOPED_TRACE(std::string(request.operation) + ": " + step.name + " fails at " +
                             std::to_string(place));
                auto failures = step.fail(className.c_str(), place);
                const std::string answer = ask(request);
                if (!failures->struck())
                {
                    EXPECT_EQ(place > 0, step.happens && (maps || step.name != std::string("insertion")));
                    break;
                }
                failures.reset();
                step.matters ? expectError(answer) : expectNoFailure(answer);
                expectRecovery(request);
                if (HasFailure())
                    return;
            }
        }
    }
}

TEST_P(ModuleFaults, OfTheEnds)
{
    for (const std::string& end : ends)
    {
        const Request& request = requests.front();
        makeMapsStale();
        lastLine.clear();
        auto failures = std::make_unique<Create_Failures>(end.c_str());
        expectError(request.send());
        EXPECT_TRUE(failures->struck()) << end;
        failures.reset();
        expectRecovery(request);
    }
}

// --- Failures of the switch

TEST_P(ModuleFaults, OfTheSwitch)
{
    for (const Request& request : requests)
    {
        for (const std::string call : {"DataCache::dcRdLock",
                                       "get_Local_Switch_World_Wide_Name",
                                       "get_Principal_Switch_World_Wide_Name",
                                       "get_Switch_ChassisPartNum",
                                       "get_Switch_ChassisSerialNum",
                                       "get_Switch_PlanarPartNum",
                                       "get_Switch_Brand_Name",
                                       "get_Product_Info",
                                       "xpl_smlGetBatch",
                                       "xpl_smlGetV",
                                       "xpl_fcsGetSwitchList",
                                       "xpl_fcsGetPortList",
                                       "xpl_fcsGetPortTopology",
                                       "xpl_smlGet",
                                       "xpl_fzsGetZonesetList",
                                       "xpl_fzsGetZoneList",
                                       "xpl_fzsGetZoneAliasList",
                                       "xpl_fzsGetZonesetZoneList",
                                       "xpl_fzsGetZoneType",
                                       "xpl_fzsGetZoneMemberList",
                                       "xpl_fzsGetZoneAliasMemberList",
                                       "xpl_fzsGetActiveZonesetName",
                                       "xpl_fzsGetZoningLimitations",
                                       "backupConfig",
                                       "locateSwitchFile"})
        {
            sim.mark();
            ask(request);
            const std::size_t calls = sim.calls(call);
            for (std::size_t place = 0; place < calls; ++place)
            {
                SCOPED_TRACE(std::string(request.operation) + ": " + call + " fails at " +
                             std::to_string(place));
                sim.failNext(call, 1, XPL_UNREACHABLE, static_cast<int>(place));
                const std::string answer = ask(request);
                sim.restore();
                GetParam().needs(call) ? expectError(answer) : expectNoFailure(answer);
                expectRecovery(request);
                if (HasFailure())
                    return;
            }
        }
    }
}

// A batch whose single key the switch does not answer.
TEST_P(ModuleFaults, OfSingleKeys)
{
    for (const Request& request : requests)
    {
        sim.mark();
        ask(request);
        for (const std::vector<std::string>& batch : sim.batches())
        {
            for (const std::string& key : batch)
            {
                SCOPED_TRACE(std::string(request.operation) + ": no " + key);
                sim.failKey(key);
                const std::string answer = ask(request);
                sim.restore();
                GetParam().needs("xpl_smlGetBatch") ? expectError(answer) : expectNoFailure(answer);
                expectRecovery(request);
                if (HasFailure())
                    return;
            }
        }
    }
}

// The request that brings a provider to life fails as well.
class ModuleFirstLoad : public testing::TestWithParam<Served_Class>
{
};

TEST_P(ModuleFirstLoad, MayFail)
{
    const SimSwitch sim(fabricFor(GetParam().name));
    Module_Agent agent(kFailingModule);
    makeMapsStale();
    const std::string className = GetParam().name;
    for (int attempt = 0; attempt < 2 && GetParam().hasMap; ++attempt)
    {
        const Create_Failures failures(GetParam().name);
        const std::string answer = agent.enumerate(className);
        EXPECT_TRUE(failures.struck());
        EXPECT_NE(answer.find("<ERROR CODE=\"1\" DESCRIPTION=\"" + className + ": "), std::string::npos)
            << answer;
    }
    if (GetParam().hasMap)
        EXPECT_GT(size(agent.enumerate(className)), 0U);
}

std::string nameOf(const testing::TestParamInfo<Served_Class>& served)
{
    return served.param.name;
}
INSTANTIATE_TEST_SUITE_P(Served, ModuleFaults, testing::ValuesIn(kServed), nameOf);
INSTANTIATE_TEST_SUITE_P(Served, ModuleFirstLoad, testing::ValuesIn(kServed), nameOf);

} // namespace
