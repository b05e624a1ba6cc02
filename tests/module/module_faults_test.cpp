// Whatever fails in a load reaches the client as an error with the provider's reason, never as a shorter
// list, and the next request recovers.
//
// One case for each class that the module serves. Every step of the class's load, and every call to the
// switch that answering a request takes, fails in turn, at each place where it happens; what a class is known
// to do without is listed below. The module is loaded through CMPI by the agent's core and spoken to in
// CIM-XML.
#include "simulator/testing/SimSwitch.h"
#include "tests/common/testing/Failures.h"
#include "tests/module/module_test_agent.h"

#include "agent/log/log.h"

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

std::vector<const char*> served()
{
    std::vector<const char*> classes;
    const auto add = [&](const std::string& kind, const char* className)
    {
        if (kind != "INDICATION") // nobody asks for their instances
            classes.push_back(className);
    };
#define VRAX_PROVIDER(kind, folder, cls) add(#kind, #cls);
#include "common/providers.def"
#undef VRAX_PROVIDER
    return classes;
}

// --- What is no failure

bool contains(const std::set<std::string>& names, const std::string& name)
{
    return names.count(name) != 0;
}

// Two reports of one thing are normal for endpoints and for the pairs of most associations: the first counts.
bool takesDuplicates(const std::string& className, bool isAssociation)
{
    static const std::set<std::string> kEndpoints = {"VRAX_ProtocolEndpoint"};
    static const std::set<std::string> kSinglePairs = {"VRAX_ContainedDomain"};
    return isAssociation ? !contains(kSinglePairs, className) : contains(kEndpoints, className);
}

// Their keys are never empty: they are made of what the walk has found, or of instances with keys.
bool trustsItsKeys(const std::string& className, bool isAssociation)
{
    static const std::set<std::string> kNamedByTheWalk = {"VRAX_FCNode", "VRAX_ProtocolEndpoint"};
    return takesDuplicates(className, isAssociation) || contains(kNamedByTheWalk, className);
}

// What is read of a single port may fail: the port is left out. A batch is known by its first key.
bool leavesThePortOut(const std::string& firstKey)
{
    const auto has = [&](const char* part) { return firstKey.find(part) != std::string::npos; };
    const bool isOfOurPort = has("Oper.UserPort.") && (has(".SymPortName") || has(".OperState"));
    return isOfOurPort || has("Oper.TopologyAll.") || has("Oper.NameServerAll.");
}

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

// A fabric in which every class has instances.
simulator::SimSwitchSetup fabric()
{
    return SimSwitch::make()
        .ports(3)
        .remote(2, 2)
        .isl({1, 0, 2, 1, false})
        .node(1, 2, "2100026e1a40b7c1")
        .node(2, 0, "2100026e1a40b7c2");
}

constexpr char kFailingModule[] = "vraxproviders_failing";

class ModuleFaults : public testing::TestWithParam<const char*>
{
  protected:
    ModuleFaults() : sim(fabric()), agent(kFailingModule), className(GetParam())
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

    // A load of the class runs its steps also for these: itself, and the ends of an association.
    std::vector<std::string> loadedClasses() const
    {
        std::vector<std::string> all = {className};
        all.insert(all.end(), ends.begin(), ends.end());
        return all;
    }

    // Sends the request with stale maps.
    std::string ask(const Request& request)
    {
        makeMapsStale();
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
            EXPECT_NE(answer.find(xmlText(lastLine.substr(reason + 2)) + "\"/>", error), std::string::npos)
                << answer << "\nshould give the reason in\n"
                << lastLine;
        }
    }

    // The answer to a request that goes on without what failed. Then a single instance may not be found.
    static void expectNoFailure(const std::string& answer)
    {
        EXPECT_EQ(answer.find("<ERROR CODE=\"1\""), std::string::npos) << answer;
        makeMapsStale();
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
    std::string lastLine; // of the log, since the last request
    bool isAssociation = false;
    std::set<std::string> ends;
    std::vector<Request> requests;

  private:
    void collectRequests()
    {
        const std::vector<cimd::Instance> instances = agent.instances(className.c_str());
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
                isAssociation = true;
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
    constexpr Step kSteps[] = {
        {"creation", &failCreation<Create_Failures::Kind::ReturnsNull>},
        {"creation without memory", &failCreation<Create_Failures::Kind::Throws>},
        {"key check", &fail<Key_Failures>},
        {"insertion", &fail<Insert_Failures>},
    };
    for (const Request& request : requests)
    {
        for (const std::string& failing : loadedClasses())
        {
            const bool isOwnPair = isAssociation && failing == className;
            for (const Step& step : kSteps)
            {
                const std::string name = step.name;
                for (int place = 0;; ++place)
                {
                    SCOPED_TRACE(std::string(request.operation) + ": " + name + " of " + failing +
                                 " fails at " + std::to_string(place));
                    auto failures = step.fail(failing.c_str(), place);
                    const std::string answer = ask(request);
                    if (!failures->struck())
                    {
                        EXPECT_TRUE(place > 0 || (name == "key check" && trustsItsKeys(failing, isOwnPair)))
                            << "the load has no such step";
                        break;
                    }
                    failures.reset();
                    if (name == "insertion" && takesDuplicates(failing, isOwnPair))
                    {
                        expectNoFailure(answer);
                    }
                    else
                    {
                        expectError(answer);
                    }
                    expectRecovery(request);
                    if (HasFailure())
                        return;
                }
            }
        }
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
                                       "xpl_smlGetBatch",
                                       "xpl_fcsGetSwitchList",
                                       "xpl_fcsGetPortList",
                                       "xpl_fcsGetPortTopology"})
        {
            sim.mark();
            ask(request);
            const std::size_t calls = sim.calls(call);
            const std::vector<std::vector<std::string>> batches = sim.batches();
            for (std::size_t place = 0; place < calls; ++place)
            {
                SCOPED_TRACE(std::string(request.operation) + ": " + call + " fails at " +
                             std::to_string(place));
                sim.failNext(call, 1, XPL_UNREACHABLE, static_cast<int>(place));
                const std::string answer = ask(request);
                sim.restore();
                const bool isOptional = call == "xpl_smlGetBatch" ? leavesThePortOut(batches[place].front())
                                                                  : call == "xpl_fcsGetPortTopology";
                if (isOptional)
                {
                    expectNoFailure(answer);
                }
                else
                {
                    expectError(answer);
                }
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
            if (leavesThePortOut(batch.front()))
                continue;
            for (const std::string& key : batch)
            {
                SCOPED_TRACE(std::string(request.operation) + ": no " + key);
                sim.failKey(key);
                const std::string answer = ask(request);
                sim.restore();
                expectError(answer);
                expectRecovery(request);
                if (HasFailure())
                    return;
            }
        }
    }
}

// The request that brings a provider to life fails as well.
class ModuleFirstLoad : public testing::TestWithParam<const char*>
{
};

TEST_P(ModuleFirstLoad, MayFail)
{
    const SimSwitch sim(fabric());
    Module_Agent agent(kFailingModule);
    makeMapsStale();
    for (int attempt = 0; attempt < 2; ++attempt)
    {
        const Create_Failures failures(GetParam());
        const std::string answer = agent.enumerate(GetParam());
        EXPECT_TRUE(failures.struck());
        EXPECT_NE(answer.find(std::string("<ERROR CODE=\"1\" DESCRIPTION=\"") + GetParam() + ": "),
                  std::string::npos)
            << answer;
    }
    EXPECT_GT(size(agent.enumerate(GetParam())), 0U);
}

std::string nameOf(const testing::TestParamInfo<const char*>& served)
{
    return served.param;
}
INSTANTIATE_TEST_SUITE_P(Served, ModuleFaults, testing::ValuesIn(served()), nameOf);
INSTANTIATE_TEST_SUITE_P(Served, ModuleFirstLoad, testing::ValuesIn(served()), nameOf);

} // namespace
