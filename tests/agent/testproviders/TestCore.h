// The agent's core with the test providers, and requests in short form.
#ifndef TESTS_AGENT_TESTPROVIDERS_TESTCORE_H
#define TESTS_AGENT_TESTPROVIDERS_TESTCORE_H

#include "agent/service/AgentCore.h"

#include <functional>
#include <string>

namespace cimd::test
{

inline const std::string kNameSpace = "root/test";

// The test classes.
const ClassRepository& repository();

// One core with freshly seeded providers. There may be one at a time: the providers' data is the library's.
class TestCore
{
  public:
    TestCore();
    // With other registrations than those of the test providers' file, as from the file x.reg.
    explicit TestCore(const std::string& registrations);

    const CimService& service() { return _core.service(); }
    const ProviderManager& providers() { return _core.providers(); }
    std::size_t countOf(const std::string& className);

    RequestContext context{"alice", "192.0.2.1:40000", "en"};

  private:
    AgentCore _core;
};

// The path of an instance with the key Name.
ObjectPath named(const std::string& className, const std::string& name, const char* key = "Name");

// "4 text" of the CimError that an action ends with; "OK" without one.
std::string outcome(const std::function<void()>& action);

} // namespace cimd::test

#endif
